// SPDX-License-Identifier: MIT
#include "ppd/lines/PieceReader.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

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

std::string lineOfCUPS(cups_file_t* file) {
  std::array<char, 256> line;
  const std::size_t size = cupsFileGetLine(file, line.data(), line.size());
  return {line.data(), size};
}

// So many bytes of long lines.
std::string longLines(std::size_t size) {
  std::string lines;
  while (lines.size() < size) lines += std::string(std::min<std::size_t>(199, size - lines.size() - 1), 'y') + "\n";
  return lines;
}

Texts linesOfCUPS(const std::string& path) {
  const PieceReader::File file(cupsFileOpen(path.c_str(), "r"));
  Texts lines;
  for (std::string line; !(line = lineOfCUPS(file.get())).empty();) lines.push_back(line);
  return lines;
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

TEST(PieceReader, GivesWhatTheLineReaderOfCUPSGives) {
  std::mt19937 random(1);
  const auto below = [&random](std::size_t limit) { return random() % limit; };
  for (int time = 0; time < 600; ++time) {
    std::string bytes;
    // Few or many line ends, so that lines are short, or longer than a piece; now and then more than a block.
    const std::size_t rarity = std::size_t{1} << below(11);
    const std::size_t size = time % 60 == 0 ? 65000 + below(140000) : below(2000);
    while (bytes.size() < size) bytes += below(rarity + 2) < 2 ? "\n\r"[below(2)] : static_cast<char>(below(256));
    const TemporaryFile file(bytes);
    ASSERT_EQ(textsOf(piecesAt(file.path())), linesOfCUPS(file.path())) << "time " << time;
  }
}

TEST(PieceReader, GivesTheSameAtEachPlaceOfABlock) {
  for (std::size_t size = 65536 - 260; size < 65536 + 4; ++size) {
    const TemporaryFile file(longLines(size - 300) + x(300) + "\r\na\rb\n\r\r\nc");
    ASSERT_EQ(textsOf(piecesAt(file.path())), linesOfCUPS(file.path())) << size;
  }
}

// A named pipe ends whenever nobody writes to it.
TEST(PieceReader, TheFirstEndIsTheEnd) {
  const std::string path = testing::TempDir() + "pieces" + std::to_string(getpid());
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  const PieceReader::File file(cupsFileOpenFd(open(path.c_str(), O_RDONLY | O_NONBLOCK), "r"));
  PieceReader reader;
  const auto pieceBehind = [&](std::string_view written) {
    const int writer = open(path.c_str(), O_WRONLY | O_NONBLOCK);
    EXPECT_EQ(write(writer, written.data(), written.size()), static_cast<ssize_t>(written.size()));
    close(writer);
    const auto piece = reader.next(file.get());
    return piece ? std::string(piece->view()) : "none";
  };
  EXPECT_EQ(pieceBehind("a"), "a");
  EXPECT_EQ(pieceBehind("b\n"), "none");
  unlink(path.c_str());
}

TEST(PieceReader, AnotherFileIsReadFromWhereItStands) {
  const TemporaryFile one("a\nb\nc\n");
  const TemporaryFile other("x\ny\n");
  const auto file = PieceReader::open(one.path());
  const auto otherFile = PieceReader::open(other.path());
  PieceReader reader;
  EXPECT_EQ(reader.next(file.get())->view(), "a\n");
  EXPECT_EQ(reader.next(otherFile.get())->view(), "x\n");
  EXPECT_EQ(reader.next(otherFile.get())->view(), "y\n");
  EXPECT_FALSE(reader.next(otherFile.get()));
}
