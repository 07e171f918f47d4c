// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <ios>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "ppd/document/IATPPDObject.h"
#include "ppd/lines/StatementString.h"
#include "tests/support/TestLog.h"

namespace TestSupport {

using Texts = std::vector<std::string>;

/// The texts of any list of statement strings.
template <class List>
Texts textsOf(const List& strings) {
  Texts texts;
  for (std::size_t index = 0; index < strings.size(); ++index) texts.emplace_back(strings[index].view());
  return texts;
}

/// The lines that an object is written as.
inline Texts linesOf(const IATPPDObject& object) {
  return textsOf(object.strings());
}

/// A file of its own with the given bytes, which goes away with the object.
class TemporaryFile {
 public:
  explicit TemporaryFile(std::string_view bytes = {}) : path_(testing::TempDir() + "ppd-test-XXXXXX") {
    const int descriptor = mkstemp(path_.data());
    if (descriptor < 0) std::abort();
    close(descriptor);
    std::ofstream(path_, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() { std::remove(path_.c_str()); }

  const std::string& path() const { return path_; }

  /// The file's bytes, from this one on.
  std::string bytes(std::streamoff start = 0) const {
    std::ifstream file(path_, std::ios::binary);
    file.seekg(start);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

  std::streamoff size() const { return std::ifstream(path_, std::ios::binary | std::ios::ate).tellg(); }

 private:
  std::string path_;
};

}  // namespace TestSupport
