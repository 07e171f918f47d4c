// SPDX-License-Identifier: MIT
#include "capture/DeviceSnapshot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "base/ATException.h"
#include "library/Snapshot.h"
#include "tests/support/SnapshotDeviceModelLibrary.h"

using testing::HasSubstr;
using testing::Not;

namespace {

constexpr const char* kURI = "socket://192.0.2.10:9100";

// A library that answers from the devices of a snapshot.
SnapshotDeviceModelLibrary libraryWith(const std::string& devices, bool offersSpec = true) {
  return SnapshotDeviceModelLibrary(snapshot::Snapshot::fromJSON(
      R"({"format": "vorantis-device-snapshot", "formatVersion": 1, "offersServiceInfoWithSpec": )" +
      std::string(offersSpec ? "true" : "false") + R"(, "devices": [)" + devices + "]}"));
}

const std::string kStore = R"("dataStore": {"VMCustomMediaStorage": {"MediumListVersion": "1", "MediaInfo": {
    "b": {"Name": "B", "MediumID": 7, "x": 1.5, "y": true, "z": [1, "two"]}, "a": {}}}})";

// A capture from which nothing is left out.
std::string captured(DeviceModelLibrary& library, const std::string& uri, const std::optional<std::string>& modelName) {
  const auto captured = DeviceSnapshot::of(library, uri, modelName);
  EXPECT_EQ(captured.leftOut, std::vector<std::string>());
  return captured.json;
}

// What the captured snapshot has for the URI and model name.
struct Answers {
  std::string store = "none";
  std::string familyName = "none";
};

Answers answersOf(const std::string& json, const std::string& modelName) {
  SnapshotDeviceModelLibrary replayed(snapshot::Snapshot::fromJSON(json));
  const auto info = replayed.serviceInfoWithSpec({kURI, modelName, true});
  Answers answers;
  if (const auto store = replayed.registeredStoreForServiceInfo(info.get())) {
    const auto item = replayed.itemForKey(store.get(), "VMCustomMediaStorage");
    answers.store = item ? replayed.representedObject(item.get()).description() : "no item";
  }
  answers.familyName = replayed.deviceFamilyName(info.get()).description();
  return answers;
}

}  // namespace

TEST(DeviceSnapshot, HoldsTheStoreOfTheModelAndTheFamilyWithoutAModel) {
  auto library = libraryWith(R"({"modelName": "\"Z9\"", )" + kStore + R"(}, {"deviceFamilyName": "CID:X;"})");
  const std::string json = captured(library, kURI, "\"Z9\"");
  EXPECT_EQ(answersOf(json, "\"Z9\"").store,
            "{MediumListVersion = 1; MediaInfo = {b = {Name = B; MediumID = 7; x = 1.5; y = 1; z = (1, two); }; a = "
            "{}; }; }");
  EXPECT_EQ(answersOf(json, "").familyName, "CID:X;");
  EXPECT_EQ(answersOf(json, "").store, "none");
  EXPECT_EQ(answersOf(json, "\"Z6\"").store, "none");
}

TEST(DeviceSnapshot, NamesNoModelWhenThePPDHasNone) {
  auto library = libraryWith("{" + kStore + R"(, "deviceFamilyName": "CID:X;"})");
  for (const auto& modelName : {std::optional<std::string>(), std::optional<std::string>("")}) {
    const std::string json = captured(library, kURI, modelName);
    EXPECT_THAT(answersOf(json, "").store, HasSubstr("MediumListVersion"));
    EXPECT_EQ(answersOf(json, "").familyName, "CID:X;");
  }
}

TEST(DeviceSnapshot, AsksAnOlderLibraryByTheURIAlone) {
  auto library = libraryWith(R"({"modelName": "", )" + kStore + "}", false);
  const std::string json = captured(library, kURI, "\"Z9\"");
  EXPECT_FALSE(snapshot::Snapshot::fromJSON(json).offersServiceInfoWithSpec);
  EXPECT_THAT(answersOf(json, "").store, HasSubstr("MediumListVersion"));
}

TEST(DeviceSnapshot, KeepsTheDifferenceBetweenWhatIsMissing) {
  auto noStore = libraryWith("{}");
  EXPECT_EQ(answersOf(captured(noStore, kURI, std::nullopt), "").store, "none");
  auto noItem = libraryWith(R"({"dataStore": {}})");
  EXPECT_EQ(answersOf(captured(noItem, kURI, std::nullopt), "").store, "no item");
  auto noDevice = libraryWith("");
  EXPECT_EQ(answersOf(captured(noDevice, kURI, "\"Z9\""), "").familyName, "(null)");
}

TEST(DeviceSnapshot, SaysWhatARunWouldMiss) {
  const auto missing = [](const std::string& devices, const std::string& modelName) {
    auto library = libraryWith(devices);
    return DeviceSnapshot::of(library, kURI, modelName).missing.value_or("nothing");
  };
  const std::string named = R"({"modelName": "\"Z9\"", )" + kStore + "}";
  EXPECT_EQ(missing(named, "\"Z9\""), "nothing");
  EXPECT_THAT(missing(named, "Z9"), HasSubstr("no device")) << "without its quotes";
  EXPECT_THAT(missing("{}", "\"Z9\""), HasSubstr("no device, or none with a data store"));
  EXPECT_THAT(missing(R"({"dataStore": {}})", "\"Z9\""), HasSubstr("no custom media"));
}

TEST(DeviceSnapshot, FailsWithoutALibraryAndForWhatJSONCannotHold) {
  struct : SnapshotDeviceModelLibrary {
    using SnapshotDeviceModelLibrary::SnapshotDeviceModelLibrary;
    bool isAvailable() override { return false; }
  } absent(snapshot::Snapshot{});
  EXPECT_THROW(captured(absent, kURI, std::nullopt), ATException);

  struct : SnapshotDeviceModelLibrary {
    using SnapshotDeviceModelLibrary::SnapshotDeviceModelLibrary;
    DeviceValue deviceFamilyName(const ServiceInfo* /*info*/) override { return std::nan(""); }
  } notANumber(snapshot::Snapshot{});
  EXPECT_THROW(captured(notANumber, kURI, std::nullopt), ATException);
}

TEST(DeviceSnapshot, LeavesOutWhatASnapshotCannotHoldAndSaysSo) {
  struct : SnapshotDeviceModelLibrary {
    using SnapshotDeviceModelLibrary::SnapshotDeviceModelLibrary;
    DeviceValue representedObject(const Item* /*item*/) override {
      auto map = std::make_shared<DeviceMap>();
      map->add("Made", DeviceValue::ofOtherKind("2026-01-02"));
      map->addOtherKey("7", "under a number");
      map->add("List", std::make_shared<DeviceValue::List>(
                           DeviceValue::List{"one", DeviceValue::ofOtherKind("<data>"), "two"}));
      return map;
    }
  } library{snapshot::Snapshot::fromJSON(
      R"({"format": "vorantis-device-snapshot", "formatVersion": 1, "devices": [{"dataStore": {"VMCustomMediaStorage": {}}}]})")};
  const auto [json, leftOut, missing] = DeviceSnapshot::of(library, kURI, std::nullopt);
  EXPECT_EQ(missing, std::nullopt);
  EXPECT_EQ(answersOf(json, "").store, "{List = (one, two); }");
  EXPECT_EQ(leftOut, (std::vector<std::string>{"the member \"Made\": 2026-01-02", "a member whose key is no text: 7",
                                               "an element of a list: <data>"}));
}
