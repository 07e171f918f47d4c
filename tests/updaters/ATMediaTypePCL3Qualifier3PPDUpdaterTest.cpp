// SPDX-License-Identifier: MIT
#include "updaters/ATMediaTypePCL3Qualifier3PPDUpdater.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "base/ATException.h"
#include "tests/support/TestLog.h"
#include "tests/updaters/TestDevice.h"
#include "tests/updaters/TestDocument.h"
#include "tests/updaters/TracedUpdater.h"

namespace {

using Texts = std::vector<std::string>;
using Updater = ATMediaTypePCL3Qualifier3PPDUpdater;

const std::string kLanguages = "*cupsLanguages: \"en de\"\n";
const std::string kQualifier = "*cupsICCQualifier3: \"Quality\"\n";
const std::string kQuality = optionWithChoices("Quality", "Normal", {"Fast", "Normal", "Best"});
const std::string kPlain = mediaTypes("*MediaType Plain/Plain: \"12\"\n");
const DeviceValue kDeviceProfile = listOf({profile("Device", "file:///device.icc")});

std::string afterRemoval(const std::string& text, const DeviceValue& record) {
  const auto ppd = documentFromText(text);
  Updater().removeSpecializedICCQualifiers(*ppd, record);
  return textOf(*ppd);
}

std::optional<Texts> possibleSpecs(const std::string& text, const DeviceValue& record) {
  return Updater().qualified3PossibleProfileSpecsForMediaData(record, *documentFromText(text));
}

// What is collected from factory statements of these specs.
Texts collected(const Texts& specs) {
  std::string text;
  for (const std::string& spec : specs) text += factory(spec, "N;;/n");
  const auto ppd = documentFromText(text);
  return Updater().collectPossible2ComponentSpecsToRemoveWithFactoryProfiles(
      ppd->attributesForName("QZcupsICCProfile"));
}

}  // namespace

// Specs of two components

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, ATwoComponentSpecEndsWithTheLastDot) {
  const Updater updater;
  EXPECT_EQ(updater.twoComponentICCProfileSpecFor3ComponentSpec("A.B.C"), "A.B.");
  EXPECT_EQ(updater.twoComponentICCProfileSpecFor3ComponentSpec(".Glossy.Best"), ".Glossy.");
  EXPECT_EQ(updater.twoComponentICCProfileSpecFor3ComponentSpec(".Glossy."), ".Glossy.");
  EXPECT_EQ(updater.twoComponentICCProfileSpecFor3ComponentSpec("A.B.C.D"), "A.B.C.");
  EXPECT_EQ(updater.twoComponentICCProfileSpecFor3ComponentSpec("A.B"), "A.");
  EXPECT_EQ(updater.twoComponentICCProfileSpecFor3ComponentSpec("."), ".");
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, ASpecWithoutADotIsARangeError) {
  const Updater updater;
  EXPECT_THROW(updater.twoComponentICCProfileSpecFor3ComponentSpec("Plain"), ATException);
  EXPECT_THROW(updater.twoComponentICCProfileSpecFor3ComponentSpec(""), ATException);
  EXPECT_THROW(updater.twoComponentICCProfileSpecFor3ComponentSpec(std::nullopt), ATException);
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, CollectsTheGeneralSpecsOfSpecialisedStatementsInOrderOfAppearance) {
  EXPECT_EQ(collected({".B.Best", ".A.Fast", ".B.Fast", ".A.Best", "X.A.Best"}), (Texts{".B.", ".A.", "X.A."}));
  EXPECT_EQ(collected({}), Texts());
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, KeepsGeneralSpecsThatTheFactoryHasToo) {
  EXPECT_EQ(collected({".Plain.Fast", ".Plain."}), Texts());
  EXPECT_EQ(collected({".Plain.", ".Plain.Fast", ".Other.Fast"}), Texts{".Other."});
  EXPECT_EQ(collected({".Plain."}), Texts());
}

// Restoring

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, RestoringKeepsAGeneralStatementThatTheFactoryHas) {
  const std::string factories = factory(".Plain.Fast", "Fast;;/fast") + factory(".Plain.", "General;;/general");
  EXPECT_EQ(afterRestore<Updater>(factories + statement(".Plain.", "Device", "/device") +
                                  statement(".Plain.Fast", "F", "/f")),
            factories + statement(".Plain.", "General", "/general") + statement(".Plain.Fast", "Fast", "/fast"));
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, RestoringTakesAGeneralStatementOutAndMakesTheSpecialisedOneAnew) {
  const std::string factories = kLanguages + factory(".Plain.Fast", "Fast;;/fast");
  EXPECT_EQ(afterRestore<Updater>(factories + statement(".Plain.", "Device", "/device") +
                                  localized("de", ".Plain.", "Device")),
            factories + statement(".Plain.Fast", "Fast", "/fast") + localized("de", ".Plain.Fast", "Fast"));
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, RestoringRewritesASpecialisedStatementThatIsThere) {
  const std::string factories = kLanguages + factory(".Plain.Fast", "Fast;;/fast");
  EXPECT_EQ(afterRestore<Updater>(factories + statement(".Plain.Fast", "X", "/x") +
                                  localized("de", ".Plain.Fast", "X") + statement(".Plain.", "Device", "/device")),
            factories + statement(".Plain.Fast", "Fast", "/fast") + localized("de", ".Plain.Fast", "Fast"));
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, RestoringRemovesOneStatementForEachCollectedSpec) {
  const std::string factories = factory(".Plain.Fast", "no path") + factory(".Plain.Best", "no path");
  EXPECT_EQ(afterRestore<Updater>(factories + statement(".Plain.", "1", "/1") + statement(".Plain.", "2", "/2") +
                                  statement(".Other.", "3", "/3")),
            factories + statement(".Plain.", "2", "/2") + statement(".Other.", "3", "/3"));
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, RestoringMakesNothingFromAStatementWithoutAPath) {
  const std::string text = factory(".Plain.Fast", "no path");
  EXPECT_EQ(afterRestore<Updater>(text), text);
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, APlainFactoryPathIsKeptAsItStands) {
  const std::string factories = factory(".Plain.Fast", "Fast;;/Library/My Profiles/50%20 #1?[a]\\b.icc");
  EXPECT_EQ(afterRestore<Updater>(factories),
            factories + statement(".Plain.Fast", "Fast", "/Library/My Profiles/50%20 #1?[a]\\b.icc"));
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, AnEmptyFactoryPathMakesAStatementWithNoPath) {
  const std::string factories = factory(".Plain.Fast", "Fast;;");
  EXPECT_EQ(afterRestore<Updater>(factories), factories + statement(".Plain.Fast", "Fast", "(null)"));
  EXPECT_EQ(afterRestore<Updater>(factories + statement(".Plain.Fast", "X", "/x")),
            factories + statement(".Plain.Fast", "Fast", ""));
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, AFactoryURLIsTurnedIntoItsPath) {
  const std::string factories = factory(".Plain.Fast", "Fast;;file:///a%20b");
  EXPECT_EQ(afterRestore<Updater>(factories), factories + statement(".Plain.Fast", "Fast", "/a b"));
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, AFactoryProfileWithTooLongALineIsNotMadeAnew) {
  const std::string factories = factory(".P.F", "F;;/" + std::string(230, 'p'));
  EXPECT_EQ(afterRestore<Updater>(factories), factories);
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, AMadeStatementIsTestedNeitherForItsTextNorForItsSpec) {
  const std::string spec = ".Plain." + std::string(40, 'q');
  const std::string factories = factory(spec, std::string(81, 'n') + ";;/p");
  EXPECT_EQ(afterRestore<Updater>(factories), factories + statement(spec, std::string(81, 'n'), "/p"));
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, AFactoryStatementWithoutADotInItsSpecIsARangeError) {
  EXPECT_THROW(afterRestore<Updater>(factory("Plain", "N;;/n")), ATException);
  EXPECT_THROW(afterRestore<Updater>("*QZcupsICCProfile: \"N;;/n\"\n"), ATException);
  EXPECT_THROW(afterRestore<Updater>(factory(".Plain.Fast", "N;;/n") + factory("Plain", "no path")), ATException);
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, UpdatingAStatementThatIsThereIsTheInheritedUpdate) {
  const auto ppd = documentFromText("*cupsICCProfile .P.F/Device: /n\n" + statement(".Q.F", "Device", "/device"));
  const auto wrapper = ATQZProfilePPDAttributeWrapper::initWithPPDAttribute(
      *ATPPDAttribute::attributeWithString(factory(".P.F", "N;;/n")));
  Updater().updateCupsProfile(ppd->attributeForName("cupsICCProfile", ".P.F"), *ppd, *wrapper);
  Updater().updateCupsProfile(ppd->attributeForName("cupsICCProfile", ".Q.F"), *ppd, *wrapper);
  EXPECT_EQ(textOf(*ppd), "*cupsICCProfile .P.F/Device: /n\n" + statement(".Q.F", "N", "/n"));
}

// The specs of a medium

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, ThePossibleSpecsHaveOneChoiceEach) {
  EXPECT_EQ(possibleSpecs(kQualifier + kPlain + kQuality, mapOf({{"PPDName", "Custom3"}})),
            (Texts{".Custom3.Fast", ".Custom3.Normal", ".Custom3.Best"}));
  EXPECT_EQ(possibleSpecs(kQualifier + kPlain + kQuality, mapOf({{"ID", "12"}})),
            (Texts{".Plain.Fast", ".Plain.Normal", ".Plain.Best"}));
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, WithoutAMediaQualifierThereAreNoPossibleSpecs) {
  EXPECT_EQ(possibleSpecs(kQualifier + kQuality, mapOf({})), std::nullopt);
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, WithoutTheStatementOrItsValueThereAreNoPossibleSpecs) {
  EXPECT_EQ(possibleSpecs(kQuality, mapOf({{"PPDName", "C"}})), std::nullopt);
  EXPECT_EQ(possibleSpecs("*cupsICCQualifier3 a/b\n" + kQuality, mapOf({{"PPDName", "C"}})), std::nullopt);
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, AnUnquotedOptionNameStandsAsItIs) {
  EXPECT_EQ(possibleSpecs("*cupsICCQualifier3: Quality\n" + kQuality, mapOf({{"PPDName", "C"}})),
            (Texts{".C.Fast", ".C.Normal", ".C.Best"}));
  EXPECT_EQ(possibleSpecs("*cupsICCQualifier3: \"Quality\n" + kQuality, mapOf({{"PPDName", "C"}})), Texts());
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, AnOptionThatTheDocumentLacksGivesNoSpecs) {
  EXPECT_EQ(possibleSpecs("*cupsICCQualifier3: \"Other\"\n" + kQuality, mapOf({{"PPDName", "C"}})), Texts());
  EXPECT_EQ(possibleSpecs("*cupsICCQualifier3: \"quality\"\n" + kQuality, mapOf({{"PPDName", "C"}})), Texts());
  EXPECT_EQ(possibleSpecs("*cupsICCQualifier3: \"\"\n" + kQuality, mapOf({{"PPDName", "C"}})), Texts());
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, ChoiceNamesComeInOrderAndNoneForAnAbsentOption) {
  const auto ppd = documentFromText(optionWithChoices("Q", "b", {"b", "a", "b"}));
  EXPECT_EQ(Updater().choiceNamesForOption(ppd->optionForName("Q")), (Texts{"b", "a", "b"}));
  EXPECT_EQ(Updater().choiceNamesForOption(nullptr), Texts());
}

// Removing specialised statements

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, RemovesTheSpecialisedStatementsWithTheirLocalizations) {
  EXPECT_EQ(
      afterRemoval(kLanguages + kQualifier + statement(".Plain.Fast", "F", "/f") + localized("de", ".Plain.Fast", "F") +
                       statement(".Plain.Best", "B", "/b") + localized("de", ".Plain.Best", "B") +
                       statement(".Plain.Draft", "D", "/d") + statement(".Plain.", "G", "/g") +
                       statement("RGB.Plain.Best", "R", "/r") + statement(".Other.Best", "O", "/o") + kQuality,
                   mapOf({{"PPDName", "Plain"}})),
      kLanguages + kQualifier + statement(".Plain.Draft", "D", "/d") + statement(".Plain.", "G", "/g") +
          statement("RGB.Plain.Best", "R", "/r") + statement(".Other.Best", "O", "/o") + kQuality);
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, RemovesOneStatementForEachSpec) {
  EXPECT_EQ(afterRemoval(kQualifier + statement(".P.Fast", "1", "/1") + statement(".P.Fast", "2", "/2") + kQuality,
                         mapOf({{"PPDName", "P"}})),
            kQualifier + statement(".P.Fast", "2", "/2") + kQuality);
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, RemovesNothingWithoutAQualifierAnOptionOrAMedium) {
  const std::string statements = statement(".P.Fast", "F", "/f") + statement(".(null).Fast", "N", "/n");
  for (const std::string& text : {statements + kQuality, statements + "*cupsICCQualifier3: \"Other\"\n" + kQuality}) {
    EXPECT_EQ(afterRemoval(text, mapOf({{"PPDName", "P"}})), text);
  }
  EXPECT_EQ(afterRemoval(kQualifier + statements + kQuality, mapOf({})), kQualifier + statements + kQuality);
}

// Setting

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, SetPutsOneGeneralStatementInThePlaceOfTheSpecialisedOnes) {
  const std::string other = statement(".Other.Fast", "O", "/o");
  EXPECT_EQ(afterSet<Updater>(kLanguages + kQualifier + statement(".Plain.Fast", "F", "/f") +
                                  localized("de", ".Plain.Fast", "F") + statement(".Plain.Normal", "N", "/n") +
                                  statement(".Plain.Best", "B", "/b") + other + kPlain + kQuality,
                              mapOf({{"ID", "12"}, {"ICCProfiles", kDeviceProfile}})),
            kLanguages + kQualifier + other + statement(".Plain.", "Device", "/device.icc") +
                localized("de", ".Plain.", "Device") + kPlain + kQuality);
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, SetRewritesAGeneralStatementThatIsThere) {
  EXPECT_EQ(afterSet<Updater>(kLanguages + kQualifier + statement(".Plain.Fast", "F", "/f") +
                                  statement(".Plain.", "G", "/g") + localized("de", ".Plain.", "G") + kPlain + kQuality,
                              mapOf({{"ID", "12"}, {"ICCProfiles", kDeviceProfile}})),
            kLanguages + kQualifier + statement(".Plain.", "Device", "/device.icc") +
                localized("de", ".Plain.", "Device") + kPlain + kQuality);
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, SetWithoutAQualifierRemovesNothingAndAddsTheGeneralStatement) {
  const std::string text = statement(".Plain.Fast", "F", "/f");
  EXPECT_EQ(afterSet<Updater>(text, mediumWithProfiles("Plain", kDeviceProfile)),
            text + statement(".Plain.", "Device", "/device.icc"));
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, SetAddsEveryProfileOfTheDevice) {
  EXPECT_EQ(afterSet<Updater>("", mediumWithProfiles("Plain", listOf({profile("A", "/a"), profile("B", "/b")}))),
            statement(".Plain.", "A", "/a") + statement(".Plain.", "B", "/b"));
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, SetRemovesTheSpecialisedStatementsEvenWithoutProfiles) {
  EXPECT_EQ(
      afterSet<Updater>(kQualifier + statement(".Plain.Fast", "F", "/f") + kQuality, mapOf({{"PPDName", "Plain"}})),
      kQualifier + kQuality);
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, SetCallsTheMostDerivedOperations) {
  const auto ppd = documentFromText(kQualifier + statement(".Plain.Fast", "F", "/f") + kQuality);
  const TracedQualifier3<Updater> updater;
  updater.setICCProfileForMediaWithData(mediumWithProfiles("Plain", kDeviceProfile), *ppd);
  EXPECT_EQ(updater.trace.among({"setICCProfile", "removeSpecialized", "addICCProfile"}),
            (Texts{"setICCProfile", "removeSpecialized", "addICCProfile"}));
  EXPECT_EQ(updater.trace.count("possibleSpecs"), 1);
  EXPECT_EQ(updater.trace.count("choiceNames"), 1);
  EXPECT_GE(updater.trace.count("generalSpec"), 1);
  updater.trace.clear();
  updater.setICCProfileForMediaWithData(mediumWithProfiles("Plain", kDeviceProfile), *ppd);
  EXPECT_EQ(updater.trace.count("addICCProfile"), 0);
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, SetHandsItsOwnRecordToAdd) {
  struct Adds : Updater {
    bool addICCProfileForMediaWithData(const Record& record, ATPPD& /*toPPD*/) const override {
      maps.push_back(record.map());
      return false;
    }
    mutable std::vector<DeviceValue::MapPtr> maps;
  };
  const auto ppd = documentFromText("");
  const DeviceValue record = mediumWithProfiles("Plain", kDeviceProfile);
  const Adds updater;
  updater.setICCProfileForMediaWithData(record, *ppd);
  EXPECT_EQ(updater.maps, std::vector<DeviceValue::MapPtr>{record.map()});
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, RestoringCallsTheMostDerivedOperations) {
  const auto ppd = documentFromText(factory(".A.Fast", "A;;/a") + factory(".B.Fast", "B;;/b") +
                                    factory(".C.", "no path") + statement(".B.Fast", "X", "/x"));
  const TracedQualifier3<Updater> updater;
  updater.restoreFactoryICCProfilesInPPD(*ppd);
  EXPECT_EQ(updater.trace.count("collectSpecs"), 1);
  EXPECT_EQ(updater.trace.count("twoComponentSpec"), 3);
  EXPECT_EQ(updater.trace.count("updateCupsProfile"), 2);
  EXPECT_EQ(updater.trace.count("profileAttributes"), 1);
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, AddIsTheInheritedOne) {
  const auto ppd = documentFromText(kQualifier + kQuality);
  EXPECT_TRUE(Updater().addICCProfileForMediaWithData(
      mediumWithProfiles("Custom1", listOf({profile("N", "/n", "FULLPAGE", "Best")})), *ppd));
  EXPECT_EQ(specsOf(*ppd, "cupsICCProfile"), Texts{".Custom1."});
}

TEST(ATMediaTypePCL3Qualifier3PPDUpdater, ASecondSetupRestoresWhatTheFirstTookOut) {
  const std::string factories =
      kQualifier + factory(".Plain.Fast", "Fast;;/fast") + factory(".Plain.Best", "Best;;/best");
  const std::string options = kPlain + kQuality;
  const FakeReader withProfile(mediaList({mapOf({{"ID", "12"}, {"ICCProfiles", kDeviceProfile}})}));
  const auto first = documentFromText(factories + statement(".Plain.Fast", "Fast", "/fast") +
                                      statement(".Plain.Best", "Best", "/best") + options);
  EXPECT_TRUE(Updater().updatePPD(first.get(), &withProfile));
  EXPECT_EQ(textOf(*first),
            factories + statement(".Plain.", "Device", "/device.icc") + "*QZMediaListVersion: 17\n" + options);
  const FakeReader withoutMedia(mediaList({}));
  const auto second = documentFromText(textOf(*first));
  EXPECT_TRUE(Updater().updatePPD(second.get(), &withoutMedia));
  EXPECT_EQ(textOf(*second), factories + statement(".Plain.Fast", "Fast", "/fast") +
                                 statement(".Plain.Best", "Best", "/best") + "*QZMediaListVersion: 17\n" + options);
}
