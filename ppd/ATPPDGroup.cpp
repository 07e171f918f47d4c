// SPDX-License-Identifier: MIT
#include "ppd/ATPPDGroup.h"

#include <utility>

#include "base/ATException.h"
#include "base/Text.h"
#include "driver/ATLog.h"
#include "ppd/ATPPDObject.h"
#include "ppd/TokenScanner.h"

namespace {

std::string nameFromOpenGroupStatement(std::string_view statement) {
  TokenScanner scanner(statement);
  if (scanner.skipTo(':')) scanner.skipCharacter();
  auto name = scanner.readUpTo("/");
  if (!name) name = scanner.readUpToBlank();
  return name ? std::string(Text::trim(*name, Text::isWhiteSpace)) : std::string();
}

}  // namespace

std::shared_ptr<ATPPDGroup> ATPPDGroup::groupWithString(const StatementString& string) {
  auto group = std::make_shared<ATPPDGroup>();
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
      appendObjectToPPDObjects(ATPPDObject::objectWithString(string, type));
      break;
    case PPDLineTypeOpenUI:
      ++optionsOpened_;
      optionsByName_.forget();
      options_.push_back(ATPPDOption::optionWithString(string));
      appendObjectToPPDObjects(options_.back());
      break;
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
      break;
    default:
      ATLog("-[ATPPDGroup addString:ofType:]", "String {} of type {} is ignored!", string.view(),
            static_cast<int>(type));
  }
}

const std::string& ATPPDGroup::name() const {
  if (name_) return *name_;
  const StatementStrings firstObject = PPDObjects().empty() ? StatementStrings() : PPDObjects().front()->strings();
  if (firstObject.empty()) throw ATException::outOfRange("-[ATPPDGroup name]");
  name_ = nameFromOpenGroupStatement(firstObject.front());
  return *name_;
}

std::shared_ptr<ATPPDOption> ATPPDGroup::optionForName(std::string_view name) const {
  return optionsByName_.find(options_, name);
}
