// SPDX-License-Identifier: MIT
#include "explain/judge/CUPSReading.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* kMedia =
    "*OpenGroup: Media/Media Options\n*OpenUI *MediaType/Media: PickOne\n*OrderDependency: 10 AnySetup *MediaType\n"
    "*DefaultMediaType: Gone\n*MediaType Plain/Plain Paper: \"1\"\n*de.MediaType Plain/Normal<C3BC>: \"\"\n"
    "*MediaType Custom1: \"2\"\n*CloseUI: *MediaType\n*CloseGroup: Media\n";

std::string PPD(const std::string& statements) {
  return "*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n" + statements;
}

}  // namespace

TEST(CUPSReading, OpensAPPD) {
  const CUPSReading reading = CUPSReading::of(PPD(kMedia));
  EXPECT_TRUE(reading.isOpened());
  EXPECT_FALSE(reading.refusal);
  EXPECT_THAT(reading.options, IsEmpty());
}

TEST(CUPSReading, SaysWhereAndWhyAPPDIsRefused) {
  const CUPSReading reading = CUPSReading::of(PPD("stray\n"));
  EXPECT_EQ(reading.outcome, CUPSReading::Outcome::refused);
  ASSERT_TRUE(reading.refusal && reading.strictRefusal);
  EXPECT_EQ(reading.refusal->line, 3);
  EXPECT_EQ(reading.refusal->words, "Missing asterisk in column 1");
  EXPECT_EQ(CUPSReading::of("").outcome, CUPSReading::Outcome::refused);
  EXPECT_EQ(CUPSReading::of(std::string("\0\xff\x1f\x8b", 4)).outcome, CUPSReading::Outcome::refused);
}

TEST(CUPSReading, TellsStrictFromRelaxed) {
  const CUPSReading reading = CUPSReading::of(PPD("*cupsICCProfile .My Paper./T: \"\"\n"));
  EXPECT_TRUE(reading.isOpened());
  ASSERT_TRUE(reading.strictRefusal);
  EXPECT_EQ(reading.strictRefusal->line, 3);
}

TEST(CUPSReading, GivesOptionsWithTheTextsOfEachLanguage) {
  const CUPSReading reading = CUPSReading::of(PPD(kMedia), {"de", "en", "xx", "de"}, {});
  EXPECT_THAT(reading.languages, ElementsAre("en", "de", "xx"));
  const CUPSReading::Option* option = reading.option("mediatype");
  ASSERT_NE(option, nullptr);
  EXPECT_EQ(option->keyword, "MediaType");
  EXPECT_EQ(option->group, "Media");
  EXPECT_EQ(option->defaultChoice, "Gone");
  EXPECT_THAT(option->texts, ElementsAre("Media", "Media", "Media"));
  ASSERT_NE(option->choice("Plain"), nullptr);
  EXPECT_THAT(option->choice("Plain")->texts, ElementsAre("Plain Paper", "Normal\u00FC", "Plain Paper"));
  EXPECT_THAT(option->choice("Custom1")->texts, ElementsAre("Custom1", "Custom1", "Custom1"));
  EXPECT_EQ(option->choice("plain"), nullptr);
  EXPECT_EQ(reading.option("MediaTypes"), nullptr);
}

TEST(CUPSReading, GivesTheStatementsThatAreAskedFor) {
  const CUPSReading reading = CUPSReading::of(
      PPD("*cupsICCProfile .B./N: \"/b\"\n*Other: \"\"\n*cupsICCProfile .A./: \"/a\"\n*cupsICCQualifier3: \"Mode\"\n"),
      {}, {"cupsICCProfile", "cupsICCQualifier3"});
  ASSERT_EQ(reading.attributes.size(), 3U);
  EXPECT_EQ(reading.attributes[0].spec, ".B.");
  EXPECT_EQ(reading.attributes[0].text, "N");
  EXPECT_EQ(reading.attributes[1].value, "/a");
  ASSERT_NE(reading.value("cupsICCQualifier3"), nullptr);
  EXPECT_EQ(*reading.value("cupsICCQualifier3"), "Mode");
  EXPECT_EQ(reading.value("cupsICCQualifier1"), nullptr);
}

TEST(CUPSReading, BytesThatAreNoUTF8ComeThrough) {
  const std::string text = std::string(79, 'x') + "\u00FC";  // CUPS cuts it behind byte 80
  const CUPSReading reading =
      CUPSReading::of(PPD("*cupsLanguages: \"de\"\n*OpenUI *A/A: PickOne\n*DefaultA: B\n*A B/b: \"\"\n*de.A B/" + text +
                          ": \"\"\n*CloseUI: *A\n"),
                      {"de"}, {});
  ASSERT_NE(reading.option("A"), nullptr);
  EXPECT_EQ(reading.option("A")->choices.front().texts.back(), text.substr(0, 80));
}

TEST(CUPSReading, ReadsLargePPDsAndLeavesTooLargeOnesAlone) {
  std::string statements;
  for (int index = 0; index < 20000; ++index) statements += "*Foo s" + std::to_string(index) + ": \"value\"\n";
  EXPECT_TRUE(CUPSReading::of(PPD(statements)).isOpened());
  const CUPSReading reading = CUPSReading::of(std::string(CUPSReading::kLargest + 1, '\n'));
  EXPECT_EQ(reading.outcome, CUPSReading::Outcome::failed);
  EXPECT_FALSE(reading.refusal);
}

TEST(CUPSReading, AsksForSoManyLanguagesAtMost) {
  std::vector<std::string> languages;
  for (char letter = 'a'; letter <= 'z'; ++letter) {
    for (const char* other : {"a", "b", "c"}) languages.push_back(letter + std::string(other));
  }
  EXPECT_EQ(CUPSReading::of(PPD(""), languages, {}).languages.size(), CUPSReading::kMostLanguages);
}
