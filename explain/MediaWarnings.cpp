// SPDX-License-Identifier: MIT
#include "explain/MediaWarnings.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <set>

#include "base/Text.h"
#include "explain/DeviceText.h"
#include "explain/ProfileWarnings.h"
#include "explain/Wording.h"
#include "updaters/PPDKeywords.h"

namespace {

using Wording::visible;

// The media of one updater, and what became of them in the document.
class MediumChecks {
 public:
  MediumChecks(RunRecorder& recorder, const ATPPD& ppd, const Report::Medium& medium)
      : recorder_(recorder), ppd_(ppd), medium_(medium) {}

  void checkAdded(const Report::MediumOutcome& medium) {
    checkDeviceText("name", medium.device.name, DeviceText::Place::inFrontOfColon);
    checkDeviceText("ID", medium.device.ID, DeviceText::Place::behindColon);
    checkTranslations(*medium.device.name);
    checkHexadecimal(*medium.device.name);
    checkPostScript(medium);
    checkChoice(medium);
  }

  void checkProfile(const Report::Profile& profile) {
    if (profile.outcome == Report::ProfileOutcome::skipped || !isInPPD(profile)) return;
    checkDeviceText("profile spec", profile.spec, DeviceText::Place::inFrontOfColon);
    for (const auto& [code, text] : ProfileWarnings::of(profile)) {
      warn(code, fmt::format("{} (medium {})", text, Wording::of(medium_)));
    }
  }

 private:
  void warn(const char* code, const std::string& text) {
    recorder_.warn({code, text, false, Report::AboutMedium{medium_.name, medium_.ID}});
  }

  // A later updater may have taken it out.
  bool isInPPD(const Report::Profile& profile) const {
    const auto statements = ppd_.attributesForName(PPDKeyword::profile, profile.spec.value_or(""));
    return std::any_of(statements.begin(), statements.end(), [&](const auto& statement) {
      return statement->spec() == profile.spec && statement->value() == "\"" + profile.path.value_or("") + "\"";
    });
  }

  void checkDeviceText(const char* what, const Report::OptionalText& text, DeviceText::Place place) {
    for (const auto& [code, warning] : DeviceText::warningsOf(what, text, place)) warn(code, warning);
  }

  bool hasLanguages() const {
    const auto* languages = ppd_.supportedLocalizations();
    return languages != nullptr && !languages->empty();
  }

  void checkTranslations(const std::string& name) {
    if (!hasLanguages() || name.find(':') == std::string::npos) return;
    warn("colon-in-text", fmt::format("In the translations of \"{}\" CUPS ends the name at the colon.", visible(name)));
  }

  // CUPS decodes hexadecimal digits between angle brackets in texts (PPD 4.3).
  void checkHexadecimal(const std::string& name) {
    const std::size_t bracket = name.find('<');
    const bool isDecoded = bracket != std::string::npos && bracket + 1 < name.size() &&
                           std::isxdigit(static_cast<unsigned char>(name[bracket + 1])) != 0;
    if (isDecoded) {
      warn("hex-in-text",
           fmt::format("CUPS takes what follows \"<\" in the name of the medium {} for characters by their "
                       "codes.",
                       Wording::of(medium_)));
    }
  }

  void checkPostScript(const Report::MediumOutcome& medium) {
    if (!medium.choiceCode || !medium.device.ID || !DeviceText::breaksPostScriptString(*medium.device.ID)) return;
    warn("postscript-string",
         fmt::format("The ID {} of the medium {} stands in a PostScript string and closes or changes it; the printer "
                     "gets other code than was meant: {}",
                     visible(*medium.device.ID), Wording::of(medium.device), visible(*medium.choiceCode)));
  }

  void checkChoice(const Report::MediumOutcome& medium) {
    const auto group = ppd_.groupForName(PPDKeyword::mediaGroup);
    const auto option = group == nullptr ? nullptr : group->optionForName(PPDKeyword::mediaOption);
    if (option == nullptr) {
      return recorder_.warn({"no-media-option",
                             "The PPD has no option MediaType in a group QZImagingOptions: the choices of the custom "
                             "media are lost, though a group statement lists them.",
                             false, std::nullopt});
    }
    const auto choice = option->choiceForName(*medium.choiceName);
    if (choice == nullptr) return;
    if (!option->PPDObjects().positionOf(choice.get())) {
      warn("choice-not-written", fmt::format("The choice {} is listed and not written: the option MediaType does not "
                                             "end with its *CloseUI statement.",
                                             *medium.choiceName));
    } else if (!hasText(*choice) && !hasLanguages()) {
      warn("name-not-shown",
           fmt::format("Only English shows the name of the medium {}: it cannot be the text of the choice {}, "
                       "and the PPD lists no languages.",
                       Wording::of(medium.device), *medium.choiceName));
    }
  }

  // Whether the choice, as an updater made it, has a text of its own.
  static bool hasText(const ATPPDChoice& choice) {
    return !choice.container().front().view().starts_with(fmt::format("*MediaType {}/:", Text::orNull(choice.name())));
  }

  RunRecorder& recorder_;
  const ATPPD& ppd_;
  const Report::Medium& medium_;
};

// What carries the name of a custom medium that the run did not make.
class Leftovers {
 public:
  Leftovers(RunRecorder& recorder, const Report::Updater& updater) : recorder_(recorder) {
    for (const Report::MediumOutcome& medium : updater.media) {
      if (medium.added) made_.insert(*medium.choiceName);
    }
  }

  void checkChoices(const ATPPD& ppd) {
    const auto group = ppd.groupForName(PPDKeyword::mediaGroup);
    const auto option = group == nullptr ? nullptr : group->optionForName(PPDKeyword::mediaOption);
    if (option == nullptr) return;
    checkDefault(*option);
    std::map<std::string, std::size_t> counts;
    for (const auto& choice : option->choices()) {
      check("choice", choice->name(), Text::orNull(choice->name()));
      ++counts[std::string(Text::orNull(choice->name()))];
    }
    for (const auto& [name, count] : counts) {
      if (count == 1 || !DeviceText::isCustomChoice(name)) continue;
      recorder_.warn("choice-twice",
                     fmt::format("The choice {} stands in the PPD {} times: two media updaters made it, or an "
                                 "earlier setup left one.",
                                 name, count));
    }
  }

  void checkDefault(const ATPPDOption& option) {
    const auto& name = option.defaultValue();
    // "Unknown" says that nobody knows it.
    if (!name || *name == "Unknown" || option.choiceForName(*name) != nullptr) return;
    recorder_.warn("default-not-there",
                   fmt::format("*DefaultMediaType names {}, which is no choice of the result: CUPS marks "
                               "no medium.",
                               visible(*name)));
  }

  void checkStatements(const ATPPD& ppd) {
    for (const auto& profile : ppd.attributesForName(PPDKeyword::profile)) {
      const auto parts = Text::split(Text::orNull(profile->spec()), ".");
      if (parts.size() == 3) check("profile", parts[1], Text::orNull(profile->spec()));
    }
    for (const auto& properties : ppd.attributesForName(PPDKeyword::mediaProperties)) {
      const auto parts = Text::split(Text::orNull(properties->spec()), ".");
      if (parts.size() == 2) check("property statement", parts[1], Text::orNull(properties->spec()));
    }
  }

 private:
  void check(const char* what, std::optional<std::string_view> choiceName, std::string_view shown) {
    if (!choiceName || !DeviceText::isCustomChoice(*choiceName) || made_.count(std::string(*choiceName)) != 0) return;
    recorder_.warn("left-by-earlier-setup",
                   fmt::format("The {} {} is of no medium of this run: an earlier setup or device left it in the PPD.",
                               what, visible(shown)));
  }

  RunRecorder& recorder_;
  std::set<std::string> made_;
};

// Where the PPD has no gloss enhancer option, its updaters write that no choice is the default.
void warnOfGlossDefaults(RunRecorder& recorder, const ATPPD& ppd) {
  std::size_t count = 0;
  for (const auto& properties : ppd.attributesForName(PPDKeyword::mediaProperties)) {
    count += Text::contains(Text::orNull(properties->value()), "='(null)'");
  }
  if (count == 0) return;
  recorder.warn("no-gloss-choice",
                fmt::format("The PPD has no choice for a gloss enhancer default: {} say '(null)' now.",
                            Wording::counted(count, "property statement")));
}

// Two media that a user, or the printer, cannot tell apart.
void warnOfTwins(RunRecorder& recorder, const Report& report) {
  if (!report.device || !report.device->media) return;
  std::set<std::string> names;
  std::set<std::string> IDs;
  for (const Report::Medium& medium : *report.device->media) {
    const Report::AboutMedium about{medium.name, medium.ID};
    if (medium.ID && !IDs.insert(*medium.ID).second) {
      recorder.warn(
          {"medium-twice", fmt::format("The device has the ID {} more than once.", visible(*medium.ID)), false, about});
    } else if (medium.name && !names.insert(*medium.name).second) {
      recorder.warn({"medium-twice",
                     fmt::format("The device has the name {} more than once.", Wording::quoted(medium.name)), false,
                     about});
    }
  }
}

}  // namespace

void MediaWarnings::add(RunRecorder& recorder, const Report& report, const ATPPD& ppd) {
  for (const Report::Updater& updater : report.updaters) {
    for (const Report::MediumOutcome& medium : updater.media) {
      MediumChecks checks(recorder, ppd, medium.device);
      if (medium.added) checks.checkAdded(medium);
      for (const Report::Profile& profile : medium.profiles) checks.checkProfile(profile);
    }
  }
  warnOfTwins(recorder, report);
  warnOfGlossDefaults(recorder, ppd);
  const Report::Updater* last = report.lastMediaUpdater();
  if (last == nullptr) return;
  Leftovers leftovers(recorder, *last);
  leftovers.checkChoices(ppd);
  leftovers.checkStatements(ppd);
}
