// SPDX-License-Identifier: MIT
#include "explain/judge/UsersView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

// A printer with one custom medium "Canvas", read by libcups in English and German.
CUPSReading reading() {
  CUPSReading reading;
  reading.outcome = CUPSReading::Outcome::opened;
  reading.languages = {"en", "de"};
  reading.options.push_back({"MediaType",
                             "Media",
                             "Plain",
                             {"Media", "Medien"},
                             {{"Plain", {"Plain", "Normal"}}, {"Custom1", {"Canvas", "Canvas"}}}});
  reading.options.push_back({"QZGlossEnhancer", "Media", "off-ge", {}, {{"off-ge", {}}, {"whole-page-ge", {}}}});
  reading.attributes = {{"cupsICCProfile", ".Custom1.", "Canvas", "/canvas.icc"},
                        {"QZValueAttributes", "MediaType.Custom1", "", "a=b;defaultGE='off-ge';c=d"}};
  return reading;
}

UsersView::Medium canvas() {
  return {"Canvas", "Custom1", true, true, "OFF", {{".Custom1.", "/canvas.icc"}}};
}

UsersView::SeenMedium seen(const UsersView::Medium& medium, const CUPSReading& reading) {
  return UsersView::of({medium}, reading).at(0);
}

std::vector<std::string> losses(const UsersView::SeenMedium& medium) {
  std::vector<std::string> names;
  for (const Lost& lost : medium.lost) names.push_back(nameOf(lost.because));
  for (const UsersView::SeenProfile& profile : medium.profiles) {
    if (profile.lost) names.push_back(nameOf(profile.lost->because));
  }
  return names;
}

}  // namespace

TEST(UsersView, AMediumThatIsThereWithAllThatItHas) {
  const auto medium = seen(canvas(), reading());
  EXPECT_TRUE(medium.isWritten);
  EXPECT_THAT(medium.shown, ElementsAre(Pair("en", "Canvas"), Pair("de", "Canvas")));
  EXPECT_THAT(medium.profiles.at(0).selectedBy, ElementsAre(Pair("MediaType", "Custom1")));
  EXPECT_THAT(losses(medium), IsEmpty());
}

TEST(UsersView, AMediumWithoutAChoiceIsLost) {
  UsersView::Medium medium = canvas();
  medium.choiceName = "Custom2";
  medium.profiles.clear();
  const auto gone = seen(medium, reading());
  EXPECT_FALSE(gone.isWritten);
  EXPECT_THAT(losses(gone), ElementsAre("no-choice"));
  EXPECT_EQ(gone.lost[0].what, "Custom2");
  medium.choiceName.reset();
  EXPECT_THAT(losses(seen(medium, reading())), ElementsAre("no-choice"));
  CUPSReading without = reading();
  without.options.erase(without.options.begin());
  EXPECT_THAT(losses(seen(medium, without)), ElementsAre("no-option"));
}

TEST(UsersView, AnOptionOfWhatIsInstalledIsNotShown) {
  CUPSReading hidden = reading();
  hidden.options[0].group = "InstallableOptions";
  const auto medium = seen(canvas(), hidden);
  EXPECT_TRUE(medium.isWritten);
  EXPECT_THAT(medium.shown, IsEmpty());
  EXPECT_THAT(losses(medium), ElementsAre("option-not-shown"));
}

TEST(UsersView, ANameThatIsShownOtherwise) {
  CUPSReading cut = reading();
  cut.options[0].choices[1].texts = {"Canvas", "Can"};
  const auto medium = seen(canvas(), cut);
  EXPECT_THAT(losses(medium), ElementsAre("name-otherwise"));
  EXPECT_EQ(medium.lost[0].what, "Can");
  EXPECT_EQ(medium.lost[0].where, "de");
  cut.options[0].choices[1].texts = {"Can", "Can"};
  EXPECT_EQ(seen(canvas(), cut).lost.at(0).where, "en de");
  cut.options[0].choices[1].texts = {"Canvas ", "\tCanvas"};
  EXPECT_THAT(losses(seen(canvas(), cut)), IsEmpty());
}

TEST(UsersView, TheNameOfAFactoryMediumIsThePPDs) {
  UsersView::Medium plain = canvas();
  plain.choiceName = "Plain";
  plain.isCustom = false;
  plain.gloss.reset();
  EXPECT_THAT(losses(seen(plain, reading())), IsEmpty());
}

TEST(UsersView, WhyAProfileIsNotTaken) {
  CUPSReading several = reading();
  for (const char* spec : {".Custom1.600dpi", ".Custom2.", "two.parts", ".Custom1."}) {
    several.attributes.push_back({"cupsICCProfile", spec, "", "/b.icc"});
  }
  UsersView::Medium medium = canvas();
  medium.profiles = {{".Custom1.600dpi", "/b.icc"},
                     {".Custom2.", "/b.icc"},
                     {"two.parts", "/b.icc"},
                     {".Custom1.", "/b.icc"},
                     {".Custom1.", "/none"}};
  const auto view = seen(medium, several);
  EXPECT_THAT(losses(view), ElementsAre("profile-no-option", "profile-no-choice", "profile-spec", "profile-behind",
                                        "profile-not-read"));
  EXPECT_EQ(view.profiles[0].lost->where, "Resolution");
  EXPECT_EQ(view.profiles[1].lost->where, "MediaType");
  EXPECT_EQ(view.profiles[1].lost->choice, "Custom2");
  EXPECT_EQ(view.profiles[3].lost->what, ".Custom1.");
  EXPECT_EQ(view.profiles[3].lost->where, ".Custom1.");
}

TEST(UsersView, PropertiesThatAreInheritedMustBeThere) {
  CUPSReading other = reading();
  UsersView::Medium medium = canvas();
  medium.gloss.reset();
  other.attributes[1].value = "";
  EXPECT_THAT(losses(seen(medium, other)), ElementsAre("properties-empty"));
  other.attributes.pop_back();
  EXPECT_THAT(losses(seen(medium, other)), ElementsAre("properties-not-read"));
  medium.inherits = false;
  EXPECT_THAT(losses(seen(medium, other)), IsEmpty());
}

TEST(UsersView, TheGlossDefaultOfTheDeviceMustBeAChoice) {
  CUPSReading other = reading();
  other.attributes[1].value = "a=b;defaultGE='(null)'";
  const auto medium = seen(canvas(), other);
  EXPECT_THAT(losses(medium), ElementsAre("no-gloss-choice"));
  EXPECT_EQ(medium.lost[0].what, "(null)");
  EXPECT_EQ(medium.lost[0].where, "QZGlossEnhancer");
  other.attributes[1].value = "a=b";
  EXPECT_THAT(losses(seen(canvas(), other)), ElementsAre("gloss-not-set"));
  other.attributes[1].value = "defaultGE='True'";
  other.options[1].keyword = "QZGlossEnhancerSimplified";
  EXPECT_EQ(seen(canvas(), other).lost.at(0).where, "QZGlossEnhancerSimplified");
  other.options[1].choices[0].name = "True";
  EXPECT_THAT(losses(seen(canvas(), other)), IsEmpty());
}

TEST(UsersView, NamesWhatAReadingIsAskedFor) {
  EXPECT_THAT(UsersView::attributes(), ElementsAre("cupsICCProfile", "cupsICCQualifier1", "cupsICCQualifier2",
                                                   "cupsICCQualifier3", "QZValueAttributes"));
}

TEST(UsersView, EachLossHasANameOfItsOwn) {
  std::vector<std::string> names;
  for (int loss = 0; loss <= static_cast<int>(Loss::noGlossChoice); ++loss) {
    names.emplace_back(nameOf(static_cast<Loss>(loss)));
  }
  EXPECT_EQ(names.front(), "refused");
  EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size());
}

TEST(UsersView, NamesAChoiceLikeTheOneThatAProfileNeeds) {
  CUPSReading other = reading();
  other.attributes.push_back({"cupsICCProfile", ".custom1.", "", "/b.icc"});
  UsersView::Medium medium = canvas();
  medium.profiles = {{".custom1.", "/b.icc"}};
  EXPECT_EQ(seen(medium, other).profiles.at(0).lost->near, "Custom1");
}
