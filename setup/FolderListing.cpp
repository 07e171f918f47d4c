// SPDX-License-Identifier: MIT
#include "setup/FolderListing.h"

#include <dirent.h>
#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

#include "explain/report/Wording.h"

namespace {

// Whether opening it could wait for ever, as for the other end of a pipe.
bool isNoFile(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

// The names in a folder, sorted. One that is not there has none; of one that cannot be read to its end `warnings`
// tells.
std::vector<std::string> namesIn(const std::string& folder, std::vector<std::string>& warnings) {
  std::vector<std::string> names;
  const std::unique_ptr<DIR, int (*)(DIR*)> directory(opendir(folder.c_str()), closedir);
  if (directory != nullptr) errno = 0;
  while (const dirent* entry = directory == nullptr ? nullptr : readdir(directory.get())) {
    names.emplace_back(entry->d_name);
    errno = 0;
  }
  if (errno != 0 && errno != ENOENT) {
    warnings.push_back(fmt::format("the folder {} cannot be read{}: {}", Wording::visible(folder),
                                   directory == nullptr ? "" : " to its end", std::strerror(errno)));
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace

std::vector<std::string> FolderListing::filesIn(const std::string& folder, const std::vector<std::string_view>& endings,
                                                std::vector<std::string>& warnings) {
  std::vector<std::string> files;
  for (const std::string& name : namesIn(folder, warnings)) {
    const bool isWanted = std::any_of(endings.begin(), endings.end(),
                                      [&name](std::string_view ending) { return name.ends_with(ending); });
    if (!isWanted || name.starts_with('.')) continue;
    if (isNoFile(folder + "/" + name)) {
      warnings.push_back(fmt::format("{} is no file", Wording::visible(folder + "/" + name)));
    } else {
      files.push_back(name);
    }
  }
  return files;
}

std::string FolderListing::stampOf(const std::string& path) {
  struct stat status {};
  stat(path.c_str(), &status);
  return fmt::format("{} {} {} {}.{}\n", path, status.st_ino, status.st_size, status.st_mtim.tv_sec,
                     status.st_mtim.tv_nsec);
}
