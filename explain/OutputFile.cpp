// SPDX-License-Identifier: MIT
#include "explain/OutputFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>

namespace {

constexpr mode_t kPermissions = S_IRWXU | S_IRWXG | S_IRWXO;

// What the path leads to, through links, or absent when there is nothing.
std::optional<std::string> existing(const std::string& path) {
  const std::unique_ptr<char, void (*)(void*)> resolved(realpath(path.c_str(), nullptr), std::free);
  if (resolved == nullptr) return std::nullopt;
  return std::string(resolved.get());
}

bool writeInto(std::FILE* file, const std::string& bytes) {
  if (file == nullptr) return false;
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  return std::fclose(file) == 0 && written;
}

mode_t permissionsOfNewFiles() {
  const mode_t mask = umask(0);  // there is no other way to ask for it
  umask(mask);
  return (S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH) & ~mask;
}

bool replace(const std::string& path, const std::string& bytes, mode_t permissions) {
  std::string beside = path + ".XXXXXX";
  const int descriptor = mkstemp(beside.data());
  if (descriptor < 0) return false;
  const bool permitted = fchmod(descriptor, permissions) == 0;
  const bool written = writeInto(fdopen(descriptor, "wb"), bytes) && permitted;
  if (written && std::rename(beside.c_str(), path.c_str()) == 0) return true;
  unlink(beside.c_str());
  return false;
}

}  // namespace

bool OutputFile::write(const std::string& path, const std::string& bytes) {
  const auto there = existing(path);
  if (!there) return replace(path, bytes, permissionsOfNewFiles());
  struct stat status;
  if (stat(there->c_str(), &status) != 0) return false;
  if (!S_ISREG(status.st_mode)) return writeInto(std::fopen(there->c_str(), "wb"), bytes);
  return replace(*there, bytes, status.st_mode & kPermissions);
}
