// SPDX-License-Identifier: MIT
#include "explain/judge/CUPSLimits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cups/ppd.h>

#include "explain/report/Sentences.h"
#include "tests/support/TemporaryFolder.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"  // libcups' PPD interface is what the limits are those of

namespace {

std::vector<std::string> codes(const std::vector<Warning>& warnings) {
  std::vector<std::string> codes;
  for (const Warning& warning : warnings) codes.emplace_back(nameOf(warning.code));
  return codes;
}

std::vector<std::string> brokenIn(const std::string& text) {
  return codes(CUPSLimits::brokenIn(text));
}

// Whether libcups opens a PPD that has the statements in addition.
bool libcupsOpens(const std::string& statements) {
  const TemporaryFolder folder;
  const std::string path = folder.file("a.ppd", "*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n" + statements);
  ppd_file_t* ppd = ppdOpenFile(path.c_str());
  if (ppd != nullptr) ppdClose(ppd);
  return ppd != nullptr;
}

}  // namespace

TEST(CUPSLimits, NothingIsBrokenInAnOrdinaryPPD) {
  EXPECT_THAT(brokenIn("*% A comment\n*PPD-Adobe: \"4.3\"\n\n  \t\n*MediaType A/Text: \"code\"\r\n"
                       "*Foo: \"one\ntwo\"\n*End\n*cupsICCProfile .A./N: \"/a\"\n*cupsICCProfile .B./N: \"/b\"\n"),
              IsEmpty());
}

TEST(CUPSLimits, ALineMayHave255Bytes) {
  const std::string line = "*Foo: \"" + std::string(247, 'x') + "\"";
  EXPECT_THAT(brokenIn(line + "\n"), IsEmpty());
  EXPECT_TRUE(libcupsOpens(line + "\n"));
  const std::string longer = "*Foo: \"" + std::string(248, 'x') + "\"";
  EXPECT_THAT(brokenIn(longer + "\n"), ElementsAre("line-too-long"));
  EXPECT_FALSE(libcupsOpens(longer + "\n"));
  EXPECT_THAT(brokenIn("*% " + std::string(300, 'x') + "\n"), ElementsAre("line-too-long"));
}

TEST(CUPSLimits, AKeywordMayHave40Bytes) {
  const std::string name(40, 'k');
  EXPECT_THAT(brokenIn("*" + name + " " + name + "/T: \"\"\n"), IsEmpty());
  EXPECT_TRUE(libcupsOpens("*" + name + " " + name + "/T: \"\"\n"));
  for (const std::string& statement : {"*k" + name + ": \"\"\n", "*Foo k" + name + "/T: \"\"\n"}) {
    EXPECT_THAT(brokenIn(statement), ElementsAre("keyword-too-long"));
    EXPECT_FALSE(libcupsOpens(statement));
  }
  EXPECT_THAT(brokenIn("*cupsICCProfile .My Paper./T: \"\"\n"), ElementsAre("keyword-characters"));
  EXPECT_THAT(Sentences::of(CUPSLimits::brokenIn("*MediaType A B/T: \"\"\n")[0]),
              testing::HasSubstr("when strict, refuses an option"));
  EXPECT_THAT(Sentences::of(CUPSLimits::brokenIn("*F\u00E4rbe: 1\n")[0]),
              testing::HasSubstr("refuses the whole PPD for a main keyword"));
}

TEST(CUPSLimits, ATextMayHave80Bytes) {
  EXPECT_THAT(brokenIn("*Foo a/" + std::string(80, 't') + ": \"\"\n"), IsEmpty());
  EXPECT_THAT(brokenIn("*Foo a/" + std::string(81, 't') + ": \"\"\n"), ElementsAre("text-too-long"));
}

TEST(CUPSLimits, ALineMustBeginAStatementOrContinueAValue) {
  EXPECT_THAT(brokenIn("*Foo: \"a\"\nstray\n"), ElementsAre("stray-line"));
  EXPECT_FALSE(libcupsOpens("*Foo: \"a\"\nstray\n"));
  EXPECT_THAT(brokenIn("*Foo: \"a\nno stray\"\n*End\n"), IsEmpty());
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
  EXPECT_THAT(brokenIn("\xEF\xBB\xBF*PPD-Adobe: \"4.3\"\n"), ElementsAre("byte-order-mark", "stray-line"));
  EXPECT_THAT(brokenIn("*Foo: 1\n*%APLWORKSET START\n"), ElementsAre("aplworkset"));
}

TEST(CUPSLimits, TwoProfilesMayHaveOneNumber) {
  EXPECT_THAT(brokenIn("*cupsICCProfile RGB.Media131./A: \"/a\"\n*cupsICCProfile RGB.Media212./B: \"/b\"\n"),
              ElementsAre("profile-collision"));
  EXPECT_THAT(brokenIn("*cupsICCProfile RGB.A./A: \"/a\"\n*cupsICCProfile RGB.A./B: \"/b\"\n"), IsEmpty());
}

TEST(CUPSLimits, WhatTheInputBreaksAlreadyIsMarked) {
  const std::string before = "*Foo a/" + std::string(81, 't') + ": \"\"\n";
  const auto warnings = CUPSLimits::brokenInResult(before, before + "stray\n");
  EXPECT_THAT(codes(warnings), ElementsAre("text-too-long", "stray-line"));
  EXPECT_TRUE(warnings[0].inInput);
  EXPECT_FALSE(warnings[1].inInput);
}

TEST(CUPSLimits, ControlCharactersInATextAndZeroBytes) {
  EXPECT_THAT(brokenIn("*MediaType A/a\x1b"
                       "b: \"\"\n"),
              ElementsAre("text-characters"));
  EXPECT_THAT(brokenIn("*MediaType A/a\tb\x7f: \"\"\n"), ElementsAre());
  EXPECT_THAT(brokenIn(std::string("*MediaType A/a\0b: \"\"\n", 21)), ElementsAre("zero-byte"));
}

TEST(CUPSLimits, ALineIsShownUpToAWholeCharacter) {
  std::string text = "*MediaType A/";
  for (int count = 0; count < 60; ++count) text += "\u00E4";
  EXPECT_THAT(Sentences::of(CUPSLimits::brokenIn(text + ": \"\"\n").at(0)), testing::HasSubstr("\u00E4…"));
}
