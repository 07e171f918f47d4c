// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/ATLog.h"
#include "tests/support/TemporaryFolder.h"

/// The messages that are expected: these in the diagnostic build, none in every other.
inline std::vector<std::string> logged(std::vector<std::string> messages) {
  return ATDiagnosticLog ? std::move(messages) : std::vector<std::string>();
}

/// What goes to the log from the moment on at which this object is made. The log file of a process is opened once and
/// stays open, so all tests of a program share one file and each looks at its own part of it.
class TestLog {
 public:
  TestLog() : begin_(contentsOfFile(path()).size()) {}

  /// "SIGNATURE: MESSAGE" and a line feed for each message.
  std::string text() const { return contentsOfFile(path()).substr(begin_); }

  /// The messages of the operation with this signature, in order.
  std::vector<std::string> messages(std::string_view signature) const {
    std::vector<std::string> found;
    const std::string prefix = std::string(signature) + ": ";
    for (const std::string& entry : entries()) {
      if (entry.starts_with(prefix)) found.push_back(entry.substr(prefix.size()));
    }
    return found;
  }

  /// Expects exactly this text in the diagnostic build, and none in any other.
  void expect(const std::string& expected) const { EXPECT_EQ(text(), ATDiagnosticLog ? expected : std::string()); }

  /// The same for the lines "SIGNATURE: MESSAGE".
  void expectLines(const std::vector<std::string>& lines) const {
    std::string all;
    for (const std::string& line : lines) all += line + "\n";
    expect(all);
  }

 private:
  static const std::string& path() {
    static const TemporaryFolder folder;
    static const std::string path = [] {
      const std::string file = folder.file("log", "");
      ATOpenLogFile(file.c_str());
      return file;
    }();
    return path;
  }

  // A message may hold line ends, so an entry reaches to the next line that begins like a signature.
  std::vector<std::string> entries() const {
    const std::string all = text();
    std::vector<std::string> found;
    for (std::size_t start = 0; start < all.size();) {
      const std::size_t end = std::min({all.find("\n-[", start), all.find("\n+[", start), all.size() - 1});
      found.push_back(all.substr(start, end - start));
      start = end + 1;
    }
    return found;
  }

  std::size_t begin_;
};
