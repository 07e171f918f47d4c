// SPDX-License-Identifier: MIT
#include "readers/DeviceValue.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/ATException.h"
#include "base/Text.h"

DeviceValue::DeviceValue(std::optional<std::string> text) {
  if (text) *this = DeviceValue(std::move(*text));
}

const std::string* DeviceValue::text() const {
  const auto* text = std::get_if<TextPtr>(&value_);
  return text == nullptr ? nullptr : text->get();
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

std::string descriptionOfList(const DeviceValue::List& list) {
  std::vector<std::string> elements;
  for (const DeviceValue& element : list) elements.push_back(element.description());
  return fmt::format("({})", fmt::join(elements, ", "));
}

std::string descriptionOfMap(const DeviceMap& map) {
  std::string all = "{";
  for (const auto& [key, value] : map.entries()) all += key + " = " + value.description() + "; ";
  return all + "}";
}

}  // namespace

std::string DeviceValue::description() const {
  if (text() != nullptr) return *text();
  if (const auto* number = std::get_if<std::int64_t>(&value_)) return fmt::format("{}", *number);
  if (const auto* number = std::get_if<std::uint64_t>(&value_)) return fmt::format("{}", *number);
  if (const auto* number = std::get_if<double>(&value_)) return fmt::format("{}", *number);
  if (const auto* flag = std::get_if<bool>(&value_)) return *flag ? "1" : "0";
  if (const auto elements = list()) return descriptionOfList(*elements);
  if (const auto entries = map()) return descriptionOfMap(*entries);
  return std::string(Text::orNull(std::nullopt));
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
