// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <string_view>
#include <vector>

#include "base/Text.h"
#include "ppd/ATPPDAttribute.h"
#include "ppd/NameIndex.h"
#include "ppd/ObjectList.h"
#include "ppd/SubstringIndex.h"

/// Finds, among the attributes of one name in a list that is only appended to, those whose spec contains a text, and
/// those with a text as the middle one of three parts between "."; and tells whether any has it as its second part.
class SpecIndex {
 public:
  using Position = ObjectList<ATPPDAttribute>::Position;

  /// `position` must be above those added before.
  void add(const ATPPDAttribute& attribute, Position position) {
    if (!attribute.spec()) return;
    specs_.add(*attribute.spec());
    positions_.push_back(position);
    const auto parts = Text::split(*attribute.spec(), ".");
    if (parts.size() == 3) middleParts_.add(parts[1], position);
    if (parts.size() >= 3) secondParts_.add(parts[1], position);
  }

  void remove(const ATPPDAttribute& attribute, Position position) {
    const auto found = std::lower_bound(positions_.begin(), positions_.end(), position);
    if (found == positions_.end() || *found != position) return;
    specs_.remove(static_cast<SubstringIndex::Number>(found - positions_.begin()));
    const auto parts = Text::split(*attribute.spec(), ".");
    if (parts.size() == 3) middleParts_.remove(parts[1], position);
    if (parts.size() >= 3) secondParts_.remove(parts[1], position);
  }

  /// The positions in list order.
  NameIndex::Positions findContaining(std::string_view text) {
    NameIndex::Positions found;
    for (const auto number : specs_.allContaining(text)) found.insert(found.end(), positions_[number]);
    return found;
  }

  /// The positions in list order, valid until the next change.
  const NameIndex::Positions& findMiddlePart(std::string_view text) const { return middleParts_.find(text); }

  /// Whether a spec of three or more parts has this one as its second; takes the same time however many have.
  bool hasSecondPart(std::string_view text) const { return !secondParts_.find(text).empty(); }

 private:
  SubstringIndex specs_;
  std::vector<Position> positions_;  // by the number of the spec
  NameIndex middleParts_;
  NameIndex secondParts_;
};
