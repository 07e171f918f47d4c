// SPDX-License-Identifier: MIT
#include "ppd/UnmadeLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

enum class Owner : std::uint8_t { one, other };
using Lines = UnmadeLines<Owner>;
using Line = std::tuple<std::string, PPDLineType, Owner>;

std::vector<Line> linesOf(const Lines& lines) {
  std::vector<Line> found;
  const bool stopped = lines.visitUntil([&found](const Lines::Line& line) {
    found.emplace_back(line.string.view(), line.type, line.owner);
    return false;
  });
  EXPECT_FALSE(stopped);
  return found;
}

StatementString takeFrom(StatementString::Storage& storage, std::string_view text) {
  std::memcpy(storage.room(256), text.data(), text.size());
  return storage.take(text.size());
}

}  // namespace

TEST(UnmadeLines, HasNoneAtFirst) {
  EXPECT_THAT(linesOf(Lines()), IsEmpty());
}

TEST(UnmadeLines, KeepsTextTypeAndOwnerOfEachLine) {
  Lines lines;
  lines.add("*A: x\n", PPDLineTypeStatement, Owner::one);
  lines.add("\n", PPDLineTypeNewLine, Owner::other);
  lines.add("*End\n", PPDLineTypeEnd, Owner::one);
  EXPECT_THAT(linesOf(lines),
              ElementsAre(Line("*A: x\n", PPDLineTypeStatement, Owner::one),
                          Line("\n", PPDLineTypeNewLine, Owner::other), Line("*End\n", PPDLineTypeEnd, Owner::one)));
}

TEST(UnmadeLines, KeepsLinesThatLieTogetherAndOthersInOrder) {
  Lines lines;
  std::vector<Line> expected;
  StatementString::Storage first;
  StatementString::Storage second;
  for (int number = 0; number < 2000; ++number) {
    // Now and then from another storage, so that runs of text end; the storages' own blocks end them as well.
    const std::string text = "*Line" + std::to_string(number) + ": " + std::string(number % 97U, 'x') + "\n";
    lines.add(takeFrom(number % 7 == 0 ? second : first, text), PPDLineTypeStatement, Owner::one);
    expected.emplace_back(text, PPDLineTypeStatement, Owner::one);
  }
  EXPECT_EQ(linesOf(lines), expected);
}

TEST(UnmadeLines, MayHoldEmptyLinesAnywhere) {
  Lines lines;
  std::vector<Line> expected;
  StatementString::Storage storage;
  for (const char* text : {"", "", "a", "", "b", "c", "", ""}) {
    lines.add(*text == '\0' ? StatementString() : takeFrom(storage, text), PPDLineTypeContinuation, Owner::other);
    expected.emplace_back(text, PPDLineTypeContinuation, Owner::other);
  }
  EXPECT_EQ(linesOf(lines), expected);
}

TEST(UnmadeLines, StopsWhereTheVisitorSaysSo) {
  Lines lines;
  for (const char* text : {"a", "b", "c"}) lines.add(text, PPDLineTypeStatement, Owner::one);
  std::string visited;
  EXPECT_TRUE(lines.visitUntil([&visited](const Lines::Line& line) {
    visited += line.string.view();
    return line.string.view() == "b";
  }));
  EXPECT_EQ(visited, "ab");
}

TEST(UnmadeLines, TheLinesOutliveTheStorage) {
  Lines lines;
  auto storage = std::make_unique<StatementString::Storage>();
  lines.add(takeFrom(*storage, "a\n"), PPDLineTypeStatement, Owner::one);
  lines.add(takeFrom(*storage, "b\n"), PPDLineTypeStatement, Owner::one);
  storage.reset();
  EXPECT_THAT(linesOf(lines), ElementsAre(Line("a\n", PPDLineTypeStatement, Owner::one),
                                          Line("b\n", PPDLineTypeStatement, Owner::one)));
}
