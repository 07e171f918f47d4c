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
  /// ATCustomMediaTypesReaderImpl).
  virtual DeviceValue dataForKey(std::string_view key) const = 0;
  virtual DeviceValue familyNameForKey(std::string_view key) const = 0;
  virtual std::optional<std::string> printerURI() const = 0;
};

/// The one key that data is registered under.
inline constexpr const char* VMCustomMediaStorage = "VMCustomMediaStorage";
