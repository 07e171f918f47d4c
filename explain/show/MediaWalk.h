// SPDX-License-Identifier: MIT
#pragma once

#include "explain/report/Report.h"
#include "explain/show/Display.h"

/// The media of an updater, and what became of each.
namespace MediaWalk {

void show(const Report::Updater& updater, Display& display);

}  // namespace MediaWalk
