// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

#include "ppd/ATPPDAttribute.h"
#include "ppd/NameIndex.h"
#include "ppd/ObjectList.h"

/// Finds a document's attributes by name, and by name and spec.
class AttributeIndex {
 public:
  using List = ObjectList<ATPPDAttribute>;

  void add(const ATPPDAttribute& attribute, List::Position position);
  void remove(const ATPPDAttribute& attribute, List::Position position);

  /// The positions, in list order, of the attributes of this name and, when one is given, of this spec.
  const NameIndex::Positions& find(std::string_view name, const std::optional<std::string>& spec) const;

 private:
  NameIndex byName_;
  NameIndex byNameAndSpec_;
};
