// SPDX-License-Identifier: MIT
#pragma once

#include "readers/IATReaderImpl.h"

/// Stands in the registry's order ahead of the custom media reader, whose registration under the same key replaces
/// this one, so nothing reaches it there. It only makes the device's service information, for what that does inside
/// the library, and reads no family name. Both are meant: ATPDLCommandTypePPDUpdater finds the name on its own.
class ATDeviceFamilyNameReaderImpl : public IATReaderImpl {
 public:
  /// Absent; or an empty map (not a string, which is kept so) when the device-model library is not available.
  DeviceValue familyNameFromDevice(const std::string& deviceURI) override;
};
