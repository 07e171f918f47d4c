// SPDX-License-Identifier: MIT
#include "explain/watch/InputLines.h"

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

TEST(InputLines, KnowsHowManyBytesThereAreAndWereRead) {
  const InputLines lines = linesOf("*A: \xC3\xA9\n*B: \xE9\n*C: 3\n");
  EXPECT_EQ(lines.size(), 19U);
  EXPECT_EQ(lines.sizeRead(), 19U) << "what is behind the bytes that are no text, too";
  EXPECT_FALSE(lines.isGzip() || lines.isDirectory());
  const TemporaryFolder folder;
  EXPECT_TRUE(InputLines::ofFile(folder.path()).isDirectory());
  EXPECT_EQ(InputLines::ofFile(folder.path()).size(), std::nullopt);
  EXPECT_EQ(InputLines::ofFile("/dev/null").size(), std::nullopt);
}

TEST(InputLines, TakesTheSizeOfGzipFromItsTrailer) {
  // "*A: 1\n", not compressed (RFC 1951, section 3.2.4), with its checksum and length behind it.
  const std::string gzip("\x1F\x8B\x08\0\0\0\0\0\0\x03\x01\x06\0\xF9\xFF*A: 1\n\xA5\x7C\xE9\x1C\x06\0\0\0", 29);
  const InputLines lines = linesOf(gzip);
  EXPECT_TRUE(lines.isGzip());
  EXPECT_EQ(lines.size(), 6U);
  EXPECT_EQ(linesOf(gzip.substr(0, 3)).size(), 3U) << "too short for a trailer";
}

TEST(InputLines, FindsGzipWhoseChecksumIsNotThatOfItsBytes) {
  std::string gzip("\x1F\x8B\x08\0\0\0\0\0\0\x03\x01\x06\0\xF9\xFF*A: 1\n\x83\x46\x35\xF3\x06\0\0\0", 29);
  EXPECT_FALSE(linesOf(gzip).isDamaged());
  EXPECT_EQ(linesOf(gzip).text(), "*A: 1\n");
  gzip[19] = '2';
  EXPECT_TRUE(linesOf(gzip).isDamaged());
  EXPECT_FALSE(linesOf("*A: 1\n").isDamaged());
}

TEST(InputLines, GivesThePiecesWithTheirLineEnds) {
  const InputLines lines = linesOf("*A: 1\r\n\n*B: 2");
  ASSERT_EQ(lines.count(), 3U);
  EXPECT_EQ(lines.piece(0), "*A: 1\r\n");
  EXPECT_EQ(lines.piece(2), "*B: 2");
}

TEST(InputLines, FindsLinesThatTheReaderSplits) {
  const std::string longLine = "*% " + std::string(600, 'x') + "\n";
  EXPECT_THAT(linesOf("*A: 1\n" + longLine + "*B: 2\n").split(), ElementsAre(2, 3));
  EXPECT_THAT(linesOf("*A: 1\n*B: 2").split(), IsEmpty());  // no line end at the end of the file is no split
}
