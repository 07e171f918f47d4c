// SPDX-License-Identifier: MIT
#include "updaters/ATMediaTypePPDUpdater.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "base/ATException.h"
#include "tests/support/TestLog.h"
#include "tests/updaters/TestDevice.h"
#include "tests/updaters/TestDocument.h"
#include "tests/updaters/TracedUpdater.h"

namespace {

using Texts = std::vector<std::string>;

// The base class with a code for its choices: the ID and an "!".
class Updater : public ATMediaTypePPDUpdater {
 public:
  std::optional<std::string> mediaTypeChoiceCodeWithName(const std::string& choiceName,
                                                         const DeviceValue& ID) const override {
    codesFor.push_back(choiceName);
    return ID.description() + "!";
  }
  mutable Texts codesFor;
};

const std::string kHead = "*PPD-Adobe: \"4.3\"\n";
const std::string kLanguages = "*cupsLanguages: \"en de fr\"\n";
const std::string kPlain = "*MediaType Plain/Plain Paper: \"12\"\n";
const std::string kMatte = "*MediaType Matte/Matte Paper: \"345\"\n";
const std::string kVersion = "*QZMediaListVersion: 17\n";

std::string customGroup(const std::string& names) {
  return "*QZMediaTypeGroup CustomMedia-category/Custom Paper: \"" + names + "\"\n*End\n\n";
}

std::string extendedGroup(const std::string& names) {
  return "*QZMediaTypeGroup ExtendedCustomMedia-category/Custom Paper: \"" + names + "\"\n*End\n\n";
}

std::string updated(const std::string& text, const DeviceValue& data) {
  const auto ppd = documentFromText(text);
  const FakeReader reader(data);
  EXPECT_TRUE(Updater().updatePPD(ppd.get(), &reader));
  return textOf(*ppd);
}

// What an earlier setup left in a document.
const std::string kEarlierSetup = kHead +
                                  "*QZValueAttributes MediaType.Plain: \"a=b;defaultGE='x'\"\n"
                                  "*QZValueAttributes MediaType.Custom1: \"c=d\"\n"
                                  "*QZMediaTypeGroup CustomMedia-category/Custom Paper: \"Custom1,\n"
                                  "Custom2\"\n"
                                  "*End\n"
                                  "\n"
                                  "*QZMediaListVersion: 3\n" +
                                  mediaTypes(kPlain +
                                             "*MediaType Custom1/One: \"1\"\n"
                                             "*de.MediaType Custom1/One: \"\"\n"
                                             "*MediaType Custom2/Two: \"2\"\n");

Texts namesOfChoices(const ATPPD& ppd) {
  Texts names;
  for (const auto& choice : ATMediaTypePPDUpdater().mediaTypeOptionFromPPD(ppd)->choices()) {
    names.emplace_back(Text::orNull(choice->name()));
  }
  return names;
}

DeviceValue named(const char* choiceName, const DeviceValue& ID, const DeviceValue& mediaName,
                  const DeviceValue& parentID = {}) {
  return mapOf({{"PPDName", choiceName}, {"ID", ID}, {"MediaName", mediaName}, {"ParentID", parentID}});
}

// What adding the media leaves of a document.
std::string withAdded(const std::string& text, const DeviceValue& record, bool succeeds = true) {
  const auto ppd = documentFromText(text);
  EXPECT_EQ(Updater().addMediaWithData(record, *ppd), succeeds);
  return textOf(*ppd);
}

}  // namespace

// The run

TEST(ATMediaTypePPDUpdater, FailsWithoutADocumentOrAReader) {
  const auto ppd = documentFromText(kEarlierSetup);
  const FakeReader reader(mediaList({}));
  EXPECT_FALSE(Updater().updatePPD(nullptr, &reader));
  EXPECT_FALSE(Updater().updatePPD(ppd.get(), nullptr));
  EXPECT_FALSE(Updater().updatePPD(nullptr, nullptr));
  EXPECT_EQ(textOf(*ppd), kEarlierSetup);
  EXPECT_EQ(reader.keys, Texts());
}

TEST(ATMediaTypePPDUpdater, AsksTheReaderOnceForTheCustomMedia) {
  const auto ppd = documentFromText(kHead);
  const FakeReader reader(mediaList({}));
  Updater().updatePPD(ppd.get(), &reader);
  EXPECT_EQ(reader.keys, Texts{"VMCustomMediaStorage"});
}

TEST(ATMediaTypePPDUpdater, WithoutAMediaListLeavesTheEarlierSetupAsItIs) {
  EXPECT_EQ(updated(kEarlierSetup, {}), kEarlierSetup);
  EXPECT_EQ(updated(kEarlierSetup, mapOf({})), kEarlierSetup);
  EXPECT_EQ(updated(kEarlierSetup, mapOf({{"MedaListVersion", "17"}})), kEarlierSetup);
  EXPECT_EQ(updated(kEarlierSetup, mapOf({{"MediaListVersion", "17"}})), kEarlierSetup);
}

TEST(ATMediaTypePPDUpdater, AnEmptyMediaListRemovesTheEarlierSetup) {
  EXPECT_EQ(updated(kEarlierSetup, mediaList({})), kHead +
                                                       "*QZValueAttributes MediaType.Plain: "
                                                       "\"a=b;defaultGE='(null)'\"\n" +
                                                       kVersion + "\n" + mediaTypes(kPlain));
}

TEST(ATMediaTypePPDUpdater, WritesTheVersionWithoutQuotes) {
  EXPECT_EQ(updated(kHead, mediaList({}, "a b;1.2")), kHead + "*QZMediaListVersion: a b;1.2\n");
}

TEST(ATMediaTypePPDUpdater, WritesAnUnknownVersion) {
  EXPECT_EQ(updated(kHead, mediaList({}, {})), kHead + "*QZMediaListVersion: MEDIUM_LIST_VERSION_UNKNOWN\n");
  EXPECT_EQ(updated(kHead, mapOf({{"MediaListVersion", "17"}, {"MediaList", listOf({})}})),
            kHead + "*QZMediaListVersion: MEDIUM_LIST_VERSION_UNKNOWN\n");
}

TEST(ATMediaTypePPDUpdater, AnEmptyVersionIsAnEmptyQuotedValue) {
  EXPECT_EQ(updated(kHead, mediaList({}, "")), kHead + "*QZMediaListVersion: \"\"\n");
}

TEST(ATMediaTypePPDUpdater, AVersionThatIsNoTextIsAProgrammingError) {
  const auto ppd = documentFromText(kHead);
  const FakeReader reader(mediaList({}, number(17)));
  EXPECT_THROW(Updater().updatePPD(ppd.get(), &reader), ATException);
}

TEST(ATMediaTypePPDUpdater, DataThatIsNoMapIsAProgrammingError) {
  const auto ppd = documentFromText(kHead);
  const FakeReader reader("text");
  EXPECT_THROW(Updater().updatePPD(ppd.get(), &reader), ATException);
  EXPECT_EQ(textOf(*ppd), kHead);
}

TEST(ATMediaTypePPDUpdater, AddsChoicesPropertiesGroupAndVersion) {
  const std::string attributes = kHead + kLanguages +
                                 "*QZValueAttributes MediaType.Plain: \"a=b\"\n"
                                 "*QZValueAttributes MediaType.Matte: \"c=d;e\"\n";
  EXPECT_EQ(updated(attributes + "*% options\n" + mediaTypes(kPlain + kMatte),
                    mediaList({customMedium("Canvas", "4711", "345"), customMedium("Linen", "4812")})),
            attributes + "*QZValueAttributes MediaType.Custom1: \"c=d;e\"\n" + customGroup("Custom1,\nCustom2") +
                kVersion + "*% options\n" +
                mediaTypes(kPlain + kMatte +
                           "*MediaType Custom1/Canvas: \"4711!\"\n"
                           "*de.MediaType Custom1/Canvas: \"\"\n"
                           "*fr.MediaType Custom1/Canvas: \"\"\n"
                           "*MediaType Custom2/Linen: \"4812!\"\n"
                           "*de.MediaType Custom2/Linen: \"\"\n"
                           "*fr.MediaType Custom2/Linen: \"\"\n"));
}

TEST(ATMediaTypePPDUpdater, ASecondSetupOfTheWrittenPPDGivesTheSameAgain) {
  const std::string text = kHead + kLanguages + "*QZValueAttributes MediaType.Plain: \"a=b\"\n" + mediaTypes(kPlain);
  const DeviceValue data =
      mediaList({customMedium("Canvas", "4711", "12"), extendedMedium("Film", "9"), customMedium("Linen", "4812")});
  const std::string first = updated(text, data);
  // The empty line behind the *End of each group is no part of the group and stays where the last setup stood.
  const std::size_t options = first.find("*OpenGroup");
  const std::string emptyLines = "\n\n";
  EXPECT_EQ(updated(first, data), first.substr(0, options) + emptyLines + first.substr(options));
}

TEST(ATMediaTypePPDUpdater, ChoiceNamesStayDenseWhenARecordHasNoName) {
  const DeviceValue nameless = mapOf({{"ID", "2"}, {"CategoryID", "CUSTOM"}});
  EXPECT_EQ(updated(kHead + mediaTypes(""), mediaList({customMedium("A", "1"), nameless, customMedium("C", "3")})),
            kHead + customGroup("Custom1,\nCustom2") + kVersion +
                mediaTypes("*MediaType Custom1/A: \"1!\"\n*MediaType Custom2/C: \"3!\"\n"));
}

TEST(ATMediaTypePPDUpdater, ChoiceNamesStayDenseWhenAChoiceCannotBeMade) {
  const std::string tooLong(256, 'x');
  EXPECT_EQ(updated(kHead + mediaTypes(""),
                    mediaList({customMedium("A", "1"), customMedium(tooLong.c_str(), "2"), customMedium("C", "3")})),
            kHead + customGroup("Custom1,\nCustom2") + kVersion +
                mediaTypes("*MediaType Custom1/A: \"1!\"\n*MediaType Custom2/C: \"3!\"\n"));
}

TEST(ATMediaTypePPDUpdater, NumbersChoicesInHexadecimal) {
  const auto records = std::make_shared<DeviceValue::List>();
  for (int each = 0; each < 17; ++each) records->push_back(customMedium("A", "1"));
  const auto ppd = documentFromText(mediaTypes(""));
  const FakeReader reader(mapOf({{"MediaList", records}}));
  Updater().updatePPD(ppd.get(), &reader);
  EXPECT_EQ(namesOfChoices(*ppd),
            (Texts{"Custom1", "Custom2", "Custom3", "Custom4", "Custom5", "Custom6", "Custom7", "Custom8", "Custom9",
                   "Customa", "Customb", "Customc", "Customd", "Custome", "Customf", "Custom10", "Custom11"}));
}

TEST(ATMediaTypePPDUpdater, ListsExtendedMediaInAGroupOfTheirOwn) {
  EXPECT_EQ(updated(kHead + mediaTypes(""), mediaList({extendedMedium("E", "1"), customMedium("C", "2"),
                                                       extendedMedium("F", "3"), customMedium("D", "4")})),
            kHead + customGroup("Custom2,\nCustom4") + extendedGroup("Custom1,\nCustom3") + kVersion +
                mediaTypes("*MediaType Custom1/E: \"1!\"\n*MediaType Custom2/C: \"2!\"\n"
                           "*MediaType Custom3/F: \"3!\"\n*MediaType Custom4/D: \"4!\"\n"));
}

TEST(ATMediaTypePPDUpdater, WritesOnlyTheGroupsThatHaveMedia) {
  const std::string choice = "*MediaType Custom1/A: \"1!\"\n";
  EXPECT_EQ(updated(kHead + mediaTypes(""), mediaList({extendedMedium("A", "1")})),
            kHead + extendedGroup("Custom1") + kVersion + mediaTypes(choice));
  EXPECT_EQ(updated(kHead + mediaTypes(""), mediaList({customMedium("A", "1")})),
            kHead + customGroup("Custom1") + kVersion + mediaTypes(choice));
}

TEST(ATMediaTypePPDUpdater, FactoryMediaGetNoChoice) {
  const DeviceValue factory = mapOf({{"MediaName", "Plain"}, {"ID", "12"}, {"CategoryID", "PAPER"}});
  const DeviceValue unknown = mapOf({{"MediaName", "X"}, {"ID", "13"}});
  EXPECT_EQ(updated(kHead + mediaTypes(kPlain), mediaList({factory, unknown, mapOf({})})),
            kHead + kVersion + mediaTypes(kPlain));
}

TEST(ATMediaTypePPDUpdater, ARecordThatIsNoMapIsAProgrammingError) {
  const auto ppd = documentFromText(kHead);
  const FakeReader reader(mediaList({"record"}));
  EXPECT_THROW(Updater().updatePPD(ppd.get(), &reader), ATException);
}

TEST(ATMediaTypePPDUpdater, ASecondUpdaterOfTheSameRunLeavesTheLastChoiceOfTheGroup) {
  const auto ppd = documentFromText(kHead + mediaTypes(""));
  const FakeReader reader(mediaList({customMedium("A", "1"), customMedium("B", "2")}));
  Updater().updatePPD(ppd.get(), &reader);
  Updater().updatePPD(ppd.get(), &reader);
  EXPECT_EQ(namesOfChoices(*ppd), (Texts{"Custom2", "Custom1", "Custom2"}));
  EXPECT_EQ(valuesOf(*ppd, "QZMediaTypeGroup"), Texts{"\"Custom1,\nCustom2\"\n*End\n"});
}

TEST(ATMediaTypePPDUpdater, LogsEachRecordAsRead) {
  const auto ppd = documentFromText(kHead);
  const DeviceValue custom = customMedium("A", "1");
  const DeviceValue factory = mapOf({{"ID", "2"}});
  const FakeReader reader(mediaList({custom, factory}));
  const TestLog log;
  Updater().updatePPD(ppd.get(), &reader);
  EXPECT_EQ(
      log.messages("-[ATMediaTypePPDUpdater updatePPD:usingDataReader:]"),
      logged({"Processing media data: " + custom.description(), "Processing media data: " + factory.description()}));
}

TEST(ATMediaTypePPDUpdater, TheBaseClassCannotAddCustomMedia) {
  const auto ppd = documentFromText(kHead + mediaTypes(""));
  const FakeReader reader(mediaList({customMedium("A", "1")}));
  EXPECT_THROW(ATMediaTypePPDUpdater().updatePPD(ppd.get(), &reader), ATException);
  EXPECT_THROW(ATMediaTypePPDUpdater().mediaTypeChoiceCodeWithName("Custom1", "1"), ATException);
}

TEST(ATMediaTypePPDUpdater, TheBaseClassFailsForACustomRecordWhateverItLacks) {
  const auto ppd = documentFromText(kHead);
  const FakeReader reader(mediaList({mapOf({{"CategoryID", "CUSTOM"}})}));
  EXPECT_THROW(ATMediaTypePPDUpdater().updatePPD(ppd.get(), &reader), ATException);
}

TEST(ATMediaTypePPDUpdater, TheBaseClassCompletesWithoutCustomMedia) {
  const auto ppd = documentFromText(kHead);
  const FakeReader reader(mediaList({mapOf({{"ID", "12"}})}));
  EXPECT_TRUE(ATMediaTypePPDUpdater().updatePPD(ppd.get(), &reader));
  EXPECT_EQ(textOf(*ppd), kHead + kVersion);
}

// Which operation gets which record

namespace {

// Records what the hooks are handed.
class Hooked : public Updater {
 public:
  bool addMediaWithData(const Record& record, ATPPD& toPPD) const override {
    note("media", record);
    return Updater::addMediaWithData(record, toPPD);
  }
  void addAttributesForMediaWithData(const Record& record, ATPPD& /*toPPD*/) const override {
    note("attributes", record);
  }
  bool addICCProfileForMediaWithData(const Record& record, ATPPD& /*toPPD*/) const override {
    note("add", record);
    return false;
  }
  void setICCProfileForMediaWithData(const Record& record, ATPPD& /*inPPD*/) const override { note("set", record); }
  void updateDefaultGlossEnhancerForMediaWithData(const Record& record, ATPPD& /*inPPD*/) const override {
    note("gloss", record);
  }
  mutable Texts calls;

 private:
  void note(const char* hook, const Record& record) const {
    calls.push_back(std::string(hook) + " " + record.valueForKey("MediaName").description() + " " +
                    record.valueForKey("PPDName").description());
  }
};

Texts hookCalls(const DeviceValue& data) {
  const auto ppd = documentFromText(mediaTypes(""));
  const FakeReader reader(data);
  const Hooked updater;
  EXPECT_TRUE(updater.updatePPD(ppd.get(), &reader));
  return updater.calls;
}

}  // namespace

TEST(ATMediaTypePPDUpdater, CustomMediaHooksGetTheCopyWithTheChoiceNameAndTheOthersTheRecordAsRead) {
  EXPECT_EQ(hookCalls(mediaList(
                {customMedium("A", "1"), mapOf({{"MediaName", "F"}, {"ID", "2"}}), extendedMedium("B", "3")})),
            (Texts{"media A Custom1", "attributes A Custom1", "add A Custom1", "gloss A (null)", "set F (null)",
                   "gloss F (null)", "media B Custom2", "attributes B Custom2", "add B Custom2", "gloss B (null)"}));
}

TEST(ATMediaTypePPDUpdater, AMediumThatCannotBeAddedGetsNoProfilesButItsGlossDefault) {
  EXPECT_EQ(hookCalls(mediaList({mapOf({{"MediaName", "A"}, {"CategoryID", "CUSTOM"}}), customMedium("B", "1")})),
            (Texts{"media A Custom1", "gloss A (null)", "media B Custom1", "attributes B Custom1", "add B Custom1",
                   "gloss B (null)"}));
}

TEST(ATMediaTypePPDUpdater, TheResultOfAddingProfilesIsIgnored) {
  const auto ppd = documentFromText(mediaTypes(""));
  const FakeReader reader(mediaList({customMedium("A", "1")}));
  EXPECT_TRUE(Hooked().updatePPD(ppd.get(), &reader));
  EXPECT_EQ(valuesOf(*ppd, "QZMediaTypeGroup").size(), 1U);
}

TEST(ATMediaTypePPDUpdater, TheProfileHooksDoNothing) {
  const std::string text = "*QZcupsICCProfile .P./T: \"a;;/b\"\n*cupsICCProfile .P./T: \"/c\"\n";
  const auto ppd = documentFromText(text);
  const DeviceValue record = mediumWithProfiles("P", listOf({profile("N", "file:///n")}));
  const ATMediaTypePPDUpdater updater;
  updater.restoreFactoryICCProfilesInPPD(*ppd);
  EXPECT_TRUE(updater.addICCProfileForMediaWithData(record, *ppd));
  updater.setICCProfileForMediaWithData(record, *ppd);
  EXPECT_EQ(textOf(*ppd), text);
}

TEST(ATMediaTypePPDUpdater, EveryOperationIsDispatchedOnTheObject) {
  const auto ppd = documentFromText(kEarlierSetup);
  const DeviceValue custom = customMedium("A", "7", "12");
  custom.map()->set("DefaultGlossEnhancer", "OFF");
  const FakeReader reader(mediaList({custom, extendedMedium("B", "8"), mapOf({{"ID", "12"}})}));
  const TracedMedia<Updater> updater;
  EXPECT_TRUE(updater.updatePPD(ppd.get(), &reader));
  const Trace& trace = updater.trace;
  EXPECT_EQ(trace.count("cleanup"), 1);
  EXPECT_EQ(trace.count("restoreFactoryICCProfiles"), 1);
  EXPECT_EQ(trace.count("removeMediaInGroup"), 2);
  EXPECT_EQ(trace.count("removeInclusions"), 2);
  EXPECT_EQ(trace.count("restoreDefaultGloss"), 1);
  EXPECT_EQ(trace.count("isGlossy"), 1);
  EXPECT_EQ(trace.count("nameForGloss"), 2);
  EXPECT_EQ(trace.count("changeDefaultGloss"), 2);
  EXPECT_EQ(trace.count("addPPDName"), 2);
  EXPECT_EQ(trace.count("addMedia"), 2);
  EXPECT_EQ(trace.count("choiceCode"), 2);
  EXPECT_EQ(trace.count("localizedNames"), 2);
  EXPECT_EQ(trace.count("validUIName"), 2);
  EXPECT_EQ(trace.count("verifyString"), 2);
  EXPECT_EQ(trace.count("addAttributes"), 2);
  EXPECT_EQ(trace.count("addICCProfile"), 2);
  EXPECT_EQ(trace.count("setICCProfile"), 1);
  EXPECT_EQ(trace.count("updateDefaultGloss"), 3);
  EXPECT_EQ(trace.count("nameForID"), 2);
  EXPECT_GT(trace.count("mediaTypeOption"), 0);
  EXPECT_EQ(trace.count("customGroup"), 1);
  EXPECT_EQ(trace.count("extendedGroup"), 1);
  EXPECT_EQ(trace.count("isCustom"), 3);
}

TEST(ATMediaTypePPDUpdater, TheMediaOptionOfASubclassTakesEffectEverywhere) {
  struct OtherOption : Updater {
    std::shared_ptr<ATPPDOption> mediaTypeOptionFromPPD(const ATPPD& ppd) const override {
      return ppd.optionForName("Other");
    }
  };
  const auto ppd = documentFromText(mediaTypes(kPlain) + optionWithChoices("Other", "a", {"a"}));
  const OtherOption updater;
  EXPECT_EQ(updater.ppdNameForMediaWithID("12", *ppd).description(), "12");
  EXPECT_TRUE(updater.addMediaWithData(named("Custom1", "5", "A"), *ppd));
  EXPECT_NE(ppd->optionForName("Other")->choiceForName("Custom1"), nullptr);
  EXPECT_EQ(updater.ppdNameForMediaWithID("5!", *ppd).description(), "Custom1");
  updater.removeInclusionsOfMediaWithID("Custom1", *ppd);
  EXPECT_EQ(ppd->optionForName("Other")->choiceForName("Custom1"), nullptr);
  EXPECT_EQ(namesOfChoices(*ppd), Texts{"Plain"});
}

// Cleaning up

TEST(ATMediaTypePPDUpdater, CleansUpInOrder) {
  const auto ppd = documentFromText(
      "*QZMediaTypeGroup ExtendedCustomMedia-category/E: \"X\"\n"
      "*QZMediaTypeGroup CustomMedia-category/C: \"A\"\n");
  struct Order : TracedMedia<Updater> {
    void removeInclusionsOfMediaWithID(const std::string& choiceName, ATPPD& /*fromPPD*/) const override {
      trace.add(choiceName.c_str());
    }
  };
  const Order updater;
  updater.cleanupPPD(*ppd);
  EXPECT_EQ(updater.trace.among({"restoreFactoryICCProfiles", "removeMediaInGroup", "A", "X", "restoreDefaultGloss"}),
            (Texts{"restoreFactoryICCProfiles", "removeMediaInGroup", "A", "removeMediaInGroup", "X",
                   "restoreDefaultGloss"}));
  EXPECT_EQ(textOf(*ppd), "");
}

TEST(ATMediaTypePPDUpdater, RestoresProfilesBeforeItRemovesTheVersion) {
  struct Order : Updater {
    void restoreFactoryICCProfilesInPPD(ATPPD& ppd) const override {
      versionsAtRestore = valuesOf(ppd, "QZMediaListVersion").size();
    }
    mutable std::size_t versionsAtRestore = 0;
  };
  const auto ppd = documentFromText("*QZMediaListVersion: 3\n");
  const Order updater;
  updater.cleanupPPD(*ppd);
  EXPECT_EQ(updater.versionsAtRestore, 1U);
}

TEST(ATMediaTypePPDUpdater, RemovesTheFirstVersionWhateverItsSpec) {
  const auto ppd = documentFromText("*QZMediaListVersion A/B: 1\n*QZMediaListVersion: 2\n");
  Updater().cleanupPPD(*ppd);
  EXPECT_EQ(textOf(*ppd), "*QZMediaListVersion: 2\n");
}

TEST(ATMediaTypePPDUpdater, RemovesTheFirstGroupOfEachCategoryAndNoOther) {
  const auto ppd = documentFromText(
      "*QZMediaTypeGroup Other-category/O: \"Custom3\"\n"
      "*QZMediaTypeGroup CustomMedia-category/C: \"Custom1\"\n"
      "*QZMediaTypeGroup CustomMedia-category/C: \"Custom2\"\n"
      "*QZMediaTypeGroup custommedia-category/C: \"Custom4\"\n"
      "*QZMediaTypeGroup ExtendedCustomMedia-category: \"Custom5\"\n" +
      mediaTypes("*MediaType Custom1/1: \"\"\n*MediaType Custom2/2: \"\"\n*MediaType Custom3/3: \"\"\n"
                 "*MediaType Custom4/4: \"\"\n*MediaType Custom5/5: \"\"\n"));
  Updater().cleanupPPD(*ppd);
  EXPECT_EQ(specsOf(*ppd, "QZMediaTypeGroup"),
            (Texts{"Other-category", "CustomMedia-category", "custommedia-category"}));
  EXPECT_EQ(namesOfChoices(*ppd), (Texts{"Custom2", "Custom3", "Custom4"}));
}

TEST(ATMediaTypePPDUpdater, RemovesChoicesPropertiesAndGroupOfAnEarlierSetup) {
  const auto ppd = documentFromText(kEarlierSetup);
  Updater().removeMediaInGroup(ppd->attributeForName("QZMediaTypeGroup"), *ppd);
  EXPECT_EQ(textOf(*ppd), kHead +
                              "*QZValueAttributes MediaType.Plain: \"a=b;defaultGE='x'\"\n"
                              "\n"
                              "*QZMediaListVersion: 3\n" +
                              mediaTypes(kPlain));
}

namespace {

// The choice names in a group statement with this value.
Texts namesInGroup(const std::string& value) {
  struct Names : Updater {
    void removeInclusionsOfMediaWithID(const std::string& choiceName, ATPPD& /*fromPPD*/) const override {
      names.push_back(choiceName);
    }
    mutable Texts names;
  };
  const auto ppd = documentFromText("");
  const auto group = ATPPDAttribute::initWithName("QZMediaTypeGroup", "CustomMedia-category", "T", value);
  ppd->addPPDAttribute(group);
  const Names updater;
  updater.removeMediaInGroup(group, *ppd);
  EXPECT_EQ(textOf(*ppd), "");
  return updater.names;
}

}  // namespace

TEST(ATMediaTypePPDUpdater, SplitsAGroupAtEachCommaWithALineFeed) {
  EXPECT_EQ(namesInGroup("\"A,\nB,\nC\""), (Texts{"A", "B", "C"}));
  EXPECT_EQ(namesInGroup("\"A,B\nC, \nD\""), Texts{"A,B\nC, \nD"});
  EXPECT_EQ(namesInGroup("\"A,\n,\nB,\n\""), (Texts{"A", "", "B", ""}));
  EXPECT_EQ(namesInGroup("\"A,\r\nB\""), Texts{"A,\r\nB"});
}

TEST(ATMediaTypePPDUpdater, StripsEveryQuoteAtBothEndsOfAGroup) {
  EXPECT_EQ(namesInGroup("A,\nB"), (Texts{"A", "B"}));
  EXPECT_EQ(namesInGroup("\"\"A\"B\"\"\""), Texts{"A\"B"});
  EXPECT_EQ(namesInGroup("\"A\",\n\"B\""), (Texts{"A\"", "\"B"}));
  EXPECT_EQ(namesInGroup("\"\""), Texts{""});
  EXPECT_EQ(namesInGroup("\""), Texts{""});
  EXPECT_EQ(namesInGroup("\" A \""), Texts{" A "});
}

TEST(ATMediaTypePPDUpdater, AnAbsentGroupRemovesNothing) {
  const auto ppd = documentFromText(kEarlierSetup);
  Updater().removeMediaInGroup(nullptr, *ppd);
  EXPECT_EQ(textOf(*ppd), kEarlierSetup);
}

TEST(ATMediaTypePPDUpdater, AGroupWithoutAValueIsOnlyRemovedItself) {
  const auto ppd = documentFromText("*QZMediaTypeGroup CustomMedia-category/T\n" + mediaTypes(kPlain));
  Updater().cleanupPPD(*ppd);
  EXPECT_EQ(textOf(*ppd), mediaTypes(kPlain));
}

TEST(ATMediaTypePPDUpdater, LocalizationsOfAGroupStay) {
  const std::string localization = "*de.QZMediaTypeGroup CustomMedia-category/Eigenes: \"\"\n";
  const auto ppd = documentFromText(kLanguages + "*QZMediaTypeGroup CustomMedia-category/C: \"A\"\n" + localization);
  Updater().cleanupPPD(*ppd);
  EXPECT_EQ(textOf(*ppd), kLanguages + localization);
}

TEST(ATMediaTypePPDUpdater, RemovesEveryChoiceOfTheName) {
  const auto ppd =
      documentFromText(mediaTypes("*MediaType A/1: \"\"\n" + kPlain + "*MediaType A/2: \"\"\n*MediaType a/3: \"\"\n"));
  Updater().removeInclusionsOfMediaWithID("A", *ppd);
  EXPECT_EQ(textOf(*ppd), mediaTypes(kPlain + "*MediaType a/3: \"\"\n"));
}

TEST(ATMediaTypePPDUpdater, RemovesTheFirstPropertiesOfTheName) {
  const auto ppd = documentFromText(
      "*QZValueAttributes MediaType.AB: \"1\"\n*QZValueAttributes MediaType.A: \"2\"\n"
      "*QZValueAttributes MediaType.A: \"3\"\n*QZValueAttributes A: \"4\"\n");
  Updater().removeInclusionsOfMediaWithID("A", *ppd);
  EXPECT_EQ(valuesOf(*ppd, "QZValueAttributes"), (Texts{"\"1\"", "\"3\"", "\"4\""}));
}

TEST(ATMediaTypePPDUpdater, RemovesPropertiesWithoutAMediaOptionToo) {
  const auto ppd = documentFromText("*QZValueAttributes MediaType.A: \"2\"\n");
  Updater().removeInclusionsOfMediaWithID("A", *ppd);
  EXPECT_EQ(textOf(*ppd), "");
}

TEST(ATMediaTypePPDUpdater, AnEmptyNameInAGroupRemovesNoProfileAndNoPaper) {
  const std::string rest = "*QZValueAttributes MediaType.Plain: \"1\"\n";
  const auto ppd = documentFromText(rest + "*QZMediaTypeGroup CustomMedia-category/C: \"\"\n" + mediaTypes(kPlain));
  Updater().cleanupPPD(*ppd);
  EXPECT_EQ(textOf(*ppd), rest + mediaTypes(kPlain));
}

// The media option

TEST(ATMediaTypePPDUpdater, TheMediaOptionStandsInTheImagingOptions) {
  const Updater updater;
  const auto there = documentFromText(mediaTypes(kPlain));
  ASSERT_NE(updater.mediaTypeOptionFromPPD(*there), nullptr);
  EXPECT_EQ(updater.mediaTypeOptionFromPPD(*there)->name(), "MediaType");
  EXPECT_EQ(updater.mediaTypeOptionFromPPD(*documentFromText(kHead)), nullptr);
  EXPECT_EQ(updater.mediaTypeOptionFromPPD(*documentFromText(groupWithOption("Other", "MediaType", "Plain", kPlain))),
            nullptr);
  EXPECT_EQ(updater.mediaTypeOptionFromPPD(
                *documentFromText(groupWithOption("QZImagingOptions", "Mediatype", "Plain", kPlain))),
            nullptr);
}

TEST(ATMediaTypePPDUpdater, OnlyTheFirstGroupOfTheImagingOptionsIsAsked) {
  const auto ppd = documentFromText(groupWithOption("QZImagingOptions", "Other", "a", "") + mediaTypes(kPlain));
  EXPECT_EQ(Updater().mediaTypeOptionFromPPD(*ppd), nullptr);
}

// Records

TEST(ATMediaTypePPDUpdater, TwoCategoriesMarkCustomMedia) {
  const auto isCustom = [](const DeviceValue& category) {
    return ATMediaTypePPDUpdater().isMediaTypeDataCustom(mapOf({{"CategoryID", category}}));
  };
  EXPECT_TRUE(isCustom("CUSTOM"));
  EXPECT_TRUE(isCustom("QZ_EXTENDED_MEDIA"));
  for (const char* other :
       {"custom", "Custom", "CUSTOM ", " CUSTOM", "CUSTOMX", "EXTENDED_MEDIA", "", "qz_extended_media"}) {
    EXPECT_FALSE(isCustom(other)) << other;
  }
  EXPECT_FALSE(isCustom({}));
  EXPECT_FALSE(isCustom(number(1)));
  EXPECT_FALSE(isCustom(listOf({"CUSTOM"})));
  EXPECT_FALSE(ATMediaTypePPDUpdater().isMediaTypeDataCustom(mapOf({{"CategoryName", "CUSTOM"}})));
}

TEST(ATMediaTypePPDUpdater, ChoiceNamesAreHexadecimalInLowerCaseOf32Bits) {
  const auto nameFor = [](std::uint64_t index) {
    return Updater().addPPDNameForMediaWithIndex(index, mapOf({})).valueForKey("PPDName").description();
  };
  EXPECT_EQ(nameFor(0), "Custom0");
  EXPECT_EQ(nameFor(1), "Custom1");
  EXPECT_EQ(nameFor(9), "Custom9");
  EXPECT_EQ(nameFor(10), "Customa");
  EXPECT_EQ(nameFor(15), "Customf");
  EXPECT_EQ(nameFor(16), "Custom10");
  EXPECT_EQ(nameFor(17), "Custom11");
  EXPECT_EQ(nameFor(255), "Customff");
  EXPECT_EQ(nameFor(0xFFFFFFFF), "Customffffffff");
  EXPECT_EQ(nameFor(0x100000000), "Custom0");
  EXPECT_EQ(nameFor(0x12300000abc), "Customabc");
}

TEST(ATMediaTypePPDUpdater, TheChoiceNameIsSetInACopyThatSharesItsProfiles) {
  const DeviceValue record =
      mapOf({{"ID", "1"}, {"PPDName", "Old"}, {"ICCProfiles", listOf({profile("N", "/n", "OFF")})}});
  const DeviceValue copy = Updater().addPPDNameForMediaWithIndex(26, record);
  EXPECT_EQ(record.valueForKey("PPDName").description(), "Old");
  EXPECT_EQ(copy.valueForKey("PPDName").description(), "Custom1a");
  EXPECT_EQ(copy.valueForKey("ID").description(), "1");
  EXPECT_EQ(copy.valueForKey("ICCProfiles").list(), record.valueForKey("ICCProfiles").list());
  EXPECT_EQ(Updater().addPPDNameForMediaWithIndex(1, mapOf({{"ID", "1"}})).valueForKey("PPDName").description(),
            "Custom1");
}

// Adding a medium

TEST(ATMediaTypePPDUpdater, AddsTheChoiceBehindAllOthers) {
  EXPECT_EQ(withAdded(mediaTypes(kPlain), named("Custom1", "5", "My Paper")),
            mediaTypes(kPlain + "*MediaType Custom1/My Paper: \"5!\"\n"));
}

TEST(ATMediaTypePPDUpdater, ARecordThatLacksSomethingIsNotAdded) {
  const std::string text = kHead + "*QZValueAttributes MediaType.Plain: \"a\"\n" + mediaTypes(kPlain);
  EXPECT_EQ(withAdded(text, mapOf({{"ID", "5"}, {"MediaName", "A"}, {"ParentID", "12"}}), false), text);
  EXPECT_EQ(withAdded(text, mapOf({{"PPDName", "C"}, {"MediaName", "A"}, {"ParentID", "12"}}), false), text);
  EXPECT_EQ(withAdded(text, mapOf({{"PPDName", "C"}, {"ID", "5"}, {"ParentID", "12"}}), false), text);
  EXPECT_EQ(withAdded(text, mapOf({}), false), text);
}

TEST(ATMediaTypePPDUpdater, TheCodeIsAskedForBeforeTheRecordIsChecked) {
  const auto ppd = documentFromText("");
  const Updater updater;
  EXPECT_FALSE(updater.addMediaWithData(mapOf({{"PPDName", "Custom1"}}), *ppd));
  EXPECT_EQ(updater.codesFor, Texts{"Custom1"});
}

TEST(ATMediaTypePPDUpdater, LogsWhatItAddsEvenWhenItCannot) {
  const auto ppd = documentFromText(mediaTypes(""));
  const TestLog log;
  Updater().addMediaWithData(named("Custom1", "5", "A"), *ppd);
  Updater().addMediaWithData(named("Custom1", "5", {}), *ppd);
  Updater().addMediaWithData(named("Custom1", {}, "B"), *ppd);
  EXPECT_EQ(log.messages("-[ATMediaTypePPDUpdater addMediaWithData:toPPD:]"),
            logged({"Adding A with ID 5", "Adding (null) with ID 5", "Adding B with ID (null)"}));
}

TEST(ATMediaTypePPDUpdater, ANameOutsideTheMainCharactersStandsInTheTranslationsOnly) {
  const auto expected = [](const std::string& name) {
    return kLanguages +
           mediaTypes("*MediaType Custom1/: \"5!\"\n*de.MediaType Custom1/" + name + ": \"\"\n*fr.MediaType Custom1/" +
                      name + ": \"\"\n*en.MediaType Custom1/" + name + ": \"\"\n");
  };
  for (const char* name : {"My: Paper", "Caf\u00E9", ""}) {
    EXPECT_EQ(withAdded(kLanguages + mediaTypes(""), named("Custom1", "5", name)), expected(name)) << name;
  }
}

TEST(ATMediaTypePPDUpdater, TheEnglishTranslationComesEvenWithoutLanguages) {
  EXPECT_EQ(withAdded(mediaTypes(""), named("Custom1", "5", "Caf\u00E9")),
            mediaTypes("*MediaType Custom1/: \"5!\"\n*en.MediaType Custom1/Caf\u00E9: \"\"\n"));
}

TEST(ATMediaTypePPDUpdater, AnInvalidChoiceNameIsNotAdded) {
  const std::string tooLong(41, 'x');
  const std::string longest(40, 'x');
  EXPECT_EQ(withAdded(mediaTypes(""), named(tooLong.c_str(), "5", "A"), false), mediaTypes(""));
  EXPECT_EQ(withAdded(mediaTypes(""), named("", "5", "A"), false), mediaTypes(""));
  EXPECT_EQ(withAdded(mediaTypes(""), named(longest.c_str(), "5", "A")),
            mediaTypes("*MediaType " + longest + "/A: \"5!\"\n"));
}

TEST(ATMediaTypePPDUpdater, WithoutAMediaOptionTheChoiceIsLostAndThePropertiesAreCopied) {
  const std::string parent = "*QZValueAttributes MediaType.12: \"a\"\n";
  EXPECT_EQ(withAdded(parent, named("Custom1", "5", "A", "12")),
            parent + "*QZValueAttributes MediaType.Custom1: \"a\"\n");
  EXPECT_EQ(updated(kHead, mediaList({customMedium("A", "5")})), kHead + customGroup("Custom1") + kVersion);
}

TEST(ATMediaTypePPDUpdater, AnIDThatIsANumberIsFormattedIntoTheCode) {
  EXPECT_EQ(withAdded(mediaTypes(""), named("Custom1", number(5), "A")), mediaTypes("*MediaType Custom1/A: \"5!\"\n"));
}

TEST(ATMediaTypePPDUpdater, AMediaNameThatIsNoTextIsAProgrammingError) {
  const auto ppd = documentFromText(mediaTypes(""));
  EXPECT_THROW(Updater().addMediaWithData(named("Custom1", "5", number(7)), *ppd), ATException);
}

// Localized names

TEST(ATMediaTypePPDUpdater, TheNameIsTheSameInEveryLanguageButEnglish) {
  using Localizations = std::vector<std::pair<std::string, std::string>>;
  const auto namesIn = [](const std::string& text) {
    const auto ppd = documentFromText(text);
    const auto names = Updater().localizedNamesForMediaName("N", *ppd);
    return Localizations(names.begin(), names.end());
  };
  const auto namesFor = [&](const std::string& languages) { return namesIn("*cupsLanguages: " + languages + "\n"); };
  EXPECT_EQ(namesFor("\"en de fr\""), (Localizations{{"de", "N"}, {"fr", "N"}}));
  EXPECT_EQ(namesFor("\"fr en de\""), (Localizations{{"fr", "N"}, {"de", "N"}}));
  EXPECT_EQ(namesFor("\"EN en_US en\""), (Localizations{{"EN", "N"}, {"en_US", "N"}}));
  EXPECT_EQ(namesFor("\"de fr de\""), (Localizations{{"de", "N"}, {"fr", "N"}}));
  EXPECT_EQ(namesFor("\"de  fr\""), (Localizations{{"de", "N"}, {"", "N"}, {"fr", "N"}}));
  EXPECT_EQ(namesFor("\"en\""), Localizations());
  EXPECT_EQ(namesFor("de fr"), Localizations());
  EXPECT_EQ(namesIn(kHead), Localizations());
}

// Names that can be a main text

TEST(ATMediaTypePPDUpdater, AMainTextHasCharactersUpTo9D) {
  const Updater updater;
  for (const char* name :
       {"A", " ", "~", "My Paper 24\"", "a\tb", "\x7F", "\u0080", "\u0085", "\u009D", "<>/\\", "*%"}) {
    EXPECT_TRUE(updater.validMediaUIName(name)) << name;
  }
  for (const char* name : {"", "a:b", "a\nb", "a\rb", "\n", ":", "\u009E", "\u00A0", "\u00E9", "Caf\u00E9", "\u20AC",
                           "\U0001F600", "\x01", "\x1F", "a\x0B", "a\x0C"}) {
    EXPECT_FALSE(updater.validMediaUIName(name)) << name;
  }
  EXPECT_FALSE(updater.validMediaUIName(std::string("a\0b", 3)));
}

TEST(ATMediaTypePPDUpdater, AStringIsVerifiedAgainstItsRange) {
  const Updater updater;
  EXPECT_TRUE(updater.verifyString("abc", 'a', 3, ""));
  EXPECT_FALSE(updater.verifyString("abcd", 'a', 3, ""));
  EXPECT_FALSE(updater.verifyString("`", 'a', 3, ""));
  EXPECT_FALSE(updater.verifyString("~", 'a', 3, ""));
  EXPECT_FALSE(updater.verifyString("", 'a', 3, ""));
  EXPECT_FALSE(updater.verifyString("a", 'a', 0, ""));
  EXPECT_TRUE(updater.verifyString("\u00E9\U0001F600", 0xE9, 0x20000, ""));
  EXPECT_FALSE(updater.verifyString("\u00E8", 0xE9, 0x20000, ""));
}

TEST(ATMediaTypePPDUpdater, TabsLineEndsAndSpacesAreAllowedOutsideTheRange) {
  const Updater updater;
  EXPECT_TRUE(updater.verifyString("\t\n\r a", 'a', 1, ""));
  EXPECT_TRUE(updater.verifyString(" ", 'a', 0, ""));
  EXPECT_FALSE(updater.verifyString("\x0B", 'a', 1, ""));
}

TEST(ATMediaTypePPDUpdater, DisallowedCharactersAreRefusedInsideAndOutsideTheRange) {
  const Updater updater;
  EXPECT_FALSE(updater.verifyString("ab", 'a', 3, "b"));
  EXPECT_TRUE(updater.verifyString("ac", 'a', 3, "b"));
  EXPECT_FALSE(updater.verifyString("a\t", 'a', 3, "\t"));
  EXPECT_FALSE(updater.verifyString("a b", 'a', 3, "xyz "));
}

TEST(ATMediaTypePPDUpdater, ADisallowedCharacterMayBeOutsideASCII) {
  const Updater updater;
  EXPECT_FALSE(updater.verifyString("Caf\u00E9", 32, 300, "\u00E9"));
  EXPECT_TRUE(updater.verifyString("Caf\u00E8", 32, 300, "\u00E9"));
}

// The choice of an ID

TEST(ATMediaTypePPDUpdater, AnAbsentIDHasNoName) {
  EXPECT_TRUE(Updater().ppdNameForMediaWithID({}, *documentFromText(mediaTypes(kPlain))).isAbsent());
  EXPECT_TRUE(Updater().ppdNameForMediaWithID({}, *documentFromText("")).isAbsent());
}

TEST(ATMediaTypePPDUpdater, TheFirstChoiceWhoseCodeContainsTheIDNamesIt) {
  const auto ppd =
      documentFromText(mediaTypes("*MediaType A/A: \"x123y\"\n*MediaType B/B: \"12\"\n*MediaType C/C: \"AbC\"\n"));
  const auto nameFor = [&](const char* ID) { return Updater().ppdNameForMediaWithID(ID, *ppd).description(); };
  EXPECT_EQ(nameFor("12"), "A");
  EXPECT_EQ(nameFor("123"), "A");
  EXPECT_EQ(nameFor("x123y"), "A");
  EXPECT_EQ(nameFor("AbC"), "C");
  EXPECT_EQ(nameFor("abc"), "abc");
  EXPECT_EQ(nameFor("1234"), "1234");
  EXPECT_EQ(nameFor("\""), "\"");
}

TEST(ATMediaTypePPDUpdater, ANewChoiceIsFoundByTheCodeThatItWasGivenAndNotByTheQuotesOfItsLine) {
  const auto ppd = documentFromText(mediaTypes(kPlain));
  const auto nameFor = [&ppd](const char* ID) { return Updater().ppdNameForMediaWithID(ID, *ppd).description(); };
  EXPECT_TRUE(Updater().addMediaWithData(named("Custom1", "4711", "Roll \"7700\" wide"), *ppd));
  EXPECT_EQ(nameFor("7700"), "7700");
  EXPECT_EQ(nameFor("4711"), "Custom1");
  EXPECT_TRUE(Updater().addMediaWithData(named("Custom2", "7700", "Roll \"55\" wide"), *ppd));
  EXPECT_EQ(nameFor("7700"), "Custom2");
  // A choice that was read has no code but what its line shows, from the first quote to the last.
  const auto read = documentFromText(textOf(*ppd));
  EXPECT_EQ(Updater().ppdNameForMediaWithID("7700", *read).description(), "Custom1");
}

TEST(ATMediaTypePPDUpdater, AnIDThatNoChoiceHasNamesItself) {
  EXPECT_EQ(Updater().ppdNameForMediaWithID("7", *documentFromText(mediaTypes(kPlain))).description(), "7");
  EXPECT_EQ(Updater().ppdNameForMediaWithID("7", *documentFromText(mediaTypes(""))).description(), "7");
  EXPECT_EQ(Updater().ppdNameForMediaWithID("7", *documentFromText(kHead)).description(), "7");
}

TEST(ATMediaTypePPDUpdater, TheEmptyIDIsInNoCode) {
  const DeviceValue name = Updater().ppdNameForMediaWithID("", *documentFromText(mediaTypes(kPlain)));
  EXPECT_FALSE(name.isAbsent());
  EXPECT_EQ(name.description(), "");
}

TEST(ATMediaTypePPDUpdater, ChoicesWithoutACodeAreSkipped) {
  const auto ppd = documentFromText(mediaTypes("*MediaType A/A: 12\n*MediaType B/B: \"\"\n*MediaType C/C: \"12\"\n"));
  EXPECT_EQ(Updater().ppdNameForMediaWithID("12", *ppd).description(), "C");
}

TEST(ATMediaTypePPDUpdater, SearchingForAnIDThatIsNoTextIsAProgrammingError) {
  EXPECT_THROW(Updater().ppdNameForMediaWithID(number(12), *documentFromText(mediaTypes(kPlain))), ATException);
  EXPECT_EQ(Updater().ppdNameForMediaWithID(number(12), *documentFromText(kHead)).description(), "12");
}

// The properties of a custom medium

namespace {

std::string propertiesAdded(const std::string& text, const DeviceValue& record) {
  const auto ppd = documentFromText(text);
  Updater().addAttributesForMediaWithData(record, *ppd);
  const std::string result = textOf(*ppd);
  return result.substr(0, result.find("*OpenGroup"));
}

}  // namespace

TEST(ATMediaTypePPDUpdater, CopiesTheParentsPropertiesAsTheyStand) {
  for (const char* value : {"\"a=b;defaultGE='x'\"", "unquoted", "\"\"", "\"one"}) {
    const std::string parent = std::string("*QZValueAttributes MediaType.Plain: ") + value + "\n";
    EXPECT_EQ(propertiesAdded(parent + mediaTypes(kPlain), named("Custom1", "5", "A", "12")),
              parent + "*QZValueAttributes MediaType.Custom1: " + value + "\n");
  }
}

TEST(ATMediaTypePPDUpdater, CopiesPropertiesOfSeveralLinesWithoutTheirEnd) {
  const std::string parent = "*QZValueAttributes MediaType.Plain/T: \"a;\nb\"\n*End\n";
  EXPECT_EQ(propertiesAdded(parent + mediaTypes(kPlain), named("Custom1", "5", "A", "12")),
            parent + "*QZValueAttributes MediaType.Custom1: \"a;\nb\"\n");
}

TEST(ATMediaTypePPDUpdater, WithoutAParentOrAChoiceNameThereAreNoProperties) {
  const std::string parent = "*QZValueAttributes MediaType.Plain: \"a\"\n";
  EXPECT_EQ(propertiesAdded(parent + mediaTypes(kPlain), named("Custom1", "5", "A")), parent);
  EXPECT_EQ(propertiesAdded(parent + mediaTypes(kPlain), mapOf({{"MediaName", "A"}, {"ParentID", "12"}})), parent);
}

TEST(ATMediaTypePPDUpdater, AParentThatNoCodeHoldsIsTakenForAChoiceName) {
  const std::string parents = "*QZValueAttributes MediaType.Plain: \"a\"\n*QZValueAttributes MediaType.99: \"b\"\n";
  EXPECT_EQ(propertiesAdded(parents + mediaTypes(kPlain), named("Custom1", "5", "A", "98")), parents);
  EXPECT_EQ(propertiesAdded(parents + mediaTypes(kPlain), named("Custom1", "5", "A", "99")),
            parents + "*QZValueAttributes MediaType.Custom1: \"b\"\n");
}

TEST(ATMediaTypePPDUpdater, AParentIsFoundBySubstring) {
  const std::string parents = "*QZValueAttributes MediaType.A: \"a\"\n*QZValueAttributes MediaType.B: \"b\"\n";
  EXPECT_EQ(propertiesAdded(parents + mediaTypes("*MediaType A/A: \"123\"\n*MediaType B/B: \"12\"\n"),
                            named("Custom1", "5", "M", "12")),
            parents + "*QZValueAttributes MediaType.Custom1: \"a\"\n");
}

TEST(ATMediaTypePPDUpdater, AParentWithoutPropertiesGivesNone) {
  EXPECT_EQ(propertiesAdded(kHead + mediaTypes(kPlain), named("Custom1", "5", "A", "12")), kHead);
}

TEST(ATMediaTypePPDUpdater, LogsTheParentAndTheProperties) {
  const auto ppd = documentFromText("*QZValueAttributes MediaType.Plain: \"a\"\n" + mediaTypes(kPlain + kMatte));
  const TestLog log;
  Updater().addAttributesForMediaWithData(named("Custom1", "5", "A", "12"), *ppd);
  Updater().addAttributesForMediaWithData(named("Custom2", "6", "B", "345"), *ppd);
  Updater().addAttributesForMediaWithData(named("Custom3", "7", "C"), *ppd);
  EXPECT_EQ(log.messages("-[ATMediaTypePPDUpdater addAttributesForMediaWithData:toPPD:]"),
            logged({"For A parent media has ID 12", "Parent media name: Plain attributes: \"a\"",
                    "Adding attributes for Custom1: \"a\"", "For B parent media has ID 345",
                    "Parent media name: Matte attributes: (null)", "For C parent media has ID (null)"}));
}

// The group attributes

TEST(ATMediaTypePPDUpdater, AGroupOfTwoIsFourLines) {
  const auto group = Updater().customMediaGroupAttributeWithMediaNames({"Custom1", "Custom2"});
  EXPECT_EQ(textOf(*group),
            "*QZMediaTypeGroup CustomMedia-category/Custom Paper: \"Custom1,\n"
            "Custom2\"\n"
            "*End\n"
            "\n");
  EXPECT_EQ(group->name(), "QZMediaTypeGroup");
  EXPECT_EQ(group->spec(), "CustomMedia-category");
  EXPECT_EQ(group->text(), "Custom Paper");
  EXPECT_EQ(group->value(), "\"Custom1,\nCustom2\"\n*End\n");
}

TEST(ATMediaTypePPDUpdater, AGroupOfOneHasNoSeparator) {
  EXPECT_EQ(textOf(*Updater().customMediaGroupAttributeWithMediaNames({"Custom1"})), customGroup("Custom1"));
}

TEST(ATMediaTypePPDUpdater, TheExtendedGroupDiffersInItsSpec) {
  EXPECT_EQ(textOf(*Updater().extendedMediaGroupAttributeWithMediaNames({"Custom1", "Custom2", "Custom3"})),
            extendedGroup("Custom1,\nCustom2,\nCustom3"));
}
