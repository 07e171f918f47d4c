// SPDX-License-Identifier: MIT
#pragma once

#include "explain/Report.h"
#include "ppd/document/ATPPD.h"

/// A document in a few numbers, as it was read.
namespace DocumentSummary {

Report::Parse of(const ATPPD& ppd);

}  // namespace DocumentSummary
