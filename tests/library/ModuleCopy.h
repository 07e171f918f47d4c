// SPDX-License-Identifier: MIT
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/support/TemporaryFolder.h"

/// A copy of a shared object under a path of its own. The dynamic loader takes it for another object, so it begins with
/// fresh state, whatever earlier tests of this process did with the original.
class ModuleCopy {
 public:
  explicit ModuleCopy(const std::string& original) : path_(folder_.path("module.so")) {
    std::filesystem::copy_file(original, path_);
  }

  const std::string& path() const { return path_; }

  /// The address of an exported symbol, or null. Loads the copy, which stays loaded.
  void* symbol(const char* name) {
    void* object = dlopen(path_.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (object == nullptr) ADD_FAILURE() << dlerror();
    return object == nullptr ? nullptr : dlsym(object, name);
  }

  bool isLoaded() const { return dlopen(path_.c_str(), RTLD_NOW | RTLD_NOLOAD) != nullptr; }

 private:
  TemporaryFolder folder_;
  std::string path_;
};
