// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "explain/judge/CUPSReading.h"
#include "explain/report/Loss.h"

/// What of a device's media a user finds in a print dialog that works with libcups.
namespace UsersView {

struct Profile {
  std::string spec, path;
};

/// A medium as a run left it.
struct Medium {
  std::string name;                       ///< of the device
  std::optional<std::string> choiceName;  ///< absent: it got none, or none stands for it
  bool isCustom = false;                  ///< otherwise its name and properties are the PPD's own
  bool inherits = false;                  ///< it has a parent that has properties
  std::optional<std::string> gloss;       ///< the gloss enhancer default that the device gives
  std::vector<Profile> profiles;          ///< those that the run wrote
};

struct SeenProfile {
  std::vector<std::pair<std::string, std::string>> selectedBy;  ///< options and choices with which CUPS takes it
  std::optional<Lost> lost;
};

struct SeenMedium {
  bool isWritten = false;                                  ///< there is a choice
  std::vector<std::pair<std::string, std::string>> shown;  ///< languages and names, when the option is shown
  std::string properties;                                  ///< as libcups reads them
  std::vector<Lost> lost;                                  ///< but for profiles
  std::vector<SeenProfile> profiles;                       ///< one for each of the medium's
};

/// Statements that a reading must have been asked for.
std::vector<std::string> attributes();

/// One for each of the media. The reading was opened.
std::vector<SeenMedium> of(const std::vector<Medium>& media, const CUPSReading& reading);

}  // namespace UsersView
