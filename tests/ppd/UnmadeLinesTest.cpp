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
  lines.visit([&found](const Lines::Line& line) { found.emplace_back(line.string.view(), line.type, line.owner); });
  std::string text;
  for (const StatementString& run : lines.runs()) text += run.view();
  std::string linesText;
  for (const Line& line : found) linesText += std::get<std::string>(line);
  EXPECT_EQ(text, linesText);
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
  for (unsigned number = 0; number < 2000; ++number) {
    // Now and then from another storage, so that runs of text end; the storages' own blocks end them as well.
    const std::string text = "*Line" + std::to_string(number) + ": " + std::string(number % 97, 'x') + "\n";
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

TEST(UnmadeLines, KeepsUnchangedNeighboursAsOneRun) {
  Lines lines;
  StatementString::Storage storage;
  for (const char* text : {"a\n", "b\n", "c\n"}) {
    lines.add(takeFrom(storage, text), PPDLineTypeStatement, Owner::one);
  }
  lines.add("d\n", PPDLineTypeStatement, Owner::one);
  ASSERT_EQ(lines.runs().size(), 2U);
  EXPECT_EQ(lines.runs()[0].view(), "a\nb\nc\n");
  EXPECT_EQ(lines.runs()[1].view(), "d\n");
}

TEST(UnmadeLines, TellsWhetherATestHoldsForAnyLineOfAnOwner) {
  Lines lines;
  EXPECT_FALSE(lines.any(Owner::one, [](std::string_view) { return true; }));
  lines.add("", PPDLineTypeStatement, Owner::other);
  StatementString::Storage storage;
  lines.add(takeFrom(storage, "a"), PPDLineTypeStatement, Owner::one);
  lines.add(takeFrom(storage, "b"), PPDLineTypeStatement, Owner::other);
  lines.add(takeFrom(storage, "c"), PPDLineTypeStatement, Owner::one);
  const auto is = [](std::string_view text) { return [text](std::string_view line) { return line == text; }; };
  EXPECT_TRUE(lines.any(Owner::one, is("a")));
  EXPECT_TRUE(lines.any(Owner::one, is("c")));
  EXPECT_TRUE(lines.any(Owner::other, is("b")));
  EXPECT_TRUE(lines.any(Owner::other, is("")));
  EXPECT_FALSE(lines.any(Owner::other, is("a")));
  EXPECT_FALSE(lines.any(Owner::one, is("b")));
  EXPECT_FALSE(lines.any(Owner::one, is("")));
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
