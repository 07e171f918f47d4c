// SPDX-License-Identifier: MIT
#include "setup/SetupFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/TemporaryFolder.h"

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

namespace {

namespace fs = std::filesystem;

constexpr const char* kScheme = "vorantis-autosetup:";
constexpr const char* kStore = R"("dataStore": {"VMCustomMediaStorage": {}})";

// Members of a device with a data store.
std::string device(const std::string& model, const std::string& more = "") {
  return (model.empty() ? "" : R"("modelName": "\")" + model + R"(\"", )") + kStore + more;
}

std::string ppd(const std::string& model, const std::string& more = "") {
  return "*PPD-Adobe: \"4.3\"\n*Manufacturer: \"Vorantis\"\n*ModelName: \"" + model +
         "\"\n*QZPPDUpdaters: \"ATMediaTypePSPPDUpdater\"\n" + more;
}

// GoogleTest keeps the bare name Setup for itself, so it is ::Setup in tests.
class SetupFolderTest : public testing::Test {
 protected:
  SetupFolderTest() { fs::create_directory(folder_.path("ppd")); }

  void addPPD(const std::string& name, const std::string& text) const { folder_.file("ppd/" + name, text); }
  void addSnapshot(const std::string& name, const std::vector<std::string>& devices,
                   const std::string& more = "") const {
    std::string text;
    for (const std::string& members : devices) text += (text.empty() ? "{" : ", {") + members + "}";
    folder_.file(name + ".json", R"({"format": "vorantis-device-snapshot", "formatVersion": 1, )" + more +
                                     "\"devices\": [" + text + "]}");
  }

  SetupFolder setups() const { return SetupFolder(folder_.path()); }
  // The names of the list, without the scheme.
  std::vector<std::string> names() const {
    std::vector<std::string> names;
    for (const ::Setup& setup : setups().all()) {
      EXPECT_THAT(setup.name, StartsWith(kScheme));
      names.push_back(setup.name.substr(std::string_view(kScheme).size()));
    }
    return names;
  }
  std::vector<std::string> lines() const {
    std::vector<std::string> lines;
    for (const ::Setup& setup : setups().all()) lines.push_back(setup.line());
    return lines;
  }
  std::vector<std::string> warnings() const {
    SetupFolder folder = setups();
    folder.all();
    return folder.warnings();
  }
  // Why there is no setup of this name, given without the scheme; empty when there is one.
  std::string refusalOf(const std::string& name) const { return refusalOfWhole(kScheme + name); }
  std::string refusalOfWhole(const std::string& name) const {
    try {
      EXPECT_EQ(setups().named(name).name, name);
      return "";
    } catch (const std::runtime_error& error) {
      EXPECT_STRNE(error.what(), "");
      return error.what();
    }
  }
  // Whether each name of the list, and none of the others that the files could make, is accepted, and is the same.
  void expectListAndNamesToAgree() const {
    const std::vector<::Setup> listed = setups().all();
    std::vector<std::string> listedNames;
    for (const ::Setup& setup : listed) {
      listedNames.push_back(setup.name);
      ASSERT_EQ(refusalOfWhole(setup.name), "");
      const ::Setup named = setups().named(setup.name);
      EXPECT_EQ(named.snapshotPath, setup.snapshotPath);
      EXPECT_EQ(named.PPDPath, setup.PPDPath);
      EXPECT_EQ(named.deviceURI, setup.deviceURI);
      EXPECT_EQ(named.ppd.modelName, setup.ppd.modelName);
    }
    for (const std::string& name : possibleNames()) {
      const bool isListed = std::find(listedNames.begin(), listedNames.end(), name) != listedNames.end();
      EXPECT_EQ(refusalOfWhole(name).empty(), isListed) << name;
    }
  }

  TemporaryFolder folder_;

 private:
  std::vector<std::string> possibleNames() const {
    std::vector<std::string> possible;
    for (const auto& snapshot : fs::directory_iterator(folder_.path())) {
      for (const auto& file : fs::directory_iterator(folder_.path("ppd"))) {
        for (const char* number : {"", "+0", "+1", "+2", "+3", "+4", "+02", "+", "+x", "+2+2", "+2+3", "+-2"}) {
          possible.push_back(kScheme + snapshot.path().stem().string() + number + "/" +
                             file.path().filename().string());
        }
      }
    }
    return possible;
  }
};

}  // namespace

TEST_F(SetupFolderTest, ListsADeviceWithABasePPDOfItsModel) {
  addSnapshot("plotter1", {device("Vorantis Z9 44in", R"(, "uri": "socket://192.0.2.10:9100")")});
  addPPD("z9.ppd", ppd("Vorantis Z9 44in", "*1284DeviceID: \"MFG:Vorantis;MDL:Z9;\"\n"));
  EXPECT_THAT(lines(), ElementsAre("\"vorantis-autosetup:plotter1/z9.ppd\" en \"Vorantis\" \"Vorantis Z9 44in, media "
                                   "of plotter1\" \"MFG:Vorantis;MDL:Z9;\"\n"));
  EXPECT_THAT(warnings(), IsEmpty());
}

TEST_F(SetupFolderTest, FindsASetupByItsName) {
  addSnapshot("plotter1", {device("Z9", R"(, "uri": "socket://192.0.2.10:9100")")});
  addPPD("z9.ppd", ppd("Z9"));
  const ::Setup setup = setups().named("vorantis-autosetup:plotter1/z9.ppd");
  EXPECT_EQ(setup.name, "vorantis-autosetup:plotter1/z9.ppd");
  EXPECT_EQ(fs::path(setup.snapshotPath).lexically_normal(), fs::path(folder_.path("plotter1.json")));
  EXPECT_EQ(fs::path(setup.PPDPath).lexically_normal(), fs::path(folder_.path("ppd/z9.ppd")));
  EXPECT_EQ(setup.deviceURI, "socket://192.0.2.10:9100");
  EXPECT_EQ(setup.ppd.modelName, "\"Z9\"");
}

TEST_F(SetupFolderTest, TheDeviceIDIsMadeOfMakeAndModelWhenThePPDHasNone) {
  addSnapshot("p", {device("")});
  addPPD("a.ppd", ppd("Vorantis Z9"));
  addPPD("b.ppd", "*ModelName: \"Velmor Z6\"\n*QZPPDUpdaters: \"A\"\n*1284DeviceID: \"\"\n");
  EXPECT_THAT(lines(), ElementsAre(EndsWith(" \"MFG:Vorantis;MDL:Vorantis Z9;\"\n"),
                                   AllOf(EndsWith(" \"MFG:Velmor;MDL:Velmor Z6;\"\n"), HasSubstr(" en \"Velmor\" "))));
}

TEST_F(SetupFolderTest, AnEmptyFolderOrNoneHasNothing) {
  EXPECT_THAT(names(), IsEmpty());
  for (const std::string& path : {folder_.path(), folder_.path("missing"), folder_.path("ppd"), std::string()}) {
    SetupFolder folder(path);
    EXPECT_THAT(folder.all(), IsEmpty());
    EXPECT_THAT(folder.warnings(), IsEmpty());
    EXPECT_THROW(folder.named("vorantis-autosetup:plotter1/z9.ppd"), std::runtime_error);
  }
}

TEST_F(SetupFolderTest, AFileInTheFoldersPlaceHasNothingAndIsTold) {
  SetupFolder folder(folder_.file("file", "text"));
  EXPECT_THAT(folder.all(), IsEmpty());
  EXPECT_THAT(folder.warnings(), Contains(AllOf(HasSubstr("the folder "), HasSubstr("/file cannot be read: "))));
}

TEST_F(SetupFolderTest, AFolderThatCannotBeReadIsTold) {
  addSnapshot("p", {device("")});
  fs::remove(folder_.path("ppd"));
  EXPECT_THAT(warnings(), ElementsAre(HasSubstr("p.json is not listed")));
  fs::create_directory_symlink("ppd", folder_.path("ppd"));
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_THAT(warnings(),
              ElementsAre(AllOf(HasSubstr("the folder "), HasSubstr("/ppd cannot be read: ")), HasSubstr("p.json")));
}

// Opening a pipe would wait for its other end, and the scheduler with it.
TEST_F(SetupFolderTest, PipesAreNotLookedAt) {
  addSnapshot("p", {device("")});
  addPPD("z.ppd", ppd("Z9"));
  ASSERT_EQ(mkfifo(folder_.path("q.json").c_str(), 0600), 0);
  ASSERT_EQ(mkfifo(folder_.path("ppd/y.ppd").c_str(), 0600), 0);
  EXPECT_THAT(names(), ElementsAre("p/z.ppd"));
  EXPECT_THAT(refusalOf("q/z.ppd"), HasSubstr("no snapshot q.json"));
  EXPECT_THAT(refusalOf("p/y.ppd"), HasSubstr("no base PPD y.ppd"));
}

TEST_F(SetupFolderTest, OnlySnapshotsOrOnlyPPDsAreNothing) {
  addSnapshot("p", {device("")});
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_THAT(refusalOf("p/z9.ppd"), HasSubstr("no base PPD z9.ppd"));
  fs::remove(folder_.path("p.json"));
  addPPD("z9.ppd", ppd("Z9"));
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_THAT(refusalOf("p/z9.ppd"), HasSubstr("no snapshot p.json"));
}

TEST_F(SetupFolderTest, IsSortedByName) {
  for (const char* name : {"b", "a+b", "a", "B", "a-b"}) addSnapshot(name, {device("")});
  for (const char* name : {"z.ppd", "a.ppd.gz", "a.ppd"}) addPPD(name, ppd("Z9"));
  const auto listed = names();
  EXPECT_THAT(listed, SizeIs(15));
  EXPECT_TRUE(std::is_sorted(listed.begin(), listed.end()));
  EXPECT_EQ(listed.front(), "B/a.ppd");
}

TEST_F(SetupFolderTest, OtherFilesAreNotLookedAt) {
  addSnapshot("p", {device("")});
  addPPD("z9.ppd", ppd("Z9"));
  for (const char* name : {"q.json.bak", "q.JSON", ".hidden.json", ".json", "json", "q.json~", "ppd.ppd"}) {
    folder_.file(name, contentsOfFile(folder_.path("p.json")));
  }
  for (const char* name : {"z.PPD", "z.ppd~", ".hidden.ppd", ".ppd", ".ppd.gz", "ppd", "z.ppd.bz2", "z.gz", "z.json"}) {
    addPPD(name, ppd("Z9"));
  }
  EXPECT_THAT(names(), ElementsAre("p/z9.ppd"));
  EXPECT_THAT(warnings(), IsEmpty());
  expectListAndNamesToAgree();
}

TEST_F(SetupFolderTest, OnlyDevicesWithADataStoreAreListedAndCounted) {
  addPPD("z.ppd", ppd("Z9"));
  addSnapshot("p", {R"("modelName": "A")", R"("uri": "u:1")", device("Z6"), R"("modelName": "B")",
                    device("Z9", R"(, "uri": "u:2")"), device("Z9", R"(, "uri": "u:3")")});
  EXPECT_THAT(names(), ElementsAre("p+2/z.ppd", "p+3/z.ppd"));
  EXPECT_EQ(setups().named("vorantis-autosetup:p+3/z.ppd").deviceURI, "u:3");
  EXPECT_THAT(refusalOf("p+4/z.ppd"), HasSubstr("no device p+4 with a data store"));
  expectListAndNamesToAgree();
}

TEST_F(SetupFolderTest, ASnapshotWithoutDevicesHasNothing) {
  addPPD("z.ppd", ppd("Z9"));
  addSnapshot("p", {});
  addSnapshot("q", {R"("modelName": "\"Z9\"")"});
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_THAT(warnings(), ElementsAre(HasSubstr("p.json is not listed"), HasSubstr("q.json is not listed")));
  EXPECT_THAT(refusalOf("p/z.ppd"), HasSubstr("no device p with a data store"));
  EXPECT_THAT(refusalOf("q/z.ppd"), HasSubstr("no device q with a data store"));
}

TEST_F(SetupFolderTest, TheModelIsComparedWithItsQuotes) {
  addPPD("quoted.ppd", ppd("Z9"));
  addPPD("bare.ppd", "*ModelName: Z9\n*QZPPDUpdaters: \"A\"\n");
  addSnapshot("a", {device("Z9")});
  addSnapshot("b", {R"("modelName": "Z9", )" + std::string(kStore)});
  addSnapshot("c", {device("Z9 "), device("z9"), device("")});
  EXPECT_THAT(names(), ElementsAre("a/quoted.ppd", "b/bare.ppd", "c+3/bare.ppd", "c+3/quoted.ppd"));
  EXPECT_THAT(refusalOf("a/bare.ppd"), AllOf(HasSubstr("a"), HasSubstr("Z9"), HasSubstr("bare.ppd")));
  expectListAndNamesToAgree();
}

TEST_F(SetupFolderTest, ADeviceBehindOneThatAnswersForItIsNotListed) {
  addPPD("z.ppd", ppd("Z9"));
  addSnapshot("a", {device("", R"(, "uri": "u:1")"), device("Z9", R"(, "uri": "u:1")")});
  addSnapshot("b", {R"("modelName": "\"Z9\"")", device("Z9", R"(, "uri": "u:1")")});
  addSnapshot("c", {device("Z6"), device("Z9"), device("Z9")});
  EXPECT_THAT(names(), ElementsAre("a/z.ppd", "c+2/z.ppd"));
  expectListAndNamesToAgree();
}

// Where a library takes no model name, none is asked for.
TEST_F(SetupFolderTest, WithoutASpecOnlyTheURITellsDevicesApart) {
  addPPD("z9.ppd", ppd("Z9"));
  addPPD("z6.ppd", ppd("Z6"));
  const std::string withoutSpec = "\"offersServiceInfoWithSpec\": false, ";
  addSnapshot("a", {device("Z9")}, withoutSpec);
  addSnapshot("b", {device("", R"(, "uri": "u:1")")}, withoutSpec);
  EXPECT_THAT(names(), ElementsAre("b/z6.ppd", "b/z9.ppd"));
  expectListAndNamesToAgree();
}

TEST_F(SetupFolderTest, ADeviceWithoutAURIIsAskedWithTheName) {
  addPPD("z.ppd", ppd("Z9"));
  addSnapshot("a", {device("Z9")});
  EXPECT_EQ(setups().named("vorantis-autosetup:a/z.ppd").deviceURI, "vorantis-autosetup:a/z.ppd");
}

TEST_F(SetupFolderTest, ADeviceWithAnEmptyURICannotBeAsked) {
  addPPD("z.ppd", ppd("Z9"));
  addSnapshot("a", {device("Z9", R"(, "uri": "")")});
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_NE(refusalOf("a/z.ppd"), "");
}

TEST_F(SetupFolderTest, ASnapshotWithTheNameOfANumberedDeviceHidesIt) {
  const std::vector<std::string> three = {device("", R"(, "uri": "u:1")"), device("", R"(, "uri": "u:2")"),
                                          device("", R"(, "uri": "u:3")")};
  addPPD("z.ppd", ppd("Z9"));
  addSnapshot("a", three);
  addSnapshot("a+2", three);
  addSnapshot("a+2+3", three);
  addSnapshot("+2", three);
  addSnapshot("b+2", three);  // there is no b
  EXPECT_THAT(names(), ElementsAre("+2+2/z.ppd", "+2+3/z.ppd", "+2/z.ppd", "a+2+2/z.ppd", "a+2+3+2/z.ppd",
                                   "a+2+3+3/z.ppd", "a+2+3/z.ppd", "a+2/z.ppd", "a+3/z.ppd", "a/z.ppd", "b+2+2/z.ppd",
                                   "b+2+3/z.ppd", "b+2/z.ppd"));
  EXPECT_THAT(setups().named("vorantis-autosetup:a+2/z.ppd").snapshotPath, EndsWith("/a+2.json"));
  EXPECT_THAT(setups().named("vorantis-autosetup:a+3/z.ppd").snapshotPath, EndsWith("/a.json"));
  EXPECT_THAT(setups().named("vorantis-autosetup:a+2+3/z.ppd").snapshotPath, EndsWith("/a+2+3.json"));
  EXPECT_EQ(setups().named("vorantis-autosetup:a+2+2/z.ppd").deviceURI, "u:2");
  expectListAndNamesToAgree();
}

TEST_F(SetupFolderTest, AnUnusableSnapshotHidesANumberedDeviceToo) {
  addPPD("z.ppd", ppd("Z9"));
  addSnapshot("a", {device("", R"(, "uri": "u:1")"), device("", R"(, "uri": "u:2")")});
  folder_.file("a+2.json", "no JSON");
  EXPECT_THAT(names(), ElementsAre("a/z.ppd"));
  expectListAndNamesToAgree();
}

TEST_F(SetupFolderTest, ANumberIsWrittenInOneWayOnly) {
  addPPD("z.ppd", ppd("Z9"));
  std::vector<std::string> devices;
  for (int number = 1; number <= 11; ++number)
    devices.push_back(device("", R"(, "uri": "u:)" + std::to_string(number) + "\""));
  addSnapshot("a", devices);
  EXPECT_EQ(refusalOf("a+11/z.ppd"), "");
  for (const char* name : {"a+1", "a+0", "a+02", "a+12", "a+", "a++2", "a+2 ", "a+ 2", "a+2.0", "a+-2", "a+2+", "+2",
                           "a+99999999999999999999999"}) {
    EXPECT_NE(refusalOf(std::string(name) + "/z.ppd"), "") << name;
  }
}

TEST_F(SetupFolderTest, OnlyNamesOfTheListAreAccepted) {
  addPPD("z.ppd", ppd("Z9"));
  addPPD("ppd.ppd", ppd("Z9"));
  addSnapshot("a", {device("")});
  fs::create_directory(folder_.path("sub"));
  folder_.file("sub/b.json", contentsOfFile(folder_.path("a.json")));
  for (const char* name : {"",
                           "a/z.ppd",
                           "vorantis-autosetup:",
                           "vorantis-autosetup:/",
                           "vorantis-autosetup:a",
                           "vorantis-autosetup:a/",
                           "vorantis-autosetup:/z.ppd",
                           "vorantis-autosetupa/z.ppd",
                           "Vorantis-autosetup:a/z.ppd",
                           " vorantis-autosetup:a/z.ppd",
                           "vorantis-autosetup: a/z.ppd",
                           "vorantis-autosetup:a/z.ppd ",
                           "vorantis-autosetup:a//z.ppd",
                           "vorantis-autosetup:./a/z.ppd",
                           "vorantis-autosetup:a/../a/z.ppd",
                           "vorantis-autosetup:sub/b/z.ppd",
                           "vorantis-autosetup:a/ppd/z.ppd",
                           "vorantis-autosetup:a.json/z.ppd",
                           "vorantis-autosetup:a/z",
                           "vorantis-autosetup:a/Z.ppd",
                           "vorantis-autosetup:../a/z.ppd",
                           "vorantis-autosetup:a/../../etc/passwd",
                           "vorantis-autosetup:a/.",
                           "x:a/z.ppd",
                           "/",
                           ":/"}) {
    EXPECT_NE(refusalOfWhole(name), "") << name;
  }
  EXPECT_NE(refusalOf(std::string("a\0/z.ppd", 8)), "");
  EXPECT_NE(refusalOf(std::string("a/z.ppd\0", 8)), "");
  EXPECT_EQ(refusalOf("a/z.ppd"), "");
}

TEST_F(SetupFolderTest, ABasePPDMustNameUpdatersAndAModel) {
  addSnapshot("p", {device("")});
  addPPD("empty.ppd", "");
  addPPD("no-updaters.ppd", "*ModelName: \"Z9\"\n");
  addPPD("empty-updaters.ppd", "*ModelName: \"Z9\"\n*QZPPDUpdaters: \"\"\n");
  addPPD("no-model.ppd", "*Manufacturer: \"V\"\n*QZPPDUpdaters: \"A\"\n");
  addPPD("empty-model.ppd", "*Manufacturer: \"V\"\n*ModelName: \"\"\n*QZPPDUpdaters: \"A\"\n");
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_THAT(refusalOf("p/empty.ppd"), HasSubstr("empty.ppd cannot be used: it names no updaters"));
  EXPECT_THAT(refusalOf("p/no-updaters.ppd"), HasSubstr("names no updaters"));
  EXPECT_THAT(refusalOf("p/empty-updaters.ppd"), HasSubstr("names no updaters"));
  EXPECT_THAT(warnings(), SizeIs(6)) << "each of them, and the snapshot for which there is none";
  EXPECT_THAT(refusalOf("p/no-model.ppd"), HasSubstr("has no model name"));
  EXPECT_THAT(refusalOf("p/empty-model.ppd"), HasSubstr("has no model name"));
}

TEST_F(SetupFolderTest, ASnapshotThatCannotBeUsedIsToldAndTheOthersAreListed) {
  addPPD("z.ppd", ppd("Z9"));
  addSnapshot("b", {device("")});
  folder_.file("a.json", "");
  folder_.file("c.json", "{\"format\": \"another\"}");
  folder_.file("d.json", "\xFF");
  fs::create_directory(folder_.path("e.json"));
  fs::create_symlink("nowhere", folder_.path("f.json"));
  EXPECT_THAT(names(), ElementsAre("b/z.ppd"));
  EXPECT_THAT(warnings(), ElementsAre(HasSubstr("the snapshot a.json cannot be used: "), HasSubstr("c.json"),
                                      HasSubstr("d.json"), HasSubstr("e.json"), HasSubstr("f.json")));
  for (const char* name : {"a", "c", "d", "e", "f"}) {
    EXPECT_THAT(refusalOf(std::string(name) + "/z.ppd"), HasSubstr(std::string(name) + ".json cannot be used: "));
  }
}

// A list does not look into data stores; whoever uses one of them is told.
TEST_F(SetupFolderTest, WhatIsWrongInADataStoreIsToldWhenItIsUsed) {
  addPPD("z.ppd", ppd("Z9"));
  addSnapshot("p", {R"("dataStore": {"VMCustomMediaStorage": {"MediaInfo": nothing}})"});
  EXPECT_THAT(names(), ElementsAre("p/z.ppd"));
  EXPECT_THAT(refusalOf("p/z.ppd"), HasSubstr("the snapshot p.json cannot be used: line 1"));
}

TEST_F(SetupFolderTest, ABasePPDThatCannotBeReadIsTold) {
  addSnapshot("p", {device("")});
  addPPD("z.ppd", ppd("Z9"));
  fs::create_symlink("nowhere", folder_.path("ppd/link.ppd"));
  fs::create_symlink("loop.ppd", folder_.path("ppd/loop.ppd"));
  fs::create_directory(folder_.path("ppd/folder.ppd"));
  mkfifo(folder_.path("ppd/pipe.ppd").c_str(), 0600);
  addPPD("cut.ppd", ppd("Z9", "*OpenGroup: A\n"));
  addPPD("text.ppd", "no PPD\n");
  EXPECT_THAT(names(), ElementsAre("p/z.ppd"));
  EXPECT_THAT(
      warnings(),
      ElementsAre(EndsWith("/ppd/pipe.ppd is no file"), "the base PPD cut.ppd cannot be used: it ends inside a group",
                  "the base PPD folder.ppd cannot be used: it is no file",
                  "the base PPD link.ppd cannot be used: No such file or directory",
                  HasSubstr("loop.ppd cannot be used: "), HasSubstr("text.ppd cannot be used: line 1 is malformed")));
  EXPECT_THAT(refusalOf("p/link.ppd"), HasSubstr("link.ppd cannot be used: No such file"));
  EXPECT_THAT(refusalOf("p/folder.ppd"), HasSubstr("it is no file"));
  EXPECT_THAT(refusalOf("p/cut.ppd"), HasSubstr("it ends inside a group"));
  EXPECT_THAT(refusalOf("p/pipe.ppd"), HasSubstr("pipe.ppd is no file"));
}

TEST_F(SetupFolderTest, ASnapshotForWhichThereIsNoBasePPDIsTold) {
  addPPD("z.ppd", ppd("Z9"));
  addSnapshot("other", {device("Z6")});
  addSnapshot("storeless", {"\"modelName\": \"\\\"Z9\\\"\""});
  EXPECT_THAT(warnings(), ElementsAre(StartsWith("the snapshot other.json is not listed: no base PPD is of the model"),
                                      StartsWith("the snapshot storeless.json is not listed")));
}

TEST_F(SetupFolderTest, AFolderOfPPDsThatIsNoneIsTold) {
  addPPD("z.ppd", ppd("Z9"));
  addSnapshot("p", {device("")});
  fs::remove_all(folder_.path("ppd"));
  folder_.file("ppd", "a file");
  EXPECT_THAT(warnings(),
              ElementsAre(AllOf(HasSubstr("/ppd cannot be read: Not a directory")), HasSubstr("p.json is not listed")));
  EXPECT_THAT(refusalOf("p/z.ppd"),
              AllOf(HasSubstr("there is no base PPD z.ppd that can be seen"), HasSubstr("Not a directory")));
}

TEST_F(SetupFolderTest, ANamedSetupHasItsFilesAsTheyWere) {
  addPPD("z.ppd", ppd("Z9"));
  addSnapshot("p", {device("")});
  const ::Setup setup = setups().named("vorantis-autosetup:p/z.ppd");
  const std::string snapshot = contentsOfFile(folder_.path("p.json"));
  fs::remove(folder_.path("ppd/z.ppd"));
  fs::remove(folder_.path("p.json"));
  EXPECT_EQ(setup.base->bytes(), ppd("Z9"));
  EXPECT_EQ(setup.snapshot->bytes(), snapshot);
  EXPECT_THAT(setup.PPDPath, EndsWith("/ppd/z.ppd"));
}

TEST_F(SetupFolderTest, LinksToFilesAreFiles) {
  addSnapshot("p", {device("")});
  addPPD("z.ppd", ppd("Z9"));
  fs::create_symlink("p.json", folder_.path("q.json"));
  fs::create_symlink("z.ppd", folder_.path("ppd/y.ppd"));
  EXPECT_THAT(names(), ElementsAre("p/y.ppd", "p/z.ppd", "q/y.ppd", "q/z.ppd"));
}

TEST_F(SetupFolderTest, DescriptionsThatReadTheSameGetTheirFiles) {
  addSnapshot("p", {device("", R"(, "uri": "u:1")"), device("", R"(, "uri": "u:2")")});
  addPPD("z9.ppd", ppd("Z9"));
  addPPD("z9.ppd.gz", ppd("Z9"));
  addPPD("z6.ppd", ppd("Z6"));
  EXPECT_THAT(lines(),
              ElementsAre(HasSubstr("\"Z6, media of p+2\""), HasSubstr("\"Z9, media of p+2 (z9.ppd)\""),
                          HasSubstr("\"Z9, media of p+2 (z9.ppd.gz)\""), HasSubstr("\"Z6, media of p\""),
                          HasSubstr("\"Z9, media of p (z9.ppd)\""), HasSubstr("\"Z9, media of p (z9.ppd.gz)\"")));
}

TEST_F(SetupFolderTest, DescriptionsThatAreCutStayDifferent) {
  addSnapshot("p", {device("")});
  addPPD("z9.ppd", ppd(std::string(140, 'Z')));
  addPPD("z9.ppd.gz", ppd(std::string(140, 'Z')));
  EXPECT_THAT(lines(), ElementsAre(HasSubstr("\"" + std::string(118, 'Z') + " (z9.ppd)\""),
                                   HasSubstr("\"" + std::string(115, 'Z') + " (z9.ppd.gz)\"")));
}

TEST_F(SetupFolderTest, DescriptionsAreCutBetweenCharacters) {
  addSnapshot("p", {device("")});
  addPPD("a.ppd", ppd(std::string(127 - 12, 'Z')));
  addPPD("b.ppd", ppd(std::string(128 - 12, 'Z')));
  addPPD("c.ppd", ppd(std::string(126, 'Z') + "\xC3\xA4"));
  addPPD("d.ppd", ppd(std::string(125, 'Z') + "\xC3\xA4"));
  EXPECT_THAT(lines(), ElementsAre(HasSubstr("\"" + std::string(115, 'Z') + ", media of p\""),
                                   HasSubstr("\"" + std::string(116, 'Z') + ", media of \""),
                                   HasSubstr("\"" + std::string(126, 'Z') + "\""),
                                   HasSubstr("\"" + std::string(125, 'Z') + "\xC3\xA4\"")));
}

TEST_F(SetupFolderTest, ANameMayHave255Bytes) {
  addPPD("z.ppd", ppd("Z9"));
  const std::size_t most = 255 - std::string_view("vorantis-autosetup:/z.ppd").size();
  addSnapshot(std::string(most, 'a'), {device("")});
  addSnapshot(std::string(most + 1, 'b'), {device("")});
  addSnapshot(std::string(most - 1, 'c'), {device("", R"(, "uri": "u:1")"), device("", R"(, "uri": "u:2")")});
  EXPECT_THAT(names(), ElementsAre(std::string(most, 'a') + "/z.ppd", std::string(most - 1, 'c') + "/z.ppd"));
  EXPECT_THAT(warnings(), ElementsAre(HasSubstr("is not listed: its name is longer than 255 bytes"),
                                      HasSubstr("c+2/z.ppd is not listed")));
  EXPECT_THAT(refusalOf(std::string(most + 1, 'b') + "/z.ppd"), HasSubstr("longer than 255 bytes"));
  expectListAndNamesToAgree();
}

TEST_F(SetupFolderTest, AMakeMayHave127Bytes) {
  const auto of = [](const std::string& make) {
    return "*Manufacturer: \"" + make + "\"\n*ModelName: \"Z9\"\n*QZPPDUpdaters: \"A\"\n";
  };
  addSnapshot("p", {device("")});
  addPPD("a.ppd", of(std::string(127, 'V')));
  addPPD("b.ppd", of(std::string(128, 'V')));
  addPPD("c.ppd", "*ModelName: \"" + std::string(128, 'V') + "\"\n*QZPPDUpdaters: \"A\"\n");
  EXPECT_THAT(names(), ElementsAre("p/a.ppd"));
  EXPECT_THAT(warnings(), ElementsAre(HasSubstr("p/b.ppd is not listed: its manufacturer is longer than 127 bytes"),
                                      HasSubstr("p/c.ppd is not listed: its manufacturer is longer than 127 bytes")));
  expectListAndNamesToAgree();
}

TEST_F(SetupFolderTest, AnEmptyMakeIsNotListed) {
  addSnapshot("p", {device("")});
  addPPD("z.ppd", "*Manufacturer: \"\"\n*ModelName: \"  \"\n*QZPPDUpdaters: \"A\"\n");
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_THAT(warnings(), ElementsAre(HasSubstr("p/z.ppd is not listed: its PPD names no manufacturer")));
  EXPECT_THAT(refusalOf("p/z.ppd"), HasSubstr("names no manufacturer"));
}

// A longer line would be two to CUPS, and the second the end of the list.
TEST_F(SetupFolderTest, NoLineIsLongerThanCUPSReads) {
  addSnapshot(std::string(200, 'p'), {device("")});
  addPPD("z.ppd", "*Manufacturer: \"" + std::string(127, 'V') + "\"\n*ModelName: \"" + std::string(230, 'Z') +
                      "\"\n*QZPPDUpdaters: \"A\"\n");
  ASSERT_THAT(lines(), SizeIs(1));
  EXPECT_LT(lines()[0].size(), 1024U);
}

TEST_F(SetupFolderTest, NoFieldHoldsAQuotationMarkOrAControlCharacter) {
  addSnapshot("p", {device("")});
  const auto add = [this](const std::string& name, const std::string& make, const std::string& model,
                          const std::string& deviceID) {
    addPPD(name, "*Manufacturer: " + make + "\n*ModelName: " + model + "\n*1284DeviceID: " + deviceID +
                     "\n*QZPPDUpdaters: \"A\"\n");
  };
  add("make1.ppd", "\"V\"V\"", "\"Z\"", "\"\"");
  add("make2.ppd", "\"V\x1B\"", "\"Z\"", "\"\"");
  add("model1.ppd", "\"V\"", "\"Z\"Z\"", "\"\"");
  add("model2.ppd", "\"V\"", "\"Z\tZ\"", "\"\"");
  add("model4.ppd", "\"V\"", "\"" + std::string(200, 'Z') + "\"Z\"", "\"\"");
  add("model5.ppd", "\"V\"", "\"" + std::string(200, 'Z') + "\"Z\"", "\"\"");
  add("model6.ppd", "\"V\"", "\"Z\xE2\x80\xA8\"", "\"\"");
  add("model7.ppd", "\"V\"", std::string("\"Z\0\"", 4), "\"\"");
  add("id1.ppd", "\"V\"", "\"Z\"", "\"MDL:\"Z\";\"");
  add("id2.ppd", "\"V\"", "\"Z\"", "\"MDL:\x7F;\"");
  add("good.ppd", "\"V\\\\'\"", "\"Gl\xC3\xA4nzend/<E4>\"", "\"MDL: \\\\Z;\"");
  EXPECT_THAT(names(), ElementsAre("p/good.ppd"));
  EXPECT_THAT(warnings(), SizeIs(10));
  for (const std::string& warning : warnings())
    EXPECT_THAT(warning, HasSubstr("quotation mark or a control character"));
  expectListAndNamesToAgree();
}

TEST_F(SetupFolderTest, NamesOfFilesMayHoldAnyBytesThatCUPSReads) {
  addPPD("z.ppd", ppd("Z9"));
  for (const char* name :
       {"with blank", "back\\slash", "Gl\xC3\xA4nzend", "%41", "a:b", "'", "(x)", "*", "$HOME", "-"}) {
    addSnapshot(name, {device("")});
  }
  EXPECT_THAT(names(), SizeIs(10));
  EXPECT_THAT(warnings(), IsEmpty());
  expectListAndNamesToAgree();
}

// lpadmin sends a name that it was given so.
TEST_F(SetupFolderTest, NamesAreTakenWithTheBackslashesOfLpadmin) {
  addPPD("z.ppd", ppd("Z9"));
  addPPD("o'z.ppd", ppd("Z9"));
  for (const char* name : {"it's", "back\\slash", "two\\\\", "plain"}) addSnapshot(name, {device("")});
  const auto nameOf = [this](const std::string& given) { return setups().named(kScheme + given).name.substr(19); };
  EXPECT_EQ(nameOf("it\\'s/z.ppd"), "it's/z.ppd");
  EXPECT_EQ(nameOf("it's/o\\'z.ppd"), "it's/o'z.ppd");
  EXPECT_EQ(nameOf("back\\\\slash/z.ppd"), "back\\slash/z.ppd");
  EXPECT_EQ(nameOf("two\\\\\\\\/z.ppd"), "two\\\\/z.ppd");
  EXPECT_EQ(nameOf("two\\\\/z.ppd"), "two\\\\/z.ppd") << "a name as it stands goes first";
  for (const char* name : {"pl\\ain/z.ppd", "plain\\/z.ppd", "\\'plain/z.ppd", "plain/\\z.ppd", "plain/../z.ppd\\\\"}) {
    EXPECT_NE(refusalOf(name), "") << name;
  }
}

TEST_F(SetupFolderTest, NamesOfFilesThatWouldEndTheListAreLeftOutAndToldInOneLine) {
  addPPD("z.ppd", ppd("Z9"));
  for (const char* name : {"quo\"te", "line\nend", "tab\t", "\x1B[31m", "\xFF", "a\xE2\x80\xAE"}) {
    addSnapshot(name, {device("")});
    EXPECT_NE(refusalOf(std::string(name) + "/z.ppd"), "") << name;
  }
  folder_.file("bro\nken.json", "no JSON");
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_THAT(warnings(), SizeIs(7));
  for (const std::string& warning : warnings()) {
    for (const char byte : warning) EXPECT_GE(byte, ' ') << testing::PrintToString(warning);
  }
  expectListAndNamesToAgree();
}

TEST_F(SetupFolderTest, NamesOfPPDsMayBeOddToo) {
  addSnapshot("p", {device("")});
  for (const char* name : {"a b.ppd", "z.ppd.ppd", "z.ppd.gz.ppd", "+2.ppd", "z+2.ppd.gz"}) addPPD(name, ppd(name));
  for (const char* name : {"quo\"te.ppd", "line\nend.ppd", "\xFF.ppd.gz"}) addPPD(name, ppd("Z9"));
  EXPECT_THAT(names(), ElementsAre("p/+2.ppd", "p/a b.ppd", "p/z+2.ppd.gz", "p/z.ppd.gz.ppd", "p/z.ppd.ppd"));
  EXPECT_THAT(warnings(), SizeIs(3));
  expectListAndNamesToAgree();
}

TEST_F(SetupFolderTest, LooksAtTheFilesWhenItIsAsked) {
  addSnapshot("p", {device("")});
  addPPD("z.ppd", ppd("Z9"));
  SetupFolder folder = setups();
  fs::remove(folder_.path("p.json"));
  EXPECT_THAT(folder.all(), IsEmpty());
  EXPECT_THAT(folder.warnings(), ElementsAre(HasSubstr("p.json cannot be used")));
  EXPECT_THROW(folder.named("vorantis-autosetup:p/z.ppd"), std::runtime_error);
}

TEST_F(SetupFolderTest, TheStampTellsOfSnapshotsAndPPDs) {
  addSnapshot("p", {device("")});
  addPPD("z.ppd", ppd("Z9"));
  const std::string first = setups().stamp();
  EXPECT_EQ(setups().stamp(), first);
  addSnapshot("p", {device(""), device("")});
  const std::string second = setups().stamp();
  EXPECT_NE(second, first);
  addPPD("y.ppd", ppd("Z9"));
  EXPECT_NE(setups().stamp(), second);
}

TEST_F(SetupFolderTest, WritesNothing) {
  addSnapshot("p", {device("")});
  addPPD("z.ppd", ppd("Z9"));
  names();
  refusalOf("p/z.ppd");
  EXPECT_EQ(std::distance(fs::recursive_directory_iterator(folder_.path()), fs::recursive_directory_iterator()), 3);
}

TEST_F(SetupFolderTest, AHundredSnapshotsAndPPDsAreListed) {
  for (int number = 100; number < 200; ++number) {
    const std::string model = "Z" + std::to_string(number);
    addSnapshot(model, {device(model)});
    addPPD(model + ".ppd", ppd(model));
  }
  EXPECT_THAT(names(), SizeIs(100));
}
