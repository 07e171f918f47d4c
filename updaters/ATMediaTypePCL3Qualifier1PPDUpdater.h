// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "updaters/ATMediaTypePCL3Qualifier3PPDUpdater.h"
#include "updaters/GuardedProfileUpdater.h"

/// Serves PPDs whose profiles are chosen by the simplified gloss enhancer and the output mode, with specs
/// "<True or False>.<media>.<output mode>". The device's gloss values become "True" and "False"; when the device
/// reports a single profile, the factory profiles of the opposite gloss setting are added, so that the medium has
/// profiles for both.
class ATMediaTypePCL3Qualifier1PPDUpdater : public GuardedProfileUpdater<ATMediaTypePCL3Qualifier3PPDUpdater> {
 public:
  using GuardedProfileUpdater::GuardedProfileUpdater;

  /// Removes every profile statement for a gloss setting, then restores the factory's.
  void restoreFactoryICCProfilesInPPD(ATPPD& ppd) const override;
  /// Removes every profile statement of the medium, the general one included.
  void removeSpecializedICCQualifiers(ATPPD& ppd, const Record& aMediaTypeData) const override;
  /// The entry's gloss value and output mode, as far as present, around the general spec.
  std::string profileSpecFromMediaData(const Record& record, const ProfileEntry& profileInfo,
                                       const ATPPD& ppd) const override;

  /// Whether the PPD's profiles are qualified by exactly `QZGlossEnhancerSimplified` and `OutputMode`.
  virtual bool isApplicableToPPD(const ATPPD& ppd) const;

  /// The record with the gloss values of its profiles converted and, for a single profile, the opposite factory
  /// profiles appended. The profile list and its entries are shared with `record` and changed in place: later steps
  /// for the same medium see the adjusted values. The record itself when the updater is not applicable. Throws
  /// ATException for an entry without a gloss value.
  virtual Record adjustedMediaData(const Record& record, const ATPPD& toPPD) const;

 private:
  Record adaptedRecord(const Record& record, const ATPPD& ppd) const override { return adjustedMediaData(record, ppd); }
  const char* className() const override { return "ATMediaTypePCL3Qualifier1PPDUpdater"; }
  void appendOppositeFactoryProfiles(const std::string& qualifier, DeviceValue::List& profiles, const ATPPD& ppd) const;
};
