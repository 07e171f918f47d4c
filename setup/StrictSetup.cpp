// SPDX-License-Identifier: MIT
#include "setup/StrictSetup.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "explain/ExplainedRun.h"
#include "explain/report/Sentences.h"
#include "explain/report/Wording.h"
#include "setup/CUPSCheck.h"

namespace {

// Warnings of a run after which the queue would not have the device's media.
constexpr WarningCode kFatal[] = {WarningCode::libraryFailed, WarningCode::noLibrary,         WarningCode::noUpdaters,
                                  WarningCode::noDevice,      WarningCode::updatersNotQuoted, WarningCode::noDataStore,
                                  WarningCode::cutAtNonUTF8,  WarningCode::readingStopped,    WarningCode::emptyResult};

bool isFatal(const Warning& warning) {
  return std::find(std::begin(kFatal), std::end(kFatal), warning.code) != std::end(kFatal);
}

// Why the run counts as failed; empty when it does not. What the run itself failed of comes after what explains it.
std::string failureOf(const ExplainedRun& run) {
  const auto& warnings = run.report.warnings;
  const auto fatal = std::find_if(warnings.begin(), warnings.end(), isFatal);
  if (fatal != warnings.end()) return Sentences::of(*fatal);
  if (!run.report.succeeded()) return Wording::visible(run.report.failure);
  if (run.report.lastMediaUpdater() == nullptr && !run.report.device) return "none of the PPD's updaters is known";
  if (const auto reason = whyCUPSRefuses(run.result)) return "CUPS would not load the result: " + *reason;
  return "";
}

}  // namespace

StrictSetup::Result StrictSetup::run(const Setup& setup) {
  setenv("QZVORANTISMODEL_SNAPSHOT", setup.snapshotPath.c_str(), 1);
  ExplainedRun run = ExplainedRun::of({setup.deviceURI, setup.PPDPath, std::nullopt});
  Result result;
  result.failure = failureOf(run);
  for (const Warning& warning : run.report.warnings) {
    if (!isFatal(warning))
      result.warnings.push_back(fmt::format("{} [{}]", Sentences::of(warning), nameOf(warning.code)));
  }
  if (result.failure.empty()) result.ppd = std::move(run.result);
  return result;
}
