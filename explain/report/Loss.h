// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// Why something that a device has is not what the user finds.
enum class Loss {
  refused,            ///< CUPS opens nothing of the result
  notAdded,           ///< the medium did not become a choice
  noOption,           ///< `what`, the media option, is not there
  optionNotShown,     ///< the media option stands in the group `where`, which dialogs do not show
  noChoice,           ///< the media option has no choice `what`
  nameOtherwise,      ///< the choice is shown as `what` in the languages `where`
  profilesFailed,     ///< the work on the medium's profiles ended with an error
  profileSkipped,     ///< the profile was left out
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

struct Lost {
  Loss because;
  std::string what = {}, where = {};
  std::string choice = {};  ///< of profileNoChoice: the one that is not there
  std::string near = {};    ///< of profileNoChoice: one that is like it, if there is one
};

/// "no-choice", …: stable, for scripts.
const char* nameOf(Loss loss);
