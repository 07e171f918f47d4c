// SPDX-License-Identifier: MIT
#include "explain/DeviceWarnings.h"

#include <fmt/format.h>

#include <algorithm>

#include "explain/SnapshotHint.h"
#include "explain/Wording.h"
#include "readers/IATDataReader.h"

namespace {

using Wording::visible;

void warnOfRemovedMedia(RunRecorder& recorder, const Report& report) {
  std::size_t removed = 0;
  for (const Report::Updater& updater : report.updaters) removed += updater.removedMedia.size();
  if (removed == 0) return;
  recorder.warn("earlier-media-removed",
                fmt::format("{} media of an earlier setup were removed, and none came in their place.", removed));
}

std::string asAsked(const Report::Question& question) {
  return fmt::format("the URI {} and {}", visible(question.deviceURI.value_or("(none)")),
                     question.modelName ? "the model name " + visible(*question.modelName) : "no model name");
}

void warnOfUnknownDevice(RunRecorder& recorder, const Report::DeviceAnswer& device) {
  const Report::Question& question = *device.question;
  if (device.storeFound) {
    return recorder.warn("no-data-store",
                         fmt::format("The device's data store has no item {}, where its media would be. Asked for: {}.",
                                     VMCustomMediaStorage, asAsked(question)));
  }
  const auto hint = snapshotHintFor(question);
  if (hint && hint->isDeviceWithoutMedia) {
    recorder.warn("no-data-store", fmt::format("{} Asked for: {}.", hint->text, asAsked(question)));
  } else {
    recorder.warn("no-device", fmt::format("The library knows no device with {}, or none with a data store.{}{}",
                                           asAsked(question), hint ? " " : "", hint ? hint->text : ""));
  }
}

// The family is asked for without a model name, so a device that has one does not answer.
void warnOfUnknownFamily(RunRecorder& recorder, const Report& report) {
  const Report::DeviceAnswer& device = *report.device;
  if (!device.libraryAvailable || !device.familyCode || !device.familyCode->empty()) return;
  recorder.warn(
      "no-family",
      fmt::format("The library knows no family of the device with the URI {} and no model name, without which it is "
                  "asked for: the printer-language commands are the second set.",
                  visible(report.arguments.deviceURI.value_or("(none)"))));
}

}  // namespace

void DeviceWarnings::add(RunRecorder& recorder, const Report& report) {
  const bool anyKnown = std::any_of(report.updaters.begin(), report.updaters.end(),
                                    [](const Report::Updater& updater) { return updater.known; });
  if (!report.device) {
    if (report.arguments.printerID && anyKnown) {
      recorder.warn("device-not-asked",
                    "The device was not asked: a printer that is given by its ID has no media for the updaters.");
    }
    return;
  }
  if (!report.device->libraryAvailable) {
    recorder.warn("no-library", "The device-model library is not there: nothing is known of the device.");
  } else if (report.device->question && !report.device->itemFound) {
    warnOfUnknownDevice(recorder, *report.device);
    warnOfRemovedMedia(recorder, report);
  }
  warnOfUnknownFamily(recorder, report);
}
