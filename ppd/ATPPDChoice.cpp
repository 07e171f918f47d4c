// SPDX-License-Identifier: MIT
#include "ppd/ATPPDChoice.h"

#include <fmt/format.h>

#include "base/Text.h"
#include "driver/ATLog.h"
#include "ppd/PPDExtentions.h"
#include "ppd/TokenScanner.h"

namespace {

std::string choiceLine(std::string_view keyword, std::string_view name, std::string_view text, std::string_view code) {
  return fmt::format("*{} {}/{}: \"{}\"\n", keyword, name, text, code);
}

std::string nameFromChoiceString(std::string_view line) {
  TokenScanner scanner(line);
  scanner.readUpToWhiteSpaceOr("");  // the asterisk and the option's keyword
  const auto name = scanner.readUpTo("/:");
  return name ? std::string(Text::trim(*name, Text::isWhiteSpace)) : std::string();
}

}  // namespace

std::shared_ptr<ATPPDChoice> ATPPDChoice::choiceWithString(const StatementString& string) {
  auto choice = std::make_shared<ATPPDChoice>();
  choice->addString(string, PPDLineTypeChoice);
  return choice;
}

std::shared_ptr<ATPPDChoice> ATPPDChoice::initWithName(const std::string& name, const std::string& text,
                                                       const std::optional<std::string>& code,
                                                       const std::string& optionName,
                                                       const Localizations& localizations) {
  const auto statement = choiceStringWithName(name, optionName, text, code);
  if (!statement) return nullptr;
  auto choice = std::make_shared<ATPPDChoice>();
  choice->name_ = name;
  choice->code_ = code;
  choice->addString(*statement, PPDLineTypeChoice);
  for (const auto& [language, localizedText] : localizations) {
    const std::string keyword = fmt::format("{}.{}", language, optionName);
    choice->addString(choiceLine(keyword, name, localizedText, ""), PPDLineTypeChoice);
  }
  return choice;
}

std::optional<std::string> ATPPDChoice::choiceStringWithName(const std::string& name, const std::string& optionName,
                                                             const std::string& text,
                                                             const std::optional<std::string>& code) {
  static constexpr const char* kSignature = "-[ATPPDChoice choiceStringWithName:optionName:text:code:]";
  if (!PPDExtentions::isValidPPDNameLength(name) || optionName.empty()) {
    ATLog(kSignature, "Cannot create ATPPDChoice from name: {}, option: {}, text: {}", name, optionName, text);
    return std::nullopt;
  }
  std::string statement = choiceLine(optionName, name, text, code.value_or(""));
  for (const std::string_view line : Text::split(statement, Text::isLineEnd)) {
    if (line.empty() || PPDExtentions::isValidPPDLineLength(line)) continue;
    ATLog(kSignature, "Not valid component {}, string: {}", line, statement);
    return std::nullopt;
  }
  return statement;
}

const std::optional<std::string>& ATPPDChoice::name() const {
  if (!name_ && !container().empty()) name_ = nameFromChoiceString(container().front());
  return name_;
}

const std::optional<std::string>& ATPPDChoice::code() const {
  if (!code_ && !container().empty()) {
    if (const auto content = PPDExtentions::quotedValueContent(container().front())) code_ = std::string(*content);
  }
  return code_;
}
