// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "explain/report/Warning.h"

/// The words of warnings, for all programs and forms of reports.
namespace Sentences {

/// What the warning says, in a sentence or two; everything in it is visible text (Wording::visible).
std::string of(const Warning& warning);

/// The same, marked when the PPD had it before the run.
std::string marked(const Warning& warning);

}  // namespace Sentences
