// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "explain/Report.h"

/// What CUPS or a reader of the PPD will find odd about a colour profile that got into it.
namespace ProfileWarnings {

/// Codes and texts; looks at the profile's file, if there is one.
std::vector<std::pair<const char*, std::string>> of(const Report::Profile& profile);

}  // namespace ProfileWarnings
