// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "explain/report/Report.h"
#include "explain/watch/InputLines.h"
#include "ppd/document/ATPPD.h"

/// What a run leaves for judges to look at; nothing of it is owned.
struct Evidence {
  const Report& report;
  const InputLines& input;    ///< the PPD as it was
  const ATPPD& ppd;           ///< the document as it is at the end
  const std::string& result;  ///< its text; empty when the run failed
};
