// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "explain/report/Report.h"
#include "ppd/document/ATPPD.h"

/// A document in a few numbers, as it was read.
namespace DocumentSummary {

Report::Parse of(const ATPPD& ppd);

/// The names of options that updaters look for, and that stand where no updater finds them.
std::vector<std::string> optionsOutsideGroups(const ATPPD& ppd);

/// The default gloss enhancer in the properties of a medium, as it stands there; absent when there is none.
Report::OptionalText glossIn(std::string_view properties);

}  // namespace DocumentSummary
