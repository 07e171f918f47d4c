// SPDX-License-Identifier: MIT
#include "ppd/lines/LineComposer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "tests/ppd/TestSupport.h"

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::textsOf;

TEST(LineComposer, HasNoLinesAtFirst) {
  EXPECT_THAT(textsOf(LineComposer().lines()), IsEmpty());
}

TEST(LineComposer, ComposesALineOfItsPieces) {
  LineComposer composer;
  EXPECT_EQ(composer.add("*", std::string("Foo"), std::string_view(" Bar"), ": \"\"\n"), "*Foo Bar: \"\"\n");
  EXPECT_THAT(textsOf(composer.lines()), ElementsAre("*Foo Bar: \"\"\n"));
}

TEST(LineComposer, GivesEachLineByItself) {
  LineComposer composer;
  EXPECT_EQ(composer.add("one\n"), "one\n");
  EXPECT_EQ(composer.add("two", "\n"), "two\n");
  EXPECT_EQ(composer.add("three"), "three");  // adds no line end
  EXPECT_THAT(textsOf(composer.lines()), ElementsAre("one\n", "two\n", "three"));
}

TEST(LineComposer, AnEmptyLineAndALineWithLineEndsInsideAreOneLineEach) {
  LineComposer composer;
  EXPECT_EQ(composer.add(""), "");
  EXPECT_EQ(composer.add("a\nb\n", "c\n"), "a\nb\nc\n");
  EXPECT_EQ(composer.add("", ""), "");
  EXPECT_THAT(textsOf(composer.lines()), ElementsAre("", "a\nb\nc\n", ""));
  LineComposer empty;
  empty.add("");
  EXPECT_THAT(textsOf(empty.lines()), ElementsAre(""));
}

TEST(LineComposer, LinesShareOneBlockThatOutlivesTheComposer) {
  auto composer = std::make_unique<LineComposer>();
  composer->add("one\n");
  composer->add("two\n");
  const StatementStrings lines = composer->lines();
  composer.reset();
  ASSERT_THAT(textsOf(lines), ElementsAre("one\n", "two\n"));
  EXPECT_EQ(lines[1].view().data(), lines[0].view().data() + lines[0].size());
}

TEST(LineComposer, GoesOnBehindTheLinesThatWereTaken) {
  LineComposer composer;
  composer.add("one\n");
  const StatementStrings before = composer.lines();
  const std::string line(5000, 'x');
  composer.add(line);
  EXPECT_THAT(textsOf(before), ElementsAre("one\n"));
  EXPECT_THAT(textsOf(composer.lines()), ElementsAre("one\n", line));
}
