// SPDX-License-Identifier: MIT
#include "explain/judge/IsolatedCall.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): kill is POSIX
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <exception>
#include <string_view>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kFailed = 1;

void setLimit(int resource, rlim_t limit) {
  const rlimit both = {limit, limit};
  setrlimit(static_cast<decltype(RLIMIT_CORE)>(resource), &both);
}

void limitResources() {
  setLimit(RLIMIT_CORE, 0);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__APPLE__)  // both reserve more address space than they use
  constexpr rlim_t kMemory = rlim_t{2} << 30;
  setLimit(RLIMIT_AS, kMemory);
#endif
}

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

// What is left of the parent's (buffered output, objects) is the parent's alone: nothing is flushed or destroyed.
[[noreturn]] void runInChild(const std::function<std::string()>& function, int descriptor) {
  limitResources();
  for (const int number : {SIGSEGV, SIGBUS, SIGABRT, SIGFPE, SIGILL}) signal(number, SIG_DFL);
  try {
    _exit(writeAll(descriptor, function()) ? 0 : kFailed);
  } catch (...) {
    _exit(kFailed);
  }
}

// Whether all was read until the other side closed.
bool readAll(int descriptor, Clock::time_point end, std::string& bytes) {
  char buffer[65536];
  while (true) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
    pollfd waitingFor = {descriptor, POLLIN, 0};
    const int ready = poll(&waitingFor, 1, static_cast<int>(std::max<decltype(left)>(left, 0)));
    if (ready < 0 && errno == EINTR) continue;
    if (ready <= 0) return false;
    const ssize_t size = read(descriptor, buffer, sizeof buffer);
    if (size < 0 && errno == EINTR) continue;
    if (size <= 0) return size == 0;
    bytes.append(buffer, static_cast<std::size_t>(size));
  }
}

bool endedWell(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return false;
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

std::optional<std::string> IsolatedCall::resultOf(const std::function<std::string()>& function,
                                                  std::chrono::milliseconds longest) {
  int ends[2];
  if (pipe(ends) != 0) return std::nullopt;
  fcntl(ends[0], F_SETFD, FD_CLOEXEC);
  const pid_t child = fork();
  if (child == 0) {
    close(ends[0]);
    runInChild(function, ends[1]);
  }
  close(ends[1]);
  std::string bytes;
  const bool wasRead = child > 0 && readAll(ends[0], Clock::now() + longest, bytes);
  close(ends[0]);
  if (child < 0) return std::nullopt;
  if (!wasRead) kill(child, SIGKILL);
  return endedWell(child) && wasRead ? std::optional(bytes) : std::nullopt;
}
