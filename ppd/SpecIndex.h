// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

#include "base/Text.h"
#include "ppd/ATPPDAttribute.h"
#include "ppd/NameIndex.h"
#include "ppd/ObjectList.h"
#include "ppd/SubstringIndex.h"

/// Finds, among the attributes of one name in a list that is only appended to, those whose spec contains a text, and
/// those whose spec has three parts and a text as the middle one.
class SpecIndex {
 public:
  using Position = ObjectList<ATPPDAttribute>::Position;

  /// `position` must be above those added before.
  void add(const ATPPDAttribute& attribute, Position position) {
    if (!attribute.spec()) return;
    specs_.add(*attribute.spec());
    positions_.push_back(position);
    if (const auto part = middlePart(*attribute.spec())) middleParts_.add(*part, position);
  }

  void remove(const ATPPDAttribute& attribute, Position position) {
    const auto found = std::lower_bound(positions_.begin(), positions_.end(), position);
    if (found == positions_.end() || *found != position) return;
    specs_.remove(static_cast<SubstringIndex::Number>(found - positions_.begin()));
    if (const auto part = middlePart(*attribute.spec())) middleParts_.remove(*part, position);
  }

  /// The positions in list order.
  NameIndex::Positions findContaining(std::string_view text) {
    NameIndex::Positions found;
    for (const auto number : specs_.allContaining(text)) found.insert(found.end(), positions_[number]);
    return found;
  }

  /// The positions in list order, valid until the next change.
  const NameIndex::Positions& findMiddlePart(std::string_view text) const { return middleParts_.find(text); }

 private:
  static std::optional<std::string_view> middlePart(std::string_view spec) {
    if (std::count(spec.begin(), spec.end(), '.') != 2) return std::nullopt;
    return Text::split(spec, ".")[1];
  }

  SubstringIndex specs_;
  std::vector<Position> positions_;  // by the number of the spec
  NameIndex middleParts_;
};
