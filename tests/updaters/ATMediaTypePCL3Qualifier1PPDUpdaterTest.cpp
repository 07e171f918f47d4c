// SPDX-License-Identifier: MIT
#include "updaters/ATMediaTypePCL3Qualifier1PPDUpdater.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/ATException.h"
#include "tests/support/TestLog.h"
#include "tests/updaters/TestDevice.h"
#include "tests/updaters/TestDocument.h"
#include "tests/updaters/TracedUpdater.h"

namespace {

using Texts = std::vector<std::string>;
using Updater = ATMediaTypePCL3Qualifier1PPDUpdater;

constexpr const char* kAddSignature = "-[ATMediaTypePCL3Qualifier1PPDUpdater addICCProfileForMediaWithData:toPPD:]";
constexpr const char* kSetSignature = "-[ATMediaTypePCL3Qualifier1PPDUpdater setICCProfileForMediaWithData:inPPD:]";

const std::string kApplicable =
    "*cupsICCQualifier1: \"QZGlossEnhancerSimplified\"\n*cupsICCQualifier3: \"OutputMode\"\n";
const std::string kOtherQualifier =
    "*cupsICCQualifier1: \"QZGlossEnhancerSimplified\"\n*cupsICCQualifier3: \"Resolution\"\n";
const std::string kOutputMode = optionWithChoices("OutputMode", "Normal", {"Fast", "Normal", "Best"});
const std::string kPlain = mediaTypes("*MediaType Plain/Plain: \"12\"\n");

bool applicable(const std::string& text) {
  return Updater().isApplicableToPPD(*documentFromText(text));
}

DeviceValue adjusted(const std::string& text, const DeviceValue& record) {
  return Updater().adjustedMediaData(record, *documentFromText(text));
}

// The gloss values of these profiles of the medium "Plain" after adjustment.
Texts adjustedGloss(const std::string& text, const DeviceValue& profiles) {
  return inProfilesOf(adjusted(text, mediumWithProfiles("Plain", profiles)), "GlossEnhancer");
}

std::string afterRemoval(const std::string& text, const DeviceValue& record) {
  const auto ppd = documentFromText(text);
  Updater().removeSpecializedICCQualifiers(*ppd, record);
  return textOf(*ppd);
}

DeviceValue oneProfile(const char* gloss, const DeviceValue& outputMode = "Best") {
  return listOf({profile("Device", "file:///device", gloss, outputMode)});
}

}  // namespace

// Applicability

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, AppliesToSimplifiedGlossAndOutputMode) {
  EXPECT_TRUE(applicable(kApplicable));
  EXPECT_TRUE(applicable("*cupsICCQualifier1: QZGlossEnhancerSimplified\n*cupsICCQualifier3: OutputMode\n"));
  EXPECT_TRUE(
      applicable("*cupsICCQualifier1 s/t: \"QZGlossEnhancerSimplified\"\n*cupsICCQualifier3: x\"OutputMode\"y\n"));
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, AppliesToNothingElse) {
  EXPECT_FALSE(applicable(kOtherQualifier));
  EXPECT_FALSE(applicable("*cupsICCQualifier1: \"QZGlossEnhancer\"\n*cupsICCQualifier3: \"OutputMode\"\n"));
  EXPECT_FALSE(applicable("*cupsICCQualifier1: \"QZGlossEnhancerSimplified\"\n"));
  EXPECT_FALSE(applicable("*cupsICCQualifier3: \"OutputMode\"\n"));
  EXPECT_FALSE(applicable("*cupsICCQualifier1: \"qzglossenhancersimplified\"\n*cupsICCQualifier3: \"OutputMode\"\n"));
  EXPECT_FALSE(applicable("*cupsICCQualifier1: \"QZGlossEnhancerSimplified\"\n*cupsICCQualifier3: \" OutputMode\"\n"));
  EXPECT_FALSE(applicable("*cupsICCQualifier1: \"QZGlossEnhancerSimplified\n\n*cupsICCQualifier3: \"OutputMode\"\n"));
  EXPECT_FALSE(applicable("*cupsICCQualifier1: \"QZGlossEnhancerSimplified\"\n*cupsICCQualifier3 a/b\n"));
  EXPECT_FALSE(applicable(""));
}

// Adjusting

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, ConvertsTwoGlossValuesAndKeepsTheOthers) {
  EXPECT_EQ(adjustedGloss(kApplicable, listOf({profile("A", "/a", "OFF"), profile("B", "/b", "FULLPAGE"),
                                               profile("C", "/c", "INKEDAREA"), profile("D", "/d", "off"),
                                               profile("E", "/e", "True"), profile("F", "/f", "False"),
                                               profile("G", "/g", ""), profile("H", "/h", number(1))})),
            (Texts{"False", "True", "INKEDAREA", "off", "True", "False", "", "1"}));
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, SharesListAndEntriesWithTheCallersRecord) {
  const DeviceValue record = mediumWithProfiles("Plain", oneProfile("OFF"));
  const DeviceValue result = adjusted(kApplicable + factory("True.Plain.Best", "N;;/n"), record);
  EXPECT_NE(result.map(), record.map());
  EXPECT_EQ(result.valueForKey("ICCProfiles").list(), record.valueForKey("ICCProfiles").list());
  EXPECT_EQ(inProfilesOf(record, "GlossEnhancer"), (Texts{"False", "True"}));
  EXPECT_EQ(result.valueForKey("PPDName").description(), "Plain");
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, GivesTheRecordItselfWhenItDoesNotApply) {
  const DeviceValue record = mediumWithProfiles("Plain", listOf({profile("A", "/a", "OFF"), profile("B", "/b")}));
  EXPECT_EQ(adjusted(kOtherQualifier + factory("True.Plain.Best", "N;;/n"), record).map(), record.map());
  EXPECT_EQ(inProfilesOf(record, "GlossEnhancer"), (Texts{"OFF", "(null)"}));
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, GivesTheRecordItselfWithoutAMediaQualifier) {
  const DeviceValue none = mapOf({{"ICCProfiles", oneProfile("OFF")}});
  const DeviceValue empty = mediumWithProfiles("", oneProfile("OFF"));
  EXPECT_EQ(adjusted(kApplicable, none).map(), none.map());
  EXPECT_EQ(adjusted(kApplicable, empty).map(), empty.map());
  EXPECT_EQ(inProfilesOf(none, "GlossEnhancer"), Texts{"OFF"});
  EXPECT_EQ(inProfilesOf(empty, "GlossEnhancer"), Texts{"OFF"});
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, AddsTheFactoryProfilesOfTheOppositeGlossToASingleProfile) {
  const DeviceValue record = mediumWithProfiles("Plain", oneProfile("OFF", "Fast"));
  adjusted(kApplicable + factory("True.Plain.Best", "Best Name;;/best") +
               factory("True.Plain.Normal", "Normal Name;;/normal"),
           record);
  EXPECT_EQ(inProfilesOf(record, "GlossEnhancer"), (Texts{"False", "True", "True"}));
  EXPECT_EQ(inProfilesOf(record, "OutputMode"), (Texts{"Fast", "Best", "Normal"}));
  EXPECT_EQ(inProfilesOf(record, "ICCName"), (Texts{"Device", "Best Name", "Normal Name"}));
  EXPECT_EQ(inProfilesOf(record, "URL"), (Texts{"file:///device", "/best", "/normal"}));
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, TheOppositeOfEverythingButFalseIsFalse) {
  const std::string document = kApplicable + factory("False.Plain.Best", "N;;/n");
  EXPECT_EQ(adjustedGloss(document, oneProfile("FULLPAGE")), (Texts{"True", "False"}));
  EXPECT_EQ(adjustedGloss(document, oneProfile("INKEDAREA")), (Texts{"INKEDAREA", "False"}));
  EXPECT_EQ(adjustedGloss(document, oneProfile("OFF")), Texts{"False"});
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, EveryGlossThatDiffersCountsAsTheOpposite) {
  EXPECT_EQ(adjustedGloss(kApplicable + factory("X.Plain.Best", "N;;/n") + factory(".Plain.", "N;;/n") +
                              factory("true.Plain.Best", "N;;/n"),
                          oneProfile("FULLPAGE")),
            (Texts{"True", "False", "False", "False"}));
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, TheOutputModeOfAnAddedEntryIsTheSpecsThirdPart) {
  const DeviceValue record = mediumWithProfiles("Plain", oneProfile("OFF"));
  adjusted(kApplicable + factory("True.Plain.", "N;;/n"), record);
  const auto added = record.valueForKey("ICCProfiles").list()->back().valueForKey("OutputMode");
  EXPECT_FALSE(added.isAbsent());
  EXPECT_EQ(added.description(), "");
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, TakesOnlyFactoryStatementsOfTheMediumWithThreeParts) {
  EXPECT_EQ(adjustedGloss(kApplicable + factory("True.Other.Best", "N;;/n") + factory("True.Plain", "N;;/n") +
                              factory("True.Plain.Best.X", "N;;/n") + factory("True.plain.Best", "N;;/n") +
                              factory("True.Plain2.Best", "N;;/n") + factory("Plain.True.Best", "N;;/n") +
                              factory("True..Plain.", "N;;/n") + "*QZcupsICCProfile: \"N;;/n\"\n",
                          oneProfile("OFF")),
            Texts{"False"});
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, TakesOnlyFactoryStatementsWithANameAndAPath) {
  EXPECT_EQ(adjustedGloss(kApplicable + factory("True.Plain.Best", "no path") + factory("True.Plain.Best", ";;/n") +
                              factory("True.Plain.Best", "N;;") + factory("True.Plain.Best", "N;;/n;;x") +
                              "*QZcupsICCProfile True.Plain.Best/F: N;;/n\n",
                          oneProfile("OFF")),
            Texts{"False"});
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, AddsNothingToTwoProfilesOrNone) {
  const std::string document = kApplicable + factory("True.Plain.Best", "N;;/n");
  EXPECT_EQ(adjustedGloss(document, listOf({profile("A", "/a", "OFF"), profile("B", "/b", "OFF")})),
            (Texts{"False", "False"}));
  EXPECT_EQ(adjustedGloss(document, listOf({})), Texts());
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, AdjustingAgainChangesNothingMore) {
  const std::string document = kApplicable + factory("True.Plain.Best", "N;;/n");
  const DeviceValue record = mediumWithProfiles("Plain", oneProfile("OFF"));
  adjusted(document, adjusted(document, record));
  EXPECT_EQ(inProfilesOf(record, "GlossEnhancer"), (Texts{"False", "True"}));
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, AnEntryWithoutAGlossValueEndsTheAdjustmentAndKeepsWhatWasConverted) {
  const DeviceValue record = mediumWithProfiles(
      "Plain", listOf({profile("A", "/a", "OFF"), profile("B", "/b"), profile("C", "/c", "FULLPAGE")}));
  EXPECT_THROW(adjusted(kApplicable, record), ATException);
  EXPECT_EQ(inProfilesOf(record, "GlossEnhancer"), (Texts{"False", "(null)", "FULLPAGE"}));
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, AListThatIsNoListHasNothingToAdjust) {
  const DeviceValue record = mediumWithProfiles("Plain", "text");
  EXPECT_EQ(adjusted(kApplicable, record).valueForKey("ICCProfiles").description(), "text");
}

// The spec

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, TheSpecHasGlossAndOutputModeAroundTheMedium) {
  for (const std::string& document : {kApplicable, kOtherQualifier, std::string()}) {
    const auto ppd = documentFromText(document);
    const auto specOf = [&](const DeviceValue& entry) {
      return Updater().profileSpecFromMediaData(mapOf({{"PPDName", "Plain"}}), entry, *ppd);
    };
    EXPECT_EQ(specOf(profile("N", "/n", "True", "Best")), "True.Plain.Best");
    EXPECT_EQ(specOf(profile("N", "/n", "True")), "True.Plain.");
    EXPECT_EQ(specOf(profile("N", "/n", {}, "Best")), ".Plain.Best");
    EXPECT_EQ(specOf(profile("N", "/n")), ".Plain.");
    EXPECT_EQ(specOf(profile("N", "/n", "", "")), ".Plain.");
    EXPECT_EQ(specOf(profile("N", "/n", number(1), number(600))), "1.Plain.600");
  }
}

// Adding

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, AddsTheDevicesProfileAndTheOppositeFactoryProfiles) {
  const std::string document =
      kApplicable + factory("True.Plain.Best", "Best;;/best") + factory("True.Plain.Normal", "Normal;;/my normal");
  const auto ppd = documentFromText(document);
  EXPECT_TRUE(Updater().addICCProfileForMediaWithData(mediumWithProfiles("Plain", oneProfile("OFF", "Fast")), *ppd));
  EXPECT_EQ(textOf(*ppd), document + statement("False.Plain.Fast", "Device", "/device") +
                              statement("True.Plain.Best", "Best", "/best") +
                              statement("True.Plain.Normal", "Normal", "/my normal"));
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, AddsAnUnconvertedProfileWhenItDoesNotApply) {
  const auto ppd = documentFromText(kOtherQualifier);
  EXPECT_TRUE(Updater().addICCProfileForMediaWithData(mediumWithProfiles("Plain", oneProfile("FULLPAGE")), *ppd));
  EXPECT_EQ(textOf(*ppd), kOtherQualifier + statement("FULLPAGE.Plain.Best", "Device", "/device"));
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, AddWithoutAGlossValueFailsAndLogsTheRecordThatItGot) {
  const auto ppd = documentFromText(kApplicable);
  const DeviceValue record = mediumWithProfiles("Plain", listOf({profile("A", "/a", "OFF"), profile("B", "/b")}));
  const TestLog log;
  EXPECT_FALSE(Updater().addICCProfileForMediaWithData(record, *ppd));
  EXPECT_EQ(textOf(*ppd), kApplicable);
  EXPECT_EQ(inProfilesOf(record, "GlossEnhancer"), (Texts{"False", "(null)"}));
  const Texts messages = log.messages(kAddSignature);
  ASSERT_EQ(messages.size(), logged({""}).size());
  const std::string beginning = "INFO: Cannot add profile from " + record.description() + ", reason: ";
  for (const std::string& message : messages) {
    EXPECT_TRUE(message.starts_with(beginning)) << message;
    EXPECT_GT(message.size(), beginning.size());
  }
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, AddWithoutProfilesIsTheInheritedRefusal) {
  const auto ppd = documentFromText(kApplicable);
  const DeviceValue record = mapOf({{"PPDName", "Plain"}});
  const TestLog log;
  EXPECT_FALSE(Updater().addICCProfileForMediaWithData(record, *ppd));
  EXPECT_FALSE(Updater().addICCProfileForMediaWithData(mediumWithProfiles("Plain", "text"), *ppd));
  EXPECT_EQ(log.messages(kAddSignature), Texts());
  EXPECT_EQ(log.messages("-[ATMediaTypePCL3PPDUpdater addICCProfileForMediaWithData:toPPD:]").size(),
            logged({"", ""}).size());
}

namespace {

// Fails while it works a spec out, with an exception of the given kind.
template <class Exception>
struct Failing : Updater {
  std::string profileSpecFromMediaData(const Record& /*record*/, const ProfileEntry& profileInfo,
                                       const ATPPD& /*ppd*/) const override {
    if (profileInfo.valueForKey("ICCName").equals("bad")) throw Exception{};
    return "spec";
  }
};

struct Broken : std::runtime_error {
  Broken() : std::runtime_error("broken") {}
};

// Fails while it removes the statements of a medium.
template <class Exception>
struct FailingSet : Updater {
  void removeSpecializedICCQualifiers(ATPPD& /*ppd*/, const Record& /*aMediaTypeData*/) const override {
    throw Exception{};
  }
};

template <class Exception>
void expectGuarded() {
  const DeviceValue record =
      mediumWithProfiles("P", listOf({profile("good", "/g", "OFF"), profile("bad", "/b", "OFF")}));
  const auto added = documentFromText("");
  EXPECT_FALSE(Failing<Exception>().addICCProfileForMediaWithData(record, *added));
  EXPECT_EQ(textOf(*added), statement("spec", "good", "/g"));
  const auto kept = documentFromText(statement(".P.", "Old", "/old"));
  EXPECT_NO_THROW(FailingSet<Exception>().setICCProfileForMediaWithData(record, *kept));
  EXPECT_EQ(textOf(*kept), statement(".P.", "Old", "/old"));
}

}  // namespace

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, TheGuardCatchesEveryExceptionAndWhatWasAddedStays) {
  expectGuarded<Broken>();
  expectGuarded<int>();
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, ALackOfMemoryIsNotCaught) {
  const DeviceValue record = mediumWithProfiles("P", listOf({profile("bad", "/b", "OFF")}));
  const auto ppd = documentFromText("");
  EXPECT_THROW(Failing<std::bad_alloc>().addICCProfileForMediaWithData(record, *ppd), std::bad_alloc);
  EXPECT_THROW(Failing<std::bad_alloc>().setICCProfileForMediaWithData(record, *ppd), std::bad_alloc);
  EXPECT_THROW(FailingSet<std::bad_alloc>().setICCProfileForMediaWithData(record, *ppd), std::bad_alloc);
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, LogsTheReasonOfTheException) {
  const auto ppd = documentFromText("");
  const DeviceValue record = mediumWithProfiles("P", listOf({profile("bad", "/b", "OFF")}));
  const TestLog log;
  EXPECT_FALSE(Failing<Broken>().addICCProfileForMediaWithData(record, *ppd));
  FailingSet<Broken>().setICCProfileForMediaWithData(record, *ppd);
  EXPECT_EQ(log.messages(kAddSignature),
            logged({"INFO: Cannot add profile from " + record.description() + ", reason: broken"}));
  EXPECT_EQ(log.messages(kSetSignature),
            logged({"INFO: Cannot set profile from " + record.description() + ", reason: broken"}));
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, ARecordThatIsNoMapFailsInsideTheGuard) {
  const auto ppd = documentFromText(kApplicable);
  EXPECT_FALSE(Updater().addICCProfileForMediaWithData("text", *ppd));
  EXPECT_NO_THROW(Updater().setICCProfileForMediaWithData("text", *ppd));
  EXPECT_FALSE(Updater().addICCProfileForMediaWithData(mediumWithProfiles("P", listOf({"text"})), *ppd));
  EXPECT_EQ(textOf(*ppd), kApplicable);
}

// Removing

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, RemovesEveryProfileOfTheMediumWithItsLocalizations) {
  const std::string languages = "*cupsLanguages: \"en de\"\n";
  const std::string kept = statement("True.Other.Best", "O", "/o") + statement("True.Plain", "2", "/2") +
                           statement("True.Plain.Best.X", "4", "/4") + statement("Plain.True.Best", "P", "/p") +
                           statement("True.plain.Best", "L", "/l") + "*cupsICCProfile: \"none\"\n";
  EXPECT_EQ(afterRemoval(languages + statement("True.Plain.Best", "T", "/t") + localized("de", "True.Plain.Best", "T") +
                             statement("False.Plain.Best", "F", "/f") + statement(".Plain.", "G", "/g") +
                             localized("de", ".Plain.", "G") + statement("RGB.Plain.600", "R", "/r") +
                             statement(".Plain.", "G2", "/g2") + kept,
                         mapOf({{"PPDName", "Plain"}})),
            languages + kept);
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, WithoutAMediumRemovesNothing) {
  const std::string text = kApplicable + statement(".(null).", "N", "/n") + statement("..", "E", "/e") + kOutputMode;
  EXPECT_EQ(afterRemoval(text, mapOf({})), text);
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, AnEmptyMediumHasTheStatementsWithAnEmptyMiddlePart) {
  EXPECT_EQ(afterRemoval(statement("..", "E", "/e") + statement("True..Best", "T", "/t") + statement(".P.", "P", "/p"),
                         mapOf({{"PPDName", ""}})),
            statement(".P.", "P", "/p"));
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, RemovingEndsWithTheInheritedRemoval) {
  // The spec of the choice "a.b" has four parts, so only the inherited removal finds it.
  const std::string document =
      "*cupsICCQualifier3: \"Mode\"\n" + statement(".Plain.a.b", "N", "/n") + optionWithChoices("Mode", "a.b", {"a.b"});
  EXPECT_EQ(afterRemoval(document, mapOf({{"PPDName", "Plain"}})),
            "*cupsICCQualifier3: \"Mode\"\n" + optionWithChoices("Mode", "a.b", {"a.b"}));
}

// Setting

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, SetReplacesEveryStatementOfTheMedium) {
  const std::string factories =
      kApplicable + factory("True.Plain.Best", "Best;;/best") + factory("False.Plain.Best", "Off;;/off");
  const std::string other = statement("True.Other.Best", "O", "/o");
  const auto ppd = documentFromText(factories + statement("True.Plain.Best", "Best", "/best") +
                                    statement("False.Plain.Best", "Off", "/off") + statement(".Plain.", "G", "/g") +
                                    other + kPlain + kOutputMode);
  const DeviceValue record = mapOf({{"ID", "12"}, {"ICCProfiles", oneProfile("OFF")}});
  Updater().setICCProfileForMediaWithData(record, *ppd);
  EXPECT_EQ(textOf(*ppd), factories + other + statement("False.Plain.Best", "Device", "/device") +
                              statement("True.Plain.Best", "Best", "/best") + kPlain + kOutputMode);
  EXPECT_EQ(inProfilesOf(record, "GlossEnhancer"), (Texts{"False", "True"}));
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, SetWithoutAGlossValueChangesNothingAndLogs) {
  const std::string text = kApplicable + statement("True.Plain.Best", "B", "/b");
  const auto ppd = documentFromText(text);
  const DeviceValue record = mediumWithProfiles("Plain", listOf({profile("A", "/a")}));
  const TestLog log;
  Updater().setICCProfileForMediaWithData(record, *ppd);
  EXPECT_EQ(textOf(*ppd), text);
  const Texts messages = log.messages(kSetSignature);
  ASSERT_EQ(messages.size(), logged({""}).size());
  for (const std::string& message : messages) {
    EXPECT_TRUE(message.starts_with("INFO: Cannot set profile from " + record.description() + ", reason: ")) << message;
  }
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, SetOfAMediumWithoutProfilesRemovesItsStatements) {
  const auto ppd = documentFromText(kApplicable + statement("True.Plain.Best", "B", "/b"));
  Updater().setICCProfileForMediaWithData(mapOf({{"PPDName", "Plain"}}), *ppd);
  EXPECT_EQ(textOf(*ppd), kApplicable);
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, SetAdjustsAndCallsTheMostDerivedRemovalAndAdd) {
  struct Adjusting : TracedQualifier3<Updater> {
    Record adjustedMediaData(const Record& record, const ATPPD& toPPD) const override {
      trace.add("adjust");
      return Updater::adjustedMediaData(record, toPPD);
    }
    bool isApplicableToPPD(const ATPPD& ppd) const override {
      trace.add("isApplicable");
      return Updater::isApplicableToPPD(ppd);
    }
  };
  const auto ppd = documentFromText(kApplicable + factory("True.Plain.Best", "B;;/b"));
  const Adjusting updater;
  const DeviceValue record = mediumWithProfiles("Plain", oneProfile("OFF"));
  updater.setICCProfileForMediaWithData(record, *ppd);
  EXPECT_EQ(updater.trace.among({"setICCProfile", "adjust", "isApplicable", "removeSpecialized", "addICCProfile"}),
            (Texts{"setICCProfile", "adjust", "isApplicable", "removeSpecialized", "addICCProfile", "adjust",
                   "isApplicable"}));
  EXPECT_EQ(updater.trace.count("profileSpec"), 2);
  EXPECT_EQ(specsOf(*ppd, "cupsICCProfile"), (Texts{"False.Plain.Best", "True.Plain.Best"}));
}

// Restoring

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, RestoringRemovesTheStatementsOfBothGlossSettings) {
  const std::string languages = "*cupsLanguages: \"en de\"\n";
  const std::string kept = statement(".Plain.Best", "G", "/g") + statement("true.Plain.Best", "L", "/l") +
                           statement("Truer.Plain.Best", "R", "/r") + statement(".True.Best", "M", "/m") +
                           "*cupsICCProfile: \"none\"\n";
  EXPECT_EQ(afterRestore<Updater>(languages + statement("True.Plain.Best", "T", "/t") +
                                  localized("de", "True.Plain.Best", "T") + statement("False.Plain.", "F", "/f") +
                                  statement("True", "1", "/1") + statement("False.a.b.c", "4", "/4") +
                                  statement("True.Plain.Best", "T2", "/t2") + kept),
            languages + kept);
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, RestoringMakesTheFactoryStatementsAnew) {
  const std::string factories = kApplicable + factory("True.Plain.Best", "Best;;/best") +
                                factory("False.Plain.Best", "Off;;/off") + factory("True.Plain.Fast", "no path");
  EXPECT_EQ(
      afterRestore<Updater>(factories + statement("True.Plain.Best", "Device", "/device") +
                            statement("True.Plain.Fast", "Fast", "/fast") + statement("False.Custom1.", "C", "/c")),
      factories + statement("True.Plain.Best", "Best", "/best") + statement("False.Plain.Best", "Off", "/off"));
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, RestoringEndsWithTheInheritedRestore) {
  const std::string factories = factory(".Plain.Fast", "Fast;;/fast");
  EXPECT_EQ(afterRestore<Updater>(factories + statement(".Plain.", "Device", "/device")),
            factories + statement(".Plain.Fast", "Fast", "/fast"));
  EXPECT_THROW(afterRestore<Updater>(factory("NoDot", "N;;/n")), ATException);
}

TEST(ATMediaTypePCL3Qualifier1PPDUpdater, ARunOfItsOwnOutputGivesTheSame) {
  const std::string factories =
      kApplicable + factory("True.Plain.Best", "Best;;/best") + factory("False.Plain.Best", "Off;;/off");
  std::string text = factories + statement("True.Plain.Best", "Best", "/best") +
                     statement("False.Plain.Best", "Off", "/off") + kPlain + kOutputMode;
  const std::string expected = factories + statement("False.Plain.Best", "Device", "/device") +
                               statement("True.Plain.Best", "Best", "/best") + "*QZMediaListVersion: 17\n" + kPlain +
                               kOutputMode;
  for (int run = 1; run <= 2; ++run) {
    const auto ppd = documentFromText(text);
    const FakeReader reader(mediaList({mapOf({{"ID", "12"}, {"ICCProfiles", oneProfile("OFF")}})}));
    EXPECT_TRUE(Updater().updatePPD(ppd.get(), &reader));
    text = textOf(*ppd);
    EXPECT_EQ(text, expected) << "run " << run;
  }
}
