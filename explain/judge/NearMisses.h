// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What somebody probably meant: a name that was looked for and is not there, compared with the names that are.
namespace NearMisses {

/// How a name is like another one, the likest first.
enum class Likeness {
  letterCase,    ///< only letter case, or blanks at its ends, are other
  looksTheSame,  ///< characters that look alike, or cannot be seen, are other: the Cyrillic "а", "0" for "O"
  nearly,        ///< a few characters are other, missing, added or exchanged
  none
};

/// Names that differ in digits alone are not like each other: they are two of a series. `one` and `other` are not
/// equal.
Likeness likeness(std::string_view one, std::string_view other);

struct Near {
  std::size_t index = 0;  ///< in the names that were given
  Likeness likeness = Likeness::none;
};

/// The likest of the names, of equally like ones the first; absent when none is like it.
std::optional<Near> nearest(std::string_view wanted, const std::vector<std::string>& names);

/// "letter-case", "looks-the-same", "nearly"; stable, for scripts.
const char* nameOf(Likeness likeness);

}  // namespace NearMisses
