// SPDX-License-Identifier: MIT
#include "explain/judge/DeviceJudge.h"

#include <algorithm>

#include "explain/judge/DeviceTextJudge.h"
#include "explain/judge/SnapshotHint.h"
#include "readers/IATDataReader.h"

namespace {

void judgeRemovedMedia(const Report& report, Warnings& warnings) {
  std::size_t removed = 0;
  for (const Report::Updater& updater : report.updaters) removed += updater.removedMedia.size();
  if (removed > 0) warnings.add(WarningCode::earlierMediaRemoved, {{"count", removed}});
}

void judgeUnknownDevice(const Report::DeviceAnswer& device, Warnings& warnings) {
  const Report::Question& question = *device.question;
  std::vector<Warning::Fact> facts = {{"uri", question.deviceURI.value_or("(none)")}, {"model", question.modelName}};
  if (device.storeFound) {
    facts.emplace_back("item", VMCustomMediaStorage);
    return warnings.add(WarningCode::noDataStore, std::move(facts));
  }
  const auto hint = snapshotHintFor(question);
  if (hint) facts.emplace_back("hint", hint->text);
  const bool isKnown = hint && hint->isDeviceWithoutMedia;
  warnings.add(isKnown ? WarningCode::noDataStore : WarningCode::noDevice, std::move(facts));
}

// The family is asked for without a model name, so a device that has one does not answer.
void judgeUnknownFamily(const Report& report, Warnings& warnings) {
  const Report::DeviceAnswer& device = *report.device;
  if (!device.libraryAvailable || !device.familyCode || !device.familyCode->empty()) return;
  warnings.add(WarningCode::noFamily, {{"uri", report.arguments.deviceURI.value_or("(none)")}});
}

}  // namespace

void DeviceJudge::judge(const Evidence& evidence, Warnings& warnings) {
  const Report& report = evidence.report;
  const bool anyKnown = std::any_of(report.updaters.begin(), report.updaters.end(),
                                    [](const Report::Updater& updater) { return updater.known; });
  if (!report.device) {
    if (report.arguments.printerID && anyKnown) warnings.add(WarningCode::deviceNotAsked);
    return;
  }
  if (!report.device->libraryAvailable) {
    warnings.add(WarningCode::noLibrary);
  } else if (report.device->question && !report.device->itemFound) {
    judgeUnknownDevice(*report.device, warnings);
    judgeRemovedMedia(report, warnings);
  }
  judgeUnknownFamily(report, warnings);
  DeviceTextJudge::judge("media list version", report.device->listVersion, DeviceTextJudge::Place::behindColon,
                         warnings);
}
