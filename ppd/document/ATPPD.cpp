// SPDX-License-Identifier: MIT
#include "ppd/document/ATPPD.h"

#include <algorithm>

#include "base/ATLog.h"
#include "base/Text.h"
#include "ppd/lines/PPDExtentions.h"

ATPPD::~ATPPD() {
  budget().restore(Budget::kUnlimited);
  for (const auto& attribute : attributes_) attribute->setBudget(nullptr);
}

void ATPPD::addString(const StatementString& string, PPDLineType type) {
  budget().readLine();
  switch (type) {
    case PPDLineTypeOpenGroup:
      return addGroup(string);
    case PPDLineTypeComment:
    case PPDLineTypeNewLine:
    case PPDLineTypeStatement:
    case PPDLineTypeOpenUI:
      return groupOpened_ ? addLineToLastChild(string, type) : addObject(string, type);
    case PPDLineTypeCloseGroup:
      groupOpened_ = false;
      return addLineToLastChild(string, type);
    case PPDLineTypeContinuation:
    case PPDLineTypeEnd:
    case PPDLineTypeCloseUI:
    case PPDLineTypeOrderDependency:
    case PPDLineTypeDefaultChoice:
    case PPDLineTypeChoice:
    case PPDLineTypeChoiceContinuation:
    case PPDLineTypeChoiceEnd:
      return addLineToLastChild(string, type);
    case PPDLineTypeInvalid:
      break;
  }
  ATLog("-[ATPPD addString:ofType:]", "ERROR: String {} of type {} is ignored!", string.view(), static_cast<int>(type));
}

void ATPPD::addObject(const StatementString& string, PPDLineType type) {
  if (type == PPDLineTypeStatement) {
    auto attribute = ATPPDAttribute::attributeWithString(string);
    attribute->setBudget(&budget());
    attributes_.append(attribute);
    editablePPDObjects().append(std::move(attribute));
  } else if (type == PPDLineTypeOpenUI) {
    editablePPDObjects().append(ATPPDOption::optionWithString(string, sharedBudget()));
  } else {
    editablePPDObjects().append(ATPPDObject::objectWithString(string, type));
  }
}

void ATPPD::addLineToLastChild(const StatementString& string, PPDLineType type) {
  if (!PPDObjects().empty()) PPDObjects().back()->addString(string, type);
}

void ATPPD::addGroup(const StatementString& string) {
  groups_.push_back(ATPPDGroup::groupWithString(string, sharedBudget()));
  editablePPDObjects().append(groups_.back());
  groupOpened_ = true;
}

ATPPD::AttributePtr ATPPD::attributeForName(std::string_view name, const Spec& spec) const {
  const auto position = index_.first(asked(spec), name, spec);
  return position ? attributes_.found(*position) : nullptr;
}

ATPPD::Attributes ATPPD::attributesForName(std::string_view name) const {
  return attributesAt(index_.all(asked(), name, std::nullopt));
}

ATPPD::Attributes ATPPD::attributesForName(std::string_view name, std::string_view inSpec) const {
  constexpr std::size_t kVisits = 10;  // who looks for a part takes each spec apart, and makes a profile of it, perhaps
  const auto positions = index_.allWithSpecContaining(asked(inSpec), name, inSpec);
  budget().visit(kVisits * positions.size());
  return attributesAt(positions);
}

ATPPD::Attributes ATPPD::localizationForAttributeWithName(std::string_view name, const Spec& spec) const {
  StatementIndex::Positions positions;
  if (knownLocalizations() == nullptr) return {};
  for (const std::string& localizedName : localizedNames(name)) {
    const auto found = index_.all(asked(), localizedName, spec);
    positions.insert(positions.end(), found.begin(), found.end());
  }
  std::sort(positions.begin(), positions.end());
  positions.erase(std::unique(positions.begin(), positions.end()), positions.end());  // a language may be listed twice
  return attributesAt(positions);
}

// In each supported language. The languages do not change once they are known.
const std::vector<std::string>& ATPPD::localizedNames(std::string_view name) const {
  const auto known = localizedNames_.find(name);
  if (known != localizedNames_.end()) return known->second;
  std::vector<std::string>& names = localizedNames_[std::string(name)];
  for (const std::string& language : *knownLocalizations()) names.push_back(language + "." + std::string(name));
  return names;
}

ATPPD::Attributes ATPPD::attributesAt(const StatementIndex::Positions& positions) const {
  Attributes found;
  found.reserve(positions.size());
  for (const auto position : positions) found.push_back(attributes_.found(position));
  return found;
}

std::shared_ptr<ATPPDGroup> ATPPD::groupForName(std::string_view name) const {
  budget().visit();
  return foundGroups_.find(name, groups_.size(), [&]() -> std::shared_ptr<ATPPDGroup> {
    for (const auto& group : groups_) {
      budget().visit();
      if (group->name() == name) return group;
    }
    return nullptr;
  });
}

std::shared_ptr<ATPPDOption> ATPPD::optionForName(std::string_view name) const {
  budget().visit();
  return foundOptions_.find(name, budget().optionsAdded(), [&]() -> std::shared_ptr<ATPPDOption> {
    for (const auto& group : groups_) {
      budget().visit();
      if (auto option = group->optionForName(name)) return option;
    }
    return nullptr;
  });
}

void ATPPD::addPPDAttribute(const AttributePtr& attribute) {
  if (attribute == nullptr) return;
  ATLog("-[ATPPD addPPDAttribute:]", "Adding {} attribute with value {}", attribute->name(), attribute->value());
  budget().changeStatement(attribute->sizeOfLines());
  if (attributes_.empty()) {
    editablePPDObjects().append(attribute);
  } else if (const auto last = PPDObjects().positionOf(attributes_.back().get())) {
    editablePPDObjects().insertAfter(*last, attribute);
  }
  attributes_.append(attribute);
  attribute->setBudget(&budget());  // when it is in the list, which the destructor goes through
}

// By value, as below: a reference may be to the place in the list that is emptied.
void ATPPD::removePPDAttribute(AttributePtr attribute) {  // NOLINT(performance-unnecessary-value-param)
  ATLog("-[ATPPD removePPDAttribute:]", "Removing attribute {}...", attribute ? attribute->name() : std::nullopt);
  if (attribute == nullptr) return;
  if (const auto position = attributes_.positionOf(attribute.get())) attributes_.removeAt(*position);
  if (!attributes_.holdsRepeats() || !attributes_.positionOf(attribute.get())) attribute->setBudget(nullptr);
  removeObjectFromPPDObjects(attribute.get());
}

void ATPPD::removePPDAttributeWithLocalizations(
    AttributePtr attribute) {  // NOLINT(performance-unnecessary-value-param)
  Attributes localizations;
  if (attribute != nullptr) {
    localizations = localizationForAttributeWithName(Text::orNull(attribute->name()), attribute->spec());
  }
  removePPDAttribute(attribute);
  for (const auto& localization : localizations) removePPDAttribute(localization);
}

const std::vector<std::string>* ATPPD::supportedLocalizations() const {
  const std::vector<std::string>* languages = knownLocalizations();
  constexpr std::size_t kVisits = 3;  // a line is composed for each, which takes longer than a look
  if (languages != nullptr) budget().visit(kVisits * languages->size() + sizeOfLocalizations_);
  return languages;
}

const std::vector<std::string>* ATPPD::knownLocalizations() const {
  if (!supportedLocalizations_) {
    const auto attribute = attributeForName("cupsLanguages");
    const auto value = attribute ? attribute->value() : std::nullopt;
    const auto content = value ? PPDExtentions::quotedValueContent(*value) : std::nullopt;
    if (content) {
      const auto languages = Text::split(*content, Text::isWhiteSpace);
      budget().addOptions(languages.size());  // each makes a line for every choice and profile
      supportedLocalizations_.emplace(languages.begin(), languages.end());
      sizeOfLocalizations_ = content->size() / Budget::kBytesOfAVisit;
    }
  }
  return supportedLocalizations_ ? &*supportedLocalizations_ : nullptr;
}
