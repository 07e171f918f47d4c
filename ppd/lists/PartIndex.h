// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

/// Narrows the search for a text that contains a given part: it knows which texts hold which three bytes in a row, and
/// gives those that hold the rarest three of the part. The caller looks whether they contain all of it.
/// A part of less than three bytes is looked for in every text. So is, at worst, one whose every three bytes stand in
/// every text: look-ups are then as slow as a walk. With 2,000 media, whose IDs differ, a few texts are left. Each byte
/// of a text takes four bytes. Compared with a plain search in tests/ppd/PartIndexTest.cpp.
class PartIndex {
 public:
  using Number = std::uint32_t;
  using Numbers = std::vector<Number>;

  /// Adds a text under a number that none before has.
  void add(std::string_view text, Number number);

  /// The numbers of the texts that may contain `part`, in the order of adding; valid until the next change.
  const Numbers& candidates(std::string_view part) const;

 private:
  Numbers all_;
  std::unordered_map<std::uint32_t, Numbers> byThreeBytes_;
};
