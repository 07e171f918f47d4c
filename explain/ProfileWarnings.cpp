// SPDX-License-Identifier: MIT
#include "explain/ProfileWarnings.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>

#include "base/Text.h"
#include "explain/Wording.h"

namespace {

using Wording::visible;
using Warnings = std::vector<std::pair<const char*, std::string>>;

// Whether only root may change it.
bool belongsToRoot(const struct stat& status) {
  return status.st_uid == 0 && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

void checkFile(const std::string& path, Warnings& warnings) {
  struct stat status;
  struct stat folder;
  if (stat(path.c_str(), &status) != 0) {
    warnings.emplace_back("profile-missing", fmt::format("The profile file does not exist here: {}", visible(path)));
  } else if (!path.starts_with('/') || !S_ISREG(status.st_mode)) {
    warnings.emplace_back(
        "profile-no-file",
        fmt::format("CUPS uses no profile that is not a file with an absolute path: {}", visible(path)));
  } else if (!belongsToRoot(status) || stat(path.substr(0, path.rfind('/') + 1).c_str(), &folder) != 0 ||
             !belongsToRoot(folder)) {
    warnings.emplace_back(
        "profile-permissions",
        fmt::format("CUPS leaves a profile out when it or its folder is not root's, or others may write there: {}",
                    visible(path)));
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
