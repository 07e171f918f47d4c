// SPDX-License-Identifier: MIT
#include "explain/Verdict.h"

#include <gtest/gtest.h>

namespace {

Report reportWith(const std::vector<Report::MediumOutcome>& media) {
  Report report;
  report.device = Report::DeviceAnswer{true, "1", std::vector<Report::Medium>(media.size() + 1), std::nullopt};
  Report::Updater updater;
  updater.media = media;
  report.updaters.push_back(updater);
  return report;
}

Report::MediumOutcome userMedium(bool added) {
  Report::MediumOutcome medium;
  medium.device.custom = true;
  medium.added = added;
  return medium;
}

}  // namespace

TEST(Verdict, IsGoodOnlyWhenNothingIsOdd) {
  Report report = reportWith({userMedium(true)});
  EXPECT_EQ(Verdict::colourOf(report), Verdict::Colour::good);
  EXPECT_EQ(Verdict::outcome(report), "the PPD is set up (exit status 0)");

  report.warnings.push_back({"no-device", "text"});
  EXPECT_EQ(Verdict::colourOf(report), Verdict::Colour::odd);
  EXPECT_EQ(Verdict::outcome(report), "the PPD is written, but look below (exit status 0)");

  report.failure = "a reason";
  EXPECT_EQ(Verdict::colourOf(report), Verdict::Colour::bad);
  EXPECT_EQ(Verdict::outcome(report), "nothing is written (exit status 1)");
}

TEST(Verdict, AMediumThatLostAProfileIsOdd) {
  Report::MediumOutcome skipped = userMedium(true);
  skipped.profiles.push_back(Report::Profile());
  EXPECT_EQ(Verdict::colourOf(reportWith({skipped})), Verdict::Colour::odd);
  Report::MediumOutcome failed = userMedium(true);
  failed.profilesFailure = "a reason";
  EXPECT_EQ(Verdict::colourOf(reportWith({failed})), Verdict::Colour::odd);
  EXPECT_EQ(Verdict::media(reportWith({skipped, failed, userMedium(true), userMedium(false)})),
            "5 on the device; of the user's 4, 3 became choices, 2 lost profiles");
}

TEST(Verdict, CountsWhatTheLastOfSeveralUpdatersDid) {
  Report report = reportWith({userMedium(false), userMedium(true)});
  report.updaters.push_back(report.updaters[0]);
  report.updaters[1].media[0].added = true;
  report.updaters.emplace_back();
  EXPECT_EQ(Verdict::media(report), "3 on the device; of the user's 2, 2 became choices, 0 lost profiles");
}

TEST(Verdict, NoMediaWereAskedFor) {
  EXPECT_EQ(Verdict::media(Report()), "");
}

TEST(Verdict, CountsWarningsByTheirCode) {
  Report report;
  EXPECT_EQ(Verdict::warnings(report), "");
  report.warnings = {{"b", "1"}, {"a", "2"}, {"b", "3"}};
  EXPECT_EQ(Verdict::warnings(report), "1 a, 2 b");
}
