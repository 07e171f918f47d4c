// SPDX-License-Identifier: MIT
#include "ppd/ATPPD.h"

#include <fmt/format.h>

#include <set>
#include <utility>

#include "base/Text.h"
#include "driver/ATLog.h"
#include "ppd/PPDExtentions.h"

namespace {
constexpr std::size_t kScansBeforeIndex = 4;
}

void ATPPD::addString(StatementString string, PPDLineType type) {
  switch (type) {
    case PPDLineTypeComment:
    case PPDLineTypeNewLine:
      if (groupOpened_) {
        handToLastObject(std::move(string), type);
      } else {
        appendObjectToPPDObjects(ATPPDObject::objectWithString(std::move(string), type));
      }
      break;
    case PPDLineTypeStatement:
      groupOpened_ ? handToLastObject(std::move(string), type) : addAttribute(std::move(string));
      break;
    case PPDLineTypeOpenUI:
      groupOpened_ ? handToLastObject(std::move(string), type) : addOption(std::move(string));
      break;
    case PPDLineTypeOpenGroup:
      addGroup(std::move(string));
      break;
    case PPDLineTypeCloseGroup:
      handToLastObject(std::move(string), type);
      groupOpened_ = false;
      break;
    case PPDLineTypeContinuation:
    case PPDLineTypeEnd:
    case PPDLineTypeCloseUI:
    case PPDLineTypeOrderDependency:
    case PPDLineTypeDefaultChoice:
    case PPDLineTypeChoice:
    case PPDLineTypeChoiceContinuation:
    case PPDLineTypeChoiceEnd:
      handToLastObject(std::move(string), type);
      break;
    default:
      ATLog("-[ATPPD addString:ofType:]", "ERROR: String {} of type {} is ignored!", string.view(),
            static_cast<int>(type));
  }
}

void ATPPD::addAttribute(StatementString string) {
  auto attribute = std::make_shared<ATPPDAttribute>();
  attribute->addString(std::move(string), PPDLineTypeStatement);
  listAttribute(attribute);
  appendObjectToPPDObjects(std::move(attribute));
}

void ATPPD::addGroup(StatementString string) {
  groups_.push_back(ATPPDGroup::groupWithString(std::move(string)));
  appendObjectToPPDObjects(groups_.back());
  groupOpened_ = true;
}

void ATPPD::addOption(StatementString string) {
  appendObjectToPPDObjects(ATPPDOption::optionWithString(std::move(string)));
}

void ATPPD::handToLastObject(StatementString string, PPDLineType type) {
  if (!PPDObjects().empty()) PPDObjects().back()->addString(std::move(string), type);
}

void ATPPD::listAttribute(const AttributePtr& attribute) {
  const auto position = attributes_.append(attribute);
  if (attributeIndex_) attributeIndex_->add(*attribute, position);
  if (specIndexes_.empty() || !attribute->name()) return;
  if (const auto index = specIndexes_.find(*attribute->name()); index != specIndexes_.end()) {
    index->second.add(*attribute, position);
  }
}

ATPPD::AttributePtr ATPPD::attributeForName(std::string_view name, const Spec& spec) const {
  if (!attributeIndex_ && scans_++ < kScansBeforeIndex) return scanForAttribute(name, spec);
  const NameIndex::Positions& positions = attributeIndex().find(name, spec);
  return positions.empty() ? nullptr : attributes_.at(*positions.begin());
}

ATPPD::AttributePtr ATPPD::scanForAttribute(std::string_view name, const Spec& spec) const {
  for (const auto& attribute : attributes_) {
    if (attribute->isNamed(name) && (!spec || attribute->spec() == spec)) return attribute;
  }
  return nullptr;
}

const AttributeIndex& ATPPD::attributeIndex() const {
  if (attributeIndex_) return *attributeIndex_;
  attributeIndex_.emplace();
  for (auto attribute = attributes_.begin(); attribute != attributes_.end(); ++attribute) {
    attributeIndex_->add(**attribute, attribute.position());
  }
  return *attributeIndex_;
}

ATPPD::Attributes ATPPD::localizationForAttributeWithName(std::string_view name, const Spec& spec) const {
  const auto* languages = supportedLocalizations();
  if (languages == nullptr) return {};
  NameIndex::Positions positions;
  for (const std::string& language : *languages) {
    positions.merge(NameIndex::Positions(attributeIndex().find(fmt::format("{}.{}", language, name), spec)));
  }
  Attributes found;
  for (const auto position : positions) found.push_back(attributes_.at(position));
  return found;
}

ATPPD::Attributes ATPPD::attributesForName(std::string_view name) const {
  Attributes found;
  for (const auto position : attributeIndex().find(name, std::nullopt)) found.push_back(attributes_.at(position));
  return found;
}

ATPPD::Attributes ATPPD::attributesForNameWithSpecContaining(std::string_view name, std::string_view part) const {
  Attributes found;
  for (const auto position : specIndex(name).find(part)) found.push_back(attributes_.at(position));
  return found;
}

SpecIndex& ATPPD::specIndex(std::string_view name) const {
  const auto [index, isNew] = specIndexes_.try_emplace(std::string(name));
  if (isNew) {
    for (const auto position : attributeIndex().find(name, std::nullopt)) {
      index->second.add(*attributes_.at(position), position);
    }
  }
  return index->second;
}

std::shared_ptr<ATPPDGroup> ATPPD::groupForName(std::string_view name) const {
  for (const auto& group : groups_) {
    if (group->name() == name) return group;
  }
  return nullptr;
}

std::shared_ptr<ATPPDOption> ATPPD::optionForName(std::string_view name) const {
  for (const auto& group : groups_) {
    if (auto option = group->optionForName(name)) return option;
  }
  return nullptr;
}

void ATPPD::addPPDAttribute(const AttributePtr& attribute) {
  if (attribute == nullptr) return;
  ATLog("-[ATPPD addPPDAttribute:]", "Adding {} attribute with value {}", attribute->name(), attribute->value());
  if (attributes_.empty()) {
    appendObjectToPPDObjects(attribute);
  } else if (const auto last = PPDObjects().positionOf(attributes_.back().get())) {
    editablePPDObjects().insertAfter(*last, attribute);
  }
  listAttribute(attribute);
}

void ATPPD::removePPDAttribute(const AttributePtr& attribute) {
  ATLog("-[ATPPD removePPDAttribute:]", "Removing attribute {}...", attribute ? attribute->name() : std::nullopt);
  if (attribute == nullptr) return;
  if (const auto position = attributes_.positionOf(attribute.get())) {
    if (attributeIndex_) attributeIndex_->remove(*attribute, *position);
    for (auto& [name, index] : specIndexes_) index.remove(*position);
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
