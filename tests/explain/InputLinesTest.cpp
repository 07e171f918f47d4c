// SPDX-License-Identifier: MIT
#include "explain/InputLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

InputLines linesOf(const std::string& bytes) {
  const TemporaryFolder folder;
  return InputLines::ofFile(folder.file("input", bytes));
}

}  // namespace

TEST(InputLines, GivesLinesByTheirNumberWithoutLineEnds) {
  const InputLines lines = linesOf("*A: 1\r\n\n*B: 2");
  EXPECT_EQ(lines.line(1), "*A: 1");
  EXPECT_EQ(lines.line(2), "");
  EXPECT_EQ(lines.line(3), "*B: 2");
  EXPECT_EQ(lines.line(0), std::nullopt);
  EXPECT_EQ(lines.line(4), std::nullopt);
}

TEST(InputLines, HasNoLinesOfAFileThatCannotBeOpened) {
  const InputLines lines = InputLines::ofFile("/no/such/file");
  EXPECT_EQ(lines.line(1), std::nullopt);
  EXPECT_EQ(lines.text(), "");
}

TEST(InputLines, FindsWhereReadingEnds) {
  const InputLines lines = linesOf("*A: \xC3\xA9\n*B: \xE9\n*C: 3\n");
  EXPECT_EQ(lines.firstThatIsNotUTF8(), 2U);
  EXPECT_EQ(lines.text(), "*A: \xC3\xA9\n");
  EXPECT_EQ(linesOf("*A: 1\n").firstThatIsNotUTF8(), std::nullopt);
}

TEST(InputLines, FindsLinesThatTheReaderSplits) {
  const std::string longLine = "*% " + std::string(600, 'x') + "\n";
  EXPECT_THAT(linesOf("*A: 1\n" + longLine + "*B: 2\n").split(), ElementsAre(2, 3));
  EXPECT_THAT(linesOf("*A: 1\n*B: 2").split(), IsEmpty());  // no line end at the end of the file is no split
}
