// SPDX-License-Identifier: MIT
#include "queues/ApplyFile.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>

#include "setup/SetupStatement.h"

namespace {

using JSON = nlohmann::json;

constexpr std::size_t kLongestName = 127;  // of a queue, in CUPS
constexpr std::array<const char*, 7> kMembers = {"name", "uri", "snapshot", "ppd", "device", "info", "location"};

[[noreturn]] void reject(const std::string& place, const std::string& what) {
  throw std::runtime_error(fmt::format("{} {}", place, what));
}

std::string textIn(const JSON& queue, const char* member, const std::string& place, bool isNeeded) {
  const auto found = queue.find(member);
  if (found == queue.end() && !isNeeded) return "";
  const bool isText = found != queue.end() && found->is_string() && !(isNeeded && found->get<std::string>().empty());
  if (!isText) reject(place, fmt::format("needs a text \"{}\"", member));
  return *found;
}

// What CUPS lets a queue be named.
bool isName(const std::string& name) {
  return name.size() <= kLongestName && name.find_first_of("/#'\"\\?<> \t\x7f") == std::string::npos &&
         std::none_of(name.begin(), name.end(),
                      [](char character) { return static_cast<unsigned char>(character) < 32; });
}

QueueWish wishFrom(const JSON& queue, const std::string& place) {
  if (!queue.is_object()) reject(place, "is no object");
  for (const auto& [name, value] : queue.items()) {
    if (std::find(kMembers.begin(), kMembers.end(), name) == kMembers.end())
      reject(place, "has an unknown member " + name);
  }
  QueueWish wish;
  wish.name = textIn(queue, "name", place, true);
  if (!isName(wish.name)) reject(place, "has a name that CUPS does not take");
  const std::string named = fmt::format("{} ({})", place, wish.name);
  wish.uri = textIn(queue, "uri", named, true);
  if (wish.uri.find(':') == std::string::npos) reject(named, "has a uri without a scheme");
  const JSON device = queue.value("device", JSON(1U));
  if (!device.is_number_unsigned() || device == 0) reject(named, "has a device that is no number from 1 on");
  wish.info = textIn(queue, "info", named, false);
  wish.location = textIn(queue, "location", named, false);
  wish.model =
      fmt::format("{}{}{}/{}", SetupStatement::kScheme, textIn(queue, "snapshot", named, true),
                  device == 1 ? "" : fmt::format("+{}", device.get<unsigned>()), textIn(queue, "ppd", named, true));
  return wish;
}

JSON parsed(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) reject(path, fmt::format("cannot be read: {}", std::strerror(errno)));
  try {
    return JSON::parse(file);
  } catch (const JSON::exception& error) {
    reject(path, fmt::format("is no JSON: {}", error.what()));
  }
}

}  // namespace

std::vector<QueueWish> ApplyFile::read(const std::string& path) {
  const JSON json = parsed(path);
  const bool isKnown = json.is_object() && json.value("format", JSON()) == "vorantis-queues" &&
                       json.value("formatVersion", JSON()) == 1 && json.value("queues", JSON()).is_array();
  if (!isKnown) reject(path, R"(is not of the format "vorantis-queues", version 1, with a list "queues")");
  std::vector<QueueWish> wishes;
  std::set<std::string, QueueNameLess> names;
  for (const JSON& queue : json["queues"]) {
    wishes.push_back(wishFrom(queue, fmt::format("{}: queue {}", path, wishes.size() + 1)));
    if (!names.insert(wishes.back().name).second) reject(path, "names the queue " + wishes.back().name + " twice");
  }
  return wishes;
}
