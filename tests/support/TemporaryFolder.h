// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>  // NOLINT(modernize-deprecated-headers): mkdtemp is POSIX

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

/// A new empty folder that goes away with this object, with everything in it.
class TemporaryFolder {
 public:
  TemporaryFolder() : path_(testing::TempDir() + "autosetup-XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no temporary folder can be made");
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  std::string path(std::string_view name = "") const { return path_ + "/" + std::string(name); }

  /// Writes the file and returns its path.
  std::string file(std::string_view name, std::string_view contents) const {
    std::ofstream(path(name), std::ios::binary).write(contents.data(), static_cast<std::streamsize>(contents.size()));
    return path(name);
  }

 private:
  std::string path_;
};

/// The bytes of the file; empty when there is none.
inline std::string contentsOfFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}
