// SPDX-License-Identifier: MIT
#include "ppd/StatementString.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "tests/ppd/TestSupport.h"

using namespace std::string_view_literals;

namespace {

StatementString takeFrom(StatementString::Storage& storage, std::string_view text, std::size_t roomSize) {
  std::memcpy(storage.room(roomSize), text.data(), text.size());
  return storage.take(text.size());
}

}  // namespace

TEST(StatementString, HoldsTheTextWithItsLineEnd) {
  EXPECT_EQ(StatementString("*Foo: x\r\n").view(), "*Foo: x\r\n");
  EXPECT_EQ(StatementString("*Foo: x\r\n").size(), 9U);
  EXPECT_EQ(StatementString(std::string("abc")).view(), "abc");
  EXPECT_EQ(StatementString("a\0b"sv).view(), "a\0b"sv);
}

TEST(StatementString, MayBeEmpty) {
  EXPECT_EQ(StatementString("").view(), "");
  EXPECT_EQ(StatementString(std::string_view()).view(), "");
  EXPECT_EQ(StatementString("").size(), 0U);
}

TEST(StatementString, HoldsACopyOfTheText) {
  std::string text = "abc";
  const StatementString string(text);
  text = "xyz";
  EXPECT_EQ(string.view(), "abc");
}

TEST(StatementString, CopiesShareTheBytesAndOutliveTheOriginal) {
  auto original = std::make_unique<StatementString>("abc");
  const StatementString copy = *original;
  EXPECT_EQ(copy.view().data(), original->view().data());
  original.reset();
  EXPECT_EQ(copy.view(), "abc");
}

TEST(StatementString, IsMoved) {
  StatementString original("abc");
  StatementString moved(std::move(original));
  EXPECT_EQ(moved.view(), "abc");
  StatementString other("other");
  other = std::move(moved);
  EXPECT_EQ(other.view(), "abc");
}

TEST(StatementString, IsAssigned) {
  StatementString one("one");
  const StatementString other("other");
  one = other;
  EXPECT_EQ(one.view(), "other");
  EXPECT_EQ(other.view(), "other");
  const StatementString& same = one;
  one = same;
  EXPECT_EQ(one.view(), "other");
}

TEST(StatementString, ComparesByText) {
  EXPECT_TRUE(StatementString("abc") == StatementString("abc"));
  EXPECT_FALSE(StatementString("abc") == StatementString("abC"));
  EXPECT_FALSE(StatementString("abc") == StatementString("ab"));
  EXPECT_TRUE(StatementString("") == StatementString(""));
}

TEST(StatementString, APartSharesTheBytes) {
  auto whole = std::make_unique<StatementString>("abcdef");
  const StatementString part = whole->part(2, 3);
  EXPECT_EQ(part.view().data(), whole->view().data() + 2);
  whole.reset();
  EXPECT_EQ(part.view(), "cde");
  EXPECT_EQ(part.part(0, 3).view(), "cde");
  EXPECT_EQ(part.part(1, 1).view(), "d");
  EXPECT_EQ(part.part(3, 0).view(), "");
  EXPECT_EQ(StatementString().part(0, 0).view(), "");
}

TEST(StatementString, JoinsWhatLiesBehindItInTheSameStorage) {
  const StatementString whole("abcdef");
  StatementString joined = whole.part(1, 2);
  EXPECT_TRUE(joined.join(whole.part(3, 1)));
  EXPECT_EQ(joined.view(), "bcd");
  EXPECT_TRUE(joined.join(whole.part(4, 0)));
  EXPECT_TRUE(joined.join(whole.part(4, 2)));
  EXPECT_EQ(joined.view(), "bcdef");
  EXPECT_EQ(whole.view(), "abcdef");
}

TEST(StatementString, JoinsNothingElse) {
  const StatementString whole("abcdef");
  const StatementString other("abcdef");
  StatementString joined = whole.part(1, 2);
  EXPECT_FALSE(joined.join(whole.part(4, 1)));  // a gap between
  EXPECT_FALSE(joined.join(whole.part(0, 1)));  // in front
  EXPECT_FALSE(joined.join(whole.part(2, 2)));  // overlapping
  EXPECT_FALSE(joined.join(other.part(3, 1)));  // of another storage
  EXPECT_FALSE(joined.join(StatementString()));
  EXPECT_EQ(joined.view(), "bc");
}

TEST(StatementStringStorage, CutsOffOneLineAfterTheOther) {
  StatementString::Storage storage;
  const StatementString first = takeFrom(storage, "first\n", 256);
  const StatementString second = takeFrom(storage, "second\n", 256);
  EXPECT_EQ(first.view(), "first\n");
  EXPECT_EQ(second.view(), "second\n");
  EXPECT_EQ(first.size(), 6U);
}

TEST(StatementStringStorage, RoomThatIsNotTakenIsGivenAgain) {
  StatementString::Storage storage;
  std::memcpy(storage.room(256), "lost", 4);
  const StatementString kept = takeFrom(storage, "kept", 256);
  EXPECT_EQ(kept.view(), "kept");
}

TEST(StatementStringStorage, StringsOutliveTheStorage) {
  auto storage = std::make_unique<StatementString::Storage>();
  const StatementString string = takeFrom(*storage, "abc", 256);
  const StatementString copy = string;
  storage.reset();
  EXPECT_EQ(string.view(), "abc");
  EXPECT_EQ(copy.view(), "abc");
}

TEST(StatementStringStorage, HoldsMoreThanOneBlockOfLines) {
  StatementString::Storage storage;
  StatementStrings strings;
  TestSupport::Texts expected;
  for (int number = 0; number < 3000; ++number) {
    expected.push_back("*Keyword Choice" + std::to_string(number) + ": \"" + std::string(80, 'x') + "\"\n");
    strings.push_back(takeFrom(storage, expected.back(), 256));
  }
  EXPECT_EQ(TestSupport::textsOf(strings), expected);
}

TEST(StatementStringStorage, GivesTheRoomOfAWholeBlock) {
  StatementString::Storage storage;
  const StatementString before = takeFrom(storage, "before", 256);
  const std::string text(64 * 1024, 'x');
  const StatementString whole = takeFrom(storage, text, text.size());
  const StatementString after = takeFrom(storage, "after", 256);
  EXPECT_EQ(before.view(), "before");
  EXPECT_EQ(whole.view(), text);
  EXPECT_EQ(after.view(), "after");
}
