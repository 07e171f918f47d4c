// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "driver/RunObserver.h"
#include "explain/report/Report.h"
#include "explain/report/Warnings.h"
#include "explain/watch/DocumentChanges.h"
#include "explain/watch/WatchedLibrary.h"
#include "updaters/UpdateObserver.h"

/// Makes a report of what a run and its updaters tell while they are at work.
class RunRecorder : public RunObserver, public UpdateObserver {
 public:
  /// `report` and `warnings` are filled as the run goes on, with what `library` was asked. None of them is owned.
  RunRecorder(Report& report, Warnings& warnings, const WatchedLibrary& library)
      : report_(report), warnings_(warnings), library_(library) {}

  /// An exception ended the run; `ppd` as it was then.
  void didThrow(const std::exception& error, const ATPPD& ppd);

  UpdateObserver& ofUpdates() override { return *this; }
  void didParse(const ATPPD& ppd) override;
  void willUpdate(const ATPPD& ppd) override;
  void didUpdate(const ATPPD& ppd, UpdateResult result) override;

  void didNameUpdater(std::string_view name, UpdaterKind kind) override;
  void didReadMedia(const DeviceValue& mediaList) override;
  void didReadFamily(const std::optional<std::string>& familyCode) override;
  void willRemoveMedium(std::string_view choiceName) override;
  void willRemoveProfile(const ATPPDAttribute& profile, std::string_view forChoiceName) override;
  void willRestoreProfile(const ATPPDAttribute& profile) override;
  void didRestoreProfile(const ATPPDAttribute& profile) override;
  void didMakeProfileAnew(const ATPPD::Spec& spec) override;
  void willProcess(const DeviceValue& record, bool isCustom) override;
  void didProcess() override { isAtMedium_ = false; }
  void didSearchForID(const DeviceValue& ID, const ATPPDChoice* found) override;
  void didAddMedium(const ATPPDChoice& choice, const ATPPDOption* to) override;
  void didNotAddMedium(MediumProblem problem) override;
  void didInherit(std::string_view parentName, const ATPPDAttribute::Part& properties) override;
  void didSetGloss(std::string_view choiceName, std::string_view before, std::string_view after) override;
  void didAddProfile(const ObservedProfile& profile) override;
  void didSetProfile(const ObservedProfile& profile) override;
  void didSkipProfile(const ObservedProfile& profile, ProfileProblem problem) override;
  void didFindNoProfiles(const DeviceValue& record) override;
  void profilesFailed(const std::string& reason) override;

 private:
  Report::Updater& updater() { return report_.updaters[running_]; }
  Report::MediumOutcome& medium() { return updater().media.back(); }
  Report::Profile& addedOutcome(const ObservedProfile& profile);
  void endUpdate(const ATPPD& ppd, Report::UpdaterOutcome outcome);
  // Of the medium at work, if there is one.
  void warn(WarningCode code, std::vector<Warning::Fact> facts = {});
  void noteMedia(const DeviceValue::List& records);
  void warnOfMissingKey(const DeviceValue& record, const Report::Medium& medium);
  void warnOfUnknownID(const DeviceValue& ID);

  Report& report_;
  Warnings& warnings_;
  const WatchedLibrary& library_;
  std::size_t running_ = 0;    // index of the updater at work
  std::size_t nextKnown_ = 0;  // index of the one that comes next, or of an unknown one in front of it
  bool isAtMedium_ = false;    // at the last one of the updater at work
  std::string restoring_;      // the line of a profile that is being restored, as it was
  std::optional<DocumentChanges> before_;
  std::set<std::string> made_;  // choices of the run
};
