// SPDX-License-Identifier: MIT
//
// What the updaters take out of a run's budget, statements and bytes worked out by hand.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "base/Budget.h"
#include "tests/updaters/TestDevice.h"
#include "tests/updaters/TestDocument.h"
#include "updaters/ATMediaTypePCL3Qualifier3PPDUpdater.h"

namespace {

using Updater = ATMediaTypePCL3Qualifier3PPDUpdater;
using Operation = std::function<void(ATPPD&)>;

const std::string kLanguages = "*cupsLanguages: \"en de fr\"\n";
const std::string kPlain = mediaTypes("*MediaType Plain/Plain: \"12\"\n");
const std::string kProperties = "*QZValueAttributes MediaType.Plain: \"defaultGE='off-ge'\"\n";  // a value of 20 bytes

// Whether the operation is done in a document whose budget holds just so much.
bool fits(const std::string& document, const Operation& operation, std::size_t statements, std::size_t bytes) {
  const auto ppd = documentFromText(document);
  ppd->budget().spend(Budget::kStatements - statements, Budget::kBytes - bytes);
  try {
    operation(*ppd);
  } catch (const BudgetExceeded&) {
    return false;
  }
  return true;
}

void expectSpent(const std::string& document, const Operation& operation, std::size_t statements, std::size_t bytes) {
  EXPECT_TRUE(fits(document, operation, statements, bytes));
  if (statements > 0) {
    EXPECT_FALSE(fits(document, operation, statements - 1, bytes));
  }
  EXPECT_FALSE(fits(document, operation, statements, bytes - 1));
}

}  // namespace

TEST(SpentBudget, OfAChoiceIsALineForEachLanguageAndTwoMore) {
  const auto record = mapOf({{"PPDName", "Custom1"}, {"MediaName", "Canvas"}, {"ID", "4711"}});
  const Operation add = [&](ATPPD& ppd) { Updater().addMediaWithData(record, ppd); };
  expectSpent(kPlain, add, 2, 26);               // "Custom1" and "Canvas", twice
  expectSpent(kLanguages + kPlain, add, 4, 52);  // "de" and "fr"
}

TEST(SpentBudget, OfInheritedPropertiesIsTheirValue) {
  const auto record = mapOf({{"PPDName", "Custom1"}, {"MediaName", "Canvas"}, {"ParentID", "12"}});
  expectSpent(
      kPlain + kProperties, [&](ATPPD& ppd) { Updater().addAttributesForMediaWithData(record, ppd); }, 1, 20);
}

TEST(SpentBudget, OfADefaultGlossIsTheValueBefore) {
  const auto record = mapOf({{"ID", "12"}, {"DefaultGlossEnhancer", "FULLPAGE"}});
  expectSpent(
      fullGlossOption("off-ge") + kPlain + kProperties,
      [&](ATPPD& ppd) { Updater().updateDefaultGlossEnhancerForMediaWithData(record, ppd); }, 1, 20);
}

TEST(SpentBudget, OfAProfileIsItsKeyAndALineForEachLanguage) {
  const Operation build = [](ATPPD& ppd) {
    Updater().cupsICCProfileAttributesWithName("Canvas", ".Custom1.", "/c.icc", ppd);
  };
  expectSpent("*PPD-Adobe: \"4.3\"\n", build, 1, 31);  // "cupsICCProfile .Custom1./Canvas"
  expectSpent(kLanguages, build, 3, 31 + 2 * 40);      // "*de.", the key, and ": """ with a line feed
}

TEST(SpentBudget, OfAProfileThatIsSetIsNameAndPathAndTheNameOnceMoreForEachLanguage) {
  const std::string document = kLanguages + "*cupsICCProfile .Plain./Factory: \"/f.icc\"\n";
  const std::string localized = "*de.cupsICCProfile .Plain./Fabrik: \"\"\n";
  const auto record = mediumWithProfiles("Plain", listOf({profile("Canvas", "file:///c.icc")}));
  const Operation set = [&](ATPPD& ppd) { Updater().setICCProfileForMediaWithData(record, ppd); };
  expectSpent(document, set, 1, 12);
  expectSpent(document + localized, set, 2, 18);
}

TEST(SpentBudget, OfTheSpecsThatAreLookedForIsTheirText) {
  const std::string document =
      "*cupsICCQualifier3: \"OutputMode\"\n" + optionWithChoices("OutputMode", "Fast", {"Fast", "Best"});
  const auto record = mapOf({{"PPDName", "Custom1"}});
  expectSpent(
      document, [&](ATPPD& ppd) { Updater().qualified3PossibleProfileSpecsForMediaData(record, ppd); }, 0, 26);
}
