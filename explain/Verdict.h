// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "explain/Report.h"

/// What the reader of a report sees first: a run in three sentences. Made of what the report holds; nothing is judged
/// anew.
namespace Verdict {

enum class Colour { good, odd, bad };  ///< good only when there is nothing to look at

Colour colourOf(const Report& report);

/// Whether the PPD was written, with the exit status of the tool.
std::string outcome(const Report& report);

/// How many media the device has, and what became of the user's; empty when no media were asked for.
std::string media(const Report& report);

/// How many warnings of which code; empty when there are none.
std::string warnings(const Report& report);

}  // namespace Verdict
