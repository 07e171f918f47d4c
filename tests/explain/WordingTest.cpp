// SPDX-License-Identifier: MIT
#include "explain/report/Wording.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::StartsWith;

TEST(Wording, MakesControlCharactersVisible) {
  EXPECT_EQ(Wording::visible("a\nb\r\tc\x1b[31m\x7f"), "a\\nb\\r\\tc\\x1b[31m\\x7f");
  EXPECT_EQ(Wording::visible("Caf\xC3\xA9 \xE2\x82\xAC"), "Caf\xC3\xA9 \xE2\x82\xAC");
  EXPECT_EQ(Wording::visible("\xC2\x85\xE2\x80\xA8"), "\\u0085\\u2028");
}

TEST(Wording, MakesCharactersVisibleThatTurnTextRoundOrCannotBeSeen) {
  EXPECT_EQ(Wording::visible("a\u202Eb\u2066c\u061Cd"), "a\\u202eb\\u2066c\\u061cd");
  EXPECT_EQ(Wording::visible("a\u200Bb\uFEFFc\u00ADd\u2029"), "a\\u200bb\\ufeffc\\u00add\\u2029");
  EXPECT_EQ(Wording::visible("\U000E0041\uE000\u0378"), "\\U000e0041\\ue000\\u0378");
  EXPECT_EQ(Wording::visible("\u05D0 \u4E2D \U0001F5A8"), "\u05D0 \u4E2D \U0001F5A8");
}

TEST(Wording, MakesBytesVisibleThatAreNoText) {
  EXPECT_EQ(Wording::visible("a\xE9z\n\x1b"), "a\\xe9z\\n\\x1b");
}

TEST(Wording, NamesAMediumByWhatTheDeviceGives) {
  Report::Medium medium;
  EXPECT_EQ(Wording::of(medium), "without a name (no ID)");
  medium.name = "Can\nvas";
  medium.ID = "4711";
  EXPECT_EQ(Wording::of(medium), "\"Can\\nvas\" (4711)");
}

TEST(Wording, CutsInFrontOfAWholeCharacter) {
  EXPECT_EQ(Wording::cutTo(3, "abcd"), "abc");
  EXPECT_EQ(Wording::cutTo(4, "abcd"), "abcd");
  EXPECT_EQ(Wording::cutTo(3, "ab\u00E9"), "ab");
  EXPECT_EQ(Wording::cutTo(4, "ab\u00E9"), "ab\u00E9");
  EXPECT_EQ(Wording::cutTo(0, "\u00E9"), "");
}

TEST(Wording, TakesAStatementApartIntoLines) {
  EXPECT_THAT(Wording::visibleLines("*A: \"x\r\n\ty\"\n*End\n\n"), ElementsAre("*A: \"x", "\\ty\"", "*End", ""));
  EXPECT_THAT(Wording::visibleLines(""), ElementsAre());
  EXPECT_THAT(Wording::visibleLines("no line end"), ElementsAre("no line end"));
}

TEST(Wording, SaysWhatIsExpectedForEveryErrorOfTheParser) {
  for (int code = 1; code <= 7; ++code) EXPECT_NE(Wording::expectedAtError(code), "") << code;
  EXPECT_EQ(Wording::expectedAtError(8), "");
}

TEST(Wording, SaysWhyAMediumIsNoChoice) {
  EXPECT_EQ(Wording::of(MediumProblem::nothingMissing), "");
  EXPECT_EQ(Wording::of(MediumProblem::noName), "the device gives no name for it");
  EXPECT_EQ(Wording::of(MediumProblem::noID), "the device gives no ID for it");
  EXPECT_EQ(Wording::of(MediumProblem::noCode), "the updater has no code for it");
  EXPECT_EQ(Wording::of(MediumProblem::noChoiceName), "its choice has no name");
  EXPECT_EQ(Wording::of(MediumProblem::lineTooLong), "its choice statement would be longer than 255 bytes");
}

TEST(Wording, SaysWhyAProfileIsLeftOut) {
  const std::string url = "file:a b\n";
  const auto reason = [&url](ProfileProblem problem) { return Wording::of(problem, url); };
  EXPECT_EQ(reason(ProfileProblem::none), "");
  EXPECT_EQ(reason(ProfileProblem::noName), "it has no name");
  EXPECT_EQ(reason(ProfileProblem::emptyName), "its name is empty");
  EXPECT_EQ(reason(ProfileProblem::nameTooLong), "its name is longer than 80 bytes");
  EXPECT_THAT(reason(ProfileProblem::charactersOfName), StartsWith("its name holds a character that"));
  EXPECT_EQ(reason(ProfileProblem::noPath), "its URL has no path by RFC 3986: file:a b\\n");
  EXPECT_EQ(Wording::of(ProfileProblem::noPath, std::nullopt), "it has no URL");
  EXPECT_THAT(reason(ProfileProblem::charactersOfPath), StartsWith("its path holds a character that"));
  EXPECT_EQ(reason(ProfileProblem::specTooLong), "the spec is longer than 40 bytes");
  EXPECT_EQ(reason(ProfileProblem::lineTooLong), "a statement would be longer than 255 bytes");
  EXPECT_EQ(reason(ProfileProblem::noStatement), "the PPD has no statement of this spec to set");
}
