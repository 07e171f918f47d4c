// SPDX-License-Identifier: MIT
#include "setup/SetupDigest.h"

#include <cups/file.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/support/TemporaryFolder.h"

TEST(SetupDigest, IsSHA256OfTheFilesWithTheirLengths) {
  // printf '3 2 abcde' | sha256sum
  EXPECT_EQ(SetupDigest::ofSources("abc", "de"), "bd086f48942b4e09e87073b861c303ced88665cc6470484ee705a4bcddc1915c");
}

TEST(SetupDigest, TellsTheFilesApart) {
  EXPECT_NE(SetupDigest::ofSources("abc", "de"), SetupDigest::ofSources("ab", "cde"));
  EXPECT_NE(SetupDigest::ofSources("abc", "de"), SetupDigest::ofSources("de", "abc"));
  EXPECT_NE(SetupDigest::ofSources("1 2", "3"), SetupDigest::ofSources("1 ", "23"));
}

TEST(SetupDigest, OfTheResultLeavesOutWhatTheSchedulerWrites) {
  const std::string ppd = "*PPD-Adobe: \"4.3\"\n*DefaultPageSize: A4\n*Other: x\n";
  const std::string digest = SetupDigest::ofResult(ppd);
  EXPECT_EQ(SetupDigest::ofResult("*PPD-Adobe: \"4.3\"\r\n*DefaultPageSize: A1\r\n*Other: x"), digest);
  EXPECT_EQ(SetupDigest::ofResult(ppd + "*cupsProtocol: TBCP\n"), digest);
  EXPECT_EQ(SetupDigest::ofResult("*PPD-Adobe: \"4.3\"\n*VorantisSetup: \"a\nb c d\"\n*End\n*DefaultPageSize: A4\n"
                                  "*Other: x\n"),
            digest);
}

TEST(SetupDigest, OfTheResultShowsEveryOtherChange) {
  const std::string ppd = "*PPD-Adobe: \"4.3\"\n*DefaultPageSize: A4\n*Other: x\n";
  const std::string digest = SetupDigest::ofResult(ppd);
  EXPECT_NE(SetupDigest::ofResult("*PPD-Adobe: \"4.3\"\n*DefaultPageRegion: A4\n*Other: x\n"), digest);
  EXPECT_NE(SetupDigest::ofResult("*PPD-Adobe: \"4.3\"\n*Other: x\n"), digest);
  EXPECT_NE(SetupDigest::ofResult(ppd + "*More: y\n"), digest);
  EXPECT_NE(SetupDigest::ofResult("*PPD-Adobe: \"4.3\"\n*DefaultPageSize: A4\n*Other: y\n"), digest);
}

TEST(SetupDigest, OfFilesIsThatOfTheirUnpackedContents) {
  const TemporaryFolder folder;
  const std::string packed = folder.path("z.ppd.gz");
  cups_file_t* const file = cupsFileOpen(packed.c_str(), "w9");
  cupsFilePuts(file, "base");
  cupsFileClose(file);
  EXPECT_EQ(SetupDigest::ofFiles(packed, folder.file("p.json", "{}")), SetupDigest::ofSources("base", "{}"));
  EXPECT_EQ(SetupDigest::ofFiles(folder.path("none"), folder.path("p.json")), SetupDigest::ofSources("", "{}"));
}
