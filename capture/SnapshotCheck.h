// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/// Judges a device snapshot against a PPD before it is used: what a setup with it would be warned of.
namespace SnapshotCheck {

/// What was found for one device.
struct Findings {
  std::string deviceURI;
  std::vector<std::string> lines;  ///< in the words of the report (docs/explain.md), one for each code
};

/// Does the run that a setup would do, without writing anything, for each device of the snapshot that such a run would
/// ask; for the first one when it would ask none. The device-model library of the process must be the stored one, and
/// gets the snapshot by its environment variable, which this sets. Warnings of the `ignored` codes are left out. Throws
/// snapshot::Error when the snapshot cannot be used, and ATException when the PPD cannot be read.
std::vector<Findings> of(const std::string& snapshotPath, const std::string& PPDPath,
                         const std::vector<std::string>& ignored);

}  // namespace SnapshotCheck
