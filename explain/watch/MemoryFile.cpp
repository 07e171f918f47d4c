// SPDX-License-Identifier: MIT
#include "explain/watch/MemoryFile.h"

#ifdef __linux__
#include <sys/mman.h>
#endif
#include <sys/stat.h>
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

std::string MemoryFile::bytes() const {
  struct stat status;
  if (!isThere() || fstat(descriptor_, &status) != 0) return "";
  std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
  std::size_t size = 0;
  while (size < bytes.size()) {
    const ssize_t count = pread(descriptor_, bytes.data() + size, bytes.size() - size, static_cast<off_t>(size));
    if (count <= 0) break;
    size += static_cast<std::size_t>(count);
  }
  bytes.resize(size);
  return bytes;
}

std::string MemoryFile::path() const {
  return isThere() ? "/proc/self/fd/" + std::to_string(descriptor_) : "";
}
