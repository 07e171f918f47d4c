// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

/// A PPD as libcups reads it: not strict, as the scheduler does, and in a process of its own, since some bytes make
/// libcups crash.
namespace CUPSCheck {

/// Why CUPS would not load the PPD, in its own words; absent when it would.
std::optional<std::string> whyRefused(const std::string& ppd);

/// What libcups finds in the result and not in the base PPD, or the other way round, and is none of what updaters write
/// for media: a filter, a command, an option, a choice. Absent when there is nothing; both must be PPDs that CUPS
/// loads.
std::optional<std::string> foreignStatement(const std::string& base, const std::string& result);

}  // namespace CUPSCheck
