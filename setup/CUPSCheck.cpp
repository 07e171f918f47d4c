// SPDX-License-Identifier: MIT
#include "setup/CUPSCheck.h"

#include <cups/ppd.h>
#include <fmt/format.h>
#include <sys/mman.h>
#include <unistd.h>

#include <memory>

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"  // nothing else tells what the scheduler makes of a PPD

namespace {

// A file in memory, open at its beginning: libcups reads from descriptors only, and nothing is to be written anywhere.
// Negative when there is none; the caller closes it.
int inMemory(const std::string& content) {
  const int descriptor = memfd_create("ppd", MFD_CLOEXEC);
  if (descriptor < 0) return descriptor;
  const bool isWritten = write(descriptor, content.data(), content.size()) == static_cast<ssize_t>(content.size()) &&
                         lseek(descriptor, 0, SEEK_SET) == 0;
  if (isWritten) return descriptor;
  close(descriptor);
  return -1;
}

}  // namespace

std::optional<std::string> whyCUPSRefuses(const std::string& content) {
  const int descriptor = inMemory(content);
  if (descriptor < 0) return "there is no memory to check it in";
  const std::unique_ptr<ppd_file_t, void (*)(ppd_file_t*)> ppd(ppdOpenFd(descriptor), ppdClose);  // closes it
  if (ppd != nullptr) return std::nullopt;
  int line = 0;
  const ppd_status_t status = ppdLastError(&line);
  return fmt::format("{} in line {}", ppdErrorString(status), line);
}
