// SPDX-License-Identifier: MIT
#include "readers/ATDeviceFamilyNameReaderImpl.h"

#include <memory>

#include "base/ATLog.h"
#include "readers/DeviceModelLibrary.h"

DeviceValue ATDeviceFamilyNameReaderImpl::familyNameFromDevice(const std::string& deviceURI) {
  static constexpr const char* kSignature = "-[ATDeviceFamilyNameReaderImpl familyNameFromDevice:]";
  DeviceModelLibrary& library = DeviceModelLibrary::defaultLibrary();
  if (!library.isAvailable()) {
    ATLog(kSignature, "QZVorantisModel framework is not loaded");
    return std::make_shared<DeviceMap>();
  }
  if (!library.serviceInfoForDevice(deviceURI).withSpec) {
    ATLog(kSignature, "Service info was created using serviceInfoWithURI:");
  }
  return {};
}
