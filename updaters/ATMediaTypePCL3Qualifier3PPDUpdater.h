// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "updaters/ATMediaTypePCL3PPDUpdater.h"

/// Serves PPDs whose profile statements are specialised by the option that `*cupsICCQualifier3` names, one statement
/// ".<media>.<choice>" for each of its choices. For a factory medium whose profile the device reports, one general
/// statement ".<media>." takes the place of the specialised ones. Cleaning up takes a general statement out again
/// where the factory had only specialised ones, and makes missing factory statements anew.
///
/// A two-component spec is one whose third part is empty.
class ATMediaTypePCL3Qualifier3PPDUpdater : public ATMediaTypePCL3PPDUpdater {
 public:
  using ATMediaTypePCL3PPDUpdater::ATMediaTypePCL3PPDUpdater;

  /// Throws ATException when a factory statement has a spec without a ".", or none.
  void restoreFactoryICCProfilesInPPD(ATPPD& ppd) const override;
  /// Makes the statement from the factory profile when it is null.
  void updateCupsProfile(const ATPPD::AttributePtr& profile, ATPPD& inPPD,
                         const ATQZProfilePPDAttributeWrapper& withQZProfileAttribute) const override;
  /// Puts a general statement in the place of the medium's specialised ones.
  void setICCProfileForMediaWithData(const Record& record, ATPPD& inPPD) const override;

  /// Removes the medium's specialised profile statements with their localizations.
  virtual void removeSpecializedICCQualifiers(ATPPD& ppd, const Record& aMediaTypeData) const;

  /// ".<media qualifier>.<choice>" for every choice of the option that `*cupsICCQualifier3` names; absent without a
  /// media qualifier or that statement.
  virtual std::optional<std::vector<std::string>> qualified3PossibleProfileSpecsForMediaData(const Record& record,
                                                                                             const ATPPD& ppd) const;

  /// The names of the option's choices in order; none for null.
  virtual std::vector<std::string> choiceNamesForOption(const std::shared_ptr<ATPPDOption>& option) const;

  /// The two-component specs that no factory statement has but whose specialised forms some have, each once, in the
  /// order of first appearance.
  virtual std::vector<std::string> collectPossible2ComponentSpecsToRemoveWithFactoryProfiles(
      const ATPPD::Attributes& factoryProfiles) const;

  /// The spec up to and including its last ".". Throws ATException for a spec without one, or none at all.
  virtual std::string twoComponentICCProfileSpecFor3ComponentSpec(const ATPPD::Spec& spec) const;

 protected:
  /// The quoted content of the value of the statement (which has no spec), or the value itself when it has no two
  /// quotes; absent without the statement.
  static std::optional<std::string> qualifierOption(const char* statement, const ATPPD& ppd);
};
