// SPDX-License-Identifier: MIT
#include "base/ATLog.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

namespace {
std::FILE* logFile = nullptr;
}

void ATOpenLogFile(const char* path) {
  if (logFile != nullptr) return;
  // Nothing is made or emptied before it is known what is there; a FIFO without a reader is not waited for.
  const int descriptor = open(path, O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return;
  struct stat status;
  const bool isFile = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
  if (isFile && ftruncate(descriptor, 0) == 0) logFile = fdopen(descriptor, "w");
  if (logFile == nullptr) close(descriptor);
}

void ATLogMessage(std::string_view signature, std::string_view message) {
  if (logFile == nullptr) return;
  const std::string line = fmt::format("{}: {}\n", signature, message);
  std::fwrite(line.data(), 1, line.size(), logFile);
  std::fflush(logFile);
}
