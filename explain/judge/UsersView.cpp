// SPDX-License-Identifier: MIT
#include "explain/judge/UsersView.h"

#include <fmt/format.h>

#include <algorithm>
#include <unordered_map>

#include "explain/judge/NearMisses.h"
#include "explain/judge/ProfileSelection.h"
#include "updaters/PPDKeywords.h"

namespace {

using UsersView::Medium;
using UsersView::SeenMedium;
using UsersView::SeenProfile;

// What a printer has installed: no options of a job (PPD 4.3, section 5.2).
constexpr const char* kNotShownGroup = "InstallableOptions";
constexpr std::string_view kGlossKey = "defaultGE=";

Loss lossOf(ProfileSelection::Outcome outcome) {
  switch (outcome) {
    case ProfileSelection::Outcome::notThreeParts:
      return Loss::profileSpec;
    case ProfileSelection::Outcome::noOption:
      return Loss::profileNoOption;
    case ProfileSelection::Outcome::noChoice:
      return Loss::profileNoChoice;
    case ProfileSelection::Outcome::behindAnother:
      return Loss::profileBehind;
    default:
      return Loss::profileNotRead;
  }
}

// The gloss enhancer default in the properties of a medium; absent when they have none.
std::optional<std::string> glossIn(std::string_view properties) {
  const std::size_t start = properties.find(kGlossKey);
  if (start == std::string_view::npos) return std::nullopt;
  std::string_view value = properties.substr(start + kGlossKey.size());
  value = value.substr(0, value.find(';'));
  if (value.starts_with('\'')) value.remove_prefix(1);
  if (value.ends_with('\'')) value.remove_suffix(1);
  return std::string(value);
}

std::string_view trimmed(std::string_view text) {
  const std::size_t start = std::min(text.find_first_not_of(" \t"), text.size());
  return text.substr(start, text.find_last_not_of(" \t") + 1 - start);
}

class View {
 public:
  explicit View(const CUPSReading& reading)
      : reading_(reading), selection_(reading), option_(reading.option(PPDKeyword::mediaOption)) {
    for (const CUPSReading::Attribute& attribute : reading.attributes) {
      if (attribute.name == PPDKeyword::mediaProperties) properties_.emplace(attribute.spec, attribute.value);
    }
    if (option_ == nullptr) return;
    for (const CUPSReading::Choice& choice : option_->choices) choices_.emplace(choice.name, &choice);
  }

  SeenMedium of(const Medium& medium) const {
    SeenMedium seen;
    lookForChoice(medium, seen);
    if (medium.choiceName && seen.isWritten) lookAtProperties(medium, seen);
    for (const UsersView::Profile& profile : medium.profiles) seen.profiles.push_back(of(profile));
    return seen;
  }

 private:
  void lookForChoice(const Medium& medium, SeenMedium& seen) const {
    if (option_ == nullptr) {
      seen.lost.push_back({Loss::noOption, PPDKeyword::mediaOption});
      return;
    }
    const auto choice = choices_.find(medium.choiceName.value_or(""));
    seen.isWritten = choice != choices_.end();
    if (!seen.isWritten) {
      seen.lost.push_back({Loss::noChoice, medium.choiceName.value_or(""), option_->keyword});
    } else if (option_->group == kNotShownGroup) {
      seen.lost.push_back({Loss::optionNotShown, option_->keyword, option_->group});
    } else {
      lookAtName(medium, *choice->second, seen);
    }
  }

  void lookAtName(const Medium& medium, const CUPSReading::Choice& choice, SeenMedium& seen) const {
    for (std::size_t index = 0; index < reading_.languages.size() && index < choice.texts.size(); ++index) {
      const std::string& language = reading_.languages[index];
      seen.shown.emplace_back(language, choice.texts[index]);
      if (!medium.isCustom || trimmed(choice.texts[index]) == trimmed(medium.name)) continue;
      if (seen.lost.empty()) seen.lost.push_back({Loss::nameOtherwise, choice.texts[index]});
      seen.lost.back().where += (seen.lost.back().where.empty() ? "" : " ") + language;
    }
  }

  void lookAtProperties(const Medium& medium, SeenMedium& seen) const {
    const auto found = properties_.find(fmt::format("{}.{}", PPDKeyword::mediaOption, *medium.choiceName));
    if (medium.isCustom && medium.inherits) {
      if (found == properties_.end()) {
        seen.lost.push_back({Loss::propertiesNotRead, *medium.choiceName});
      } else if (found->second.empty()) {
        seen.lost.push_back({Loss::propertiesEmpty, *medium.choiceName});
      }
    }
    if (found != properties_.end()) seen.properties = found->second;
    lookAtGloss(medium, seen);
  }

  void lookAtGloss(const Medium& medium, SeenMedium& seen) const {
    const auto gloss = glossIn(seen.properties);
    if (!gloss) {
      if (medium.gloss) seen.lost.push_back({Loss::glossNotSet, *medium.gloss});
      return;
    }
    const CUPSReading::Option* option = reading_.option(PPDKeyword::glossEnhancer);
    if (option == nullptr) option = reading_.option(PPDKeyword::simplifiedGlossEnhancer);
    if (option != nullptr && option->choice(*gloss) != nullptr) return;
    seen.lost.push_back({Loss::noGlossChoice, *gloss, option == nullptr ? PPDKeyword::glossEnhancer : option->keyword});
  }

  SeenProfile of(const UsersView::Profile& profile) const {
    ProfileSelection::Answer answer = selection_.of(profile.spec, profile.path);
    if (answer.outcome == ProfileSelection::Outcome::selected) return {std::move(answer.choices), std::nullopt};
    const bool isBehind = answer.outcome == ProfileSelection::Outcome::behindAnother;
    Lost lost{lossOf(answer.outcome), profile.spec, isBehind ? answer.other : answer.option, answer.choice};
    lost.near = choiceLike(answer.choice, reading_.option(answer.option));
    return {{}, lost};
  }

  static std::string choiceLike(std::string_view wanted, const CUPSReading::Option* option) {
    if (option == nullptr) return "";
    std::vector<std::string> names;
    for (const CUPSReading::Choice& choice : option->choices) names.push_back(choice.name);
    const auto near = NearMisses::nearest(wanted, names);
    return near ? names[near->index] : "";
  }

  const CUPSReading& reading_;
  ProfileSelection selection_;
  const CUPSReading::Option* option_;
  std::unordered_map<std::string, const CUPSReading::Choice*> choices_;
  std::unordered_map<std::string, std::string> properties_;  // by spec
};

}  // namespace

std::vector<std::string> UsersView::attributes() {
  std::vector<std::string> names = ProfileSelection::attributes();
  names.emplace_back(PPDKeyword::mediaProperties);
  return names;
}

std::vector<UsersView::SeenMedium> UsersView::of(const std::vector<Medium>& media, const CUPSReading& reading) {
  const View view(reading);
  std::vector<SeenMedium> seen;
  seen.reserve(media.size());
  for (const Medium& medium : media) seen.push_back(view.of(medium));
  return seen;
}
