// SPDX-License-Identifier: MIT
#include "explain/judge/MediaJudge.h"

#include <fmt/format.h>

#include <set>

#include "base/Text.h"
#include "explain/judge/DeviceTextJudge.h"
#include "updaters/PPDKeywords.h"

namespace {

using DeviceTextJudge::Place;

// A medium that became a choice, and what is in the document of it.
class AddedMedium {
 public:
  AddedMedium(const Report::MediumOutcome& medium, const ATPPD& ppd, Warnings& warnings)
      : medium_(medium), ppd_(ppd), warnings_(warnings) {}

  void judge() {
    const Report::Medium& device = medium_.device;
    DeviceTextJudge::judge("name", device.name, Place::inFrontOfColon, warnings_, about());
    DeviceTextJudge::judge("ID", device.ID, Place::behindColon, warnings_, about());
    judgePostScript();
    judgeChoice();
  }

 private:
  AboutMedium about() const { return {medium_.device.name, medium_.device.ID}; }

  bool hasLanguages() const {
    const auto* languages = ppd_.supportedLocalizations();
    return languages != nullptr && !languages->empty();
  }

  void judgePostScript() {
    const auto& ID = medium_.device.ID;
    if (!medium_.choiceCode || !ID || !DeviceTextJudge::breaksPostScriptString(*ID)) return;
    warnings_.add(WarningCode::postscriptString, {{"ID", *ID}, {"code", *medium_.choiceCode}}, about());
  }

  void judgeChoice() {
    const auto group = ppd_.groupForName(PPDKeyword::mediaGroup);
    const auto option = group == nullptr ? nullptr : group->optionForName(PPDKeyword::mediaOption);
    if (option == nullptr) return warnings_.add(WarningCode::noMediaOption);
    const auto choice = option->choiceForName(*medium_.choiceName);
    if (choice == nullptr) return;
    if (!option->PPDObjects().positionOf(choice.get())) {
      warnings_.add(WarningCode::choiceNotWritten, {{"choice", *medium_.choiceName}}, about());
    } else if (!hasText(*choice) && !hasLanguages()) {
      warnings_.add(WarningCode::nameNotShown, {{"choice", *medium_.choiceName}}, about());
    }
  }

  // Whether the choice, as an updater made it, has a text of its own.
  static bool hasText(const ATPPDChoice& choice) {
    return !choice.container().front().view().starts_with(fmt::format("*MediaType {}/:", Text::orNull(choice.name())));
  }

  const Report::MediumOutcome& medium_;
  const ATPPD& ppd_;
  Warnings& warnings_;
};

// Two media that a user, or the printer, cannot tell apart.
void judgeTwins(const Report& report, Warnings& warnings) {
  if (!report.device || !report.device->media) return;
  std::set<std::string> names;
  std::set<std::string> IDs;
  for (const Report::Medium& medium : *report.device->media) {
    const AboutMedium about{medium.name, medium.ID};
    if (medium.ID && !IDs.insert(*medium.ID).second) {
      warnings.add(WarningCode::mediumTwice, {{"ID", *medium.ID}}, about);
    } else if (medium.name && !names.insert(*medium.name).second) {
      warnings.add(WarningCode::mediumTwice, {{"name", *medium.name}}, about);
    }
  }
}

// Where the PPD has no gloss enhancer option, its updaters write that no choice is the default.
void judgeGlossDefaults(const ATPPD& ppd, Warnings& warnings) {
  std::size_t count = 0;
  for (const auto& properties : ppd.attributesForName(PPDKeyword::mediaProperties)) {
    count += Text::contains(Text::orNull(properties->value()), "='(null)'");
  }
  if (count > 0) warnings.add(WarningCode::noGlossChoice, {{"count", count}});
}

}  // namespace

void MediaJudge::judge(const Evidence& evidence, Warnings& warnings) {
  for (const Report::Updater& updater : evidence.report.updaters) {
    for (const Report::MediumOutcome& medium : updater.media) {
      if (medium.added) AddedMedium(medium, evidence.ppd, warnings).judge();
    }
  }
  judgeTwins(evidence.report, warnings);
  judgeGlossDefaults(evidence.ppd, warnings);
}
