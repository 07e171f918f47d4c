// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

/// Look-ups by name are few in most runs, and an index costs as much as a few walks through what it indexes.
inline constexpr std::size_t kWalksBeforeIndex = 4;

/// Finds the first of several objects that has a name. Walks through them at first, and uses an index from then on.
template <class Object>
class FirstByName {
 public:
  /// `objects` is what has been given since the last `forget`, in order.
  template <class Objects>
  std::shared_ptr<Object> find(const Objects& objects, std::string_view name) const {
    if (walks_++ < kWalksBeforeIndex) return walk(objects, name);
    if (index_.empty()) {
      for (const auto& object : objects) index_.try_emplace(object->name(), object);
    }
    const auto found = index_.find(std::string(name));
    return found == index_.end() ? nullptr : found->second;
  }

  /// To be called when the objects change.
  void forget() const { index_.clear(); }

 private:
  template <class Objects>
  static std::shared_ptr<Object> walk(const Objects& objects, std::string_view name) {
    for (const auto& object : objects) {
      if (object->name() == name) return object;
    }
    return nullptr;
  }

  mutable std::size_t walks_ = 0;
  mutable std::unordered_map<std::string, std::shared_ptr<Object>> index_;
};
