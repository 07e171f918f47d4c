// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "explain/report/Warnings.h"

/// What a text of the device breaks in the PPD that it gets into.
namespace DeviceTextJudge {

/// Where it stands in its statement: CUPS counts the quotes behind the first colon only.
enum class Place { inFrontOfColon, behindColon };

/// `what`: what the text is, for people; `about`: the medium whose it is, if it is one's.
void judge(const char* what, const std::optional<std::string>& text, Place place, Warnings& warnings,
           const std::optional<AboutMedium>& about = std::nullopt);

/// Whether the text closes or changes the PostScript string around it (PostScript Language Reference, third edition,
/// section 3.2.2).
bool breaksPostScriptString(std::string_view text);

}  // namespace DeviceTextJudge
