// SPDX-License-Identifier: MIT
//
// What each kind of updater tells its observer, and when.
#include "updaters/UpdateObserver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/ATException.h"
#include "tests/updaters/RecordingObserver.h"
#include "tests/updaters/TestDevice.h"
#include "tests/updaters/TestDocument.h"
#include "updaters/ATGlossyProfilePCL3PPDUpdater.h"
#include "updaters/ATMediaTypePCL3PPDUpdater.h"
#include "updaters/ATMediaTypePCL3Qualifier1PPDUpdater.h"
#include "updaters/ATMediaTypePCL3Qualifier3PPDUpdater.h"
#include "updaters/ATMediaTypePSPPDUpdater.h"
#include "updaters/ATPDLCommandTypePPDUpdater.h"
#include "updaters/ATPPDUpdatersFactory.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

using Texts = std::vector<std::string>;

const std::string kPlain = mediaTypes("*MediaType Plain/Plain: \"(12)\"\n");
const std::string kQuality = optionWithChoices("Quality", "Best", {"Fast", "Best"});

DeviceValue customWith(const DeviceValue& profiles) {
  const DeviceValue record = customMedium("Canvas", "4711");
  record.map()->set("ICCProfiles", profiles);
  return record;
}

DeviceValue factoryWith(const DeviceValue& profiles) {
  return mapOf({{"MediaName", "Plain"}, {"ID", "12"}, {"ICCProfiles", profiles}});
}

// What the updater tells of a run, but for what it read.
template <class Updater>
Texts toldBy(const std::string& text, std::initializer_list<DeviceValue> records, bool recordsSearches = false) {
  const auto ppd = documentFromText(text);
  RecordingObserver observer(*ppd);
  observer.recordsSearches = recordsSearches;
  const FakeReader reader(mediaList(records));
  EXPECT_TRUE(Updater(observer).updatePPD(ppd.get(), &reader));
  EXPECT_THAT(observer.events.front(), StartsWith("media "));
  return {observer.events.begin() + 1, observer.events.end()};
}

// The problems of the record's profiles when they are added, and when they are set.
std::vector<ProfileProblem> problemsOfAdding(const DeviceValue& record, const std::string& text = "") {
  const auto ppd = documentFromText(text);
  RecordingObserver observer(*ppd);
  EXPECT_TRUE(ATMediaTypePCL3PPDUpdater(observer).addICCProfileForMediaWithData(record, *ppd));
  return observer.profileProblems;
}
std::vector<ProfileProblem> problemsOfSetting(const DeviceValue& record) {
  const auto ppd = documentFromText("");
  RecordingObserver observer(*ppd);
  ATMediaTypePCL3PPDUpdater(observer).setICCProfileForMediaWithData(record, *ppd);
  return observer.profileProblems;
}

}  // namespace

// The observer that nobody is

TEST(UpdateObserver, NobodyIsOneForTheProcessAndHearsEverything) {
  UpdateObserver& none = UpdateObserver::none();
  EXPECT_EQ(&none, &UpdateObserver::none());
  const auto ppd = documentFromText(kPlain);
  const FakeReader reader(mediaList({customWith(listOf({profile("N", "/n")}))}));
  EXPECT_TRUE(ATMediaTypePCL3PPDUpdater(none).updatePPD(ppd.get(), &reader));
  const std::string text = textOf(*ppd);
  const auto unobserved = documentFromText(kPlain);
  EXPECT_TRUE(ATMediaTypePCL3PPDUpdater().updatePPD(unobserved.get(), &reader));
  EXPECT_EQ(textOf(*unobserved), text);
}

TEST(UpdateObserver, AnObserverChangesNothing) {
  const auto observed = documentFromText(kPlain);
  const auto unobserved = documentFromText(kPlain);
  RecordingObserver observer(*observed);
  for (const bool isObserved : {true, false}) {
    const FakeReader reader(mediaList({customWith(listOf({profile("N", "/n"), profile("a:b", "/n")}))}));
    const ATMediaTypePCL3PPDUpdater updater(isObserved ? observer : UpdateObserver::none());
    EXPECT_TRUE(updater.updatePPD((isObserved ? observed : unobserved).get(), &reader));
  }
  EXPECT_EQ(textOf(*observed), textOf(*unobserved));
}

// The names

TEST(UpdateObserver, HearsEachNameInOrderWhetherItIsKnown) {
  const auto ppd = documentFromText("*QZPPDUpdaters: \"ATMediaTypePSPPDUpdater  Other ATPDLCommandTypePPDUpdater\"\n");
  RecordingObserver observer(*ppd);
  EXPECT_EQ(ATPPDUpdatersFactory::defaultFactory().updatersForPPD(*ppd, observer).size(), 2U);
  EXPECT_THAT(observer.events, ElementsAre("named 'ATMediaTypePSPPDUpdater' known", "named '' unknown",
                                           "named 'Other' unknown", "named 'ATPDLCommandTypePPDUpdater' known"));
}

TEST(UpdateObserver, HearsOfNoNamesWithoutAListOfThem) {
  for (const char* text : {"", "*QZPPDUpdaters: ATMediaTypePSPPDUpdater\n", "*QZPPDUpdaters x/y\n"}) {
    const auto ppd = documentFromText(text);
    RecordingObserver observer(*ppd);
    ATPPDUpdatersFactory::defaultFactory().updatersForPPD(*ppd, observer);
    EXPECT_THAT(observer.events, IsEmpty()) << text;
  }
}

TEST(UpdateObserver, EveryKindOfUpdaterThatTheFactoryMakesTellsIt) {
  const FakeLibrary library("CID:QZVRPCLS");
  for (const char* name : {"ATMediaTypePPDUpdater", "ATMediaTypePSPPDUpdater", "ATMediaTypePCL3PPDUpdater",
                           "ATMediaTypePCL3Qualifier3PPDUpdater", "ATMediaTypePCL3Qualifier1PPDUpdater",
                           "ATGlossyProfilePCL3PPDUpdater"}) {
    const auto ppd = documentFromText(std::string("*QZPPDUpdaters: \"") + name + "\"\n");
    RecordingObserver observer(*ppd);
    const auto updaters = ATPPDUpdatersFactory::defaultFactory().updatersForPPD(*ppd, observer);
    observer.events.clear();
    ASSERT_EQ(updaters.size(), 1U);
    const FakeReader reader(mediaList({mapOf({{"MediaName", "F"}})}));
    EXPECT_TRUE(updaters[0]->updatePPD(ppd.get(), &reader));
    EXPECT_THAT(observer.events, ElementsAre("media ({MediaName = F; })", "factory F", "end")) << name;
  }
  const auto ppd = documentFromText("*QZPPDUpdaters: \"ATPDLCommandTypePPDUpdater\"\n");
  RecordingObserver observer(*ppd);
  const auto updaters = ATPPDUpdatersFactory::defaultFactory().updatersForPPD(*ppd, observer);
  observer.events.clear();
  FakeReader reader;
  reader.uri = "socket://a";
  EXPECT_TRUE(updaters.at(0)->updatePPD(ppd.get(), &reader));
  EXPECT_THAT(observer.events, ElementsAre("family 'QZVRPCLS' of the library"));
}

// What the device said

TEST(UpdateObserver, HearsTheMediaAlsoWhenThereAreNone) {
  const auto ppd = documentFromText("");
  RecordingObserver observer(*ppd);
  const ATMediaTypePSPPDUpdater updater(observer);
  for (const DeviceValue& data : {DeviceValue(), mapOf({}), mapOf({{"MediaList", "text"}}), mediaList({})}) {
    const FakeReader reader(data);
    EXPECT_TRUE(updater.updatePPD(ppd.get(), &reader));
  }
  EXPECT_THAT(observer.events, ElementsAre("media (null)", "media (null)", "media text", "media ()"));
}

TEST(UpdateObserver, HearsNoMediaWithoutADocumentOrAReader) {
  const auto ppd = documentFromText("");
  RecordingObserver observer(*ppd);
  const FakeReader reader(mediaList({}));
  EXPECT_FALSE(ATMediaTypePSPPDUpdater(observer).updatePPD(nullptr, &reader));
  EXPECT_FALSE(ATMediaTypePSPPDUpdater(observer).updatePPD(ppd.get(), nullptr));
  EXPECT_FALSE(ATPDLCommandTypePPDUpdater(observer).updatePPD(nullptr, &reader));
  EXPECT_THAT(observer.events, IsEmpty());
}

TEST(UpdateObserver, HearsTheMediaBeforeAnybodyChangesThem) {
  const auto ppd = documentFromText(kPlain);
  RecordingObserver observer(*ppd);
  const DeviceValue profiles = listOf({profile("N", "/n", "OFF")});
  struct : FakeReader {
    DeviceValue shared;
    DeviceValue dataForKey(std::string_view /*key*/) const override { return shared; }
  } reader;
  reader.shared = mediaList({customWith(profiles)});
  EXPECT_TRUE(ATGlossyProfilePCL3PPDUpdater(observer).updatePPD(ppd.get(), &reader));
  EXPECT_NE(observer.events[0].find("GlossEnhancer = OFF"), std::string::npos) << observer.events[0];
  EXPECT_TRUE(profiles.list()->front().valueForKey("GlossEnhancer").equals("off-ge"));
}

TEST(UpdateObserver, HearsTheMediaBeforeCleaningUp) {
  const auto ppd = documentFromText("*QZMediaListVersion: 3\n");
  struct : UpdateObserver {
    const ATPPD* document = nullptr;
    std::string atReading;
    void didReadMedia(const DeviceValue& /*mediaList*/) override { atReading = textOf(*document); }
  } observer;
  observer.document = ppd.get();
  const FakeReader reader(mediaList({}));
  EXPECT_TRUE(ATMediaTypePSPPDUpdater(observer).updatePPD(ppd.get(), &reader));
  EXPECT_EQ(observer.atReading, "*QZMediaListVersion: 3\n");
}

TEST(UpdateObserver, HearsTheFamilyOnceBeforeTheCommands) {
  const auto told = [](FakeLibrary& library, const std::optional<std::string>& uri) {
    const auto ppd = documentFromText("");
    RecordingObserver observer(*ppd);
    FakeReader reader;
    reader.uri = uri;
    EXPECT_TRUE(ATPDLCommandTypePPDUpdater(observer).updatePPD(ppd.get(), &reader));
    EXPECT_EQ(textOf(*ppd).empty(), !uri || uri->empty());
    EXPECT_EQ(library.storeQuestions, 0);
    return observer.events;
  };
  FakeLibrary library("MFG:X;CID:QZVR2PCLS;");
  EXPECT_THAT(told(library, "socket://a"), ElementsAre("family 'QZVR2PCLS' of the library"));
  EXPECT_THAT(told(library, std::nullopt), IsEmpty());
  EXPECT_THAT(told(library, ""), IsEmpty());
  library.knowsDevice = false;
  EXPECT_THAT(told(library, "socket://a"), ElementsAre("family '' of the library"));
  library.available = false;
  EXPECT_THAT(told(library, "socket://a"), ElementsAre("family '' of no library"));
}

// Cleaning up

TEST(UpdateObserver, HearsOfEachMediumBeforeItGoes) {
  EXPECT_THAT(
      toldBy<ATMediaTypePSPPDUpdater>("*QZMediaTypeGroup ExtendedCustomMedia-category/E: \"Custom3\"\n"
                                      "*QZMediaTypeGroup CustomMedia-category/C: \"Custom1,\nCustom2,\n\"\n" +
                                          mediaTypes("*MediaType Custom1/1: \"\"\n*MediaType Custom3/3: \"\"\n"),
                                      {}),
      ElementsAre("removing Custom1 (there)", "removing Custom2 (not there)", "removing  (not there)",
                  "removing Custom3 (there)"));
}

TEST(UpdateObserver, HearsOfEachProfileBeforeItGoesWithItsMedium) {
  EXPECT_THAT(toldBy<ATMediaTypePCL3PPDUpdater>("*cupsLanguages: \"de\"\n" + statement(".Custom1.", "1", "/1") +
                                                    "*de.cupsICCProfile .Custom1./1: \"\"\n" +
                                                    statement(".Custom12.", "2", "/2") + statement(".P.", "3", "/3") +
                                                    "*QZMediaTypeGroup CustomMedia-category/C: \"Custom1\"\n",
                                                {}),
              ElementsAre("removing Custom1 (not there)", "removing profile .Custom1. for Custom1 (there)",
                          "removing profile .Custom12. for Custom1 (there)"));
}

TEST(UpdateObserver, HearsOfEachProfileThatWasRestored) {
  EXPECT_THAT(
      toldBy<ATMediaTypePCL3PPDUpdater>(factory(".A.", "A;;/a") + factory(".B.", "no path") + factory(".C.", "C;;/c") +
                                            factory(".D.", "D;;/d") + statement(".A.", "X", "/x") +
                                            statement(".B.", "X", "/x") + "*cupsICCProfile .D./X: /d\n",
                                        {}),
      ElementsAre("restoring .A. = X \"/x\"", "restored .A. = A \"/a\""));
}

TEST(UpdateObserver, HearsOfProfilesThatWereRestoredAndThatWereMadeAnew) {
  const std::string tooLong(240, 'p');
  EXPECT_THAT(toldBy<ATMediaTypePCL3Qualifier3PPDUpdater>(
                  factory(".A.F", "A;;/a") + factory(".B.F", "B;;/b") + factory(".C.F", "C;;/" + tooLong) +
                      statement(".B.F", "X", "/x") + statement(".B.", "X", "/x"),
                  {}),
              ElementsAre("made .A.F = A \"/a\"", "restoring .B.F = X \"/x\"", "restored .B.F = B \"/b\""));
}

TEST(UpdateObserver, RestoringOfTheFirstQualifierTellsWhatTheThirdTells) {
  EXPECT_THAT(
      toldBy<ATMediaTypePCL3Qualifier1PPDUpdater>(
          factory("True.A.F", "A;;/a") + statement("True.A.F", "X", "/x") + statement("False.A.F", "X", "/x"), {}),
      ElementsAre("made True.A.F = A \"/a\""));
}

// One medium

TEST(UpdateObserver, HearsWhatBecomesOfEachMediumBetweenItsBeginningAndItsEnd) {
  const DeviceValue custom = customMedium("Canvas", "4711", "12");
  custom.map()->set("DefaultGlossEnhancer", "FULLPAGE");
  EXPECT_THAT(toldBy<ATMediaTypePSPPDUpdater>(
                  "*QZValueAttributes MediaType.Plain: \"a;defaultGE='x'\"\n" + kPlain + fullGlossOption("off-ge"),
                  {custom, mapOf({{"MediaName", "Plain"}, {"ID", "12"}, {"DefaultGlossEnhancer", "OFF"}}),
                   extendedMedium("Film", "9")},
                  true),
              ElementsAre("custom Canvas", "added Custom1 (there)", "search 12: Plain",
                          "inherited \"a;defaultGE='off-ge'\" of Plain", "search 4711: Custom1",
                          "gloss of Custom1: \"a;defaultGE='off-ge'\" to \"a;defaultGE='whole-page-ge'\"", "end",
                          "factory Plain", "search 12: Plain",
                          "gloss of Plain: \"a;defaultGE='off-ge'\" to \"a;defaultGE='off-ge'\"", "end", "custom Film",
                          "added Custom2 (there)", "end"));
}

TEST(UpdateObserver, HearsASearchThatFindsNothing) {
  EXPECT_THAT(
      toldBy<ATMediaTypePSPPDUpdater>(kPlain, {customMedium("Canvas", "4711", "99")}, true),
      ElementsAre("custom Canvas", "added Custom1 (there)", "search 99: none", "inherited (null) of 99", "end"));
}

TEST(UpdateObserver, HearsNoSearchForAnAbsentID) {
  EXPECT_THAT(
      toldBy<ATMediaTypePSPPDUpdater>(kPlain, {mapOf({{"MediaName", "P"}, {"DefaultGlossEnhancer", "OFF"}})}, true),
      ElementsAre("factory P", "end"));
}

TEST(UpdateObserver, HearsNothingOfAGlossDefaultWithoutProperties) {
  EXPECT_THAT(toldBy<ATMediaTypePSPPDUpdater>(
                  kPlain, {mapOf({{"MediaName", "P"}, {"ID", "12"}, {"DefaultGlossEnhancer", "OFF"}})}),
              ElementsAre("factory P", "end"));
}

TEST(UpdateObserver, HearsThatAChoiceIsLostWithoutAnOption) {
  EXPECT_THAT(toldBy<ATMediaTypePSPPDUpdater>("", {customMedium("Canvas", "4711")}),
              ElementsAre("custom Canvas", "added Custom1 to nothing", "end"));
}

TEST(UpdateObserver, HearsWhyAMediumIsNotAdded) {
  struct Updater : ATMediaTypePSPPDUpdater {
    using ATMediaTypePSPPDUpdater::ATMediaTypePSPPDUpdater;
    std::optional<std::string> mediaTypeChoiceCodeWithName(const std::string& choiceName,
                                                           const DeviceValue& ID) const override {
      if (ID.equals("no code")) return std::nullopt;
      return ATMediaTypePSPPDUpdater::mediaTypeChoiceCodeWithName(choiceName, ID);
    }
  };
  const auto problemOf = [](const DeviceValue& record) {
    const auto ppd = documentFromText(kPlain);
    RecordingObserver observer(*ppd);
    const bool added = Updater(observer).addMediaWithData(record, *ppd);
    EXPECT_EQ(observer.events.size(), 1U);
    EXPECT_EQ(added, observer.mediumProblems.empty());
    return observer.mediumProblems.empty() ? MediumProblem::nothingMissing : observer.mediumProblems[0];
  };
  const auto record = [](const DeviceValue& choiceName, const DeviceValue& ID, const DeviceValue& name) {
    return mapOf({{"PPDName", choiceName}, {"ID", ID}, {"MediaName", name}});
  };
  EXPECT_EQ(problemOf(record("C", "1", "N")), MediumProblem::nothingMissing);
  EXPECT_EQ(problemOf(record("C", "1", {})), MediumProblem::noName);
  EXPECT_EQ(problemOf(record("C", {}, "N")), MediumProblem::noID);
  EXPECT_EQ(problemOf(record("C", "no code", "N")), MediumProblem::noCode);
  EXPECT_EQ(problemOf(record({}, "1", "N")), MediumProblem::noChoiceName);
  EXPECT_EQ(problemOf(record("C", "1", std::string(256, 'n'))), MediumProblem::lineTooLong);
  EXPECT_EQ(problemOf(record(std::string(41, 'c'), "1", "N")), MediumProblem::lineTooLong);
  EXPECT_EQ(problemOf({}), MediumProblem::noName);
}

TEST(UpdateObserver, AMediumThatIsNotAddedStillHasItsEnd) {
  EXPECT_THAT(toldBy<ATMediaTypePCL3PPDUpdater>(kPlain, {mapOf({{"MediaName", "N"}, {"CategoryID", "CUSTOM"}})}),
              ElementsAre("custom N", "not added: 2", "end"));
}

TEST(UpdateObserver, AMediumThatEndsTheRunHasNoEnd) {
  const auto ppd = documentFromText(kPlain);
  RecordingObserver observer(*ppd);
  const FakeReader reader(mediaList({customMedium("Canvas", "4711")}));
  EXPECT_THROW(ATMediaTypePPDUpdater(observer).updatePPD(ppd.get(), &reader), ATException);
  ASSERT_EQ(observer.events.size(), 2U);
  EXPECT_EQ(observer.events[1], "custom Canvas");
}

// Profiles

TEST(UpdateObserver, HearsOfEachProfileThatWasAddedOrSkipped) {
  EXPECT_THAT(toldBy<ATMediaTypePCL3PPDUpdater>(
                  kPlain, {customWith(listOf({profile("N", "file:///my%20n"), profile("a:b", "/b"),
                                              profile({}, "file:"), profile("M", "m m")}))}),
              ElementsAre("custom Canvas", "added Custom1 (there)",
                          "profile added: N file:///my%20n /my n .Custom1. = N \"/my n\"",
                          "profile skipped: a:b /b /b (null)", "profile skipped: (null) file: (null) (null)",
                          "profile added: M m m m m .Custom1. = N \"/my n\"", "end"));
}

TEST(UpdateObserver, HearsOfEachProfileThatWasSetOrSkipped) {
  EXPECT_THAT(
      toldBy<ATMediaTypePCL3PPDUpdater>(
          statement(".Plain.", "Old", "/old") + kPlain,
          {factoryWith(listOf({profile("N", "/n"), profile("a:b", "/b"), profile("M", "/m")}))}),
      ElementsAre("factory Plain", "profile set: N /n /n .Plain. = N \"/n\"",
                  "profile skipped: a:b /b /b .Plain. = N \"/n\"", "profile set: M /m /m .Plain. = M \"/m\"", "end"));
}

TEST(UpdateObserver, HearsOfAProfileThatHasNoStatementToSet) {
  EXPECT_THAT(toldBy<ATMediaTypePCL3PPDUpdater>(kPlain, {factoryWith(listOf({profile("N", "/n")}))}),
              ElementsAre("factory Plain", "profile skipped: N /n /n .Plain. (not there)", "end"));
}

TEST(UpdateObserver, HearsWhyAProfileIsNotAdded) {
  using Problems = std::vector<ProfileProblem>;
  const auto record = mediumWithProfiles(
      "C", listOf({profile({}, "/n"), profile("", "/n"), profile(std::string(81, 'n'), "/n"), profile("a:b", "/n"),
                   profile("\u0100", "/n"), profile("N", {}), profile("N", ""), profile("N", "file:"),
                   profile("N", "C:\\n"), profile("N", "/a:b"), profile("N", "1a:b"), profile("N", "/\u0100"),
                   profile("N", "/" + std::string(240, 'n')), profile("N", "/n")}));
  EXPECT_EQ(problemsOfAdding(record),
            (Problems{ProfileProblem::noName, ProfileProblem::emptyName, ProfileProblem::nameTooLong,
                      ProfileProblem::charactersOfName, ProfileProblem::charactersOfName, ProfileProblem::noPath,
                      ProfileProblem::noPath, ProfileProblem::noPath, ProfileProblem::noPath,
                      ProfileProblem::charactersOfPath, ProfileProblem::charactersOfPath,
                      ProfileProblem::charactersOfPath, ProfileProblem::lineTooLong}));
  const std::string longName(39, 'c');
  const DeviceValue one = listOf({profile("N", "/n")});
  EXPECT_EQ(problemsOfAdding(mediumWithProfiles(longName.c_str(), one)), Problems{ProfileProblem::specTooLong});
  EXPECT_EQ(problemsOfAdding(mediumWithProfiles(longName.substr(1).c_str(), one)), Problems());
  EXPECT_EQ(problemsOfAdding(mediumWithProfiles("C", listOf({profile("N", "/" + std::string(225, 'n'))})),
                             "*cupsLanguages: \"de\"\n"),
            Problems());
  EXPECT_EQ(problemsOfAdding(mediumWithProfiles("C", one), "*cupsLanguages: \"" + std::string(230, 'l') + "\"\n"),
            Problems{ProfileProblem::lineTooLong});
}

TEST(UpdateObserver, HearsWhyAProfileIsNotSet) {
  EXPECT_EQ(
      problemsOfSetting(mediumWithProfiles(std::string(50, 'c').c_str(),
                                           listOf({profile({}, "/n"), profile("a:b", "/n"), profile("N", {}),
                                                   profile("N", "/a:b"), profile("N", "/" + std::string(300, 'n'))}))),
      (std::vector<ProfileProblem>{ProfileProblem::noName, ProfileProblem::charactersOfName, ProfileProblem::noPath,
                                   ProfileProblem::charactersOfPath, ProfileProblem::noStatement}));
}

TEST(UpdateObserver, HearsNothingOfARecordWithoutProfiles) {
  EXPECT_THAT(toldBy<ATMediaTypePCL3PPDUpdater>(kPlain, {customMedium("Canvas", "4711"), factoryWith(listOf({}))}),
              ElementsAre("custom Canvas", "added Custom1 (there)", "end", "factory Plain", "end"));
}

TEST(UpdateObserver, HearsOfAGeneralProfileInThePlaceOfSpecialisedOnes) {
  const std::string text = "*cupsICCQualifier3: \"Quality\"\n" + statement(".Plain.Fast", "F", "/f");
  const DeviceValue record = factoryWith(listOf({profile("N", "/n")}));
  EXPECT_THAT(toldBy<ATMediaTypePCL3Qualifier3PPDUpdater>(text + kPlain + kQuality, {record}),
              ElementsAre("factory Plain", "profile added: N /n /n .Plain. = N \"/n\"", "end"));
  EXPECT_THAT(
      toldBy<ATMediaTypePCL3Qualifier3PPDUpdater>(text + statement(".Plain.", "G", "/g") + kPlain + kQuality, {record}),
      ElementsAre("factory Plain", "profile set: N /n /n .Plain. = N \"/n\"", "end"));
}

TEST(UpdateObserver, HearsOfFactoryProfilesThatCompleteTheDevicesOnes) {
  EXPECT_THAT(toldBy<ATMediaTypePCL3Qualifier1PPDUpdater>(
                  "*cupsICCQualifier1: \"QZGlossEnhancerSimplified\"\n*cupsICCQualifier3: \"OutputMode\"\n" +
                      factory("True.Plain.Best", "F;;f f") + statement("True.Plain.Best", "F", "/f") + kPlain,
                  {factoryWith(listOf({profile("N", "/n", "OFF", "Best")}))}),
              ElementsAre("made True.Plain.Best = F \"f f\"", "factory Plain",
                          "profile added: N /n /n False.Plain.Best = N \"/n\"",
                          "profile added: F f f f f True.Plain.Best = F \"f f\"", "end"));
}

TEST(UpdateObserver, HearsOfTheEconomyProfileOfAGlossyMedium) {
  EXPECT_THAT(toldBy<ATGlossyProfilePCL3PPDUpdater>(
                  "*cupsICCQualifier3: \"QZGlossEnhancer\"\n*QZValueAttributes MediaType.Plain: \"glossy=YES\"\n" +
                      statement(".Plain.whole-page-ge", "W", "/w") + kPlain,
                  {factoryWith(listOf({profile("N", "/n", "FULLPAGE")}))}),
              ElementsAre("factory Plain", "profile set: N /n /n .Plain.whole-page-ge = N \"/n\"",
                          "profile skipped: N /n /n .Plain.economode-ge (not there)", "end"));
}

TEST(UpdateObserver, HearsOnceOfTheErrorThatEndedTheWorkOnProfiles) {
  const std::string qualifiers =
      "*cupsICCQualifier1: \"QZGlossEnhancerSimplified\"\n*cupsICCQualifier3: \"OutputMode\"\n";
  const auto records = {customWith(listOf({profile("N", "/n")})), factoryWith(listOf({profile("N", "/n")}))};
  const auto expected = ElementsAre("custom Canvas", "added Custom1 (there)", StartsWith("profiles failed: "), "end",
                                    "factory Plain", StartsWith("profiles failed: "), "end");
  EXPECT_THAT(toldBy<ATMediaTypePCL3Qualifier1PPDUpdater>(qualifiers + kPlain, records), expected);
  EXPECT_THAT(toldBy<ATGlossyProfilePCL3PPDUpdater>(kPlain, records), expected);
}

TEST(UpdateObserver, HearsTheReasonOfTheErrorBehindWhatWasDone) {
  struct Failing : ATGlossyProfilePCL3PPDUpdater {
    using ATGlossyProfilePCL3PPDUpdater::ATGlossyProfilePCL3PPDUpdater;
    std::string profileSpecFromMediaData(const Record& record, const ProfileEntry& profileInfo,
                                         const ATPPD& ppd) const override {
      if (profileInfo.valueForKey("ICCName").equals("bad")) throw std::runtime_error("the reason");
      return ATGlossyProfilePCL3PPDUpdater::profileSpecFromMediaData(record, profileInfo, ppd);
    }
  };
  const DeviceValue profiles =
      listOf({profile("N", "/n", "OFF"), profile("bad", "/b", "OFF"), profile("M", "/m", "OFF")});
  EXPECT_THAT(toldBy<Failing>(kPlain, {customWith(profiles)}),
              ElementsAre("custom Canvas", "added Custom1 (there)", "profile added: N /n /n .Custom1. = N \"/n\"",
                          "profiles failed: the reason", "end"));
}

TEST(UpdateObserver, HearsNoFailureOfProfilesThatEndsTheRun) {
  const auto ppd = documentFromText(kPlain);
  RecordingObserver observer(*ppd);
  const FakeReader reader(mediaList({customWith(listOf({"text"}))}));
  EXPECT_THROW(ATMediaTypePCL3PPDUpdater(observer).updatePPD(ppd.get(), &reader), ATException);
  EXPECT_EQ(observer.events.back(), "added Custom1 (there)");
}
