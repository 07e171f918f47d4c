// SPDX-License-Identifier: MIT
#include "explain/RunWarnings.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include "base/Text.h"
#include "explain/CUPSLimits.h"
#include "explain/DeviceText.h"
#include "explain/DeviceWarnings.h"
#include "explain/MediaWarnings.h"
#include "explain/Wording.h"
#include "updaters/PPDKeywords.h"

namespace {

using Wording::visible;

// Where in the line the first byte stands that is no text.
std::size_t firstBadByte(std::string_view line) {
  std::size_t position = 0;
  for (std::size_t end = 1; end <= line.size() && end <= position + 4; ++end) {
    if (Text::isValidUTF8(line.substr(position, end - position))) position = end;
  }
  return position;
}

bool exists(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0;
}

void warnOfSwappedArguments(RunRecorder& recorder, const Report::Arguments& arguments) {
  if (!arguments.deviceURI || !arguments.PPDPath) return;
  const std::string& ppd = *arguments.PPDPath;
  const bool looksLikeURI = ppd.find(':') < ppd.find('/');
  if (!looksLikeURI || exists(ppd) || !exists(*arguments.deviceURI)) return;
  recorder.warn("arguments-swapped",
                fmt::format("There is no file {}, but there is {}: the device URI comes first, and "
                            "then the PPD.",
                            visible(*arguments.PPDPath), visible(*arguments.deviceURI)));
}

void warnOfBytesThatAreNoText(RunRecorder& recorder, const InputLines& input, std::size_t number) {
  const std::string line = *input.line(number);
  const std::size_t bad = firstBadByte(line);
  const std::string whole = input.size() ? fmt::format(" of {}", *input.size()) : "";
  recorder.warn(
      "cut-at-non-utf8",
      fmt::format("Reading ended at line {}, which is not UTF-8 from byte {}{} of the file on ({}); this line and what "
                  "follows are not in the result.",
                  number, input.text().size() + bad, whole, visible(std::string_view(line).substr(bad, 4))));
}

void warnOfUnreadBytes(RunRecorder& recorder, const InputLines& input) {
  if (const auto number = input.firstThatIsNotUTF8()) {
    warnOfBytesThatAreNoText(recorder, input, *number);
  } else if (input.isDirectory()) {
    recorder.warn("reading-stopped", "What was given as the PPD is a directory, which reads as an empty PPD.");
  } else if (input.isGzip() && (input.isDamaged() || input.sizeRead() != input.size().value_or(0))) {
    recorder.warn(
        "reading-stopped",
        fmt::format(
            "The gzip file is damaged, cut off, or goes on behind its end: reading ended behind {} unpacked bytes. "
            "What follows is not in the result.",
            input.sizeRead()));
  } else if (input.sizeRead() < input.size().value_or(0)) {
    recorder.warn("reading-stopped",
                  fmt::format("Reading ended behind {} of {} bytes: the file could not be read to its end. "
                              "What follows is not in the result.",
                              input.sizeRead(), *input.size()));
  }
}

// The updaters of a PPD that names none have nothing to do, and the queue gets no media: the commonest of all causes.
void warnOfUpdaters(RunRecorder& recorder, const Report& report, const ATPPD& ppd) {
  const auto statements = ppd.attributesForName(PPDKeyword::updaters);
  if (statements.size() > 1) {
    recorder.warn("second-updaters", fmt::format("*{} stands in the PPD {} times; only the first one counts.",
                                                 PPDKeyword::updaters, statements.size()));
  }
  if (!report.updaters.empty()) return;
  const auto value = statements.empty() ? std::nullopt : statements.front()->value();
  if (value && !value->starts_with('"') && !value->empty()) {
    recorder.warn("updaters-not-quoted",
                  fmt::format("The names in *{} do not stand between double quotes, so no updater "
                              "is named and nothing is done: {}",
                              PPDKeyword::updaters, visible(*value)));
  } else {
    recorder.warn("no-updaters",
                  fmt::format("The PPD names no updaters ({}): nothing is done to it.",
                              statements.empty() ? fmt::format("it has no *{} at its top", PPDKeyword::updaters)
                                                 : fmt::format("*{} is empty", PPDKeyword::updaters)));
  }
}

void warnOfLanguages(RunRecorder& recorder, const ATPPD& ppd) {
  const auto statement = ppd.attributeForName("cupsLanguages");
  const auto value = statement == nullptr ? std::nullopt : statement->value();
  if (!value || value->empty() || value->starts_with('"')) return;
  recorder.warn("languages-not-quoted",
                fmt::format("The languages in *cupsLanguages do not stand between double quotes, so there "
                            "are none: {}",
                            visible(*value)));
}

void warnOfListVersion(RunRecorder& recorder, const Report& report) {
  if (!report.device) return;
  const auto warnings =
      DeviceText::warningsOf("media list version", report.device->listVersion, DeviceText::Place::behindColon);
  for (const auto& [code, text] : warnings) recorder.warn(code, text);
}

}  // namespace

void RunWarnings::addForInput(RunRecorder& recorder, const Report& report, const InputLines& input) {
  warnOfSwappedArguments(recorder, report.arguments);
  const bool isMalformed = report.parse && report.parse->failure;  // reading ended there, and not at a line's bytes
  if (!isMalformed) warnOfUnreadBytes(recorder, input);
  for (const std::size_t number : input.split()) {
    recorder.warn("line-split", fmt::format("Line {} is longer than 254 bytes and is read as several lines.", number));
  }
  if (report.succeeded()) return;  // otherwise they are those of the result
  for (Report::Warning& warning : CUPSLimits::brokenIn(input.text())) {
    warning.inInput = true;
    recorder.warn(std::move(warning));
  }
}

void RunWarnings::addForResult(RunRecorder& recorder, const Report& report, const InputLines& input, const ATPPD& ppd,
                               const std::string& result) {
  if (result.empty()) recorder.warn("empty-result", "The PPD that is written is empty.");
  warnOfUpdaters(recorder, report, ppd);
  warnOfLanguages(recorder, ppd);
  DeviceWarnings::add(recorder, report);
  MediaWarnings::add(recorder, report, ppd);
  warnOfListVersion(recorder, report);
  for (Report::Warning& warning : CUPSLimits::brokenInResult(input.text(), result)) recorder.warn(std::move(warning));
}
