// SPDX-License-Identifier: MIT
#include "ppd/lines/PieceReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/types.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "tests/ppd/TestSupport.h"

using namespace std::string_view_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::TemporaryFile;
using TestSupport::Texts;
using TestSupport::textsOf;

namespace {

StatementStrings piecesAt(const std::string& path) {
  const auto file = PieceReader::open(path);
  if (file == nullptr) return {"cannot be opened"};
  PieceReader reader;
  StatementStrings pieces;
  while (auto piece = reader.next(file.get())) pieces.push_back(std::move(*piece));
  EXPECT_FALSE(reader.next(file.get()));  // the end stays the end
  return pieces;
}

Texts piecesOf(std::string_view bytes) {
  const TemporaryFile file(bytes);
  return textsOf(piecesAt(file.path()));
}

std::string x(std::size_t count) {
  return std::string(count, 'x');
}

}  // namespace

TEST(PieceReader, KeepsEachLineEnd) {
  EXPECT_THAT(piecesOf("a\nb\r\nc\rd"), ElementsAre("a\n", "b\r\n", "c\r", "d"));
  EXPECT_THAT(piecesOf("\n\n\r\n"), ElementsAre("\n", "\n", "\r\n"));
  EXPECT_THAT(piecesOf("\n\r"), ElementsAre("\n", "\r"));
}

TEST(PieceReader, ALineOf254BytesWithItsEndIsOnePiece) {
  EXPECT_THAT(piecesOf(x(253) + "\na\n"), ElementsAre(x(253) + "\n", "a\n"));
  EXPECT_THAT(piecesOf(x(252) + "\r\na\n"), ElementsAre(x(252) + "\r\n", "a\n"));
  EXPECT_THAT(piecesOf(x(254)), ElementsAre(x(254)));
}

TEST(PieceReader, ALongerLineComesInPieces) {
  EXPECT_THAT(piecesOf(x(254) + "\na\n"), ElementsAre(x(254), "\n", "a\n"));
  EXPECT_THAT(piecesOf(x(255) + "\na\n"), ElementsAre(x(254), "x\n", "a\n"));
  EXPECT_THAT(piecesOf(x(256) + "\na\n"), ElementsAre(x(254), "xx\n", "a\n"));
  EXPECT_THAT(piecesOf(x(254) + "\r\na\n"), ElementsAre(x(254), "\r\n", "a\n"));
  EXPECT_THAT(piecesOf(x(600)), ElementsAre(x(254), x(254), x(92)));
}

TEST(PieceReader, ACarriageReturnThatIsTheLastByteTakesTheLineFeedAlong) {
  EXPECT_THAT(piecesOf(x(253) + "\r\na\n"), ElementsAre(x(253) + "\r\n", "a\n"));
  EXPECT_THAT(piecesOf(x(253) + "\ra\n"), ElementsAre(x(253) + "\r", "a\n"));
  EXPECT_THAT(piecesOf(x(253) + "\r"), ElementsAre(x(253) + "\r"));
}

TEST(PieceReader, BytesMayBeAnything) {
  EXPECT_THAT(piecesOf("a\0b\n\xFF\xC3\n\x1A"sv), ElementsAre("a\0b\n"sv, "\xFF\xC3\n", "\x1A"));
}

TEST(PieceReader, AnEmptyFileAndADirectoryHaveNoPieces) {
  EXPECT_THAT(piecesOf(""), IsEmpty());
  EXPECT_THAT(piecesAt(testing::TempDir()), IsEmpty());
}

TEST(PieceReader, AMissingFileIsNotOpened) {
  EXPECT_EQ(PieceReader::open(testing::TempDir() + "no such file"), nullptr);
  EXPECT_EQ(PieceReader::open(""), nullptr);
}

TEST(PieceReader, GzipIsUnpacked) {
  const TemporaryFile file;
  {
    const PieceReader::File packed(cupsFileOpen(file.path().c_str(), "w9"));
    ASSERT_NE(packed, nullptr);
    const std::string bytes = "*Foo: x\n" + x(255) + "\r\n";
    ASSERT_EQ(cupsFileWrite(packed.get(), bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }
  ASSERT_TRUE(file.bytes().starts_with("\x1F\x8B"));
  EXPECT_THAT(textsOf(piecesAt(file.path())), ElementsAre("*Foo: x\n", x(254), "x\r\n"));
}

TEST(PieceReader, PiecesStayAsTheyAreWhateverIsReadBehindThem) {
  Texts expected;
  std::string bytes;
  for (int number = 0; number < 3000; ++number) {  // more than a few blocks
    const auto size = static_cast<std::size_t>(number * 7 % 250);
    expected.push_back(std::to_string(number % 10) + std::string(size, 'x') + "\n");
    bytes += expected.back();
  }
  ASSERT_GT(bytes.size(), 300'000U);
  const TemporaryFile file(bytes);
  EXPECT_EQ(textsOf(piecesAt(file.path())), expected);  // the reader is gone
}

TEST(PieceReader, PiecesThatFollowEachOtherShareMemory) {
  const TemporaryFile file("one\ntwo\n");
  const StatementStrings pieces = piecesAt(file.path());
  ASSERT_EQ(pieces.size(), 2U);
  EXPECT_EQ(pieces[1].view().data(), pieces[0].view().data() + pieces[0].size());
}

TEST(PieceReader, OneReaderReadsSeveralFilesAtOnce) {
  const TemporaryFile one("1a\n1b\n");
  const TemporaryFile other("2a\n2b\n");
  const auto oneFile = PieceReader::open(one.path());
  const auto otherFile = PieceReader::open(other.path());
  PieceReader reader;
  StatementStrings pieces;
  for (int time = 0; time < 2; ++time) {
    pieces.push_back(*reader.next(oneFile.get()));
    pieces.push_back(*reader.next(otherFile.get()));
  }
  EXPECT_THAT(textsOf(pieces), ElementsAre("1a\n", "2a\n", "1b\n", "2b\n"));
}
