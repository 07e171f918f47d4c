// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "driver/ATLog.h"

/// The messages that are logged while it lives. Outside the diagnostic build there never are any.
class CapturedLog {
 public:
  CapturedLog() : start_(text().size()) {}

  /// The messages of the operation with this signature, in order.
  std::vector<std::string> messages(std::string_view signature) const {
    std::vector<std::string> found;
    const std::string prefix = std::string(signature) + ": ";
    for (const std::string& entry : entries()) {
      if (entry.starts_with(prefix)) found.push_back(entry.substr(prefix.size()));
    }
    return found;
  }

 private:
  // One log file for the process, which no longer has a name and is read through its descriptor.
  static int file() {
    static const int descriptor = [] {
      std::string path = testing::TempDir() + "updaters-log-XXXXXX";
      const int opened = mkstemp(path.data());
      ATOpenLogFile(path.c_str());
      unlink(path.c_str());
      return opened;
    }();
    return descriptor;
  }

  static std::string text() {
    std::string all;
    char buffer[4096];
    for (ssize_t size; (size = pread(file(), buffer, sizeof buffer, static_cast<off_t>(all.size()))) > 0;) {
      all.append(buffer, static_cast<std::size_t>(size));
    }
    return all;
  }

  // A message may hold line ends, so an entry reaches to the next line that begins like a signature.
  std::vector<std::string> entries() const {
    const std::string all = text();
    std::vector<std::string> found;
    for (std::size_t start = start_; start < all.size();) {
      const std::size_t end = std::min({all.find("\n-[", start), all.find("\n+[", start), all.size() - 1});
      found.push_back(all.substr(start, end - start));
      start = end + 1;
    }
    return found;
  }

  std::size_t start_;
};

/// The messages that are expected: these in the diagnostic build, none in every other.
inline std::vector<std::string> logged(std::vector<std::string> messages) {
  return ATDiagnosticLog ? std::move(messages) : std::vector<std::string>();
}
