// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ppd/lists/ObjectList.h"
#include "ppd/lists/ShorterFirst.h"

/// Finds objects by name in a list of them that is only appended to and removed from. A look-up asks objects for their
/// names as a walk through the list does that ends at the object that it gives: none that such a walk does not come to,
/// and one that has a name only once. Those that had no name are asked again each time, so thousands of them make
/// look-ups as slow as a walk. What has been removed is noticed when it is met.
template <class Object>
class NameIndex {
 public:
  using List = ObjectList<Object>;
  using Position = typename List::Position;
  using Positions = std::vector<Position>;

  struct Named {
    Positions positions;        // of those that have been asked, ascending; removed ones may be among them
    std::size_t removed = 0;    // so many at the front are known to be
    std::size_t cameLater = 0;  // so many had no name when they were first asked
  };

  /// The first object of the name, or absent.
  std::optional<Position> first(const List& list, std::string_view name) {
    const auto known = firstKnown(list, name);
    if (const auto named = askNamelessAgain(list, name, 0, known.value_or(asked_))) return named;
    return known ? known : askNext(list, name);
  }

  /// Asks all objects.
  void askAll(const List& list, std::string_view name) {
    askNamelessAgain(list, std::nullopt, 0, asked_);
    while (askNext(list, name)) {
    }
  }

  /// Goes on to the next object of the name behind all that have been asked, or absent when there is no more.
  std::optional<Position> askNext(const List& list, std::string_view name) {
    while (asked_ < list.positionsEnd()) {
      const Position position = asked_++;
      const auto& object = list.at(position);
      if (object == nullptr) continue;
      const auto given = object->name();
      if (given) {
        of(*given).positions.push_back(position);
      } else {
        nameless_.push_back(position);
      }
      if (given == name) return position;
    }
    return std::nullopt;
  }

  /// The objects of the name among those that have been asked; valid as long as the index.
  Named& of(std::string_view name) {
    const auto found = names_.find(name);
    return found == names_.end() ? names_[std::string(name)] : found->second;
  }

  /// The first object without a name at this position or behind it that has been asked, or absent.
  std::optional<Position> namelessFrom(Position position) const {
    const auto found = std::lower_bound(nameless_.begin(), nameless_.end(), position);
    return found == nameless_.end() ? std::nullopt : std::optional(*found);
  }

  /// Asks again the objects without a name from `begin` to in front of `end`, up to one that has the given name now.
  std::optional<Position> askNamelessAgain(const List& list, std::optional<std::string_view> name, Position begin,
                                           Position end) {
    for (auto each = std::lower_bound(nameless_.begin(), nameless_.end(), begin);
         each != nameless_.end() && *each < end;) {
      const Position position = *each;
      const auto& object = list.at(position);
      if (object != nullptr && !object->name()) {
        ++each;
        continue;
      }
      each = nameless_.erase(each);  // takes no longer than the way here: a deque moves what is in front
      if (object == nullptr) continue;
      addLater(of(*object->name()), position);
      if (name && object->name() == name) return position;
    }
    return std::nullopt;
  }

 private:
  std::optional<Position> firstKnown(const List& list, std::string_view name) {
    Named& named = of(name);
    for (; named.removed < named.positions.size(); ++named.removed) {
      const Position position = named.positions[named.removed];
      if (list.at(position) != nullptr) return position;
    }
    return std::nullopt;
  }

  static void addLater(Named& named, Position position) {
    Positions& positions = named.positions;
    const auto present = positions.begin() + static_cast<std::ptrdiff_t>(named.removed);
    positions.insert(std::lower_bound(present, positions.end(), position), position);
    ++named.cameLater;
  }

  std::map<std::string, Named, ShorterFirst> names_;
  std::deque<Position> nameless_;  // ascending
  Position asked_ = 1;             // all positions below
};
