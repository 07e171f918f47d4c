// SPDX-License-Identifier: MIT
#pragma once

#include "explain/judge/Evidence.h"
#include "explain/report/Warnings.h"

/// That CUPS does not open the result, and what of the device's media the user does not find in it.
namespace ConsequencesJudge {

void judge(const Evidence& evidence, Warnings& warnings);

}  // namespace ConsequencesJudge
