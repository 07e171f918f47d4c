// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// A new PPD of a queue with the defaults that the queue has, as the scheduler carries them over from one PPD to the
/// next when it makes the new one (CUPS, copy_model); a PPD that it is given it takes as it is.
struct CarriedDefaults {
  std::string ppd;
  std::vector<std::string> lost;  ///< those that the new PPD does not offer, each in a sentence

  /// `fresh` is the new PPD as it was made. `medium` is the default of MediaType that it is to have, which does not go
  /// by the old one's name; empty for none.
  static CarriedDefaults from(std::string_view old, const std::string& fresh, const std::string& medium);
};
