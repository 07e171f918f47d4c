// SPDX-License-Identifier: MIT
#include "explain/report/Words.h"

#include <gtest/gtest.h>

TEST(Words, AreHeldAsAWholeOnly) {
  EXPECT_TRUE(holdsWord("*MediaType Custom1/Canvas", "Custom1"));
  EXPECT_FALSE(holdsWord("*MediaType Custom12/Canvas", "Custom1"));
  EXPECT_FALSE(holdsWord("(1001)", "10"));
  EXPECT_FALSE(holdsWord("(1001)", "01"));
  EXPECT_TRUE(holdsWord("(1001)(10)", "10"));
  EXPECT_TRUE(holdsWord("10", "10"));
  EXPECT_TRUE(holdsWord("a(10)b", "(10)")) << "what does not begin or end with a letter or digit is no part of a word";
  EXPECT_FALSE(holdsWord("a", ""));
}
