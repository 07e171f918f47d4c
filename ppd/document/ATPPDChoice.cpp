// SPDX-License-Identifier: MIT
#include "ppd/document/ATPPDChoice.h"

#include <fmt/format.h>

#include "base/ATLog.h"
#include "base/Text.h"
#include "ppd/lines/LineComposer.h"
#include "ppd/lines/PPDExtentions.h"
#include "ppd/lines/TokenScanner.h"

namespace {

std::string_view nameFromChoiceString(std::string_view line) {
  TokenScanner scanner(line);
  scanner.readUpToWhiteSpaceOr(' ');  // the asterisk and the option's keyword
  const auto name = scanner.readUpTo('/', ':');
  return name ? Text::trim(*name, Text::isWhiteSpace) : std::string_view("");
}

std::optional<std::string_view> presentPart(std::string_view part) {
  return part.data() == nullptr ? std::nullopt : std::optional(part);
}

}  // namespace

std::shared_ptr<ATPPDChoice> ATPPDChoice::choiceWithString(const StatementString& string) {
  return std::make_shared<ATPPDChoice>(string);
}

std::shared_ptr<ATPPDChoice> ATPPDChoice::initWithName(std::string_view name, std::string_view text,
                                                       std::optional<std::string_view> code,
                                                       std::string_view optionName,
                                                       const Localizations& localizations) {
  const auto statement = choiceStringWithName(name, optionName, text, code);
  if (!statement) return nullptr;
  LineComposer composer;
  composer.add(*statement);
  for (const auto& [language, localizedText] : localizations) {
    composer.add("*", language, ".", optionName, " ", name, "/", localizedText, ": \"\"\n");
  }
  auto choice = std::make_shared<ATPPDChoice>();
  for (const StatementString& line : composer.lines()) choice->addString(line, PPDLineTypeChoice);
  // The parts as they were given stand in the statement: behind "*option ", and in front of the quote and the line end.
  const std::string_view line = choice->container().front();
  choice->name_ = line.substr(optionName.size() + 2, name.size());
  if (code) choice->code_ = line.substr(line.size() - 2 - code->size(), code->size());
  return choice;
}

std::optional<std::string> ATPPDChoice::choiceStringWithName(std::string_view name, std::string_view optionName,
                                                             std::string_view text,
                                                             std::optional<std::string_view> code) {
  static constexpr const char* kSignature = "-[ATPPDChoice choiceStringWithName:optionName:text:code:]";
  if (!PPDExtentions::isValidPPDNameLength(name) || optionName.empty()) {
    ATLog(kSignature, "Cannot create ATPPDChoice from name: {}, option: {}, text: {}", name, optionName, text);
    return std::nullopt;
  }
  LineComposer composer;
  std::string statement(composer.add("*", optionName, " ", name, "/", text, ": \"", code.value_or(""), "\"\n"));
  for (const std::string_view line : Text::split(statement, Text::isLineEnd)) {
    if (line.empty() || PPDExtentions::isValidPPDLineLength(line)) continue;
    ATLog(kSignature, "Not valid component {}, string: {}", line, statement);
    return std::nullopt;
  }
  return statement;
}

std::optional<std::string_view> ATPPDChoice::name() const {
  if (name_.data() == nullptr && !container().empty()) name_ = nameFromChoiceString(container().front());
  return presentPart(name_);
}

std::optional<std::string_view> ATPPDChoice::code() const {
  if (code_.data() == nullptr && !container().empty()) {
    code_ = PPDExtentions::quotedValueContent(container().front()).value_or(std::string_view());
  }
  return presentPart(code_);
}
