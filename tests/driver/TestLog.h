// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "driver/ATLog.h"
#include "tests/driver/TemporaryFolder.h"

/// What goes to the log from the moment on at which this object is made. The log file of a process is opened once and
/// stays open, so all tests of a program share one file and each looks at its own part of it.
class TestLog {
 public:
  TestLog() : begin_(contentsOfFile(path()).size()) {}

  std::string text() const { return contentsOfFile(path()).substr(begin_); }

  /// Expects exactly these lines "SIGNATURE: MESSAGE" in the diagnostic build, and none in any other.
  void expectLines(const std::vector<std::string>& lines) const {
    std::string all;
    for (const std::string& line : lines) all += line + "\n";
    EXPECT_EQ(text(), ATDiagnosticLog ? all : "");
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

  std::size_t begin_;
};
