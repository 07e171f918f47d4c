// SPDX-License-Identifier: MIT
#include "setup/FolderListing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/TemporaryFolder.h"

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

TEST(FolderListing, GivesFilesByTheirEndingsSorted) {
  const TemporaryFolder folder;
  for (const char* name : {"b.ppd", "a.ppd.gz", "c.txt", ".hidden.ppd", "ppd", "a.ppd"}) folder.file(name, "");
  std::vector<std::string> warnings;
  EXPECT_THAT(FolderListing::filesIn(folder.path(), {".ppd", ".ppd.gz"}, warnings),
              ElementsAre("a.ppd", "a.ppd.gz", "b.ppd"));
  EXPECT_THAT(warnings, IsEmpty());
}

TEST(FolderListing, TheStampTellsWhenAFileIsAnother) {
  const TemporaryFolder folder;
  const std::string path = folder.path("a.ppd");
  const std::string absent = FolderListing::stampOf(path);
  folder.file("a.ppd", "1");
  const std::string first = FolderListing::stampOf(path);
  EXPECT_NE(first, absent);
  EXPECT_EQ(FolderListing::stampOf(path), first);
  folder.file("a.ppd", "12");
  EXPECT_NE(FolderListing::stampOf(path), first);
}

TEST(FolderListing, TellsOfWhatIsNoFile) {
  const TemporaryFolder folder;
  mkfifo(folder.path("pipe.ppd").c_str(), 0600);
  std::filesystem::create_directory(folder.path("folder.ppd"));
  std::filesystem::create_symlink("nowhere", folder.path("link.ppd"));
  std::vector<std::string> warnings;
  EXPECT_THAT(FolderListing::filesIn(folder.path(), {".ppd"}, warnings), ElementsAre("folder.ppd", "link.ppd"));
  EXPECT_THAT(warnings, ElementsAre(EndsWith("/pipe.ppd is no file")));
}

TEST(FolderListing, TellsOfAFolderThatCannotBeRead) {
  const TemporaryFolder folder;
  std::vector<std::string> warnings;
  EXPECT_THAT(FolderListing::filesIn(folder.path("none"), {".ppd"}, warnings), IsEmpty());
  EXPECT_THAT(warnings, IsEmpty()) << "nothing was put there yet";
  EXPECT_THAT(FolderListing::filesIn(folder.file("file", ""), {".ppd"}, warnings), IsEmpty());
  EXPECT_THAT(warnings, ElementsAre(EndsWith("/file cannot be read: Not a directory")));
}
