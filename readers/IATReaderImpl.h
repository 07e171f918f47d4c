// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "readers/DeviceValue.h"

struct ppd_file_s;  // libcups' PPD record (cups/ppd.h)

/// Produces one kind of device data. An implementation provides some of the operations; the others throw ATException.
class IATReaderImpl {
 public:
  virtual ~IATReaderImpl() = default;

  /// `deviceURI` may be empty, `modelName` absent or empty.
  virtual DeviceValue dataFromDevice(const std::string& deviceURI, const std::optional<std::string>& modelName);
  /// `ppd`: libcups' record of an open PPD, not owned.
  virtual DeviceValue dataFromPPD(ppd_file_s* ppd);
  /// `deviceURI` may be empty.
  virtual DeviceValue familyNameFromDevice(const std::string& deviceURI);
};
