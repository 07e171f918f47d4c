// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>

/// Finds the positions of a list (ObjectList) by a name that the objects there have. In a list that is only appended
/// to, positions are in list order, and so are the results. Adding and removing take logarithmic time.
class NameIndex {
 public:
  using Positions = std::set<std::uint32_t>;

  void add(std::string_view name, std::uint32_t position) { positions_[std::string(name)].insert(position); }

  void remove(std::string_view name, std::uint32_t position) {
    const auto found = positions_.find(std::string(name));
    if (found != positions_.end()) found->second.erase(position);
  }

  /// The positions of the name in ascending order, possibly none; valid until the next change.
  const Positions& find(std::string_view name) const {
    static const Positions none;
    const auto found = positions_.find(std::string(name));
    return found == positions_.end() ? none : found->second;
  }

 private:
  std::unordered_map<std::string, Positions> positions_;
};
