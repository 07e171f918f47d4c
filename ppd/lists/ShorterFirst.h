// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

/// The order in which texts are looked for. Short ones come first, so that most comparisons look at no bytes. A sorted
/// look-up, unlike one by hashes, is never slow, whatever the texts are.
struct ShorterFirst {
  using is_transparent = void;
  bool operator()(std::string_view one, std::string_view other) const {
    return one.size() != other.size() ? one.size() < other.size() : one < other;
  }
};
