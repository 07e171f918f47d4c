// SPDX-License-Identifier: MIT
#include "explain/judge/Consequences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

constexpr const char* kPPD =
    "*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n*QZValueAttributes MediaType.Custom1: \"weight=90\"\n"
    "*cupsICCProfile .Custom1./Canvas: \"/canvas.icc\"\n*OpenGroup: QZImagingOptions/Imaging\n"
    "*OpenUI *MediaType/Media: PickOne\n*DefaultMediaType: Plain\n*MediaType Plain/Plain: \"(1001)\"\n"
    "*MediaType Custom1/Canvas: \"(4711)\"\n*de.MediaType Custom1/Canvas: \"\"\n*CloseUI: *MediaType\n"
    "*CloseGroup: QZImagingOptions\n";

// A run that made the custom medium "Canvas" a choice, with a profile.
Report reportOfCanvas() {
  Report report;
  report.parse = Report::Parse();
  report.parse->languages = {"en", "de"};
  Report::Updater updater;
  updater.askedForMedia = true;
  Report::MediumOutcome medium;
  medium.device.name = "Canvas";
  medium.device.custom = true;
  medium.added = true;
  medium.choiceName = "Custom1";
  Report::Profile profile;
  profile.outcome = Report::ProfileOutcome::added;
  profile.spec = ".Custom1.";
  profile.path = "/canvas.icc";
  medium.profiles.push_back(profile);
  updater.media.push_back(medium);
  report.updaters.push_back(updater);
  return report;
}

Report::MediumOutcome& canvas(Report& report) {
  return report.updaters[0].media[0];
}

Report found(Report report, const std::string& result = kPPD) {
  Consequences::find(report, result, result);
  return report;
}

}  // namespace

TEST(Consequences, AMediumThatUsersFind) {
  Report report = found(reportOfCanvas());
  ASSERT_TRUE(report.cups && report.cupsBefore);
  EXPECT_TRUE(report.cups->opens);
  EXPECT_FALSE(report.isRefused());
  EXPECT_TRUE(canvas(report).written);
  EXPECT_EQ(canvas(report).properties, "weight=90");
  EXPECT_THAT(canvas(report).shown, ElementsAre(Pair("en", "Canvas"), Pair("de", "Canvas")));
  EXPECT_THAT(canvas(report).profiles[0].selectedBy, ElementsAre(Pair("MediaType", "Custom1")));
  EXPECT_FALSE(canvas(report).lostSomething());
}

TEST(Consequences, OfARefusedResultEverythingIsLost) {
  Report report = found(reportOfCanvas(), std::string(kPPD) + "*Foo: 1\r\nstray\n");
  EXPECT_TRUE(report.isRefused());
  ASSERT_TRUE(report.cups->refusal);
  EXPECT_EQ(report.cups->refusal->line, 14U);
  EXPECT_EQ(report.cups->refusal->statement, "stray");
  EXPECT_EQ(report.cups->refusal->words, "Missing asterisk in column 1");
  EXPECT_FALSE(canvas(report).written);
  ASSERT_EQ(canvas(report).lost.size(), 1U);
  EXPECT_EQ(canvas(report).lost[0].because, Loss::refused);
}

TEST(Consequences, WhatTheRunLeftOutIsLost) {
  Report report = reportOfCanvas();
  canvas(report).added = false;
  canvas(report).choiceName.reset();
  canvas(report).profilesFailure = "a reason";
  canvas(report).profiles[0].outcome = Report::ProfileOutcome::skipped;
  report = found(report);
  ASSERT_EQ(canvas(report).lost.size(), 2U);
  EXPECT_EQ(canvas(report).lost[0].because, Loss::notAdded);
  EXPECT_EQ(canvas(report).lost[1].because, Loss::profilesFailed);
  EXPECT_EQ(canvas(report).profiles[0].lost->because, Loss::profileSkipped);
}

TEST(Consequences, OfAFactoryMediumOnlyWhatTheRunLookedFor) {
  Report report = reportOfCanvas();
  canvas(report).device.custom = canvas(report).added = false;
  canvas(report).choiceName.reset();
  canvas(report).profiles.clear();
  EXPECT_THAT(canvas(report = found(report)).lost, IsEmpty());
  canvas(report).lookedUp = true;
  report = found(report);
  ASSERT_EQ(canvas(report).lost.size(), 1U);
  EXPECT_EQ(canvas(report).lost[0].because, Loss::noChoice);
}

TEST(Consequences, OfARunThatFailedOnlyThePPDAsItWasIsLookedAt) {
  Report report = reportOfCanvas();
  report.failure = "a reason";
  Consequences::find(report, "stray\n", "");
  EXPECT_FALSE(report.cups);
  ASSERT_TRUE(report.cupsBefore);
  EXPECT_FALSE(report.cupsBefore->opens);
  Report nothingRead;
  nothingRead.failure = "a reason";
  Consequences::find(nothingRead, "", "");
  EXPECT_FALSE(nothingRead.cupsBefore);
}
