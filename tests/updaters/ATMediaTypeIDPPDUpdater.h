// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "updaters/ATMediaTypePPDUpdater.h"

/// The custom media type updater of queues whose printer takes the bare media ID as the code of a choice.
class ATMediaTypeIDPPDUpdater : public ATMediaTypePPDUpdater {
 public:
  using ATMediaTypePPDUpdater::ATMediaTypePPDUpdater;

  std::optional<std::string> mediaTypeChoiceCodeWithName(const std::string& /*choiceName*/,
                                                         const DeviceValue& ID) const override {
    return ID.description();
  }
};
