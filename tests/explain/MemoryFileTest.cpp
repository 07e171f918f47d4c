// SPDX-License-Identifier: MIT
#include "explain/watch/MemoryFile.h"

#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

TEST(MemoryFile, HasTheBytesThatWereAppendedFromTheFirstOnAtEachOpening) {
  MemoryFile file;
  ASSERT_TRUE(file.isThere());
  EXPECT_EQ(contentsOfFile(file.path()), "");
  EXPECT_TRUE(file.append("one "));
  EXPECT_TRUE(file.append(std::string(300000, 'x')));
  EXPECT_TRUE(file.append(""));
  EXPECT_EQ(contentsOfFile(file.path()), "one " + std::string(300000, 'x'));
  EXPECT_EQ(contentsOfFile(file.path()), "one " + std::string(300000, 'x'));
}

TEST(MemoryFile, GivesItsBytesBack) {
  MemoryFile file;
  EXPECT_EQ(file.bytes(), "");
  EXPECT_TRUE(file.append(std::string("a\0b", 3)));
  EXPECT_EQ(file.bytes(), std::string("a\0b", 3));
  EXPECT_TRUE(file.append(std::string(3000000, 'x')));
  EXPECT_EQ(file.bytes().size(), 3000003U);
}

TEST(MemoryFile, TwoAreApart) {
  MemoryFile one;
  MemoryFile other;
  EXPECT_TRUE(one.append("1"));
  EXPECT_TRUE(other.append("2"));
  EXPECT_EQ(contentsOfFile(one.path()) + contentsOfFile(other.path()), "12");
}
