// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "explain/judge/Evidence.h"
#include "explain/report/Warnings.h"

/// What CUPS makes of a PPD's text, tried on libcups 2.4: the limits that make it refuse a file, cut a text or swallow
/// a statement. The tool follows its own rules also where CUPS refuses the result; whoever looks into a queue that
/// misbehaves must be told.
namespace CUPSLimits {

/// Every limit that the text breaks, in the order of its lines. Two texts that break the same limit in the same
/// statement give equal warnings, wherever the statement stands.
std::vector<Warning> brokenIn(std::string_view text);

/// Those of the result; what the input has, too, is marked so.
std::vector<Warning> brokenInResult(std::string_view input, std::string_view result);

/// The same of a run: of the result, or of the PPD as it was when there is none.
void judge(const Evidence& evidence, Warnings& warnings);

}  // namespace CUPSLimits
