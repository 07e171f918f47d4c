// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "explain/DocumentChanges.h"
#include "explain/Report.h"
#include "ppd/ATPPD.h"
#include "readers/DeviceValue.h"

/// Collects what the watched updaters and the watched reader tell of a run. There is one run in a process, and updaters
/// hold no state, so the recorder of the run is found through `current`.
class RunRecorder {
 public:
  explicit RunRecorder(Report& report) : report_(report) { current_ = this; }
  RunRecorder(const RunRecorder&) = delete;
  RunRecorder& operator=(const RunRecorder&) = delete;
  ~RunRecorder() { current_ = nullptr; }

  static RunRecorder& current() { return *current_; }

  void didParse(const ATPPD& ppd);
  void didNameUpdater(std::string_view name, bool known);
  void didReadMedia(const DeviceValue& mediaList);
  void didReadFamily(const std::string& familyCode);

  /// Around one updater's work on the document.
  void willUpdate(const ATPPD& ppd);
  void didUpdate(const ATPPD& ppd, Report::UpdaterOutcome outcome, const std::string& error = "");

  void didRemoveMedium(const std::string& choiceName, const ATPPD::Attributes& profiles);
  void didRestoreProfile(const ATPPD::Spec& spec);

  /// Around the work on one medium; what is recorded in between belongs to it. `medium` may be called outside, too.
  void willProcess(const DeviceValue& record);
  void didProcess() { processing_ = false; }
  Report::MediumOutcome& medium();

  /// The outcome of looking a choice up by an ID.
  void didFindChoice(const std::string& ID, const std::string& choiceName, const std::string& code);

  void didMakeSpec(const DeviceValue& entry, const std::string& spec, bool exists);
  void didMakeStatements(bool made);
  /// Around the adding or setting of the record's profiles.
  void willAddProfiles() { profileWork_.clear(); }
  void didAddProfiles(const DeviceValue& record, bool adding);

  void warn(const std::string& code, const std::string& text);

 private:
  // What was seen of one profile entry.
  struct ProfileWork {
    std::string spec;
    bool exists = false;  // a statement of this spec, before
    std::optional<bool> statementsMade;
  };
  Report::Updater& updater() { return report_.updaters[running_]; }
  void warnOfMissingKey(const DeviceValue& record);
  Report::Profile outcomeOf(const DeviceValue& entry, bool adding) const;

  inline static RunRecorder* current_ = nullptr;
  Report& report_;
  std::size_t running_ = 0;  // index of the updater at work
  std::size_t nextKnown_ = 0;
  std::optional<DocumentChanges> before_;
  bool processing_ = false;
  Report::MediumOutcome outside_;  // for what happens outside the work on any medium
  std::unordered_map<const DeviceMap*, ProfileWork> profileWork_;
  const DeviceMap* lastEntry_ = nullptr;
  std::set<std::pair<std::string, std::string>> warned_;
};
