// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "updaters/ATMediaTypePPDUpdater.h"
#include "updaters/ATQZProfilePPDAttributeWrapper.h"

/// The custom media type updater of PCL3 PPDs. In addition to the media choices it gives every medium colour profile
/// statements, `*cupsICCProfile ColorModel.MediaType.Resolution/Text: "file"`, from the device's profile list; puts
/// the profiles back that the PPD was shipped with; and takes those of removed media out.
///
/// CUPS matches the three parts of a profile's spec with a job's values of the options that `*cupsICCQualifier1` to
/// `3` name; an empty part matches any value (CUPS, "PPD Extensions"). The middle part is always the media qualifier,
/// the name of the medium's choice; subclasses fill the other two.
class ATMediaTypePCL3PPDUpdater : public ATMediaTypePPDUpdater {
 public:
  using ATMediaTypePPDUpdater::ATMediaTypePPDUpdater;
  using ProfileEntry = DeviceValue;

  /// Gives every profile statement for which there is a factory profile statement that factory profile.
  void restoreFactoryICCProfilesInPPD(ATPPD& ppd) const override;

  /// Sets the statement (which may be null: nothing happens) and its localizations to the wrapper's factory profile.
  virtual void updateCupsProfile(const ATPPD::AttributePtr& profile, ATPPD& inPPD,
                                 const ATQZProfilePPDAttributeWrapper& withQZProfileAttribute) const;

  /// Removes, with their localizations, the profile statements whose spec contains the choice name anywhere, which is
  /// meant (Custom1 also takes Custom12 along), then what the base class removes.
  void removeInclusionsOfMediaWithID(const std::string& choiceName, ATPPD& fromPPD) const override;

  /// "<</MediaType(name)/QZMediaID(ID)>>setpagedevice", both as they stand.
  std::optional<std::string> mediaTypeChoiceCodeWithName(const std::string& choiceName,
                                                         const DeviceValue& ID) const override;

  /// Adds statements for each profile that can be written; an existing statement of the same spec is not looked for.
  /// False when the record has no profiles.
  bool addICCProfileForMediaWithData(const Record& record, ATPPD& toPPD) const override;

  /// Sets existing statements to the device's profiles; never adds one.
  void setICCProfileForMediaWithData(const Record& record, ATPPD& inPPD) const override;

  /// The statements of one profile: the main one and one for each supported language but "en", with an empty value.
  /// Absent when any of their lines is longer than CUPS takes.
  virtual std::optional<ATPPD::Attributes> cupsICCProfileAttributesWithName(const ATPPDAttribute::Part& name,
                                                                            const ATPPD::Spec& spec,
                                                                            const std::optional<std::string>& url,
                                                                            const ATPPD& ppd) const;

  /// The spec under which the profile is written: here the general one.
  virtual std::string profileSpecFromMediaData(const Record& record, const ProfileEntry& profileInfo,
                                               const ATPPD& ppd) const;

  /// ".<media qualifier>."
  virtual std::string generalProfileSpecForMediaData(const Record& record, const ATPPD& ppd) const;

  /// The record's "PPDName", or else the name of the choice for its "ID"; absent without both.
  virtual DeviceValue mediaQualifierFromData(const Record& record, const ATPPD& ppd) const;

 private:
  void addProfile(const Record& record, const ProfileEntry& entry, ATPPD& toPPD) const;
  void setProfile(const Record& record, const ProfileEntry& entry, ATPPD& inPPD) const;
};
