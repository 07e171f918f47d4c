// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "scheduler/Scheduler.h"

/// A file of queues as a server is to have them (docs/queues.schema.json).
namespace ApplyFile {

/// Throws std::runtime_error with one sentence that names the place when the file cannot be read or something in it is
/// wrong; members that are not known are.
std::vector<QueueWish> read(const std::string& path);

}  // namespace ApplyFile
