// SPDX-License-Identifier: MIT
#include "readers/LibraryFile.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/TemporaryFolder.h"

using testing::Eq;
using testing::Optional;
using testing::StartsWith;

namespace {

// What the loader says of a file that it cannot load.
std::string loadersWordsFor(const std::string& fileName) {
  EXPECT_EQ(dlopen(fileName.c_str(), RTLD_NOW), nullptr);
  return dlerror();
}

std::optional<std::string> problemOf(const std::string& fileName) {
  return LibraryFile::problem(fileName.c_str(), loadersWordsFor(fileName));
}

// The problem of a file of which the loader says that it is not there.
std::optional<std::string> problemOfPassedOver(const std::string& path, const TemporaryFolder& folder) {
  const std::string missing = folder.path("missing.so");
  std::string words = loadersWordsFor(missing);
  words.replace(words.find(missing), missing.size(), path);
  return LibraryFile::problem(path.c_str(), words);
}

}  // namespace

TEST(LibraryFile, AMissingFileHasNoProblem) {
  const TemporaryFolder folder;
  EXPECT_EQ(problemOf(folder.path("missing.so")), std::nullopt);
  EXPECT_EQ(problemOf(folder.path("missing/library.so")), std::nullopt);
  EXPECT_EQ(problemOf("libNoLibraryOfThisName.so.1"), std::nullopt);
}

TEST(LibraryFile, TheProblemOfAFileIsWhatTheLoaderSaysOfIt) {
  const TemporaryFolder folder;
  const std::string path = folder.file("text.so", "no shared object\n");
  EXPECT_THAT(problemOf(path), Optional(loadersWordsFor(path)));
}

TEST(LibraryFile, WordsOfWhateverLoaderAreTheProblemUnlessItSaysThemOfAMissingFileToo) {
  for (const char* words : {"", "no such file", "libNoLibraryOfThisName.so.1: cannot be read"}) {
    EXPECT_THAT(LibraryFile::problem("libNoLibraryOfThisName.so.1", words), Optional(Eq(words)));
  }
}

TEST(LibraryFile, AMissingLibraryThatTheFileNeedsIsAProblem) {
  const std::string words = loadersWordsFor("libNeededByIt.so.1");
  EXPECT_THAT(LibraryFile::problem("libNoLibraryOfThisName.so.1", words), Optional(words));
}

TEST(LibraryFile, AFileThatTheLoaderPassesOverIsAProblem) {
  const TemporaryFolder folder;
  const std::string path = folder.file("there.so", "");
  EXPECT_THAT(problemOfPassedOver(path, folder), Optional(path + ": the loader passes over this file"));
  const std::string loop = folder.path("loop.so");
  std::filesystem::create_symlink(loop, loop);
  EXPECT_THAT(problemOfPassedOver(loop, folder), Optional(StartsWith(loop + ": ")));
  EXPECT_EQ(problemOfPassedOver(path + "/in a file", folder), std::nullopt);
}
