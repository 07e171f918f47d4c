// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "explain/judge/Evidence.h"
#include "explain/report/Warnings.h"

/// What a run looked for and did not find, when something like it is there: a statement, group or option of the PPD, an
/// updater, a category, a member of the device snapshot.
namespace NearMissJudge {

void judge(const Evidence& evidence, Warnings& warnings);

/// Whether somebody meant the category of a custom medium, and wrote another one.
bool isNearlyCustomCategory(std::string_view category);

}  // namespace NearMissJudge
