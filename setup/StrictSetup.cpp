// SPDX-License-Identifier: MIT
#include "setup/StrictSetup.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <utility>

#include "explain/ExplainedRun.h"
#include "explain/report/GroupedLines.h"
#include "explain/report/Sentences.h"
#include "explain/report/Wording.h"
#include "setup/CUPSCheck.h"
#include "setup/ResultCheck.h"
#include "setup/SetupDigest.h"
#include "setup/SetupStatement.h"

namespace {

// Warnings of a run after which the queue would not have the device's media, or would have more than these.
constexpr WarningCode kFatal[] = {WarningCode::libraryFailed, WarningCode::noLibrary,         WarningCode::noUpdaters,
                                  WarningCode::noDevice,      WarningCode::updatersNotQuoted, WarningCode::noDataStore,
                                  WarningCode::cutAtNonUTF8,  WarningCode::readingStopped,    WarningCode::emptyResult,
                                  WarningCode::deviceLineEnd, WarningCode::deviceQuote};

bool isFatal(const Warning& warning) {
  return std::find(std::begin(kFatal), std::end(kFatal), warning.code) != std::end(kFatal);
}

// What the process calls the snapshot is not what people do.
std::string withNameOfSnapshot(std::string text, const Setup& setup) {
  const std::string& path = setup.snapshot->path();
  for (std::size_t at = 0; (at = text.find(path, at)) != std::string::npos; at += setup.snapshotPath.size()) {
    text.replace(at, path.size(), setup.snapshotPath);
  }
  return text;
}

// Why the run counts as failed; empty when it does not. What the run itself failed of comes after what explains it.
std::string failureOf(const ExplainedRun& run) {
  const auto& warnings = run.report.warnings;
  const auto fatal = std::find_if(warnings.begin(), warnings.end(), isFatal);
  if (fatal != warnings.end()) return Sentences::of(*fatal);
  if (!run.report.succeeded()) return Wording::visible(run.report.failure);
  if (run.report.lastMediaUpdater() == nullptr && !run.report.device) return "none of the PPD's updaters is known";
  return "";
}

// Why the PPD must not reach the scheduler; empty when it may.
std::string problemOf(const std::string& ppd, const ExplainedRun& run) {
  if (const auto problem = ResultCheck::problemOf(run.result, run.input, run.report)) return *problem;
  if (const auto reason = CUPSCheck::whyRefused(run.result)) return "CUPS would not load the result: " + *reason;
  if (const auto found = CUPSCheck::foreignStatement(run.input, ppd)) {
    return "CUPS would find in the result what is neither the base PPD's nor of a medium: " + Wording::visible(*found);
  }
  return "";
}

// Why the files are not what was judged; empty when they are.
std::string changeOf(const Setup& setup) {
  for (const auto& [file, path] :
       {std::pair(setup.base.get(), &setup.PPDPath), {setup.snapshot.get(), &setup.snapshotPath}}) {
    if (const std::string problem = file->problem(); !problem.empty()) {
      return fmt::format("{} cannot be read as a whole: {}", Wording::visible(*path), problem);
    }
  }
  return "";
}

std::vector<std::string> warningsOf(const ExplainedRun& run) {
  std::vector<Warning> warnings;
  std::remove_copy_if(run.report.warnings.begin(), run.report.warnings.end(), std::back_inserter(warnings), isFatal);
  return GroupedLines::of(warnings);
}

}  // namespace

StrictSetup::Result StrictSetup::run(const Setup& setup) {
  setenv("QZVORANTISMODEL_SNAPSHOT", setup.snapshot->path().c_str(), 1);
  const ExplainedRun run = ExplainedRun::of({setup.deviceURI, setup.base->path(), std::nullopt});
  Result result;
  result.warnings = warningsOf(run);
  result.failure = withNameOfSnapshot(failureOf(run), setup);
  if (result.failure.empty()) result.failure = changeOf(setup);
  if (!result.failure.empty()) return result;
  std::string ppd =
      SetupStatement::addedTo(run.result, setup.name, SetupDigest::ofSources(run.input, setup.snapshot->bytes()));
  result.failure = problemOf(ppd, run);
  if (result.failure.empty()) result.ppd = std::move(ppd);
  return result;
}
