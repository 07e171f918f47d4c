// SPDX-License-Identifier: MIT
#include "base/Text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

using namespace std::string_view_literals;
using testing::ElementsAre;

namespace {

std::set<char32_t> membersOf(Text::CharacterClass characterClass) {
  std::set<char32_t> members;
  for (char32_t character = 0; character <= 0x10FFFF; ++character) {
    if (characterClass(character)) members.insert(character);
  }
  return members;
}

const std::set<char32_t> kWhiteSpace = {0x09,   0x20,   0xA0,   0x1680, 0x2000, 0x2001, 0x2002, 0x2003, 0x2004,
                                        0x2005, 0x2006, 0x2007, 0x2008, 0x2009, 0x200A, 0x202F, 0x205F, 0x3000};
const std::set<char32_t> kLineEnds = {0x0A, 0x0B, 0x0C, 0x0D, 0x85, 0x2028, 0x2029};

}  // namespace

TEST(Text, WhiteSpaceIsTabAndTheSpaceSeparators) {
  EXPECT_EQ(membersOf(Text::isWhiteSpace), kWhiteSpace);
}

TEST(Text, LineEndsAreTheSevenLineEndCharacters) {
  EXPECT_EQ(membersOf(Text::isLineEnd), kLineEnds);
}

TEST(Text, BlanksAreWhiteSpaceAndLineEnds) {
  std::set<char32_t> both = kWhiteSpace;
  both.insert(kLineEnds.begin(), kLineEnds.end());
  EXPECT_EQ(membersOf(Text::isBlank), both);
}

TEST(Text, WellFormedUTF8IsValid) {
  for (const std::string_view text : {
           ""sv,
           "plain text that is longer than one machine word"sv,
           "\0"sv,
           "\x7F"sv,
           "\xC2\x80"sv,
           "\xDF\xBF"sv,
           "\xE0\xA0\x80"sv,
           "\xED\x9F\xBF"sv,  // the last character below the surrogates
           "\xEE\x80\x80"sv,  // the first one above them
           "\xEF\xBB\xBF"sv,  // byte order mark
           "\xEF\xBF\xBE"sv,  // U+FFFE: no character, yet well formed
           "\xEF\xBF\xBF"sv,
           "\xF0\x90\x80\x80"sv,
           "\xF4\x8F\xBF\xBF"sv,  // U+10FFFF
           "12345678\xC3\xA9"sv,
           "1234567\xC3\xA9 and more text"sv,
       }) {
    EXPECT_TRUE(Text::isValidUTF8(text)) << testing::PrintToString(text);
  }
}

TEST(Text, MalformedUTF8IsNotValid) {
  for (const std::string_view text : {
           "\x80"sv,                  // continuation byte alone
           "\xC3"sv,                  // cut
           "\xE2\x82"sv,              // cut
           "\xF0\x9F\x98"sv,          // cut
           "\xC3("sv,                 // no continuation byte
           "\xC0\x80"sv,              // overlong NUL
           "\xC1\xBF"sv,              // overlong
           "\xE0\x9F\xBF"sv,          // overlong
           "\xF0\x8F\xBF\xBF"sv,      // overlong
           "\xED\xA0\x80"sv,          // the first surrogate
           "\xED\xBF\xBF"sv,          // the last surrogate
           "\xF4\x90\x80\x80"sv,      // above U+10FFFF
           "\xF5\x80\x80\x80"sv,      // above U+10FFFF
           "\xF8\x88\x80\x80\x80"sv,  // five bytes
           "\xFE"sv,
           "\xFF"sv,
           "12345678\xFF"sv,
           "1234\xFF"
           "5678"sv,
           "caf\xC3\xA9 caf\xE9"sv,  // Latin-1 behind UTF-8
       }) {
    EXPECT_FALSE(Text::isValidUTF8(text)) << testing::PrintToString(text);
  }
}

TEST(Text, ACharacterThatIsCutByTheEndIsNotValid) {
  EXPECT_FALSE(Text::isValidUTF8("a\xC3\xA9"sv.substr(0, 2)));  // the rest of it stands behind the end
}

// Bytes are looked at in words, and those in blocks: no place of a text is left out.
TEST(Text, EachByteOfATextIsLookedAt) {
  for (std::size_t size = 2; size <= 80; ++size) {
    for (std::size_t position = 0; position + 1 < size; ++position) {
      std::string text(size, 'a');
      text[position] = '\xC3';
      EXPECT_FALSE(Text::isValidUTF8(text)) << size << ", " << position;
      text[position + 1] = '\xA9';
      EXPECT_TRUE(Text::isValidUTF8(text)) << size << ", " << position;
    }
    EXPECT_FALSE(Text::isValidUTF8(std::string(size - 1, 'a') + '\xC3')) << size;
  }
}

TEST(Text, FromUTF8GivesTheBytesOrNothing) {
  EXPECT_EQ(Text::fromUTF8("caf\xC3\xA9"), "caf\xC3\xA9");
  EXPECT_EQ(Text::fromUTF8(""), "");
  EXPECT_EQ(Text::fromUTF8("a\0b"sv), std::string("a\0b", 3));
  EXPECT_EQ(Text::fromUTF8("caf\xE9"), std::nullopt);
}

TEST(Text, CharacterAtReadsOneToFourBytes) {
  const std::string_view text = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
  const std::vector<std::pair<std::size_t, char32_t>> places = {{0, 'a'}, {1, 0xE9}, {3, 0x20AC}, {6, 0x1F600}};
  for (const auto& [position, value] : places) EXPECT_EQ(Text::characterAt(text, position).value, value);
  EXPECT_EQ(Text::characterAt(text, 0).size, 1U);
  EXPECT_EQ(Text::characterAt(text, 1).size, 2U);
  EXPECT_EQ(Text::characterAt(text, 3).size, 3U);
  EXPECT_EQ(Text::characterAt(text, 6).size, 4U);
}

TEST(Text, CharacterBeforeReadsOneToFourBytes) {
  const std::string_view text = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
  EXPECT_EQ(Text::characterBefore(text, 1).value, U'a');
  EXPECT_EQ(Text::characterBefore(text, 3).value, U'\u00E9');
  EXPECT_EQ(Text::characterBefore(text, 6).value, U'\u20AC');
  EXPECT_EQ(Text::characterBefore(text, 10).value, U'\U0001F600');
  EXPECT_EQ(Text::characterBefore(text, 10).size, 4U);
  EXPECT_EQ(Text::characterBefore(text.substr(1), 2).value, U'\u00E9');
}

TEST(Text, SkipStopsAtTheFirstCharacterOutsideTheClass) {
  EXPECT_EQ(Text::skip(" \t\xC2\xA0x ", 0, Text::isWhiteSpace), 4U);
  EXPECT_EQ(Text::skip("x  ", 1, Text::isWhiteSpace), 3U);
  EXPECT_EQ(Text::skip("x", 0, Text::isWhiteSpace), 0U);
  EXPECT_EQ(Text::skip(" \n x", 0, Text::isWhiteSpace), 1U);
  EXPECT_EQ(Text::skip(" \n x", 0, Text::isBlank), 3U);
  EXPECT_EQ(Text::skip("", 0, Text::isBlank), 0U);
}

TEST(Text, TrimTakesTheClassFromBothEndsOnly) {
  EXPECT_EQ(Text::trim(" \t a  b \t", Text::isWhiteSpace), "a  b");
  EXPECT_EQ(Text::trim(" a \n", Text::isWhiteSpace), "a \n");
  EXPECT_EQ(Text::trim(" a \n", Text::isBlank), "a");
  EXPECT_EQ(Text::trim("\r\n a \n\n", Text::isLineEnd), " a ");
  EXPECT_EQ(Text::trim("\xE2\x80\xA8\xE3\x80\x80 a\xC3\xA9\xC2\x85\xC2\xA0", Text::isBlank), "a\xC3\xA9");
  EXPECT_EQ(Text::trim(" \n ", Text::isBlank), "");
  EXPECT_EQ(Text::trim("", Text::isBlank), "");
}

TEST(Text, TrimGivesAPartOfTheSameStorage) {
  const std::string_view text = "  abc ";
  EXPECT_EQ(Text::trim(text, Text::isWhiteSpace).data(), text.data() + 2);
}

TEST(Text, SplitAtAClassKeepsEmptyParts) {
  EXPECT_THAT(Text::split("de fr", Text::isWhiteSpace), ElementsAre("de", "fr"));
  EXPECT_THAT(Text::split("de \tfr", Text::isWhiteSpace), ElementsAre("de", "", "fr"));
  EXPECT_THAT(Text::split(" de ", Text::isWhiteSpace), ElementsAre("", "de", ""));
  EXPECT_THAT(Text::split("de\xC2\xA0"
                          "fr\nit",
                          Text::isWhiteSpace),
              ElementsAre("de", "fr\nit"));
  EXPECT_THAT(Text::split("", Text::isWhiteSpace), ElementsAre(""));
  EXPECT_THAT(Text::split("a\r\nb\n", Text::isLineEnd), ElementsAre("a", "", "b", ""));
}

TEST(Text, SplitAtASeparatorKeepsEmptyParts) {
  EXPECT_THAT(Text::split("a;b", ";"), ElementsAre("a", "b"));
  EXPECT_THAT(Text::split(";a;;b;", ";"), ElementsAre("", "a", "", "b", ""));
  EXPECT_THAT(Text::split("abc", ";"), ElementsAre("abc"));
  EXPECT_THAT(Text::split("", ";"), ElementsAre(""));
  EXPECT_THAT(Text::split("a, b,c", ", "), ElementsAre("a", "b,c"));
  EXPECT_THAT(Text::split("aaa", "aa"), ElementsAre("", "a"));
}

TEST(Text, ContainsFindsAPartAnywhere) {
  EXPECT_TRUE(Text::contains("abc", "a"));
  EXPECT_TRUE(Text::contains("abc", "bc"));
  EXPECT_TRUE(Text::contains("abc", "abc"));
  EXPECT_FALSE(Text::contains("abc", "abcd"));
  EXPECT_FALSE(Text::contains("abc", "B"));
}

TEST(Text, TheEmptyStringIsContainedInNothing) {
  EXPECT_FALSE(Text::contains("abc", ""));
  EXPECT_FALSE(Text::contains("", ""));
}

TEST(Text, ContainmentDoesNotNormalise) {
  EXPECT_FALSE(Text::contains("caf\xC3\xA9", "e\xCC\x81"));
}

TEST(Text, PrefixIgnoringCaseFoldsASCIILettersOnly) {
  EXPECT_TRUE(Text::startsWithIgnoringCase("OpenUI: x", "oPENui"));
  EXPECT_TRUE(Text::startsWithIgnoringCase("OpenUI", "OpenUI"));
  EXPECT_TRUE(Text::startsWithIgnoringCase("AZaz", "azAZ"));
  EXPECT_TRUE(Text::startsWithIgnoringCase("x", ""));
  EXPECT_TRUE(Text::startsWithIgnoringCase("", ""));
  EXPECT_FALSE(Text::startsWithIgnoringCase("OpenU", "OpenUI"));
  EXPECT_FALSE(Text::startsWithIgnoringCase("xOpenUI", "OpenUI"));
  EXPECT_FALSE(Text::startsWithIgnoringCase("\xC3\x89", "\xC3\xA9"));  // E and e with acute accent
  EXPECT_FALSE(Text::startsWithIgnoringCase("\xE2\x84\xAA", "K"));     // the Kelvin sign
  EXPECT_FALSE(Text::startsWithIgnoringCase("@", "`"));                // 32 apart, and no letters
  EXPECT_FALSE(Text::startsWithIgnoringCase("[", "{"));
}

TEST(Text, AnAbsentTextPrintsAsNullInParentheses) {
  EXPECT_EQ(Text::orNull(std::nullopt), "(null)");
  const std::optional<std::string> text = "text";
  EXPECT_EQ(Text::orNull(text), "text");
  const std::optional<std::string> empty = "";
  EXPECT_EQ(Text::orNull(empty), "");
}
