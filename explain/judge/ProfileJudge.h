// SPDX-License-Identifier: MIT
#pragma once

#include "explain/judge/Evidence.h"
#include "explain/report/Warnings.h"

/// What CUPS or a reader of the PPD will find odd about the colour profiles that got into it; looks at their files.
namespace ProfileJudge {

void judge(const Evidence& evidence, Warnings& warnings);

}  // namespace ProfileJudge
