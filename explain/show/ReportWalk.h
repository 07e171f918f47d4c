// SPDX-License-Identifier: MIT
#pragma once

#include "explain/report/Report.h"
#include "explain/show/Display.h"

/// The sections of a report, in the order in which every form shows them.
namespace ReportWalk {

void show(const Report& report, Display& display);

}  // namespace ReportWalk
