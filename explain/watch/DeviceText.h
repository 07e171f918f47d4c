// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "explain/report/Report.h"
#include "readers/DeviceValue.h"

/// What the device gave, as text.
namespace DeviceText {

/// The value as text; absent stays absent.
Report::OptionalText of(const DeviceValue& value);
/// The same of a member; absent when the record is no map.
Report::OptionalText of(const DeviceValue& record, const char* key);
/// A medium as a record holds it.
Report::Medium mediumOf(const DeviceValue& record);

/// Whether the name of a choice is one of a custom medium: "Custom" and a hexadecimal number.
bool isCustomChoice(std::string_view name);

}  // namespace DeviceText
