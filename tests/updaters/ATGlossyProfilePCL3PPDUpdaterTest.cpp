// SPDX-License-Identifier: MIT
#include "updaters/ATGlossyProfilePCL3PPDUpdater.h"

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
using Updater = ATGlossyProfilePCL3PPDUpdater;

constexpr const char* kAddSignature = "-[ATGlossyProfilePCL3PPDUpdater addICCProfileForMediaWithData:toPPD:]";
constexpr const char* kSetSignature = "-[ATGlossyProfilePCL3PPDUpdater setICCProfileForMediaWithData:inPPD:]";

const std::string kQualifier = "*cupsICCQualifier3: \"QZGlossEnhancer\"\n";
const std::string kGlossy = kQualifier + "*QZValueAttributes MediaType.P: \"glossy=YES\"\n";

DeviceValue converted(const DeviceValue& record) {
  return Updater().mediaInfoByConvertDeviceData(record, *documentFromText(""));
}

// The profile with this gloss value, with a name and a file after it.
DeviceValue glossProfile(const DeviceValue& gloss, const std::string& name) {
  return profile(name, "file:///" + name, gloss);
}

Texts convertedGloss(const DeviceValue& profiles) {
  return inProfilesOf(converted(mediumWithProfiles("P", profiles)), "GlossEnhancer");
}

std::string specOf(const std::string& document, const DeviceValue& entry, const char* choiceName = "P") {
  return Updater().profileSpecFromMediaData(mapOf({{"PPDName", choiceName}}), entry, *documentFromText(document));
}

DeviceValue fullPageAndOff() {
  return listOf({glossProfile("FULLPAGE", "full"), glossProfile("OFF", "off")});
}

}  // namespace

// Converting

TEST(ATGlossyProfilePCL3PPDUpdater, ConvertsThreeGlossValuesAndKeepsTheOthers) {
  EXPECT_EQ(
      convertedGloss(listOf({glossProfile("OFF", "a"), glossProfile("INKEDAREA", "b"), glossProfile("FULLPAGE", "c"),
                             glossProfile("off", "d"), glossProfile("OFF ", "e"), glossProfile("", "f"),
                             glossProfile("whole-page-ge", "g"), glossProfile(number(1), "h")})),
      (Texts{"off-ge", "economode-ge", "whole-page-ge", "off", "OFF ", "", "whole-page-ge", "1"}));
}

TEST(ATGlossyProfilePCL3PPDUpdater, AWholePageProfileServesForEconomyModeToo) {
  const DeviceValue record =
      mediumWithProfiles("P", listOf({profile("N", "file:///n", "FULLPAGE", "Best"), glossProfile("OFF", "off")}));
  record.valueForKey("ICCProfiles").list()->front().map()->set("Extra", "kept");
  converted(record);
  EXPECT_EQ(inProfilesOf(record, "GlossEnhancer"), (Texts{"whole-page-ge", "off-ge", "economode-ge"}));
  EXPECT_EQ(inProfilesOf(record, "ICCName"), (Texts{"N", "off", "N"}));
  EXPECT_EQ(inProfilesOf(record, "URL"), (Texts{"file:///n", "file:///off", "file:///n"}));
  EXPECT_EQ(inProfilesOf(record, "OutputMode"), (Texts{"Best", "(null)", "Best"}));
  EXPECT_EQ(inProfilesOf(record, "Extra"), (Texts{"kept", "(null)", "kept"}));
}

TEST(ATGlossyProfilePCL3PPDUpdater, TheEconomyEntryIsACopyOfItsOwn) {
  const DeviceValue record = mediumWithProfiles("P", listOf({glossProfile("FULLPAGE", "n")}));
  converted(record);
  const auto profiles = record.valueForKey("ICCProfiles").list();
  ASSERT_EQ(profiles->size(), 2U);
  EXPECT_NE(profiles->front().map(), profiles->back().map());
}

TEST(ATGlossyProfilePCL3PPDUpdater, WithAnInkedAreaProfileNoneIsAdded) {
  EXPECT_EQ(convertedGloss(listOf({glossProfile("FULLPAGE", "a"), glossProfile("INKEDAREA", "b")})),
            (Texts{"whole-page-ge", "economode-ge"}));
  EXPECT_EQ(convertedGloss(listOf({glossProfile("INKEDAREA", "b"), glossProfile("FULLPAGE", "a")})),
            (Texts{"economode-ge", "whole-page-ge"}));
}

TEST(ATGlossyProfilePCL3PPDUpdater, WithoutAWholePageProfileNoneIsAdded) {
  EXPECT_EQ(convertedGloss(listOf({glossProfile("OFF", "a"), glossProfile("X", "b")})), (Texts{"off-ge", "X"}));
}

TEST(ATGlossyProfilePCL3PPDUpdater, TheLaterOfTwoWholePageProfilesIsCopied) {
  const DeviceValue record = mediumWithProfiles(
      "P", listOf({glossProfile("FULLPAGE", "first"), glossProfile("FULLPAGE", "later"), glossProfile("OFF", "off")}));
  converted(record);
  EXPECT_EQ(inProfilesOf(record, "GlossEnhancer"), (Texts{"whole-page-ge", "whole-page-ge", "off-ge", "economode-ge"}));
  EXPECT_EQ(inProfilesOf(record, "ICCName"), (Texts{"first", "later", "off", "later"}));
}

TEST(ATGlossyProfilePCL3PPDUpdater, OnlyDeviceValuesCountForTheEconomyEntry) {
  EXPECT_EQ(convertedGloss(listOf({glossProfile("FULLPAGE", "a"), glossProfile("economode-ge", "b")})),
            (Texts{"whole-page-ge", "economode-ge", "economode-ge"}));
}

TEST(ATGlossyProfilePCL3PPDUpdater, ConvertingAgainChangesNothingMore) {
  const DeviceValue record = mediumWithProfiles("P", fullPageAndOff());
  converted(converted(record));
  EXPECT_EQ(inProfilesOf(record, "GlossEnhancer"), (Texts{"whole-page-ge", "off-ge", "economode-ge"}));
}

TEST(ATGlossyProfilePCL3PPDUpdater, SharesListAndEntriesWithTheCallersRecord) {
  const DeviceValue record = mediumWithProfiles("P", fullPageAndOff());
  const DeviceValue result = converted(record);
  EXPECT_NE(result.map(), record.map());
  EXPECT_EQ(result.valueForKey("ICCProfiles").list(), record.valueForKey("ICCProfiles").list());
  EXPECT_EQ(result.valueForKey("PPDName").description(), "P");
}

TEST(ATGlossyProfilePCL3PPDUpdater, WithoutProfilesNothingChanges) {
  EXPECT_TRUE(converted(mapOf({{"PPDName", "P"}})).valueForKey("ICCProfiles").isAbsent());
  EXPECT_EQ(convertedGloss(listOf({})), Texts());
  EXPECT_EQ(converted(mediumWithProfiles("P", "text")).valueForKey("ICCProfiles").description(), "text");
}

TEST(ATGlossyProfilePCL3PPDUpdater, AnEntryWithoutAGlossValueEndsTheConversionAndKeepsWhatWasConverted) {
  const DeviceValue record =
      mediumWithProfiles("P", listOf({glossProfile("FULLPAGE", "a"), glossProfile({}, "b"), glossProfile("OFF", "c")}));
  EXPECT_THROW(converted(record), ATException);
  EXPECT_EQ(inProfilesOf(record, "GlossEnhancer"), (Texts{"whole-page-ge", "(null)", "OFF"}));
}

// The spec

TEST(ATGlossyProfilePCL3PPDUpdater, TheSpecOfAGlossyMediumEndsWithTheGlossValue) {
  EXPECT_EQ(specOf(kGlossy, glossProfile("whole-page-ge", "n")), ".P.whole-page-ge");
  EXPECT_EQ(specOf(kQualifier + "*QZValueAttributes MediaType.P: \"a;GESupport=YES\"\n", glossProfile("off-ge", "n")),
            ".P.off-ge");
  EXPECT_EQ(specOf(kGlossy, glossProfile("FULLPAGE", "n")), ".P.FULLPAGE");
  EXPECT_EQ(specOf(kGlossy, glossProfile(number(1), "n")), ".P.1");
}

TEST(ATGlossyProfilePCL3PPDUpdater, WithoutAGlossValueTheSpecIsTheGeneralOne) {
  EXPECT_EQ(specOf(kGlossy, glossProfile({}, "n")), ".P.");
  EXPECT_EQ(specOf(kGlossy, glossProfile("", "n")), ".P.");
}

TEST(ATGlossyProfilePCL3PPDUpdater, TheSpecOfAnotherMediumIsTheGeneralOne) {
  EXPECT_EQ(specOf(kQualifier, glossProfile("off-ge", "n")), ".P.");
  EXPECT_EQ(specOf(kQualifier + "*QZValueAttributes MediaType.P: \"glossy=NO\"\n", glossProfile("off-ge", "n")), ".P.");
  EXPECT_EQ(specOf(kGlossy, glossProfile("off-ge", "n"), "Q"), ".Q.");
  EXPECT_EQ(specOf(kQualifier + "*QZValueAttributes P: \"glossy=YES\"\n", glossProfile("off-ge", "n")), ".P.");
}

TEST(ATGlossyProfilePCL3PPDUpdater, WhetherAMediumWithoutPropertiesIsGlossyIsAskedToo) {
  struct Glossy : Updater {
    bool isGlossyMediaWithAttributes(const ATPPDAttribute::Part& properties) const override { return !properties; }
  };
  const auto ppd = documentFromText("*cupsICCQualifier3: \"QZGlossEnhancer\"\n");
  EXPECT_EQ(Glossy().profileSpecFromMediaData(mapOf({{"PPDName", "P"}}), glossProfile("off-ge", "n"), *ppd),
            ".P.off-ge");
}

TEST(ATGlossyProfilePCL3PPDUpdater, WithoutTheQualifierStatementTheSpecIsTheGeneralOne) {
  EXPECT_EQ(specOf("*QZValueAttributes MediaType.P: \"glossy=YES\"\n", glossProfile("off-ge", "n")), ".P.");
}

TEST(ATGlossyProfilePCL3PPDUpdater, TheValueOfTheQualifierStatementDoesNotMatter) {
  for (const char* qualifier :
       {"*cupsICCQualifier3: \"Anything\"\n", "*cupsICCQualifier3: \"\"\n", "*cupsICCQualifier3 a/b: x\n"}) {
    EXPECT_EQ(specOf(std::string("*QZValueAttributes MediaType.P: \"glossy=YES\"\n") + qualifier,
                     glossProfile("off-ge", "n")),
              ".P.off-ge");
  }
}

TEST(ATGlossyProfilePCL3PPDUpdater, TheMediumOfAnIDIsItsChoice) {
  const auto ppd = documentFromText(kGlossy + mediaTypes("*MediaType P/P: \"12\"\n"));
  EXPECT_EQ(Updater().profileSpecFromMediaData(mapOf({{"ID", "12"}}), glossProfile("off-ge", "n"), *ppd), ".P.off-ge");
  EXPECT_EQ(Updater().profileSpecFromMediaData(mapOf({}), glossProfile("off-ge", "n"), *ppd), ".(null).");
}

// Adding

TEST(ATGlossyProfilePCL3PPDUpdater, AddsAStatementForEachGlossValueOfAGlossyMedium) {
  const std::string document = "*cupsLanguages: \"en de\"\n" + kGlossy;
  const auto ppd = documentFromText(document);
  EXPECT_TRUE(Updater().addICCProfileForMediaWithData(mediumWithProfiles("P", fullPageAndOff()), *ppd));
  EXPECT_EQ(textOf(*ppd), document + statement(".P.whole-page-ge", "full", "/full") +
                              "*de.cupsICCProfile .P.whole-page-ge/full: \"\"\n" +
                              statement(".P.off-ge", "off", "/off") + "*de.cupsICCProfile .P.off-ge/off: \"\"\n" +
                              statement(".P.economode-ge", "full", "/full") +
                              "*de.cupsICCProfile .P.economode-ge/full: \"\"\n");
}

TEST(ATGlossyProfilePCL3PPDUpdater, AddsStatementsOfOneSpecForAnotherMedium) {
  const auto ppd = documentFromText(kQualifier);
  EXPECT_TRUE(Updater().addICCProfileForMediaWithData(mediumWithProfiles("P", fullPageAndOff()), *ppd));
  EXPECT_EQ(textOf(*ppd), kQualifier + statement(".P.", "full", "/full") + statement(".P.", "off", "/off") +
                              statement(".P.", "full", "/full"));
}

TEST(ATGlossyProfilePCL3PPDUpdater, AddLeavesTheConvertedValuesInTheCallersRecord) {
  const auto ppd = documentFromText("");
  const DeviceValue record = mediumWithProfiles("P", fullPageAndOff());
  Updater().addICCProfileForMediaWithData(record, *ppd);
  EXPECT_EQ(inProfilesOf(record, "GlossEnhancer"), (Texts{"whole-page-ge", "off-ge", "economode-ge"}));
}

TEST(ATGlossyProfilePCL3PPDUpdater, AddWithoutAGlossValueFailsAndLogsTheRecordThatItGot) {
  const auto ppd = documentFromText(kGlossy);
  const DeviceValue record = mediumWithProfiles("P", listOf({glossProfile("OFF", "a"), glossProfile({}, "b")}));
  const TestLog log;
  EXPECT_FALSE(Updater().addICCProfileForMediaWithData(record, *ppd));
  EXPECT_EQ(textOf(*ppd), kGlossy);
  EXPECT_EQ(inProfilesOf(record, "GlossEnhancer"), (Texts{"off-ge", "(null)"}));
  const std::string beginning = "INFO: Cannot add profile from " + record.description() + ", reason: ";
  const Texts messages = log.messages(kAddSignature);
  ASSERT_EQ(messages.size(), logged({""}).size());
  for (const std::string& message : messages) {
    EXPECT_TRUE(message.starts_with(beginning)) << message;
    EXPECT_GT(message.size(), beginning.size());
  }
}

TEST(ATGlossyProfilePCL3PPDUpdater, AddWithoutProfilesIsTheInheritedRefusal) {
  const auto ppd = documentFromText(kGlossy);
  const TestLog log;
  EXPECT_FALSE(Updater().addICCProfileForMediaWithData(mapOf({{"PPDName", "P"}}), *ppd));
  EXPECT_FALSE(Updater().addICCProfileForMediaWithData(mediumWithProfiles("P", listOf({})), *ppd));
  EXPECT_FALSE(Updater().addICCProfileForMediaWithData(mediumWithProfiles("P", "text"), *ppd));
  EXPECT_EQ(log.messages(kAddSignature), Texts());
  EXPECT_EQ(log.messages("-[ATMediaTypePCL3PPDUpdater addICCProfileForMediaWithData:toPPD:]").size(),
            logged({"", "", ""}).size());
}

// Setting

TEST(ATGlossyProfilePCL3PPDUpdater, SetsTheStatementOfEachGlossValueOfAGlossyMedium) {
  const auto ppd =
      documentFromText(kGlossy + statement(".P.off-ge", "1", "/1") + statement(".P.economode-ge", "2", "/2") +
                       statement(".P.whole-page-ge", "3", "/3") + statement(".P.", "4", "/4"));
  Updater().setICCProfileForMediaWithData(mediumWithProfiles("P", fullPageAndOff()), *ppd);
  EXPECT_EQ(textOf(*ppd), kGlossy + statement(".P.off-ge", "off", "/off") +
                              statement(".P.economode-ge", "full", "/full") +
                              statement(".P.whole-page-ge", "full", "/full") + statement(".P.", "4", "/4"));
}

TEST(ATGlossyProfilePCL3PPDUpdater, SetOfAnotherMediumRewritesItsStatementOncePerEntryAndTheLastWins) {
  const auto ppd = documentFromText(kQualifier + statement(".P.", "Old", "/old"));
  const TestLog log;
  Updater().setICCProfileForMediaWithData(
      mediumWithProfiles("P", listOf({glossProfile("OFF", "off"), glossProfile("INKEDAREA", "inked")})), *ppd);
  EXPECT_EQ(textOf(*ppd), kQualifier + statement(".P.", "inked", "/inked"));
  EXPECT_EQ(log.messages("-[ATMediaTypePCL3PPDUpdater setICCProfileForMediaWithData:inPPD:]"),
            logged({"Found factory ICC profile: .P.", "Found factory ICC profile: .P."}));
}

TEST(ATGlossyProfilePCL3PPDUpdater, SetAddsNoStatement) {
  const auto ppd = documentFromText(kGlossy);
  Updater().setICCProfileForMediaWithData(mediumWithProfiles("P", fullPageAndOff()), *ppd);
  EXPECT_EQ(textOf(*ppd), kGlossy);
}

TEST(ATGlossyProfilePCL3PPDUpdater, SetWithoutAGlossValueChangesNothingAndLogs) {
  const std::string text = kGlossy + statement(".P.off-ge", "1", "/1");
  const auto ppd = documentFromText(text);
  const DeviceValue record = mediumWithProfiles("P", listOf({glossProfile("OFF", "a"), glossProfile({}, "b")}));
  const TestLog log;
  Updater().setICCProfileForMediaWithData(record, *ppd);
  EXPECT_EQ(textOf(*ppd), text);
  const Texts messages = log.messages(kSetSignature);
  ASSERT_EQ(messages.size(), logged({""}).size());
  for (const std::string& message : messages) {
    EXPECT_TRUE(message.starts_with("INFO: Cannot set profile from " + record.description() + ", reason: ")) << message;
  }
}

// The guard

namespace {

// Fails while it works the spec of the entry named "bad" out.
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

template <class Exception>
void expectGuarded() {
  const DeviceValue record = mediumWithProfiles("P", listOf({glossProfile("OFF", "good"), glossProfile("OFF", "bad")}));
  const auto added = documentFromText("");
  EXPECT_FALSE(Failing<Exception>().addICCProfileForMediaWithData(record, *added));
  EXPECT_EQ(textOf(*added), statement("spec", "good", "/good"));
  const auto changed = documentFromText(statement("spec", "Old", "/old"));
  EXPECT_NO_THROW(Failing<Exception>().setICCProfileForMediaWithData(record, *changed));
  EXPECT_EQ(textOf(*changed), statement("spec", "good", "/good"));
}

}  // namespace

TEST(ATGlossyProfilePCL3PPDUpdater, TheGuardCatchesEveryExceptionAndWhatWasChangedStays) {
  expectGuarded<Broken>();
  expectGuarded<int>();
}

TEST(ATGlossyProfilePCL3PPDUpdater, ALackOfMemoryIsNotCaught) {
  const DeviceValue record = mediumWithProfiles("P", listOf({glossProfile("OFF", "bad")}));
  const auto ppd = documentFromText("");
  EXPECT_THROW(Failing<std::bad_alloc>().addICCProfileForMediaWithData(record, *ppd), std::bad_alloc);
  EXPECT_THROW(Failing<std::bad_alloc>().setICCProfileForMediaWithData(record, *ppd), std::bad_alloc);
}

TEST(ATGlossyProfilePCL3PPDUpdater, LogsTheReasonOfTheException) {
  const auto ppd = documentFromText("");
  const DeviceValue record = mediumWithProfiles("P", listOf({glossProfile("off-ge", "bad")}));
  const TestLog log;
  EXPECT_FALSE(Failing<Broken>().addICCProfileForMediaWithData(record, *ppd));
  Failing<Broken>().setICCProfileForMediaWithData(record, *ppd);
  EXPECT_EQ(log.messages(kAddSignature),
            logged({"INFO: Cannot add profile from " + record.description() + ", reason: broken"}));
  EXPECT_EQ(log.messages(kSetSignature),
            logged({"INFO: Cannot set profile from " + record.description() + ", reason: broken"}));
}

TEST(ATGlossyProfilePCL3PPDUpdater, ValuesOfTheWrongTypeFailInsideTheGuard) {
  const auto ppd = documentFromText("");
  EXPECT_FALSE(Updater().addICCProfileForMediaWithData("text", *ppd));
  EXPECT_NO_THROW(Updater().setICCProfileForMediaWithData("text", *ppd));
  EXPECT_FALSE(Updater().addICCProfileForMediaWithData(mediumWithProfiles("P", listOf({"text"})), *ppd));
  EXPECT_FALSE(
      Updater().addICCProfileForMediaWithData(mediumWithProfiles("P", listOf({profile("N", number(1), "OFF")})), *ppd));
  EXPECT_NO_THROW(
      Updater().setICCProfileForMediaWithData(mediumWithProfiles("P", listOf({profile("N", number(1), "OFF")})), *ppd));
  EXPECT_EQ(textOf(*ppd), "");
}

TEST(ATGlossyProfilePCL3PPDUpdater, AFailingMediumDoesNotEndTheRun) {
  const DeviceValue bad = customMedium("Bad", "1");
  bad.map()->set("ICCProfiles", listOf({glossProfile({}, "n")}));
  const DeviceValue good = customMedium("Good", "2");
  good.map()->set("ICCProfiles", listOf({glossProfile("OFF", "n")}));
  const auto ppd = documentFromText(mediaTypes(""));
  const FakeReader reader(mediaList({bad, good}));
  EXPECT_TRUE(Updater().updatePPD(ppd.get(), &reader));
  EXPECT_EQ(specsOf(*ppd, "cupsICCProfile"), Texts{".Custom2."});
  EXPECT_EQ(valuesOf(*ppd, "QZMediaTypeGroup"), Texts{"\"Custom1,\nCustom2\"\n*End\n"});
}

// The whole run

TEST(ATGlossyProfilePCL3PPDUpdater, ACustomMediumThatInheritsGlossyPropertiesGetsAProfileForEachGlossValue) {
  const DeviceValue custom = customMedium("Canvas", "4711", "12");
  custom.map()->set("ICCProfiles", fullPageAndOff());
  const auto ppd = documentFromText(kGlossy + mediaTypes("*MediaType P/P: \"12\"\n"));
  const FakeReader reader(mediaList({custom}));
  EXPECT_TRUE(Updater().updatePPD(ppd.get(), &reader));
  EXPECT_EQ(specsOf(*ppd, "cupsICCProfile"),
            (Texts{".Custom1.whole-page-ge", ".Custom1.off-ge", ".Custom1.economode-ge"}));
}

TEST(ATGlossyProfilePCL3PPDUpdater, AddAndSetCallTheMostDerivedConversionAndSpec) {
  struct Converting : TracedPCL3<Updater> {
    Record mediaInfoByConvertDeviceData(const Record& record, const ATPPD& toPPD) const override {
      trace.add("convert");
      return Updater::mediaInfoByConvertDeviceData(record, toPPD);
    }
  };
  const auto ppd = documentFromText(kGlossy);
  const Converting updater;
  updater.addICCProfileForMediaWithData(mediumWithProfiles("P", listOf({glossProfile("OFF", "n")})), *ppd);
  updater.setICCProfileForMediaWithData(mediumWithProfiles("P", listOf({glossProfile("OFF", "m")})), *ppd);
  EXPECT_EQ(updater.trace.among({"convert", "profileSpec", "isGlossy", "mediaQualifier"}),
            (Texts{"convert", "profileSpec", "mediaQualifier", "isGlossy", "convert", "profileSpec", "mediaQualifier",
                   "isGlossy"}));
  EXPECT_EQ(textOf(*ppd), kGlossy + statement(".P.off-ge", "m", "/m"));
}
