// SPDX-License-Identifier: MIT
#include "setup/WrittenKinds.h"

#include <gtest/gtest.h>

TEST(WrittenKinds, AreTheKeywordsOfMediaAndOfThePrintersCommands) {
  for (const char* keyword :
       {"QZMediaTypeGroup", "QZMediaListVersion", "QZValueAttributes", "cupsICCProfile", "de.cupsICCProfile",
        "zh_TW.cupsICCProfile", "de.MediaType", "QZVorantisFamily", "QZPDLCommand", "VorantisSetup"}) {
    EXPECT_TRUE(WrittenKinds::isWritten(keyword)) << keyword;
  }
  for (const char* keyword :
       {"", ".", "cupsFilter", "cupsFilter2", "cupsPreFilter", "FoomaticRIPCommandLine", "MediaType",
        "MediaType.cupsFilter", "de.cupsFilter", "cupsICCProfile.cupsFilter2", "d/e.MediaType", "QZcupsICCProfile",
        "QZPPDUpdaters", "APAutoSetupTool", "JCLBegin", "cupsicCProfile"}) {
    EXPECT_FALSE(WrittenKinds::isWritten(keyword)) << keyword;
  }
}

TEST(WrittenKinds, AreTheChoicesOfCustomMedia) {
  EXPECT_TRUE(WrittenKinds::isCustomChoice("MediaType", "Custom1f"));
  EXPECT_FALSE(WrittenKinds::isCustomChoice("MediaType", "Custom"));
  EXPECT_FALSE(WrittenKinds::isCustomChoice("MediaType", "Plain"));
  EXPECT_FALSE(WrittenKinds::isCustomChoice("PageSize", "Custom1"));
}
