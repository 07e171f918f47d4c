// SPDX-License-Identifier: MIT
#include "ppd/ATPPD.h"

#include <fmt/format.h>

#include <utility>

#include "base/Text.h"
#include "driver/ATLog.h"
#include "ppd/PPDExtentions.h"

void ATPPD::addString(const StatementString& string, PPDLineType type) {
  const auto owner = ownerOfLine(type);
  if (!owner) {
    ATLog("-[ATPPD addString:ofType:]", "ERROR: String {} of type {} is ignored!", string.view(),
          static_cast<int>(type));
    return;
  }
  if (type == PPDLineTypeOpenGroup) groupOpened_ = true;
  if (type == PPDLineTypeCloseGroup) groupOpened_ = false;
  if (!objectsMade_ && isRefusedByLastObject(*owner, type)) makeObjects();
  if (objectsMade_) {
    makeObject({string, type, *owner});
    return;
  }
  if (*owner != Owner::lastObject) lastObjectsOwner_ = owner;
  if (lastObjectsOwner_) lines_.add(string, type, *owner);
}

// Absent for a type that no line of a file has.
std::optional<ATPPD::Owner> ATPPD::ownerOfLine(PPDLineType type) const {
  switch (type) {
    case PPDLineTypeComment:
    case PPDLineTypeNewLine:
      return groupOpened_ ? Owner::lastObject : Owner::newObject;
    case PPDLineTypeStatement:
      return groupOpened_ ? Owner::lastObject : Owner::newAttribute;
    case PPDLineTypeOpenUI:
      return groupOpened_ ? Owner::lastObject : Owner::newOption;
    case PPDLineTypeOpenGroup:
      return Owner::newGroup;
    case PPDLineTypeCloseGroup:
    case PPDLineTypeContinuation:
    case PPDLineTypeEnd:
    case PPDLineTypeCloseUI:
    case PPDLineTypeOrderDependency:
    case PPDLineTypeDefaultChoice:
    case PPDLineTypeChoice:
    case PPDLineTypeChoiceContinuation:
    case PPDLineTypeChoiceEnd:
      return Owner::lastObject;
    default:
      return std::nullopt;
  }
}

// An option drops what has no place in a UI block; the other kinds of objects take every line.
bool ATPPD::isRefusedByLastObject(Owner owner, PPDLineType type) const {
  return owner == Owner::lastObject && lastObjectsOwner_ == Owner::newOption && !ATPPDOption::takesLineOfType(type);
}

void ATPPD::giveStringsTo(IStatementSink& sink) const {
  for (const auto& object : ATPPDCompoundObject::PPDObjects()) object->giveStringsTo(sink);
  if (sink.takesRuns()) {
    for (const StatementString& run : lines_.runs()) sink.take(run);
  } else {
    lines_.visit([&sink](const Line& line) { sink.take(line.string); });
  }
}

const ATPPD::PPDObjectList& ATPPD::PPDObjects() const {
  if (!objectsMade_) const_cast<ATPPD*>(this)->makeObjects();
  return ATPPDCompoundObject::PPDObjects();
}

const ObjectList<ATPPDAttribute>& ATPPD::attributes() const {
  PPDObjects();
  return attributes_;
}

const std::vector<std::shared_ptr<ATPPDGroup>>& ATPPD::groups() const {
  PPDObjects();
  return groups_;
}

void ATPPD::makeObjects() {
  objectsMade_ = true;
  std::exchange(lines_, {}).visit([this](const Line& line) { makeObject(line); });
}

void ATPPD::makeObject(const Line& line) {
  PPDObjectList& objects = editablePPDObjects();
  switch (line.owner) {
    case Owner::newObject:
      objects.append(ATPPDObject::objectWithString(line.string, line.type));
      break;
    case Owner::newAttribute: {
      auto attribute = ATPPDAttribute::attributeWithString(line.string);
      listAttribute(attribute);
      objects.append(std::move(attribute));
      break;
    }
    case Owner::newOption:
      objects.append(ATPPDOption::optionWithString(line.string));
      break;
    case Owner::newGroup:
      groupsByName_.forget();
      groups_.push_back(ATPPDGroup::groupWithString(line.string));
      objects.append(groups_.back());
      break;
    case Owner::lastObject:
      if (!objects.empty()) objects.back()->addString(line.string, line.type);
  }
}

// Whether any line that is not yet part of an object begins an attribute of this name.
bool ATPPD::hasLineOfAttribute(std::string_view name) const {
  return lines_.any(Owner::newAttribute, [name](std::string_view line) { return ATPPDAttribute::isNamed(line, name); });
}

void ATPPD::listAttribute(const AttributePtr& attribute) {
  indexAttribute(*attribute, attributes_.append(attribute));
}

void ATPPD::indexAttribute(const ATPPDAttribute& attribute, ObjectList<ATPPDAttribute>::Position position) {
  if (attributeIndex_) attributeIndex_->add(attribute, position);
  for (auto& [name, index] : localizationIndexes_) index.add(attribute, position);
  for (auto& [name, index] : specIndexes_) {
    if (attribute.isNamed(name)) index.add(attribute, position);
  }
}

void ATPPD::unindexAttribute(const ATPPDAttribute& attribute, ObjectList<ATPPDAttribute>::Position position) {
  if (attributeIndex_) attributeIndex_->remove(attribute, position);
  for (auto& [name, index] : localizationIndexes_) index.remove(attribute, position);
  for (auto& [name, index] : specIndexes_) index.remove(attribute, position);
}

ATPPD::AttributePtr ATPPD::attributeForName(std::string_view name, const Spec& spec) const {
  if (!objectsMade_ && !hasLineOfAttribute(name)) return nullptr;
  PPDObjects();
  if (!attributeIndex_ && walks_++ < kWalksBeforeIndex) return walkToAttribute(name, spec);
  const NameIndex::Positions& positions = attributeIndex().find(name, spec);
  return positions.empty() ? nullptr : attributes_.at(*positions.begin());
}

ATPPD::AttributePtr ATPPD::walkToAttribute(std::string_view name, const Spec& spec) const {
  for (const auto& attribute : attributes_) {
    if (attribute->isNamed(name) && (!spec || attribute->spec() == spec)) return attribute;
  }
  return nullptr;
}

const AttributeIndex& ATPPD::attributeIndex() const {
  PPDObjects();
  if (attributeIndex_) return *attributeIndex_;
  attributeIndex_.emplace();
  for (auto attribute = attributes_.begin(); attribute != attributes_.end(); ++attribute) {
    attributeIndex_->add(**attribute, attribute.position());
  }
  return *attributeIndex_;
}

ATPPD::Attributes ATPPD::localizationForAttributeWithName(std::string_view name, const Spec& spec) const {
  if (supportedLocalizations() == nullptr) return {};
  return attributesAt(localizationIndex(name).find(spec));
}

LocalizationIndex& ATPPD::localizationIndex(std::string_view name) const {
  const auto found = localizationIndexes_.find(name);
  if (found != localizationIndexes_.end()) return found->second;
  LocalizationIndex index(name, *supportedLocalizations());
  for (auto attribute = attributes().begin(); attribute != attributes().end(); ++attribute) {
    index.add(**attribute, attribute.position());
  }
  return localizationIndexes_.emplace(name, std::move(index)).first->second;
}

ATPPD::Attributes ATPPD::attributesForName(std::string_view name) const {
  return attributesAt(attributeIndex().find(name, std::nullopt));
}

ATPPD::Attributes ATPPD::attributesForNameWithSpecContaining(std::string_view name, std::string_view part) const {
  return attributesAt(specIndex(name).findContaining(part));
}

ATPPD::Attributes ATPPD::attributesForNameWithSpecMiddlePart(std::string_view name, std::string_view part) const {
  return attributesAt(specIndex(name).findMiddlePart(part));
}

bool ATPPD::hasAttributeForNameWithSpecSecondPart(std::string_view name, std::string_view part) const {
  return specIndex(name).hasSecondPart(part);
}

SpecIndex& ATPPD::specIndex(std::string_view name) const {
  const auto found = specIndexes_.find(name);
  if (found != specIndexes_.end()) return found->second;
  SpecIndex index;
  for (const auto position : attributeIndex().find(name, std::nullopt)) {
    index.add(*attributes_.at(position), position);
  }
  return specIndexes_.emplace(name, std::move(index)).first->second;
}

ATPPD::Attributes ATPPD::attributesAt(const NameIndex::Positions& positions) const {
  Attributes found;
  found.reserve(positions.size());
  for (const auto position : positions) found.push_back(attributes_.at(position));
  return found;
}

std::shared_ptr<ATPPDGroup> ATPPD::groupForName(std::string_view name) const {
  return groupsByName_.find(groups(), name);
}

std::shared_ptr<ATPPDOption> ATPPD::optionForName(std::string_view name) const {
  PPDObjects();
  if (optionsCollectedAt_ != ATPPDGroup::optionsOpened()) {
    optionsCollectedAt_ = ATPPDGroup::optionsOpened();
    optionsInGroups_.clear();
    optionsByName_.forget();
    for (const auto& group : groups_) {
      optionsInGroups_.insert(optionsInGroups_.end(), group->options().begin(), group->options().end());
    }
  }
  return optionsByName_.find(optionsInGroups_, name);
}

void ATPPD::addPPDAttribute(const AttributePtr& attribute) {
  if (attribute == nullptr) return;
  [[maybe_unused]] const auto& name = attribute->name();
  [[maybe_unused]] const auto& value = attribute->value();
  ATLog("-[ATPPD addPPDAttribute:]", "Adding {} attribute with value {}", name, value);
  if (attributes().empty()) {
    appendObjectToPPDObjects(attribute);
  } else if (const auto last = PPDObjects().positionOf(attributes_.back().get())) {
    editablePPDObjects().insertAfter(*last, attribute);
  }
  listAttribute(attribute);
}

void ATPPD::removePPDAttribute(const AttributePtr& attribute) {
  ATLog("-[ATPPD removePPDAttribute:]", "Removing attribute {}...", attribute ? attribute->name() : std::nullopt);
  if (attribute == nullptr) return;
  if (const auto position = attributes().positionOf(attribute.get())) {
    unindexAttribute(*attribute, *position);
    attributes_.removeAt(*position);
  }
  removeObjectFromPPDObjects(attribute.get());
}

void ATPPD::removePPDAttributeWithLocalizations(const AttributePtr& attribute) {
  if (attribute == nullptr) return removePPDAttribute(attribute);
  const Attributes localizations = localizationForAttributeWithName(Text::orNull(attribute->name()), attribute->spec());
  removePPDAttribute(attribute);
  for (const auto& localization : localizations) removePPDAttribute(localization);
}

const std::vector<std::string>* ATPPD::supportedLocalizations() const {
  if (!supportedLocalizations_) {
    const auto attribute = attributeForName("cupsLanguages");
    const auto content =
        attribute && attribute->value() ? PPDExtentions::quotedValueContent(*attribute->value()) : std::nullopt;
    if (content) {
      const auto languages = Text::split(*content, Text::isWhiteSpace);
      supportedLocalizations_.emplace(languages.begin(), languages.end());
    }
  }
  return supportedLocalizations_ ? &*supportedLocalizations_ : nullptr;
}
