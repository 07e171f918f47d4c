// SPDX-License-Identifier: MIT
#pragma once

#include "explain/judge/Evidence.h"
#include "explain/report/Warnings.h"

/// What is left of earlier setups, or is gone with them.
namespace LeftoversJudge {

void judge(const Evidence& evidence, Warnings& warnings);

}  // namespace LeftoversJudge
