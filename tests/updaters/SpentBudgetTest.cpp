// SPDX-License-Identifier: MIT
//
// What setups take out of a run's budget: a large real one at most a tenth of each amount; and what each kind of work
// takes.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "tests/updaters/TestDevice.h"
#include "tests/updaters/TestDocument.h"
#include "updaters/ATPPDUpdatersFactory.h"

namespace {

constexpr std::size_t kMedia = 200;
constexpr std::size_t kRealMedia = 2000;  // what is spent grows with the media
const std::string kLanguages =
    "*cupsLanguages: \"en de fr it es pt nl da sv nb fi pl cs hu ru tr ja ko zh_CN zh_TW\"\n";

std::string factoryPPD(const std::string& updater) {
  return "*PPD-Adobe: \"4.3\"\n" + kLanguages + "*QZPPDUpdaters: \"" + updater +
         "\"\n*cupsICCQualifier1: \"QZGlossEnhancerSimplified\"\n*cupsICCQualifier3: \"OutputMode\"\n" +
         mediaTypes("*MediaType Plain/Plain: \"QZMediaID(12)\"\n") + simplifiedGlossOption("False") +
         optionWithChoices("OutputMode", "Fast", {"Fast", "Normal", "Best"}) +
         "*QZValueAttributes MediaType.Plain: \"glossy=YES;defaultGE='off-ge'\"\n"
         "*cupsICCProfile False.Plain.Best/Plain: \"/p/plain.icc\"\n"
         "*QZcupsICCProfile False.Plain.Best/Plain: \"Plain;;/p/plain.icc\"\n";
}

DeviceValue manyMedia() {
  auto records = std::make_shared<DeviceValue::List>();
  for (std::size_t number = 0; number < kMedia; ++number) {
    const std::string name = fmt::format("A medium of the user's with a longer name, number {}", number);
    auto profiles = std::make_shared<DeviceValue::List>();
    for (const char* gloss : {"OFF", "FULLPAGE", "INKEDAREA"}) {
      profiles->push_back(profile(name, fmt::format("file:///Library/Profiles/{}-{}.icc", number, gloss), gloss,
                                  std::string("Mode") + gloss));
    }
    records->push_back(mapOf({{"MediaName", name},
                              {"ID", fmt::format("ID-{:05}", number)},
                              {"CategoryName", "Custom"},
                              {"CategoryID", "CUSTOM"},
                              {"ParentID", "12"},
                              {"DefaultGlossEnhancer", "FULLPAGE"},
                              {"ICCProfiles", profiles}}));
  }
  return mapOf({{"MedaListVersion", "17"}, {"MediaList", records}});
}

void setUp(ATPPD& ppd) {
  FakeReader reader(manyMedia());
  for (const auto& updater : ATPPDUpdatersFactory::defaultFactory().updatersForPPD(ppd)) {
    ASSERT_TRUE(updater->updatePPD(&ppd, &reader));
  }
}

void expectAtMostATenth(const std::string& what, std::size_t all, std::size_t left) {
  const std::size_t spent = (all - left) * (kRealMedia / kMedia);
  EXPECT_LE(spent * 10, all) << what << ": " << spent << " of " << all;
}

void expectAtMostATenth(const Budget& budget) {
  expectAtMostATenth("lines", Budget::kAll.lines, budget.left().lines);
  expectAtMostATenth("options", Budget::kAll.options, budget.left().options);
  expectAtMostATenth("statements", Budget::kAll.statements, budget.left().statements);
  expectAtMostATenth("bytes", Budget::kAll.bytes, budget.left().bytes);
  expectAtMostATenth("visits", Budget::kAll.visits, budget.left().visits);
}

struct SpentBudgetTest : testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(Updaters, SpentBudgetTest,
                         testing::Values("ATMediaTypePSPPDUpdater", "ATMediaTypePCL3PPDUpdater",
                                         "ATMediaTypePCL3Qualifier3PPDUpdater", "ATMediaTypePCL3Qualifier1PPDUpdater",
                                         "ATGlossyProfilePCL3PPDUpdater"),
                         [](const auto& updater) { return std::string(updater.param); });

// What an operation on a small document takes.
Budget::Amounts spentBy(const std::string& document, const std::function<void(ATPPD&)>& operation) {
  const auto ppd = documentFromText(document);
  ppd->budget().restore(Budget::kAll);
  operation(*ppd);
  const Budget::Amounts& left = ppd->budget().left();
  return {Budget::kAll.lines - left.lines, Budget::kAll.options - left.options,
          Budget::kAll.statements - left.statements, Budget::kAll.bytes - left.bytes,
          Budget::kAll.visits - left.visits};
}

}  // namespace

TEST_P(SpentBudgetTest, ALargeSetupTakesAtMostATenth) {
  const auto ppd = documentFromText(factoryPPD(GetParam()));
  setUp(*ppd);
  expectAtMostATenth(ppd->budget());
  const auto again = documentFromText(textOf(*ppd));
  setUp(*again);
  expectAtMostATenth(again->budget());
}

TEST(SpentBudget, EveryLineThatIsReadIsSpent) {
  const auto ppd = documentFromText("*A: \"1\n2\n\"\n*End\n\n" + mediaTypes("*MediaType P/P: \"\"\n"));
  EXPECT_EQ(Budget::kAll.lines - ppd->budget().left().lines, 5U + 6U);
  EXPECT_EQ(Budget::kAll.options - ppd->budget().left().options, 1U);
}

TEST(SpentBudget, ALongValueIsSpentEachTimeThatItIsAskedFor) {
  const std::string document = "*A: \"" + std::string(200, 'x') + "\n" + std::string(200, 'x') + "\"\n*End\n";
  const auto spent = spentBy(document, [](ATPPD& ppd) {
    const auto attribute = ppd.attributeForName("A");
    for (int time = 0; time < 3; ++time) attribute->value();
  });
  EXPECT_EQ(spent.visits, 2U + 3 * (403U / Budget::kBytesOfAVisit));
}

TEST(SpentBudget, ALongSpecIsSpentThatIsLookedFor) {
  const std::string spec(1280, 'x');
  EXPECT_EQ(spentBy("", [&](ATPPD& ppd) { ppd.attributeForName("A", spec); }).visits,
            1U + 1280U / Budget::kBytesOfAVisit);
}

TEST(SpentBudget, TheLanguagesAreSpentEachTimeThatTheyAreAskedFor) {
  const auto ppd = documentFromText("*cupsLanguages: \"de fr es\"\n");
  ppd->supportedLocalizations();
  const std::size_t left = ppd->budget().left().visits;
  ppd->supportedLocalizations();
  EXPECT_EQ(left - ppd->budget().left().visits, 3U * 3U);
}

TEST(SpentBudget, ALanguageCountsAsAnOption) {
  EXPECT_EQ(spentBy("*cupsLanguages: \"de fr\"\n", [](ATPPD& ppd) { ppd.supportedLocalizations(); }).options, 2U);
}

TEST(SpentBudget, AnAddedStatementIsSpentWithItsBytes) {
  const auto spent =
      spentBy("*A: 1\n", [](ATPPD& ppd) { ppd.addPPDAttribute(ATPPDAttribute::attributeWithString("*B: 2345\n")); });
  EXPECT_EQ(spent.statements, 1U);
  EXPECT_EQ(spent.bytes, 9U);
}

TEST(SpentBudget, AChangedStatementIsSpentWithItsBytes) {
  const auto spent = spentBy("*A: 1\n", [](ATPPD& ppd) { ppd.attributeForName("A")->setValue("2345"); });
  EXPECT_EQ(spent.statements, 1U);
  EXPECT_EQ(spent.bytes, 9U);
}

TEST(SpentBudget, AValueThatIsTooLongIsNotComposed) {
  const auto ppd = documentFromText("*A: 1\n");
  const auto attribute = ppd->attributeForName("A");
  ppd->budget().restore({0, 0, 1, 3, 0});
  EXPECT_THROW(attribute->setValue("2345"), BudgetExceeded);
  EXPECT_EQ(textOf(*ppd), "*A: 1\n");
}

TEST(SpentBudget, AnAddedChoiceIsSpentWithAllItsLines) {
  const auto spent = spentBy(mediaTypes(""), [](ATPPD& ppd) {
    ppd.optionForName("MediaType")->addChoice(ATPPDChoice::initWithName("C", "t", "x", "MediaType", {{"de", "u"}}));
  });
  EXPECT_EQ(spent.statements, 1U);
  EXPECT_EQ(spent.bytes, std::string("*MediaType C/t: \"x\"\n*de.MediaType C/u: \"\"\n").size());
}

TEST(SpentBudget, ALookUpIsSpentThatFindsNothing) {
  EXPECT_EQ(spentBy("", [](ATPPD& ppd) { ppd.attributeForName("A"); }).visits, 1U);
  EXPECT_EQ(spentBy("", [](ATPPD& ppd) { ppd.attributesForName("A"); }).visits, 1U);
  EXPECT_EQ(spentBy("", [](ATPPD& ppd) { ppd.attributesForName("A", "B"); }).visits, 1U);
}

TEST(SpentBudget, ALookUpOfLocalizationsIsSpentForEachLanguage) {
  const auto spent = spentBy("", [](ATPPD& ppd) { ppd.localizationForAttributeWithName("A", "B"); });
  const auto twoMore =
      spentBy("*cupsLanguages: \"de fr\"\n", [](ATPPD& ppd) { ppd.localizationForAttributeWithName("A", "B"); });
  EXPECT_GE(twoMore.visits, spent.visits + 2);
}

TEST(SpentBudget, GroupsAndOptionsAreSpentThatAreWalkedThrough) {
  const std::string document = optionWithChoices("A", "x", {}) + optionWithChoices("B", "x", {});
  EXPECT_EQ(spentBy(document, [](ATPPD& ppd) { ppd.groupForName("BGroup"); }).visits, 1U + 2U);
  EXPECT_EQ(spentBy(document, [](ATPPD& ppd) { ppd.optionForName("none"); }).visits, 1U + 4U);
}

TEST(SpentBudget, ALoopOverChoicesIsSpent) {
  const auto spent = spentBy(optionWithChoices("A", "x", {"x", "y", "z"}), [](ATPPD& ppd) {
    for (const auto& choice : ppd.groupForName("AGroup")->options()[0]->choices()) choice->name();
  });
  EXPECT_EQ(spent.visits, 2U + 3U);
}

TEST(SpentBudget, AnAttributeThatStandsTwiceIsSpentUntilItIsRemovedTwice) {
  const auto ppd = documentFromText("*A: 1\n");
  const auto attribute = ppd->attributeForName("A");
  ppd->addPPDAttribute(attribute);
  ppd->removePPDAttribute(attribute);
  const std::size_t left = ppd->budget().left().statements;
  attribute->setValue("2");
  EXPECT_EQ(ppd->budget().left().statements, left - 1);
  ppd->removePPDAttribute(attribute);
  attribute->setValue("3");
  EXPECT_EQ(ppd->budget().left().statements, left - 1);
}
