// SPDX-License-Identifier: MIT
#include "readers/DeviceValue.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/ATException.h"

DeviceValue::DeviceValue(std::optional<std::string> text) {
  if (text) value_ = std::move(*text);
}

DeviceValue::ListPtr DeviceValue::list() const {
  const auto* list = std::get_if<ListPtr>(&value_);
  return list == nullptr ? nullptr : *list;
}

DeviceValue::MapPtr DeviceValue::map() const {
  const auto* map = std::get_if<MapPtr>(&value_);
  return map == nullptr ? nullptr : *map;
}

std::optional<std::string> DeviceValue::textFor(const char* use) const {
  if (isAbsent()) return std::nullopt;
  if (text() == nullptr) throw ATException::wrongType(use);
  return *text();
}

DeviceValue DeviceValue::valueForKey(std::string_view key) const {
  if (isAbsent()) return {};
  const auto* map = std::get_if<MapPtr>(&value_);
  if (map == nullptr) throw ATException::wrongType(fmt::format("no map to look \"{}\" up in", key));
  return (*map)->get(key);
}

namespace {

struct Describe {
  std::string operator()(std::monostate) const { return "(null)"; }
  std::string operator()(const std::string& text) const { return text; }
  std::string operator()(bool flag) const { return flag ? "1" : "0"; }
  template <class Number>
  std::string operator()(Number number) const {
    return fmt::format("{}", number);
  }
  std::string operator()(const DeviceValue::ListPtr& list) const {
    std::string all;
    for (const DeviceValue& element : *list) all += (all.empty() ? "" : ", ") + element.description();
    return "(" + all + ")";
  }
  std::string operator()(const DeviceValue::MapPtr& map) const {
    std::string all = "{";
    for (const auto& [key, value] : map->entries()) all += key + " = " + value.description() + "; ";
    return all + "}";
  }
};

}  // namespace

std::string DeviceValue::description() const {
  return std::visit(Describe(), value_);
}

void DeviceMap::set(std::string_view key, DeviceValue value) {
  const auto found =
      std::find_if(entries_.begin(), entries_.end(), [key](const Entry& entry) { return entry.first == key; });
  if (value.isAbsent()) {
    if (found != entries_.end()) entries_.erase(found);
  } else if (found != entries_.end()) {
    found->second = std::move(value);
  } else {
    entries_.emplace_back(key, std::move(value));
  }
}

DeviceValue DeviceMap::get(std::string_view key) const {
  for (const auto& [name, value] : entries_) {
    if (name == key) return value;
  }
  return {};
}
