// SPDX-License-Identifier: MIT
#include "explain/ExplainedRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/stat.h>

#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "base/ATException.h"
#include "explain/report/Sentences.h"
#include "explain/show/ReportWriters.h"
#include "library/Snapshot.h"
#include "tests/support/SnapshotDeviceModelLibrary.h"
#include "tests/support/TemporaryFolder.h"

using ReportWriters::Detail;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr const char* kURI = "socket://192.0.2.10:9100";

// A PPD that names the updaters, with the statements and a media option in its group.
std::string ppd(const std::string& updaters, const std::string& statements = "") {
  return "*PPD-Adobe: \"4.3\"\n*ModelName: \"Z9\"\n*QZPPDUpdaters: \"" + updaters + "\"\n" + statements +
         "*OpenGroup: QZImagingOptions/Imaging Options\n*OpenUI *MediaType/Media Type: PickOne\n*DefaultMediaType: "
         "Plain\n"
         "*MediaType Plain/Plain: \"(1001)\"\n*MediaType Glossy/Glossy: \"(1002)\"\n*CloseUI: *MediaType\n"
         "*OpenUI *QZGlossEnhancer/Gloss: PickOne\n*DefaultQZGlossEnhancer: off-ge\n*QZGlossEnhancer off-ge/Off: \"\"\n"
         "*CloseUI: *QZGlossEnhancer\n*CloseGroup: QZImagingOptions\n";
}

std::string device(const std::string& media) {
  return R"({"format": "vorantis-device-snapshot", "formatVersion": 1, "devices": [{"deviceFamilyName": "CID:QZVR2PCLS",
             "dataStore": {"VMCustomMediaStorage": {"MediumListVersion": "7", "MediaInfo": {)" +
         media + "}}}}]}";
}

std::string custom(const std::string& name, const std::string& id, const std::string& more = "") {
  return "\"" + id + R"(": {"Name": ")" + name + R"(", "MediumID": ")" + id +
         R"(", "CategoryName": "C", "CategoryID": "CUSTOM", "ICCProfiles": [)" +
         (more.empty() || more[0] != '{' ? "]" + more : more + "]") + "}";
}

ExplainedRun explain(const std::string& ppdText, const std::optional<std::string>& snapshotText) {
  const TemporaryFolder folder;
  const std::string path = folder.file("input.ppd", ppdText);
  std::optional<SnapshotDeviceModelLibrary> library;
  if (snapshotText) library.emplace(snapshot::Snapshot::fromJSON(*snapshotText));
  DeviceModelLibrary::setDefaultLibrary(library ? &*library : nullptr);
  ExplainedRun run = ExplainedRun::of({kURI, path, std::nullopt});
  DeviceModelLibrary::setDefaultLibrary(nullptr);
  return run;
}

std::vector<std::string> warningsOf(const ExplainedRun& run) {
  std::vector<std::string> codes;
  for (const Warning& warning : run.report.warnings) codes.emplace_back(nameOf(warning.code));
  return codes;
}

const Report::MediumOutcome& medium(const ExplainedRun& run, std::size_t index = 0) {
  return run.report.updaters.at(0).media.at(index);
}

}  // namespace

TEST(ExplainedRun, TellsWhatWasRead) {
  const ExplainedRun run = explain(ppd("", "*cupsLanguages: \"en de\"\n"), std::nullopt);
  EXPECT_TRUE(run.report.succeeded());
  ASSERT_TRUE(run.report.parse);
  EXPECT_EQ(run.report.parse->lines, 15U);
  EXPECT_EQ(run.report.parse->statements, 15U);
  EXPECT_EQ(run.report.parse->groups, 1U);
  EXPECT_EQ(run.report.parse->options, 2U);
  EXPECT_THAT(run.report.parse->languages, ElementsAre("en", "de"));
  EXPECT_EQ(run.report.parse->modelName, "\"Z9\"");
  EXPECT_FALSE(run.report.device);
}

TEST(ExplainedRun, TellsTheMalformedLine) {
  const ExplainedRun run = explain("*A: 1\n*End\n*End\n", std::nullopt);
  EXPECT_EQ(run.report.failure,
            "the PPD cannot be read from line 3 on; expected: the closing quote of the value, or another statement, "
            "before *End");
  EXPECT_EQ(run.result, "");
  ASSERT_TRUE(run.report.parse && run.report.parse->failure);
  EXPECT_EQ(run.report.parse->failure->code, 6);
  EXPECT_EQ(run.report.parse->failure->lineNumber, 3);
  EXPECT_EQ(run.report.parse->failure->line, "*End");
}

TEST(ExplainedRun, TellsAMissingFileAndArgumentsThatAreNotAccepted) {
  EXPECT_EQ(ExplainedRun::of({kURI, "/no/such/file", std::nullopt}).report.parse->failure->code, 1);
  EXPECT_THAT(ExplainedRun::of({kURI, std::nullopt, std::nullopt}).report.failure, HasSubstr("UTF-8"));
}

TEST(ExplainedRun, NamesTheUpdatersWithThoseThatAreUnknown) {
  const ExplainedRun run = explain(ppd("Other ATMediaTypePSPPDUpdater  ATPDLCommandTypePPDUpdater"), device(""));
  ASSERT_EQ(run.report.updaters.size(), 3U);
  EXPECT_EQ(run.report.updaters[0].name, "Other");
  EXPECT_FALSE(run.report.updaters[0].known);
  EXPECT_EQ(run.report.updaters[1].outcome, Report::UpdaterOutcome::succeeded);
  EXPECT_EQ(run.report.updaters[2].outcome, Report::UpdaterOutcome::succeeded);
  EXPECT_EQ(run.report.device->familyCode, "QZVR2PCLS");
  EXPECT_EQ(run.report.updaters[2].changes.size(), 8U);
  EXPECT_THAT(warningsOf(run), ElementsAre("unknown-updater"));
}

TEST(ExplainedRun, TellsTheErrorThatEndedTheRunAndWhatWasNotReached) {
  const ExplainedRun run =
      explain(ppd("ATMediaTypePPDUpdater ATMediaTypePSPPDUpdater"), device(custom("Canvas", "4711")));
  EXPECT_FALSE(run.report.succeeded());
  EXPECT_EQ(run.result, "");
  EXPECT_EQ(run.report.updaters[0].outcome, Report::UpdaterOutcome::threw);
  EXPECT_NE(run.report.updaters[0].error, "");
  EXPECT_EQ(run.report.updaters[1].outcome, Report::UpdaterOutcome::notRun);
}

TEST(ExplainedRun, TellsThatThereIsNoReader) {
  const TemporaryFolder folder;
  const std::string path = folder.file("input.ppd", ppd("ATMediaTypePSPPDUpdater"));
  const ExplainedRun run = ExplainedRun::of({"", path, std::nullopt});
  EXPECT_THAT(run.report.failure, HasSubstr("ATMediaTypePSPPDUpdater cannot update the PPD"));
  EXPECT_EQ(run.report.updaters[0].outcome, Report::UpdaterOutcome::failed);
}

TEST(ExplainedRun, TellsWhatTheDeviceAnsweredAndWhatBecameOfAMedium) {
  const ExplainedRun run = explain(
      ppd("ATMediaTypePSPPDUpdater", "*QZValueAttributes MediaType.Glossy: \"glossy=YES;defaultGE='off-ge'\"\n"),
      device(
          custom("Canvas", "4711", R"(, "ParentID": "1002", "PropertiesInfo": {"DefaultGlossEnhancer": "FULLPAGE"})")));
  ASSERT_TRUE(run.report.device && run.report.device->media);
  EXPECT_TRUE(run.report.device->libraryAvailable);
  EXPECT_EQ(run.report.device->listVersion, "7");
  EXPECT_EQ(run.report.device->media->at(0).name, "Canvas");
  EXPECT_EQ(run.report.device->media->at(0).parentID, "1002");
  EXPECT_TRUE(medium(run).added);
  EXPECT_EQ(medium(run).choiceName, "Custom1");
  EXPECT_EQ(medium(run).choiceCode, "/QZDict /ProcSet findresource /SetMediaId get (4711) exch exec");
  EXPECT_EQ(medium(run).parent, "Glossy");
  EXPECT_EQ(medium(run).glossBefore, "'off-ge'");
  EXPECT_EQ(medium(run).glossAfter, "'whole-page-ge'");
}

TEST(ExplainedRun, TellsThatTheLibraryIsNotThereOrWasNotAsked) {
  struct : SnapshotDeviceModelLibrary {
    using SnapshotDeviceModelLibrary::SnapshotDeviceModelLibrary;
    bool isAvailable() override { return false; }
  } absent(snapshot::Snapshot{});
  const TemporaryFolder folder;
  const std::string path = folder.file("input.ppd", ppd("ATMediaTypePSPPDUpdater"));
  DeviceModelLibrary::setDefaultLibrary(&absent);
  const ExplainedRun withoutLibrary = ExplainedRun::of({kURI, path, std::nullopt});
  const ExplainedRun withID = ExplainedRun::of({kURI, path, "an-id"});
  DeviceModelLibrary::setDefaultLibrary(nullptr);
  EXPECT_THAT(warningsOf(withoutLibrary), ElementsAre("no-library"));
  EXPECT_THAT(warningsOf(withID), ElementsAre("device-not-asked"));
  ASSERT_TRUE(withoutLibrary.report.device);
  EXPECT_FALSE(withoutLibrary.report.device->libraryAvailable);
  EXPECT_FALSE(withoutLibrary.report.device->media);
  EXPECT_THAT(ReportWriters::text(withoutLibrary.report, {}), HasSubstr("The library is not there."));
  EXPECT_FALSE(withID.report.device);
}

TEST(ExplainedRun, TellsWhyAMediumIsLeftOut) {
  const ExplainedRun run = explain(ppd("ATMediaTypePSPPDUpdater"), device(custom(std::string(300, 'n'), "4711")));
  EXPECT_FALSE(medium(run).added);
  EXPECT_EQ(medium(run).notAdded, "its choice statement would be longer than 255 bytes");
  EXPECT_THAT(warningsOf(run), ElementsAre("medium-left-out"));
  ASSERT_TRUE(run.report.warnings[0].about);
  EXPECT_EQ(run.report.warnings[0].about->ID, "4711");
}

TEST(ExplainedRun, WarnsOfAMediumThatIsNoCustomOneForWantOfAName) {
  const ExplainedRun run = explain(ppd("ATMediaTypePSPPDUpdater"),
                                   device(R"("a": {"Name": "Canvas", "MediumID": "9", "CategoryID": "CUSTOM"})"));
  EXPECT_FALSE(medium(run).device.custom);
  EXPECT_THAT(warningsOf(run), ElementsAre("record-incomplete"));
  EXPECT_THAT(Sentences::of(run.report.warnings[0]), HasSubstr("no category name for the medium \"Canvas\""));
}

TEST(ExplainedRun, ShowsTheIDOfAMediumWithoutAName) {
  const ExplainedRun run = explain(ppd("ATMediaTypePSPPDUpdater"), device(R"("a": {"MediumID": "9"})"));
  EXPECT_THAT(warningsOf(run), ElementsAre("record-incomplete"));
  EXPECT_EQ(run.report.device->media->at(0).ID, "9");
  EXPECT_EQ(medium(run).device.ID, "9");
}

TEST(ExplainedRun, NamesTheMediumAtWhichAnErrorEndedTheRun) {
  const ExplainedRun run = explain(
      ppd("ATMediaTypePSPPDUpdater"),
      device(
          R"("a": {"Name": 24, "MediumID": "4711", "CategoryName": "C", "CategoryID": "CUSTOM", "ICCProfiles": []})"));
  EXPECT_THAT(run.report.failure, HasSubstr("(at the medium \"24\" (4711))"));
  EXPECT_THAT(medium(run).notAdded, HasSubstr("an error ended the run: "));
}

TEST(ExplainedRun, TellsTheWordsOfALibraryThatCannotBeUsed) {
  struct : SnapshotDeviceModelLibrary {
    using SnapshotDeviceModelLibrary::SnapshotDeviceModelLibrary;
    bool isAvailable() override { throw ATException::libraryFailure("the loader's words"); }
  } broken(snapshot::Snapshot{});
  const TemporaryFolder folder;
  const std::string path = folder.file("input.ppd", ppd("ATMediaTypePSPPDUpdater"));
  DeviceModelLibrary::setDefaultLibrary(&broken);
  const ExplainedRun run = ExplainedRun::of({kURI, path, std::nullopt});
  EXPECT_EQ(&DeviceModelLibrary::defaultLibrary(), &broken) << "watched for the length of the run only";
  DeviceModelLibrary::setDefaultLibrary(nullptr);
  EXPECT_FALSE(run.report.succeeded());
  EXPECT_THAT(warningsOf(run), ElementsAre("library-failed"));
  EXPECT_THAT(Sentences::of(run.report.warnings[0]), HasSubstr("the loader's words"));
}

TEST(ExplainedRun, TellsTheQuestionAsItWasAsked) {
  const ExplainedRun run = explain(ppd("ATMediaTypePSPPDUpdater"), device(""));
  ASSERT_TRUE(run.report.device && run.report.device->question);
  EXPECT_EQ(run.report.device->question->deviceURI, kURI);
  EXPECT_EQ(run.report.device->question->modelName, "\"Z9\"");
  EXPECT_TRUE(run.report.device->storeFound && run.report.device->itemFound);
  const ExplainedRun older = explain(
      ppd("ATMediaTypePSPPDUpdater"),
      R"({"format": "vorantis-device-snapshot", "formatVersion": 1, "offersServiceInfoWithSpec": false, "devices": []})");
  EXPECT_EQ(older.report.device->question->modelName, std::nullopt);
  EXPECT_FALSE(older.report.device->storeFound);
}

TEST(ExplainedRun, TellsMediaOfThisRunFromThoseOfAnEarlierSetup) {
  const std::string updaters = "ATMediaTypePSPPDUpdater ATMediaTypePSPPDUpdater";
  const ExplainedRun run = explain(ppd(updaters), device(custom("Canvas", "4711") + "," + custom("Satin", "4712")));
  EXPECT_THAT(run.report.updaters[0].removedMedia, IsEmpty());
  EXPECT_THAT(run.report.updaters[1].removedMedia, IsEmpty());
  EXPECT_THAT(run.report.updaters[1].replacedMedia, ElementsAre("Custom1"));
  EXPECT_EQ(run.report.lastMediaUpdater(), &run.report.updaters[1]);
}

TEST(ExplainedRun, TellsWhatBecameOfEachProfile) {
  const std::string profiles =
      R"({"URL": "file:///p/a.icc", "ICCName": "A"}, {"URL": "file:///p/b.icc", "ICCName": "B: no"},
         {"URL": "file:nowhere at all", "ICCName": "C"}, {"URL": "/p/)" +
      std::string(250, 'd') +
      R"(", "ICCName": "D"}, {"ICCName": "E", "URL": "file:///p/%22.icc"}, {"URL": "/p/f.icc"})";
  const ExplainedRun run = explain(ppd("ATMediaTypePCL3PPDUpdater"), device(custom("Canvas", "4711", profiles)));
  const auto& found = medium(run).profiles;
  ASSERT_EQ(found.size(), 6U);
  EXPECT_EQ(found[0].outcome, Report::ProfileOutcome::added);
  EXPECT_EQ(found[0].spec, ".Custom1.");
  EXPECT_EQ(found[0].path, "/p/a.icc");
  EXPECT_THAT(found[1].reason, HasSubstr("its name holds a character"));
  EXPECT_THAT(found[2].reason, HasSubstr("no path by RFC 3986: file:nowhere at all"));
  EXPECT_EQ(found[3].reason, "a statement would be longer than 255 bytes");
  EXPECT_THAT(found[4].reason, HasSubstr("its path holds a character"));
  EXPECT_EQ(found[5].reason, "it has no name");
}

TEST(ExplainedRun, TellsProfilesThatAreRewrittenOrHaveNoStatement) {
  const std::string factory = R"("x": {"Name": "Plain", "MediumID": "1001", "CategoryName": "P", "CategoryID": "PHOTO",
      "ICCProfiles": [{"URL": "/p/new.icc", "ICCName": "New"}]}, "y": {"Name": "Glossy", "MediumID": "1002",
      "CategoryName": "P", "CategoryID": "PHOTO", "ICCProfiles": [{"URL": "/p/new.icc", "ICCName": "New"}]})";
  const ExplainedRun run =
      explain(ppd("ATMediaTypePCL3PPDUpdater", "*cupsICCProfile .Plain./Old: \"/p/old.icc\"\n"), device(factory));
  EXPECT_EQ(medium(run, 0).profiles.at(0).outcome, Report::ProfileOutcome::rewritten);
  EXPECT_EQ(medium(run, 1).profiles.at(0).outcome, Report::ProfileOutcome::skipped);
  EXPECT_EQ(medium(run, 1).profiles.at(0).reason, "the PPD has no statement of this spec to set");
}

TEST(ExplainedRun, TellsTheErrorThatEndedTheWorkOnProfiles) {
  const ExplainedRun run = explain(ppd("ATGlossyProfilePCL3PPDUpdater"),
                                   device(custom("Canvas", "4711", R"({"URL": "/p/a.icc", "ICCName": "A"})")));
  EXPECT_TRUE(run.report.succeeded());
  EXPECT_THAT(medium(run).profilesFailure.value_or(""), HasSubstr("gloss"));
}

TEST(ExplainedRun, TellsWhatWasCleanedUpAndRestored) {
  const std::string before =
      "*cupsICCProfile .Custom1./Old: \"/p/old.icc\"\n*cupsICCProfile .Custom12./Other: \"/p/other.icc\"\n"
      "*cupsICCProfile .Plain./P: \"/p/plain.icc\"\n*QZcupsICCProfile .Plain./P: \"Factory;;/p/factory.icc\"\n"
      "*QZMediaTypeGroup CustomMedia-category/Custom Paper: \"Custom1\"\n*End\n";
  const ExplainedRun run = explain(ppd("ATMediaTypePCL3PPDUpdater", before), device(""));
  EXPECT_THAT(run.report.updaters[0].removedMedia, ElementsAre("Custom1"));
  EXPECT_THAT(run.report.updaters[0].restoredProfiles, ElementsAre(".Plain."));
  EXPECT_THAT(warningsOf(run), ElementsAre("profile-removed-for-another"));
  const ExplainedRun again = explain(run.result, device(""));
  EXPECT_THAT(again.report.updaters[0].restoredProfiles, IsEmpty()) << "it is the factory's already";
  EXPECT_THAT(warningsOf(again), ElementsAre("earlier-setup"));
}

TEST(ExplainedRun, WarnsOfWhatReadingCutsAndSplits) {
  const ExplainedRun run = explain("*A: 1\n*B: \"" + std::string(300, 'x') + "\"\n*C: \xE9\n*D: 1\n", std::nullopt);
  EXPECT_THAT(warningsOf(run), ElementsAre("cups-refuses", "cut-at-non-utf8", "no-updaters", "line-split"));
  EXPECT_THAT(Sentences::of(run.report.warnings[1]),
              HasSubstr("line 4, which is not UTF-8 from byte 317 of 325 of the file on (\\xe9)"));
}

TEST(ExplainedRun, DoesNotBlameBytesBehindAMalformedLine) {
  const ExplainedRun run = explain("text\n*C: \xE9\n", std::nullopt);
  EXPECT_THAT(warningsOf(run), ElementsAre("cups-refuses"));
  EXPECT_TRUE(run.report.warnings[0].inInput) << "why CUPS refuses the PPD, though nothing is written";
}

TEST(ExplainedRun, WarnsOfAChoiceThatIsListedAndNotWritten) {
  std::string text = ppd("ATMediaTypePSPPDUpdater");
  text.insert(text.find("*OpenUI *QZGlossEnhancer"), "*% a comment behind the option\n");
  EXPECT_THAT(warningsOf(explain(text, device(custom("Canvas", "4711")))), ElementsAre("choice-not-written"));
}

TEST(ExplainedRun, WarnsOfAMediaOptionThatIsMissingOrOutsideEveryGroup) {
  const std::string option =
      "*OpenUI *MediaType/Media: PickOne\n*DefaultMediaType: P\n*MediaType P/P: \"\"\n*CloseUI: *MediaType\n";
  const ExplainedRun run = explain("*PPD-Adobe: \"4.3\"\n*QZPPDUpdaters: \"ATMediaTypePSPPDUpdater\"\n" + option,
                                   device(custom("Canvas", "4711")));
  EXPECT_THAT(warningsOf(run), ElementsAre("option-outside-group", "no-media-option"));
}

TEST(ExplainedRun, WarnsOfAnIDInsideAnotherCode) {
  const auto withParent = [](const char* parent) {
    return warningsOf(explain(ppd("ATMediaTypePSPPDUpdater"),
                              device(custom("Canvas", "4711", std::string(R"(, "ParentID": ")") + parent + "\""))));
  };
  EXPECT_THAT(withParent("100"), ElementsAre("id-inside-code"));
  EXPECT_THAT(withParent("1001"), IsEmpty());
}

TEST(ExplainedRun, WarnsWhenNoUpdaterIsNamed) {
  const std::string none = "*PPD-Adobe: \"4.3\"\n";
  EXPECT_THAT(warningsOf(explain(none, device(""))), ElementsAre("no-updaters"));
  const ExplainedRun unquoted = explain(none + "*QZPPDUpdaters: ATMediaTypePSPPDUpdater\n", device(""));
  EXPECT_THAT(warningsOf(unquoted), ElementsAre("updaters-not-quoted"));
  EXPECT_THAT(Sentences::of(unquoted.report.warnings[0]), HasSubstr("nothing is done: ATMediaTypePSPPDUpdater"));
  EXPECT_THAT(warningsOf(explain(none + "*QZPPDUpdaters: \"\"\n", device(""))), ElementsAre("no-updaters"));
  const std::string second = "*QZPPDUpdaters: \"ATMediaTypePSPPDUpdater\"\n";
  EXPECT_THAT(warningsOf(explain(ppd("ATMediaTypePSPPDUpdater", second), device(""))), ElementsAre("second-updaters"));
}

TEST(ExplainedRun, WarnsOfADeviceThatNobodyKnows) {
  const std::string unknown =
      R"({"format": "vorantis-device-snapshot", "formatVersion": 1, "devices": [{"uri": "socket://other"}]})";
  const ExplainedRun run = explain(ppd("ATMediaTypePSPPDUpdater"), unknown);
  EXPECT_THAT(warningsOf(run), ElementsAre("no-device"));
  EXPECT_THAT(Sentences::of(run.report.warnings[0]), HasSubstr("socket://192.0.2.10:9100 and the model name \"Z9\""));
  EXPECT_THAT(warningsOf(explain(ppd("ATMediaTypePSPPDUpdater"), device(""))), IsEmpty()) << "it has none, and says so";

  const std::string before =
      explain(ppd("ATMediaTypePSPPDUpdater", "*cupsLanguages: \"de\"\n"), device(custom("Canvas", "4711"))).result;
  EXPECT_THAT(warningsOf(explain(before, unknown)), ElementsAre("no-device", "earlier-media-removed", "earlier-setup"));
}

TEST(ExplainedRun, WarnsOfWhatAnEarlierSetupLeft) {
  const std::string left =
      "*cupsICCProfile .Custom7./Old: \"/p/old.icc\"\n*QZValueAttributes MediaType.Custom8: \"a=b\"\n";
  std::string text = ppd("ATMediaTypePCL3PPDUpdater", left);
  text.insert(text.find("*MediaType Glossy"), "*MediaType Custom9/Old: \"(9)\"\n*MediaType CustomRoll/Mine: \"(8)\"\n");
  const ExplainedRun run = explain(text, device(custom("Canvas", "4711")));
  EXPECT_THAT(warningsOf(run), ElementsAre("left-by-earlier-setup", "left-by-earlier-setup", "left-by-earlier-setup"));
  EXPECT_THAT(Sentences::of(run.report.warnings[0]), HasSubstr("choice Custom9"));
  EXPECT_THAT(Sentences::of(run.report.warnings[1]), HasSubstr("profile .Custom7."));
  EXPECT_THAT(Sentences::of(run.report.warnings[2]), HasSubstr("property statement MediaType.Custom8"));
}

TEST(ExplainedRun, WarnsOfACategoryInOtherLetters) {
  const std::string media =
      R"("a": {"Name": "Canvas", "MediumID": "1001", "CategoryName": "C", "CategoryID": "Custom", "ICCProfiles": []})";
  EXPECT_THAT(warningsOf(explain(ppd("ATMediaTypePSPPDUpdater"), device(media))), ElementsAre("category-unknown"));
}

TEST(ExplainedRun, WarnsOfAnIDThatNoChoiceHas) {
  const std::string parent = custom("Canvas", "4711", R"(, "ParentID": "77")");
  EXPECT_THAT(warningsOf(explain(ppd("ATMediaTypePSPPDUpdater"), device(parent))), ElementsAre("id-not-found"));
}

TEST(ExplainedRun, WarnsOfProfilesThatAreNoList) {
  const std::string media =
      R"("a": {"Name": "M", "MediumID": "4711", "CategoryName": "C", "CategoryID": "CUSTOM", "ICCProfiles": "none"})";
  const ExplainedRun run = explain(ppd("ATMediaTypePCL3PPDUpdater"), device(media));
  EXPECT_THAT(warningsOf(run), ElementsAre("profile-list-failed"));
  EXPECT_TRUE(medium(run).added);
}

TEST(ExplainedRun, WarnsOfAnEmptyResult) {
  EXPECT_THAT(warningsOf(explain("", std::nullopt)), ElementsAre("cups-refuses", "no-updaters", "empty-result"));
}

TEST(ExplainedRun, WarnsOfArgumentsInTheWrongOrder) {
  const TemporaryFolder folder;
  const std::string path = folder.file("input.ppd", ppd("ATMediaTypePSPPDUpdater"));
  EXPECT_THAT(warningsOf(ExplainedRun::of({path, kURI, std::nullopt})), ElementsAre("arguments-swapped"));
}

TEST(ExplainedRun, WarnsOfAnIDThatEndsItsPostScriptString) {
  EXPECT_THAT(warningsOf(explain(ppd("ATMediaTypePSPPDUpdater"), device(custom("Canvas", "47)11")))),
              ElementsAre("postscript-string"));
}

TEST(ExplainedRun, WarnsOfANameThatNoLanguageShows) {
  const std::string media = device(custom("Papier \xC3\xA0 grain", "4711"));
  EXPECT_THAT(warningsOf(explain(ppd("ATMediaTypePSPPDUpdater"), media)), ElementsAre("name-not-shown"));
  EXPECT_THAT(warningsOf(explain(ppd("ATMediaTypePSPPDUpdater", "*cupsLanguages: \"de\"\n"), media)), IsEmpty());
}

TEST(ExplainedRun, WarnsOfDeviceTextsThatBreakThePPD) {
  const std::string languages = "*cupsLanguages: \"en de\"\n";
  const auto warnings = [&](const char* name) {
    return warningsOf(explain(ppd("ATMediaTypePSPPDUpdater", languages), device(custom(name, "4711"))));
  };
  EXPECT_THAT(warnings("Two\\nLines"), Contains("device-line-end"));
  EXPECT_THAT(warnings("Two\\nLines"), Contains("cups-refuses"));
  EXPECT_THAT(warnings("24\\\" Canvas"), IsEmpty()) << "in front of the colon a quote is harmless";
  EXPECT_THAT(warnings("Roll: 6\\\""), Contains("device-quote"));
  EXPECT_THAT(warnings("Roll: 6\\\""), Contains("swallowed"));
  EXPECT_THAT(warnings("A: B"), ElementsAre("name-otherwise"));
  EXPECT_THAT(warnings("Plain"), IsEmpty());
}

TEST(ExplainedRun, WarnsOfProfileFilesThatCUPSLeavesOut) {
  const TemporaryFolder folder;
  const std::string file = folder.file("a.icc", "profile");
  const auto warnings = [](const std::string& url) {
    return warningsOf(explain(ppd("ATMediaTypePCL3PPDUpdater"),
                              device(custom("Canvas", "4711", R"({"ICCName": "A", "URL": ")" + url + "\"}"))));
  };
  EXPECT_THAT(warnings("/no/such/file.icc"), ElementsAre("profile-missing"));
  EXPECT_THAT(warnings(folder.path()), ElementsAre("profile-no-file"));
  using std::filesystem::perm_options;
  using std::filesystem::permissions;
  permissions(folder.path(), std::filesystem::perms::others_exec, perm_options::add);
  permissions(file, std::filesystem::perms::others_write, perm_options::add);
  EXPECT_THAT(warnings(file), ElementsAre("profile-permissions", "profile-no-icc"));
  permissions(file, std::filesystem::perms::others_write, perm_options::remove);
  permissions(folder.path(), std::filesystem::perms::others_write, perm_options::add);
  EXPECT_THAT(warnings(file), ElementsAre("profile-permissions", "profile-no-icc"));
  const std::string profile = folder.file("b.icc", std::string(36, '\0') + "acsp" + std::string(88, '\0'));
  EXPECT_THAT(warnings(profile), ElementsAre("profile-permissions"));
}

TEST(ExplainedRun, WarnsOfAProfileThatCUPSFiltersMayNotRead) {
  ASSERT_NE(getpwnam("lp"), nullptr) << "base-passwd makes this user";
  const TemporaryFolder folder;
  const std::string profile = folder.file("a.icc", std::string(36, '\0') + "acsp");
  std::filesystem::create_directory(folder.path("inner"));
  const std::string hidden = folder.file("inner/b.icc", std::string(36, '\0') + "acsp");
  const auto isWarned = [](const std::string& path) {
    const auto codes =
        warningsOf(explain(ppd("ATMediaTypePCL3PPDUpdater"),
                           device(custom("Canvas", "4711", R"({"ICCName": "A", "URL": ")" + path + "\"}"))));
    return std::find(codes.begin(), codes.end(), "profile-not-readable") != codes.end();
  };
  using std::filesystem::perms;
  std::filesystem::permissions(folder.path(), perms::owner_all | perms::others_exec);
  std::filesystem::permissions(profile, perms::owner_all | perms::others_read);
  EXPECT_FALSE(isWarned(profile));
  std::filesystem::permissions(profile, perms::owner_all);
  EXPECT_TRUE(isWarned(profile));
  std::filesystem::permissions(hidden, perms::owner_all | perms::others_read);
  std::filesystem::permissions(folder.path("inner"), perms::owner_all | perms::others_exec);
  EXPECT_FALSE(isWarned(hidden));
  std::filesystem::permissions(folder.path("inner"), perms::owner_all);
  EXPECT_TRUE(isWarned(hidden)) << "its folder cannot be entered";
}

TEST(ExplainedRun, WarnsOfAChoiceThatStandsTwice) {
  const ExplainedRun run =
      explain(ppd("ATMediaTypePSPPDUpdater ATMediaTypePSPPDUpdater"), device(custom("Canvas", "4711")));
  EXPECT_THAT(warningsOf(run), ElementsAre("choice-twice"));
}

TEST(ExplainedRun, WarnsOfADefaultAndAFactoryMediumThatAreGone) {
  const std::string group = "*QZMediaTypeGroup CustomMedia-category/Custom Paper: \"Plain\"\n*End\n";
  EXPECT_THAT(warningsOf(explain(ppd("ATMediaTypePSPPDUpdater", group), device(""))),
              ElementsAre("factory-medium-removed", "default-not-there"));
}

TEST(ExplainedRun, WarnsOfMediaThatCannotBeToldApart) {
  const auto warnings = [](const std::string& one, const std::string& other) {
    return warningsOf(explain(ppd("ATMediaTypePSPPDUpdater"), device(one + "," + other)));
  };
  EXPECT_THAT(warnings(custom("A", "1"), custom("A", "2")), ElementsAre("medium-twice"));
  EXPECT_THAT(warnings(custom("A", "1"), "\"x" + custom("B", "1").substr(1)), ElementsAre("medium-twice"));
  EXPECT_THAT(warnings(custom("A", "1"), custom("B", "2")), IsEmpty());
}

TEST(ExplainedRun, WarnsOfANameThatCUPSDecodesOrRefuses) {
  const auto warnings = [](const char* name) {
    return warningsOf(explain(ppd("ATMediaTypePSPPDUpdater"), device(custom(name, "4711"))));
  };
  EXPECT_THAT(warnings("Canvas <36>"), ElementsAre("name-otherwise"));
  EXPECT_THAT(warnings("a < z"), IsEmpty());
  EXPECT_THAT(warnings("a\\u001bb"), Contains("cups-refuses"));
}

TEST(ExplainedRun, WarnsOfAGlossDefaultThatThePPDHasNoChoiceFor) {
  std::string text = ppd("ATMediaTypePSPPDUpdater", "*QZValueAttributes MediaType.Plain: \"defaultGE='off-ge'\"\n");
  const std::size_t option = text.find("*OpenUI *QZGlossEnhancer");
  text.erase(option, text.find("*CloseGroup") - option);
  const std::string media = R"("a": {"Name": "P", "MediumID": "1001", "CategoryName": "P", "CategoryID": "PHOTO",
      "PropertiesInfo": {"DefaultGlossEnhancer": "OFF"}, "ICCProfiles": []})";
  const ExplainedRun run = explain(text, device(media));
  EXPECT_THAT(warningsOf(run), ElementsAre("no-gloss-choice")) << run.result;
}

TEST(ExplainedRun, WarnsOfLanguagesWithoutQuotes) {
  EXPECT_THAT(warningsOf(explain(ppd("ATMediaTypePSPPDUpdater", "*cupsLanguages: en de\n"), device(""))),
              ElementsAre("languages-not-quoted"));
}

TEST(ExplainedRun, LeavesAPipeToTheTool) {
  const TemporaryFolder folder;
  const std::string path = folder.path("pipe");
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  const std::string text = ppd("ATMediaTypePSPPDUpdater");
  SnapshotDeviceModelLibrary library(snapshot::Snapshot::fromJSON(device("")));
  DeviceModelLibrary::setDefaultLibrary(&library);
  std::thread writer([&] { std::ofstream(path) << text; });
  const ExplainedRun run = ExplainedRun::of({kURI, path, std::nullopt});
  writer.join();
  DeviceModelLibrary::setDefaultLibrary(nullptr);
  EXPECT_THAT(run.result, StartsWith(text.substr(0, 60)));
  EXPECT_EQ(run.report.parse->lines, 14U);
}

TEST(ExplainedRun, AWarningOfTheWholePPDIsOfNoMediumThoughTheRunEndedAtOne) {
  const std::string comment = "*%" + std::string(300, 'x') + "\n";
  const ExplainedRun run =
      explain(ppd("ATMediaTypePSPPDUpdater", comment), device(custom("Canvas", "4711", R"(, "ParentID": 5)")));
  ASSERT_FALSE(run.report.succeeded());
  for (const Warning& warning : run.report.warnings) EXPECT_FALSE(warning.about) << nameOf(warning.code);
}

TEST(ExplainedRun, DoesNotTakeAMediumsOwnIDForItsParents) {
  const std::string media =
      custom(std::string(300, 'n'), "4711", R"(, "PropertiesInfo": {"DefaultGlossEnhancer": "OFF"})");
  EXPECT_THAT(warningsOf(explain(ppd("ATMediaTypePSPPDUpdater"), device(media))), ElementsAre("medium-left-out"));
}

TEST(ExplainedRun, ChecksOnlyProfilesThatAreInTheResult) {
  const std::string media =
      custom("Canvas", "4711", R"({"URL": "/no/such.icc", "ICCName": "A"})") + "," + custom("Satin", "4712");
  const std::string updaters = "ATMediaTypePCL3PPDUpdater ATGlossyProfilePCL3PPDUpdater";
  EXPECT_THAT(warningsOf(explain(ppd(updaters), device(media))), Not(Contains("profile-missing")));
}

// The three writers

namespace {

ExplainedRun exampleRun() {
  return explain(ppd("ATMediaTypePCL3PPDUpdater Other", "*cupsLanguages: \"en de\"\n"),
                 device(custom("<b>Canvas & \\u001b[31mred</b>", "4711", R"({"URL": "/p/a.icc", "ICCName": "A"})")));
}

}  // namespace

TEST(ReportWriters, TextIsAtMost80ColumnsWideAndPlainUnlessColourIsAskedFor) {
  const std::string longName(90, 'n');
  const std::string languages =
      "*cupsLanguages: \"en de fr it es pt nl da sv fi no pl cs hu ru tr ja ko zh_CN zh_TW x\x1b[31m\"\n";
  const ExplainedRun wide =
      explain(ppd("ATMediaTypePCL3PPDUpdater " + longName, languages),
              device(custom(longName, longName, R"({"URL": "/p/)" + longName + R"(.icc", "ICCName": "A"})") +
                     R"(, "f": {"Name": ")" + longName +
                     R"(", "MediumID": "1001", "CategoryName": "P", "CategoryID": "PHOTO"})"));
  const std::string text = ReportWriters::text(exampleRun().report, {}) + ReportWriters::text(wide.report, {});
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = text.find('\n', start);
    const std::string line = text.substr(start, end - start);
    const auto width = std::count_if(line.begin(), line.end(), [](char byte) { return (byte & 0xC0) != 0x80; });
    EXPECT_LE(width, 80) << line;
    start = end + 1;
  }
  EXPECT_THAT(text, HasSubstr("is the choice Custom1"));
  EXPECT_THAT(text, Not(HasSubstr("\x1b")));
  EXPECT_THAT(ReportWriters::text(exampleRun().report, {true, 80, Detail::usual}), HasSubstr("\x1b[1m"));
}

TEST(ReportWriters, TextShowsTheFirstChangesUnlessAllAreAskedFor) {
  std::string media;
  for (int number = 0; number < 50; ++number) media += (number ? "," : "") + custom("M", std::to_string(4000 + number));
  const ExplainedRun run = explain(ppd("ATMediaTypePSPPDUpdater"), device(media));
  EXPECT_THAT(ReportWriters::text(run.report, {}), HasSubstr("more (--full)"));
  EXPECT_THAT(ReportWriters::text(run.report, {false, 80, Detail::full}), Not(HasSubstr("--full")));
}

TEST(ReportWriters, JSONHasTheSchemaVersionAndTheWholeRun) {
  const auto json = snapshot::parseJSON(ReportWriters::json(exampleRun().report));
  EXPECT_EQ(*json.member("schema")->string(), "vorantis-autosetup-explain");
  EXPECT_EQ(std::get<std::int64_t>(json.member("schemaVersion")->value), 3);
  EXPECT_TRUE(std::get<bool>(json.member("succeeded")->value));
  const auto& updaters = *json.member("updaters")->array();
  ASSERT_EQ(updaters.size(), 2U);
  EXPECT_EQ(*updaters[0].member("outcome")->string(), "succeeded");
  EXPECT_EQ(*updaters[0].member("media")->array()->at(0).member("choiceName")->string(), "Custom1");
  EXPECT_EQ(*json.member("device")->member("media")->array()->at(0).member("name")->string(),
            "<b>Canvas & \x1b[31mred</b>");
  const auto& verdict = *json.member("verdict");
  EXPECT_EQ(*verdict.member("colour")->string(), "refused");
  EXPECT_EQ(std::get<std::int64_t>(verdict.member("media")->member("added")->value), 0);
  EXPECT_EQ(std::get<std::int64_t>(verdict.member("warnings")->member("unknown-updater")->value), 1);
}

TEST(ReportWriters, JSONAndHTMLHoldTheFirstChangesUnlessAllAreAskedFor) {
  std::string media;
  for (int number = 0; number < 1100; ++number)
    media += (number ? "," : "") + custom("M", std::to_string(4000 + number));
  const ExplainedRun run = explain(ppd("ATMediaTypePSPPDUpdater"), device(media));
  const auto changes = [&run](bool full) {
    const auto json = snapshot::parseJSON(ReportWriters::json(run.report, full));
    const auto& updater = json.member("updaters")->array()->at(0);
    return std::pair(updater.member("changes")->array()->size(),
                     std::get<std::int64_t>(updater.member("changeCount")->value));
  };
  EXPECT_EQ(changes(false), std::pair(std::size_t{1000}, std::int64_t{1102}));
  EXPECT_EQ(changes(true), std::pair(std::size_t{1102}, std::int64_t{1102}));
  EXPECT_THAT(ReportWriters::html(run.report), HasSubstr("… and 102 more (--full)"));
  EXPECT_THAT(ReportWriters::html(run.report, true), Not(HasSubstr("(--full)")));
}

TEST(ReportWriters, TextBeginsWithTheVerdictAndTheWarnings) {
  const std::string text = ReportWriters::text(exampleRun().report, {});
  EXPECT_THAT(text,
              StartsWith("Result   refused: CUPS does not open the PPD that is written: Illegal\n         translation "
                         "string, line 17 (exit status 0)\nMedia    1 on the device;"));
  EXPECT_LT(text.find("\nWarnings\n"), text.find("\nReading the PPD\n"));
}

TEST(ReportWriters, TextCountsManyWarningsOfOneCode) {
  Report report;
  for (int number = 0; number < 9; ++number) {
    report.warnings.push_back(
        {WarningCode::profileMissing, {{"path", "file " + std::to_string(number)}}, AboutMedium{"A", "1"}});
  }
  const auto text = [&report](Detail detail) { return ReportWriters::text(report, {false, 80, detail}); };
  EXPECT_THAT(
      text(Detail::usual),
      HasSubstr("file 1 (medium \"A\" (1))\n    [profile-missing]\n    … and 7 more [profile-missing] (--warnings)"));
  EXPECT_THAT(text(Detail::warnings), HasSubstr("file 8 (medium"));
  EXPECT_THAT(text(Detail::full), HasSubstr("file 8 (medium"));
  EXPECT_THAT(text(Detail::summary), HasSubstr("\n  9 profile-missing: The profile file does not exist here: file 0 "));
  EXPECT_THAT(text(Detail::summary), Not(HasSubstr("file 1")));
}

TEST(ReportWriters, TextIsAsWideAsTheTerminalWithinLimits) {
  Report report;
  report.warnings.push_back(
      {WarningCode::libraryFailed,
       {{"reason", std::string(50, 'x') + " " + std::string(50, 'y') + " " + std::string(194, 'z')}}});
  const auto longest = [&report](std::size_t width) {
    const std::string text = ReportWriters::text(report, {false, width, Detail::usual});
    std::size_t most = 0;
    for (std::size_t start = 0, end; (end = text.find('\n', start)) != std::string::npos; start = end + 1) {
      most = std::max(most, end - start);
    }
    return most;
  };
  EXPECT_EQ(longest(10), 60U);
  EXPECT_EQ(longest(120), 120U);
  EXPECT_EQ(longest(1000), 198U);
}

TEST(ReportWriters, HTMLEscapesWhatTheDeviceSays) {
  const std::string html = ReportWriters::html(exampleRun().report);
  EXPECT_THAT(html, HasSubstr("&lt;b&gt;Canvas &amp; \\x1b[31mred&lt;/b&gt;"));
  EXPECT_THAT(html, Not(HasSubstr("<b>")));
  EXPECT_THAT(html, Not(HasSubstr("\x1b")));
  EXPECT_THAT(html, Not(HasSubstr("http:")));  // the page needs no other file
  EXPECT_THAT(html, Not(HasSubstr("https:")));
}

namespace {

// A library during whose answer something happens to the PPD.
struct MeddlingLibrary : SnapshotDeviceModelLibrary {
  MeddlingLibrary(const snapshot::Snapshot& snapshot, std::function<void()> meddle)
      : SnapshotDeviceModelLibrary(snapshot), meddle_(std::move(meddle)) {}
  bool isAvailable() override {
    meddle_();
    return true;
  }

 private:
  std::function<void()> meddle_;
};

ExplainedRun explainWhile(const std::string& path, const std::function<void()>& meddle) {
  MeddlingLibrary library(snapshot::Snapshot::fromJSON(device(custom("Canvas", "4711"))), meddle);
  DeviceModelLibrary::setDefaultLibrary(&library);
  ExplainedRun run = ExplainedRun::of({kURI, path, std::nullopt});
  DeviceModelLibrary::setDefaultLibrary(nullptr);
  return run;
}

}  // namespace

TEST(ExplainedRun, FailsWhenThePPDIsWrittenToMeanwhile) {
  const TemporaryFolder folder;
  const std::string text = ppd("ATMediaTypePCL3PPDUpdater");
  const std::string path = folder.file("input.ppd", text);
  const ExplainedRun run = explainWhile(path, [&] { std::ofstream(path, std::ios::app) << "*% more\n"; });
  EXPECT_EQ(run.report.failure, "the PPD cannot be read as a whole: it changed while it was read");
  EXPECT_EQ(run.result, "");
}

TEST(ExplainedRun, UsesTheBytesThatItJudgedWhenThePPDIsReplacedMeanwhile) {
  const TemporaryFolder folder;
  const std::string text = ppd("ATMediaTypePCL3PPDUpdater");
  const std::string path = folder.file("input.ppd", text);
  const ExplainedRun run = explainWhile(path, [&] {
    if (std::ifstream(path).peek() == '*') std::rename(folder.file("new.ppd", "no PPD\n").c_str(), path.c_str());
  });
  EXPECT_EQ(run.report.failure, "");
  EXPECT_EQ(run.report.arguments.PPDPath, path);
  EXPECT_EQ(run.input, text);
  EXPECT_THAT(run.result, HasSubstr("*MediaType Custom1/Canvas"));
}
