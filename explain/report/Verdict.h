// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "explain/report/Report.h"

/// What the reader of a report sees first: a run in three sentences. Made of what the report holds; nothing is judged
/// anew.
namespace Verdict {

/// `good` only when there is nothing to look at; `refused`: something is written that CUPS does not open.
enum class Colour { good, odd, bad, refused };

Colour colourOf(const Report& report);
/// "good", "odd", "bad" or "refused".
const char* nameOf(Colour colour);

/// Whether the PPD was written, with the exit status of the tool.
std::string outcome(const Report& report);

struct MediaCounts {
  std::size_t onDevice = 0;
  std::size_t custom = 0;  ///< of the user's
  std::size_t added = 0;   ///< of those, how many became choices that CUPS reads
  std::size_t lost = 0;    ///< are not found by users, or not with all that they have
};

/// What the last of the media updaters did; absent when the media of no device are known.
std::optional<MediaCounts> mediaCounts(const Report& report);
/// The same in words; empty when absent.
std::string media(const Report& report);

/// The codes of the report's warnings in their order, with how many there are of each.
std::vector<std::pair<WarningCode, std::size_t>> warningCounts(const Report& report);
/// The same in words; empty when there are none.
std::string warnings(const Report& report);

}  // namespace Verdict
