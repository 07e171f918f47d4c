// SPDX-License-Identifier: MIT
#include "explain/judge/ConsequencesJudge.h"

#include <cups/ppd.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "explain/report/Sentences.h"

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"  // libcups' PPD interface is what is explained

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

Report reportWith(const std::vector<Lost>& lost, const std::vector<Lost>& ofProfiles = {}) {
  Report report;
  report.cups = Report::CUPS{true, std::nullopt, std::nullopt};
  Report::Updater updater;
  updater.askedForMedia = true;
  updater.media.emplace_back();
  Report::MediumOutcome& medium = updater.media[0];
  medium.device.name = "Canvas";
  medium.device.ID = "4711";
  medium.parent = "Plain";
  medium.lost = lost;
  for (const Lost& each : ofProfiles) {
    medium.profiles.emplace_back();
    medium.profiles.back().lost = each;
  }
  report.updaters.push_back(updater);
  return report;
}

// The sentences, each behind its code.
std::vector<std::string> judged(Report report) {
  const ATPPD ppd;
  const std::string result;
  const InputLines input = InputLines::ofFile("/no/such/file");
  const std::size_t before = report.warnings.size();
  Warnings warnings(report.warnings);
  ConsequencesJudge::judge({report, input, ppd, result}, warnings);
  std::vector<std::string> texts;
  for (std::size_t index = before; index < report.warnings.size(); ++index) {
    texts.push_back(std::string(nameOf(report.warnings[index].code)) + ": " +
                    Sentences::marked(report.warnings[index]));
  }
  return texts;
}

Report refusedWith(const std::string& words, std::size_t line, const std::string& statement) {
  Report report;
  report.cups = Report::CUPS{false, Report::Refusal{line, words, statement}, std::nullopt};
  return report;
}

}  // namespace

TEST(ConsequencesJudge, NothingIsLost) {
  EXPECT_THAT(judged(reportWith({})), IsEmpty());
  EXPECT_THAT(judged(Report()), IsEmpty());
}

TEST(ConsequencesJudge, SaysWhereAndWhyCUPSRefusesTheResult) {
  EXPECT_THAT(
      judged(refusedWith("Bad OrderDependency", 7, "*OrderDependency: 1")),
      ElementsAre("cups-refuses: CUPS refuses the whole PPD at line 7 (Bad OrderDependency: it names no option): "
                  "*OrderDependency: 1"));
  EXPECT_THAT(judged(refusedWith("Other words", 7, "*A")),
              ElementsAre("cups-refuses: CUPS refuses the whole PPD at line 7 (Other words): *A"));
  EXPECT_THAT(judged(refusedWith("Other words", 0, "")),
              ElementsAre("cups-refuses: CUPS refuses the whole PPD: Other words."));
  EXPECT_THAT(judged(refusedWith("Missing PPD-Adobe-4.x header", 1, "\xEF\xBB\xBF*PPD-Adobe: \"4.3\"")),
              ElementsAre(HasSubstr("a byte order mark stands in front of it")));
}

TEST(ConsequencesJudge, EachMeaningIsOfWordsThatLibcupsSays) {
  std::vector<std::string> explained;
  for (int status = 0; status < PPD_MAX_STATUS; ++status) {
    const std::string words = ppdErrorString(static_cast<ppd_status_t>(status));
    const auto texts = judged(refusedWith(words, 1, ""));
    if (texts.at(0).find(words + ": ") != std::string::npos) explained.push_back(words);
  }
  EXPECT_EQ(explained.size(), 10U);
}

TEST(ConsequencesJudge, MarksWhatThePPDHadBefore) {
  Report report = refusedWith("Words", 9, "*Statement");
  report.cupsBefore = Report::CUPS{false, Report::Refusal{5, "Words", "*Statement"}, std::nullopt};
  EXPECT_THAT(
      judged(report),
      ElementsAre("cups-refuses: In the PPD already: CUPS refuses the whole PPD at line 5 (Words): *Statement"));
  report.cupsBefore->refusal->statement = "*Other";
  EXPECT_THAT(judged(report), ElementsAre(HasSubstr("cups-refuses: CUPS refuses the whole PPD at line 9")));
  report.failure = "a reason";
  report.cups.reset();
  EXPECT_THAT(judged(report), ElementsAre(HasSubstr("In the PPD already: CUPS refuses the whole PPD at line 5")));
}

TEST(ConsequencesJudge, LibcupsMayNotComeToAnEnd) {
  Report report;
  report.cups = Report::CUPS();
  EXPECT_THAT(judged(report), ElementsAre(HasSubstr("cups-failed: ")));
}

TEST(ConsequencesJudge, SaysWhatUsersDoNotFind) {
  EXPECT_THAT(judged(reportWith({{Loss::noOption, "MediaType"}})), ElementsAre(HasSubstr("CUPS reads no option")));
  EXPECT_THAT(judged(reportWith({{Loss::noChoice, "Custom1"}})), ElementsAre(HasSubstr("reads no choice Custom1")));
  EXPECT_THAT(judged(reportWith({{Loss::optionNotShown, "MediaType", "InstallableOptions"}})),
              ElementsAre(HasSubstr("in the group InstallableOptions")));
  EXPECT_THAT(judged(reportWith({{Loss::propertiesEmpty, "Custom1"}})), ElementsAre(HasSubstr("the choice Plain")));
  EXPECT_THAT(judged(reportWith({{Loss::propertiesNotRead, "Custom1"}})), ElementsAre(HasSubstr("properties-lost")));
  EXPECT_THAT(judged(reportWith({{Loss::glossNotSet, "FULLPAGE"}})), ElementsAre(HasSubstr("no defaultGE")));
  EXPECT_THAT(judged(reportWith({{Loss::noGlossChoice, "x", "O"}})),
              ElementsAre(HasSubstr("no choice of the option O")));
  EXPECT_THAT(judged(reportWith({{Loss::noGlossChoice, "(null)", "O"}})), IsEmpty()) << "they are counted elsewhere";
}

TEST(ConsequencesJudge, SaysWhyANameIsShownOtherwise) {
  const auto textFor = [](const std::string& name) {
    Report report = reportWith({{Loss::nameOtherwise, "Can", "en de"}});
    report.updaters[0].media[0].device.name = name;
    return judged(report).at(0);
  };
  EXPECT_THAT(textFor("Canvas"), HasSubstr("is shown as \"Can\" (en de)."));
  EXPECT_THAT(textFor("Can: vas"), HasSubstr("since it ends at the colon"));
  EXPECT_THAT(textFor("Can <4a"), HasSubstr("by their codes"));
  EXPECT_THAT(textFor("Can <"), HasSubstr("(en de)."));
  EXPECT_THAT(textFor("Can <x"), HasSubstr("(en de)."));
  EXPECT_THAT(textFor(std::string(81, 'x')), HasSubstr("more than 80 bytes"));
  EXPECT_THAT(textFor(std::string(80, 'x')), HasSubstr("(en de)."));
}

TEST(ConsequencesJudge, SaysWhyAProfileIsNotTaken) {
  EXPECT_THAT(judged(reportWith({}, {{Loss::profileNoChoice, ".Custom1.best", "Mode", "best", "Best"}})),
              ElementsAre(HasSubstr("the option Mode has no choice best, but has Best.")));
  EXPECT_THAT(judged(reportWith({}, {{Loss::profileNoChoice, ".Custom1.best", "Mode", "best"}})),
              ElementsAre(HasSubstr("the option Mode has no choice best.")));
  EXPECT_THAT(judged(reportWith({}, {{Loss::profileNoOption, ".Custom1.best", "Mode"}})),
              ElementsAre(HasSubstr("there is no option Mode.")));
  EXPECT_THAT(judged(reportWith({}, {{Loss::profileSpec, "Custom1"}})), ElementsAre(HasSubstr("not three parts")));
  EXPECT_THAT(judged(reportWith({}, {{Loss::profileNotRead, ".A."}})), ElementsAre(HasSubstr("does not read")));
  EXPECT_THAT(judged(reportWith({}, {{Loss::profileBehind, ".A.", ".."}})),
              ElementsAre(HasSubstr("that of the spec ..")));
}

TEST(ConsequencesJudge, WhatTheRunItselfToldIsNotToldAgain) {
  EXPECT_THAT(judged(reportWith({{Loss::notAdded}, {Loss::profilesFailed}, {Loss::refused}}, {{Loss::profileSkipped}})),
              IsEmpty());
  Report report = reportWith({{Loss::noChoice, "Custom1"}});
  report.warnings.push_back({WarningCode::choiceNotWritten, {}, AboutMedium{"Canvas", "4711"}});
  EXPECT_THAT(judged(report), IsEmpty());
  report.warnings[0].about = AboutMedium{"Canvas", "4712"};
  EXPECT_EQ(judged(report).size(), 1U);
  report.warnings[0] = {WarningCode::swallowed};
  EXPECT_THAT(judged(report), IsEmpty());
}
