// SPDX-License-Identifier: MIT
#include "updaters/ATMediaTypePSPPDUpdater.h"

#include <fmt/format.h>

std::optional<std::string> ATMediaTypePSPPDUpdater::mediaTypeChoiceCodeWithName(const std::string& /*choiceName*/,
                                                                                const DeviceValue& ID) const {
  return fmt::format("/QZDict /ProcSet findresource /SetMediaId get ({}) exch exec", ID.description());
}
