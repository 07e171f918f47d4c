// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "explain/judge/CUPSReading.h"
#include "explain/judge/ProfileSelection.h"

/// What of a device's media a user finds in a print dialog that works with libcups.
namespace UsersView {

/// Why something of the device is not what the user finds.
enum class Loss {
  noOption,           ///< `what`, the media option, is not there
  optionNotShown,     ///< the media option stands in the group `where`, which dialogs do not show
  noChoice,           ///< the media option has no choice `what`
  nameOtherwise,      ///< the choice is shown as `what` in the languages `where`
  profileNotRead,     ///< libcups reads no profile statement with the spec `what`
  profileSpec,        ///< the spec `what` has not three parts
  profileNoOption,    ///< the spec `what` needs the option `where`
  profileNoChoice,    ///< the spec `what` needs a choice that the option `where` does not have
  profileBehind,      ///< the profile of the spec `where` is taken wherever that of `what` would be
  propertiesNotRead,  ///< libcups reads no property statement of the choice `what`
  propertiesEmpty,    ///< it reads one without content
  glossNotSet,        ///< the properties have no gloss enhancer default that could hold that of the device, `what`
  noGlossChoice       ///< the gloss enhancer default `what` is no choice of the option `where`
};

/// "no-choice", …: stable, for scripts.
const char* nameOf(Loss loss);

struct Lost {
  Loss because;
  std::string what, where;
  std::string choice;  ///< of profileNoChoice
};

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
  std::vector<Lost> lost;                                  ///< but for profiles
  std::vector<SeenProfile> profiles;                       ///< one for each of the medium's

  bool lostSomething() const;
};

/// Statements that a reading must have been asked for.
std::vector<std::string> attributes();

/// One for each of the media. The reading was opened.
std::vector<SeenMedium> of(const std::vector<Medium>& media, const CUPSReading& reading);

}  // namespace UsersView
