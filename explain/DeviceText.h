// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "explain/Report.h"

/// What a text of the device breaks in the PPD that it gets into.
namespace DeviceText {

/// Where it stands in its statement: CUPS counts the quotes behind the first colon only.
enum class Place { inFrontOfColon, behindColon };

/// Codes and texts of warnings; `what`: what the text is, for people.
std::vector<std::pair<const char*, std::string>> warningsOf(const char* what, const Report::OptionalText& text,
                                                            Place place);

/// Whether the text closes or changes the PostScript string around it (PostScript Language Reference, third edition,
/// section 3.2.2).
bool breaksPostScriptString(std::string_view text);

}  // namespace DeviceText
