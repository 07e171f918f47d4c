// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "driver/ATLog.h"
#include "ppd/IATPPDObject.h"
#include "ppd/StatementString.h"

namespace TestSupport {

using Texts = std::vector<std::string>;

inline Texts textsOf(const StatementStrings& strings) {
  Texts texts;
  for (const StatementString& string : strings) texts.emplace_back(string.view());
  return texts;
}

inline Texts textsOf(const IATPPDObject& object) {
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

  std::string bytes() const {
    std::ifstream file(path_, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

 private:
  std::string path_;
};

/// The messages that are logged while the object lives, "SIGNATURE: MESSAGE" and a line feed each. Only the
/// diagnostic build logs any.
class Log {
 public:
  Log() : start_(file().bytes().size()) {}

  std::string messages() const { return file().bytes().substr(start_); }

  /// Expects exactly these messages in the diagnostic build, and none otherwise.
  void expect(const std::string& expected) const { EXPECT_EQ(messages(), ATDiagnosticLog ? expected : std::string()); }

 private:
  // The log file stays open for the whole process, so all tests share it.
  static const TemporaryFile& file() {
    static const TemporaryFile shared;
    static const bool opened = (ATOpenLogFile(shared.path().c_str()), true);
    static_cast<void>(opened);
    return shared;
  }

  std::size_t start_;
};

}  // namespace TestSupport
