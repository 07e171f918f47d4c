// SPDX-License-Identifier: MIT
#pragma once

#include "explain/report/WarningCode.h"

/// What the warnings of a code say. In braces stands the name of a fact, `medium` for the medium that the warning is
/// about; behind a colon how many bytes of it are shown at most, behind a blank what it is the number of.
struct SentencePattern {
  WarningCode code;
  const char* text;
};

/// Of the patterns of one code, the first counts whose facts a warning has.
inline constexpr SentencePattern kSentencePatterns[] = {
    {WarningCode::cupsRefuses, "CUPS refuses the whole PPD at line {line} ({words}: {meaning}): {statement:60}"},
    {WarningCode::cupsRefuses, "CUPS refuses the whole PPD at line {line} ({words}): {statement:60}"},
    {WarningCode::cupsRefuses, "CUPS refuses the whole PPD at line {line} ({words}: {meaning})."},
    {WarningCode::cupsRefuses, "CUPS refuses the whole PPD at line {line}: {words}."},
    {WarningCode::cupsRefuses, "CUPS refuses the whole PPD: {words}."},
    {WarningCode::cupsFailed,
     "libcups does not come to an end with the PPD: it crashes or takes too long, and so will CUPS."},
    {WarningCode::argumentsSwapped,
     "There is no file {ppd}, but there is {uri}: the device URI comes first, and then the PPD."},
    {WarningCode::libraryFailed, "The device-model library cannot be used: {reason}"},
    {WarningCode::noLibrary, "The device-model library is not there: nothing is known of the device."},
    {WarningCode::deviceNotAsked,
     "The device was not asked: a printer that is given by its ID has no media for the updaters."},
    {WarningCode::noUpdaters, "The PPD names no updaters (*{empty} is empty): nothing is done to it."},
    {WarningCode::noUpdaters, "The PPD names no updaters (it has no *{keyword} at its top): nothing is done to it."},
    {WarningCode::updatersNotQuoted,
     "The names in *{keyword} do not stand between double quotes, so no updater is named and nothing is done: {value}"},
    {WarningCode::secondUpdaters, "*{keyword} stands in the PPD {times} times; only the first one counts."},
    {WarningCode::unknownUpdater, "No updater is named \"{updater}\"; it is skipped."},
    {WarningCode::noDevice,
     "The library knows no device with the URI {uri} and the model name {model}, or none with a data store. {hint}"},
    {WarningCode::noDevice,
     "The library knows no device with the URI {uri} and the model name {model}, or none with a data store."},
    {WarningCode::noDevice,
     "The library knows no device with the URI {uri} and no model name, or none with a data store. {hint}"},
    {WarningCode::noDevice,
     "The library knows no device with the URI {uri} and no model name, or none with a data store."},
    {WarningCode::noDataStore, "{hint} Asked for: the URI {uri} and the model name {model}."},
    {WarningCode::noDataStore, "{hint} Asked for: the URI {uri} and no model name."},
    {WarningCode::noDataStore,
     "The device's data store has no item {item}, where its media would be. Asked for: the URI {uri} and the model "
     "name {model}."},
    {WarningCode::noDataStore,
     "The device's data store has no item {item}, where its media would be. Asked for: the URI {uri} and no model "
     "name."},
    {WarningCode::cutAtNonUTF8,
     "Reading ended at line {line}, which is not UTF-8 from byte {byte} of {size} of the file on ({found}); this line "
     "and what follows are not in the result."},
    {WarningCode::cutAtNonUTF8,
     "Reading ended at line {line}, which is not UTF-8 from byte {byte} of the file on ({found}); this line and what "
     "follows are not in the result."},
    {WarningCode::readingStopped,
     "Reading ended behind {read} of {size} bytes: the file could not be read to its end. What follows is not in the "
     "result."},
    {WarningCode::readingStopped,
     "The gzip file is damaged, cut off, or goes on behind its end: reading ended behind {unpacked} unpacked bytes. "
     "What follows is not in the result."},
    {WarningCode::readingStopped, "What was given as the PPD is a directory, which reads as an empty PPD."},
    {WarningCode::emptyResult, "The PPD that is written is empty."},
    {WarningCode::lineSplit, "Line {line} is longer than 254 bytes and is read as several lines."},
    {WarningCode::aplworkset, "CUPS stops reading at the comment *%APLWORKSET START."},
    {WarningCode::zeroByte, "CUPS takes a zero byte for the end of its line: {statement:60}"},
    {WarningCode::swallowed,
     "An odd quote in \"{statement:60}\" swallows {count statement}, from \"{from:60}\" to \"{to:60}\"."},
    {WarningCode::unclosedQuote, "The quote that opens in this statement is never closed: {statement:60}"},
    {WarningCode::optionOutsideGroup, "The option {option} stands outside every group, where no updater finds it."},
    {WarningCode::noMediaOption,
     "The PPD has no option MediaType in a group QZImagingOptions: the choices of the custom media are lost, though a "
     "group statement lists them."},
    {WarningCode::nearMiss,
     "Nobody finds {wanted} where it stands: inside the {inside} {around}, line {line} of the PPD."},
    {WarningCode::nearMiss,
     "Nobody finds {wanted}; line {line} of the PPD has {alike}, which looks the same, with another character."},
    {WarningCode::nearMiss, "Nobody finds {wanted}; line {line} of the PPD has {found}."},
    {WarningCode::nearMiss, "There is no updater {updater}, but {alike}, which looks the same, with other characters."},
    {WarningCode::nearMiss, "There is no updater {updater}, but {found}."},
    {WarningCode::nearMiss,
     "The language {language} in *cupsLanguages is none that a user has: languages stand between blanks."},
    {WarningCode::nearMiss,
     "Nobody reads the member {member} of the device snapshot (in {place}); {meant} would be read, and is not there."},
    {WarningCode::mediumNotShown,
     "No user finds the medium {medium}: the option {option} stands in the group {group}, which dialogs do not show."},
    {WarningCode::mediumNotShown, "No user finds the medium {medium}: CUPS reads no choice {choice} of MediaType."},
    {WarningCode::mediumNotShown, "No user finds the medium {medium}: CUPS reads no option MediaType."},
    {WarningCode::choiceNotWritten,
     "The choice {choice} is listed and not written: the option MediaType does not end with its *CloseUI statement."},
    {WarningCode::earlierMediaRemoved, "{count} media of an earlier setup were removed, and none came in their place."},
    {WarningCode::mediumLeftOut, "The medium {medium} did not become a choice: {reason}."},
    {WarningCode::recordIncomplete,
     "The device gives no {lacking} for the medium {medium}; its record ends there, and it is not taken for a custom "
     "medium."},
    {WarningCode::categoryUnknown,
     "The category {category} of the medium {medium} is written otherwise than that of a custom medium, so it is taken "
     "for a factory medium."},
    {WarningCode::languagesNotQuoted,
     "The languages in *cupsLanguages do not stand between double quotes, so there are none: {value}"},
    {WarningCode::nameNotShown,
     "Only English shows the name of the medium {medium}: it cannot be the text of the choice {choice}, and the PPD "
     "lists no languages."},
    {WarningCode::nameOtherwise, "The name of the medium {medium} is shown as \"{shown}\" ({languages}), since {why}."},
    {WarningCode::nameOtherwise, "The name of the medium {medium} is shown as \"{shown}\" ({languages})."},
    {WarningCode::deviceLineEnd,
     "The {what} \"{text}\" of the device carries a line end into the PPD; CUPS may refuse the whole file for what "
     "follows it, or take it for a statement."},
    {WarningCode::deviceQuote,
     "The {what} \"{text}\" of the device carries a quote into the PPD; it ends a value early, or opens one that "
     "swallows the statements behind it."},
    {WarningCode::postscriptString,
     "The ID {ID} of the medium {medium} stands in a PostScript string and closes or changes it; the printer gets "
     "other code than was meant: {code}"},
    {WarningCode::factoryMediumRemoved,
     "The medium {choice} is listed as one of an earlier setup and was removed, though its name is none of a custom "
     "medium's."},
    {WarningCode::defaultNotThere,
     "*DefaultMediaType names {choice}, which is no choice of the result: CUPS marks no medium."},
    {WarningCode::mediumTwice, "The device has the ID {ID} more than once."},
    {WarningCode::mediumTwice, "The device has the name \"{name}\" more than once."},
    {WarningCode::choiceTwice,
     "The choice {choice} stands in the PPD {times} times: two media updaters made it, or an earlier setup left one."},
    {WarningCode::profileListFailed, "The work on the profiles of the medium {medium} ended with an error: {reason}."},
    {WarningCode::profileListFailed, "The profiles of the medium {medium} are no list, and count as none."},
    {WarningCode::profileSkipped, "The profile \"{profile}\" of the medium {medium} was left out: {reason}."},
    {WarningCode::profileSkipped, "A profile of the medium {medium} was left out: {reason}."},
    {WarningCode::idNotFound,
     "The parent {parent} of the medium {medium} is in no choice's code: no properties are inherited."},
    {WarningCode::idNotFound,
     "The ID of the medium {medium} is in no choice's code of this PPD: there is nothing to set."},
    {WarningCode::profileRemovedForAnother,
     "The profile {profile} went with the earlier medium {choice}, whose name its spec contains."},
    {WarningCode::profileNeverTaken,
     "CUPS takes the profile {spec} of the medium {medium} with no choices: the option {option} has no choice "
     "{choice}, but has {near}."},
    {WarningCode::profileNeverTaken,
     "CUPS takes the profile {spec} of the medium {medium} with no choices: the option {option} has no choice "
     "{choice}."},
    {WarningCode::profileNeverTaken,
     "CUPS takes the profile {spec} of the medium {medium} with no choices: there is no option {needed}."},
    {WarningCode::profileNeverTaken,
     "CUPS takes the profile {parts} of the medium {medium} with no choices: its spec has not three parts."},
    {WarningCode::profileNeverTaken, "CUPS does not read the profile {unread} of the medium {medium}."},
    {WarningCode::profileHidden,
     "CUPS never takes the profile {spec} of the medium {medium}: that of the spec {other} stands in front of it and "
     "is taken for the same choices."},
    {WarningCode::profileCollision,
     "macOS gives the profiles {first} and {second} one number; the second replaces the first."},
    {WarningCode::idInsideCode, "The ID {ID} was found inside the code of the choice {choice}, which is {code}."},
    {WarningCode::propertiesLost,
     "CUPS does not read the properties of the choice {choice}, which is the medium {medium}."},
    {WarningCode::propertiesLost,
     "The medium {medium} inherits properties without content from its parent, the choice {parent}."},
    {WarningCode::glossNotSet,
     "The gloss enhancer default {gloss} of the medium {medium} is no choice of the option {option}."},
    {WarningCode::glossNotSet,
     "The gloss enhancer default {gloss} of the device is not set for the medium {medium}: its properties have no "
     "defaultGE."},
    {WarningCode::noGlossChoice,
     "The PPD has no choice for a gloss enhancer default: {count property statement} say '(null)' now."},
    {WarningCode::noFamily,
     "The library knows no family of the device with the URI {uri} and no model name, without which it is asked for: "
     "the printer-language commands are the second set."},
    {WarningCode::profileLeavesFolder,
     "The path of the profile goes up with \"..\", out of its folder: {path} (medium {medium})"},
    {WarningCode::profileElsewhere,
     "The URL of the profile is of the host {host}; only its path gets into the PPD: {url} (medium {medium})"},
    {WarningCode::profileElsewhere,
     "The URL of the profile is no file URL; only its path gets into the PPD: {url} (medium {medium})"},
    {WarningCode::profileMissing, "The profile file does not exist here: {path} (medium {medium})"},
    {WarningCode::profileNoFile,
     "CUPS uses no profile that is not a file with an absolute path: {path} (medium {medium})"},
    {WarningCode::profilePermissions,
     "CUPS leaves a profile out when it or its folder is not root's, or others may write there: {path} (medium "
     "{medium})"},
    {WarningCode::profileNotReadable, "The profile file cannot be looked at here ({reason}): {path} (medium {medium})"},
    {WarningCode::profileNotReadable,
     "The user {user}, as whom CUPS runs its filters, may not read the profile or not come to it: {path} (medium "
     "{medium})"},
    {WarningCode::profileNoIcc,
     "The file is no ICC profile (it lacks the signature \"acsp\"): {path} (medium {medium})"},
    {WarningCode::earlierSetup,
     "The PPD had been set up before (it has *{keyword}). The media of that setup are removed first; what it wrote "
     "into other statements stays. A fresh start needs the PPD as it was made."},
    {WarningCode::leftByEarlierSetup,
     "The {what} {name} is of no medium of this run: an earlier setup or device left it in the PPD."},
};
