// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ppd/ATPPDAttribute.h"
#include "ppd/ATPPDCompoundObject.h"
#include "ppd/ATPPDGroup.h"
#include "ppd/AttributeIndex.h"
#include "ppd/FirstByName.h"
#include "ppd/LocalizationIndex.h"
#include "ppd/SpecIndex.h"
#include "ppd/UnmadeLines.h"

/// The PPD document: the root of the tree. It takes every line of the file with its type, decides which object holds
/// it, and offers the look-ups and edits of the updaters. Written back, an unchanged document gives the bytes that
/// were read.
///
/// A document that names no updaters is read and written and never asked for more than one attribute. So it keeps its
/// lines as they come, and makes its objects at the first question that needs them.
///
/// Names and specs are compared exactly, letter case included; the first match in list order wins. Look-ups see the
/// attributes at document level only, never those inside groups or options.
class ATPPD : public ATPPDCompoundObject {
 public:
  using AttributePtr = std::shared_ptr<ATPPDAttribute>;
  using Attributes = std::vector<AttributePtr>;
  using Spec = std::optional<std::string>;

  ATPPD() = default;

  /// Takes the next line of the file. A line of no known type is dropped and logged; a line for the last child is
  /// dropped when there is none.
  void addString(const StatementString& string, PPDLineType type) override;
  void giveStringsTo(IStatementSink& sink) const override;
  const PPDObjectList& PPDObjects() const override;

  /// The first attribute of this name (without the asterisk) and spec, or null. An absent spec matches any.
  AttributePtr attributeForName(std::string_view name, const Spec& spec = std::nullopt) const;

  /// The attributes named "L.name" for a supported language L, with this spec unless it is absent, in list order.
  Attributes localizationForAttributeWithName(std::string_view name, const Spec& spec = std::nullopt) const;

  /// Every attribute of this name, in list order.
  Attributes attributesForName(std::string_view name) const;

  /// Those of them whose spec contains `part` anywhere, in list order; none for the empty string. Finding them does
  /// not walk the list, so that cleaning up after thousands of media stays proportional to what is cleaned up.
  Attributes attributesForNameWithSpecContaining(std::string_view name, std::string_view part) const;

  /// Those of them whose spec has exactly three parts between "." and this one in the middle, in list order.
  Attributes attributesForNameWithSpecMiddlePart(std::string_view name, std::string_view part) const;

  /// Whether the spec of any attribute of this name has three or more parts and this one as its second.
  bool hasAttributeForNameWithSpecSecondPart(std::string_view name, std::string_view part) const;

  /// The first group of this name, or null.
  std::shared_ptr<ATPPDGroup> groupForName(std::string_view name) const;

  /// The first option of this name inside a group, or null. Options outside every group are not searched: that is
  /// meant.
  std::shared_ptr<ATPPDOption> optionForName(std::string_view name) const;

  /// Adds the attribute (null is ignored) behind the last one of `attributes`, among the children directly behind it
  /// too, ahead of whatever follows there. Look-ups find it by the name and the spec that it has at this moment.
  void addPPDAttribute(const AttributePtr& attribute);

  /// Removes this very attribute (which may be null or not of this document).
  void removePPDAttribute(const AttributePtr& attribute);
  /// The same, with every localization of its name and spec.
  void removePPDAttributeWithLocalizations(const AttributePtr& attribute);

  /// The attributes at document level, in the order in which they were added.
  const ObjectList<ATPPDAttribute>& attributes() const;
  /// The groups in file order.
  const std::vector<std::shared_ptr<ATPPDGroup>>& groups() const;

  /// The language codes of `*cupsLanguages`, split at every single white-space character (empty ones and repeats are
  /// kept), or null without a quoted value. Kept once found, also when the attribute changes later.
  const std::vector<std::string>* supportedLocalizations() const;

  /// Whether a group has been opened and not yet closed.
  bool groupOpened() const { return groupOpened_; }
  void setGroupOpened(bool opened) { groupOpened_ = opened; }

 private:
  // The object that a line belongs to: a new one of some kind, or the last one there is.
  enum class Owner : std::uint8_t { newObject, newAttribute, newOption, newGroup, lastObject };
  using Line = UnmadeLines<Owner>::Line;
  std::optional<Owner> ownerOfLine(PPDLineType type) const;
  bool isRefusedByLastObject(Owner owner, PPDLineType type) const;
  void makeObjects();
  void makeObject(const Line& line);
  bool hasLineOfAttribute(std::string_view name) const;
  void listAttribute(const AttributePtr& attribute);
  AttributePtr walkToAttribute(std::string_view name, const Spec& spec) const;
  const AttributeIndex& attributeIndex() const;
  SpecIndex& specIndex(std::string_view name) const;
  LocalizationIndex& localizationIndex(std::string_view name) const;
  void indexAttribute(const ATPPDAttribute& attribute, ObjectList<ATPPDAttribute>::Position position);
  void unindexAttribute(const ATPPDAttribute& attribute, ObjectList<ATPPDAttribute>::Position position);
  Attributes attributesAt(const NameIndex::Positions& positions) const;

  UnmadeLines<Owner> lines_;               // read while nobody had asked for objects, and not yet made into any
  bool objectsMade_ = false;               // from the first question on, lines go to their objects at once
  std::optional<Owner> lastObjectsOwner_;  // until then: how the last object comes about; absent while there is none
  ObjectList<ATPPDAttribute> attributes_;
  std::vector<std::shared_ptr<ATPPDGroup>> groups_;
  mutable std::optional<std::vector<std::string>> supportedLocalizations_;
  bool groupOpened_ = false;

  // The first look-ups walk the list; most runs make no more than one. Then an index is built and kept up to date.
  mutable std::size_t walks_ = 0;
  mutable std::optional<AttributeIndex> attributeIndex_;
  mutable std::map<std::string, SpecIndex, std::less<>> specIndexes_;                  // by name, built on demand
  mutable std::map<std::string, LocalizationIndex, std::less<>> localizationIndexes_;  // the same
  FirstByName<ATPPDGroup> groupsByName_;
  FirstByName<ATPPDOption> optionsByName_;
  mutable std::vector<std::shared_ptr<ATPPDOption>> optionsInGroups_;  // collected on demand
  mutable std::size_t optionsCollectedAt_ = 0;                         // what `ATPPDGroup::optionsOpened` was then
};
