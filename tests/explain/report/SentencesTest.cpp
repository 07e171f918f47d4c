// SPDX-License-Identifier: MIT
#include "explain/report/Sentences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "explain/report/SentenceTable.h"

using testing::HasSubstr;
using testing::Not;

namespace {

using Code = WarningCode;

std::string sentence(Code code, std::vector<Warning::Fact> facts, std::optional<AboutMedium> about = std::nullopt) {
  return Sentences::of({code, std::move(facts), std::move(about)});
}

}  // namespace

TEST(Sentences, HaveThePatternOfEveryCode) {
  std::set<Code> codes;
  for (const SentencePattern& pattern : kSentencePatterns) codes.insert(pattern.code);
  for (const WarningKind& kind : allWarningKinds()) EXPECT_EQ(codes.count(kind.code), 1U) << kind.name;
}

TEST(Sentences, BracesInThePatternsAreClosed) {
  for (const SentencePattern& pattern : kSentencePatterns) {
    const std::string_view text = pattern.text;
    EXPECT_EQ(std::count(text.begin(), text.end(), '{'), std::count(text.begin(), text.end(), '}')) << text;
  }
}

TEST(Sentences, HoldTheFactsAsVisibleText) {
  EXPECT_EQ(sentence(Code::unknownUpdater, {{"updater", "A\x1b\n"}}),
            "No updater is named \"A\\x1b\\n\"; it is skipped.");
  EXPECT_EQ(sentence(Code::lineSplit, {{"line", 7U}}), "Line 7 is longer than 254 bytes and is read as several lines.");
}

TEST(Sentences, NameTheMediumThatTheWarningIsAbout) {
  EXPECT_THAT(sentence(Code::recordIncomplete, {{"lacking", "ID"}}, AboutMedium{"Canvas", std::nullopt}),
              HasSubstr("no ID for the medium \"Canvas\" (no ID);"));
}

TEST(Sentences, TheFirstPatternCountsWhoseFactsAreThere) {
  EXPECT_THAT(sentence(Code::noUpdaters, {{"empty", "QZPPDUpdaters"}}), HasSubstr("*QZPPDUpdaters is empty"));
  EXPECT_THAT(sentence(Code::noUpdaters, {{"keyword", "QZPPDUpdaters"}}),
              HasSubstr("has no *QZPPDUpdaters at its top"));
  EXPECT_THAT(sentence(Code::profileSkipped, {{"profile", std::optional<std::string>()}, {"reason", "it has no name"}},
                       AboutMedium{"Canvas", "1"}),
              testing::StartsWith("A profile of the medium"));
}

TEST(Sentences, WithoutItsFactsAWarningSaysItsTitle) {
  EXPECT_EQ(sentence(Code::unknownUpdater, {}), "An updater does not exist");
}

TEST(Sentences, CountWithANoun) {
  const auto gloss = [](unsigned count) { return sentence(Code::noGlossChoice, {{"count", count}}); };
  EXPECT_THAT(gloss(1), HasSubstr(" 1 property statement "));
  EXPECT_THAT(gloss(2), HasSubstr(" 2 property statements "));
}

TEST(Sentences, ALongStatementIsCutBehindAWholeCharacter) {
  const std::string statement = std::string(59, 'x') + "\u00E4" + "y";
  const std::string text = sentence(Code::zeroByte, {{"statement", statement}});
  EXPECT_THAT(text, testing::EndsWith(std::string(59, 'x') + "…"));
  EXPECT_THAT(sentence(Code::zeroByte, {{"statement", std::string(60, 'x')}}), Not(HasSubstr("…")));
}

TEST(Sentences, MarkWhatThePPDHadBefore) {
  Warning warning{Code::aplworkset};
  EXPECT_EQ(Sentences::marked(warning), Sentences::of(warning));
  warning.inInput = true;
  EXPECT_EQ(Sentences::marked(warning), "In the PPD already: " + Sentences::of(warning));
}
