// SPDX-License-Identifier: MIT
#pragma once

#include "explain/judge/Evidence.h"
#include "explain/report/Warnings.h"

/// How far the PPD was read, and whether it is the one that was meant.
namespace InputJudge {

void judge(const Evidence& evidence, Warnings& warnings);

}  // namespace InputJudge
