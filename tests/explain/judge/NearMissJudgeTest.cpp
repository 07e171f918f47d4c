// SPDX-License-Identifier: MIT
#include "explain/judge/NearMissJudge.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "explain/report/Sentences.h"
#include "tests/support/TemporaryFolder.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

// The sentences on a PPD; with media, when an updater asked for them.
std::vector<std::string> judged(const std::string& text, Report report = Report(), bool withMedia = false) {
  const TemporaryFolder folder;
  const InputLines input = InputLines::ofFile(folder.file("input.ppd", text));
  if (withMedia) {
    report.updaters.emplace_back();
    report.updaters.back().askedForMedia = true;
  }
  const ATPPD ppd;
  const std::string result;
  Warnings warnings(report.warnings);
  NearMissJudge::judge({report, input, ppd, result}, warnings);
  std::vector<std::string> texts;
  for (const Warning& warning : report.warnings) texts.push_back(Sentences::of(warning));
  return texts;
}

constexpr const char* kMedia =
    "*OpenGroup: QZImagingOptions/Imaging\n*OpenUI *MediaType/Media: PickOne\n*CloseUI: *MediaType\n*CloseGroup: "
    "QZImagingOptions\n";

}  // namespace

TEST(NearMissJudge, NothingIsNearInAnOrdinaryPPD) {
  EXPECT_THAT(judged(std::string("*QZPPDUpdaters: \"\"\n*ModelName: \"Z9\"\n*cupsLanguages: \"en\"\n*cupsICCProfile "
                                 ".A./A: \"/a\"\n*NickName: \"Z9\"\n") +
                         kMedia,
                     Report(), true),
              IsEmpty());
  EXPECT_THAT(judged(""), IsEmpty());
}

TEST(NearMissJudge, AStatementThatIsNearlyNamedSo) {
  EXPECT_THAT(judged("*A: 1\n*QZPPDUpdater: \"\"\n"),
              ElementsAre("Nobody finds *QZPPDUpdaters; line 2 of the PPD has QZPPDUpdater."));
  EXPECT_THAT(judged("*Model\u041Dame: \"Z9\"\n*cupslanguages: \"en\"\n"),
              ElementsAre(HasSubstr("*ModelName; line 1"), HasSubstr("*cupsLanguages; line 2")));
  EXPECT_THAT(judged("*ModelN\u0430me: \"Z9\"\n"), ElementsAre(HasSubstr("which looks the same")));
}

TEST(NearMissJudge, AStatementThatStandsInside) {
  EXPECT_THAT(judged("*OpenGroup: G/G\n*QZPPDUpdaters: \"\"\n*CloseGroup: G\n"),
              ElementsAre("Nobody finds *QZPPDUpdaters where it stands: inside the group G, line 2 of the PPD."));
  EXPECT_THAT(judged("*OpenUI *O/O: PickOne\n*ModelName: \"\"\n*CloseUI: *O\n"),
              ElementsAre(HasSubstr("inside the option O, line 2")));
  EXPECT_THAT(judged("*ModelName: \"Z9\"\n*OpenUI *O/O: PickOne\n*ModelName: \"\"\n*CloseUI: *O\n"), IsEmpty());
}

TEST(NearMissJudge, TheGroupAndTheOptionOfTheMedia) {
  const auto withMedia = [](const std::string& text) { return judged(text, Report(), true); };
  EXPECT_THAT(withMedia("*OpenGroup: QZImagingOption/I\n*CloseGroup: QZImagingOption\n"),
              ElementsAre("Nobody finds the group QZImagingOptions; line 1 of the PPD has QZImagingOption."));
  EXPECT_THAT(withMedia("*OpenGroup: QZImagingOptions/I\n*OpenUI *Mediatype/M: PickOne\n"),
              ElementsAre("Nobody finds the option MediaType; line 2 of the PPD has Mediatype."));
  EXPECT_THAT(withMedia("*OpenGroup: Other/I\n*OpenUI *MediaType/M: PickOne\n"),
              ElementsAre(HasSubstr("the option MediaType where it stands: inside the group Other, line 2")));
  EXPECT_THAT(judged("*OpenGroup: Other/I\n*OpenUI *MediaType/M: PickOne\n"), IsEmpty()) << "nobody looked for it";
}

TEST(NearMissJudge, AnUpdaterThatIsNearlyNamedSo) {
  Report report;
  report.updaters.emplace_back();
  report.updaters[0].name = "ATMediaTypePSPPDUpdatr";
  report.updaters[0].known = false;
  EXPECT_THAT(judged("", report),
              ElementsAre("There is no updater ATMediaTypePSPPDUpdatr, but ATMediaTypePSPPDUpdater."));
  report.updaters[0].name = "ATMediaTypePSPPDUpd\u0430ter";
  EXPECT_THAT(judged("", report), ElementsAre(HasSubstr("which looks the same")));
  report.updaters[0].name = "Other";
  EXPECT_THAT(judged("", report), IsEmpty());
}

TEST(NearMissJudge, ACategoryThatIsNearlyThatOfCustomMedia) {
  EXPECT_TRUE(NearMissJudge::isNearlyCustomCategory("Custom"));
  EXPECT_TRUE(NearMissJudge::isNearlyCustomCategory("COSTUM"));
  EXPECT_TRUE(NearMissJudge::isNearlyCustomCategory("QZ EXTENDED_MEDIA"));
  EXPECT_FALSE(NearMissJudge::isNearlyCustomCategory("CUSTOM"));
  EXPECT_FALSE(NearMissJudge::isNearlyCustomCategory("QZ_EXTENDED_MEDIA"));
  EXPECT_FALSE(NearMissJudge::isNearlyCustomCategory("PHOTO"));
  Report report;
  report.updaters.emplace_back();
  report.updaters[0].askedForMedia = true;
  report.updaters[0].media.resize(3);
  report.updaters[0].media[0].device.categoryID = "custom";
  report.updaters[0].media[1].device.categoryID = "PHOTO";
  EXPECT_THAT(judged("", report), ElementsAre(HasSubstr("The category custom")));
}

TEST(NearMissJudge, LanguagesStandBetweenBlanks) {
  Report report;
  report.parse = Report::Parse();
  report.parse->languages = {"en,", "de", "fr;it"};
  EXPECT_THAT(judged("", report), ElementsAre(HasSubstr("The language en, in"), HasSubstr("The language fr;it in")));
}
