// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <vector>

/// What the user loses, the most first, which is the order in reports.
enum class Gravity {
  refused,     ///< CUPS does not open the result
  nothing,     ///< no medium at all is set up
  cut,         ///< a part of the PPD
  media,       ///< a medium, its name, or the way to it
  profiles,    ///< a medium's colour profiles
  properties,  ///< its other properties, or the printer's
  files,       ///< what the PPD names is not as CUPS wants it
  odd          ///< nothing
};

/// What a warning is of, the gravest first, as in the table.
enum class WarningCode {
  cupsRefuses,
  cupsFailed,
  argumentsSwapped,
  libraryFailed,
  noLibrary,
  deviceNotAsked,
  noUpdaters,
  updatersNotQuoted,
  secondUpdaters,
  unknownUpdater,
  noDevice,
  noDataStore,
  cutAtNonUTF8,
  readingStopped,
  emptyResult,
  lineSplit,
  aplworkset,
  zeroByte,
  swallowed,
  unclosedQuote,
  optionOutsideGroup,
  noMediaOption,
  nearMiss,
  mediumNotShown,
  choiceNotWritten,
  earlierMediaRemoved,
  mediumLeftOut,
  recordIncomplete,
  categoryUnknown,
  languagesNotQuoted,
  nameNotShown,
  nameOtherwise,
  deviceLineEnd,
  deviceQuote,
  postscriptString,
  factoryMediumRemoved,
  defaultNotThere,
  mediumTwice,
  choiceTwice,
  profileListFailed,
  profileSkipped,
  idNotFound,
  profileRemovedForAnother,
  profileNeverTaken,
  profileHidden,
  profileCollision,
  idInsideCode,
  propertiesLost,
  glossNotSet,
  noGlossChoice,
  noFamily,
  profileLeavesFolder,
  profileElsewhere,
  profileMissing,
  profileNoFile,
  profilePermissions,
  profileNotReadable,
  profileNoIcc,
  earlierSetup,
  leftByEarlierSetup,
};

/// A row of the table of all warnings.
struct WarningKind {
  WarningCode code;
  const char* name;  ///< stable, for scripts
  Gravity gravity;
  const char* title;   ///< what all warnings of the code have in common, for people
  const char* remedy;  ///< what to do, for people
};

/// The table, in the order of reports; docs/explain.md, its schema and the manual page have the same codes.
const std::vector<WarningKind>& allWarningKinds();

const WarningKind& kindOf(WarningCode code);
inline const char* nameOf(WarningCode code) {
  return kindOf(code).name;
}
