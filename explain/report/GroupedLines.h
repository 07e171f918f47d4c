// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "explain/report/Warning.h"

/// Many warnings as few lines for people.
namespace GroupedLines {

/// So many warnings of one code are a line each.
inline constexpr std::size_t kFew = 3;

/// The sentences in their order, each with its code; of more than a few of one code only the first, with how many more
/// there are.
std::vector<std::string> of(const std::vector<Warning>& warnings);

}  // namespace GroupedLines
