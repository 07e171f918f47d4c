// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "readers/DeviceModelLibrary.h"

/// What a device-model library answers for one device, as the stored library's JSON: replayed by it, the tool gets the
/// same answers and writes the same PPD.
namespace DeviceSnapshot {

struct Captured {
  std::string json;
  /// What a snapshot cannot hold (a date, say, or a key that is no text), described.
  std::vector<std::string> leftOut;
  /// What a run needs and the library does not have for the device, in words; none when there is a media storage.
  std::optional<std::string> missing;
};

/// Asks the library all that the tool would ask it. `modelName` is the value of the PPD's `*ModelName`, quotes
/// included, or absent when the PPD has none. Throws ATException when the library is not there or fails, and for a
/// number that JSON cannot hold.
Captured of(DeviceModelLibrary& library, const std::string& uri, const std::optional<std::string>& modelName);

}  // namespace DeviceSnapshot
