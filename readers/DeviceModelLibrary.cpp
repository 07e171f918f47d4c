// SPDX-License-Identifier: MIT
#include "readers/DeviceModelLibrary.h"

#ifdef __APPLE__
#include "readers/framework/FrameworkDeviceModelLibrary.h"
using SystemDeviceModelLibrary = FrameworkDeviceModelLibrary;
#else
#include "readers/SharedObjectDeviceModelLibrary.h"
using SystemDeviceModelLibrary = SharedObjectDeviceModelLibrary;
#endif

namespace {
DeviceModelLibrary* replacement = nullptr;
}

DeviceModelLibrary& DeviceModelLibrary::defaultLibrary() {
  static SystemDeviceModelLibrary library;
  if (replacement != nullptr) return *replacement;
  return library;
}

DeviceModelLibrary::MadeServiceInfo DeviceModelLibrary::serviceInfoForDevice(
    const std::string& uri, const std::optional<std::string>& modelName) {
  if (!offersServiceInfoWithSpec()) return {serviceInfoWithURI(uri), false};
  ServiceInfoSpec spec;
  if (!uri.empty()) spec.uri = uri;
  if (modelName && !modelName->empty()) spec.modelName = modelName;
  return {serviceInfoWithSpec(spec), true};
}

void DeviceModelLibrary::setDefaultLibrary(DeviceModelLibrary* library) {
  replacement = library;
}
