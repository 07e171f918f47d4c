// SPDX-License-Identifier: MIT
#include "explain/compare/MediaChanges.h"

#include <fmt/format.h>

namespace {

using Medium = PPDMedia::Medium;
using Kind = MediaChange::Kind;

void addChangesOf(const Medium& before, const Medium& after, std::vector<MediaChange>& changes) {
  const auto add = [&](bool isDifferent, Kind kind) {
    if (isDifferent) changes.push_back({kind, before, after});
  };
  add(before.name != after.name, Kind::renamed);
  add(before.choice != after.choice, Kind::renumbered);
  add(before.profiles != after.profiles, Kind::profiles);
  add(before.properties != after.properties, Kind::properties);
}

}  // namespace

const char* MediaChange::kindName() const {
  switch (kind) {
    case Kind::added:
      return "added";
    case Kind::gone:
      return "gone";
    case Kind::renamed:
      return "renamed";
    case Kind::renumbered:
      return "renumbered";
    case Kind::profiles:
      return "profiles";
    case Kind::properties:
      return "properties";
  }
  return "";
}

std::string MediaChange::text() const {
  switch (kind) {
    case Kind::added:
      return fmt::format("{} is added as {}", after.label(), after.choice);
    case Kind::gone:
      return fmt::format("{} is gone, it was {}", before.label(), before.choice);
    case Kind::renamed:
      return fmt::format("{} is renamed to {}", before.label(), after.name);
    case Kind::renumbered:
      return fmt::format("{} becomes {}, it was {}", after.label(), after.choice, before.choice);
    case Kind::profiles:
      return fmt::format("{} has other colour profiles", after.label());
    case Kind::properties:
      return fmt::format("{} has other properties", after.label());
  }
  return "";
}

std::vector<MediaChange> MediaChange::between(const PPDMedia& before, const PPDMedia& after) {
  std::vector<MediaChange> changes;
  for (const Medium& medium : before.media) {
    if (const Medium* now = after.withKey(medium.key, medium.name)) {
      addChangesOf(medium, *now, changes);
    } else {
      changes.push_back({Kind::gone, medium, {}});
    }
  }
  for (const Medium& medium : after.media) {
    if (before.withKey(medium.key, medium.name) == nullptr) changes.push_back({Kind::added, {}, medium});
  }
  return changes;
}
