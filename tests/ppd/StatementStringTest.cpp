// SPDX-License-Identifier: MIT
#include "ppd/lines/StatementString.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>

using namespace std::string_view_literals;

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
