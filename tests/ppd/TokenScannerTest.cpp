// SPDX-License-Identifier: MIT
#include "ppd/lines/TokenScanner.h"

#include <gtest/gtest.h>

#include <string>

#include <optional>

TEST(TokenScanner, ScansTokensInOrder) {
  TokenScanner scanner("*Foo:");
  EXPECT_TRUE(scanner.scan("*"));
  EXPECT_TRUE(scanner.scan("Foo"));
  EXPECT_TRUE(scanner.scan(":"));
  EXPECT_TRUE(scanner.isAtEnd());
}

TEST(TokenScanner, SkipsWhiteSpaceAndLineEndsBeforeEachToken) {
  TokenScanner scanner(" \t*\r\nFoo\xC2\xA0\xE2\x80\xA8:");
  EXPECT_TRUE(scanner.scan("*"));
  EXPECT_TRUE(scanner.scan("Foo"));
  EXPECT_TRUE(scanner.scan(":"));
}

TEST(TokenScanner, ComparesTokensWithoutRegardToLetterCase) {
  TokenScanner scanner("*oPENui");
  EXPECT_TRUE(scanner.scan("*"));
  EXPECT_TRUE(scanner.scan("OpenUI"));
}

TEST(TokenScanner, StaysWhereItIsWhenTheTokenDoesNotCome) {
  TokenScanner scanner("  Foo");
  EXPECT_FALSE(scanner.scan("Bar"));
  EXPECT_EQ(scanner.position(), 0U);
  EXPECT_FALSE(scanner.scan("Fooo"));
  EXPECT_EQ(scanner.position(), 0U);
  EXPECT_TRUE(scanner.scan("Foo"));
}

TEST(TokenScanner, ATokenMayBeTheBeginningOfALongerWord) {
  TokenScanner scanner("OpenUIx");
  EXPECT_TRUE(scanner.scan("OpenUI"));
  EXPECT_EQ(scanner.rest(), "x");
}

TEST(TokenScanner, NothingIsScannedAtTheEnd) {
  TokenScanner scanner(" \n");
  EXPECT_FALSE(scanner.scan("*"));
  TokenScanner empty("");
  EXPECT_TRUE(empty.isAtEnd());
  EXPECT_FALSE(empty.scan("*"));
}

TEST(TokenScanner, ReadsUpToAStopCharacterAndStandsInFrontOfIt) {
  TokenScanner scanner("  Plain Paper /x");
  EXPECT_EQ(scanner.readUpTo('/', ':'), "Plain Paper ");
  EXPECT_EQ(scanner.rest(), "/x");
}

TEST(TokenScanner, ReadsUpToTheEndWithoutAStopCharacter) {
  TokenScanner scanner(" a\xC3\xA9 b\n");
  EXPECT_EQ(scanner.readUpTo('/', ':'), "a\xC3\xA9 b\n");
  EXPECT_TRUE(scanner.isAtEnd());
}

TEST(TokenScanner, ReadsNothingInFrontOfAStopCharacterOrTheEnd) {
  TokenScanner scanner("  :x");
  EXPECT_EQ(scanner.readUpTo('/', ':'), std::nullopt);
  EXPECT_EQ(scanner.position(), 0U);
  TokenScanner blank(" \n ");
  EXPECT_EQ(blank.readUpTo(':'), std::nullopt);
}

TEST(TokenScanner, ReadsUpToWhiteSpaceOrAStopCharacter) {
  EXPECT_EQ(TokenScanner("Foo Bar: x").readUpToWhiteSpaceOr(':'), "Foo");
  EXPECT_EQ(TokenScanner("Foo\tBar").readUpToWhiteSpaceOr(':'), "Foo");
  EXPECT_EQ(TokenScanner("Foo\xC2\xA0"
                         "Bar")
                .readUpToWhiteSpaceOr(':'),
            "Foo");
  EXPECT_EQ(TokenScanner(" Foo: x").readUpToWhiteSpaceOr(':'), "Foo");
  EXPECT_EQ(TokenScanner(":").readUpToWhiteSpaceOr(':'), std::nullopt);
}

TEST(TokenScanner, LineEndsDoNotStopAWordThatEndsAtWhiteSpace) {
  EXPECT_EQ(TokenScanner("Foo\r\n").readUpToWhiteSpaceOr(':'), "Foo\r\n");
}

TEST(TokenScanner, LineEndsAndWhiteSpaceStopAWordThatEndsAtABlank) {
  EXPECT_EQ(TokenScanner(" /Foo\nBar").readUpToBlank(), "/Foo");
  EXPECT_EQ(TokenScanner("/Foo Bar").readUpToBlank(), "/Foo");
  EXPECT_EQ(TokenScanner("/Foo").readUpToBlank(), "/Foo");
  EXPECT_EQ(TokenScanner(" \n").readUpToBlank(), std::nullopt);
}

TEST(TokenScanner, SkipsToAStopCharacterOverEverything) {
  TokenScanner scanner("*Open Group: x:y");
  EXPECT_TRUE(scanner.skipTo(':'));
  EXPECT_EQ(scanner.rest(), ": x:y");
  scanner.skipCharacter();
  EXPECT_TRUE(scanner.skipTo(':'));
  EXPECT_EQ(scanner.rest(), ":y");
}

TEST(TokenScanner, SkipsToTheEndWithoutTheStopCharacter) {
  TokenScanner scanner("*OpenGroup");
  EXPECT_FALSE(scanner.skipTo(':'));
  EXPECT_TRUE(scanner.isAtEnd());
}

TEST(TokenScanner, ReadsNothingBehindTheEndOfItsLine) {
  const std::string_view line = std::string_view("abc def").substr(0, 3);
  const std::string_view cut = std::string_view("abcdef:").substr(0, 3);
  for (const std::string_view each : {line, cut}) {
    EXPECT_EQ(TokenScanner(each).readUpToWhiteSpaceOr(':'), "abc");
    EXPECT_EQ(TokenScanner(each).readUpToBlank(), "abc");
    EXPECT_EQ(TokenScanner(each).readUpTo(':'), "abc");
    TokenScanner scanner(each);
    EXPECT_FALSE(scanner.skipTo(':'));
    EXPECT_TRUE(scanner.isAtEnd());
    EXPECT_FALSE(TokenScanner(each).scan("abcd"));
  }
}

TEST(TokenScanner, SkipsBehindAPartOfItsOwnLineOnly) {
  const std::string line = "*Foo Bar: x";
  TokenScanner scanner(line);
  EXPECT_TRUE(scanner.skipBehind(std::string_view(line).substr(1, 3)));
  EXPECT_EQ(scanner.rest(), " Bar: x");
  const std::string other = line;
  EXPECT_FALSE(scanner.skipBehind(std::string_view(other).substr(1, 3)));
  EXPECT_EQ(scanner.rest(), " Bar: x");
  EXPECT_TRUE(scanner.skipBehind(line));
  EXPECT_TRUE(scanner.isAtEnd());
}
