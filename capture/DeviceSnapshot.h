// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "readers/DeviceModelLibrary.h"

/// What a device-model library answers for one device, as the stored library's JSON: replayed by it, the tool gets the
/// same answers and writes the same PPD.
namespace DeviceSnapshot {

/// Asks the library all that the tool would ask it. `modelName` is the value of the PPD's `*ModelName`, quotes
/// included, or absent when the PPD has none. What a snapshot cannot hold (a date, say, or a key that is no text) is
/// left out, and described in `leftOut`. Throws ATException when the library is not there or fails, and for a number
/// that JSON cannot hold.
std::string of(DeviceModelLibrary& library, const std::string& uri, const std::optional<std::string>& modelName,
               std::vector<std::string>& leftOut);

}  // namespace DeviceSnapshot
