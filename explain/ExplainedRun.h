// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "explain/report/Report.h"

/// A run of the tool with the tool's own engine, watched.
struct ExplainedRun {
  Report report;
  std::string input;   ///< what was read of the PPD, unpacked
  std::string result;  ///< the PPD that the tool would have written; empty when the run failed

  /// An argument that was no UTF-8 is absent. A PPD in a regular file is read once: what the report says of it, and the
  /// result, are of the same bytes; the run fails when the file changes meanwhile or cannot be read to its end. Nothing
  /// is written anywhere. What the tool's run throws is in the report;
  /// only what working that out throws leaves it, which is a lack of memory.
  static ExplainedRun of(const Report::Arguments& arguments);
};
