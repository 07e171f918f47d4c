// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "setup/SetupFolder.h"

/// A setup that fails rather than leave a queue without its media, or with a statement that is a device's text: the
/// tool's own run, and whatever the tool would bear because a queue that keeps its PPD is worse off there ends this
/// one.
namespace StrictSetup {

struct Result {
  std::string ppd;                    ///< with the statement of its setup (SetupStatement); empty when it failed
  std::string failure;                ///< why, for people; empty when it did not fail
  std::vector<std::string> warnings;  ///< of the rest, with their codes; many of one code are a line
};

/// Makes a setup that SetupFolder named, of the files as they were then. Asks the device-model library of the process,
/// which answers from the snapshot (by the environment variable QZVORANTISMODEL_SNAPSHOT, which this sets).
Result run(const Setup& setup);

}  // namespace StrictSetup
