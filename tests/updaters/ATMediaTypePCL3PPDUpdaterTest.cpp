// SPDX-License-Identifier: MIT
#include "updaters/ATMediaTypePCL3PPDUpdater.h"

#include <gtest/gtest.h>

#include <memory>
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
using Updater = ATMediaTypePCL3PPDUpdater;

constexpr const char* kAddSignature = "-[ATMediaTypePCL3PPDUpdater addICCProfileForMediaWithData:toPPD:]";
constexpr const char* kSetSignature = "-[ATMediaTypePCL3PPDUpdater setICCProfileForMediaWithData:inPPD:]";
constexpr const char* kBuildSignature = "-[ATMediaTypePCL3PPDUpdater cupsICCProfileAttributesWithName:spec:url:ppd:]";
constexpr const char* kRemoveSignature = "-[ATMediaTypePCL3PPDUpdater removeInclusionsOfMediaWithID:fromPPD:]";

const std::string kHead = "*PPD-Adobe: \"4.3\"\n";
const std::string kLanguages = "*cupsLanguages: \"en de fr\"\n";
const std::string kPlain = mediaTypes("*MediaType Plain/Plain: \"12\"\n");

// What adding the record's profiles appends to a document.
std::string added(const std::string& text, const DeviceValue& record, bool succeeds = true) {
  const auto ppd = documentFromText(text);
  EXPECT_EQ(Updater().addICCProfileForMediaWithData(record, *ppd), succeeds);
  const std::string result = textOf(*ppd);
  EXPECT_TRUE(result.starts_with(text));
  return result.substr(text.size());
}

std::string afterRemoval(const std::string& text, const std::string& choiceName) {
  const auto ppd = documentFromText(text);
  Updater().removeInclusionsOfMediaWithID(choiceName, *ppd);
  return textOf(*ppd);
}

// The statements of a profile as text, or absent.
std::optional<std::string> built(const std::string& document, const std::optional<std::string>& name,
                                 const std::optional<std::string>& spec, const std::optional<std::string>& url) {
  const auto ppd = documentFromText(document);
  const auto attributes = Updater().cupsICCProfileAttributesWithName(name, spec, url, *ppd);
  EXPECT_EQ(textOf(*ppd), document);
  if (!attributes) return std::nullopt;
  std::string text;
  for (const auto& attribute : *attributes) text += textOf(*attribute);
  return text;
}

const DeviceValue kOneProfile = listOf({profile("Glossy Photo", "file:///Library/Profiles/photo.icc")});

}  // namespace

// The choice code

TEST(ATMediaTypePCL3PPDUpdater, TheCodeHoldsNameAndID) {
  EXPECT_EQ(Updater().mediaTypeChoiceCodeWithName("Custom1", "4711"),
            "<</MediaType(Custom1)/QZMediaID(4711)>>setpagedevice");
  EXPECT_EQ(Updater().mediaTypeChoiceCodeWithName("", number(5)), "<</MediaType()/QZMediaID(5)>>setpagedevice");
  EXPECT_EQ(Updater().mediaTypeChoiceCodeWithName("C", {}), "<</MediaType(C)/QZMediaID((null))>>setpagedevice");
}

// The media qualifier and the spec

TEST(ATMediaTypePCL3PPDUpdater, TheQualifierIsTheChoiceNameOrTheOneOfTheID) {
  const auto ppd = documentFromText(kPlain);
  const auto qualifier = [&](const DeviceValue& record) { return Updater().mediaQualifierFromData(record, *ppd); };
  EXPECT_EQ(qualifier(mapOf({{"PPDName", "Custom3"}, {"ID", "12"}})).description(), "Custom3");
  EXPECT_EQ(qualifier(mapOf({{"PPDName", ""}, {"ID", "12"}})).description(), "");
  EXPECT_EQ(qualifier(mapOf({{"ID", "12"}})).description(), "Plain");
  EXPECT_EQ(qualifier(mapOf({{"ID", "99"}})).description(), "99");
  EXPECT_TRUE(qualifier(mapOf({})).isAbsent());
}

TEST(ATMediaTypePCL3PPDUpdater, TheGeneralSpecHasTheQualifierInTheMiddle) {
  const auto ppd = documentFromText(kPlain);
  const auto spec = [&](const DeviceValue& record) { return Updater().generalProfileSpecForMediaData(record, *ppd); };
  EXPECT_EQ(spec(mapOf({{"PPDName", "Custom3"}})), ".Custom3.");
  EXPECT_EQ(spec(mapOf({{"ID", "12"}})), ".Plain.");
  EXPECT_EQ(spec(mapOf({})), ".(null).");
}

TEST(ATMediaTypePCL3PPDUpdater, TheSpecOfEveryProfileIsTheGeneralOne) {
  const auto ppd = documentFromText(kPlain);
  EXPECT_EQ(Updater().profileSpecFromMediaData(mapOf({{"ID", "12"}}), profile("N", "/n", "FULLPAGE", "Best"), *ppd),
            ".Plain.");
}

// The statements of a profile

TEST(ATMediaTypePCL3PPDUpdater, BuildsTheMainStatement) {
  EXPECT_EQ(built(kHead, "Glossy Photo", ".Custom3.", "file:///Library/Profiles/photo.icc"),
            statement(".Custom3.", "Glossy Photo", "/Library/Profiles/photo.icc"));
}

TEST(ATMediaTypePCL3PPDUpdater, BuildsOneLocalizedStatementForEachLanguageButEnglish) {
  EXPECT_EQ(built(kLanguages, "N", ".C.", "/n.icc"),
            statement(".C.", "N", "/n.icc") + localized("de", ".C.", "N") + localized("fr", ".C.", "N"));
  EXPECT_EQ(built("*cupsLanguages: \"fr EN en de\"\n", "N", ".C.", "/n.icc"),
            statement(".C.", "N", "/n.icc") + localized("fr", ".C.", "N") + localized("EN", ".C.", "N") +
                localized("de", ".C.", "N"));
}

TEST(ATMediaTypePCL3PPDUpdater, RepeatedAndEmptyLanguagesAreLanguages) {
  EXPECT_EQ(built("*cupsLanguages: \"de  de\"\n", "N", ".C.", "/n"),
            statement(".C.", "N", "/n") + localized("de", ".C.", "N") + localized("", ".C.", "N") +
                localized("de", ".C.", "N"));
}

TEST(ATMediaTypePCL3PPDUpdater, WithoutLanguagesThereIsOneStatement) {
  EXPECT_EQ(built("*cupsLanguages: unquoted\n", "N", ".C.", "/n"), statement(".C.", "N", "/n"));
}

TEST(ATMediaTypePCL3PPDUpdater, AbsentPartsPrintAsNull) {
  EXPECT_EQ(built(kHead, std::nullopt, std::nullopt, std::nullopt), statement("(null)", "(null)", "(null)"));
  EXPECT_EQ(built(kHead, "N", ".C.", "file:not a url"), statement(".C.", "N", "(null)"));
  EXPECT_EQ(built(kHead, "N", ".C.", ""), statement(".C.", "N", "(null)"));
}

TEST(ATMediaTypePCL3PPDUpdater, ThePathIsDecoded) {
  EXPECT_EQ(built(kHead, "N", ".C.", "file:///a%20b"), statement(".C.", "N", "/a b"));
  EXPECT_EQ(built(kHead, "N", ".C.", "/a%20b c"), statement(".C.", "N", "/a%20b c"));
}

namespace {

// A path with which the main line of profile "N" and spec ".C." has this many bytes, its line feed included.
std::string pathForLineOf(std::size_t bytes) {
  const std::size_t rest = statement(".C.", "N", "/").size();
  return "/" + std::string(bytes - rest, 'p');
}

// A name with which the localized line of language "de" has this many bytes, its line feed included.
std::string nameForLocalizedLineOf(std::size_t bytes) {
  return std::string(bytes - localized("de", ".C.", "").size(), 'n');
}

}  // namespace

TEST(ATMediaTypePCL3PPDUpdater, TheMainLineMayHave255BytesWithItsLineFeed) {
  const std::string path = pathForLineOf(255);
  ASSERT_EQ(statement(".C.", "N", path).size(), 255U);
  EXPECT_EQ(built(kHead, "N", ".C.", path), statement(".C.", "N", path));
}

TEST(ATMediaTypePCL3PPDUpdater, AMainLineOf256BytesIsSkipped) {
  const std::string path = pathForLineOf(256);
  const TestLog log;
  EXPECT_EQ(built(kHead, "N", ".C.", path), std::nullopt);
  EXPECT_EQ(log.messages(kBuildSignature),
            logged({"INFO: Skip profile N - line length > 256 bytes: " + statement(".C.", "N", path)}));
}

TEST(ATMediaTypePCL3PPDUpdater, TheLimitCountsBytesOfUTF8) {
  const std::string path = pathForLineOf(253) + "\u00E9";
  ASSERT_EQ(statement(".C.", "N", path).size(), 255U);
  EXPECT_EQ(built(kHead, "N", ".C.", path), statement(".C.", "N", path));
  EXPECT_EQ(built(kHead, "N", ".C.", pathForLineOf(254) + "\u00E9"), std::nullopt);
}

TEST(ATMediaTypePCL3PPDUpdater, ALocalizedLineMayHave255Bytes) {
  const std::string name = nameForLocalizedLineOf(255);
  EXPECT_EQ(built("*cupsLanguages: \"de\"\n", name, ".C.", "/"),
            statement(".C.", name, "/") + localized("de", ".C.", name));
}

TEST(ATMediaTypePCL3PPDUpdater, ALocalizedLineOf256BytesDropsTheWholeProfile) {
  const std::string name = nameForLocalizedLineOf(256);
  ASSERT_LE(statement(".C.", name, "/").size(), 255U);
  const TestLog log;
  EXPECT_EQ(built("*cupsLanguages: \"x de fr\"\n", name, ".C.", "/"), std::nullopt);
  EXPECT_EQ(log.messages(kBuildSignature),
            logged({"INFO: Skip profile " + name + ", locale de > 256 bytes limit: " + localized("de", ".C.", name)}));
}

TEST(ATMediaTypePCL3PPDUpdater, ALongLineForEnglishDoesNotCount) {
  const std::string name = nameForLocalizedLineOf(256);
  EXPECT_EQ(built("*cupsLanguages: \"en\"\n", name, ".C.", "/"), statement(".C.", name, "/"));
}

// Adding

TEST(ATMediaTypePCL3PPDUpdater, AddsEachProfileInOrder) {
  EXPECT_EQ(added(kHead + kLanguages, mediumWithProfiles("C", listOf({profile("N", "file:///n"), profile("M", "/m")}))),
            statement(".C.", "N", "/n") + localized("de", ".C.", "N") + localized("fr", ".C.", "N") +
                statement(".C.", "M", "/m") + localized("de", ".C.", "M") + localized("fr", ".C.", "M"));
}

TEST(ATMediaTypePCL3PPDUpdater, AddsBehindTheLastAttribute) {
  const auto ppd = documentFromText(kHead + "*% comment\n" + kPlain);
  EXPECT_TRUE(Updater().addICCProfileForMediaWithData(mediumWithProfiles("Custom3", kOneProfile), *ppd));
  EXPECT_EQ(textOf(*ppd),
            kHead + statement(".Custom3.", "Glossy Photo", "/Library/Profiles/photo.icc") + "*% comment\n" + kPlain);
}

TEST(ATMediaTypePCL3PPDUpdater, ARecordWithoutProfilesCannotBeAdded) {
  const DeviceValue without = mapOf({{"PPDName", "C"}});
  const DeviceValue empty = mediumWithProfiles("C", listOf({}));
  const DeviceValue noList = mediumWithProfiles("C", "text");
  const DeviceValue map = mediumWithProfiles("C", mapOf({{"URL", "/n"}, {"ICCName", "N"}}));
  const TestLog log;
  for (const DeviceValue& record : {without, empty, noList, map}) EXPECT_EQ(added(kHead, record, false), "");
  EXPECT_EQ(log.messages(kAddSignature), logged({"INFO: Cannot add profile from " + without.description(),
                                                 "INFO: Cannot add profile from " + empty.description(),
                                                 "INFO: Cannot add profile from " + noList.description(),
                                                 "INFO: Cannot add profile from " + map.description()}));
}

TEST(ATMediaTypePCL3PPDUpdater, SkipsEntriesThatCannotBeWrittenAndAddsTheOthers) {
  const std::string tooLong(81, 'n');
  const TestLog log;
  EXPECT_EQ(
      added(kHead, mediumWithProfiles("C", listOf({profile(tooLong, "/a"), profile("a:b", "/b"), profile("", "/c"),
                                                   profile({}, "/d"), profile("No URL", {}),
                                                   profile("Bad URL", "file:///a b"), profile("Empty path", "file://h"),
                                                   profile("Colon", "file:///a:b"), profile("Quote", "/a\"b"),
                                                   profile("Euro", "file:///%E2%82%AC"), profile("N", "/n")}))),
      statement(".C.", "N", "/n"));
  EXPECT_EQ(log.messages(kAddSignature),
            logged({"INFO: Skip profile: " + tooLong, "INFO: Skip profile: a:b",
                    "INFO: Skip profile: ", "INFO: Skip profile: (null)", "INFO: Skip profile: No URL",
                    "INFO: Skip profile: Bad URL", "INFO: Skip profile: Empty path", "INFO: Skip profile: Colon",
                    "INFO: Skip profile: Quote", "INFO: Skip profile: Euro"}));
}

TEST(ATMediaTypePCL3PPDUpdater, SucceedsWhenEveryEntryIsSkipped) {
  EXPECT_EQ(added(kHead, mediumWithProfiles("C", listOf({profile("a<b", "/n"), mapOf({})}))), "");
}

TEST(ATMediaTypePCL3PPDUpdater, ANameMayHave80Bytes) {
  const std::string name(80, 'n');
  EXPECT_EQ(added(kHead, mediumWithProfiles("C", listOf({profile(name, "/n")}))), statement(".C.", name, "/n"));
  const std::string accents = std::string(78, 'n') + "\u00E9";
  EXPECT_EQ(added(kHead, mediumWithProfiles("C", listOf({profile(accents, "/n")}))), statement(".C.", accents, "/n"));
  EXPECT_EQ(added(kHead, mediumWithProfiles("C", listOf({profile(accents + "n", "/n")}))), "");
}

TEST(ATMediaTypePCL3PPDUpdater, ASpecMayHave40Bytes) {
  const std::string longest(38, 'q');
  EXPECT_EQ(added(kHead, mediumWithProfiles(longest.c_str(), listOf({profile("N", "/n")}))),
            statement("." + longest + ".", "N", "/n"));
}

TEST(ATMediaTypePCL3PPDUpdater, IgnoresAProfileWhoseSpecHas41Bytes) {
  const std::string tooLong(39, 'q');
  const TestLog log;
  EXPECT_EQ(added(kHead, mediumWithProfiles(tooLong.c_str(), listOf({profile("N", "/n")}))), "");
  EXPECT_EQ(log.messages(kAddSignature),
            logged({"INFO: Ignore profile N with qualifier (> 41 bytes): ." + tooLong + "."}));
}

TEST(ATMediaTypePCL3PPDUpdater, TheSpecIsWorkedOutOnlyForAnEntryThatCanBeWritten) {
  const TracedPCL3<Updater> updater;
  const auto ppd = documentFromText(kHead);
  updater.addICCProfileForMediaWithData(
      mediumWithProfiles("C", listOf({profile("a:b", "/n"), profile("N", {}), profile("N", "/n")})), *ppd);
  EXPECT_EQ(updater.trace.count("profileSpec"), 1);
  EXPECT_EQ(updater.trace.count("profileAttributes"), 1);
}

TEST(ATMediaTypePCL3PPDUpdater, AProfileWithTooLongALineIsNotAddedAndTheOthersAre) {
  EXPECT_EQ(added(kHead, mediumWithProfiles("C", listOf({profile("N", pathForLineOf(256)), profile("M", "/m")}))),
            statement(".C.", "M", "/m"));
}

TEST(ATMediaTypePCL3PPDUpdater, AddingTwiceWritesTwoStatements) {
  const auto ppd = documentFromText(statement(".C.", "N", "/n"));
  Updater().addICCProfileForMediaWithData(mediumWithProfiles("C", listOf({profile("N", "/n")})), *ppd);
  EXPECT_EQ(textOf(*ppd), statement(".C.", "N", "/n") + statement(".C.", "N", "/n"));
}

TEST(ATMediaTypePCL3PPDUpdater, AddsForAMediumThatHasOnlyAnIDOrNoneAtAll) {
  EXPECT_EQ(added(kHead, mapOf({{"ID", "99"}, {"ICCProfiles", listOf({profile("N", "/n")})}})),
            statement(".99.", "N", "/n"));
  EXPECT_EQ(added(kHead, mapOf({{"ICCProfiles", listOf({profile("N", "/n")})}})), statement(".(null).", "N", "/n"));
}

TEST(ATMediaTypePCL3PPDUpdater, AnEntryThatIsNoMapIsAProgrammingErrorAndWhatWasAddedStays) {
  const auto ppd = documentFromText("");
  EXPECT_THROW(
      Updater().addICCProfileForMediaWithData(mediumWithProfiles("C", listOf({profile("N", "/n"), "text"})), *ppd),
      ATException);
  EXPECT_EQ(textOf(*ppd), statement(".C.", "N", "/n"));
}

TEST(ATMediaTypePCL3PPDUpdater, AURLOrANameThatIsNoTextIsAProgrammingError) {
  const auto ppd = documentFromText("");
  const auto addProfile = [&](const DeviceValue& entry) {
    Updater().addICCProfileForMediaWithData(mediumWithProfiles("C", listOf({entry})), *ppd);
  };
  EXPECT_THROW(addProfile(profile("N", number(5))), ATException);
  EXPECT_THROW(addProfile(profile(number(5), "/n")), ATException);
  EXPECT_EQ(textOf(*ppd), "");
}

TEST(ATMediaTypePCL3PPDUpdater, ThePathIsWorkedOutBeforeTheNameIsTested) {
  const auto ppd = documentFromText("");
  const DeviceValue record = mediumWithProfiles("C", listOf({profile("a:b", number(5))}));
  EXPECT_THROW(Updater().addICCProfileForMediaWithData(record, *ppd), ATException);
}

// Setting

TEST(ATMediaTypePCL3PPDUpdater, SetsTextValueAndLocalizationsOfTheStatement) {
  const std::string before = kLanguages + statement(".Plain.", "Old", "/old");
  EXPECT_EQ(afterSet<Updater>(before + localized("de", ".Plain.", "Alt") + localized("fr", ".Plain.", "Vieux") +
                                  localized("it", ".Plain.", "Vecchio") + localized("de", ".Other.", "Anders") + kPlain,
                              mapOf({{"ID", "12"}, {"ICCProfiles", kOneProfile}})),
            kLanguages + statement(".Plain.", "Glossy Photo", "/Library/Profiles/photo.icc") +
                localized("de", ".Plain.", "Glossy Photo") + localized("fr", ".Plain.", "Glossy Photo") +
                localized("it", ".Plain.", "Vecchio") + localized("de", ".Other.", "Anders") + kPlain);
}

TEST(ATMediaTypePCL3PPDUpdater, LogsTheStatementThatItSets) {
  const TestLog log;
  afterSet<Updater>(statement(".C.", "Old", "/old"), mediumWithProfiles("C", kOneProfile));
  EXPECT_EQ(log.messages(kSetSignature), logged({"Found factory ICC profile: .C."}));
}

TEST(ATMediaTypePCL3PPDUpdater, SetAddsNothingAndLogsNothingWithoutAStatement) {
  const std::string text =
      statement(".Other.", "Old", "/old") + statement(".C.Best", "Old", "/old") + statement("RGB.C.", "Old", "/old");
  const TestLog log;
  EXPECT_EQ(afterSet<Updater>(text, mediumWithProfiles("C", kOneProfile)), text);
  EXPECT_EQ(log.messages(kSetSignature), Texts());
}

TEST(ATMediaTypePCL3PPDUpdater, SetWithoutProfilesOnlyLogs) {
  const std::string text = statement(".C.", "Old", "/old");
  const DeviceValue without = mapOf({{"PPDName", "C"}});
  const DeviceValue empty = mediumWithProfiles("C", listOf({}));
  const DeviceValue noList = mediumWithProfiles("C", number(1));
  const TestLog log;
  for (const DeviceValue& record : {without, empty, noList}) EXPECT_EQ(afterSet<Updater>(text, record), text);
  EXPECT_EQ(log.messages(kSetSignature), logged({"INFO: Cannot set profile from " + without.description(),
                                                 "INFO: Cannot set profile from " + empty.description(),
                                                 "INFO: Cannot set profile from " + noList.description()}));
}

TEST(ATMediaTypePCL3PPDUpdater, SetSkipsEntriesThatCannotBeWritten) {
  const std::string text = statement(".C.", "Old", "/old");
  const TestLog log;
  EXPECT_EQ(afterSet<Updater>(
                text, mediumWithProfiles("C", listOf({profile("a:b", "/n"), profile({}, "/n"), profile("N", "file:"),
                                                      profile(std::string(81, 'n'), "/n")}))),
            text);
  EXPECT_EQ(log.messages(kSetSignature),
            logged({"INFO: Skip profile: a:b", "INFO: Skip profile: (null)", "INFO: Skip profile: N",
                    "INFO: Skip profile: " + std::string(81, 'n')}));
}

TEST(ATMediaTypePCL3PPDUpdater, TheLastEntryThatIsSetWins) {
  EXPECT_EQ(afterSet<Updater>(statement(".C.", "Old", "/old"),
                              mediumWithProfiles("C", listOf({profile("N", "/n"), profile("M", "/m")}))),
            statement(".C.", "M", "/m"));
}

TEST(ATMediaTypePCL3PPDUpdater, TheLastEntryThatIsSetGivesTheLocalizationsTheirText) {
  const auto document = [](const std::string& text, const std::string& path, const std::string& localizedText) {
    return kLanguages + statement(".C.", text, path) + localized("de", ".C.", localizedText) +
           localized("de", ".C.", localizedText) + localized("fr", ".C.", localizedText);
  };
  EXPECT_EQ(afterSet<Updater>(
                document("Old", "/old", "Old"),
                mediumWithProfiles("C", listOf({profile("N", "/n"), profile("M", "/m"), profile("a:b", "/x")}))),
            document("M", "/m", "M"));
}

TEST(ATMediaTypePCL3PPDUpdater, SetsOnlyTheFirstStatementOfTheSpec) {
  EXPECT_EQ(afterSet<Updater>(statement(".C.", "Old", "/1") + statement(".C.", "Old", "/2"),
                              mediumWithProfiles("C", listOf({profile("N", "/n")}))),
            statement(".C.", "N", "/n") + statement(".C.", "Old", "/2"));
}

TEST(ATMediaTypePCL3PPDUpdater, SetLimitsNeitherSpecNorLine) {
  const std::string qualifier(39, 'q');
  const std::string path = "/" + std::string(300, 'p');
  const std::string spec = "." + qualifier + ".";
  EXPECT_EQ(afterSet<Updater>(statement(spec, "Old", "/old"),
                              mediumWithProfiles(qualifier.c_str(), listOf({profile("N", path)}))),
            statement(spec, "N", path));
}

TEST(ATMediaTypePCL3PPDUpdater, SetWorksTheSpecOutForEveryEntry) {
  const TracedPCL3<Updater> updater;
  const auto ppd = documentFromText(statement(".C.", "Old", "/old"));
  updater.setICCProfileForMediaWithData(
      mediumWithProfiles("C", listOf({profile("a:b", "/n"), profile("N", {}), profile("N", "/n")})), *ppd);
  EXPECT_EQ(updater.trace.count("profileSpec"), 3);
  EXPECT_EQ(updater.trace.count("profileAttributes"), 0);
}

TEST(ATMediaTypePCL3PPDUpdater, SetOfAnEntryThatIsNoMapIsAProgrammingErrorAndWhatWasSetStays) {
  const auto ppd = documentFromText(kLanguages + statement(".C.", "Old", "/old") + localized("de", ".C.", "Alt"));
  EXPECT_THROW(
      Updater().setICCProfileForMediaWithData(mediumWithProfiles("C", listOf({profile("N", "/n"), "text"})), *ppd),
      ATException);
  EXPECT_EQ(textOf(*ppd), kLanguages + statement(".C.", "N", "/n") + localized("de", ".C.", "N"));
}

// Restoring

TEST(ATMediaTypePCL3PPDUpdater, RestoresTheFactoryProfile) {
  const std::string factoryStatement = factoryOfValue(".C.", "\"Factory Name;;/factory.icc\"");
  EXPECT_EQ(afterRestore<Updater>(kLanguages + factoryStatement + statement(".C.", "Device", "/device") +
                                  localized("de", ".C.", "Alt") + localized("fr", ".Other.", "X") +
                                  statement(".Other.", "O", "/o")),
            kLanguages + factoryStatement + statement(".C.", "Factory Name", "/factory.icc") +
                localized("de", ".C.", "Factory Name") + localized("fr", ".Other.", "X") +
                statement(".Other.", "O", "/o"));
}

TEST(ATMediaTypePCL3PPDUpdater, RestoringRewritesAnEqualQuotedStatementInCanonicalForm) {
  const std::string factoryStatement = factoryOfValue(".C.", "\"N;;/n\"");
  EXPECT_EQ(afterRestore<Updater>(factoryStatement + "*cupsICCProfile   .C. /N :   \"/n\"  \r\n"),
            factoryStatement + statement(".C.", "N", "/n"));
}

TEST(ATMediaTypePCL3PPDUpdater, RestoringLeavesAnUnquotedValueThatEqualsThePath) {
  const std::string text = kLanguages + factoryOfValue(".C.", "\"N;;/n\"") + "*cupsICCProfile   .C./Device: /n  \r\n" +
                           localized("de", ".C.", "Alt");
  EXPECT_EQ(afterRestore<Updater>(text), text);
}

TEST(ATMediaTypePCL3PPDUpdater, RestoringRewritesAnUnquotedValueThatDiffers) {
  const std::string factoryStatement = factoryOfValue(".C.", "\"N;;/n\"");
  EXPECT_EQ(afterRestore<Updater>(factoryStatement + "*cupsICCProfile .C./Device: /other\n"),
            factoryStatement + statement(".C.", "N", "/n"));
}

TEST(ATMediaTypePCL3PPDUpdater, RestoringSkipsStatementsWithoutAFactoryPath) {
  for (const char* value : {"\"/n\"", "\"N;;/n;;x\"", "N;;/n", "\"\""}) {
    const std::string text = factoryOfValue(".C.", value) + statement(".C.", "Device", "/device");
    EXPECT_EQ(afterRestore<Updater>(text), text) << value;
  }
}

TEST(ATMediaTypePCL3PPDUpdater, AnEmptyFactoryPathIsAPath) {
  const std::string factoryStatement = factoryOfValue(".C.", "\"N;;\"");
  EXPECT_EQ(afterRestore<Updater>(factoryStatement + statement(".C.", "Device", "/device")),
            factoryStatement + statement(".C.", "N", ""));
}

TEST(ATMediaTypePCL3PPDUpdater, RestoringAddsNoStatement) {
  const std::string text = factoryOfValue(".C.", "\"N;;/n\"") + statement(".D.", "Device", "/device");
  EXPECT_EQ(afterRestore<Updater>(text), text);
}

TEST(ATMediaTypePCL3PPDUpdater, TheLastFactoryStatementOfASpecWins) {
  const std::string factoryStatements = factoryOfValue(".C.", "\"N;;/n\"") + factoryOfValue(".C.", "\"M;;/m\"");
  EXPECT_EQ(afterRestore<Updater>(factoryStatements + statement(".C.", "Device", "/device")),
            factoryStatements + statement(".C.", "M", "/m"));
}

TEST(ATMediaTypePCL3PPDUpdater, AFactoryStatementWithoutASpecRestoresTheFirstStatement) {
  const std::string factoryStatement = "*QZcupsICCProfile: \"N;;/n\"\n";
  EXPECT_EQ(afterRestore<Updater>(factoryStatement + statement(".C.", "1", "/1") + statement(".D.", "2", "/2")),
            factoryStatement + statement(".C.", "N", "/n") + statement(".D.", "2", "/2"));
}

TEST(ATMediaTypePCL3PPDUpdater, RestoringCallsTheMostDerivedUpdate) {
  struct Calls : Updater {
    void updateCupsProfile(const ATPPD::AttributePtr& profile, ATPPD& /*inPPD*/,
                           const ATQZProfilePPDAttributeWrapper& withQZProfileAttribute) const override {
      calls.push_back(std::string(profile == nullptr ? "none" : Text::orNull(profile->text())) + " " +
                      withQZProfileAttribute.factoryPath().value_or("(null)"));
    }
    mutable Texts calls;
  };
  const auto ppd =
      documentFromText(factoryOfValue(".B.", "\"B;;/b\"") + factoryOfValue(".A.", "\"A;;/a\"") +
                       factoryOfValue(".C.", "\"C\"") + statement(".A.", "1", "/1") + statement(".C.", "3", "/3"));
  const Calls updater;
  updater.restoreFactoryICCProfilesInPPD(*ppd);
  EXPECT_EQ(updater.calls, (Texts{"none /b", "1 /a"}));
}

TEST(ATMediaTypePCL3PPDUpdater, UpdatingAnAbsentStatementDoesNothing) {
  const std::string text = factoryOfValue(".C.", "\"N;;/n\"");
  const auto ppd = documentFromText(text);
  const auto wrapper = ATQZProfilePPDAttributeWrapper::initWithPPDAttribute(*ppd->attributeForName("QZcupsICCProfile"));
  Updater().updateCupsProfile(nullptr, *ppd, *wrapper);
  EXPECT_EQ(textOf(*ppd), text);
}

TEST(ATMediaTypePCL3PPDUpdater, UpdatingSetsTheLocalizationsOfTheWrappersSpec) {
  const auto ppd = documentFromText(kLanguages + statement(".Mine.", "Device", "/device") +
                                    localized("de", ".Mine.", "Mein") + localized("de", ".C.", "Alt"));
  const auto wrapper = ATQZProfilePPDAttributeWrapper::initWithPPDAttribute(
      *ATPPDAttribute::attributeWithString(factoryOfValue(".C.", "\"N;;/n\"")));
  Updater().updateCupsProfile(ppd->attributeForName("cupsICCProfile"), *ppd, *wrapper);
  EXPECT_EQ(textOf(*ppd), kLanguages + statement(".Mine.", "N", "/n") + localized("de", ".Mine.", "Mein") +
                              localized("de", ".C.", "N"));
}

// Removing

TEST(ATMediaTypePCL3PPDUpdater, RemovesProfilesWithTheirLocalizationsThenTheChoiceAndItsProperties) {
  const std::string choice = "*MediaType Custom1/A: \"5\"\n";
  EXPECT_EQ(afterRemoval(kLanguages + statement(".Custom1.", "N", "/n") + localized("de", ".Custom1.", "N") +
                             localized("fr", ".Custom1.", "N") + localized("it", ".Custom1.", "N") +
                             "*QZValueAttributes MediaType.Custom1: \"a\"\n" + mediaTypes(choice),
                         "Custom1"),
            kLanguages + localized("it", ".Custom1.", "N") + mediaTypes(""));
}

TEST(ATMediaTypePCL3PPDUpdater, RemovesEveryStatementWhoseSpecContainsTheName) {
  EXPECT_EQ(afterRemoval(statement(".Custom1.", "1", "/1") + statement(".Custom12.", "2", "/2") +
                             statement(".Custom1x.", "3", "/3") + statement("MyCustom1.P.", "4", "/4") +
                             statement(".P.Custom1", "5", "/5") + statement(".custom1.", "6", "/6") +
                             statement(".Custom2.", "Custom1", "/Custom1") + "*cupsICCProfile: \"Custom1\"\n",
                         "Custom1"),
            statement(".custom1.", "6", "/6") + statement(".Custom2.", "Custom1", "/Custom1") +
                "*cupsICCProfile: \"Custom1\"\n");
}

TEST(ATMediaTypePCL3PPDUpdater, RemovesEachOfSeveralStatementsOfOneSpec) {
  EXPECT_EQ(afterRemoval(kLanguages + statement(".C.", "1", "/1") + localized("de", ".C.", "1") +
                             statement(".C.", "2", "/2") + localized("de", ".C.", "2"),
                         "C"),
            kLanguages);
}

TEST(ATMediaTypePCL3PPDUpdater, FactoryStatementsAreNotRemoved) {
  const std::string text = factoryOfValue(".Custom1.", "\"N;;/n\"");
  EXPECT_EQ(afterRemoval(text + statement(".Custom1.", "N", "/n"), "Custom1"), text);
}

TEST(ATMediaTypePCL3PPDUpdater, AnEmptyNameRemovesNoProfile) {
  const std::string text = statement(".C.", "1", "/1") + "*cupsICCProfile: \"x\"\n";
  EXPECT_EQ(afterRemoval(text, ""), text);
}

TEST(ATMediaTypePCL3PPDUpdater, LogsTheSpecOfEachProfileThatItRemoves) {
  const TestLog log;
  afterRemoval(statement(".C.", "1", "/1") + statement("A.C.B", "2", "/2") + statement(".D.", "3", "/3"), "C");
  EXPECT_EQ(log.messages(kRemoveSignature), logged({"Removing profile .C.", "Removing profile A.C.B"}));
}

TEST(ATMediaTypePCL3PPDUpdater, AProfileThatWasAddedInThisRunIsRemovedToo) {
  const auto ppd = documentFromText(statement(".A.", "1", "/1"));
  const Updater updater;
  updater.removeInclusionsOfMediaWithID("Nothing", *ppd);
  updater.addICCProfileForMediaWithData(mediumWithProfiles("C", listOf({profile("N", "/n")})), *ppd);
  updater.removeInclusionsOfMediaWithID("C", *ppd);
  EXPECT_EQ(textOf(*ppd), statement(".A.", "1", "/1"));
}

TEST(ATMediaTypePCL3PPDUpdater, RemovingAMediumAgainFindsNothingMore) {
  const auto ppd = documentFromText(statement(".C.", "1", "/1") + statement(".D.", "2", "/2"));
  Updater().removeInclusionsOfMediaWithID("C", *ppd);
  Updater().removeInclusionsOfMediaWithID("C", *ppd);
  EXPECT_EQ(textOf(*ppd), statement(".D.", "2", "/2"));
}

// The whole run

TEST(ATMediaTypePCL3PPDUpdater, ARunRestoresAddsAndSets) {
  const std::string factoryStatement = factoryOfValue(".Plain.", "\"Factory;;/factory\"");
  const DeviceValue custom = customMedium("Canvas", "4711");
  custom.map()->set("ICCProfiles", kOneProfile);
  const auto ppd = documentFromText(factoryStatement + statement(".Plain.", "Earlier", "/earlier") + kPlain);
  const FakeReader reader(mediaList({custom, mapOf({{"ID", "12"}, {"ICCProfiles", listOf({profile("P", "/p")})}})}));
  EXPECT_TRUE(Updater().updatePPD(ppd.get(), &reader));
  EXPECT_EQ(textOf(*ppd),
            factoryStatement + statement(".Plain.", "P", "/p") +
                statement(".Custom1.", "Glossy Photo", "/Library/Profiles/photo.icc") +
                "*QZMediaTypeGroup CustomMedia-category/Custom Paper: \"Custom1\"\n*End\n\n*QZMediaListVersion: 17\n" +
                mediaTypes("*MediaType Plain/Plain: \"12\"\n"
                           "*MediaType Custom1/Canvas: \"<</MediaType(Custom1)/QZMediaID(4711)>>setpagedevice\"\n"));
}

TEST(ATMediaTypePCL3PPDUpdater, ARunWithAnEmptyListTakesCustomProfilesOutAndRestoresTheOthers) {
  const std::string factoryStatement = factoryOfValue(".Plain.", "\"Factory;;/factory\"");
  const auto ppd = documentFromText(factoryStatement + statement(".Plain.", "Device", "/device") +
                                    statement(".Custom1.", "C", "/c") +
                                    "*QZMediaTypeGroup CustomMedia-category/Custom Paper: \"Custom1\"\n");
  const FakeReader reader(mediaList({}));
  EXPECT_TRUE(Updater().updatePPD(ppd.get(), &reader));
  EXPECT_EQ(textOf(*ppd), factoryStatement + statement(".Plain.", "Factory", "/factory") + "*QZMediaListVersion: 17\n");
}

TEST(ATMediaTypePCL3PPDUpdater, EveryOperationIsDispatchedOnTheObject) {
  const auto ppd = documentFromText(factoryOfValue(".Plain.", "\"F;;/f\"") + statement(".Plain.", "P", "/p") +
                                    "*QZMediaTypeGroup CustomMedia-category/Custom Paper: \"Old\"\n" + kPlain);
  const DeviceValue custom = customMedium("Canvas", "4711");
  custom.map()->set("ICCProfiles", kOneProfile);
  const FakeReader reader(mediaList({custom, mapOf({{"ID", "12"}, {"ICCProfiles", kOneProfile}})}));
  const TracedPCL3<Updater> updater;
  EXPECT_TRUE(updater.updatePPD(ppd.get(), &reader));
  const Trace& trace = updater.trace;
  EXPECT_EQ(trace.count("restoreFactoryICCProfiles"), 1);
  EXPECT_EQ(trace.count("updateCupsProfile"), 1);
  EXPECT_EQ(trace.count("removeInclusions"), 1);
  EXPECT_EQ(trace.count("choiceCode"), 1);
  EXPECT_EQ(trace.count("addICCProfile"), 1);
  EXPECT_EQ(trace.count("setICCProfile"), 1);
  EXPECT_EQ(trace.count("profileAttributes"), 1);
  EXPECT_EQ(trace.count("profileSpec"), 2);
  EXPECT_EQ(trace.count("generalSpec"), 2);
  EXPECT_EQ(trace.count("mediaQualifier"), 2);
  EXPECT_EQ(trace.count("nameForID"), 1);
}

TEST(ATMediaTypePCL3PPDUpdater, ADerivedSpecIsUsedByAddAndSet) {
  struct OtherSpec : Updater {
    std::string profileSpecFromMediaData(const Record& /*record*/, const ProfileEntry& profileInfo,
                                         const ATPPD& /*ppd*/) const override {
      return "of " + profileInfo.valueForKey("ICCName").description();
    }
  };
  const auto ppd = documentFromText(statement("of N", "Old", "/old"));
  const DeviceValue record = mediumWithProfiles("C", listOf({profile("N", "/n")}));
  OtherSpec().setICCProfileForMediaWithData(record, *ppd);
  OtherSpec().addICCProfileForMediaWithData(record, *ppd);
  EXPECT_EQ(textOf(*ppd), statement("of N", "N", "/n") + statement("of N", "N", "/n"));
}
