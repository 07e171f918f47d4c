// SPDX-License-Identifier: MIT
#include "explain/report/Verdict.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

Report reportWith(const std::vector<Report::MediumOutcome>& media) {
  Report report;
  report.device = Report::DeviceAnswer();
  report.device->media.emplace(media.size() + 1);
  Report::Updater updater;
  updater.askedForMedia = true;
  updater.media = media;
  report.updaters.push_back(updater);
  return report;
}

Report::MediumOutcome userMedium(bool added) {
  Report::MediumOutcome medium;
  medium.device.custom = true;
  medium.added = medium.written = added;
  return medium;
}

}  // namespace

TEST(Verdict, IsGoodOnlyWhenNothingIsOdd) {
  Report report = reportWith({userMedium(true)});
  EXPECT_EQ(Verdict::colourOf(report), Verdict::Colour::good);
  EXPECT_EQ(Verdict::outcome(report), "the PPD is set up (exit status 0)");

  report.warnings.push_back({WarningCode::noDevice});
  EXPECT_EQ(Verdict::colourOf(report), Verdict::Colour::odd);
  EXPECT_EQ(Verdict::outcome(report), "the PPD is written, but look below (exit status 0)");

  report.failure = "a reason";
  EXPECT_EQ(Verdict::colourOf(report), Verdict::Colour::bad);
  EXPECT_EQ(Verdict::outcome(report), "nothing is written (exit status 1)");
}

TEST(Verdict, IsRefusedWhenCUPSDoesNotOpenTheResult) {
  Report report = reportWith({userMedium(true)});
  report.cups = Report::CUPS{true, std::nullopt, std::nullopt};
  EXPECT_EQ(Verdict::colourOf(report), Verdict::Colour::good);
  report.cups = Report::CUPS{false, Report::Refusal{7, "Words", "*Statement"}, std::nullopt};
  EXPECT_EQ(Verdict::colourOf(report), Verdict::Colour::refused);
  EXPECT_STREQ(Verdict::nameOf(Verdict::Colour::refused), "refused");
  EXPECT_EQ(Verdict::outcome(report),
            "refused: CUPS does not open the PPD that is written: Words, line 7 (exit status 0)");
  report.cups->refusal->line = 0;
  EXPECT_EQ(Verdict::outcome(report), "refused: CUPS does not open the PPD that is written: Words (exit status 0)");
  report.cups->refusal.reset();
  EXPECT_THAT(Verdict::outcome(report), testing::HasSubstr("libcups does not come to an end"));
}

TEST(Verdict, CountsMediaThatLostSomething) {
  Report::MediumOutcome medium = userMedium(true);
  medium.lost.push_back({Loss::noChoice});
  Report::MediumOutcome ofProfile = userMedium(true);
  ofProfile.profiles.emplace_back();
  ofProfile.profiles[0].lost = Lost{Loss::profileBehind};
  ofProfile.profiles.emplace_back();
  EXPECT_EQ(Verdict::media(reportWith({medium, ofProfile, userMedium(true), userMedium(false)})),
            "5 on the device; 4 are the user's, 3 became choices, 2 lost something");
  EXPECT_EQ(Verdict::media(reportWith({Report::MediumOutcome()})),
            "2 on the device; 0 are the user's, 0 became choices, 0 lost something");
}

TEST(Verdict, CountsWhatTheLastOfSeveralUpdatersDid) {
  Report report = reportWith({userMedium(false), userMedium(true)});
  report.updaters.push_back(report.updaters[0]);
  report.updaters[1].media[0].written = true;
  report.updaters.emplace_back();
  EXPECT_EQ(Verdict::media(report), "3 on the device; 2 are the user's, 2 became choices, 0 lost something");
}

TEST(Verdict, NoMediaWereAskedFor) {
  EXPECT_EQ(Verdict::media(Report()), "");
  EXPECT_FALSE(Verdict::mediaCounts(Report()));
}

TEST(Verdict, CountsWarningsByTheirCodeInTheOrderOfTheReport) {
  Report report;
  EXPECT_EQ(Verdict::warnings(report), "");
  for (const WarningCode code : {WarningCode::noDevice, WarningCode::swallowed, WarningCode::swallowed}) {
    report.warnings.push_back({code});
  }
  EXPECT_EQ(Verdict::warnings(report), "1 no-device, 2 swallowed");
}
