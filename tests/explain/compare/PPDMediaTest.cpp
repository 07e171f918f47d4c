// SPDX-License-Identifier: MIT
#include "explain/compare/PPDMedia.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using testing::ElementsAre;

namespace {

constexpr const char* kHead = "*PPD-Adobe: \"4.3\"\n*ModelName: \"Z9\"\n";

std::string ppdWith(const std::string& choices, const std::string& statements = "") {
  return std::string(kHead) + statements +
         "*OpenGroup: QZImagingOptions/Imaging Options\n*OpenUI *MediaType/Media Type: PickOne\n"
         "*DefaultMediaType: Plain\n*MediaType Plain/Plain paper: \"(1001)\"\n" +
         choices + "*CloseUI: *MediaType\n*CloseGroup: QZImagingOptions\n";
}

const std::string kAdded =
    "*QZMediaTypeGroup CustomMedia-category/Custom Paper: \"Custom1,\nCustom2\"\n*End\n"
    "*QZMediaTypeGroup ExtendedCustomMedia-category/Custom Paper: \"Custom3\"\n*End\n";

std::string PCL3Choice(const std::string& choice, const std::string& name, const std::string& ID) {
  return "*MediaType " + choice + "/" + name + ": \"<</MediaType(" + choice + ")/QZMediaID(" + ID +
         ")>>setpagedevice\"\n";
}

std::string PSChoice(const std::string& choice, const std::string& name, const std::string& ID) {
  return "*MediaType " + choice + "/" + name + ": \"/QZDict /ProcSet findresource /SetMediaId get (" + ID +
         ") exch exec\"\n";
}

}  // namespace

TEST(PPDMedia, AreTheChoicesOfMediaType) {
  const auto media = PPDMedia::ofText(
      ppdWith(PCL3Choice("Custom1", "Canvas", "4711") + PSChoice("Custom2", "Linen", "47(12)"), kAdded));
  ASSERT_EQ(media.media.size(), 3U);
  EXPECT_EQ(media.defaultChoice, "Plain");
  EXPECT_EQ(media.media[0].choice, "Plain");
  EXPECT_EQ(media.media[0].name, "Plain paper");
  EXPECT_EQ(media.media[0].ID, "");
  EXPECT_FALSE(media.media[0].isCustom);
  EXPECT_EQ(media.media[1].ID, "4711");
  EXPECT_EQ(media.media[1].name, "Canvas");
  EXPECT_EQ(media.media[2].ID, "47(12)");
  EXPECT_TRUE(media.media[2].isCustom);
}

TEST(PPDMedia, AMediumIsTheSameUnderAnotherNumber) {
  const auto before = PPDMedia::ofText(ppdWith(PCL3Choice("Custom2", "Canvas", "4711"), kAdded));
  const auto after = PPDMedia::ofText(ppdWith(PCL3Choice("Custom1", "Linen", "4711"), kAdded));
  EXPECT_EQ(before.media[1].key, after.media[1].key);
  EXPECT_EQ(after.withKey(before.media[1].key)->choice, "Custom1");
}

TEST(PPDMedia, AnotherIDIsAnotherMedium) {
  const auto before = PPDMedia::ofText(ppdWith(PCL3Choice("Custom1", "Canvas", "4711"), kAdded));
  const auto after = PPDMedia::ofText(ppdWith(PCL3Choice("Custom1", "Canvas", "47110"), kAdded));
  EXPECT_EQ(after.withKey(before.media[1].key), nullptr);
}

TEST(PPDMedia, AFactoryMediumIsKnownByItsChoice) {
  const auto media = PPDMedia::ofText(ppdWith(PCL3Choice("Custom9", "Looks custom", "4711"), kAdded));
  EXPECT_EQ(media.media[1].key, "factory Custom9");
  EXPECT_EQ(media.withChoice("Custom9")->isCustom, false);
  EXPECT_EQ(media.withChoice("Custom8"), nullptr);
}

TEST(PPDMedia, OfTwoWithOneIDTheOneOfTheSameNameIsMeant) {
  const auto media = PPDMedia::ofText(
      ppdWith(PCL3Choice("Custom1", "Canvas", "4711") + PCL3Choice("Custom2", "Linen", "4711"), kAdded));
  EXPECT_EQ(media.withKey(media.media[1].key, "Linen")->choice, "Custom2");
  EXPECT_EQ(media.withKey(media.media[1].key, "Canvas")->choice, "Custom1");
  EXPECT_EQ(media.withKey(media.media[1].key, "Other")->choice, "Custom1");
}

TEST(PPDMedia, ANameThatIsOnlyATranslationIsTheName) {
  const auto media = PPDMedia::ofText(
      ppdWith("*MediaType Custom1/: \"<</MediaType(Custom1)/QZMediaID(1)>>setpagedevice\"\n*en.MediaType "
              "Custom1/\xC3\xA4: \"\"\n",
              kAdded));
  EXPECT_EQ(media.media[1].name, "\xC3\xA4");
  EXPECT_EQ(media.media[1].label(), "\xC3\xA4 (ID 1)");
  EXPECT_EQ(media.media[0].label(), "Plain paper");
}

TEST(PPDMedia, HaveTheirProfilesAndProperties) {
  const auto media = PPDMedia::ofText(
      ppdWith(PCL3Choice("Custom1", "Canvas", "4711"),
              kAdded + "*cupsICCProfile .Custom1.Best/B: \"/b.icc\"\n*cupsICCProfile .Custom1./A: \"/a.icc\"\n"
                       "*cupsICCProfile .Custom10./C: \"/c.icc\"\n*QZValueAttributes MediaType.Custom1: \"a=b\"\n"));
  EXPECT_THAT(media.media[1].profiles, ElementsAre(".. A \"/a.icc\"", "..Best B \"/b.icc\""));
  EXPECT_EQ(media.media[1].properties, "\"a=b\"");
  EXPECT_THAT(media.media[0].profiles, ElementsAre());
}

TEST(PPDMedia, WhatIsNoPPDHasNone) {
  for (const char* text : {"", "no PPD", "*PPD-Adobe: \"4.3\"\n", "\xFF"}) {
    EXPECT_TRUE(PPDMedia::ofText(text).media.empty());
  }
}

TEST(PPDMedia, TextsMayHaveAnyLineEndsAndLongLines) {
  std::string text = ppdWith(PCL3Choice("Custom1", "Canvas", "4711"), kAdded);
  for (std::size_t place = 0; (place = text.find('\n', place)) != std::string::npos; place += 2) {
    text.replace(place, 1, "\r\n");
  }
  text += "*% " + std::string(1000, 'x') + "\r";
  EXPECT_EQ(PPDMedia::ofText(text).withChoice("Custom1")->ID, "4711");
}

TEST(PPDMedia, NamesInIPPAreLibcups) {
  const auto nameOf = [](const std::string& choice) {
    return PPDMedia::Medium{choice, "", "", "", "", {}, true}.IPPName();
  };
  EXPECT_EQ(nameOf("Custom1"), "custom-1");
  EXPECT_EQ(nameOf("Custom10"), "custom-10");
  EXPECT_EQ(nameOf("Customa"), "customa");
  EXPECT_EQ(nameOf("Customa1"), "customa-1");
  EXPECT_EQ(nameOf("Custom1a"), "custom-1a");
}
