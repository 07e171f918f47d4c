// SPDX-License-Identifier: MIT
#pragma once

#include "explain/Report.h"
#include "explain/RunRecorder.h"
#include "ppd/document/ATPPD.h"

/// What is odd about the device's media in the PPD: what nobody will see, what a device's text breaks, what CUPS will
/// make of a profile's file, and what is left of earlier setups.
namespace MediaWarnings {

/// `ppd`: the edited document of a run that succeeded.
void add(RunRecorder& recorder, const Report& report, const ATPPD& ppd);

}  // namespace MediaWarnings
