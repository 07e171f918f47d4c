// SPDX-License-Identifier: MIT
#include "explain/ExplainedRun.h"

#include <fmt/format.h>

#include <exception>
#include <memory>
#include <utility>

#include "driver/ATAutoSetupTool.h"
#include "explain/judge/Consequences.h"
#include "explain/judge/Judges.h"
#include "explain/report/Warnings.h"
#include "explain/report/Wording.h"
#include "explain/watch/InputFile.h"
#include "explain/watch/InputLines.h"
#include "explain/watch/RunRecorder.h"
#include "explain/watch/WatchedLibrary.h"
#include "readers/ATDeviceDataReader.h"

namespace {

Report::Parse failedParse(const PPDParserError& error, const InputLines& input) {
  Report::ParseFailure failure;
  failure.code = error.code;
  failure.expected = Wording::expectedAtError(error.code);
  failure.lineNumber = error.lineNumber;
  if (error.lineNumber) failure.line = input.line(static_cast<std::size_t>(*error.lineNumber));
  Report::Parse parse;
  parse.failure = std::move(failure);
  return parse;
}

std::string whyItCannotBeRead(const Report::ParseFailure& failure) {
  const std::string place = failure.lineNumber ? fmt::format(" from line {} on", *failure.lineNumber) : "";
  return fmt::format("the PPD cannot be read{}; expected: {}", place, failure.expected);
}

std::string whyNothingIsWritten(const Report& report) {
  if (report.parse && report.parse->failure) return whyItCannotBeRead(*report.parse->failure);
  for (const Report::Updater& updater : report.updaters) {
    if (updater.outcome == Report::UpdaterOutcome::failed) {
      return fmt::format("{} cannot update the PPD: there is no reader, since the {} is empty", updater.name,
                         report.arguments.printerID ? "printer ID" : "device URI");
    }
  }
  return "an updater cannot update the PPD";
}

// The library of the process, watched for the length of a run.
class LibraryWatch {
 public:
  LibraryWatch() { DeviceModelLibrary::setDefaultLibrary(&watched_); }
  LibraryWatch(const LibraryWatch&) = delete;
  LibraryWatch& operator=(const LibraryWatch&) = delete;
  ~LibraryWatch() { DeviceModelLibrary::setDefaultLibrary(&before_); }

  const WatchedLibrary& library() const { return watched_; }

 private:
  DeviceModelLibrary& before_ = DeviceModelLibrary::defaultLibrary();
  WatchedLibrary watched_{before_};
};

void runTool(ATAutoSetupTool& tool, RunRecorder& recorder, const InputLines& input, ExplainedRun& run) {
  ATMemoryOutput output;
  Report& report = run.report;
  tool.setObserver(recorder);
  try {
    if (tool.run(output)) {
      run.result = output.bytes();
    } else {
      if (tool.parseError()) report.parse = failedParse(*tool.parseError(), input);
      report.failure = whyNothingIsWritten(report);
    }
  } catch (const std::exception& error) {
    tool.PPD().budget().restore(Budget::kUnlimited);
    recorder.didThrow(error, tool.PPD());
  }
}

void explainRun(ATAutoSetupTool& tool, ExplainedRun& run) {
  const LibraryWatch watch;
  Warnings warnings(run.report.warnings);
  RunRecorder recorder(run.report, warnings, watch.library());
  const InputLines input = InputLines::ofFile(tool.PPDPath());
  runTool(tool, recorder, input, run);
  run.input = input.text();
  Consequences::find(run.report, input.bytes(), run.result);
  tool.PPD().budget().restore(Budget::kUnlimited);  // what follows only looks
  Judges::judge({run.report, input, tool.PPD(), run.result}, warnings);
  warnings.sort();
}

void failForInput(const InputFile& file, ExplainedRun& run) {
  const std::string problem = file.problem();
  if (problem.empty() || !run.report.succeeded()) return;
  run.report.failure = "the PPD cannot be read as a whole: " + problem;
  run.result.clear();
}

}  // namespace

ExplainedRun ExplainedRun::of(const Report::Arguments& arguments) {
  ExplainedRun run;
  registerReaderImplementations();

  run.report.arguments = arguments;
  const InputFile file(arguments.PPDPath.value_or(""));
  const auto path = arguments.PPDPath ? std::optional(file.path()) : std::nullopt;
  const auto tool = ATAutoSetupTool::initWithPrinterURI(arguments.deviceURI, path, arguments.printerID);
  if (tool == nullptr) {
    run.report.failure = "the tool does not accept these arguments: the path, and the URI or the ID, must be UTF-8";
  } else {
    explainRun(*tool, run);
    failForInput(file, run);
  }
  return run;
}
