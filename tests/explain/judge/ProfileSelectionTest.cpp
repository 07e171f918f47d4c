// SPDX-License-Identifier: MIT
#include "explain/judge/ProfileSelection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::Pair;
using Outcome = ProfileSelection::Outcome;

namespace {

CUPSReading::Option option(const char* keyword, const std::vector<std::string>& choices) {
  CUPSReading::Option option{keyword, "Group", "", {}, {}};
  for (const std::string& choice : choices) option.choices.push_back({choice, {choice}});
  return option;
}

// Specs whose paths are the specs.
CUPSReading reading(const std::vector<std::string>& specs) {
  CUPSReading reading;
  reading.outcome = CUPSReading::Outcome::opened;
  reading.options = {option("ColorModel", {"RGB", "Gray"}), option("MediaType", {"Plain", "Custom1"}),
                     option("Mode", {"Fast", "Best"})};
  reading.attributes.push_back({"cupsICCQualifier3", "", "", "Mode"});
  for (const std::string& spec : specs) reading.attributes.push_back({"cupsICCProfile", spec, "Name", spec});
  return reading;
}

ProfileSelection::Answer answer(const CUPSReading& reading, const std::string& spec) {
  return ProfileSelection(reading).of(spec, spec);
}

Outcome outcome(const std::vector<std::string>& specs, const std::string& spec) {
  return answer(reading(specs), spec).outcome;
}

}  // namespace

TEST(ProfileSelection, SaysWithWhichChoicesAProfileIsTaken) {
  const auto general = answer(reading({".Custom1."}), ".Custom1.");
  EXPECT_EQ(general.outcome, Outcome::selected);
  EXPECT_THAT(general.choices,
              ElementsAre(Pair("ColorModel", "RGB"), Pair("MediaType", "Custom1"), Pair("Mode", "Fast")));
  const auto special = answer(reading({"Gray.Custom1.Best"}), "Gray.Custom1.Best");
  EXPECT_THAT(special.choices,
              ElementsAre(Pair("ColorModel", "Gray"), Pair("MediaType", "Custom1"), Pair("Mode", "Best")));
}

TEST(ProfileSelection, TheFirstThatMatchesIsTaken) {
  EXPECT_EQ(outcome({".Custom1.Fast", ".Custom1."}, ".Custom1."), Outcome::selected);
  EXPECT_EQ(outcome({"..", ".Custom1."}, ".Custom1."), Outcome::behindAnother);
  EXPECT_EQ(outcome({".Custom1.", "Gray.Custom1.Best"}, "Gray.Custom1.Best"), Outcome::behindAnother);
  EXPECT_EQ(outcome({".Plain.", ".Custom1."}, ".Custom1."), Outcome::selected);
  EXPECT_EQ(outcome({"Gray..Best", ".Custom1.Best"}, ".Custom1.Best"), Outcome::selected);
}

TEST(ProfileSelection, SeveralThatComeFirstHideOneTogether) {
  const auto hidden = answer(reading({".Custom1.Fast", ".Custom1.Best", ".Custom1."}), ".Custom1.");
  EXPECT_EQ(hidden.outcome, Outcome::behindAnother);
  EXPECT_EQ(hidden.other, ".Custom1.Best");
  EXPECT_EQ(hidden.otherPath, ".Custom1.Best");
}

TEST(ProfileSelection, OfTwoOfOneSpecTheFirstIsTaken) {
  CUPSReading twice = reading({".Custom1."});
  twice.attributes.push_back({"cupsICCProfile", ".Custom1.", "Name", "/other"});
  const ProfileSelection selection(twice);
  EXPECT_EQ(selection.of(".Custom1.", ".Custom1.").outcome, Outcome::selected);
  EXPECT_EQ(selection.of(".Custom1.", "/other").outcome, Outcome::behindAnother);
  EXPECT_EQ(selection.of(".Custom1.", "/third").outcome, Outcome::notRead);
}

TEST(ProfileSelection, APartMustBeAChoiceOfItsOption) {
  const auto noChoice = answer(reading({".Custom1.best"}), ".Custom1.best");
  EXPECT_EQ(noChoice.outcome, Outcome::noChoice);
  EXPECT_EQ(noChoice.option, "Mode");
  EXPECT_EQ(noChoice.choice, "best");
  EXPECT_EQ(outcome({".Gone."}, ".Gone."), Outcome::noChoice);
  CUPSReading other = reading({".Custom1.600dpi"});
  other.attributes.erase(other.attributes.begin());
  const auto noOption = answer(other, ".Custom1.600dpi");
  EXPECT_EQ(noOption.outcome, Outcome::noOption);
  EXPECT_EQ(noOption.option, "Resolution");
  EXPECT_EQ(noOption.choice, "600dpi");
}

TEST(ProfileSelection, AnOptionThatIsNotThereHasNoChoiceToMatch) {
  CUPSReading other = reading({".Custom1."});
  other.options.erase(other.options.begin());
  EXPECT_THAT(answer(other, ".Custom1.").choices, ElementsAre(Pair("MediaType", "Custom1"), Pair("Mode", "Fast")));
}

TEST(ProfileSelection, ASpecHasThreeParts) {
  EXPECT_EQ(outcome({".Custom1"}, ".Custom1"), Outcome::notThreeParts);
  EXPECT_EQ(outcome({".Custom1.a.b"}, ".Custom1.a.b"), Outcome::notThreeParts);
  EXPECT_EQ(outcome({"Custom1", ".Custom1."}, ".Custom1."), Outcome::selected);
}

TEST(ProfileSelection, EachQualifierNamesItsOption) {
  CUPSReading other = reading({"Best.Fast.Custom1"});
  other.attributes.insert(other.attributes.begin(), {{"cupsICCQualifier1", "", "", "Mode"},
                                                     {"cupsICCQualifier2", "", "", "Mode"},
                                                     {"cupsICCQualifier3", "", "", "MediaType"}});
  EXPECT_EQ(answer(other, "Best.Fast.Custom1").outcome, Outcome::selected);
}

TEST(ProfileSelection, ManyCombinationsAreNotAllLookedAt) {
  CUPSReading many = reading({".Custom1."});
  many.options.clear();
  std::vector<std::string> choices;
  for (int index = 0; index < 400; ++index) choices.push_back("c" + std::to_string(index));
  for (const char* keyword : {"ColorModel", "Mode", "MediaType"}) many.options.push_back(option(keyword, choices));
  many.attributes.clear();
  many.attributes.push_back({"cupsICCQualifier3", "", "", "Mode"});
  for (const std::string& choice : choices) many.attributes.push_back({"cupsICCProfile", choice + "..", "", "/a"});
  many.attributes.push_back({"cupsICCProfile", "..", "", "/all"});
  EXPECT_EQ(ProfileSelection(many).of("..", "/all").outcome, Outcome::selected);
}
