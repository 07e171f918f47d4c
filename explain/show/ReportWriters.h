// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

#include "explain/report/Report.h"

/// A report as text for people and for scripts.
namespace ReportWriters {

/// How much of a run is shown in a text.
enum class Detail {
  summary,   ///< the verdict, and one line for each code of a warning
  warnings,  ///< the verdict, and every warning
  usual,     ///< the verdict, the first warnings of each code, and the details, where long lists end with a count
  full       ///< everything
};

struct TextStyle {
  bool colour = false;     ///< ANSI colours
  std::size_t width = 80;  ///< of a line, in characters
  Detail detail = Detail::usual;
};

std::string text(const Report& report, const TextStyle& style);

/// Of each updater's changes so many are in JSON and HTML, unless all are wanted: 2,000 media in 20 languages make
/// 44,000.
inline constexpr std::size_t kShownChanges = 1000;

/// JSON in ASCII; docs/explain.schema.json is its schema, numbered by its member "schemaVersion".
std::string json(const Report& report, bool full = false);

/// One page that needs no other file.
std::string html(const Report& report, bool full = false);

}  // namespace ReportWriters
