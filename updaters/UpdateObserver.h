// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ppd/document/ATPPD.h"
#include "readers/DeviceValue.h"

/// Why a custom medium did not become a choice.
enum class MediumProblem {
  nothingMissing,
  noName,        ///< the record has no media name
  noID,          ///< or no ID
  noCode,        ///< or the updater has no code for it
  noChoiceName,  ///< or nobody named its choice
  lineTooLong,   ///< its choice statement would break a limit of CUPS
};

/// Why a profile of the device was left out.
enum class ProfileProblem {
  none,
  noName,
  emptyName,
  nameTooLong,       ///< longer than 80 bytes
  charactersOfName,  ///< a quote, a colon, an angle bracket, or a character that is not Latin-1
  noPath,            ///< the URL is absent, empty or not RFC 3986, or has no path
  charactersOfPath,  ///< the same as for the name
  specTooLong,       ///< longer than 40 bytes
  lineTooLong,       ///< a statement would be longer than 255 bytes
  noStatement,       ///< it was to be set, and the PPD has no statement of its spec
};

/// What a name in the PPD's list of updaters stands for.
enum class UpdaterKind { unknown, known };

/// A profile entry as an updater worked it out; what it had not come to is absent.
struct ObservedProfile {
  const std::optional<std::string>& url;
  const std::optional<std::string>& name;
  const std::optional<std::string>& path;
  std::optional<std::string_view> spec;
};

/// Is told by updaters what they do, at the place where they do it, so that a report of a run needs no rules of its
/// own. Nothing that it is given outlives the call. Every operation does nothing unless it is overridden; the tool has
/// no observer.
class UpdateObserver {
 public:
  virtual ~UpdateObserver() = default;

  /// The observer of updaters that nobody watches.
  static UpdateObserver& none() {
    static UpdateObserver observer;
    return observer;
  }

  /// A component of the PPD's list of updaters; it may be empty.
  virtual void didNameUpdater(std::string_view /*name*/, UpdaterKind /*kind*/) {}

  /// The media list dictionary, before anybody changed it in place.
  virtual void didReadMedia(const DeviceValue& /*mediaList*/) {}
  /// The family code, or absent when there is no library to ask; it may be empty.
  virtual void didReadFamily(const std::optional<std::string>& /*familyCode*/) {}

  /// Cleaning up: a medium of an earlier setup goes; with it, a profile statement whose spec contains its name; a
  /// profile statement is set to the factory's, which may be what it was, or is made from it.
  virtual void willRemoveMedium(std::string_view /*choiceName*/) {}
  virtual void willRemoveProfile(const ATPPDAttribute& /*profile*/, std::string_view /*forChoiceName*/) {}
  virtual void willRestoreProfile(const ATPPDAttribute& /*profile*/) {}
  virtual void didRestoreProfile(const ATPPDAttribute& /*profile*/) {}
  virtual void didMakeProfileAnew(const ATPPD::Spec& /*spec*/) {}

  /// Around the work on one record of the media list; what follows in between belongs to it.
  virtual void willProcess(const DeviceValue& /*record*/, bool /*isCustom*/) {}
  virtual void didProcess() {}
  /// The choice (null: none) whose code contains an ID, with what the search answers.
  virtual void didSearchForID(const DeviceValue& /*ID*/, const ATPPDChoice* /*found*/) {}
  /// The medium has become this choice of the option; without an option the choice is lost.
  virtual void didAddMedium(const ATPPDChoice& /*choice*/, const ATPPDOption* /*to*/) {}
  virtual void didNotAddMedium(MediumProblem /*problem*/) {}
  /// The choice that a custom medium derives from, and its properties, if it has any.
  virtual void didInherit(std::string_view /*parentName*/, const ATPPDAttribute::Part& /*properties*/) {}
  /// The properties of the medium with this choice name were changed for its default gloss enhancer.
  virtual void didSetGloss(std::string_view /*choiceName*/, std::string_view /*before*/, std::string_view /*after*/) {}

  virtual void didAddProfile(const ObservedProfile& /*profile*/) {}
  virtual void didSetProfile(const ObservedProfile& /*profile*/) {}
  virtual void didSkipProfile(const ObservedProfile& /*profile*/, ProfileProblem /*problem*/) {}
  /// The record has no profiles, or what it has is no list of some.
  virtual void didFindNoProfiles(const DeviceValue& /*record*/) {}
  /// An error ended the work on the medium's profiles, and was caught.
  virtual void profilesFailed(const std::string& /*reason*/) {}
};
