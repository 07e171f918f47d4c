// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "explain/Report.h"
#include "readers/DeviceValue.h"

/// What the device gave, as text, and what such a text breaks in the PPD that it gets into.
namespace DeviceText {

/// The value as text; absent stays absent.
Report::OptionalText of(const DeviceValue& value);
/// The same of a member; absent when the record is no map.
Report::OptionalText of(const DeviceValue& record, const char* key);
/// A medium as a record holds it.
Report::Medium mediumOf(const DeviceValue& record);

/// Whether the name of a choice is one of a custom medium: "Custom" and a hexadecimal number.
bool isCustomChoice(std::string_view name);

/// Whether somebody meant the category of a custom medium, as far as one can see.
bool isNearlyCustomCategory(std::string_view category);

/// Where it stands in its statement: CUPS counts the quotes behind the first colon only.
enum class Place { inFrontOfColon, behindColon };

/// Codes and texts of warnings; `what`: what the text is, for people.
std::vector<std::pair<const char*, std::string>> warningsOf(const char* what, const Report::OptionalText& text,
                                                            Place place);

/// Whether the text closes or changes the PostScript string around it (PostScript Language Reference, third edition,
/// section 3.2.2).
bool breaksPostScriptString(std::string_view text);

}  // namespace DeviceText
