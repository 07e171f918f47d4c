// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "ppd/lists/ObjectList.h"

/// Finds objects by name in a list of them that is only appended to and removed from. Every look-up gives what a walk
/// through the list gives that asks each object for its name: the index grows along the walk, so no object is asked
/// before such a walk would come to it. An object that had no name yet is asked again each time, and the index is made
/// anew when it has got one; look-ups take constant time as long as there are few of these. What has been removed is
/// noticed when it is met.
template <class Object>
class NameIndex {
 public:
  using List = ObjectList<Object>;
  using Position = typename List::Position;
  using Positions = std::vector<Position>;

  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };
  template <class Value>
  using MapByText = std::unordered_map<std::string, Value, TextHash, std::equal_to<>>;

  /// The first object of the name, or absent.
  std::optional<Position> first(const List& list, std::string_view name) {
    forgetWhenNamesCame(list);
    Named& named = this->named(name);
    do {
      for (; named.removed < named.positions.size(); ++named.removed) {
        const Position position = named.positions[named.removed];
        if (list.at(position) != nullptr) return position;
      }
    } while (askNext(list, name));
    return std::nullopt;
  }

  /// The positions of the name in list order, as far as the objects have been asked; removed ones may be among them.
  const Positions& asked(std::string_view name) { return named(name).positions; }

  /// Goes on to the next object of the name; false when there is no more.
  bool askNext(const List& list, std::string_view name) {
    while (asked_ < list.positionsEnd()) {
      const Position position = asked_++;
      const auto& object = list.at(position);
      if (object == nullptr) continue;
      const auto given = object->name();
      (given ? named(*given).positions : nameless_).push_back(position);
      if (given == name) return true;
    }
    return false;
  }

  /// Begins anew when an object that had no name has one now; whether it did.
  bool forgetWhenNamesCame(const List& list) {
    for (const Position position : nameless_) {
      const auto& object = list.at(position);
      if (object == nullptr || !object->name()) continue;
      *this = NameIndex();
      return true;
    }
    return false;
  }

 private:
  struct Named {
    Positions positions;      // ascending
    std::size_t removed = 0;  // so many at the front are known to be
  };

  Named& named(std::string_view name) {
    const auto found = names_.find(name);
    return found == names_.end() ? names_[std::string(name)] : found->second;
  }

  MapByText<Named> names_;
  Positions nameless_;
  Position asked_ = 1;  // all positions below
};
