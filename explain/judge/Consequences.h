// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "explain/report/Report.h"

/// What a run comes to for those who print: libcups reads the PPD that was written, and each of the device's media is
/// looked for in it.
namespace Consequences {

/// Fills in what the report says of CUPS and of what was lost. `input`: the PPD as it was, `result`: as it is written;
/// empty when there is none.
void find(Report& report, std::string_view input, std::string_view result);

}  // namespace Consequences
