// SPDX-License-Identifier: MIT
//
// Updaters call their own operations on the object: what a subclass overrides takes effect wherever a run calls it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/ATException.h"
#include "tests/updaters/TestDevice.h"
#include "tests/updaters/TestDocument.h"
#include "tests/updaters/TracedUpdater.h"
#include "updaters/ATGlossyProfilePCL3PPDUpdater.h"
#include "updaters/ATMediaTypePCL3PPDUpdater.h"
#include "updaters/ATMediaTypePCL3Qualifier1PPDUpdater.h"
#include "updaters/ATMediaTypePCL3Qualifier3PPDUpdater.h"
#include "updaters/ATMediaTypePPDUpdater.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

using Texts = std::vector<std::string>;

// The base class with the bare ID for a code.
struct Base : ATMediaTypePPDUpdater {
  std::optional<std::string> mediaTypeChoiceCodeWithName(const std::string& /*choiceName*/,
                                                         const DeviceValue& ID) const override {
    return ID.description();
  }
};
using PCL3 = ATMediaTypePCL3PPDUpdater;
using Qualifier3 = ATMediaTypePCL3Qualifier3PPDUpdater;
using Qualifier1 = ATMediaTypePCL3Qualifier1PPDUpdater;
using Glossy = ATGlossyProfilePCL3PPDUpdater;
using Record = ATMediaTypePPDUpdater::Record;

const std::string kLanguages = "*cupsLanguages: \"en de fr\"\n";
const std::string kPlain = mediaTypes("*MediaType Plain/Plain: \"12\"\n");
const std::string kProperties = "*QZValueAttributes MediaType.Plain: \"a;defaultGE='x'\"\n";
const std::string kEarlierGroup = "*QZMediaTypeGroup CustomMedia-category/Custom Paper: \"Plain\"\n";
const std::string kQualifier = "*cupsICCQualifier3: \"Quality\"\n";
const std::string kQuality = optionWithChoices("Quality", "Best", {"Fast", "Best"});

void addMark(ATPPD& ppd, const std::string& mark) {
  ppd.addPPDAttribute(ATPPDAttribute::initWithName("Mark", mark, std::nullopt, mark));
}

// The document behind a run with these records.
template <class Updater>
std::shared_ptr<ATPPD> run(const std::string& text, std::initializer_list<DeviceValue> records) {
  const auto ppd = documentFromText(text);
  const FakeReader reader(mediaList(records));
  EXPECT_TRUE(Updater().updatePPD(ppd.get(), &reader));
  return ppd;
}

template <class Updater>
std::string textAfter(const std::string& text, std::initializer_list<DeviceValue> records) {
  return textOf(*run<Updater>(text, records));
}

Texts linesOf(const ATPPD& ppd, const std::string& prefix) {
  Texts lines;
  for (const StatementString& string : ppd.strings()) {
    if (string.view().starts_with(prefix)) lines.emplace_back(string.view());
  }
  return lines;
}

const DeviceValue kFactory = mapOf({{"MediaName", "Plain"}, {"ID", "12"}});

DeviceValue factoryWith(const DeviceValue& profiles) {
  return mapOf({{"MediaName", "Plain"}, {"ID", "12"}, {"ICCProfiles", profiles}});
}

DeviceValue withGloss(const DeviceValue& record) {
  record.map()->set("DefaultGlossEnhancer", "FULLPAGE");
  return record;
}

DeviceValue withProfile(const DeviceValue& record) {
  record.map()->set("ICCProfiles", listOf({profile("N", "/n", "OFF", "Best")}));
  return record;
}

}  // namespace

// Cleaning up

TEST(OverriddenOperations, CleaningUp) {
  struct Updater : Base {
    void cleanupPPD(ATPPD& ppd) const override { addMark(ppd, "cleanup"); }
  };
  EXPECT_EQ(textAfter<Updater>(kEarlierGroup, {}), kEarlierGroup + "*Mark cleanup: cleanup\n*QZMediaListVersion: 17\n");
}

TEST(OverriddenOperations, RestoringFactoryProfiles) {
  struct Updater : Base {
    void restoreFactoryICCProfilesInPPD(ATPPD& ppd) const override { addMark(ppd, "restore"); }
  };
  EXPECT_EQ(textAfter<Updater>("", {}), "*Mark restore: restore\n*QZMediaListVersion: 17\n");
}

TEST(OverriddenOperations, RemovingTheMediaOfAGroup) {
  struct Updater : Base {
    void removeMediaInGroup(const ATPPD::AttributePtr& group, ATPPD& fromPPD) const override {
      addMark(fromPPD, group == nullptr ? "none" : std::string(*group->spec()));
    }
  };
  EXPECT_EQ(
      textAfter<Updater>(kEarlierGroup, {}),
      kEarlierGroup + "*Mark CustomMedia-category: CustomMedia-category\n*Mark none: none\n*QZMediaListVersion: 17\n");
}

TEST(OverriddenOperations, RemovingAMedium) {
  struct Updater : Base {
    void removeInclusionsOfMediaWithID(const std::string& choiceName, ATPPD& fromPPD) const override {
      addMark(fromPPD, choiceName);
    }
  };
  EXPECT_EQ(textAfter<Updater>(kEarlierGroup + kPlain, {}), "*Mark Plain: Plain\n*QZMediaListVersion: 17\n" + kPlain);
}

TEST(OverriddenOperations, RestoringTheGlossDefaults) {
  struct Updater : Base {
    void restoreDefaultGlossEnhancerMediaPropertyInPPD(ATPPD& ppd) const override { addMark(ppd, "gloss"); }
  };
  EXPECT_EQ(textAfter<Updater>(kProperties, {}), kProperties + "*Mark gloss: gloss\n*QZMediaListVersion: 17\n");
}

// Gloss

TEST(OverriddenOperations, WhatIsGlossy) {
  struct Updater : Base {
    bool isGlossyMediaWithAttributes(const ATPPDAttribute::Part& properties) const override {
      return properties == "\"a;defaultGE='x'\"";
    }
  };
  EXPECT_THAT(valuesOf(*run<Updater>(kProperties + fullGlossOption("economode-ge"), {}), "QZValueAttributes"),
              ElementsAre("\"a;defaultGE='economode-ge'\""));
}

TEST(OverriddenOperations, TheChoiceOfAGlossValue) {
  struct Updater : Base {
    std::optional<std::string> ppdNameForGlossEnhancerValue(const std::optional<std::string>& value,
                                                            const ATPPD& /*fromPPD*/) const override {
      return "of " + *value;
    }
  };
  EXPECT_THAT(valuesOf(*run<Updater>(kProperties, {}), "QZValueAttributes"), ElementsAre("\"a;defaultGE='of OFF'\""));
  EXPECT_THAT(valuesOf(*run<Updater>(kProperties + kPlain, {withGloss(mapOf({{"ID", "12"}}))}), "QZValueAttributes"),
              ElementsAre("\"a;defaultGE='of FULLPAGE'\""));
}

TEST(OverriddenOperations, ChangingAGlossDefault) {
  struct Updater : Base {
    std::string changeDefaultGlossEnhancer(const std::optional<std::string>& choiceName,
                                           const ATPPDAttribute::Part& inMediaTypeProperties) const override {
      return fmt::format("{} + {}", *inMediaTypeProperties, choiceName.value_or("none"));
    }
  };
  EXPECT_THAT(valuesOf(*run<Updater>(kProperties + kPlain, {withGloss(mapOf({{"ID", "12"}}))}), "QZValueAttributes"),
              ElementsAre("\"a;defaultGE='x'\" + none + none"));
}

TEST(OverriddenOperations, TheDevicesGlossDefault) {
  struct Updater : Base {
    void updateDefaultGlossEnhancerForMediaWithData(const Record& record, ATPPD& inPPD) const override {
      addMark(inPPD, "gloss of " + record.valueForKey("MediaName").description());
    }
  };
  EXPECT_THAT(valuesOf(*run<Updater>("", {kFactory, customMedium("Canvas", "5")}), "Mark"),
              ElementsAre("gloss of Plain", "gloss of Canvas"));
}

// Media

TEST(OverriddenOperations, WhatIsACustomMedium) {
  struct Updater : Base {
    bool isMediaTypeDataCustom(const Record& record) const override { return record.valueForKey("ID").equals("12"); }
    void setICCProfileForMediaWithData(const Record& record, ATPPD& inPPD) const override {
      addMark(inPPD, "factory " + record.valueForKey("MediaName").description());
    }
  };
  const auto ppd = run<Updater>(mediaTypes(""), {kFactory, customMedium("Canvas", "5"), extendedMedium("Film", "6")});
  EXPECT_THAT(valuesOf(*ppd, "Mark"), ElementsAre("factory Canvas", "factory Film"));
  EXPECT_THAT(textOf(*ppd), HasSubstr("*MediaType Custom1/Plain: \"12\"\n"));
  EXPECT_THAT(valuesOf(*ppd, "QZMediaTypeGroup"), ElementsAre("\"Custom1\"\n*End\n"));
}

TEST(OverriddenOperations, TheNameOfAChoice) {
  struct Updater : Base {
    Record addPPDNameForMediaWithIndex(std::uint64_t index, const Record& toData) const override {
      const Record named = Base::addPPDNameForMediaWithIndex(index, toData);
      named.map()->set("PPDName", "Mine" + std::to_string(index));
      return named;
    }
  };
  const auto ppd = run<Updater>(mediaTypes(""), {customMedium("Canvas", "5"), customMedium("Film", "6")});
  EXPECT_THAT(valuesOf(*ppd, "QZMediaTypeGroup"), ElementsAre("\"Mine1,\nMine2\"\n*End\n"));
  EXPECT_NE(ppd->optionForName("MediaType")->choiceForName("Mine2"), nullptr);
}

TEST(OverriddenOperations, AddingAMedium) {
  struct Updater : Base {
    bool addMediaWithData(const Record& record, ATPPD& toPPD) const override {
      addMark(toPPD, record.valueForKey("PPDName").description());
      return record.valueForKey("MediaName").equals("Film");
    }
  };
  const auto ppd = run<Updater>(kPlain, {customMedium("Canvas", "5"), customMedium("Film", "6")});
  EXPECT_THAT(valuesOf(*ppd, "Mark"), ElementsAre("Custom1", "Custom1"));
  EXPECT_THAT(valuesOf(*ppd, "QZMediaTypeGroup"), ElementsAre("\"Custom1\"\n*End\n"));
}

TEST(OverriddenOperations, TheCodeOfAChoice) {
  struct Updater : Base {
    std::optional<std::string> mediaTypeChoiceCodeWithName(const std::string& choiceName,
                                                           const DeviceValue& ID) const override {
      return choiceName + " and " + ID.description();
    }
  };
  EXPECT_EQ(run<Updater>(mediaTypes(""), {customMedium("Canvas", "5")})
                ->optionForName("MediaType")
                ->choiceForName("Custom1")
                ->code(),
            "Custom1 and 5");
}

TEST(OverriddenOperations, AnAbsentCodeKeepsTheMediumOutAndItsNameFree) {
  struct Updater : Base {
    std::optional<std::string> mediaTypeChoiceCodeWithName(const std::string& /*choiceName*/,
                                                           const DeviceValue& ID) const override {
      return ID.equals("5") ? std::nullopt : std::optional<std::string>(ID.description());
    }
    bool addICCProfileForMediaWithData(const Record& record, ATPPD& toPPD) const override {
      addMark(toPPD, record.valueForKey("MediaName").description());
      return true;
    }
  };
  EXPECT_EQ(textAfter<Updater>(kProperties + mediaTypes(""),
                               {customMedium("Canvas", "5", "Plain"), customMedium("Film", "6")}),
            "*QZValueAttributes MediaType.Plain: \"a;defaultGE='(null)'\"\n*Mark Film: Film\n"
            "*QZMediaTypeGroup CustomMedia-category/Custom Paper: \"Custom1\"\n*End\n\n*QZMediaListVersion: 17\n" +
                mediaTypes("*MediaType Custom1/Film: \"6\"\n"));
  EXPECT_FALSE(Updater().addMediaWithData(mapOf({{"PPDName", "Custom1"}, {"ID", "5"}, {"MediaName", "Canvas"}}),
                                          *documentFromText(kPlain)));
}

TEST(OverriddenOperations, AnEmptyCodeIsACode) {
  struct Updater : Base {
    std::optional<std::string> mediaTypeChoiceCodeWithName(const std::string& /*choiceName*/,
                                                           const DeviceValue& /*ID*/) const override {
      return "";
    }
  };
  EXPECT_THAT(textAfter<Updater>(mediaTypes(""), {customMedium("Canvas", "5")}),
              HasSubstr("*MediaType Custom1/Canvas: \"\"\n"));
}

TEST(OverriddenOperations, TheNamesInOtherLanguages) {
  struct Updater : Base {
    ATPPDChoice::Localizations localizedNamesForMediaName(std::string_view name, const ATPPD& /*ppd*/) const override {
      return {{"it", "Tela"}, {"es", name}};
    }
  };
  EXPECT_EQ(linesOf(*run<Updater>(kLanguages + mediaTypes(""), {customMedium("Canvas", "5")}), "*it."),
            Texts{"*it.MediaType Custom1/Tela: \"\"\n"});
  EXPECT_THAT(textAfter<Updater>(kLanguages + mediaTypes(""), {customMedium("Canvas", "5")}),
              Not(HasSubstr("*de.MediaType")));
}

TEST(OverriddenOperations, AnEnglishNameThatIsThereAlreadyIsReplacedInItsPlace) {
  struct Updater : Base {
    ATPPDChoice::Localizations localizedNamesForMediaName(std::string_view name, const ATPPD& /*ppd*/) const override {
      return {{"de", name}, {"en", "English"}, {"fr", name}};
    }
  };
  const auto linesFor = [](const char* name) {
    return run<Updater>(mediaTypes(""), {customMedium(name, "5")})
        ->optionForName("MediaType")
        ->choices()
        .back()
        ->strings();
  };
  const auto textFor = [&](const char* name) {
    std::string text;
    for (const StatementString& string : linesFor(name)) text += string.view();
    return text;
  };
  EXPECT_EQ(textFor("A:B"),
            "*MediaType Custom1/: \"5\"\n*de.MediaType Custom1/A:B: \"\"\n*en.MediaType Custom1/A:B: \"\"\n"
            "*fr.MediaType Custom1/A:B: \"\"\n");
  EXPECT_EQ(textFor("AB"),
            "*MediaType Custom1/AB: \"5\"\n*de.MediaType Custom1/AB: \"\"\n*en.MediaType Custom1/English: \"\"\n"
            "*fr.MediaType Custom1/AB: \"\"\n");
}

TEST(OverriddenOperations, WhatMayBeAMainText) {
  struct Updater : Base {
    bool validMediaUIName(const std::string& name) const override { return name == "A:B"; }
  };
  const std::string text = textAfter<Updater>(mediaTypes(""), {customMedium("A:B", "5"), customMedium("AB", "6")});
  EXPECT_THAT(text, HasSubstr("*MediaType Custom1/A:B: \"5\"\n"));
  EXPECT_THAT(text, HasSubstr("*MediaType Custom2/: \"6\"\n*en.MediaType Custom2/AB: \"\"\n"));
}

TEST(OverriddenOperations, VerifyingAString) {
  struct Updater : Base {
    bool verifyString(std::string_view string, char32_t start, std::size_t length,
                      std::string_view andDisallowedCharactersInString) const override {
      return string == "A:B" && start == 32 && length == 126 && andDisallowedCharactersInString == "\n\r:";
    }
  };
  const std::string text = textAfter<Updater>(mediaTypes(""), {customMedium("A:B", "5"), customMedium("AB", "6")});
  EXPECT_THAT(text, HasSubstr("*MediaType Custom1/A:B: \"5\"\n"));
  EXPECT_THAT(text, HasSubstr("*MediaType Custom2/: \"6\"\n"));
}

TEST(OverriddenOperations, ThePropertiesOfACustomMedium) {
  struct Updater : Base {
    void addAttributesForMediaWithData(const Record& record, ATPPD& toPPD) const override {
      addMark(toPPD, record.valueForKey("PPDName").description());
    }
  };
  const auto ppd = run<Updater>(kProperties + kPlain, {customMedium("Canvas", "5", "12")});
  EXPECT_THAT(valuesOf(*ppd, "Mark"), ElementsAre("Custom1"));
  EXPECT_THAT(specsOf(*ppd, "QZValueAttributes"), ElementsAre("MediaType.Plain"));
}

TEST(OverriddenOperations, TheChoiceOfAnID) {
  struct Updater : Base {
    DeviceValue ppdNameForMediaWithID(const DeviceValue& ID, const ATPPD& /*fromPPD*/) const override {
      return ID.equals("parent") ? "Plain" : "Other";
    }
  };
  const auto ppd = run<Updater>(
      kProperties + "*QZValueAttributes MediaType.Other: \"defaultGE\"\n" + fullGlossOption("economode-ge"),
      {withGloss(customMedium("Canvas", "5", "parent"))});
  EXPECT_THAT(valuesOf(*ppd, "QZValueAttributes"),
              ElementsAre("\"a;defaultGE='off-ge'\"", "\"defaultGE='whole-page-ge'\"", "\"a;defaultGE='off-ge'\""));
}

TEST(OverriddenOperations, TheChoiceOfAnIDMayBeAbsentOrNoText) {
  struct Absent : Base {
    DeviceValue ppdNameForMediaWithID(const DeviceValue& /*ID*/, const ATPPD& /*fromPPD*/) const override { return {}; }
  };
  struct Number : Base {
    DeviceValue ppdNameForMediaWithID(const DeviceValue& /*ID*/, const ATPPD& /*fromPPD*/) const override {
      return number(7);
    }
  };
  const std::string properties = "*QZValueAttributes MediaType.7: \"a;defaultGE='(null)'\"\n";
  const std::string ofNull = "*QZValueAttributes MediaType.(null): \"n\"\n";
  const auto withParent = withGloss(customMedium("Canvas", "5", "12"));
  EXPECT_THAT(valuesOf(*run<Number>(properties + ofNull, {withParent}), "QZValueAttributes"),
              ElementsAre("\"a;defaultGE='(null)'\"", "\"n\"", "\"a;defaultGE='(null)'\""));
  EXPECT_THAT(valuesOf(*run<Absent>(properties + ofNull, {withParent}), "QZValueAttributes"),
              ElementsAre("\"a;defaultGE='(null)'\"", "\"n\"", "\"n\""));
}

TEST(OverriddenOperations, TheOptionOfTheMedia) {
  struct Updater : Base {
    std::shared_ptr<ATPPDOption> mediaTypeOptionFromPPD(const ATPPD& ppd) const override {
      return ppd.optionForName("Quality");
    }
  };
  const auto ppd = run<Updater>(kEarlierGroup + kPlain + kQuality, {customMedium("Canvas", "5")});
  EXPECT_NE(ppd->optionForName("Quality")->choiceForName("Custom1"), nullptr);
  EXPECT_NE(ppd->optionForName("MediaType")->choiceForName("Plain"), nullptr);
  EXPECT_EQ(ppd->optionForName("MediaType")->choiceForName("Custom1"), nullptr);
}

TEST(OverriddenOperations, TheGroupAttributes) {
  struct Updater : Base {
    ATPPD::AttributePtr customMediaGroupAttributeWithMediaNames(const std::vector<std::string>& names) const override {
      return ATPPDAttribute::initWithName("Mine", names.front(), std::nullopt, names.back());
    }
    ATPPD::AttributePtr extendedMediaGroupAttributeWithMediaNames(
        const std::vector<std::string>& /*names*/) const override {
      return nullptr;
    }
  };
  EXPECT_EQ(textAfter<Updater>("", {customMedium("A", "1"), extendedMedium("B", "2"), customMedium("C", "3")}),
            "*Mine Custom1: Custom3\n*QZMediaListVersion: 17\n");
}

TEST(OverriddenOperations, AddingAndSettingProfiles) {
  struct Updater : Base {
    bool addICCProfileForMediaWithData(const Record& record, ATPPD& toPPD) const override {
      addMark(toPPD, "add " + record.valueForKey("PPDName").description());
      return false;
    }
    void setICCProfileForMediaWithData(const Record& record, ATPPD& inPPD) const override {
      addMark(inPPD, "set " + record.valueForKey("MediaName").description());
    }
  };
  EXPECT_THAT(valuesOf(*run<Updater>("", {kFactory, customMedium("Canvas", "5")}), "Mark"),
              ElementsAre("set Plain", "add Custom1"));
}

// A record without the name of its choice

TEST(OverriddenOperations, ARecordThatGetsNoNameIsNotAdded) {
  struct Updater : Base {
    Record addPPDNameForMediaWithIndex(std::uint64_t index, const Record& toData) const override {
      return toData.valueForKey("ID").equals("5") ? toData : Base::addPPDNameForMediaWithIndex(index, toData);
    }
  };
  EXPECT_EQ(textAfter<Updater>(kLanguages + mediaTypes(""), {customMedium("Canvas", "5"), customMedium("Film", "6")}),
            kLanguages +
                "*QZMediaTypeGroup CustomMedia-category/Custom Paper: \"Custom1\"\n*End\n\n*QZMediaListVersion: 17\n" +
                mediaTypes("*MediaType Custom1/Film: \"6\"\n*de.MediaType Custom1/Film: \"\"\n"
                           "*fr.MediaType Custom1/Film: \"\"\n"));
}

TEST(OverriddenOperations, ARecordThatBecomesAbsentIsNotAdded) {
  struct Updater : Base {
    Record addPPDNameForMediaWithIndex(std::uint64_t /*index*/, const Record& /*toData*/) const override { return {}; }
  };
  EXPECT_EQ(textAfter<Updater>(kLanguages + kPlain, {customMedium("Canvas", "5")}),
            kLanguages + "*QZMediaListVersion: 17\n" + kPlain);
}

TEST(OverriddenOperations, AMediumThatIsSaidToBeAddedWithoutANameIsAProgrammingError) {
  struct Updater : Base {
    explicit Updater(DeviceValue name) : name_(std::move(name)) {}
    Record addPPDNameForMediaWithIndex(std::uint64_t /*index*/, const Record& toData) const override {
      toData.map()->set("PPDName", name_);
      return toData;
    }
    bool addMediaWithData(const Record& /*record*/, ATPPD& /*toPPD*/) const override { return true; }
    DeviceValue name_;
  };
  const auto ppd = documentFromText(kPlain);
  for (const DeviceValue& name : {DeviceValue(), number(7), listOf({"Custom1"})}) {
    const FakeReader reader(mediaList({customMedium("Canvas", "5")}));
    EXPECT_THROW(Updater(name).updatePPD(ppd.get(), &reader), ATException) << name.description();
  }
  const FakeReader reader(mediaList({customMedium("Canvas", "5")}));
  EXPECT_TRUE(Updater("Mine").updatePPD(ppd.get(), &reader));
  EXPECT_THAT(valuesOf(*ppd, "QZMediaTypeGroup"), ElementsAre("\"Mine\"\n*End\n"));
}

TEST(OverriddenOperations, AMediumThatIsSaidToBeAddedWithoutARecordIsAProgrammingError) {
  struct Updater : Base {
    Record addPPDNameForMediaWithIndex(std::uint64_t /*index*/, const Record& /*toData*/) const override { return {}; }
    bool addMediaWithData(const Record& /*record*/, ATPPD& /*toPPD*/) const override { return true; }
  };
  const auto ppd = documentFromText(kPlain);
  const FakeReader reader(mediaList({customMedium("Canvas", "5")}));
  EXPECT_THROW(Updater().updatePPD(ppd.get(), &reader), ATException);
}

TEST(OverriddenOperations, AnAbsentRecordStaysAbsent) {
  const auto ppd = documentFromText(
      "*cupsICCQualifier1: \"QZGlossEnhancerSimplified\"\n*cupsICCQualifier3: \"OutputMode\"\n" + kPlain);
  EXPECT_TRUE(Base().addPPDNameForMediaWithIndex(1, {}).isAbsent());
  EXPECT_TRUE(Qualifier1().adjustedMediaData({}, *ppd).isAbsent());
  EXPECT_TRUE(Glossy().mediaInfoByConvertDeviceData({}, *ppd).isAbsent());
}

TEST(OverriddenOperations, AnAbsentRecordInTheListIsAFactoryMediumOfNothing) {
  const std::string text = statement(".P.", "P", "/p") + kPlain;
  const std::string expected = statement(".P.", "P", "/p") + "*QZMediaListVersion: 17\n" + kPlain;
  EXPECT_EQ(textAfter<Base>(text, {DeviceValue()}), expected);
  EXPECT_EQ(textAfter<PCL3>(text, {DeviceValue()}), expected);
  EXPECT_EQ(textAfter<Qualifier3>(text, {DeviceValue()}), expected);
  EXPECT_EQ(textAfter<Qualifier1>(text, {DeviceValue()}), expected);
  EXPECT_EQ(textAfter<Glossy>(text, {DeviceValue()}), expected);
}

// Profiles

TEST(OverriddenOperations, TheMediaQualifier) {
  struct Updater : PCL3 {
    DeviceValue mediaQualifierFromData(const Record& /*record*/, const ATPPD& /*ppd*/) const override { return "Q"; }
  };
  const std::string text = statement(".Q.", "Old", "/old") + statement(".Plain.", "P", "/p") + kPlain;
  EXPECT_THAT(textAfter<Updater>(text, {withProfile(mapOf({{"ID", "12"}}))}), HasSubstr(statement(".Q.", "N", "/n")));
  EXPECT_THAT(specsOf(*run<Updater>(kPlain, {withProfile(customMedium("Canvas", "5"))}), "cupsICCProfile"),
              ElementsAre(".Q."));
}

TEST(OverriddenOperations, TheGeneralSpec) {
  struct Updater : Qualifier3 {
    std::string generalProfileSpecForMediaData(const Record& /*record*/, const ATPPD& /*ppd*/) const override {
      return "A.B.";
    }
  };
  EXPECT_THAT(
      specsOf(*run<Updater>(kPlain, {withProfile(customMedium("Canvas", "5")), withProfile(mapOf({{"ID", "12"}}))}),
              "cupsICCProfile"),
      ElementsAre("A.B."));
}

TEST(OverriddenOperations, TheSpecOfAProfile) {
  struct Updater : PCL3 {
    std::string profileSpecFromMediaData(const Record& record, const ProfileEntry& profileInfo,
                                         const ATPPD& /*ppd*/) const override {
      return record.valueForKey("ID").description() + "." + profileInfo.valueForKey("ICCName").description();
    }
  };
  EXPECT_THAT(textAfter<Updater>(statement("12.N", "Old", "/old") + kPlain,
                                 {withProfile(customMedium("Canvas", "5")), withProfile(mapOf({{"ID", "12"}}))}),
              HasSubstr(statement("12.N", "N", "/n") + statement("5.N", "N", "/n")));
}

TEST(OverriddenOperations, TheStatementsOfAProfile) {
  struct Updater : PCL3 {
    std::optional<ATPPD::Attributes> cupsICCProfileAttributesWithName(const ATPPDAttribute::Part& name,
                                                                      const ATPPD::Spec& spec,
                                                                      const std::optional<std::string>& url,
                                                                      const ATPPD& /*ppd*/) const override {
      if (name == "none") return std::nullopt;
      return ATPPD::Attributes{ATPPDAttribute::initWithName("Mine", spec, name, url), nullptr};
    }
  };
  const DeviceValue record = customMedium("Canvas", "5");
  record.map()->set("ICCProfiles", listOf({profile("none", "/n"), profile("N", "/n")}));
  EXPECT_EQ(linesOf(*run<Updater>(kPlain, {record}), "*Mine"), Texts{"*Mine .Custom1./N: /n\n"});
}

TEST(OverriddenOperations, UpdatingAProfile) {
  struct Updater : PCL3 {
    void updateCupsProfile(const ATPPD::AttributePtr& /*profile*/, ATPPD& inPPD,
                           const ATQZProfilePPDAttributeWrapper& withQZProfileAttribute) const override {
      addMark(inPPD, *withQZProfileAttribute.factoryProfileName());
    }
  };
  const std::string text = factory(".A.", "A;;/a") + factory(".B.", "B") + statement(".A.", "X", "/x");
  EXPECT_EQ(textAfter<Updater>(text, {}), text + "*Mark A: A\n*QZMediaListVersion: 17\n");
}

TEST(OverriddenOperations, RemovingSpecialisedProfiles) {
  struct Updater : Qualifier3 {
    void removeSpecializedICCQualifiers(ATPPD& ppd, const Record& aMediaTypeData) const override {
      addMark(ppd, aMediaTypeData.valueForKey("MediaName").description());
    }
  };
  const std::string text = kQualifier + statement(".Plain.Fast", "F", "/f");
  EXPECT_EQ(textAfter<Updater>(text + kPlain + kQuality, {factoryWith(listOf({profile("N", "/n")}))}),
            text + "*Mark Plain: Plain\n" + statement(".Plain.", "N", "/n") + "*QZMediaListVersion: 17\n" + kPlain +
                kQuality);
}

TEST(OverriddenOperations, ThePossibleSpecsOfTheThirdQualifier) {
  struct Updater : Qualifier3 {
    std::optional<std::vector<std::string>> qualified3PossibleProfileSpecsForMediaData(
        const Record& /*record*/, const ATPPD& /*ppd*/) const override {
      return Texts{"Mine", "Missing"};
    }
  };
  EXPECT_THAT(specsOf(*run<Updater>(statement("Mine", "M", "/m") + statement("Other", "O", "/o") + kPlain, {kFactory}),
                      "cupsICCProfile"),
              ElementsAre("Other"));
}

TEST(OverriddenOperations, TheChoiceNamesOfTheThirdQualifier) {
  struct Updater : Qualifier3 {
    std::vector<std::string> choiceNamesForOption(const std::shared_ptr<ATPPDOption>& option) const override {
      return {option == nullptr ? "none" : option->name()};
    }
  };
  const std::string text = statement(".Plain.Quality", "Q", "/q") + statement(".Plain.none", "N", "/n") + kPlain;
  EXPECT_THAT(specsOf(*run<Updater>(kQualifier + text + kQuality, {kFactory}), "cupsICCProfile"),
              ElementsAre(".Plain.none"));
  EXPECT_THAT(specsOf(*run<Updater>(kQualifier + text, {kFactory}), "cupsICCProfile"), ElementsAre(".Plain.Quality"));
}

TEST(OverriddenOperations, TheGeneralSpecsToRemoveBeforeRestoring) {
  struct Updater : Qualifier3 {
    std::vector<std::string> collectPossible2ComponentSpecsToRemoveWithFactoryProfiles(
        const ATPPD::Attributes& factoryProfiles) const override {
      return {"of " + std::to_string(factoryProfiles.size())};
    }
  };
  EXPECT_THAT(specsOf(*run<Updater>(factory(".A.F", "none") + factory(".B.F", "none") + statement(".A.", "A", "/a") +
                                        statement("of 2", "O", "/o"),
                                    {}),
                      "cupsICCProfile"),
              ElementsAre(".A."));
}

TEST(OverriddenOperations, TheTwoComponentsOfASpec) {
  struct Updater : Qualifier3 {
    std::string twoComponentICCProfileSpecFor3ComponentSpec(const ATPPD::Spec& spec) const override {
      return "two of " + std::string(*spec);
    }
  };
  EXPECT_THAT(
      specsOf(*run<Updater>(
                  factory("NoDot", "none") + statement("two of NoDot", "T", "/t") + statement(".A.", "A", "/a"), {}),
              "cupsICCProfile"),
      ElementsAre(".A."));
}

TEST(OverriddenOperations, WhatTheFirstQualifierAppliesTo) {
  struct Updater : Qualifier1 {
    bool isApplicableToPPD(const ATPPD& /*ppd*/) const override { return true; }
  };
  EXPECT_THAT(
      specsOf(*run<Updater>(kPlain, {withProfile(customMedium("Canvas", "5")), withProfile(mapOf({{"ID", "12"}}))}),
              "cupsICCProfile"),
      ElementsAre("False.Custom1.Best", "False.Plain.Best"));
}

TEST(OverriddenOperations, TheAdjustedRecord) {
  struct Updater : Qualifier1 {
    Record adjustedMediaData(const Record& record, const ATPPD& /*toPPD*/) const override {
      return mediumWithProfiles("Adjusted", record.valueForKey("ICCProfiles"));
    }
  };
  EXPECT_THAT(
      specsOf(*run<Updater>(kPlain, {withProfile(customMedium("Canvas", "5")), withProfile(mapOf({{"ID", "12"}}))}),
              "cupsICCProfile"),
      ElementsAre("OFF.Adjusted.Best"));
}

TEST(OverriddenOperations, TheConvertedRecord) {
  struct Updater : Glossy {
    Record mediaInfoByConvertDeviceData(const Record& record, const ATPPD& /*toPPD*/) const override {
      return mediumWithProfiles("Converted", record.valueForKey("ICCProfiles"));
    }
  };
  EXPECT_THAT(textAfter<Updater>(statement(".Converted.", "Old", "/old") + kPlain,
                                 {withProfile(mapOf({{"ID", "12"}})), withProfile(customMedium("Canvas", "5"))}),
              HasSubstr(statement(".Converted.", "N", "/n") + statement(".Converted.", "N", "/n")));
}

// When an operation is called

TEST(OverriddenOperations, ThePossibleSpecsAreAskedForEachFactoryMediumWhateverTheDocumentHolds) {
  const auto asked = [](const auto& updater, const std::string& text) {
    const auto ppd = documentFromText(text);
    const FakeReader reader(mediaList({kFactory, customMedium("Canvas", "5"), mapOf({{"ID", "13"}}), mapOf({}),
                                       factoryWith(listOf({profile("N", "/n", "OFF")}))}));
    EXPECT_TRUE(updater.updatePPD(ppd.get(), &reader));
    EXPECT_EQ(updater.trace.count("setICCProfile"), 4);
    return updater.trace.count("possibleSpecs");
  };
  for (const std::string& text : {std::string(), kPlain, kQualifier + kPlain + kQuality,
                                  kQualifier + statement(".Other.Fast", "O", "/o") + kPlain + kQuality}) {
    EXPECT_EQ(asked(TracedQualifier3<Qualifier3>(), text), 4) << text;
    EXPECT_EQ(asked(TracedQualifier3<Qualifier1>(), text), 4) << text;
  }
}

TEST(OverriddenOperations, TheChoiceNamesAreAskedForEachFactoryMediumWithASpec) {
  const auto ppd = documentFromText(kQualifier + kPlain + kQuality);
  const FakeReader reader(mediaList({kFactory, mapOf({{"ID", "13"}}), mapOf({})}));
  const TracedQualifier3<Qualifier3> updater;
  EXPECT_TRUE(updater.updatePPD(ppd.get(), &reader));
  EXPECT_EQ(updater.trace.count("choiceNames"), 2);
}

TEST(OverriddenOperations, SetGivesTheLocalizationsOfOneEntryTheirTextBeforeTheNextEntry) {
  struct Updater : PCL3 {
    std::string profileSpecFromMediaData(const Record& /*record*/, const ProfileEntry& /*profileInfo*/,
                                         const ATPPD& ppd) const override {
      Texts texts;
      for (const auto& each : ppd.localizationForAttributeWithName("cupsICCProfile", ".C.")) {
        texts.emplace_back(*each->text());
      }
      seen.push_back(texts);
      return ".C.";
    }
    mutable std::vector<Texts> seen;
  };
  const auto ppd = documentFromText(kLanguages + statement(".C.", "Old", "/old") + localized("de", ".C.", "Alt") +
                                    localized("fr", ".C.", "Vieux"));
  const Updater updater;
  updater.setICCProfileForMediaWithData(
      mediumWithProfiles("C", listOf({profile("A", "/a"), profile("a:b", "/x"), profile("B", "/b")})), *ppd);
  EXPECT_EQ(updater.seen, (std::vector<Texts>{{"Alt", "Vieux"}, {"A", "A"}, {"A", "A"}}));
  EXPECT_EQ(textOf(*ppd),
            kLanguages + statement(".C.", "B", "/b") + localized("de", ".C.", "B") + localized("fr", ".C.", "B"));
}

TEST(OverriddenOperations, SetLooksForTheLocalizationsAnewForEachEntry) {
  struct Updater : PCL3 {
    std::string profileSpecFromMediaData(const Record& /*record*/, const ProfileEntry& profileInfo,
                                         const ATPPD& /*ppd*/) const override {
      if (profileInfo.valueForKey("ICCName").equals("B")) {
        document->addPPDAttribute(ATPPDAttribute::initWithName("de.cupsICCProfile", ".C.", "New", "\"\""));
      }
      return ".C.";
    }
    std::shared_ptr<ATPPD> document;
  };
  Updater updater;
  updater.document = documentFromText(kLanguages + statement(".C.", "Old", "/old"));
  updater.setICCProfileForMediaWithData(mediumWithProfiles("C", listOf({profile("A", "/a"), profile("B", "/b")})),
                                        *updater.document);
  EXPECT_EQ(textOf(*updater.document), kLanguages + statement(".C.", "B", "/b") + localized("de", ".C.", "B"));
}
