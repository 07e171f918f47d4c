// SPDX-License-Identifier: MIT
#include "explain/judge/StatementPlaces.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;

namespace {

std::vector<std::string> places(const std::string& text) {
  std::vector<std::string> found;
  for (const StatementPlace& place : StatementPlace::in(text)) {
    found.push_back(std::to_string(place.line) + " " + place.group + ">" + place.option + " " + place.keyword + " " +
                    place.spec);
  }
  return found;
}

}  // namespace

TEST(StatementPlaces, EachStatementWithItsLineAndWhatItStandsIn) {
  EXPECT_THAT(places("*PPD-Adobe: \"4.3\"\r\n*% Comment\r\n\r\n*OpenGroup: G/Text\n*OpenUI *O/Text: PickOne\r"
                     "*DefaultO: A\n*O A/A: \"\"\n*CloseUI: *O\n*After: 1\n*CloseGroup: G\n*Last B/b: \"\""),
              ElementsAre("1 > PPD-Adobe ", "4 > OpenGroup G", "5 G> OpenUI O", "6 G>O DefaultO ", "7 G>O O A",
                          "8 G>O CloseUI ", "9 G> After ", "10 G> CloseGroup ", "11 > Last B"));
}

TEST(StatementPlaces, LinesInsideAValueAreNoStatements) {
  EXPECT_THAT(places("*Foo: \"a\n*Bar: 1\nb\"\n*End\n*Baz : \"x\"\n"), ElementsAre("1 > Foo ", "4 > End ", "5 > Baz "));
}

TEST(StatementPlaces, QuotesInFrontOfTheColonOpenNothing) {
  EXPECT_THAT(places("*O A/24\" wide: \"x\"\n*Bar: 1\n"), ElementsAre("1 > O A", "2 > Bar "));
}

TEST(StatementPlaces, StrangeLines) {
  EXPECT_THAT(places("*\n*:\nstray\n*A\tB \t/c\n*OpenGroup:\n*OpenUI\n"),
              ElementsAre("1 >  ", "2 >  ", "4 > A B", "5 > OpenGroup ", "6 > OpenUI "));
  EXPECT_THAT(places(""), ElementsAre());
}
