// SPDX-License-Identifier: MIT
#include "queues/RefreshRecord.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace {

using JSON = nlohmann::json;

constexpr const char* kApplied = "/applied";  // no queue has a name with a slash
constexpr mode_t kFolderMode = 0755;
constexpr mode_t kFileMode = 0600;

[[noreturn]] void failToWrite(const std::string& path) {
  throw std::runtime_error(fmt::format("{} cannot be written: {}", path, std::strerror(errno)));
}

// Null when the file is not there or was cut.
JSON jsonIn(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  const JSON json = JSON::parse(text, nullptr, false);
  return json.is_discarded() ? JSON() : json;
}

// A name is on disk when its folder is.
void syncFolder(const std::string& path) {
  const int folder = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) failToWrite(path);
  fsync(folder);
  close(folder);
}

}  // namespace

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(PPDMedia::Medium, choice, name, ID, key, isCustom)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(PPDMedia, media, defaultChoice)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(RefreshRecord, queue, UUID, id, ppd, before, wasPrinting, held, standsStill, jobs,
                                   defaults, defaultsBefore, finished)

StateFolder::StateFolder(std::string path, bool isOnlyRead) : path_(std::move(path)) {
  if (!isOnlyRead && mkdir(path_.c_str(), kFolderMode) != 0 && errno != EEXIST) failToWrite(path_);
}

bool StateFolder::tryLock(bool waits) {
  const std::string path = path_ + "/lock";
  if (lock_ < 0) lock_ = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kFileMode);
  if (lock_ < 0) failToWrite(path);
  while (flock(lock_, waits ? LOCK_EX : LOCK_EX | LOCK_NB) != 0) {
    if (errno == EWOULDBLOCK) return false;
    if (errno != EINTR) failToWrite(path);
  }
  return true;
}

void StateFolder::writeFile(const std::string& path, const std::string& content) const {
  const std::string fresh = path + ".new";
  const int file = open(fresh.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kFileMode);
  if (file < 0) failToWrite(path);
  const bool isWritten = ::write(file, content.data(), content.size()) == static_cast<ssize_t>(content.size());
  const bool isSafe = isWritten && fsync(file) == 0;
  close(file);
  if (!isSafe || std::rename(fresh.c_str(), path.c_str()) != 0) failToWrite(path);
  syncFolder(path_);
}

std::optional<RefreshRecord> StateFolder::record(const std::string& queue) const {
  const JSON json = jsonIn(pathOf(queue));
  if (json.is_null()) return std::nullopt;
  try {
    return json.get<RefreshRecord>();
  } catch (const JSON::exception&) {
    throw std::runtime_error(fmt::format("{}: {} is no record of this program; remove it", queue, pathOf(queue)));
  }
}

void StateFolder::write(const RefreshRecord& record) const {
  writeFile(pathOf(record.queue), JSON(record).dump());
}

void StateFolder::remove(const std::string& queue) const {
  if (unlink(pathOf(queue).c_str()) != 0 && errno != ENOENT) failToWrite(pathOf(queue));
  syncFolder(path_);
}

AppliedQueues StateFolder::applied() const {
  const JSON json = jsonIn(path_ + kApplied);
  return json.is_object() ? json.get<AppliedQueues>() : AppliedQueues();
}

void StateFolder::writeApplied(const AppliedQueues& queues) const {
  writeFile(path_ + kApplied, JSON(queues).dump());
}
