// SPDX-License-Identifier: MIT
#include "explain/RunWarnings.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>

#include "base/Text.h"
#include "explain/CUPSLimits.h"
#include "explain/Wording.h"
#include "updaters/PPDKeywords.h"

namespace {

using Wording::visible;

bool hasLineEnd(std::string_view text) {
  return text.find_first_of("\r\n") != std::string_view::npos;
}

std::string firstBadBytes(const std::string& line) {
  std::size_t position = 0;
  while (position < line.size() && Text::isValidUTF8(std::string_view(line).substr(0, position + 1))) ++position;
  // A character may be cut into several bytes, each of which is no text by itself: go on while that gives text again.
  for (std::size_t end = position + 1; end <= std::min(line.size(), position + 4); ++end) {
    if (Text::isValidUTF8(std::string_view(line).substr(0, end))) position = end;
  }
  return visible(std::string_view(line).substr(position, 4));
}

// Where a text of the device stands in its statement: CUPS counts the quotes behind the first colon only.
enum class Place { inFrontOfColon, behindColon };

bool hasQuoteThatCounts(std::string_view text, Place place) {
  const std::size_t from = place == Place::behindColon ? 0 : text.find(':');
  return from != std::string_view::npos && text.find('"', from) != std::string_view::npos;
}

void warnOfDeviceText(RunRecorder& recorder, const char* what, const Report::OptionalText& text, Place place) {
  if (!text) return;
  if (hasLineEnd(*text)) {
    recorder.warn(
        "device-line-end",
        fmt::format("The {} \"{}\" of the device carries a line end into the PPD; CUPS may refuse the whole file "
                    "for what follows it, or take it for a statement.",
                    what, visible(*text)));
  }
  if (hasQuoteThatCounts(*text, place)) {
    recorder.warn("device-quote",
                  fmt::format("The {} \"{}\" of the device carries a quote into the PPD; it ends a value "
                              "early, or opens one that swallows the statements behind it.",
                              what, visible(*text)));
  }
}

void warnOfMedium(RunRecorder& recorder, const Report::MediumOutcome& medium, const Report::Parse& parse) {
  if (!medium.added) return;
  warnOfDeviceText(recorder, "name", medium.device.name, Place::inFrontOfColon);
  warnOfDeviceText(recorder, "ID", medium.device.ID, Place::behindColon);
  const std::string& name = *medium.device.name;
  if (!parse.languages.empty() && name.find(':') != std::string::npos) {
    recorder.warn("colon-in-text",
                  fmt::format("In the translations of \"{}\" CUPS ends the name at the colon.", visible(name)));
  }
}

// Whether only root may change it.
bool belongsToRoot(const struct stat& status) {
  return status.st_uid == 0 && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

void warnOfFile(RunRecorder& recorder, const std::string& path) {
  struct stat status;
  struct stat folder;
  if (stat(path.c_str(), &status) != 0) {
    recorder.warn("profile-missing", fmt::format("The profile file does not exist here: {}", visible(path)));
  } else if (!path.starts_with('/') || !S_ISREG(status.st_mode)) {
    recorder.warn("profile-no-file",
                  fmt::format("CUPS uses no profile that is not a file with an absolute path: {}", visible(path)));
  } else if (!belongsToRoot(status) || stat(path.substr(0, path.rfind('/') + 1).c_str(), &folder) != 0 ||
             !belongsToRoot(folder)) {
    recorder.warn(
        "profile-permissions",
        fmt::format("CUPS leaves a profile out when it or its folder is not root's, or others may write there: {}",
                    visible(path)));
  }
}

// Whether the choice, as an updater made it, has a text of its own.
bool hasText(const ATPPDChoice& choice) {
  return !choice.container().front().view().starts_with(fmt::format("*MediaType {}/:", Text::orNull(choice.name())));
}

void warnOfChoice(RunRecorder& recorder, const Report::MediumOutcome& medium, const ATPPD& ppd,
                  const Report::Parse& parse) {
  if (!medium.added) return;
  const auto group = ppd.groupForName("QZImagingOptions");
  const auto option = group == nullptr ? nullptr : group->optionForName("MediaType");
  if (option == nullptr) {
    recorder.warn("no-media-option",
                  "The PPD has no option MediaType in a group QZImagingOptions: the choices of the "
                  "custom media are lost, though a group statement lists them.");
    return;
  }
  const auto choice = option->choiceForName(*medium.choiceName);
  if (choice == nullptr) return;
  if (!option->PPDObjects().positionOf(choice.get())) {
    recorder.warn("choice-not-written",
                  fmt::format("The choice {} is listed and not written: the option MediaType does "
                              "not end with its *CloseUI statement.",
                              *medium.choiceName));
  } else if (!hasText(*choice) && parse.languages.empty()) {
    recorder.warn("name-not-shown",
                  fmt::format("No language shows the name \"{}\" of {}: it cannot be the choice's own "
                              "text, and the PPD lists no languages.",
                              visible(medium.device.name.value_or("")), *medium.choiceName));
  }
}

void warnOfProfile(RunRecorder& recorder, const Report::Profile& profile) {
  if (profile.outcome == Report::ProfileOutcome::skipped) return;
  warnOfDeviceText(recorder, "profile spec", profile.spec, Place::inFrontOfColon);
  if (profile.path) warnOfFile(recorder, *profile.path);
  if (profile.spec && std::count(profile.spec->begin(), profile.spec->end(), '.') != 2) {
    recorder.warn("spec-parts", fmt::format("The spec {} has not three parts; CUPS matches it with no choices.",
                                            visible(*profile.spec)));
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
  if (statements.empty()) {
    recorder.warn("no-updaters",
                  fmt::format("The PPD names no updaters (*{}): nothing is done to it.", PPDKeyword::updaters));
  } else {
    recorder.warn("no-updaters",
                  fmt::format("No updater is named by *{}: {}. Their names stand between double quotes.",
                              PPDKeyword::updaters, visible(statements.front()->value().value_or("no value"))));
  }
}

// A device that nobody knows looks like one without media; one that is known has a version of its list.
bool isUnknown(const Report::DeviceAnswer& device) {
  return device.media && device.media->empty() && !device.listVersion;
}

void warnOfRemovedMedia(RunRecorder& recorder, const Report& report) {
  std::size_t removed = 0;
  for (const Report::Updater& updater : report.updaters) removed += updater.removedMedia.size();
  if (removed == 0) return;
  recorder.warn("earlier-media-removed",
                fmt::format("{} media of an earlier setup were removed, and none came in their place.", removed));
}

void warnOfDevice(RunRecorder& recorder, const Report& report) {
  if (!report.device) return;
  if (!report.device->libraryAvailable) {
    return recorder.warn("no-library", "The device-model library is not there: nothing is known of the device.");
  }
  if (!isUnknown(*report.device)) return;
  const Report::OptionalText modelName = report.parse ? report.parse->modelName : std::nullopt;
  recorder.warn(
      "no-device",
      fmt::format("The library has no data of custom media for the URI {} and the model name {}: it knows no "
                  "such device, or one without a data store.",
                  visible(report.arguments.deviceURI.value_or("")), modelName ? visible(*modelName) : "(none)"));
  warnOfRemovedMedia(recorder, report);
}

}  // namespace

void RunWarnings::addForInput(RunRecorder& recorder, const Report& report, const InputLines& input) {
  const bool isMalformed = report.parse && report.parse->failure;  // reading ended there, and not at a line's bytes
  if (const auto number = input.firstThatIsNotUTF8(); number && !isMalformed) {
    recorder.warn("cut-at-non-utf8",
                  fmt::format("Reading ended at line {}, which is not UTF-8 (bytes {}); what follows is "
                              "not in the result.",
                              *number, firstBadBytes(*input.line(*number))));
  }
  for (const std::size_t number : input.split()) {
    recorder.warn("line-split", fmt::format("Line {} is longer than 254 bytes and is read as several lines.", number));
  }
  if (report.succeeded()) return;  // otherwise they are those of the result
  for (const Report::Warning& warning : CUPSLimits::brokenIn(input.text())) {
    recorder.warn(warning.code, warning.text, true);
  }
}

void RunWarnings::addForResult(RunRecorder& recorder, const Report& report, const InputLines& input, const ATPPD& ppd,
                               const std::string& result) {
  warnOfUpdaters(recorder, report, ppd);
  warnOfDevice(recorder, report);
  const Report::Parse parse = report.parse.value_or(Report::Parse());
  for (const Report::Updater& updater : report.updaters) {
    for (const Report::MediumOutcome& medium : updater.media) {
      warnOfMedium(recorder, medium, parse);
      warnOfChoice(recorder, medium, ppd, parse);
      for (const Report::Profile& profile : medium.profiles) warnOfProfile(recorder, profile);
    }
  }
  if (report.device) warnOfDeviceText(recorder, "media list version", report.device->listVersion, Place::behindColon);
  for (const Report::Warning& warning : CUPSLimits::brokenInResult(input.text(), result)) {
    recorder.warn(warning.code, warning.text, warning.inInput);
  }
}
