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

// Whose the new file is, and who may do what with it.
struct Rights {
  std::optional<uid_t> owner;
  std::optional<gid_t> group;
  mode_t permissions = 0;

  // A file that only its group may read is worth nothing in another group, so all must be as it was.
  bool giveTo(int descriptor) const {
    struct stat status;
    if (fstat(descriptor, &status) != 0) return false;
    const uid_t user = owner.value_or(status.st_uid);
    const gid_t users = group.value_or(status.st_gid);
    const bool isOwned = (user == status.st_uid && users == status.st_gid) || fchown(descriptor, user, users) == 0;
    return isOwned && fchmod(descriptor, permissions) == 0;
  }
};

bool replace(const std::string& path, const std::string& bytes, const Rights& rights) {
  std::string beside = path + ".XXXXXX";
  const int descriptor = mkstemp(beside.data());
  if (descriptor < 0) return false;
  const bool permitted = rights.giveTo(descriptor);
  const bool written = writeInto(fdopen(descriptor, "wb"), bytes) && permitted;
  if (written && std::rename(beside.c_str(), path.c_str()) == 0) return true;
  unlink(beside.c_str());
  return false;
}

}  // namespace

bool OutputFile::write(const std::string& path, const std::string& bytes) {
  const auto there = existing(path);
  if (!there) return replace(path, bytes, {{}, {}, permissionsOfNewFiles()});
  struct stat status;
  if (stat(there->c_str(), &status) != 0) return false;
  if (!S_ISREG(status.st_mode)) return writeInto(std::fopen(there->c_str(), "wb"), bytes);
  return replace(*there, bytes, {status.st_uid, status.st_gid, status.st_mode & kPermissions});
}
