// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "updaters/ATMediaTypePPDUpdater.h"

/// The custom media type updater of PostScript PPDs: its choices select the medium by a PostScript procedure.
class ATMediaTypePSPPDUpdater : public ATMediaTypePPDUpdater {
 public:
  using ATMediaTypePPDUpdater::ATMediaTypePPDUpdater;

  /// The ID is put in as it stands, without PostScript escapes; the name is not used.
  std::optional<std::string> mediaTypeChoiceCodeWithName(const std::string& choiceName,
                                                         const DeviceValue& ID) const override;
};
