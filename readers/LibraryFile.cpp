// SPDX-License-Identifier: MIT
#include "readers/LibraryFile.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <vector>

#include "base/ATException.h"

namespace {

// A folder that no system has: Debian's policy keeps this name for the home of users without one.
constexpr std::string_view kNoFolder = "/nonexistent";

std::string pathIn(std::string_view folder, const char* fileName) {
  return fmt::format("{}/{}", folder, fileName);
}

// What is wrong with the file at the path; absent when there is none. The loader, too, passes over a folder that this
// process may not search.
std::optional<std::string> problemAt(const std::string& path) {
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor >= 0) {
    close(descriptor);
    return path + ": the loader passes over this file";
  }
  const int error = errno;
  if (error == ENOENT || error == ENOTDIR) return std::nullopt;
  if (error == EACCES && access(path.c_str(), F_OK) != 0) return std::nullopt;
  return fmt::format("{}: {}", path, std::strerror(error));
}

// What the loader says of a file that is not there, as it would say it of this one.
std::string wordsForNoFile(const char* fileName) {
  const std::string path = pathIn(kNoFolder, fileName);
  void* object = dlopen(path.c_str(), RTLD_LAZY | RTLD_LOCAL);
  const char* words = object == nullptr ? dlerror() : nullptr;
  std::string text = words == nullptr ? "" : words;
  const std::size_t place = text.find(path);
  if (place != std::string::npos) text.replace(place, path.size(), fileName);
  return text;
}

// The folders that the loader tells it looks into. glibc's does, but for those that only its cache names.
std::vector<std::string> searchedFolders() {
  std::vector<std::string> folders;
#ifdef __GLIBC__
  const auto check = [](bool isDone) {
    if (!isDone)
      throw ATException::libraryFailure("the loader does not tell where it looks for the device-model library");
  };
  const std::unique_ptr<void, int (*)(void*)> program(dlopen(nullptr, RTLD_LAZY), dlclose);
  Dl_serinfo size;
  check(program != nullptr && dlinfo(program.get(), RTLD_DI_SERINFOSIZE, &size) == 0);
  const std::unique_ptr<char[]> memory(new char[size.dls_size]);
  auto* info = reinterpret_cast<Dl_serinfo*>(memory.get());
  *info = size;
  check(dlinfo(program.get(), RTLD_DI_SERINFO, info) == 0);
  for (unsigned index = 0; index < info->dls_cnt; ++index) folders.emplace_back(info->dls_serpath[index].dls_name);
#endif
  return folders;
}

}  // namespace

std::optional<std::string> LibraryFile::problem(const char* fileName, std::string_view loadersWords) {
  if (loadersWords != wordsForNoFile(fileName)) return std::string(loadersWords);
  if (std::strchr(fileName, '/') != nullptr) return problemAt(fileName);
  std::vector<std::string> folders = searchedFolders();
  folders.emplace_back(kNoFolder);  // where nothing is wrong as long as files can be opened at all
  for (const std::string& folder : folders) {
    if (auto problem = problemAt(pathIn(folder, fileName))) return problem;
  }
  return std::nullopt;
}
