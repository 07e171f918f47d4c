// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ppd/document/ATPPDAttribute.h"
#include "ppd/document/ATPPDCompoundObject.h"
#include "ppd/document/ATPPDGroup.h"
#include "ppd/document/StatementIndex.h"
#include "ppd/lists/Found.h"

/// The PPD document: the root of the tree. It hands every line of the file to the object that owns it, and offers the
/// look-ups and edits of the updaters. Written back, an unchanged document gives the bytes that were read.
///
/// Names and specs are compared exactly, letter case included; the first match in list order wins. Look-ups see the
/// attributes at document level only, never those inside groups or options, by the names and specs that they have now.
class ATPPD : public ATPPDCompoundObject {
 public:
  using AttributePtr = std::shared_ptr<ATPPDAttribute>;
  using Attributes = std::vector<AttributePtr>;
  using AttributeList = ObjectList<ATPPDAttribute>;
  using Spec = std::optional<std::string_view>;

  ATPPD() : ATPPDCompoundObject(std::make_shared<Budget>()), attributes_(&budget()) {}
  /// What others still hold of the attributes costs nothing any more.
  ~ATPPD() override;

  /// Takes the next line of the file. A line of no known type is dropped and logged; a line for the last child is
  /// dropped when there is none.
  void addString(const StatementString& string, PPDLineType type) override;

  /// The first attribute of this name (without the asterisk) and spec, or null. An absent spec matches any.
  AttributePtr attributeForName(std::string_view name, const Spec& spec = std::nullopt) const;

  /// The attributes named "L.name" for a supported language L, with this spec unless it is absent, in list order.
  Attributes localizationForAttributeWithName(std::string_view name, const Spec& spec = std::nullopt) const;

  /// Every attribute of this name, in list order.
  Attributes attributesForName(std::string_view name) const;
  /// Those whose spec contains a text anywhere; the empty one is contained in nothing.
  Attributes attributesForName(std::string_view name, std::string_view inSpec) const;

  /// The first group of this name, or null.
  std::shared_ptr<ATPPDGroup> groupForName(std::string_view name) const;

  /// The first option of this name inside a group, or null. Options outside every group are not searched: that is
  /// meant.
  std::shared_ptr<ATPPDOption> optionForName(std::string_view name) const;

  /// Adds the attribute (null is ignored) behind the last one of `attributes`, among the children directly behind it
  /// too, ahead of whatever follows there.
  void addPPDAttribute(const AttributePtr& attribute);

  /// Removes this very attribute (which may be null or not of this document).
  void removePPDAttribute(AttributePtr attribute);
  /// The same, with every localization of its name and spec. Null is only logged.
  void removePPDAttributeWithLocalizations(AttributePtr attribute);

  /// The attributes at document level, in the order in which they were added.
  const AttributeList& attributes() const { return attributes_; }
  /// The groups in file order.
  const std::vector<std::shared_ptr<ATPPDGroup>>& groups() const { return groups_; }

  /// The language codes of `*cupsLanguages`, split at every single white-space character (empty ones and repeats are
  /// kept), or null without a quoted value. Kept once found, also when the attribute changes later.
  const std::vector<std::string>* supportedLocalizations() const;

  /// What the run may still make of this document and ask it. It is spent here, in the tree and in its lists.
  Budget& budget() const { return *sharedBudget(); }

  /// Whether a group has been opened and not yet closed.
  bool groupOpened() const { return groupOpened_; }
  void setGroupOpened(bool opened) { groupOpened_ = opened; }

 private:
  // The attributes, for a look-up, which costs a visit also when it comes to none.
  const AttributeList& asked(const Spec& spec = std::nullopt) const {
    budget().visit();
    budget().visitText(spec.value_or("").size());
    return attributes_;
  }
  const std::vector<std::string>* knownLocalizations() const;
  const std::vector<std::string>& localizedNames(std::string_view name) const;
  void addObject(const StatementString& string, PPDLineType type);
  void addLineToLastChild(const StatementString& string, PPDLineType type);
  void addGroup(const StatementString& string);
  Attributes attributesAt(const StatementIndex::Positions& positions) const;

  AttributeList attributes_;
  std::vector<std::shared_ptr<ATPPDGroup>> groups_;
  bool groupOpened_ = false;
  mutable std::optional<std::vector<std::string>> supportedLocalizations_;
  mutable std::size_t sizeOfLocalizations_ = 0;                                           // in visits
  mutable StatementIndex index_;                                                          // of attributes_
  mutable std::map<std::string, std::vector<std::string>, ShorterFirst> localizedNames_;  // by name
  mutable Found<ATPPDGroup> foundGroups_;
  mutable Found<ATPPDOption> foundOptions_;
};
