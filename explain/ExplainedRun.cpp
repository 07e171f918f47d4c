// SPDX-License-Identifier: MIT
#include "explain/ExplainedRun.h"

#include <exception>
#include <memory>
#include <utility>

#include "base/Text.h"
#include "driver/ATAutoSetupTool.h"
#include "explain/InputLines.h"
#include "explain/RunRecorder.h"
#include "explain/RunWarnings.h"
#include "explain/Wording.h"
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

std::string whyNothingIsWritten(const Report& report) {
  if (report.parse && report.parse->failure) return "the PPD cannot be read";
  for (const Report::Updater& updater : report.updaters) {
    if (updater.outcome == Report::UpdaterOutcome::failed) {
      return updater.name + " cannot update the PPD: there is no reader, since the URI or the printer ID is empty";
    }
  }
  return "an updater cannot update the PPD";
}

void runTool(ATAutoSetupTool& tool, RunRecorder& recorder, ExplainedRun& run) {
  tool.setObserver(recorder);
  const InputLines input = InputLines::ofFile(tool.PPDPath());
  ATMemoryOutput output;
  Report& report = run.report;
  try {
    if (tool.run(output)) {
      run.result = output.bytes();
    } else {
      if (tool.parseError()) report.parse = failedParse(*tool.parseError(), input);
      report.failure = whyNothingIsWritten(report);
    }
  } catch (const std::exception& error) {
    report.failure = std::string("an error ended the run: ") + error.what();
    recorder.didThrow(error.what(), tool.PPD());
  }
  RunWarnings::addForInput(recorder, report, input);
  if (report.succeeded()) RunWarnings::addForResult(recorder, report, input, tool.PPD(), run.result);
}

}  // namespace

ExplainedRun ExplainedRun::of(int argc, const char* const* argv) {
  ExplainedRun run;
  RunRecorder recorder(run.report);
  registerReaderImplementations();

  Report::Arguments& arguments = run.report.arguments;
  if (argc > 1) arguments.deviceURI = Text::fromUTF8(argv[1]);
  if (argc > 2) arguments.PPDPath = Text::fromUTF8(argv[2]);
  if (argc > 3) arguments.printerID = Text::fromUTF8(argv[3]);
  const auto tool = ATAutoSetupTool::initWithArgc(argc, argv);
  if (tool == nullptr) {
    run.report.failure = "the tool does not accept these arguments: the path, and the URI or the ID, must be UTF-8";
  } else {
    runTool(*tool, recorder, run);
  }
  return run;
}
