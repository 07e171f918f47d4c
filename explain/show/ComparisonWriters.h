// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "explain/compare/MediaChanges.h"

/// What changed since an earlier state, for people and for scripts.
namespace ComparisonWriters {

/// A line for each change. `earlier`: what was compared with, in all three.
std::string text(const std::string& earlier, const std::vector<MediaChange>& changes);

/// JSON in ASCII: `changes`, each with `kind`, `text`, `before` and `after` (`choice`, `name`, `ID`, `profiles`,
/// `properties`; null when there is none).
std::string json(const std::string& earlier, const std::vector<MediaChange>& changes);

/// One page that needs no other file.
std::string html(const std::string& earlier, const std::vector<MediaChange>& changes);

}  // namespace ComparisonWriters
