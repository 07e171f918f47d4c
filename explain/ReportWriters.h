// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "explain/Report.h"

/// A report as text for people and for scripts.
namespace ReportWriters {

struct TextStyle {
  bool colour = false;  ///< ANSI colours
  bool full = false;    ///< every changed statement, and not only the first ones of each updater
};

/// At most 80 columns wide.
std::string text(const Report& report, const TextStyle& style);

/// JSON, UTF-8; the schema is described in docs/explain.md and numbered by its member "schemaVersion".
std::string json(const Report& report);

/// One page that needs no other file.
std::string html(const Report& report);

}  // namespace ReportWriters
