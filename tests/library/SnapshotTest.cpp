// SPDX-License-Identifier: MIT
#include "library/Snapshot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <tuple>

#include "tests/support/TemporaryFolder.h"

using snapshot::Device;
using snapshot::Error;
using snapshot::Snapshot;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr std::size_t kLargestFile = 64 * 1024 * 1024;

std::string withMembers(const std::string& members) {
  return R"({"format": "vorantis-device-snapshot", "formatVersion": 1)" + (members.empty() ? "" : ", " + members) + "}";
}

Snapshot withDevices(const std::string& devices) {
  return Snapshot::fromJSON(withMembers("\"devices\": [" + devices + "]"));
}

std::string errorOf(const std::string& text) {
  try {
    Snapshot::fromJSON(text);
  } catch (const Error& error) {
    return error.what();
  }
  ADD_FAILURE() << text << " was accepted";
  return {};
}

// Each text is of the wrong form; the error names the member that stands beside it, and says what belongs there.
void expectErrorsThatNameTheMember(const std::vector<std::tuple<std::string, std::string, std::string>>& cases) {
  for (const auto& [text, member, expected] : cases) {
    EXPECT_EQ(errorOf(text), "member \"" + member + "\": " + expected + " is expected") << text;
  }
}

std::string errorOfFile(const std::string& path) {
  try {
    Snapshot::fromFile(path);
  } catch (const Error& error) {
    return error.what();
  }
  ADD_FAILURE() << path << " was accepted";
  return {};
}

// The family name of the device that is found, or "none".
std::string found(const Snapshot& snapshot, std::string_view uri, std::string_view modelName) {
  const Device* device = snapshot.deviceFor(uri, modelName);
  if (device == nullptr) return "none";
  return device->familyName ? *device->familyName->string() : "unnamed";
}

}  // namespace

TEST(Snapshot, WithoutDevicesHasNone) {
  const Snapshot snapshot = withDevices("");
  EXPECT_THAT(snapshot.devices, IsEmpty());
  EXPECT_EQ(snapshot.deviceFor("", ""), nullptr);
}

TEST(Snapshot, OffersServiceInfoWithSpecUnlessItSaysNot) {
  EXPECT_TRUE(withDevices("").offersServiceInfoWithSpec);
  EXPECT_TRUE(
      Snapshot::fromJSON(withMembers(R"("devices": [], "offersServiceInfoWithSpec": true)")).offersServiceInfoWithSpec);
  EXPECT_FALSE(Snapshot::fromJSON(withMembers(R"("devices": [], "offersServiceInfoWithSpec": false)"))
                   .offersServiceInfoWithSpec);
  EXPECT_TRUE(
      Snapshot::fromJSON(withMembers(R"("devices": [], "offersServiceInfoWithSpec": null)")).offersServiceInfoWithSpec);
}

TEST(Snapshot, MembersMayComeInAnyOrder) {
  EXPECT_NO_THROW(Snapshot::fromJSON(R"({"devices": [], "formatVersion": 1, "format": "vorantis-device-snapshot"})"));
}

TEST(Snapshot, UnknownMembersAreIgnored) {
  EXPECT_THAT(Snapshot::fromJSON(withMembers(R"("comment": 5, "devices": [{"serial": [1], "uri": "a"}])")).devices,
              SizeIs(1));
}

TEST(Snapshot, EmptyDeviceMatchesEverythingAndHasNothing) {
  const Snapshot snapshot = withDevices("{}");
  const Device* device = snapshot.deviceFor("socket://a", "Z9");
  ASSERT_NE(device, nullptr);
  EXPECT_EQ(device, snapshot.deviceFor("", ""));
  EXPECT_FALSE(device->familyName.has_value());
  EXPECT_FALSE(device->dataStore.has_value());
}

TEST(Snapshot, NullMembersAreAbsent) {
  const Snapshot snapshot =
      withDevices(R"({"uri": null, "modelName": null, "deviceFamilyName": null, "dataStore": null})");
  const Device* device = snapshot.deviceFor("socket://a", "Z9");
  ASSERT_NE(device, nullptr);
  EXPECT_FALSE(device->familyName.has_value());
  EXPECT_FALSE(device->dataStore.has_value());
}

TEST(Snapshot, EmptyDataStoreIsAStore) {
  const Snapshot snapshot = withDevices(R"({"dataStore": {}})");
  ASSERT_TRUE(snapshot.devices.front().dataStore.has_value());
  EXPECT_THAT(*snapshot.devices.front().dataStore, IsEmpty());
}

TEST(Snapshot, NothingInsideTheDataStoreIsChecked) {
  const Snapshot snapshot =
      withDevices(R"({"dataStore": {"VMCustomMediaStorage": {"MediaInfo": 5}, "x": "y", "n": null}})");
  EXPECT_THAT(*snapshot.devices.front().dataStore, SizeIs(2));
}

TEST(Snapshot, DeviceMatchesByURI) {
  const Snapshot snapshot = withDevices(R"({"uri": "socket://a", "deviceFamilyName": "A"},
                                           {"uri": "socket://b", "deviceFamilyName": "B"})");
  EXPECT_EQ(found(snapshot, "socket://b", ""), "B");
  EXPECT_EQ(found(snapshot, "socket://b", "any"), "B");
  EXPECT_EQ(found(snapshot, "socket://B", ""), "none");
  EXPECT_EQ(found(snapshot, "socket://", ""), "none");
  EXPECT_EQ(found(snapshot, "", ""), "none");
}

TEST(Snapshot, DeviceMatchesByModelName) {
  const Snapshot snapshot = withDevices(R"({"modelName": "\"Z9\"", "deviceFamilyName": "A"})");
  EXPECT_EQ(found(snapshot, "socket://a", "\"Z9\""), "A");
  EXPECT_EQ(found(snapshot, "", "\"Z9\""), "A");
  EXPECT_EQ(found(snapshot, "socket://a", "Z9"), "none");
  EXPECT_EQ(found(snapshot, "socket://a", ""), "none");
}

TEST(Snapshot, BothMustMatchWhenBothAreNamed) {
  const Snapshot snapshot = withDevices(R"({"uri": "socket://a", "modelName": "Z9", "deviceFamilyName": "A"})");
  EXPECT_EQ(found(snapshot, "socket://a", "Z9"), "A");
  EXPECT_EQ(found(snapshot, "socket://a", "Z8"), "none");
  EXPECT_EQ(found(snapshot, "socket://b", "Z9"), "none");
}

TEST(Snapshot, EmptyNamesMatchEmptyNamesOnly) {
  const Snapshot snapshot = withDevices(R"({"uri": "", "modelName": "", "deviceFamilyName": "A"})");
  EXPECT_EQ(found(snapshot, "", ""), "A");
  EXPECT_EQ(found(snapshot, "socket://a", ""), "none");
  EXPECT_EQ(found(snapshot, "", "Z9"), "none");
}

TEST(Snapshot, FirstDeviceThatMatchesIsTaken) {
  const Snapshot snapshot = withDevices(R"({"uri": "socket://a", "modelName": "Z9", "deviceFamilyName": "both"},
                                           {"uri": "socket://a", "deviceFamilyName": "uri"},
                                           {"deviceFamilyName": "any"},
                                           {"uri": "socket://b", "deviceFamilyName": "late"})");
  EXPECT_EQ(found(snapshot, "socket://a", "Z9"), "both");
  EXPECT_EQ(found(snapshot, "socket://a", ""), "uri");
  EXPECT_EQ(found(snapshot, "socket://b", ""), "any");
}

TEST(Snapshot, WrongFormatIsAnErrorThatNamesTheMember) {
  const std::string format = R"("vorantis-device-snapshot")";
  expectErrorsThatNameTheMember(
      {{"{}", "format", format},
       {R"({"formatVersion": 1, "devices": []})", "format", format},
       {R"({"format": "other", "formatVersion": 1, "devices": []})", "format", format},
       {R"({"format": "Vorantis-Device-Snapshot", "formatVersion": 1, "devices": []})", "format", format},
       {R"({"format": 5, "formatVersion": 1, "devices": []})", "format", "a string"},
       {R"({"format": null, "formatVersion": 1, "devices": []})", "format", format}});
}

TEST(Snapshot, WrongFormatVersionIsAnErrorThatNamesTheMember) {
  expectErrorsThatNameTheMember(
      {{R"({"format": "vorantis-device-snapshot", "devices": []})", "formatVersion", "1"},
       {R"({"format": "vorantis-device-snapshot", "formatVersion": 2, "devices": []})", "formatVersion", "1"},
       {R"({"format": "vorantis-device-snapshot", "formatVersion": 0, "devices": []})", "formatVersion", "1"},
       {R"({"format": "vorantis-device-snapshot", "formatVersion": "1", "devices": []})", "formatVersion", "1"},
       {R"({"format": "vorantis-device-snapshot", "formatVersion": 1.0, "devices": []})", "formatVersion", "1"},
       {R"({"format": "vorantis-device-snapshot", "formatVersion": true, "devices": []})", "formatVersion", "1"},
       {R"({"format": "vorantis-device-snapshot", "formatVersion": null, "devices": []})", "formatVersion", "1"}});
}

TEST(Snapshot, MemberOfTheWrongTypeIsAnErrorThatNamesIt) {
  expectErrorsThatNameTheMember(
      {{withMembers(""), "devices", "a list"},
       {withMembers(R"("devices": null)"), "devices", "a list"},
       {withMembers(R"("devices": {})"), "devices", "a list"},
       {withMembers(R"("devices": "a")"), "devices", "a list"},
       {withMembers(R"("devices": [], "offersServiceInfoWithSpec": 1)"), "offersServiceInfoWithSpec", "true or false"},
       {withMembers(R"("devices": [], "offersServiceInfoWithSpec": "no")"), "offersServiceInfoWithSpec",
        "true or false"},
       {withMembers(R"("devices": [{"uri": 5}])"), "uri", "a string"},
       {withMembers(R"("devices": [{}, {"uri": []}])"), "uri", "a string"},
       {withMembers(R"("devices": [{"modelName": false}])"), "modelName", "a string"},
       {withMembers(R"("devices": [{"deviceFamilyName": {}}])"), "deviceFamilyName", "a string"},
       {withMembers(R"("devices": [{"dataStore": []}])"), "dataStore", "an object"},
       {withMembers(R"("devices": [{"dataStore": "a"}])"), "dataStore", "an object"}});
}

TEST(Snapshot, DeviceThatIsNoObjectIsAnError) {
  for (const char* devices : {R"("a")", "{}, [{}]"}) {
    EXPECT_EQ(errorOf(withMembers("\"devices\": [" + std::string(devices) + "]")),
              "member \"devices\": every device must be an object");
  }
}

TEST(Snapshot, WhatIsNoObjectIsAnError) {
  for (const char* text : {"[]", "\"a\"", "1", "true"}) {
    EXPECT_EQ(errorOf(text), "the snapshot must be an object") << text;
  }
}

TEST(Snapshot, WhatIsNoJSONIsAnErrorWithTheLine) {
  EXPECT_THAT(errorOf("{\n\"format\": oops\n}"), HasSubstr("line 2"));
}

TEST(SnapshotFile, IsRead) {
  const TemporaryFolder folder;
  const std::string path = folder.file("a.json", withMembers(R"("devices": [{}])"));
  EXPECT_THAT(Snapshot::fromFile(path).devices, SizeIs(1));
}

TEST(SnapshotFile, MissingFileIsAnError) {
  const TemporaryFolder folder;
  EXPECT_EQ(errorOfFile(folder.path("missing.json")), std::string("cannot be opened: ") + std::strerror(ENOENT));
}

TEST(SnapshotFile, FolderIsAnError) {
  const TemporaryFolder folder;
  EXPECT_EQ(errorOfFile(folder.path()), std::string("cannot be read: ") + std::strerror(EISDIR));
}

TEST(SnapshotFile, EmptyFileIsAnError) {
  const TemporaryFolder folder;
  EXPECT_THAT(errorOfFile(folder.file("empty.json", "")), HasSubstr("line 1"));
}

TEST(SnapshotFile, OfSixtyFourMebibytesIsRead) {
  const TemporaryFolder folder;
  std::string text = withMembers(R"("devices": [{}])");
  text.resize(kLargestFile, ' ');
  EXPECT_THAT(Snapshot::fromFile(folder.file("large.json", text)).devices, SizeIs(1));
}

TEST(SnapshotFile, IsClosedWhetherItCanBeUsedOrNot) {
  const auto openFiles = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), std::filesystem::directory_iterator());
  };
  const TemporaryFolder folder;
  const auto before = openFiles();
  EXPECT_THAT(Snapshot::fromFile(folder.file("good.json", withMembers(R"("devices": [{}])"))).devices, SizeIs(1));
  EXPECT_EQ(openFiles(), before);
  errorOfFile(folder.file("bad.json", "{"));
  EXPECT_EQ(openFiles(), before);
}

TEST(SnapshotFile, OfOneByteMoreIsAnError) {
  const TemporaryFolder folder;
  std::string text = withMembers(R"("devices": [{}])");
  text.resize(kLargestFile + 1, ' ');
  EXPECT_EQ(errorOfFile(folder.file("large.json", text)), "larger than 64 MiB");
}

TEST(SnapshotText, LosesWhatIsNestedDeeper) {
  const auto without = [](std::size_t deepest, std::string_view text) {
    return snapshot::withoutDeeperThan(deepest, text);
  };
  EXPECT_EQ(without(1, R"({"a": {"b": 1}, "c": [2, [3]]})"), R"({"a": {}, "c": []})");
  EXPECT_EQ(without(2, R"({"a": {"b": 1}, "c": [2, [3], {"d": 4}]})"), R"({"a": {"b": 1}, "c": [2, [], {}]})");
  EXPECT_EQ(without(0, R"( {"a": 1} )"), " {} ");
  EXPECT_EQ(without(9, R"({"a": {"b": 1}})"), R"({"a": {"b": 1}})");
  EXPECT_EQ(without(1, ""), "");
}

TEST(SnapshotText, BracketsInStringsAreNone) {
  EXPECT_EQ(snapshot::withoutDeeperThan(1, R"({"a": "x\\", "b": {"c": 1}})"), R"({"a": "x\\", "b": {}})");
  EXPECT_EQ(snapshot::withoutDeeperThan(1, R"(}{"a": {"b": 1}})"), R"(}{"a": {}})");
  EXPECT_EQ(snapshot::withoutDeeperThan(1, R"({"a}": "{", "b\"}": {"}": "\\", "c": "\"}"}, "d": 1})"),
            R"({"a}": "{", "b\"}": {}, "d": 1})");
}

TEST(SnapshotText, WhatIsNoJSONStaysNone) {
  for (const char* text : {"{", "[[[[", "]]]]", "{\"a", "\"", "\"\\", "{\"a\": {\"b\": ", "}{", "{\"a\": [1}"}) {
    SCOPED_TRACE(text);
    EXPECT_THROW(snapshot::parseJSON(snapshot::withoutDeeperThan(2, text)), Error);
  }
}

TEST(SnapshotFile, WithEmptyStoresHasTheSameDevices) {
  const TemporaryFolder folder;
  const std::string path = folder.file(
      "a.json", withMembers(R"("devices": [{"uri": "u:1", "modelName": "\"Z9\"", "dataStore": {"S": {"a": [1]}}},
                                            {"modelName": "}", "deviceFamilyName": "CID:Q;"}])"));
  const Snapshot whole = Snapshot::fromFile(path);
  const Snapshot shallow = Snapshot::withEmptyStoresFromFile(path);
  ASSERT_EQ(shallow.devices.size(), whole.devices.size());
  for (std::size_t index = 0; index < whole.devices.size(); ++index) {
    EXPECT_EQ(shallow.devices[index].uri, whole.devices[index].uri);
    EXPECT_EQ(shallow.devices[index].modelName, whole.devices[index].modelName);
    EXPECT_EQ(shallow.devices[index].dataStore.has_value(), whole.devices[index].dataStore.has_value());
  }
  ASSERT_TRUE(shallow.devices[0].dataStore);
  EXPECT_THAT(*shallow.devices[0].dataStore, SizeIs(0));
  EXPECT_EQ(whole.devices[0].dataStore->size(), 1U);
}

TEST(SnapshotFile, WithEmptyStoresTellsTheSameErrors) {
  const TemporaryFolder folder;
  for (const std::string& text : {std::string(), std::string("{"), withMembers(R"("devices": [{"dataStore": 1}])"),
                                  withMembers("\"devices\": [{\"dataStore\": {\n\n}}\n, x]"),
                                  withMembers(R"("devices": [{"dataStore": {"a": )")}) {
    const std::string path = folder.file("a.json", text);
    try {
      Snapshot::withEmptyStoresFromFile(path);
      ADD_FAILURE() << "no error: " << text;
    } catch (const Error& error) {
      EXPECT_EQ(error.what(), errorOfFile(path));
    }
  }
}
