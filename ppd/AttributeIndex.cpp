// SPDX-License-Identifier: MIT
#include "ppd/AttributeIndex.h"

#include <string>

namespace {

// One text for both; the length in front keeps every pair apart from every other.
std::string nameAndSpec(std::string_view name, std::string_view spec) {
  std::string key = std::to_string(name.size());
  key.append(" ").append(name).append(spec);
  return key;
}

}  // namespace

void AttributeIndex::add(const ATPPDAttribute& attribute, List::Position position) {
  const auto& name = attribute.name();
  if (!name) return;
  byName_.add(*name, position);
  if (const auto& spec = attribute.spec()) byNameAndSpec_.add(nameAndSpec(*name, *spec), position);
}

void AttributeIndex::remove(const ATPPDAttribute& attribute, List::Position position) {
  const auto& name = attribute.name();
  if (!name) return;
  byName_.remove(*name, position);
  if (const auto& spec = attribute.spec()) byNameAndSpec_.remove(nameAndSpec(*name, *spec), position);
}

const NameIndex::Positions& AttributeIndex::find(std::string_view name, const std::optional<std::string>& spec) const {
  return spec ? byNameAndSpec_.find(nameAndSpec(name, *spec)) : byName_.find(name);
}
