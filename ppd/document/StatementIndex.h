// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <unordered_map>

#include "ppd/document/ATPPDAttribute.h"
#include "ppd/lists/NameIndex.h"
#include "ppd/lists/PartIndex.h"

/// Finds a document's statements by name, and by name and spec, as a walk does that asks each for its name and, when
/// that fits, for its spec. What NameIndex says of names holds for specs as well: thousands of statements
/// of the name without a spec make each of its look-ups by spec as slow as a walk.
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
    std::unordered_multimap<std::size_t, Position> byHash;  // the statement itself is asked whether it is the one
    Positions present, without;                             // had one, had none
    std::size_t asked = 0;                                  // of the first so many positions of the name
    PartIndex parts;
    std::size_t inParts = 0;  // the first so many that are present
  };

  void forgetWhenNamesCame(const List& list);
  Specs& specsOf(const List& list, std::string_view name);
  Specs& allSpecs(const List& list, std::string_view name);
  static bool askNextSpec(const List& list, const Positions& positions, Specs& specs, const Spec& spec);
  static Positions askedWithSpec(const List& list, Specs& specs, std::string_view spec);

  NameIndex<ATPPDAttribute> names_;
  NameIndex<ATPPDAttribute>::MapByText<Specs> specs_;
};
