// SPDX-License-Identifier: MIT
#include "explain/judge/LeftoversJudge.h"

#include <map>
#include <set>

#include "base/Text.h"
#include "explain/watch/DeviceText.h"
#include "updaters/PPDKeywords.h"

namespace {

// What carries the name of a custom medium that the run did not make.
class Leftovers {
 public:
  Leftovers(const Report::Updater& updater, Warnings& warnings) : warnings_(warnings) {
    for (const Report::MediumOutcome& medium : updater.media) {
      if (medium.added) made_.insert(*medium.choiceName);
    }
  }

  void judgeChoices(const ATPPD& ppd) {
    const auto group = ppd.groupForName(PPDKeyword::mediaGroup);
    const auto option = group == nullptr ? nullptr : group->optionForName(PPDKeyword::mediaOption);
    if (option == nullptr) return;
    judgeDefault(*option);
    std::map<std::string, std::size_t> counts;
    for (const auto& choice : option->choices()) {
      judge("choice", choice->name(), Text::orNull(choice->name()));
      ++counts[std::string(Text::orNull(choice->name()))];
    }
    for (const auto& [name, count] : counts) {
      if (count == 1 || !DeviceText::isCustomChoice(name)) continue;
      warnings_.add(WarningCode::choiceTwice, {{"choice", name}, {"times", count}});
    }
  }

  void judgeStatements(const ATPPD& ppd) {
    for (const auto& profile : ppd.attributesForName(PPDKeyword::profile)) {
      const auto parts = Text::split(Text::orNull(profile->spec()), ".");
      if (parts.size() == 3) judge("profile", parts[1], Text::orNull(profile->spec()));
    }
    for (const auto& properties : ppd.attributesForName(PPDKeyword::mediaProperties)) {
      const auto parts = Text::split(Text::orNull(properties->spec()), ".");
      if (parts.size() == 2) judge("property statement", parts[1], Text::orNull(properties->spec()));
    }
  }

 private:
  void judgeDefault(const ATPPDOption& option) {
    const auto& name = option.defaultValue();
    // "Unknown" says that nobody knows it.
    if (!name || *name == "Unknown" || option.choiceForName(*name) != nullptr) return;
    warnings_.add(WarningCode::defaultNotThere, {{"choice", *name}});
  }

  void judge(const char* what, std::optional<std::string_view> choiceName, std::string_view shown) {
    if (!choiceName || !DeviceText::isCustomChoice(*choiceName) || made_.count(std::string(*choiceName)) != 0) return;
    warnings_.add(WarningCode::leftByEarlierSetup, {{"what", what}, {"name", shown}});
  }

  Warnings& warnings_;
  std::set<std::string> made_;
};

}  // namespace

void LeftoversJudge::judge(const Evidence& evidence, Warnings& warnings) {
  const Report::Updater* last = evidence.report.lastMediaUpdater();
  if (last == nullptr) return;
  Leftovers leftovers(*last, warnings);
  leftovers.judgeChoices(evidence.ppd);
  leftovers.judgeStatements(evidence.ppd);
}
