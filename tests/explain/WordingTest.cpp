// SPDX-License-Identifier: MIT
#include "explain/Wording.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;

TEST(Wording, MakesControlCharactersVisible) {
  EXPECT_EQ(Wording::visible("a\nb\r\tc\x1b[31m\x7f"), "a\\nb\\r\\tc\\x1b[31m\\x7f");
  EXPECT_EQ(Wording::visible("Caf\xC3\xA9 \xE2\x82\xAC"), "Caf\xC3\xA9 \xE2\x82\xAC");
  EXPECT_EQ(Wording::visible("\xC2\x85\xE2\x80\xA8"), "\\xc2\\x85\\xe2\\x80\\xa8");
}

TEST(Wording, MakesBytesVisibleThatAreNoText) {
  EXPECT_EQ(Wording::visible("a\xE9z"), "a\\xe9z");
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
