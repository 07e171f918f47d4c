// SPDX-License-Identifier: MIT
#include "ppd/document/LineList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/ppd/TestSupport.h"

using testing::ElementsAre;
using TestSupport::textsOf;

TEST(LineList, IsEmptyAtFirst) {
  const LineList lines;
  EXPECT_TRUE(lines.empty());
  EXPECT_EQ(lines.size(), 0U);
}

TEST(LineList, HoldsOneLine) {
  LineList lines;
  lines.push_back("one\n");
  EXPECT_FALSE(lines.empty());
  EXPECT_EQ(lines.front().view(), "one\n");
  EXPECT_THAT(textsOf(lines), ElementsAre("one\n"));
}

TEST(LineList, HoldsSeveralLinesInOrder) {
  LineList lines;
  lines.push_back("one\n");
  lines.push_back("two\n");
  lines.push_back("three\n");
  EXPECT_EQ(lines.front().view(), "one\n");
  EXPECT_THAT(textsOf(lines), ElementsAre("one\n", "two\n", "three\n"));
}

TEST(LineList, AnEmptyLineCounts) {
  LineList lines;
  lines.push_back("");
  EXPECT_EQ(lines.size(), 1U);
  lines.push_back("");
  EXPECT_THAT(textsOf(lines), ElementsAre("", ""));
}
