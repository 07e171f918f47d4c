// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "explain/compare/PPDMedia.h"

/// What became of one medium from one PPD to another of the same queue.
struct MediaChange {
  enum class Kind { added, gone, renamed, renumbered, profiles, properties };

  Kind kind;
  PPDMedia::Medium before;  ///< empty for an added one
  PPDMedia::Medium after;   ///< empty for one that is gone

  /// The kind in a word, such as "renamed".
  const char* kindName() const;
  /// In words for people, such as "Canvas (ID 4711) is renamed to Linen".
  std::string text() const;

  /// All changes: in the earlier PPD's order, what was added behind them. A medium that changed in several ways is
  /// there for each.
  static std::vector<MediaChange> between(const PPDMedia& before, const PPDMedia& after);
};
