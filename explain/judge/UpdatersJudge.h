// SPDX-License-Identifier: MIT
#pragma once

#include "explain/judge/Evidence.h"
#include "explain/report/Warnings.h"

/// Whether the PPD says what is to be done to it: its updaters and languages.
namespace UpdatersJudge {

void judge(const Evidence& evidence, Warnings& warnings);

}  // namespace UpdatersJudge
