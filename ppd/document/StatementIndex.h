// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "ppd/document/ATPPDAttribute.h"
#include "ppd/lists/NameIndex.h"
#include "ppd/lists/PartIndex.h"
#include "ppd/lists/ShorterFirst.h"

/// Finds a document's statements by name, and by name and spec, as a walk does that asks each for its name and, when
/// that fits, for its spec. What NameIndex says of names holds for specs as well: thousands of statements
/// of the name without a spec make each of its look-ups by spec as slow as a walk.
///
/// The first look-up is a walk: a run without updaters asks for nothing but their names, for which no index is made.
class StatementIndex {
 public:
  using List = ObjectList<ATPPDAttribute>;
  using Position = List::Position;
  using Positions = NameIndex<ATPPDAttribute>::Positions;
  using Spec = std::optional<std::string_view>;

  /// The first statement of the name and, unless it is absent, of the spec; absent when there is none.
  std::optional<Position> first(const List& list, std::string_view name, const Spec& spec);
  /// All of them in list order.
  Positions all(const List& list, std::string_view name, const Spec& spec);
  /// All of the name whose spec contains `part`, in list order. The empty string is contained in nothing.
  Positions allWithSpecContaining(const List& list, std::string_view name, std::string_view part);

 private:
  // The specs of one name, as far as the walks have come.
  struct Specs {
    std::multimap<std::size_t, Position> byHash;  // the statement itself is asked whether it is the one
    PartIndex parts;                              // of the first so many that had a spec
    Positions present;                            // had one
    std::size_t inParts = 0;
    std::deque<Position> open;  // had none, or have not been asked; ascending
    std::size_t taken = 0;      // the first so many positions of the name are in one of these
    std::size_t cameLater = 0;  // NameIndex::Named::cameLater then
  };

  std::optional<Position> firstWithSpec(const List& list, std::string_view name, std::string_view spec);
  std::optional<Position> askOpen(const List& list, std::string_view name, Specs& specs, std::string_view spec,
                                  std::optional<Position> end);
  Specs& specsOf(std::string_view name);
  Specs& allSpecs(const List& list, std::string_view name);
  static Spec askSpec(const List& list, Specs& specs, Position position);
  static std::optional<Position> firstAskedWithSpec(const List& list, Specs& specs, std::string_view spec);
  static Positions askedWithSpec(const List& list, const Specs& specs, std::string_view spec);

  bool wasAsked_ = false;
  NameIndex<ATPPDAttribute> names_;
  std::map<std::string, Specs, ShorterFirst> specs_;
};
