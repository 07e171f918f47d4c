// SPDX-License-Identifier: MIT
#include "ppd/document/ATPPDOption.h"

#include <fmt/format.h>

#include <utility>

#include "base/ATLog.h"
#include "base/Text.h"
#include "ppd/lines/PPDExtentions.h"
#include "ppd/lines/TokenScanner.h"

namespace {

std::string nameFromDefaultStatement(std::string_view statement) {
  TokenScanner scanner(statement);
  if (!scanner.scan("*Default")) return {};
  const auto name = scanner.readUpTo(':');
  return name ? std::string(Text::trim(*name, Text::isWhiteSpace)) : std::string();
}

bool hasCodeContaining(const std::shared_ptr<ATPPDChoice>& choice, std::string_view part) {
  const auto code = choice == nullptr ? std::nullopt : choice->code();
  return code && Text::contains(*code, part);
}

}  // namespace

ATPPDOption::ATPPDOption(std::shared_ptr<Budget> budget)
    : ATPPDCompoundObject(std::move(budget)), choices_(sharedBudget().get()) {
  if (sharedBudget() != nullptr) sharedBudget()->addOptions(1);
}

std::shared_ptr<ATPPDOption> ATPPDOption::optionWithString(const StatementString& string,
                                                           std::shared_ptr<Budget> budget) {
  auto option = std::make_shared<ATPPDOption>(std::move(budget));
  option->addString(string, PPDLineTypeOpenUI);
  return option;
}

void ATPPDOption::addString(const StatementString& string, PPDLineType type) {
  switch (type) {
    case PPDLineTypeDefaultChoice:
      defChoice_ = string;
      [[fallthrough]];
    case PPDLineTypeComment:
    case PPDLineTypeOpenUI:
    case PPDLineTypeCloseUI:
    case PPDLineTypeOrderDependency:
    case PPDLineTypeNewLine:
      editablePPDObjects().append(ATPPDObject::objectWithString(string, type));
      return;
    case PPDLineTypeChoice: {
      auto choice = ATPPDChoice::choiceWithString(string);
      choices_.append(choice);
      editablePPDObjects().append(std::move(choice));
      return;
    }
    case PPDLineTypeChoiceContinuation:
    case PPDLineTypeChoiceEnd:
      if (!PPDObjects().empty()) PPDObjects().back()->addString(string, type);
      return;
    case PPDLineTypeInvalid:
    case PPDLineTypeStatement:
    case PPDLineTypeContinuation:
    case PPDLineTypeEnd:
    case PPDLineTypeOpenGroup:
    case PPDLineTypeCloseGroup:
      break;
  }
  ATLog("-[ATPPDOption addString:ofType:]", "String {} of type {} is ignored!", string.view(), static_cast<int>(type));
}

const std::string& ATPPDOption::name() const {
  if (!name_) name_ = defChoice_ ? nameFromDefaultStatement(*defChoice_) : std::string();
  return *name_;
}

const std::optional<std::string>& ATPPDOption::defaultValue() const {
  if (defaultValue_ || !defChoice_) return defaultValue_;
  const std::string_view statement = *defChoice_;
  if (const std::size_t colon = statement.find(':'); colon != std::string_view::npos) {
    defaultValue_ = std::string(Text::trim(statement.substr(colon + 1), Text::isBlank));
  }
  return defaultValue_;
}

void ATPPDOption::addChoice(const std::shared_ptr<ATPPDChoice>& choice) {
  ATLog("-[ATPPDOption addChoice:]", "Adding choice {}", choice ? choice->name() : std::nullopt);
  if (choice == nullptr || choices_.positionOf(choice.get())) return;
  if (sharedBudget() != nullptr) sharedBudget()->changeStatement(choice->sizeOfLines());
  choices_.append(choice);
  if (endsWithCloseUI()) editablePPDObjects().insertBefore(PPDObjects().lastPosition(), choice);
}

bool ATPPDOption::endsWithCloseUI() const {
  if (PPDObjects().size() < 2) return false;
  const StatementStrings lastStrings = PPDObjects().back()->strings();
  return !lastStrings.empty() && PPDExtentions::isCloseUIPPDStatement(lastStrings.front());
}

// By value: a reference may be to the place in the list that is emptied.
void ATPPDOption::removeChoice(std::shared_ptr<ATPPDChoice> choice) {  // NOLINT(performance-unnecessary-value-param)
  ATLog("-[ATPPDOption removeChoice:]", "{}, removing choice {}...", name(), choice ? choice->name() : std::nullopt);
  if (choice == nullptr) return;
  if (const auto position = choices_.positionOf(choice.get())) choices_.removeAt(*position);
  removeObjectFromPPDObjects(choice.get());
}

std::shared_ptr<ATPPDChoice> ATPPDOption::choiceForName(std::string_view name) const {
  const auto position = choiceNames_.first(choices_, name);
  return position ? choices_.found(*position) : nullptr;
}

std::shared_ptr<ATPPDChoice> ATPPDOption::choiceWithCodeContaining(std::string_view part) const {
  for (const auto position : choiceCodes_.candidates(part)) {
    if (hasCodeContaining(choices_.at(position), part)) return choices_.at(position);
  }
  for (auto position = codesInIndex_; position < choices_.positionsEnd(); ++position) {
    const auto& choice = choices_.at(position);
    const bool mayGetCode = choice != nullptr && choice->container().empty();  // those behind it are walked through
    if (position == codesInIndex_ && !mayGetCode) {
      ++codesInIndex_;
      if (choice != nullptr) choiceCodes_.add(choice->code().value_or(""), position);
    }
    if (hasCodeContaining(choice, part)) return choice;
  }
  return nullptr;
}

std::string ATPPDOption::description() const {
  return fmt::format("<ATPPDOption>: {}", name());
}
