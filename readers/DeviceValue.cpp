// SPDX-License-Identifier: MIT
#include "readers/DeviceValue.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/ATException.h"
#include "base/Text.h"

DeviceValue::DeviceValue(std::optional<std::string> text) {
  if (text) *this = DeviceValue(std::move(*text));
}

DeviceValue DeviceValue::ofOtherKind(std::string description) {
  DeviceValue value;
  value.value_ = OtherKind{std::make_shared<const std::string>(std::move(description))};
  return value;
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
  if (const auto* other = std::get_if<OtherKind>(&value_)) return *other->description;
  return std::string(Text::orNull(std::nullopt));
}

void DeviceMap::set(std::string_view key, DeviceValue value) {
  const std::size_t index = indexOf(key);
  if (index == entries_.size()) {
    if (!value.isAbsent()) entries_.emplace_back(key, std::move(value));
  } else if (!value.isAbsent()) {
    entries_[index].second = std::move(value);
  } else {
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(index));
    for (std::size_t& other : otherKeys_) other -= other > index ? 1 : 0;
  }
}

void DeviceMap::addOtherKey(std::string description, DeviceValue value) {
  otherKeys_.push_back(entries_.size());
  add(std::move(description), std::move(value));
}

DeviceValue DeviceMap::get(std::string_view key) const {
  const std::size_t index = indexOf(key);
  return index == entries_.size() ? DeviceValue() : entries_[index].second;
}

bool DeviceMap::isOtherKey(std::size_t index) const {
  return std::binary_search(otherKeys_.begin(), otherKeys_.end(), index);
}

// The number of entries when there is no such key.
std::size_t DeviceMap::indexOf(std::string_view key) const {
  for (std::size_t index = 0; index < entries_.size(); ++index) {
    if (entries_[index].first == key && !isOtherKey(index)) return index;
  }
  return entries_.size();
}
