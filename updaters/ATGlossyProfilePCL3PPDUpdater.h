// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "updaters/GuardedProfileUpdater.h"

/// Serves PPDs in which glossy media have one profile for each choice of the gloss enhancer, ".<media>.<choice>". The
/// device's gloss values become the names of those choices, and a whole-page profile serves for the economy mode too
/// when the device has none for that.
class ATGlossyProfilePCL3PPDUpdater : public GuardedProfileUpdater<ATMediaTypePCL3PPDUpdater> {
 public:
  using GuardedProfileUpdater::GuardedProfileUpdater;

  /// The general spec, for a glossy medium in a PPD that has a `*cupsICCQualifier3` with the gloss value behind it.
  std::string profileSpecFromMediaData(const Record& record, const ProfileEntry& profileInfo,
                                       const ATPPD& ppd) const override;

  /// The record with its profiles' gloss values converted and an economy mode entry appended where that applies. The
  /// profile list and its entries are shared with `record` and changed in place: later steps for the same medium see
  /// the converted values. Throws ATException for an entry without a gloss value.
  virtual Record mediaInfoByConvertDeviceData(const Record& record, const ATPPD& toPPD) const;

 private:
  Record adaptedRecord(const Record& record, const ATPPD& ppd) const override {
    return mediaInfoByConvertDeviceData(record, ppd);
  }
  const char* className() const override { return "ATGlossyProfilePCL3PPDUpdater"; }
};
