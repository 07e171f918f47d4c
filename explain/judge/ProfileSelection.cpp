// SPDX-License-Identifier: MIT
#include "explain/judge/ProfileSelection.h"

#include <algorithm>

#include "base/Text.h"
#include "updaters/PPDKeywords.h"

namespace {

using Parts = std::array<std::string_view, 3>;

constexpr std::array<const char*, 3> kQualifiers = {PPDKeyword::firstQualifier, "cupsICCQualifier2",
                                                    PPDKeyword::thirdQualifier};
constexpr std::array<const char*, 3> kUsualOptions = {"ColorModel", PPDKeyword::mediaOption, "Resolution"};

// A profile with more choices is taken to be selected by one of those that were not looked at.
constexpr std::size_t kMostCombinations = 10000;

bool hasThreeParts(std::string_view spec) {
  return std::count(spec.begin(), spec.end(), '.') == 2;
}

Parts partsOf(std::string_view spec) {
  const std::size_t first = spec.find('.');
  const std::size_t second = spec.find('.', first + 1);
  return {spec.substr(0, first), spec.substr(first + 1, second - first - 1), spec.substr(second + 1)};
}

template <class Condition>
bool allParts(const Condition& holds) {
  return holds(0) && holds(1) && holds(2);
}

bool matches(const Parts& spec, const Parts& choices) {
  return allParts([&](std::size_t part) { return spec[part].empty() || spec[part] == choices[part]; });
}

// Whether some choices match both.
bool canMeet(const Parts& one, const Parts& other) {
  return allParts(
      [&](std::size_t part) { return one[part].empty() || other[part].empty() || one[part] == other[part]; });
}

// One of all combinations of a choice of each.
Parts combinationOf(const std::array<std::vector<std::string_view>, 3>& choices, std::size_t number) {
  Parts combination;
  for (std::size_t part = 0; part < choices.size(); ++part) {
    combination[part] = choices[part][number % choices[part].size()];
    number /= choices[part].size();
  }
  return combination;
}

}  // namespace

const std::vector<std::string>& ProfileSelection::attributes() {
  static const std::vector<std::string> names = {PPDKeyword::profile, kQualifiers[0], kQualifiers[1], kQualifiers[2]};
  return names;
}

ProfileSelection::ProfileSelection(const CUPSReading& reading) : reading_(reading) {
  for (std::size_t part = 0; part < kQualifiers.size(); ++part) {
    const std::string* named = reading.value(kQualifiers[part]);
    options_[part] = named != nullptr && !named->empty() ? *named : kUsualOptions[part];
  }
  for (const CUPSReading::Attribute& attribute : reading.attributes) {
    if (attribute.name != PPDKeyword::profile || !hasThreeParts(attribute.spec)) continue;
    profiles_.push_back({&attribute, partsOf(attribute.spec)});
  }
}

ProfileSelection::Answer ProfileSelection::of(std::string_view spec, std::string_view path) const {
  const auto isMeant = [&](const CUPSReading::Attribute& attribute) {
    return attribute.name == PPDKeyword::profile && attribute.spec == spec && attribute.value == path;
  };
  Answer answer;
  if (std::none_of(reading_.attributes.begin(), reading_.attributes.end(), isMeant)) return answer;
  const auto found = std::find_if(profiles_.begin(), profiles_.end(),
                                  [&](const Profile& profile) { return isMeant(*profile.attribute); });
  if (found != profiles_.end()) return ofProfile(static_cast<std::size_t>(found - profiles_.begin()));
  answer.outcome = Outcome::notThreeParts;
  return answer;
}

ProfileSelection::Answer ProfileSelection::ofProfile(std::size_t index) const {
  Answer answer;
  Choices choices;
  for (std::size_t part = 0; part < choices.size(); ++part) {
    const std::string_view wanted = profiles_[index].parts[part];
    const CUPSReading::Option* option = reading_.option(options_[part]);
    answer.option = options_[part];
    answer.choice = wanted;
    answer.outcome = option == nullptr ? Outcome::noOption : Outcome::noChoice;
    if (!wanted.empty()) {
      if (option == nullptr || option->choice(wanted) == nullptr) return answer;
      choices[part] = {wanted};
    } else if (option != nullptr && !option->choices.empty()) {
      for (const CUPSReading::Choice& choice : option->choices) choices[part].push_back(choice.name);
    } else {
      choices[part] = {""};
    }
  }
  return ofCombinations(index, choices);
}

// The profiles before it that match some of the choices that it matches.
std::vector<const ProfileSelection::Profile*> ProfileSelection::inFrontOf(std::size_t index) const {
  std::vector<const Profile*> others;
  for (std::size_t before = 0; before < index; ++before) {
    if (canMeet(profiles_[before].parts, profiles_[index].parts)) others.push_back(&profiles_[before]);
  }
  return others;
}

ProfileSelection::Answer ProfileSelection::selectedBy(const Parts& combination) const {
  Answer answer;
  answer.outcome = Outcome::selected;
  for (std::size_t part = 0; part < combination.size(); ++part) {
    if (!combination[part].empty()) answer.choices.emplace_back(options_[part], combination[part]);
  }
  return answer;
}

ProfileSelection::Answer ProfileSelection::behind(const Profile& other) const {
  Answer answer;
  answer.outcome = Outcome::behindAnother;
  answer.other = other.attribute->spec;
  answer.otherPath = other.attribute->value;
  return answer;
}

ProfileSelection::Answer ProfileSelection::ofCombinations(std::size_t index, const Choices& choices) const {
  const auto others = inFrontOf(index);
  const std::size_t count = choices[0].size() * choices[1].size() * choices[2].size();
  const Profile* hiding = nullptr;
  for (std::size_t number = 0; number < count; ++number) {
    const Parts combination = combinationOf(choices, number);
    const auto other = std::find_if(others.begin(), others.end(),
                                    [&](const Profile* profile) { return matches(profile->parts, combination); });
    if (other == others.end() || number == kMostCombinations) return selectedBy(combination);
    hiding = *other;
  }
  return behind(*hiding);
}
