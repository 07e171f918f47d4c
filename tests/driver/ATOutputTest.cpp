// SPDX-License-Identifier: MIT
#include "driver/ATOutput.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/support/TemporaryFolder.h"

namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File open(const std::string& path, const char* mode) {
  return {std::fopen(path.c_str(), mode), std::fclose};
}

}  // namespace

TEST(ATMemoryOutput, KeepsWhatIsWrittenInOrder) {
  ATMemoryOutput output;
  EXPECT_EQ(output.bytes(), "");
  EXPECT_EQ(output.write("a\n"), 2U);
  EXPECT_EQ(output.write(""), 0U);
  EXPECT_EQ(output.write(std::string_view("\0\xFF", 2)), 2U);
  EXPECT_EQ(output.bytes(), std::string("a\n\0\xFF", 4));
}

TEST(ATStreamOutput, WritesTheBytesToTheStream) {
  const TemporaryFolder folder;
  {
    const File file = open(folder.path("out"), "w");
    ATStreamOutput output(file.get());
    EXPECT_EQ(output.write("a\r\n"), 3U);
    EXPECT_EQ(output.write(""), 0U);
    EXPECT_EQ(output.write(std::string_view("b\0c", 3)), 3U);
  }
  EXPECT_EQ(contentsOfFile(folder.path("out")), std::string("a\r\nb\0c", 6));
}

TEST(ATStreamOutput, LeavesFlushingToTheEndOfTheProcess) {
  const TemporaryFolder folder;
  const File file = open(folder.path("out"), "w");
  std::setvbuf(file.get(), nullptr, _IOFBF, 4096);
  EXPECT_EQ(ATStreamOutput(file.get()).write("abc"), 3U);
  EXPECT_EQ(contentsOfFile(folder.path("out")), "");
  std::fflush(file.get());
  EXPECT_EQ(contentsOfFile(folder.path("out")), "abc");
}

TEST(ATStreamOutput, TellsThatAStreamTakesNothing) {
  const TemporaryFolder folder;
  const File file = open(folder.file("in", "abc"), "r");
  EXPECT_EQ(ATStreamOutput(file.get()).write("abc"), 0U);
  EXPECT_EQ(contentsOfFile(folder.path("in")), "abc");
}
