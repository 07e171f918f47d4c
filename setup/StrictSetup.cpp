// SPDX-License-Identifier: MIT
#include "setup/StrictSetup.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

#include "explain/ExplainedRun.h"
#include "explain/Wording.h"
#include "setup/CUPSCheck.h"

namespace {

// Warnings of a run after which the queue would not have the device's media.
constexpr std::array<std::string_view, 9> kFatal = {"library-failed",      "no-library",      "no-updaters",
                                                    "updaters-not-quoted", "no-device",       "no-data-store",
                                                    "cut-at-non-utf8",     "reading-stopped", "empty-result"};

bool isFatal(const Report::Warning& warning) {
  return std::find(kFatal.begin(), kFatal.end(), warning.code) != kFatal.end();
}

// Why the run counts as failed; empty when it does not. What the run itself failed of comes after what explains it.
std::string failureOf(const ExplainedRun& run) {
  const auto& warnings = run.report.warnings;
  const auto fatal = std::find_if(warnings.begin(), warnings.end(), isFatal);
  if (fatal != warnings.end()) return fatal->text;
  if (!run.report.succeeded()) return Wording::visible(run.report.failure);
  if (run.report.lastMediaUpdater() == nullptr && !run.report.device) return "none of the PPD's updaters is known";
  if (const auto reason = whyCUPSRefuses(run.result)) return "CUPS would not load the result: " + *reason;
  return "";
}

}  // namespace

StrictSetup::Result StrictSetup::run(const Setup& setup) {
  setenv("QZVORANTISMODEL_SNAPSHOT", setup.snapshotPath.c_str(), 1);
  const std::array<const char*, 3> arguments = {"vorantis-autosetup", setup.deviceURI.c_str(), setup.PPDPath.c_str()};
  ExplainedRun run = ExplainedRun::of(static_cast<int>(arguments.size()), arguments.data());
  Result result;
  result.failure = failureOf(run);
  for (const Report::Warning& warning : run.report.warnings) {
    if (!isFatal(warning)) result.warnings.push_back(fmt::format("{} [{}]", warning.text, warning.code));
  }
  if (result.failure.empty()) result.ppd = std::move(run.result);
  return result;
}
