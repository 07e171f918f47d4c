// SPDX-License-Identifier: MIT
#include "ppd/document/ATPPDGroup.h"

#include <utility>

#include "base/ATException.h"
#include "base/ATLog.h"
#include "base/Text.h"
#include "ppd/document/ATPPDObject.h"
#include "ppd/lines/TokenScanner.h"

namespace {

std::string nameFromOpenGroupStatement(std::string_view statement) {
  TokenScanner scanner(statement);
  if (scanner.skipTo(':')) scanner.skipCharacter();
  auto name = scanner.readUpTo('/');
  if (!name) name = scanner.readUpToBlank();
  return name ? std::string(Text::trim(*name, Text::isWhiteSpace)) : std::string();
}

}  // namespace

std::shared_ptr<ATPPDGroup> ATPPDGroup::groupWithString(const StatementString& string, std::shared_ptr<Budget> budget) {
  auto group = std::make_shared<ATPPDGroup>(std::move(budget));
  group->addString(string, PPDLineTypeOpenGroup);
  return group;
}

void ATPPDGroup::addString(const StatementString& string, PPDLineType type) {
  switch (type) {
    case PPDLineTypeStatement:
    case PPDLineTypeContinuation:
    case PPDLineTypeEnd:
    case PPDLineTypeOpenGroup:
    case PPDLineTypeCloseGroup:
      editablePPDObjects().append(ATPPDObject::objectWithString(string, type));
      return;
    case PPDLineTypeOpenUI:
      options_.push_back(ATPPDOption::optionWithString(string, sharedBudget()));
      editablePPDObjects().append(options_.back());
      return;
    case PPDLineTypeComment:
    case PPDLineTypeCloseUI:
    case PPDLineTypeOrderDependency:
    case PPDLineTypeDefaultChoice:
    case PPDLineTypeChoice:
    case PPDLineTypeNewLine:
    case PPDLineTypeChoiceContinuation:
    case PPDLineTypeChoiceEnd:
      // Whatever stands last takes it, an option that is closed already included: the text keeps its place.
      if (!PPDObjects().empty()) PPDObjects().back()->addString(string, type);
      return;
    case PPDLineTypeInvalid:
      break;
  }
  ATLog("-[ATPPDGroup addString:ofType:]", "String {} of type {} is ignored!", string.view(), static_cast<int>(type));
}

const std::string& ATPPDGroup::name() const {
  if (name_) return *name_;
  for (const auto& object : PPDObjects()) {
    const StatementStrings strings = object->strings();
    if (strings.empty()) continue;
    name_ = nameFromOpenGroupStatement(strings.front());
    return *name_;
  }
  throw ATException::outOfRange("-[ATPPDGroup name]");
}

std::shared_ptr<ATPPDOption> ATPPDGroup::optionForName(std::string_view name) const {
  return found_.find(name, options_.size(), [&]() -> std::shared_ptr<ATPPDOption> {
    for (const auto& option : options_) {
      if (sharedBudget() != nullptr) sharedBudget()->visit();
      if (option->name() == name) return option;
    }
    return nullptr;
  });
}
