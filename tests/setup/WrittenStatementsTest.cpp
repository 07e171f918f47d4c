// SPDX-License-Identifier: MIT
#include "setup/WrittenStatements.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr const char* kOption = "*OpenGroup: QZImagingOptions/Imaging\n*OpenUI *MediaType/Media Type: PickOne\n";

// Of a base PPD with a language and a profile, and a run that added a medium with a profile and skipped another one.
WrittenStatements statements() {
  static ATPPD base;
  base.addString("*cupsLanguages: \"de fr\"\n", PPDLineTypeStatement);
  base.addString("*cupsICCProfile .Plain./P: \"/p.icc\"\n", PPDLineTypeStatement);
  base.addString("*QZValueAttributes MediaType.Plain: \"a=b\"\n", PPDLineTypeStatement);
  Report report;
  Report::MediumOutcome medium;
  medium.added = true;
  medium.choiceName = "Custom1";
  medium.profiles.resize(2);
  medium.profiles[0].spec = ".Custom1.";
  medium.profiles[0].outcome = Report::ProfileOutcome::added;
  medium.profiles[1].spec = ".Custom1.skipped";
  Report::MediumOutcome notAdded;
  notAdded.choiceName = "Custom2";
  report.updaters.resize(1);
  report.updaters[0].media = {medium, notAdded};
  return {base, report};
}

bool mayBe(const std::string& text) {
  return statements().mayBe("", text);
}

bool mayBeChoice(const std::string& text) {
  return statements().mayBe(kOption, text);
}

}  // namespace

TEST(WrittenStatements, MayBeOfMedia) {
  for (const std::string text :
       {"*QZMediaTypeGroup CustomMedia-category/Custom Paper: \"Custom1,\nCustom2\"\n*End\n",
        "*QZMediaListVersion: 17\n", "*QZMediaListVersion: \"17\"\n",
        "*QZValueAttributes MediaType.Custom1: \"a=b;c='d'\"\n", "*QZValueAttributes MediaType.Plain: \"a=b\"\n",
        "*cupsICCProfile .Custom1./My Canvas: \"/c: 1.icc\"\n", "*cupsICCProfile .Plain./P: \"/other.icc\"\n",
        "*de.cupsICCProfile .Custom1./My Canvas: \"\"\n", "*QZVorantisFamily: \"VR-K-Q\"\n",
        "*QZPDLCommand end-page: \"pdl-raster-end;;\npdl-form-feed\"\n*End\n", "\n"}) {
    EXPECT_TRUE(mayBe(text)) << text;
  }
}

TEST(WrittenStatements, NothingElseMayStandAtTheTop) {
  for (const std::string text : {"*cupsFilter2: \"a\"\n",
                                 "*FoomaticRIPCommandLine: \"a\"\n",
                                 "*%comment\n",
                                 "text\n",
                                 "",
                                 "*End\n",
                                 "*MediaType Custom1/Canvas: \"\"\n",
                                 "*QZPPDUpdaters: \"A\"\n",
                                 "*de.cupsFilter2: \"a\"\n",
                                 "*QZMediaListVersion: 17",
                                 "*QZMediaListVersion: 1\n7\n",
                                 "*QZMediaListVersion: 1\r\n",
                                 "*QZMediaListVersion: \"17\n",
                                 "*QZMediaListVersion: 1\x1B[2J\n",
                                 "*QZMediaListVersion: \"1\" \"7\"\n",
                                 "*QZMediaListVersion: \"1\" \"\n",
                                 "*QZValueAttributes MediaType.Custom2: \"a\"\n",
                                 "*QZValueAttributes Other.Custom1: \"a\"\n",
                                 "*cupsICCProfile .Custom2./P: \"/p.icc\"\n",
                                 "*cupsICCProfile .Custom1.skipped/P: \"/p.icc\"\n",
                                 "*cupsICCProfile .Custom1./P: \"/p.icc\n\"\n",
                                 "*it.cupsICCProfile .Custom1./P: \"\"\n",
                                 "*QZPDLCommand a: \"b\n*cupsFilter2: c\"\n",
                                 "*QZMediaTypeGroup a: \"b\"\nc\n"}) {
    EXPECT_FALSE(mayBe(text)) << text;
  }
  EXPECT_FALSE(mayBe("*QZMediaListVersion: " + std::string(235, 'x') + "\n"));
}

TEST(WrittenStatements, MayBeChoicesOfAddedMedia) {
  EXPECT_TRUE(mayBeChoice("*MediaType Custom1/Canvas: \"(4711)\"\n"));
  EXPECT_TRUE(mayBeChoice("*MediaType Custom1/: \"(4711)\"\n"));
  EXPECT_TRUE(mayBeChoice("*MediaType Custom1/24\" Canvas: \"(4711)\"\n"));
  EXPECT_TRUE(mayBeChoice("*en.MediaType Custom1/A: B: \"\"\n"));
  EXPECT_TRUE(mayBeChoice("*de.MediaType Custom1/Leinwand: \"\"\n"));
}

TEST(WrittenStatements, NothingElseMayStandInAnOption) {
  for (const std::string text :
       {"*MediaType Custom2/Canvas: \"\"\n", "*MediaType Plain/Canvas: \"\"\n", "*MediaType Custom1: \"\"\n",
        "*it.MediaType Custom1/Tela: \"\"\n", "*PageSize Custom1/Canvas: \"\"\n", "*MediaType Custom1/A: \"\"\"\n",
        "*MediaType Custom1/A: \"\n", "*MediaType Custom1/A\r: \"\"\n", "*cupsFilter2: \"a\"\n",
        "*DefaultMediaType: Custom1\n", "*MediaType Custom1/A: \"\""}) {
    EXPECT_FALSE(mayBeChoice(text)) << text;
  }
  EXPECT_FALSE(statements().mayBe("*OpenUI *PageSize/Size: PickOne\n", "*MediaType Custom1/Canvas: \"\"\n"));
  EXPECT_FALSE(mayBeChoice("*QZMediaListVersion: 17\n"));
}

TEST(WrittenStatements, WhatUpdatersRemoveMayGo) {
  for (const char* text :
       {"*QZMediaListVersion: 1\n", "*MediaType Custom9/Old: \"\"\n", "*de.MediaType Custom9/Alt: \"\"\n",
        "*cupsICCProfile .Plain.Best/P: \"/p.icc\"\n", "*QZMediaTypeGroup a/b: \"Custom9\"\n*End\n"}) {
    EXPECT_TRUE(statements().mayGo(text)) << text;
  }
  for (const char* text :
       {"*cupsFilter2: \"a\"\n", "*DefaultMediaType: Plain\n", "*%comment\n", "*CloseUI: *MediaType\n", "\n"}) {
    EXPECT_FALSE(statements().mayGo(text)) << text;
  }
}
