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

void DeviceModelLibrary::setDefaultLibrary(DeviceModelLibrary* library) {
  replacement = library;
}
