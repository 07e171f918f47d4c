// SPDX-License-Identifier: MIT
#pragma once

#include "explain/judge/Evidence.h"
#include "explain/report/Warnings.h"

/// Why nothing, or less than one thinks, is known of the device.
namespace DeviceJudge {

void judge(const Evidence& evidence, Warnings& warnings);

}  // namespace DeviceJudge
