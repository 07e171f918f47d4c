// SPDX-License-Identifier: MIT
#pragma once

#include "explain/judge/Evidence.h"
#include "explain/report/Warnings.h"

/// All judges of a run. A judge is a function `judge(evidence, warnings)` in a namespace of its own, which adds what it
/// finds odd; it is called of a run that succeeded, or of any, as the list in Judges.cpp says.
namespace Judges {

/// Lets every judge look at the evidence that is there for it.
void judge(const Evidence& evidence, Warnings& warnings);

}  // namespace Judges
