// SPDX-License-Identifier: MIT
#include "driver/ATLog.h"

#include <unistd.h>

#include <cstdio>

namespace {
std::FILE* logFile = nullptr;
}

void ATOpenLogFile(const char* path) {
  if (logFile == nullptr && access(path, W_OK) == 0) logFile = std::fopen(path, "w");
}

void ATLogMessage(std::string_view signature, std::string_view message) {
  if (logFile == nullptr) return;
  const std::string line = fmt::format("{}: {}\n", signature, message);
  std::fwrite(line.data(), 1, line.size(), logFile);
  std::fflush(logFile);
}
