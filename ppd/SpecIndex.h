// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <string_view>
#include <vector>

#include "ppd/ATPPDAttribute.h"
#include "ppd/ObjectList.h"
#include "ppd/SubstringIndex.h"

/// Finds, among the attributes of one name in a list that is only appended to, those whose spec contains a text.
class SpecIndex {
 public:
  using Position = ObjectList<ATPPDAttribute>::Position;

  /// `position` must be above those added before.
  void add(const ATPPDAttribute& attribute, Position position) {
    if (!attribute.spec()) return;
    specs_.add(*attribute.spec());
    positions_.push_back(position);
  }

  void remove(Position position) {
    const auto found = std::lower_bound(positions_.begin(), positions_.end(), position);
    if (found == positions_.end() || *found != position) return;
    specs_.remove(static_cast<SubstringIndex::Number>(found - positions_.begin()));
  }

  /// The positions in list order.
  std::vector<Position> find(std::string_view part) {
    std::vector<Position> found;
    for (const auto number : specs_.allContaining(part)) found.push_back(positions_[number]);
    return found;
  }

 private:
  SubstringIndex specs_;
  std::vector<Position> positions_;  // by the number of the spec
};
