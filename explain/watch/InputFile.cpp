// SPDX-License-Identifier: MIT
#include "explain/watch/InputFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>

namespace {

constexpr const char* kChanged = "it changed while it was read";

bool isRegular(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

#ifdef __linux__
bool isSameTime(const struct stat& one, const struct stat& other) {
  return one.st_mtim.tv_sec == other.st_mtim.tv_sec && one.st_mtim.tv_nsec == other.st_mtim.tv_nsec;
}
#else
bool isSameTime(const struct stat& one, const struct stat& other) {
  return one.st_mtime == other.st_mtime;
}
#endif

}  // namespace

InputFile::InputFile(const std::string& path) : path_(path) {
  if (!bytes_.isThere() || !isRegular(path)) return;
  descriptor_ = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);  // it could be a pipe by now
  if (descriptor_ < 0) return;
  if (fstat(descriptor_, &opened_) != 0) error_ = std::strerror(errno);
  read();
  path_ = bytes_.path();
}

InputFile::~InputFile() {
  if (descriptor_ >= 0) close(descriptor_);
}

void InputFile::read() {
  std::array<char, 1 << 16> block;
  off_t size = 0;
  ssize_t count = 0;
  while ((count = ::read(descriptor_, block.data(), block.size())) > 0) {
    size += count;
    if (bytes_.append(std::string_view(block.data(), static_cast<std::size_t>(count)))) continue;
    error_ = "there is no memory for it";
    return;
  }
  if (count < 0) error_ = std::strerror(errno);
  if (count == 0 && size != opened_.st_size) error_ = kChanged;
}

std::string InputFile::bytes() const {
  return descriptor_ < 0 ? "" : bytes_.bytes();
}

bool InputFile::hasChanged() const {
  struct stat now;
  return fstat(descriptor_, &now) != 0 || now.st_size != opened_.st_size || !isSameTime(now, opened_);
}

std::string InputFile::problem() const {
  return error_.empty() && descriptor_ >= 0 && hasChanged() ? kChanged : error_;
}
