// SPDX-License-Identifier: MIT
#include "explain/report/MediumFilter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "explain/report/Sentences.h"

namespace {

Report::MediumOutcome outcome(const char* name, const char* ID, const char* choice) {
  Report::MediumOutcome medium;
  medium.device.name = name;
  medium.device.ID = ID;
  medium.choiceName = choice;
  return medium;
}

Report reportOnTwoMedia() {
  Report report;
  Report::Updater updater;
  updater.media = {outcome("Canvas", "4711", "Custom1"), outcome("Satin", "4712", "Custom12")};
  updater.changes = {{Report::ChangeKind::added, "", "*MediaType Custom1/Canvas: \"\"\n"},
                     {Report::ChangeKind::added, "", "*MediaType Custom12/Satin: \"\"\n"},
                     {Report::ChangeKind::added, "", "*Other: 1\n"}};
  report.device = Report::DeviceAnswer();
  report.device->media = {updater.media[0].device, updater.media[1].device};
  report.warnings = {{WarningCode::nameOtherwise, {}, AboutMedium{"Canvas", "4711"}},
                     {WarningCode::nameOtherwise, {}, AboutMedium{"Satin", "4712"}},
                     {WarningCode::choiceTwice, {{"choice", "Custom1"}, {"times", 2U}}},
                     {WarningCode::choiceTwice, {{"choice", "Custom12"}, {"times", 2U}}},
                     {WarningCode::cupsRefuses, {{"words", "*MediaType Custom12/x"}}},
                     {WarningCode::noMediaOption}};
  updater.removedMedia = {"Custom1"};
  report.updaters.push_back(updater);
  return report;
}

}  // namespace

TEST(MediumFilter, KeepsWhatIsAboutTheMedium) {
  for (const char* wanted : {"Canvas", "4711"}) {
    const auto report = reportOnMedium(reportOnTwoMedia(), wanted);
    ASSERT_TRUE(report);
    EXPECT_EQ(report->device->media->size(), 1U);
    ASSERT_EQ(report->updaters[0].media.size(), 1U);
    EXPECT_EQ(report->updaters[0].media[0].choiceName, "Custom1");
    ASSERT_EQ(report->updaters[0].changes.size(), 1U);
    EXPECT_EQ(report->updaters[0].changes[0].after, "*MediaType Custom1/Canvas: \"\"\n");
    ASSERT_EQ(report->warnings.size(), 4U);
    EXPECT_EQ(report->warnings[0].code, WarningCode::nameOtherwise);
    EXPECT_THAT(Sentences::of(report->warnings[1]), testing::HasSubstr("The choice Custom1 stands"));
    EXPECT_EQ(report->warnings[2].code, WarningCode::cupsRefuses) << "though it names another one";
    EXPECT_EQ(report->warnings[3].code, WarningCode::noMediaOption);
    EXPECT_TRUE(report->updaters[0].removedMedia.empty());
  }
}

TEST(MediumFilter, HasNothingOfAMediumThatTheDeviceDoesNotHave) {
  EXPECT_FALSE(reportOnMedium(reportOnTwoMedia(), "Roll"));
  EXPECT_FALSE(reportOnMedium(Report(), "Canvas"));
}
