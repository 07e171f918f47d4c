// SPDX-License-Identifier: MIT
#include "explain/watch/RunRecorder.h"

#include <utility>

#include "base/ATException.h"
#include "base/Text.h"
#include "explain/report/Wording.h"
#include "explain/report/Words.h"
#include "explain/watch/DeviceText.h"
#include "explain/watch/DocumentSummary.h"
#include "readers/MediaKeys.h"
#include "updaters/PPDKeywords.h"

namespace {

// A library may say any amount.
constexpr std::size_t kLongestReason = 500;

using OptionalText = std::optional<std::string>;

}  // namespace

void RunRecorder::didParse(const ATPPD& ppd) {
  report_.parse = DocumentSummary::of(ppd);
  for (const std::string& option : DocumentSummary::optionsOutsideGroups(ppd)) {
    warn(WarningCode::optionOutsideGroup, {{"option", option}});
  }
  if (ppd.attributeForName(PPDKeyword::mediaListVersion) != nullptr) {
    warn(WarningCode::earlierSetup, {{"keyword", PPDKeyword::mediaListVersion}});
  }
}

void RunRecorder::didNameUpdater(std::string_view name, UpdaterKind kind) {
  if (name.empty()) return;
  Report::Updater updater;
  updater.name = name;
  updater.known = kind == UpdaterKind::known;
  report_.updaters.push_back(std::move(updater));
  if (kind == UpdaterKind::unknown) warn(WarningCode::unknownUpdater, {{"updater", name}});
}

void RunRecorder::willUpdate(const ATPPD& ppd) {
  while (!report_.updaters[nextKnown_].known) ++nextKnown_;
  running_ = nextKnown_++;
  before_.emplace(ppd);
}

void RunRecorder::didUpdate(const ATPPD& ppd, UpdateResult result) {
  endUpdate(ppd,
            result == UpdateResult::succeeded ? Report::UpdaterOutcome::succeeded : Report::UpdaterOutcome::failed);
}

void RunRecorder::didThrow(const std::exception& error, const ATPPD& ppd) {
  const std::string_view told = error.what();
  const std::string reason = told.empty() ? "no reason is given" : Wording::cutTo(kLongestReason, told);
  report_.failure = "an error ended the run: " + reason;
  const auto* exception = dynamic_cast<const ATException*>(&error);
  if (exception != nullptr && exception->isLibraryFailure()) {
    warn(WarningCode::libraryFailed, {{"reason", reason}});
  }
  if (!before_) return;
  updater().error = reason;
  if (isAtMedium_) {
    report_.failure += " (at the medium " + Wording::of(medium().device) + ")";
    if (medium().device.custom && !medium().added) medium().notAdded = "an error ended the run: " + reason;
  }
  endUpdate(ppd, Report::UpdaterOutcome::threw);
}

void RunRecorder::endUpdate(const ATPPD& ppd, Report::UpdaterOutcome outcome) {
  updater().outcome = outcome;
  updater().changes = before_->to(DocumentChanges(ppd));
  before_.reset();
  isAtMedium_ = false;
}

void RunRecorder::didReadMedia(const DeviceValue& mediaList) {
  if (mediaList.isAbsent()) return;
  updater().askedForMedia = true;
  if (!report_.device) report_.device = Report::DeviceAnswer();
  Report::DeviceAnswer& answer = *report_.device;
  answer.question = library_.question();
  answer.storeFound = library_.storeFound();
  answer.itemFound = library_.itemFound();
  answer.listVersion = DeviceText::of(mediaList, MediaKey::listVersion);
  const auto list = mediaList.valueForKey(MediaKey::list).list();
  answer.libraryAvailable = list != nullptr;
  if (list != nullptr) noteMedia(*list);
}

// What a record lacks because it ended before is taken from the data store.
void RunRecorder::noteMedia(const DeviceValue::List& records) {
  const auto& stored = library_.storedMedia();
  std::vector<Report::Medium>& media = report_.device->media.emplace();
  for (std::size_t index = 0; index < records.size(); ++index) {
    Report::Medium medium = DeviceText::mediumOf(records[index]);
    if (index < stored.size()) {
      if (!medium.name) medium.name = stored[index].name;
      if (!medium.ID) medium.ID = stored[index].ID;
    }
    warnOfMissingKey(records[index], medium);
    media.push_back(std::move(medium));
  }
}

// A record ends at the first thing that the device does not have, so the category behind it is lost.
void RunRecorder::warnOfMissingKey(const DeviceValue& record, const Report::Medium& medium) {
  static constexpr std::pair<const char*, const char*> kKeys[] = {{MediaKey::name, "name"},
                                                                  {MediaKey::ID, "ID"},
                                                                  {MediaKey::categoryName, "category name"},
                                                                  {MediaKey::categoryID, "category"}};
  for (const auto& [key, what] : kKeys) {
    if (!record.valueForKey(key).isAbsent()) continue;
    return warnings_.add(WarningCode::recordIncomplete, {{"lacking", what}}, AboutMedium{medium.name, medium.ID});
  }
}

void RunRecorder::didReadFamily(const std::optional<std::string>& familyCode) {
  if (!report_.device) report_.device = Report::DeviceAnswer();
  report_.device->libraryAvailable = familyCode.has_value();
  report_.device->familyCode = familyCode.value_or("");
}

// The last name of a group statement that this run wrote comes with what stands behind it, and removes nothing.
void RunRecorder::willRemoveMedium(std::string_view choiceName) {
  if (choiceName.find('"') != std::string_view::npos) return;
  if (!DeviceText::isCustomChoice(choiceName)) {
    warn(WarningCode::factoryMediumRemoved, {{"choice", choiceName}});
  }
  // Cleaning up comes before an updater's own media, so what was made in this run was made by an earlier one.
  const bool isOfThisRun = made_.count(std::string(choiceName)) != 0;
  (isOfThisRun ? updater().replacedMedia : updater().removedMedia).emplace_back(choiceName);
}

void RunRecorder::willRemoveProfile(const ATPPDAttribute& profile, std::string_view forChoiceName) {
  const auto parts = Text::split(*profile.spec(), ".");
  if (parts.size() == 3 && parts[1] == forChoiceName) return;
  warn(WarningCode::profileRemovedForAnother, {{"profile", *profile.spec()}, {"choice", forChoiceName}});
}

void RunRecorder::willRestoreProfile(const ATPPDAttribute& profile) {
  restoring_ = profile.strings()[0].view();
}

// A profile that already was the factory's is set to the same again.
void RunRecorder::didRestoreProfile(const ATPPDAttribute& profile) {
  if (profile.strings()[0].view() != restoring_) didMakeProfileAnew(profile.spec());
}

void RunRecorder::didMakeProfileAnew(const ATPPD::Spec& spec) {
  updater().restoredProfiles.emplace_back(Text::orNull(spec));
}

void RunRecorder::willProcess(const DeviceValue& record, bool isCustom) {
  Report::MediumOutcome outcome;
  outcome.device = DeviceText::mediumOf(record);
  outcome.device.custom = isCustom;
  const std::size_t index = updater().media.size();
  if (report_.device && report_.device->media && index < report_.device->media->size()) {
    outcome.device.name = (*report_.device->media)[index].name;
    outcome.device.ID = (*report_.device->media)[index].ID;
  }
  updater().media.push_back(std::move(outcome));
  isAtMedium_ = true;
}

void RunRecorder::warnOfUnknownID(const DeviceValue& ID) {
  const Report::Medium& device = medium().device;
  if (device.custom && device.ID == DeviceText::of(ID)) return;  // its own, since it did not become a choice
  warn(WarningCode::idNotFound, {{"parent", device.custom ? std::optional(ID.description()) : std::nullopt}});
}

void RunRecorder::didSearchForID(const DeviceValue& ID, const ATPPDChoice* found) {
  if (!medium().device.custom && medium().device.ID == DeviceText::of(ID)) {
    medium().lookedUp = true;
    medium().choiceName = found == nullptr ? std::nullopt : OptionalText(found->name());
  }
  if (found == nullptr) return warnOfUnknownID(ID);
  if (holdsWord(*found->code(), *ID.text())) return;
  warn(WarningCode::idInsideCode,
       {{"ID", *ID.text()}, {"choice", Text::orNull(found->name())}, {"code", *found->code()}});
}

void RunRecorder::didAddMedium(const ATPPDChoice& choice, const ATPPDOption* to) {
  medium().added = true;
  medium().choiceName = OptionalText(choice.name());
  made_.emplace(Text::orNull(choice.name()));
  if (to != nullptr) medium().choiceCode = OptionalText(choice.code());
}

void RunRecorder::didNotAddMedium(MediumProblem problem) {
  medium().notAdded = Wording::of(problem);
  warn(WarningCode::mediumLeftOut, {{"reason", medium().notAdded}});
}

void RunRecorder::didInherit(std::string_view parentName, const ATPPDAttribute::Part& properties) {
  medium().parent = parentName;
  medium().inherited = OptionalText(properties);
}

void RunRecorder::didSetGloss(std::string_view /*choiceName*/, std::string_view before, std::string_view after) {
  medium().glossBefore = DocumentSummary::glossIn(before);
  medium().glossAfter = DocumentSummary::glossIn(after);
}

Report::Profile& RunRecorder::addedOutcome(const ObservedProfile& profile) {
  Report::Profile outcome;
  outcome.name = profile.name;
  outcome.url = profile.url;
  outcome.path = profile.path;
  outcome.spec = OptionalText(profile.spec);
  medium().profiles.push_back(std::move(outcome));
  return medium().profiles.back();
}

void RunRecorder::didAddProfile(const ObservedProfile& profile) {
  addedOutcome(profile).outcome = Report::ProfileOutcome::added;
}

void RunRecorder::didSetProfile(const ObservedProfile& profile) {
  addedOutcome(profile).outcome = Report::ProfileOutcome::rewritten;
}

void RunRecorder::didSkipProfile(const ObservedProfile& profile, ProfileProblem problem) {
  const std::string reason = Wording::of(problem, profile.url);
  addedOutcome(profile).reason = reason;
  warn(WarningCode::profileSkipped, {{"profile", profile.name}, {"reason", reason}});
}

void RunRecorder::didFindNoProfiles(const DeviceValue& record) {
  const DeviceValue profiles = record.valueForKey(MediaKey::profiles);
  if (profiles.isAbsent() || profiles.list() != nullptr) return;
  medium().profilesFailure = "they are no list, and count as none";
  warn(WarningCode::profileListFailed);
}

void RunRecorder::profilesFailed(const std::string& reason) {
  medium().profilesFailure = reason;
  warn(WarningCode::profileListFailed, {{"reason", reason}});
}

void RunRecorder::warn(WarningCode code, std::vector<Warning::Fact> facts) {
  std::optional<AboutMedium> about;
  if (isAtMedium_) about = AboutMedium{medium().device.name, medium().device.ID};
  warnings_.add(code, std::move(facts), std::move(about));
}
