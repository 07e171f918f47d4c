// SPDX-License-Identifier: MIT
#include "explain/judge/CUPSLimits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "explain/report/Sentences.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<std::string> codes(const std::vector<Warning>& warnings) {
  std::vector<std::string> codes;
  for (const Warning& warning : warnings) codes.emplace_back(nameOf(warning.code));
  return codes;
}

std::vector<std::string> brokenIn(const std::string& text) {
  return codes(CUPSLimits::brokenIn(text));
}

}  // namespace

TEST(CUPSLimits, NothingIsBrokenInAnOrdinaryPPD) {
  EXPECT_THAT(brokenIn("*% A comment\n*PPD-Adobe: \"4.3\"\n\n  \t\n*MediaType A/Text: \"code\"\r\n"
                       "*Foo: \"one\ntwo\"\n*End\n*cupsICCProfile .A./N: \"/a\"\n*cupsICCProfile .B./N: \"/b\"\n"),
              IsEmpty());
}

TEST(CUPSLimits, AnOddQuoteSwallowsStatements) {
  EXPECT_THAT(brokenIn("*Foo a/Text: \"co\"de\"\n*Bar: 1\n*Baz: \"x\"\n"), ElementsAre("swallowed", "unclosed-quote"));
  const auto warnings = CUPSLimits::brokenIn("*Foo: \"a\n*Bar: 1\n*% comment\n*Baz: x\n*Last: \"y\n*Qux: 1\n");
  ASSERT_EQ(warnings.size(), 1U);
  EXPECT_EQ(Sentences::of(warnings[0]),
            "An odd quote in \"*Foo: \"a\" swallows 3 statements, from \"*Bar: 1\" to \"*Last: \"y\".");
  EXPECT_THAT(brokenIn("*Foo: \"a\n*% comment\n*End\n"), ElementsAre("unclosed-quote"));
}

TEST(CUPSLimits, AQuoteInFrontOfTheColonSwallowsNothing) {
  EXPECT_THAT(brokenIn("*MediaType Custom1/24\" Canvas: \"(4711)\"\n*Bar: \"x\"\n"), IsEmpty());
  EXPECT_THAT(brokenIn("*Foo a\"\n*Bar: \"x\"\n"), IsEmpty()) << "without a colon";
  EXPECT_THAT(brokenIn("*MediaType Custom1/A: 24\" Canvas: \"(4711)\"\n*Bar: \"x\"\n"), Contains("swallowed"));
}

TEST(CUPSLimits, ReadingEndsAtSomeBeginnings) {
  EXPECT_THAT(brokenIn("*Foo: 1\n*%APLWORKSET START\n"), ElementsAre("aplworkset"));
}

TEST(CUPSLimits, TwoProfilesMayHaveOneNumber) {
  EXPECT_THAT(brokenIn("*cupsICCProfile RGB.Media131./A: \"/a\"\n*cupsICCProfile RGB.Media212./B: \"/b\"\n"),
              ElementsAre("profile-collision"));
  EXPECT_THAT(brokenIn("*cupsICCProfile RGB.A./A: \"/a\"\n*cupsICCProfile RGB.A./B: \"/b\"\n"), IsEmpty());
}

TEST(CUPSLimits, AlsoWhenBlanksStandBehindTheSpec) {
  EXPECT_THAT(brokenIn("*cupsICCProfile RGB.Media131. : \"/a\"\n*cupsICCProfile RGB.Media131.\t/B: \"/b\"\n"),
              IsEmpty());
}

TEST(CUPSLimits, WhatTheInputBreaksAlreadyIsMarked) {
  const std::string before = "*%APLWORKSET START\n";
  const auto warnings = CUPSLimits::brokenInResult(before, before + "*Foo: \"a\n");
  EXPECT_THAT(codes(warnings), ElementsAre("aplworkset", "unclosed-quote"));
  EXPECT_TRUE(warnings[0].inInput);
  EXPECT_FALSE(warnings[1].inInput);
}

TEST(CUPSLimits, ZeroBytes) {
  EXPECT_THAT(brokenIn(std::string("*MediaType A/a\0b: \"\"\n", 21)), ElementsAre("zero-byte"));
}

TEST(CUPSLimits, ALineIsShownUpToAWholeCharacter) {
  std::string text = "*MediaType A/";
  for (int count = 0; count < 60; ++count) text += "\u00E4";
  EXPECT_THAT(Sentences::of(CUPSLimits::brokenIn(text + ": \"\n").at(0)), testing::HasSubstr("\u00E4…"));
}
