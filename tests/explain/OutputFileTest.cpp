// SPDX-License-Identifier: MIT
#include "explain/OutputFile.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <iterator>
#include <string>

#include "tests/support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

/// Files grow to so many bytes while it lives.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit = {bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, SIG_DFL);
  }

 private:
  rlimit before_ = {};
};

class OutputFileTest : public testing::Test {
 protected:
  std::string path(const std::string& name) const { return folder_.path(name); }
  std::string contents(const std::string& name) const { return contentsOfFile(path(name)); }
  auto files() const { return std::distance(fs::directory_iterator(folder_.path("")), fs::directory_iterator()); }

  TemporaryFolder folder_;
};

}  // namespace

TEST_F(OutputFileTest, MakesAFileThatWasNotThere) {
  EXPECT_TRUE(OutputFile::write(path("new"), "bytes"));
  EXPECT_EQ(contents("new"), "bytes");
  EXPECT_EQ(files(), 1);
}

TEST_F(OutputFileTest, ReplacesAFileAndKeepsItsPermissions) {
  folder_.file("old", "what was there");
  fs::permissions(path("old"), fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
  EXPECT_TRUE(OutputFile::write(path("old"), "new"));
  EXPECT_EQ(contents("old"), "new");
  EXPECT_EQ(fs::status(path("old")).permissions(),
            fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
  EXPECT_EQ(files(), 1);
}

TEST_F(OutputFileTest, ALinkStaysALinkAndItsFileIsReplaced) {
  folder_.file("file", "what was there");
  fs::create_symlink(path("file"), path("link"));
  EXPECT_TRUE(OutputFile::write(path("link"), "new"));
  EXPECT_TRUE(fs::is_symlink(path("link")));
  EXPECT_EQ(contents("file"), "new");
}

TEST_F(OutputFileTest, WhatWasThereStaysWhenWritingFails) {
  folder_.file("old", "what was there");
  {
    const FileSizeLimit limit(100);
    EXPECT_FALSE(OutputFile::write(path("old"), std::string(1000, 'x')));
    EXPECT_FALSE(OutputFile::write(path("new"), std::string(1000, 'x')));
  }
  EXPECT_EQ(contents("old"), "what was there");
  EXPECT_EQ(files(), 1) << "nothing is left behind";
}

TEST_F(OutputFileTest, ADeviceIsWrittenToAndStays) {
  EXPECT_TRUE(OutputFile::write("/dev/null", "bytes"));
  EXPECT_FALSE(OutputFile::write("/dev/full", "bytes"));
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

TEST_F(OutputFileTest, AFolderThatIsNotThereAndAFolderItselfAreFailures) {
  EXPECT_FALSE(OutputFile::write(path("no/such/file"), "bytes"));
  EXPECT_FALSE(OutputFile::write(path(""), "bytes"));
}
