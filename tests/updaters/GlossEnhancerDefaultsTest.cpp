// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "base/ATException.h"
#include "tests/support/TestLog.h"
#include "tests/updaters/TestDevice.h"
#include "tests/updaters/TestDocument.h"
#include "tests/updaters/TracedUpdater.h"
#include "updaters/ATMediaTypePPDUpdater.h"

namespace {

using Texts = std::vector<std::string>;

constexpr const char* kChangeSignature = "-[ATMediaTypePPDUpdater changeDefaultGlossEnhancer:inMediaTypeProperties:]";
constexpr const char* kRestoreSignature = "-[ATMediaTypePPDUpdater restoreDefaultGlossEnhancerMediaPropertyInPPD:]";
constexpr const char* kUpdateSignature = "-[ATMediaTypePPDUpdater updateDefaultGlossEnhancerForMediaWithData:inPPD:]";

const std::string kBothOptions = simplifiedGlossOption("True") + fullGlossOption("whole-page-ge");
const std::string kPlain = mediaTypes("*MediaType Plain/Plain: \"12\"\n");

std::string changed(const std::optional<std::string>& choice, const std::optional<std::string>& properties) {
  return ATMediaTypePPDUpdater().changeDefaultGlossEnhancer(choice, properties);
}

std::string properties(const std::string& medium, const std::string& content) {
  return "*QZValueAttributes MediaType." + medium + ": \"" + content + "\"\n";
}

// What restoring makes of properties with this content in a document with these options.
std::string restored(const std::string& content, const std::string& options) {
  const auto ppd = documentFromText(properties("Plain", content) + options);
  ATMediaTypePPDUpdater().restoreDefaultGlossEnhancerMediaPropertyInPPD(*ppd);
  return std::string(Text::orNull(ppd->attributeForName("QZValueAttributes")->value()));
}

// What the device's default makes of the statements of a document with these options.
std::string updatedBy(const DeviceValue& record, const std::string& statements, const std::string& options) {
  const auto ppd = documentFromText(statements + options);
  ATMediaTypePPDUpdater().updateDefaultGlossEnhancerForMediaWithData(record, *ppd);
  const std::string text = textOf(*ppd);
  EXPECT_TRUE(text.ends_with(options));
  return text.substr(0, text.size() - options.size());
}

DeviceValue deviceDefault(const DeviceValue& gloss, const DeviceValue& ID = "12") {
  return mapOf({{"ID", ID}, {"DefaultGlossEnhancer", gloss}});
}

}  // namespace

// Glossy media

TEST(GlossEnhancerDefaults, TwoPropertiesMarkGlossyMedia) {
  const ATMediaTypePPDUpdater updater;
  for (const char* glossy : {"glossy=YES", "GESupport=YES", "\"a=b;glossy=YES;c\"", "xglossy=YESx",
                             "glossy=YES;GESupport=YES", "glossy=NO;GESupport=YES", "unquoted GESupport=YES"}) {
    EXPECT_TRUE(updater.isGlossyMediaWithAttributes(glossy)) << glossy;
  }
  for (const char* other : {"", "glossy=NO", "Glossy=YES", "glossy=yes", "gesupport=YES", "glossy= YES", "glossy",
                            "YES", "defaultGE='x'"}) {
    EXPECT_FALSE(updater.isGlossyMediaWithAttributes(other)) << other;
  }
  EXPECT_FALSE(updater.isGlossyMediaWithAttributes(std::nullopt));
}

// The choice of a device value

TEST(GlossEnhancerDefaults, OnlyFullPageIsTheWholePageOfTheFullOption) {
  const auto ppd = documentFromText(fullGlossOption("off-ge"));
  const ATMediaTypePPDUpdater updater;
  EXPECT_EQ(updater.ppdNameForGlossEnhancerValue("FULLPAGE", *ppd), "whole-page-ge");
  for (const char* other : {"OFF", "INKEDAREA", "fullpage", "FULLPAGE ", "", "whole-page-ge"}) {
    EXPECT_EQ(updater.ppdNameForGlossEnhancerValue(other, *ppd), "off-ge") << other;
  }
  EXPECT_EQ(updater.ppdNameForGlossEnhancerValue(std::nullopt, *ppd), "off-ge");
}

TEST(GlossEnhancerDefaults, TheSimplifiedOptionHasTrueAndFalse) {
  const auto ppd = documentFromText(simplifiedGlossOption("True"));
  const ATMediaTypePPDUpdater updater;
  EXPECT_EQ(updater.ppdNameForGlossEnhancerValue("FULLPAGE", *ppd), "True");
  EXPECT_EQ(updater.ppdNameForGlossEnhancerValue("INKEDAREA", *ppd), "False");
  EXPECT_EQ(updater.ppdNameForGlossEnhancerValue(std::nullopt, *ppd), "False");
}

TEST(GlossEnhancerDefaults, TheFullOptionGoesBeforeTheSimplifiedOne) {
  const auto ppd = documentFromText(kBothOptions);
  EXPECT_EQ(ATMediaTypePPDUpdater().ppdNameForGlossEnhancerValue("FULLPAGE", *ppd), "whole-page-ge");
}

TEST(GlossEnhancerDefaults, WithoutAnOptionThereIsNoChoice) {
  const auto ppd = documentFromText("*PPD-Adobe: \"4.3\"\n" + kPlain);
  EXPECT_EQ(ATMediaTypePPDUpdater().ppdNameForGlossEnhancerValue("FULLPAGE", *ppd), std::nullopt);
  EXPECT_EQ(ATMediaTypePPDUpdater().ppdNameForGlossEnhancerValue(std::nullopt, *ppd), std::nullopt);
}

TEST(GlossEnhancerDefaults, AnOptionOutsideEveryGroupDoesNotCount) {
  const auto ppd = documentFromText(
      "*OpenUI *QZGlossEnhancer/G: PickOne\n*DefaultQZGlossEnhancer: off-ge\n*QZGlossEnhancer off-ge/O: \"\"\n"
      "*CloseUI: *QZGlossEnhancer\n");
  EXPECT_EQ(ATMediaTypePPDUpdater().ppdNameForGlossEnhancerValue("FULLPAGE", *ppd), std::nullopt);
}

// Changing properties

TEST(GlossEnhancerDefaults, ReplacesTheDefaultAndKeepsTheOtherParts) {
  EXPECT_EQ(changed("off-ge", "\"glossy=YES;defaultGE='whole-page-ge'\""), "\"glossy=YES;defaultGE='off-ge'\"");
  EXPECT_EQ(changed("x", "\"defaultGE='y';a=b;c\""), "\"defaultGE='x';a=b;c\"");
  EXPECT_EQ(changed("x", "\"defaultGE\""), "\"defaultGE='x'\"");
  EXPECT_EQ(changed("x", "\"defaultGEsomething else\""), "\"defaultGE='x'\"");
}

TEST(GlossEnhancerDefaults, ReplacesEveryDefault) {
  const TestLog log;
  EXPECT_EQ(changed("x", "\"defaultGE='a';b;defaultGE='c'\""), "\"defaultGE='x';b;defaultGE='x'\"");
  EXPECT_EQ(log.messages(kChangeSignature), logged({"Changing GE from defaultGE='a' to defaultGE='x'",
                                                    "Changing GE from defaultGE='c' to defaultGE='x'"}));
}

TEST(GlossEnhancerDefaults, LogsAReplacementByAnEqualDefault) {
  const TestLog log;
  EXPECT_EQ(changed("x", "\"defaultGE='x'\""), "\"defaultGE='x'\"");
  EXPECT_EQ(log.messages(kChangeSignature), logged({"Changing GE from defaultGE='x' to defaultGE='x'"}));
}

TEST(GlossEnhancerDefaults, APartMustBeginWithTheKey) {
  const TestLog log;
  for (const char* kept : {"\"a; defaultGE='y'\"", "\"xdefaultGE='y'\"", "\"DefaultGE='y'\"", "\"defaultge='y'\"",
                           "\"a\ndefaultGE='y'\"", "\"default\""}) {
    EXPECT_EQ(changed("x", kept), kept);
  }
  EXPECT_EQ(log.messages(kChangeSignature), Texts());
}

TEST(GlossEnhancerDefaults, AddsNoDefaultWhereThereIsNone) {
  EXPECT_EQ(changed("x", "\"a=b;c=d\""), "\"a=b;c=d\"");
}

TEST(GlossEnhancerDefaults, LosesEmptyPartsAtTheStartAndKeepsTheOthers) {
  EXPECT_EQ(changed("x", "\";a;defaultGE='y'\""), "\"a;defaultGE='x'\"");
  EXPECT_EQ(changed("x", "\";;;a\""), "\"a\"");
  EXPECT_EQ(changed("x", "\"a;;b;\""), "\"a;;b;\"");
  EXPECT_EQ(changed("x", "\"a;;\""), "\"a;;\"");
  EXPECT_EQ(changed("x", "\";\""), "\"\"");
  EXPECT_EQ(changed("x", "\";;\""), "\"\"");
}

TEST(GlossEnhancerDefaults, AnAbsentChoiceIsWrittenAsNull) {
  EXPECT_EQ(changed(std::nullopt, "\"a;defaultGE='y'\""), "\"a;defaultGE='(null)'\"");
  EXPECT_EQ(changed("", "\"defaultGE='y'\""), "\"defaultGE=''\"");
}

TEST(GlossEnhancerDefaults, PropertiesWithoutContentGiveTheEmptyQuotedString) {
  for (const char* none : {"", "\"", "defaultGE='y'", "a=b;c", "\"\"", "defaultGE\"", "x\"\"y"}) {
    EXPECT_EQ(changed("x", none), "\"\"") << none;
  }
  EXPECT_EQ(changed("x", std::nullopt), "\"\"");
}

TEST(GlossEnhancerDefaults, TakesWhatStandsBetweenTheFirstAndTheLastQuote) {
  EXPECT_EQ(changed("x", "k \"a;defaultGE='y'\" l"), "\"a;defaultGE='x'\"");
  EXPECT_EQ(changed("x", "\"a\"b;defaultGE=\"y\"\""), "\"a\"b;defaultGE='x'\"");
}

// Restoring

TEST(GlossEnhancerDefaults, RestoresGlossyMediaToTheDefaultOfTheOption) {
  EXPECT_EQ(restored("glossy=YES;defaultGE='whole-page-ge'", fullGlossOption("off-ge")),
            "\"glossy=YES;defaultGE='off-ge'\"");
  EXPECT_EQ(restored("GESupport=YES;defaultGE='off-ge'", fullGlossOption("economode-ge")),
            "\"GESupport=YES;defaultGE='economode-ge'\"");
  EXPECT_EQ(restored("glossy=YES;defaultGE='x'", simplifiedGlossOption("True")), "\"glossy=YES;defaultGE='True'\"");
}

TEST(GlossEnhancerDefaults, RestoresOtherMediaToOff) {
  EXPECT_EQ(restored("a;defaultGE='whole-page-ge'", fullGlossOption("whole-page-ge")), "\"a;defaultGE='off-ge'\"");
  EXPECT_EQ(restored("a;defaultGE='x'", simplifiedGlossOption("True")), "\"a;defaultGE='False'\"");
}

TEST(GlossEnhancerDefaults, TheFullOptionDecidesWhereBothAreThere) {
  EXPECT_EQ(restored("glossy=YES;defaultGE='x'", kBothOptions), "\"glossy=YES;defaultGE='whole-page-ge'\"");
  EXPECT_EQ(restored("defaultGE='x'", kBothOptions), "\"defaultGE='off-ge'\"");
}

TEST(GlossEnhancerDefaults, WithoutAnOptionRestoringWritesNull) {
  EXPECT_EQ(restored("glossy=YES;defaultGE='x'", kPlain), "\"glossy=YES;defaultGE='(null)'\"");
  EXPECT_EQ(restored("defaultGE='x'", kPlain), "\"defaultGE='(null)'\"");
}

TEST(GlossEnhancerDefaults, LeavesPropertiesWithoutADefaultAsTheyWereRead) {
  const std::string text =
      "*QZValueAttributes   MediaType.A :  \"glossy=YES\"  \r\n*QZValueAttributes: \";;DefaultGE\"\r\n"
      "*QZValueAttributes MediaType.B/T\n";
  const auto ppd = documentFromText(text + kBothOptions);
  ATMediaTypePPDUpdater().restoreDefaultGlossEnhancerMediaPropertyInPPD(*ppd);
  EXPECT_EQ(textOf(*ppd), text + kBothOptions);
}

TEST(GlossEnhancerDefaults, RewritesPropertiesThatMentionTheDefaultAnywhere) {
  const auto ppd = documentFromText(
      "*QZValueAttributes  MediaType.A /T:  \";a; defaultGE\" \r\n"
      "*QZValueAttributes MediaType.B: defaultGE='x'\r\n" +
      kBothOptions);
  ATMediaTypePPDUpdater().restoreDefaultGlossEnhancerMediaPropertyInPPD(*ppd);
  EXPECT_EQ(textOf(*ppd),
            "*QZValueAttributes MediaType.A/T: \"a; defaultGE\"\n"
            "*QZValueAttributes MediaType.B: \"\"\n" +
                kBothOptions);
}

TEST(GlossEnhancerDefaults, RestoresEveryStatementWhateverItsSpecAndLogsThemInOrder) {
  const auto ppd = documentFromText(
      "*QZValueAttributes Other.B: \"defaultGE='1'\"\n*QZValueAttributes: \"glossy=YES;defaultGE='2'\"\n"
      "*QZValueAttributes MediaType.A: \"none\"\n*QZValueAttributes MediaType.A: \"defaultGE='3'\"\n" +
      fullGlossOption("economode-ge"));
  const TestLog log;
  ATMediaTypePPDUpdater().restoreDefaultGlossEnhancerMediaPropertyInPPD(*ppd);
  EXPECT_EQ(valuesOf(*ppd, "QZValueAttributes"),
            (Texts{"\"defaultGE='off-ge'\"", "\"glossy=YES;defaultGE='economode-ge'\"", "\"none\"",
                   "\"defaultGE='off-ge'\""}));
  EXPECT_EQ(log.messages(kRestoreSignature), logged({"Restoring property for Other.B", "Restoring property for (null)",
                                                     "Restoring property for MediaType.A"}));
}

TEST(GlossEnhancerDefaults, RestoringAsksTheObjectsOwnOperations) {
  struct Glossy : TracedMedia<ATMediaTypePPDUpdater> {
    bool isGlossyMediaWithAttributes(const ATPPDAttribute::Part& /*properties*/) const override { return true; }
  };
  const auto ppd = documentFromText(properties("A", "defaultGE='x'") + fullGlossOption("economode-ge"));
  const Glossy updater;
  updater.restoreDefaultGlossEnhancerMediaPropertyInPPD(*ppd);
  EXPECT_EQ(valuesOf(*ppd, "QZValueAttributes"), Texts{"\"defaultGE='economode-ge'\""});
  EXPECT_EQ(updater.trace.count("nameForGloss"), 1);
  EXPECT_EQ(updater.trace.count("changeDefaultGloss"), 1);
}

TEST(GlossEnhancerDefaults, TheOffChoiceIsTheOneOfTheValueOff) {
  struct Asked : ATMediaTypePPDUpdater {
    std::optional<std::string> ppdNameForGlossEnhancerValue(const std::optional<std::string>& value,
                                                            const ATPPD& /*fromPPD*/) const override {
      return "for " + value.value_or("(null)");
    }
  };
  const auto ppd = documentFromText(properties("A", "defaultGE='x'"));
  Asked().restoreDefaultGlossEnhancerMediaPropertyInPPD(*ppd);
  EXPECT_EQ(valuesOf(*ppd, "QZValueAttributes"), Texts{"\"defaultGE='for OFF'\""});
}

// The device's default

TEST(GlossEnhancerDefaults, TheDevicesDefaultGoesIntoTheMediumsProperties) {
  const std::string other = properties("Matte", "defaultGE='x'");
  EXPECT_EQ(updatedBy(deviceDefault("FULLPAGE"), properties("Plain", "a;defaultGE='x'") + other, kPlain + kBothOptions),
            properties("Plain", "a;defaultGE='whole-page-ge'") + other);
  EXPECT_EQ(updatedBy(deviceDefault("INKEDAREA"), properties("Plain", "a;defaultGE='x'"), kPlain + kBothOptions),
            properties("Plain", "a;defaultGE='off-ge'"));
  EXPECT_EQ(updatedBy(deviceDefault("FULLPAGE"), properties("Plain", "defaultGE='x'"),
                      kPlain + simplifiedGlossOption("False")),
            properties("Plain", "defaultGE='True'"));
  EXPECT_EQ(updatedBy(deviceDefault("OFF"), properties("Plain", "glossy=YES;defaultGE='x'"),
                      kPlain + simplifiedGlossOption("True")),
            properties("Plain", "glossy=YES;defaultGE='False'"));
  EXPECT_EQ(updatedBy(deviceDefault("FULLPAGE"), properties("Plain", "defaultGE='x'"), kPlain),
            properties("Plain", "defaultGE='(null)'"));
}

TEST(GlossEnhancerDefaults, WithoutADeviceDefaultNothingChangesAndNothingIsLogged) {
  const std::string statement = "*QZValueAttributes  MediaType.Plain:  \"defaultGE='x'\"\n";
  const TestLog log;
  EXPECT_EQ(updatedBy(deviceDefault({}), statement, kPlain + kBothOptions), statement);
  EXPECT_EQ(updatedBy(deviceDefault(""), statement, kPlain + kBothOptions), statement);
  EXPECT_EQ(log.messages(kUpdateSignature), Texts());
}

TEST(GlossEnhancerDefaults, ADeviceDefaultThatIsNoTextIsAProgrammingError) {
  EXPECT_THROW(updatedBy(deviceDefault(number(1)), properties("Plain", "defaultGE='x'"), kPlain), ATException);
}

TEST(GlossEnhancerDefaults, LogsTheDeviceDefaultAndTheChoice) {
  const TestLog log;
  updatedBy(deviceDefault("FULLPAGE"), properties("Plain", "defaultGE='x'"), kPlain);
  updatedBy(deviceDefault("OFF", "99"), "", kPlain);
  updatedBy(deviceDefault("X", {}), "", kPlain);
  EXPECT_EQ(log.messages(kUpdateSignature), logged({"Set default GE: FULLPAGE for Plain", "Set default GE: OFF for 99",
                                                    "Set default GE: X for (null)"}));
}

TEST(GlossEnhancerDefaults, AMediumWithoutAnIDIsLeftAlone) {
  const std::string statement = "*QZValueAttributes MediaType.(null): \"defaultGE='x'\"\n";
  EXPECT_EQ(updatedBy(deviceDefault("FULLPAGE", {}), statement, kPlain + kBothOptions), statement);
}

TEST(GlossEnhancerDefaults, AnIDThatNoCodeHoldsIsTakenForAChoiceName) {
  EXPECT_EQ(updatedBy(deviceDefault("FULLPAGE", "99"), properties("99", "defaultGE='x'"), kPlain + kBothOptions),
            properties("99", "defaultGE='whole-page-ge'"));
}

TEST(GlossEnhancerDefaults, AMediumWithoutPropertiesGetsNone) {
  EXPECT_EQ(updatedBy(deviceDefault("FULLPAGE"), properties("Matte", "defaultGE='x'"), kPlain + kBothOptions),
            properties("Matte", "defaultGE='x'"));
}

TEST(GlossEnhancerDefaults, OnlyTheFirstPropertiesOfAMediumChange) {
  EXPECT_EQ(
      updatedBy(deviceDefault("FULLPAGE"), properties("Plain", "defaultGE='1'") + properties("Plain", "defaultGE='2'"),
                kPlain + kBothOptions),
      properties("Plain", "defaultGE='whole-page-ge'") + properties("Plain", "defaultGE='2'"));
}

TEST(GlossEnhancerDefaults, PropertiesWithoutADefaultAreRebuiltWithoutOne) {
  EXPECT_EQ(updatedBy(deviceDefault("FULLPAGE"), "*QZValueAttributes MediaType.Plain: \";a\"\n", kPlain + kBothOptions),
            properties("Plain", "a"));
  EXPECT_EQ(
      updatedBy(deviceDefault("FULLPAGE"), "*QZValueAttributes MediaType.Plain: unquoted\n", kPlain + kBothOptions),
      properties("Plain", ""));
}

TEST(GlossEnhancerDefaults, TheDevicesDefaultOverridesTheInheritedOne) {
  struct Updater : ATMediaTypePPDUpdater {
    std::optional<std::string> mediaTypeChoiceCodeWithName(const std::string& /*choiceName*/,
                                                           const DeviceValue& ID) const override {
      return ID.description();
    }
  };
  const DeviceValue custom = customMedium("Canvas", "4711", "12");
  custom.map()->set("DefaultGlossEnhancer", "FULLPAGE");
  const auto ppd = documentFromText(properties("Plain", "a;defaultGE='x'") + kPlain + kBothOptions);
  const FakeReader reader(mediaList({custom}));
  EXPECT_TRUE(Updater().updatePPD(ppd.get(), &reader));
  EXPECT_EQ(valuesOf(*ppd, "QZValueAttributes"),
            (Texts{"\"a;defaultGE='off-ge'\"", "\"a;defaultGE='whole-page-ge'\""}));
}
