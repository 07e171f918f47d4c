// SPDX-License-Identifier: MIT
#pragma once

#include "explain/judge/Evidence.h"
#include "explain/report/Warnings.h"

/// What is odd about the device's media that became choices: what nobody will see, and what a text of the device
/// breaks.
namespace MediaJudge {

void judge(const Evidence& evidence, Warnings& warnings);

}  // namespace MediaJudge
