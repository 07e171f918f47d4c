// SPDX-License-Identifier: MIT
#include "setup/StrictSetup.h"

#include <cups/file.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "base/ATException.h"
#include "base/Text.h"
#include "library/Snapshot.h"
#include "setup/SetupDigest.h"
#include "setup/SetupStatement.h"
#include "tests/support/SnapshotDeviceModelLibrary.h"
#include "tests/support/TemporaryFolder.h"

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

constexpr const char* kURI = "socket://192.0.2.10:9100";
constexpr const char* kMediaUpdater = "ATMediaTypePCL3PPDUpdater";

std::string ppd(const std::string& updaters, const std::string& statements = "") {
  return "*PPD-Adobe: \"4.3\"\n*ModelName: \"Z9\"\n*QZPPDUpdaters: " + updaters + "\n" + statements +
         "*OpenGroup: QZImagingOptions/Imaging Options\n*OpenUI *MediaType/Media Type: PickOne\n"
         "*DefaultMediaType: Plain\n*MediaType Plain/Plain: \"(1001)\"\n*CloseUI: *MediaType\n"
         "*CloseGroup: QZImagingOptions\n";
}

std::string quoted(const std::string& text) {
  return "\"" + text + "\"";
}

std::string snapshotWith(const std::string& members) {
  return R"({"format": "vorantis-device-snapshot", "formatVersion": 1, "devices": [{)" + members + "}]}";
}

std::string canvas() {
  return snapshotWith(R"("uri": "socket://192.0.2.10:9100", "modelName": "\"Z9\"", "dataStore": {"VMCustomMediaStorage":
      {"MediumListVersion": "7", "MediaInfo": {"4711": {"Name": "Canvas", "MediumID": "4711", "CategoryName": "C",
       "CategoryID": "CUSTOM", "ICCProfiles": [], "ParentID": "1001"}}}})");
}

struct NoLibrary : SnapshotDeviceModelLibrary {
  NoLibrary() : SnapshotDeviceModelLibrary({}) {}
  bool isAvailable() override { return false; }
};

// Takes the snapshot that it is named when it is asked, and does something then.
struct TakingLibrary : SnapshotDeviceModelLibrary {
  using SnapshotDeviceModelLibrary::SnapshotDeviceModelLibrary;
  bool isAvailable() override {
    taken = contentsOfFile(std::getenv("QZVORANTISMODEL_SNAPSHOT"));
    if (meddle) meddle();
    return true;
  }
  std::string taken;
  std::function<void()> meddle;
};

std::string manyWithProfiles(int count) {
  std::string media;
  for (int number = 0; number < count; ++number) {
    const std::string id = std::to_string(5000 + number);
    media += (number == 0 ? "\"" : ", \"") + id + R"(": {"Name": "Medium )" + id + R"(", "MediumID": ")" + id +
             R"(", "CategoryName": "C", "CategoryID": "CUSTOM", "ICCProfiles": [{"URL": "file:///none/)" + id +
             R"(.icc", "ICCName": "P"}]})";
  }
  return snapshotWith(R"("dataStore": {"VMCustomMediaStorage": {"MediumListVersion": "7", "MediaInfo": {)" + media +
                      "}}}");
}

struct BrokenLibrary : SnapshotDeviceModelLibrary {
  BrokenLibrary() : SnapshotDeviceModelLibrary({}) {}
  std::unique_ptr<ServiceInfo> serviceInfoWithSpec(const ServiceInfoSpec& /*spec*/) override {
    throw ATException::libraryFailure("it is of another interface version");
  }
};

class StrictSetupTest : public testing::Test {
 protected:
  ~StrictSetupTest() override {
    DeviceModelLibrary::setDefaultLibrary(nullptr);
    unsetenv("QZVORANTISMODEL_SNAPSHOT");
  }

  StrictSetup::Result runFile(const std::string& path, DeviceModelLibrary& library) const {
    DeviceModelLibrary::setDefaultLibrary(&library);
    const std::string snapshot = folder_.path("p.json");
    return StrictSetup::run({"vorantis-autosetup:p/z9.ppd",
                             snapshot,
                             path,
                             kURI,
                             {},
                             "",
                             std::make_shared<InputFile>(snapshot),
                             std::make_shared<InputFile>(path)});
  }
  StrictSetup::Result run(const std::string& text, DeviceModelLibrary& library) const {
    return runFile(folder_.file("z9.ppd", text), library);
  }
  StrictSetup::Result run(const std::string& text, const std::string& snapshotText = canvas()) const {
    folder_.file("p.json", snapshotText);
    SnapshotDeviceModelLibrary library(snapshot::Snapshot::fromJSON(snapshotText));
    return run(text, library);
  }

  // Why it fails; then there is no PPD.
  template <class... Arguments>
  std::string failureOf(Arguments&&... arguments) const {
    const StrictSetup::Result result = run(arguments...);
    EXPECT_EQ(result.ppd, "");
    EXPECT_NE(result.failure, "");
    return result.failure;
  }

  TemporaryFolder folder_;
};

}  // namespace

TEST_F(StrictSetupTest, GivesTheBasePPDWithTheMedia) {
  const auto result = run(ppd(quoted(kMediaUpdater)));
  EXPECT_EQ(result.failure, "");
  EXPECT_THAT(result.warnings, IsEmpty());
  EXPECT_THAT(result.ppd, AllOf(HasSubstr("\n*MediaType Custom1/Canvas: "), HasSubstr("\n*MediaType Plain/Plain: ")));
}

TEST_F(StrictSetupTest, LeavesTheBasePPDAsItIs) {
  const std::string base = ppd(quoted(kMediaUpdater));
  const std::string once = run(base).ppd;
  EXPECT_EQ(contentsOfFile(folder_.path("z9.ppd")), base);
  EXPECT_EQ(run(base).ppd, once);
}

TEST_F(StrictSetupTest, NamesItsSnapshotToTheLibrary) {
  setenv("QZVORANTISMODEL_SNAPSHOT", "another", 1);
  folder_.file("p.json", canvas());
  TakingLibrary taking(snapshot::Snapshot::fromJSON(canvas()));
  runFile(folder_.file("z9.ppd", ppd(quoted(kMediaUpdater))), taking);
  EXPECT_EQ(taking.taken, canvas());
}

TEST_F(StrictSetupTest, MessagesNameTheSnapshotAsPeopleDo) {
  EXPECT_THAT(failureOf(ppd(quoted(kMediaUpdater)), snapshotWith(R"("uri": "u:1", "dataStore": {})")),
              AllOf(HasSubstr(folder_.path("p.json")), Not(HasSubstr("/proc/"))));
}

TEST_F(StrictSetupTest, SaysInThePPDWhatItWasMadeFrom) {
  const std::string base = ppd(quoted(kMediaUpdater));
  const auto result = run(base);
  const auto statement = SetupStatement::of(result.ppd);
  ASSERT_TRUE(statement);
  EXPECT_EQ(statement->source, "p/z9.ppd");
  EXPECT_EQ(statement->sources, SetupDigest::ofSources(base, canvas()));
  EXPECT_EQ(statement->result, SetupDigest::ofResult(result.ppd));
  EXPECT_TRUE(result.ppd.starts_with("*PPD-Adobe: \"4.3\"\n*VorantisSetup: \"p/z9.ppd\n"));
}

TEST_F(StrictSetupTest, FailsWhenAFileIsWrittenToMeanwhile) {
  folder_.file("p.json", canvas());
  for (const char* name : {"z9.ppd", "p.json"}) {
    TakingLibrary library(snapshot::Snapshot::fromJSON(canvas()));
    library.meddle = [this, name] { std::ofstream(folder_.path(name), std::ios::app) << "\n"; };
    const auto result = runFile(folder_.file("z9.ppd", ppd(quoted(kMediaUpdater))), library);
    EXPECT_EQ(result.failure, folder_.path(name) + " cannot be read as a whole: it changed while it was read");
    EXPECT_EQ(result.ppd, "");
  }
}

TEST_F(StrictSetupTest, ManyWarningsOfACodeAreALine) {
  const auto result = run(ppd(quoted(kMediaUpdater)), manyWithProfiles(300));
  EXPECT_EQ(result.failure, "");
  EXPECT_THAT(result.warnings,
              testing::UnorderedElementsAre(AllOf(HasSubstr("(and 299 more)"), EndsWith(" [profile-missing]")),
                                            AllOf(HasSubstr(" more)"), EndsWith(" [profile-collision]"))));
}

TEST_F(StrictSetupTest, ADeviceWithoutCustomMediaIsSetUp) {
  const auto result =
      run(ppd(quoted(kMediaUpdater)), snapshotWith(R"("dataStore": {"VMCustomMediaStorage": {"MediaInfo": {}}})"));
  EXPECT_EQ(result.failure, "");
  EXPECT_THAT(result.ppd, AllOf(HasSubstr("*MediaType Plain/"), Not(HasSubstr("*MediaType Custom"))));
}

TEST_F(StrictSetupTest, FailsWithoutALibrary) {
  NoLibrary library;
  EXPECT_THAT(failureOf(ppd(quoted(kMediaUpdater)), library), HasSubstr("library is not there"));
  EXPECT_THAT(failureOf(ppd("\"ATPDLCommandTypePPDUpdater\""), library), HasSubstr("library is not there"));
}

TEST_F(StrictSetupTest, FailsWithALibraryThatCannotBeUsed) {
  BrokenLibrary library;
  EXPECT_THAT(failureOf(ppd(quoted(kMediaUpdater)), library),
              AllOf(HasSubstr("cannot be used"), HasSubstr("it is of another interface version")));
}

TEST_F(StrictSetupTest, FailsWithoutAMatchingDevice) {
  EXPECT_THAT(failureOf(ppd(quoted(kMediaUpdater)), snapshotWith(R"("uri": "u:1", "dataStore": {})")),
              AllOf(HasSubstr("knows no device"), HasSubstr(kURI), HasSubstr("u:1")));
  EXPECT_THAT(failureOf(ppd(quoted(kMediaUpdater)), snapshotWith(R"("modelName": "Z9", "dataStore": {})")),
              HasSubstr("lacks the double quotes"));
}

TEST_F(StrictSetupTest, FailsWithoutADataStoreOrWithoutMediaInIt) {
  EXPECT_THAT(failureOf(ppd(quoted(kMediaUpdater)), snapshotWith(R"("modelName": "\"Z9\"")")),
              HasSubstr("without a data store"));
  EXPECT_THAT(failureOf(ppd(quoted(kMediaUpdater)), snapshotWith(R"("dataStore": {"Other": {}})")),
              HasSubstr("has no item VMCustomMediaStorage"));
}

TEST_F(StrictSetupTest, FailsWhenThePPDNamesNoUpdaters) {
  EXPECT_THAT(failureOf("*PPD-Adobe: \"4.3\"\n*ModelName: \"Z9\"\n"), HasSubstr("names no updaters"));
  EXPECT_THAT(failureOf(ppd("\"\"")), HasSubstr("names no updaters"));
  EXPECT_THAT(failureOf(ppd("\" \"")), HasSubstr("names no updaters"));
  EXPECT_THAT(failureOf(ppd(kMediaUpdater)), HasSubstr("do not stand between double quotes"));
}

TEST_F(StrictSetupTest, FailsWhenNoneOfTheUpdatersIsKnown) {
  EXPECT_EQ(failureOf(ppd("\"Other Another\"")), "none of the PPD's updaters is known");
  EXPECT_THAT(run(ppd("\"Other Another\"")).warnings,
              AllOf(Contains(HasSubstr("\"Other\"")), Contains(HasSubstr("\"Another\""))));
}

TEST_F(StrictSetupTest, AnUnknownUpdaterBesideAKnownOneIsAWarning) {
  const auto result = run(ppd("\"Other " + std::string(kMediaUpdater) + "\""));
  EXPECT_EQ(result.failure, "");
  EXPECT_THAT(result.ppd, HasSubstr("*MediaType Custom1/Canvas: "));
  EXPECT_THAT(result.warnings, testing::ElementsAre(AllOf(HasSubstr("\"Other\""), EndsWith(" [unknown-updater]"))));
}

TEST_F(StrictSetupTest, TheCommandsUpdaterAloneIsEnough) {
  const auto result = run(ppd("\"ATPDLCommandTypePPDUpdater\""),
                          snapshotWith(R"("deviceFamilyName": "CID:QZVR2PCLS;", "dataStore": {})"));
  EXPECT_EQ(result.failure, "");
  EXPECT_THAT(result.ppd, HasSubstr("*QZVorantisFamily: \"VR-K-410\""));
}

TEST_F(StrictSetupTest, FailsWhenThePPDCannotBeRead) {
  EXPECT_THAT(failureOf("no PPD\n"), HasSubstr("the PPD cannot be read"));
  EXPECT_THAT(failureOf(ppd(quoted(kMediaUpdater)) + "*End\n*End\n"), HasSubstr("the PPD cannot be read"));
  SnapshotDeviceModelLibrary library(snapshot::Snapshot::fromJSON(canvas()));
  EXPECT_THAT(runFile(folder_.path("missing.ppd"), library).failure, HasSubstr("the PPD cannot be read"));
}

TEST_F(StrictSetupTest, FailsWhenReadingStopsAtBytesThatAreNoText) {
  EXPECT_THAT(failureOf(ppd(quoted(kMediaUpdater)) + "*NickName: \"\xE9\"\n"),
              AllOf(HasSubstr("not UTF-8"), HasSubstr("line 10")));
}

TEST_F(StrictSetupTest, FailsWhenNothingIsLeft) {
  SnapshotDeviceModelLibrary library(snapshot::Snapshot::fromJSON(canvas()));
  EXPECT_NE(failureOf(""), "");
  const auto result = runFile(folder_.path(), library);
  EXPECT_NE(result.failure, "");
  EXPECT_EQ(result.ppd, "");
}

TEST_F(StrictSetupTest, FailsWithADamagedGzip) {
  const std::string path = folder_.path("z9.ppd.gz");
  std::string text = ppd(quoted(kMediaUpdater));
  for (int number = 0; number < 5000; ++number) text += "*QZFiller: \"" + std::to_string(number * 7919) + "\"\n";
  cups_file_t* const file = cupsFileOpen(path.c_str(), "w9");
  ASSERT_EQ(cupsFileWrite(file, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  ASSERT_EQ(cupsFileClose(file), 0);
  SnapshotDeviceModelLibrary library(snapshot::Snapshot::fromJSON(canvas()));
  const auto whole = runFile(path, library);
  EXPECT_EQ(whole.failure, "");
  EXPECT_TRUE(Text::contains(whole.ppd, "*MediaType Custom1/Canvas: "));
  EXPECT_TRUE(Text::contains(whole.ppd, "\"39587081\""));  // in the last line
  std::filesystem::resize_file(path, std::filesystem::file_size(path) / 2);
  const auto cut = runFile(path, library);
  EXPECT_THAT(cut.failure, HasSubstr("damaged, cut off"));
  EXPECT_TRUE(cut.ppd.empty());
}

TEST_F(StrictSetupTest, FailsWhenCUPSWouldNotLoadTheResult) {
  EXPECT_THAT(failureOf(ppd(quoted(kMediaUpdater), "*" + std::string(60, 'k') + ": \"\"\n")),
              AllOf(HasSubstr("CUPS would not load the result: "), EndsWith(" in line 4")));
  EXPECT_THAT(failureOf("*ModelName: \"Z9\"\n*QZPPDUpdaters: \"ATMediaTypePCL3PPDUpdater\"\n"),
              HasSubstr("CUPS would not load the result: "));
}

TEST_F(StrictSetupTest, WhatMadeItFailIsNoWarningToo) {
  const auto result = run(ppd("\"Other\" "), snapshotWith(R"("uri": "u:1")"));
  EXPECT_NE(result.failure, "");
  for (const std::string& warning : result.warnings) EXPECT_THAT(warning, Not(HasSubstr(result.failure)));
  const auto noDevice = run(ppd("\"Other " + std::string(kMediaUpdater) + "\""), snapshotWith(R"("uri": "u:1")"));
  EXPECT_THAT(noDevice.failure, HasSubstr("knows no device"));
  EXPECT_THAT(noDevice.warnings, testing::ElementsAre(EndsWith(" [unknown-updater]")));
}

TEST_F(StrictSetupTest, WarningsHaveTheirCodes) {
  const auto result = run(ppd(quoted(kMediaUpdater), "*QZMediaListVersion: \"3\"\n*QZPPDUpdaters: \"\"\n"));
  EXPECT_EQ(result.failure, "");
  EXPECT_THAT(result.warnings, AllOf(Contains(EndsWith(" [earlier-setup]")), Contains(EndsWith(" [second-updaters]")),
                                     Each(testing::ContainsRegex("[^ ] \\[[a-z-]+\\]$"))));
}

TEST_F(StrictSetupTest, OneRunLeavesNothingForTheNext) {
  const std::string good = ppd(quoted(kMediaUpdater));
  EXPECT_NE(run(ppd("\"\"")).failure, "");
  EXPECT_EQ(run(good).failure, "");
  NoLibrary library;
  EXPECT_NE(run(good, library).failure, "");
  EXPECT_EQ(run(good).failure, "");
}
