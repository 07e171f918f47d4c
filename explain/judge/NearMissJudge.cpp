// SPDX-License-Identifier: MIT
#include "explain/judge/NearMissJudge.h"

#include <algorithm>
#include <iterator>

#include "explain/judge/NearMisses.h"
#include "explain/judge/SnapshotMembers.h"
#include "explain/judge/StatementPlaces.h"
#include "updaters/ATPPDUpdatersFactory.h"
#include "updaters/PPDKeywords.h"

namespace {

using NearMisses::Likeness;
using Places = std::vector<StatementPlace>;

// What is looked for outside of groups and options.
const std::vector<std::string>& topKeywords() {
  static const std::vector<std::string> keywords = {
      PPDKeyword::updaters,       PPDKeyword::modelName,      "cupsLanguages",
      PPDKeyword::firstQualifier, PPDKeyword::thirdQualifier, PPDKeyword::profile,
      PPDKeyword::factoryProfile, PPDKeyword::mediaProperties};
  return keywords;
}

const char* factOf(Likeness likeness) {
  return likeness == Likeness::looksTheSame ? "alike" : "found";
}

bool isOneOf(const std::vector<std::string>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

// Of a group or an option.
auto isNamed(const char* name) {
  return [name](const StatementPlace& place) { return place.spec == name; };
}

class PPDJudge {
 public:
  PPDJudge(const Places& places, Warnings& warnings) : places_(places), warnings_(warnings) {}

  // A keyword that is in the right place somewhere is not looked for elsewhere.
  void judgeTop(const std::string& keyword) {
    const auto isIt = [&](const StatementPlace& place) { return place.keyword == keyword; };
    const auto isAtTop = [&](const StatementPlace& place) { return isIt(place) && isOutside(place); };
    if (std::any_of(places_.begin(), places_.end(), isAtTop)) return;
    if (const auto inside = std::find_if(places_.begin(), places_.end(), isIt); inside != places_.end()) {
      return warnInside("*" + keyword, *inside);
    }
    Places others;
    std::copy_if(places_.begin(), places_.end(), std::back_inserter(others),
                 [](const StatementPlace& place) { return !isOneOf(topKeywords(), place.keyword); });
    warnNearest("*" + keyword, keyword, others, &StatementPlace::keyword);
  }

  // The group and the option of the media.
  void judgeMediaOption() {
    const Places groups = of("OpenGroup");
    const Places options = of("OpenUI");
    if (std::none_of(groups.begin(), groups.end(), isNamed(PPDKeyword::mediaGroup))) {
      warnNearest("the group", PPDKeyword::mediaGroup, groups, &StatementPlace::spec);
    }
    const auto option = std::find_if(options.begin(), options.end(), isNamed(PPDKeyword::mediaOption));
    if (option == options.end()) {
      warnNearest("the option", PPDKeyword::mediaOption, options, &StatementPlace::spec);
    } else if (!option->group.empty() && option->group != PPDKeyword::mediaGroup) {
      warnInside("the option MediaType", *option);
    }
  }

 private:
  static bool isOutside(const StatementPlace& place) { return place.group.empty() && place.option.empty(); }

  Places of(const char* keyword) const {
    Places found;
    std::copy_if(places_.begin(), places_.end(), std::back_inserter(found),
                 [keyword](const StatementPlace& place) { return place.keyword == keyword; });
    return found;
  }

  void warnInside(const std::string& what, const StatementPlace& place) {
    if (isOutside(place)) return;
    warnings_.add(WarningCode::nearMiss, {{"inside", place.option.empty() ? "group" : "option"},
                                          {"wanted", what},
                                          {"around", place.option.empty() ? place.group : place.option},
                                          {"line", place.line}});
  }

  void warnNearest(const std::string& what, const std::string& wanted, const Places& places,
                   std::string StatementPlace::*name) {
    std::vector<std::string> names;
    for (const StatementPlace& place : places) names.push_back(place.*name);
    const auto near = NearMisses::nearest(wanted, names);
    if (!near) return;
    warnings_.add(WarningCode::nearMiss, {{"wanted", what.starts_with('*') ? what : what + " " + wanted},
                                          {factOf(near->likeness), names[near->index]},
                                          {"line", places[near->index].line}});
  }

  const Places& places_;
  Warnings& warnings_;
};

void judgeUpdaters(const Report& report, Warnings& warnings) {
  const std::vector<std::string> known = ATPPDUpdatersFactory::knownNames();
  for (const Report::Updater& updater : report.updaters) {
    const auto near = updater.known ? std::nullopt : NearMisses::nearest(updater.name, known);
    if (!near) continue;
    warnings.add(WarningCode::nearMiss, {{"updater", updater.name}, {factOf(near->likeness), known[near->index]}});
  }
}

void judgeCategories(const Report& report, Warnings& warnings) {
  const Report::Updater* updater = report.lastMediaUpdater();
  if (updater == nullptr) return;
  for (const Report::MediumOutcome& medium : updater->media) {
    const Report::Medium& device = medium.device;
    if (device.custom || !device.categoryID || !NearMissJudge::isNearlyCustomCategory(*device.categoryID)) continue;
    warnings.add(WarningCode::categoryUnknown, {{"category", *device.categoryID}}, AboutMedium{device.name, device.ID});
  }
}

// Names between white space; commas and the like become a part of them.
void judgeLanguages(const Report& report, Warnings& warnings) {
  if (!report.parse) return;
  for (const std::string& language : report.parse->languages) {
    if (language.find_first_of(",;:") == std::string::npos) continue;
    warnings.add(WarningCode::nearMiss, {{"language", language}});
  }
}

void judgeSnapshot(const Report& report, Warnings& warnings) {
  if (!report.device || !report.device->question) return;
  for (const SnapshotMembers::Unread& unread : SnapshotMembers::unread(*report.device->question)) {
    warnings.add(WarningCode::nearMiss, {{"member", unread.member}, {"place", unread.place}, {"meant", unread.meant}});
  }
}

}  // namespace

bool NearMissJudge::isNearlyCustomCategory(std::string_view category) {
  const auto isMeant = [category](const char* custom) {
    return category != custom && NearMisses::likeness(category, custom) != Likeness::none;
  };
  return isMeant("CUSTOM") || isMeant("QZ_EXTENDED_MEDIA");
}

void NearMissJudge::judge(const Evidence& evidence, Warnings& warnings) {
  const Places places = StatementPlace::in(evidence.input.text());
  PPDJudge ppd(places, warnings);
  for (const std::string& keyword : topKeywords()) ppd.judgeTop(keyword);
  if (evidence.report.lastMediaUpdater() != nullptr) ppd.judgeMediaOption();
  judgeUpdaters(evidence.report, warnings);
  judgeCategories(evidence.report, warnings);
  judgeLanguages(evidence.report, warnings);
  judgeSnapshot(evidence.report, warnings);
}
