// SPDX-License-Identifier: MIT
#pragma once

#include "explain/Report.h"
#include "explain/RunRecorder.h"

/// Why nothing, or less than one thinks, is known of the device.
namespace DeviceWarnings {

void add(RunRecorder& recorder, const Report& report);

}  // namespace DeviceWarnings
