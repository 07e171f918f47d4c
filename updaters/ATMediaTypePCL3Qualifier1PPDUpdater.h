// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "updaters/ATMediaTypePCL3Qualifier3PPDUpdater.h"

/// Serves PPDs whose profiles are chosen by the simplified gloss enhancer and the output mode, with specs
/// "<True or False>.<media>.<output mode>". The device's gloss values become "True" and "False"; when the device
/// reports a single profile, the factory profiles of the opposite gloss setting are added, so that the medium has
/// profiles for both.
class ATMediaTypePCL3Qualifier1PPDUpdater : public ATMediaTypePCL3Qualifier3PPDUpdater {
 public:
  /// Removes every profile statement for a gloss setting, then restores the factory's.
  void restoreFactoryICCProfilesInPPD(ATPPD& ppd) const override;
  /// Removes every profile statement of the medium, the general one included.
  void removeSpecializedICCQualifiers(ATPPD& ppd, const Record& aMediaTypeData) const override;
  /// The entry's gloss value and output mode, as far as present, around the general spec.
  std::string profileSpecFromMediaData(const Record& record, const ProfileEntry& profileInfo,
                                       const ATPPD& ppd) const override;
  /// An error, such as an entry without a gloss value, is logged and gives false.
  bool addICCProfileForMediaWithData(const Record& record, ATPPD& toPPD) const override;
  /// An error is logged.
  void setICCProfileForMediaWithData(const Record& record, ATPPD& inPPD) const override;

  /// Whether the PPD's profiles are qualified by exactly `QZGlossEnhancerSimplified` and `OutputMode`.
  virtual bool isApplicableToPPD(const ATPPD& ppd) const;

  /// The record with the gloss values of its profiles converted and, for a single profile, the opposite factory
  /// profiles appended. The profile list and its entries are shared with `record` and changed in place: later steps
  /// for the same medium see the adjusted values. The record itself when the updater is not applicable. Throws
  /// ATException for an entry without a gloss value.
  virtual Record adjustedMediaData(const Record& record, const ATPPD& toPPD) const;

 private:
  void appendOppositeFactoryProfiles(const std::string& qualifier, DeviceValue::List& profiles, const ATPPD& ppd) const;
};
