// SPDX-License-Identifier: MIT
#include "explain/judge/NearMisses.h"

#include <gtest/gtest.h>

using NearMisses::Likeness;
using NearMisses::likeness;

TEST(NearMisses, LetterCaseAndBlanksAtTheEnds) {
  EXPECT_EQ(likeness("Best", "best"), Likeness::letterCase);
  EXPECT_EQ(likeness("Custom", " CUSTOM\t"), Likeness::letterCase);
  EXPECT_EQ(likeness("\u00C4", "\u00E4"), Likeness::letterCase);
  EXPECT_EQ(likeness("4711", "4711 "), Likeness::letterCase);
}

TEST(NearMisses, CharactersThatLookAlike) {
  EXPECT_EQ(likeness("MediaType", "Medi\u0430Type"), Likeness::looksTheSame);
  EXPECT_EQ(likeness("COLOR", "C0LOR"), Likeness::looksTheSame);
  EXPECT_EQ(likeness("Medial", "MediaI"), Likeness::looksTheSame);
  EXPECT_EQ(likeness("471O", "4710"), Likeness::looksTheSame);
  EXPECT_EQ(likeness("Plain", "Pla\u200Bin"), Likeness::looksTheSame);
  EXPECT_EQ(likeness("Plain", "Plain\u3164"), Likeness::looksTheSame);
  EXPECT_EQ(likeness("My Canvas", "My\u00A0Canvas"), Likeness::looksTheSame);
  EXPECT_EQ(likeness("Fine", "\uFF26ine"), Likeness::looksTheSame);
}

TEST(NearMisses, AFewOtherCharacters) {
  EXPECT_EQ(likeness("QZPPDUpdaters", "QZPPDUpdater"), Likeness::nearly);
  EXPECT_EQ(likeness("QZPPDUpdaters", "QZPDPUpdaters"), Likeness::nearly);
  EXPECT_EQ(likeness("MediaInfo", "MediaInfos"), Likeness::nearly);
  EXPECT_EQ(likeness("abcd", "abce"), Likeness::nearly);
  EXPECT_EQ(likeness("abcdefghijklmnop", "abcxefgxijkxmnop"), Likeness::nearly);
  EXPECT_EQ(likeness("abcdefghijklmnop", "abcxefgxijkxmnox"), Likeness::none);
  EXPECT_EQ(likeness("CUSTOM", "COSTUM"), Likeness::nearly);
  EXPECT_EQ(likeness("CUSTOM", "COSTAM"), Likeness::none);
  EXPECT_EQ(likeness("MediaType", "MediaSize"), Likeness::none);
  EXPECT_EQ(likeness("abc", "abd"), Likeness::none);
  EXPECT_EQ(likeness("MediaType", "PageSize"), Likeness::none);
}

TEST(NearMisses, NamesOfASeriesAreNotAlike) {
  EXPECT_EQ(likeness("Custom1", "Custom2"), Likeness::none);
  EXPECT_EQ(likeness("Custom1", "Custom11"), Likeness::none);
  EXPECT_EQ(likeness("4711", "4712"), Likeness::none);
  EXPECT_EQ(likeness("cupsICCQualifier1", "cupsICCQualifier3"), Likeness::none);
}

TEST(NearMisses, NothingIsLikeTheEmptyNameOrALongOne) {
  EXPECT_EQ(likeness("", "a"), Likeness::none);
  EXPECT_EQ(likeness("a", "  "), Likeness::none);
  EXPECT_EQ(likeness(std::string(300, 'a'), std::string(299, 'a')), Likeness::none);
}

TEST(NearMisses, BytesThatAreNoTextAreCompared) {
  EXPECT_EQ(likeness("Pl\xE4inPaper", "PlainPaper"), Likeness::nearly);
  EXPECT_EQ(likeness("\xFF", "a"), Likeness::none);
}

TEST(NearMisses, TheLikestIsTaken) {
  const auto near = NearMisses::nearest("Best", {"Fast", "Bests", "B\u0435st", "best", "BEST", "Best"});
  ASSERT_TRUE(near);
  EXPECT_EQ(near->index, 3U);
  EXPECT_STREQ(NearMisses::nameOf(near->likeness), "letter-case");
  EXPECT_EQ(NearMisses::nearest("Best", {"Bests", "B\u0435st"})->index, 1U);
  EXPECT_EQ(NearMisses::nearest("MediaTypes", {"MediaTyp", "MediaType", "MediaTypess"})->index, 1U);
  EXPECT_FALSE(NearMisses::nearest("Best", {"Fast", "Best"}));
  EXPECT_FALSE(NearMisses::nearest("Best", {}));
}
