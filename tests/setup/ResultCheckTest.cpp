// SPDX-License-Identifier: MIT
#include "setup/ResultCheck.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

const std::string kHead = "*PPD-Adobe: \"4.3\"\n*cupsFilter2: \"a b 0 good\"\n";
const std::string kOption = "*OpenGroup: QZImagingOptions/Imaging\n*OpenUI *MediaType/Media Type: PickOne\n";
const std::string kPlain = "*MediaType Plain/Plain: \"(1001)\"\n";
const std::string kClose = "*CloseUI: *MediaType\n*CloseGroup: QZImagingOptions\n";
const std::string kBase = kHead + kOption + kPlain + kClose;

std::string resultWith(const std::string& statements, const std::string& choices = "") {
  return kHead + statements + kOption + kPlain + choices + kClose;
}

Report reportOf(const std::string& name) {
  Report::MediumOutcome medium;
  medium.device.name = name;
  medium.device.ID = "4711";
  medium.added = true;
  medium.choiceName = "Custom1";
  Report report;
  report.updaters.resize(1);
  report.updaters[0].media = {medium};
  return report;
}

std::string problemOf(const std::string& result, const std::string& name = "Canvas") {
  return ResultCheck::problemOf(result, kBase, reportOf(name)).value_or("none");
}

}  // namespace

TEST(ResultCheck, HasNothingAgainstTheBasePPDAndItsMedia) {
  EXPECT_EQ(problemOf(kBase), "none");
  EXPECT_EQ(problemOf(resultWith("*QZMediaTypeGroup CustomMedia-category/Custom Paper: \"Custom1\"\n*End\n\n"
                                 "*QZMediaListVersion: 17\n",
                                 "*MediaType Custom1/Canvas: \"(4711)\"\n*en.MediaType Custom1/Canvas: \"\"\n")),
            "none");
}

TEST(ResultCheck, NamesTheMediumWhoseTextWouldBecomeAStatement) {
  EXPECT_THAT(problemOf(resultWith("", "*MediaType Custom1/Canvas\n*cupsFilter2: \"evil\": \"\"\n"),
                        "Canvas\n*cupsFilter2: \"evil\": \"\""),
              AllOf(StartsWith("a text of the medium \"Canvas\\n*cupsFilter2"),
                    HasSubstr("(4711) would become a statement: ")));
  EXPECT_THAT(problemOf(resultWith("*FoomaticRIPCommandLine: \"evil\"\n")),
              "a text of the device would become a statement: *FoomaticRIPCommandLine: \"evil\"\\n");
  EXPECT_THAT(problemOf(resultWith("", "*MediaType Custom2/Canvas: \"\"\n")),
              StartsWith("a text of the device would become a statement: *MediaType Custom2"));
  EXPECT_THAT(problemOf(resultWith("", "*MediaType Custom1/A: \"\"\"\n")),
              StartsWith("a text of the medium \"Canvas\" (4711)"));
}

TEST(ResultCheck, AStatementOfTheBasePPDMayNotComeTwiceOrElsewhere) {
  EXPECT_THAT(problemOf(resultWith("*cupsFilter2: \"a b 0 good\"\n")),
              HasSubstr("would become a statement: *cupsFilter2"));
  EXPECT_THAT(problemOf("*PPD-Adobe: \"4.3\"\n" + kOption + kPlain + "*cupsFilter2: \"a b 0 good\"\n" + kClose),
              HasSubstr("would become a statement: *cupsFilter2"));
}

TEST(ResultCheck, NoStatementOfTheBasePPDMayBeLost) {
  EXPECT_THAT(problemOf("*PPD-Adobe: \"4.3\"\n" + kOption + kPlain + kClose),
              "a statement of the base PPD is lost: *cupsFilter2: \"a b 0 good\"\\n");
}

TEST(ResultCheck, TheResultMustBeWhole) {
  EXPECT_EQ(problemOf(kHead + kOption), "the result is no PPD: it ends inside an option");
  EXPECT_THAT(problemOf(kHead + "no statement\n" + kOption + kPlain + kClose + "none\n"),
              StartsWith("the result is no PPD: line"));
}

TEST(ResultCheck, LongTextsAreCut) {
  EXPECT_LT(problemOf(resultWith("*Evil: \"" + std::string(200, 'x') + "\"\n")).size(), 200U);
}
