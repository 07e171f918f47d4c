// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "explain/judge/Evidence.h"
#include "explain/report/Warnings.h"

/// What CUPS leaves out of a PPD that it opens, without a word, tried on libcups 2.4: statements that a quote swallows,
/// what stands behind a zero byte or a certain comment, a profile whose number another one has.
namespace CUPSLimits {

/// Every limit that the text breaks, in the order of its lines. Two texts that break the same limit in the same
/// statement give equal warnings, wherever the statement stands.
std::vector<Warning> brokenIn(std::string_view text);

/// Those of the result; what the input has, too, is marked so.
std::vector<Warning> brokenInResult(std::string_view input, std::string_view result);

/// The same of a run: of the result, or of the PPD as it was when there is none.
void judge(const Evidence& evidence, Warnings& warnings);

}  // namespace CUPSLimits
