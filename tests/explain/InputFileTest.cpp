// SPDX-License-Identifier: MIT
#include "explain/watch/InputFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "tests/support/TemporaryFolder.h"

namespace {

const std::string kBytes = "*PPD-Adobe: \"4.3\"\n" + std::string(200000, 'x');

}  // namespace

TEST(InputFile, HasTheBytesOfAFileWhateverBecomesOfIt) {
  const TemporaryFolder folder;
  const std::string path = folder.file("base.ppd", kBytes);
  const InputFile file(path);
  EXPECT_NE(file.path(), path);
  std::filesystem::remove(path);
  EXPECT_EQ(contentsOfFile(file.path()), kBytes);
  EXPECT_EQ(file.bytes(), kBytes);
}

TEST(InputFile, AFileThatStaysAsItIsHasNoProblem) {
  const TemporaryFolder folder;
  EXPECT_EQ(InputFile(folder.file("base.ppd", kBytes)).problem(), "");
  EXPECT_EQ(InputFile(folder.file("empty.ppd", "")).problem(), "");
}

TEST(InputFile, TellsWhenSomebodyWritesIntoTheFile) {
  const TemporaryFolder folder;
  const std::string path = folder.file("base.ppd", kBytes);
  const InputFile file(path);
  std::ofstream(path, std::ios::app) << "*% more\n";
  EXPECT_EQ(file.problem(), "it changed while it was read");
  EXPECT_EQ(contentsOfFile(file.path()), kBytes);
}

TEST(InputFile, TellsWhenSomebodyCutsTheFile) {
  const TemporaryFolder folder;
  const std::string path = folder.file("base.ppd", kBytes);
  const InputFile file(path);
  std::filesystem::resize_file(path, 100);
  EXPECT_EQ(file.problem(), "it changed while it was read");
}

TEST(InputFile, ANewFileInItsPlaceIsNoChange) {
  const TemporaryFolder folder;
  const std::string path = folder.file("base.ppd", kBytes);
  const InputFile file(path);
  std::filesystem::rename(folder.file("new.ppd", "another"), path);
  EXPECT_EQ(file.problem(), "");
  EXPECT_EQ(contentsOfFile(file.path()), kBytes);
}

TEST(InputFile, AFileOfTheSystemThatDoesNotTellItsSizeIsNotTakenForWhole) {
  EXPECT_EQ(InputFile("/proc/self/status").problem(), "it changed while it was read");
}

TEST(InputFile, LeavesWhatIsNoFileWhereItIs) {
  const TemporaryFolder folder;
  ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
  for (const std::string& path : {folder.path(), folder.path("pipe"), folder.path("nothing"), std::string()}) {
    const InputFile file(path);
    EXPECT_EQ(file.path(), path);
    EXPECT_EQ(file.problem(), "");
    EXPECT_EQ(file.bytes(), "");
  }
}
