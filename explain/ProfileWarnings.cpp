// SPDX-License-Identifier: MIT
#include "explain/ProfileWarnings.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>

#include "base/Text.h"
#include "explain/Wording.h"

namespace {

using Wording::visible;
using Warnings = std::vector<std::pair<const char*, std::string>>;

// As whom CUPS' filters read profiles.
constexpr const char* kReader = "lp";

std::optional<struct stat> statusOf(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return std::nullopt;
  return status;
}

// Whether only root may change it.
bool belongsToRoot(const struct stat& status) {
  return status.st_uid == 0 && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

// Whether the user of these numbers has the permission, given for others as 4, 2 or 1.
bool isPermitted(const struct stat& status, mode_t permission, uid_t user, gid_t group) {
  if (status.st_uid == user) return (status.st_mode & permission << 6) != 0;
  if (status.st_gid == group) return (status.st_mode & permission << 3) != 0;
  return (status.st_mode & permission) != 0;
}

// Whether CUPS' filters may read the file at the absolute path, and come to it; true where there is no such user.
bool isReadable(const std::string& path) {
  const passwd* reader = getpwnam(kReader);
  if (reader == nullptr) return true;
  for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1)) {
    const auto folder = statusOf(path.substr(0, slash));
    if (folder && !isPermitted(*folder, S_IXOTH, reader->pw_uid, reader->pw_gid)) return false;
  }
  const auto file = statusOf(path);
  return file && isPermitted(*file, S_IROTH, reader->pw_uid, reader->pw_gid);
}

// Whether the regular file has the signature of an ICC profile (ICC.1, section 7.2); true when it cannot be read.
bool hasSignature(const std::string& path) {
  constexpr off_t kPlace = 36;
  char signature[4];
  const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return true;
  const ssize_t size = pread(descriptor, signature, sizeof signature, kPlace);
  close(descriptor);
  return size == sizeof signature && std::string_view(signature, sizeof signature) == "acsp";
}

void checkPermissions(const std::string& path, const struct stat& file, Warnings& warnings) {
  const auto folder = statusOf(path.substr(0, path.rfind('/') + 1));
  if (!belongsToRoot(file) || !folder || !belongsToRoot(*folder)) {
    warnings.emplace_back(
        "profile-permissions",
        fmt::format("CUPS leaves a profile out when it or its folder is not root's, or others may write there: {}",
                    visible(path)));
  }
  const std::unique_ptr<char, void (*)(void*)> target(realpath(path.c_str(), nullptr), std::free);
  if (!isReadable(path) || (target != nullptr && !isReadable(target.get()))) {
    warnings.emplace_back("profile-not-readable",
                          fmt::format("The user {}, as whom CUPS runs its filters, may not read the "
                                      "profile or not come to it: {}",
                                      kReader, visible(path)));
  }
}

void checkFile(const std::string& path, Warnings& warnings) {
  const auto file = statusOf(path);
  if (!file && errno != ENOENT && errno != ENOTDIR) {
    warnings.emplace_back("profile-not-readable", fmt::format("The profile file cannot be looked at here ({}): {}",
                                                              std::strerror(errno), visible(path)));
  } else if (!file) {
    warnings.emplace_back("profile-missing", fmt::format("The profile file does not exist here: {}", visible(path)));
  } else if (!path.starts_with('/') || !S_ISREG(file->st_mode)) {
    warnings.emplace_back(
        "profile-no-file",
        fmt::format("CUPS uses no profile that is not a file with an absolute path: {}", visible(path)));
  } else {
    checkPermissions(path, *file, warnings);
    if (!hasSignature(path)) {
      warnings.emplace_back(
          "profile-no-icc",
          fmt::format("The file is no ICC profile (it lacks the signature \"acsp\"): {}", visible(path)));
    }
  }
}

void checkPath(const std::string& path, Warnings& warnings) {
  const auto parts = Text::split(path, "/");
  if (std::find(parts.begin(), parts.end(), "..") == parts.end()) return;
  warnings.emplace_back(
      "profile-leaves-folder",
      fmt::format("The path of the profile goes up with \"..\", out of its folder: {}", visible(path)));
}

// Of a URL only the path gets into the PPD; a plain path has no scheme.
void checkURL(const std::string& url, Warnings& warnings) {
  const std::size_t scheme = url.find(':');
  if (scheme == std::string::npos || url.find('/') < scheme) return;
  const bool isFile = Text::startsWithIgnoringCase(url, "file:");
  const std::string_view rest = std::string_view(url).substr(scheme + 1);
  const std::string_view host = rest.starts_with("//") ? rest.substr(2, rest.find('/', 2) - 2) : "";
  if (isFile && (host.empty() || host == "localhost")) return;
  warnings.emplace_back(
      "profile-elsewhere",
      fmt::format("The URL of the profile is {}; only its path gets into the PPD: {}",
                  isFile ? fmt::format("of the host {}", visible(host)) : "no file URL", visible(url)));
}

}  // namespace

Warnings ProfileWarnings::of(const Report::Profile& profile) {
  Warnings warnings;
  if (profile.url) checkURL(*profile.url, warnings);
  if (profile.path) checkPath(*profile.path, warnings);
  if (profile.path) checkFile(*profile.path, warnings);
  if (profile.spec && std::count(profile.spec->begin(), profile.spec->end(), '.') != 2) {
    warnings.emplace_back("spec-parts", fmt::format("The spec {} has not three parts; CUPS matches it with no choices.",
                                                    visible(*profile.spec)));
  }
  return warnings;
}
