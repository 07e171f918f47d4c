// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "explain/report/Loss.h"
#include "explain/report/Warning.h"

/// What one run of the tool did, as data. The writers (TextReport, JSONReport, HTMLReport) make a report of it; nothing
/// in here is worked out from the updaters' rules: all of it was seen while they ran.
struct Report {
  using OptionalText = std::optional<std::string>;

  struct Arguments {
    OptionalText deviceURI;
    OptionalText PPDPath;
    OptionalText printerID;
  };

  struct ParseFailure {
    int code = 0;
    std::string expected;  ///< in words
    std::optional<std::int64_t> lineNumber;
    OptionalText line;  ///< as it was read, without its line end
  };

  struct Parse {
    std::size_t lines = 0;  ///< accepted; pieces of a long line count each
    std::size_t statements = 0;
    std::size_t groups = 0;
    std::size_t options = 0;
    std::vector<std::string> languages;
    OptionalText modelName;
    std::optional<ParseFailure> failure;
  };

  /// A medium as the device-model library gave it, before any updater touched it.
  struct Medium {
    OptionalText name, ID, categoryName, categoryID, parentID, gloss;
    bool custom = false;
    std::size_t profiles = 0;
  };

  /// What the library was asked for the device's media; what was not given is absent.
  struct Question {
    OptionalText deviceURI, modelName;
  };

  struct DeviceAnswer {
    bool libraryAvailable = false;
    std::optional<Question> question;  ///< absent: the media were not asked for
    bool storeFound = false;           ///< the device has a data store
    bool itemFound = false;            ///< and custom media in it
    OptionalText listVersion;
    std::optional<std::vector<Medium>> media;  ///< absent: no list, so nothing is changed
    OptionalText familyCode;                   ///< of the printer-language updater's question
  };

  enum class ProfileOutcome { added, rewritten, skipped };
  struct Profile {
    OptionalText name, spec, url, path;
    ProfileOutcome outcome = ProfileOutcome::skipped;
    std::string reason;                                           ///< why it was skipped; else empty
    std::vector<std::pair<std::string, std::string>> selectedBy;  ///< options and choices with which CUPS takes it
    std::optional<Lost> lost;
  };

  /// What became of one medium.
  struct MediumOutcome {
    Medium device;
    OptionalText choiceName;  ///< the choice that it got, or that stands for it
    OptionalText choiceCode;
    bool lookedUp = false;   ///< a factory medium whose choice was looked for
    bool added = false;      ///< a custom medium that became a choice
    std::string notAdded;    ///< why it did not; else empty
    OptionalText parent;     ///< the choice whose properties it inherited
    OptionalText inherited;  ///< those properties
    std::vector<Profile> profiles;
    OptionalText profilesFailure;  ///< the error that ended the work on its profiles
    OptionalText glossBefore, glossAfter;
    bool written = false;                                    ///< libcups reads its choice
    std::vector<std::pair<std::string, std::string>> shown;  ///< languages and names, when a user finds it
    std::string properties;                                  ///< in the end
    std::vector<Lost> lost;                                  ///< but for profiles

    bool lostSomething() const;
  };

  enum class ChangeKind { added, removed, changed, moved };
  struct Change {
    ChangeKind kind;
    std::string before, after;  ///< the statement's text, with its line ends; the same for one that only moved
  };

  enum class UpdaterOutcome { notRun, succeeded, failed, threw };
  struct Updater {
    std::string name;
    bool known = true;
    bool askedForMedia = false;
    UpdaterOutcome outcome = UpdaterOutcome::notRun;
    std::string error;                          ///< of an exception; else empty
    std::vector<std::string> removedMedia;      ///< of an earlier setup
    std::vector<std::string> replacedMedia;     ///< of an earlier updater of this run
    std::vector<std::string> restoredProfiles;  ///< specs
    std::vector<MediumOutcome> media;
    std::vector<Change> changes;  ///< in document order

    /// How many of them are more than a statement that was removed and written again as it was.
    std::size_t realChanges() const;
  };

  struct Refusal {
    std::size_t line = 0;   ///< of the PPD that was read, counted from 1; 0: none
    std::string words;      ///< of libcups
    std::string statement;  ///< the text of the line
  };

  /// What libcups makes of the PPD that is written.
  struct CUPS {
    bool opens = false;
    std::optional<Refusal> refusal;  ///< of cupsd and of applications; absent when libcups crashed
    std::optional<Refusal> strictRefusal;
  };

  Arguments arguments;
  std::string failure;  ///< why the run failed, in words; empty when it succeeded
  std::optional<Parse> parse;
  std::optional<DeviceAnswer> device;
  std::vector<Updater> updaters;
  std::optional<CUPS> cups;        ///< absent when nothing is written
  std::optional<CUPS> cupsBefore;  ///< of the PPD as it was; absent when it could not be looked at
  std::vector<Warning> warnings;

  /// The last updater that asked for the device's media, or null. It removed nearly all that the others had made.
  const Updater* lastMediaUpdater() const;

  Updater* lastMediaUpdater();

  bool succeeded() const { return failure.empty(); }
  /// Whether something is written that CUPS does not open.
  bool isRefused() const { return cups && !cups->opens; }
};
