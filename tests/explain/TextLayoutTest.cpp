// SPDX-License-Identifier: MIT
#include "explain/show/TextLayout.h"

#include <gtest/gtest.h>

TEST(TextLayout, BreaksBetweenWordsWhereItCan) {
  TextLayout layout(20, false);
  layout.wrapped("* ", "  ", "eighteen character then more");
  EXPECT_EQ(layout.take(), "* eighteen character\n  then more\n");
  layout = TextLayout(20, false);
  layout.wrapped("* ", "  ", "onewordoftwentyfivelettersx");
  EXPECT_EQ(layout.take(), "* onewordoftwentyfiv\n  elettersx\n");
  layout = TextLayout(20, false);
  layout.wrapped("* ", "  ", "");
  EXPECT_EQ(layout.take(), "* \n");
}

TEST(TextLayout, CountsColumnsAndNotBytes) {
  EXPECT_EQ(TextLayout::widthOf("a\u00E9\u4E2D"), 4U);
  EXPECT_EQ(TextLayout::fitted("\u4E2D\u4E2D\u4E2D", 5), "\u4E2D\u4E2D\u2026");
  EXPECT_EQ(TextLayout::fitted("\u00E9\u00E9\u00E9\u00E9", 3), "\u00E9\u00E9\u2026");
  EXPECT_EQ(TextLayout::fitted("\u00E9\u00E9\u00E9", 3), "\u00E9\u00E9\u00E9");
  EXPECT_EQ(TextLayout::padded("\u00E9", 3), "\u00E9  ");
}

TEST(TextLayout, CutsALineThatDoesNotFit) {
  TextLayout layout(8, true);
  layout.line("123456");
  layout.line("1234567", TextLayout::Colour::red);
  EXPECT_EQ(layout.take(), "  123456\n  \x1b[31m12345\u2026\x1b[0m\n");
}
