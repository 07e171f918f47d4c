// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "explain/compare/MediaChanges.h"
#include "explain/report/Report.h"

/// What changed since an earlier PPD, device snapshot or report of the same queue.
namespace EarlierMedia {

/// Why the earlier file cannot be compared with.
struct Error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The media of a report of format JSON, version 3 or later; throws Error when it is none.
PPDMedia ofReport(const std::string& json);

/// What changed from the file to a run: `report` is its report as JSON, `result` the PPD that it wrote. With a snapshot
/// the run is done again for comparison, with `run`, which gives the PPD that the run with these arguments writes when
/// the environment names this snapshot. Throws Error.
std::vector<MediaChange> changesSince(const std::string& path, const std::string& report, const std::string& result,
                                      const std::function<std::optional<std::string>(const std::string&)>& run);

}  // namespace EarlierMedia
