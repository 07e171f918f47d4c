// SPDX-License-Identifier: MIT
#include "ppd/ATPPDOption.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "base/Text.h"
#include "driver/ATLog.h"
#include "ppd/PPDExtentions.h"
#include "ppd/TokenScanner.h"

namespace {

// Looking through this many bytes of codes costs about as much as an index for the codes of a common media option.
constexpr std::size_t kCodeScansCost = std::size_t{1024} * 1024;
constexpr std::size_t kCostOfAChoice = 16;

bool continuesChoice(PPDLineType type) {
  return type == PPDLineTypeChoiceContinuation || type == PPDLineTypeChoiceEnd;
}

std::string nameFromDefaultStatement(std::string_view statement) {
  TokenScanner scanner(statement);
  if (!scanner.scan("*Default")) return {};
  const auto name = scanner.readUpTo(":");
  return name ? std::string(Text::trim(*name, Text::isWhiteSpace)) : std::string();
}

}  // namespace

std::shared_ptr<ATPPDOption> ATPPDOption::optionWithString(const StatementString& string) {
  auto option = std::make_shared<ATPPDOption>();
  option->addString(string, PPDLineTypeOpenUI);
  return option;
}

bool ATPPDOption::takesLineOfType(PPDLineType type) {
  switch (type) {
    case PPDLineTypeComment:
    case PPDLineTypeOpenUI:
    case PPDLineTypeCloseUI:
    case PPDLineTypeOrderDependency:
    case PPDLineTypeDefaultChoice:
    case PPDLineTypeChoice:
    case PPDLineTypeNewLine:
    case PPDLineTypeChoiceContinuation:
    case PPDLineTypeChoiceEnd:
      return true;
    default:
      return false;
  }
}

void ATPPDOption::addString(const StatementString& string, PPDLineType type) {
  if (!takesLineOfType(type)) {
    ATLog("-[ATPPDOption addString:ofType:]", "String {} of type {} is ignored!", string.view(),
          static_cast<int>(type));
    return;
  }
  if (type == PPDLineTypeDefaultChoice) defChoice_ = string;
  if (objectsMade_) {
    makeObject({string, type});
  } else if (!lines_.empty() || !continuesChoice(type)) {
    lines_.push_back({string, type});
  }
}

void ATPPDOption::giveStringsTo(IStatementSink& sink) const {
  for (const auto& object : ATPPDCompoundObject::PPDObjects()) object->giveStringsTo(sink);
  for (const Line& line : lines_) sink.take(line.string);
}

const ATPPDOption::PPDObjectList& ATPPDOption::PPDObjects() const {
  if (!objectsMade_) const_cast<ATPPDOption*>(this)->makeObjects();
  return ATPPDCompoundObject::PPDObjects();
}

void ATPPDOption::makeObjects() {
  objectsMade_ = true;
  for (const Line& line : std::exchange(lines_, {})) makeObject(line);
}

void ATPPDOption::makeObject(const Line& line) {
  PPDObjectList& objects = editablePPDObjects();
  switch (line.type) {
    case PPDLineTypeChoice: {
      auto choice = ATPPDChoice::choiceWithString(line.string);
      listChoice(choice);
      objects.append(std::move(choice));
      break;
    }
    case PPDLineTypeChoiceContinuation:
    case PPDLineTypeChoiceEnd:
      if (!objects.empty()) objects.back()->addString(line.string, line.type);
      break;
    default:
      objects.append(ATPPDObject::objectWithString(line.string, line.type));
  }
}

const ATPPDOption::ChoiceList& ATPPDOption::choices() const {
  PPDObjects();
  return choices_;
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
  if (choice == nullptr || choices().positionOf(choice.get())) return;
  listChoice(choice);
  if (!endsWithCloseUI()) return;
  PPDObjectList& objects = editablePPDObjects();
  objects.insertBefore(objects.lastPosition(), choice);
}

bool ATPPDOption::endsWithCloseUI() const {
  const PPDObjectList& objects = PPDObjects();
  if (objects.size() < 2) return false;
  const auto* last = dynamic_cast<const ATPPDObject*>(objects.back().get());
  return last != nullptr && !last->container().empty() &&
         PPDExtentions::isCloseUIPPDStatement(last->container().front());
}

void ATPPDOption::removeChoice(const std::shared_ptr<ATPPDChoice>& choice) {
  [[maybe_unused]] const std::string& optionName = name();
  ATLog("-[ATPPDOption removeChoice:]", "{}, removing choice {}...", optionName,
        choice ? choice->name() : std::nullopt);
  if (choice == nullptr) return;
  if (const auto position = choices().positionOf(choice.get())) {
    if (nameIndex_ && choice->name()) nameIndex_->remove(*choice->name(), *position);
    codeIndex_.reset();
    hasChoiceWithCode_.reset();
    choices_.removeAt(*position);
  }
  removeObjectFromPPDObjects(choice.get());
}

void ATPPDOption::listChoice(const std::shared_ptr<ATPPDChoice>& choice) {
  const ChoiceList::Position position = choices_.append(choice);
  if (nameIndex_ && choice->name()) nameIndex_->add(*choice->name(), position);
  if (codeIndex_) indexCode(*choice, position);
  if (hasChoiceWithCode_ && choice->code()) hasChoiceWithCode_ = true;
}

std::shared_ptr<ATPPDChoice> ATPPDOption::choiceForName(std::string_view name) const {
  PPDObjects();
  if (!nameIndex_ && walks_++ < kWalksBeforeIndex) return walkToName(name);
  if (!nameIndex_) indexNames();
  const NameIndex::Positions& positions = nameIndex_->find(name);
  return positions.empty() ? nullptr : choices_.at(*positions.begin());
}

std::shared_ptr<ATPPDChoice> ATPPDOption::walkToName(std::string_view name) const {
  for (const auto& choice : choices_) {
    if (choice->name() == name) return choice;
  }
  return nullptr;
}

void ATPPDOption::indexNames() const {
  nameIndex_.emplace();
  for (auto choice = choices_.begin(); choice != choices_.end(); ++choice) {
    if ((*choice)->name()) nameIndex_->add(*(*choice)->name(), choice.position());
  }
}

std::shared_ptr<ATPPDChoice> ATPPDOption::choiceWithCodeContaining(std::string_view part) const {
  PPDObjects();
  if (!codeIndex_ && codeScanCost_ < kCodeScansCost) return scanForCodeContaining(part);
  if (!codeIndex_) indexCodes();
  const auto number = codeIndex_->firstContaining(part);
  return number ? choices_.at(codePositions_[*number]) : nullptr;
}

std::shared_ptr<ATPPDChoice> ATPPDOption::scanForCodeContaining(std::string_view part) const {
  for (const auto& choice : choices_) {
    const auto& code = choice->code();
    codeScanCost_ += kCostOfAChoice + (code ? code->size() : 0);
    if (code && Text::contains(*code, part)) return choice;
  }
  return nullptr;
}

bool ATPPDOption::hasChoiceWithCode() const {
  PPDObjects();
  if (!hasChoiceWithCode_) {
    hasChoiceWithCode_ =
        std::any_of(choices_.begin(), choices_.end(), [](const auto& choice) { return choice->code().has_value(); });
  }
  return *hasChoiceWithCode_;
}

void ATPPDOption::indexCodes() const {
  codeIndex_.emplace();
  codePositions_.clear();
  for (auto choice = choices_.begin(); choice != choices_.end(); ++choice) indexCode(**choice, choice.position());
}

void ATPPDOption::indexCode(const ATPPDChoice& choice, ChoiceList::Position position) const {
  if (!choice.code()) return;
  codeIndex_->add(*choice.code());
  codePositions_.push_back(position);
}

std::string ATPPDOption::description() const {
  return fmt::format("<ATPPDOption>: {}", name());
}
