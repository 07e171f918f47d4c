// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "setup/SetupFolder.h"

/// A setup that fails rather than leave a queue without its media: the tool's own run, and whatever the tool would bear
/// because a queue that keeps its PPD is worse off there ends this one.
namespace StrictSetup {

struct Result {
  std::string ppd;                    ///< empty when it failed
  std::string failure;                ///< why, for people; empty when it did not fail
  std::vector<std::string> warnings;  ///< of the rest, each with its code
};

/// Asks the device-model library of the process, which answers from the setup's snapshot (by the environment variable
/// QZVORANTISMODEL_SNAPSHOT, which this sets).
Result run(const Setup& setup);

}  // namespace StrictSetup
