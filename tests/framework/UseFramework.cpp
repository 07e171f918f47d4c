// SPDX-License-Identifier: MIT
//
// Linked into copies of the programs: they then use the Objective-C framework, as the programs on macOS do. The
// environment variable AT_TEST_FRAMEWORK names the framework's shared object, which is loaded before main, as a
// weakly linked framework is; without it there is none.

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

#include "readers/framework/FrameworkDeviceModelLibrary.h"

namespace {

void loadFramework() {
  const char* path = std::getenv("AT_TEST_FRAMEWORK");
  if (path == nullptr || dlopen(path, RTLD_NOW | RTLD_GLOBAL) != nullptr) return;
  std::fprintf(stderr, "%s\n", dlerror());
  std::abort();
}

[[maybe_unused]] const bool used = [] {
  static FrameworkDeviceModelLibrary library;
  loadFramework();
  DeviceModelLibrary::setDefaultLibrary(&library);
  return true;
}();

}  // namespace
