// SPDX-License-Identifier: MIT
#include "readers/LibraryQuestion.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/ATException.h"
#include "base/ATLog.h"

namespace {

constexpr int kFirstOfOwn = STDERR_FILENO + 1;  // lower numbers have a meaning to others, even when they are free

// The process that asks; 0: none does. A child that the library has started may exit as it likes.
pid_t asking = 0;

void endAsFailure() {
  if (asking != getpid()) return;
  ATLog("int main(int, const char **)", "The device-model library has ended the process");
  std::_Exit(EXIT_FAILURE);
}

[[noreturn]] void fail() {
  throw ATException::libraryFailure(
      fmt::format("standard output cannot be kept from the device-model library: {}", std::strerror(errno)));
}

int copyOfStandardOutput() {
  const int copy = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, kFirstOfOwn);
  if (copy < 0 && errno != EBADF) fail();
  return copy;
}

// Whether it does now.
bool leadStandardOutputNowhere() {
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (nowhere < 0 || nowhere == STDOUT_FILENO) return nowhere >= 0;
  const bool leadsThere = dup2(nowhere, STDOUT_FILENO) >= 0;
  close(nowhere);
  return leadsThere;
}

}  // namespace

LibraryQuestion::LibraryQuestion() : askedBefore_(asking), standardOutput_(copyOfStandardOutput()) {
  static const bool isExitGuarded = std::atexit(endAsFailure) == 0;
  std::fflush(stdout);  // what the program itself has printed before
  if (!isExitGuarded || !leadStandardOutputNowhere()) {
    if (standardOutput_ >= 0) close(standardOutput_);
    fail();
  }
  asking = getpid();
}

LibraryQuestion::~LibraryQuestion() {
  asking = askedBefore_;
  std::fflush(stdout);  // what the library has printed
  if (standardOutput_ < 0 || dup2(standardOutput_, STDOUT_FILENO) < 0) close(STDOUT_FILENO);
  if (standardOutput_ >= 0) close(standardOutput_);
}
