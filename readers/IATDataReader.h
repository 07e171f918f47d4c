// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "readers/DeviceValue.h"

/// What updaters see of the printer.
class IATDataReader {
 public:
  virtual ~IATDataReader() = default;

  /// The data of this key, or absent; for `VMCustomMediaStorage` the media list dictionary (see
  /// ATCustomMediaTypesReaderImpl). Throws ATException when the device-model library fails.
  virtual DeviceValue dataForKey(std::string_view key) const = 0;
  /// The family name of this key, or absent. Throws ATException when its implementation has none to offer.
  virtual DeviceValue familyNameForKey(std::string_view key) const = 0;
  /// What names the printer to the device-model library.
  virtual std::optional<std::string> printerURI() const = 0;
};

/// The one key that data is registered under.
inline constexpr const char* VMCustomMediaStorage = "VMCustomMediaStorage";
