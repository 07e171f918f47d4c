// SPDX-License-Identifier: MIT
#include "explain/watch/MemoryFile.h"

#ifdef __linux__
#include <sys/mman.h>
#endif
#include <unistd.h>

MemoryFile::MemoryFile()
#ifdef __linux__
    : descriptor_(memfd_create("ppd", MFD_CLOEXEC))
#else
    : descriptor_(-1)
#endif
{
}

MemoryFile::~MemoryFile() {
  if (isThere()) close(descriptor_);
}

bool MemoryFile::append(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor_, bytes.data(), bytes.size());
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

std::string MemoryFile::path() const {
  return isThere() ? "/proc/self/fd/" + std::to_string(descriptor_) : "";
}
