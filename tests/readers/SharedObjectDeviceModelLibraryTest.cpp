// SPDX-License-Identifier: MIT
#include "readers/SharedObjectDeviceModelLibrary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <functional>
#include <limits>

#include "base/ATException.h"
#include "readers/ATCustomMediaTypesReaderImpl.h"
#include "tests/library/Environment.h"
#include "tests/library/ModuleCopy.h"
#include "tests/readers/FakeDeviceModelLibrary.h"
#include "tests/readers/fixtures/ScriptedLibrary.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;
using testing::StartsWith;

namespace {

std::string fixture(const char* name) {
  return std::string(AT_FIXTURE_DIR) + "/" + name + ".so";
}

QZVMText textOf(std::string_view text) {
  return {text.data(), text.size()};
}

QZVMValue valueOfKind(int kind) {
  QZVMValue value{};
  value.kind = kind;
  return value;
}

QZVMValue string(std::string_view text) {
  QZVMValue value = valueOfKind(QZVM_STRING);
  value.text = textOf(text);
  return value;
}

// The scripted library with fresh state, and the tool's side of it.
struct Scripted {
  ModuleCopy module{fixture("ScriptedLibrary")};
  Script& script = *static_cast<Script*>(module.symbol("script"));
  SharedObjectDeviceModelLibrary library{module.path().c_str()};

  std::unique_ptr<DeviceModelLibrary::ServiceInfo> info() { return library.serviceInfoWithURI("socket://a"); }

  // What the tool makes of this value.
  DeviceValue read(QZVMValue value) {
    script.value = &value;
    return library.deviceFamilyName(info().get());
  }
};

// Lists or maps around a value, this many.
DeviceValue readNested(Scripted& scripted, QZVMKind kind, std::size_t levels) {
  const QZVMValue innermost = string("x");
  const QZVMText key = textOf("key");
  std::vector<QZVMValue> values(levels, valueOfKind(kind));
  std::vector<const QZVMValue*> elements(levels);
  for (std::size_t index = 0; index < levels; ++index) {
    elements[index] = index + 1 < levels ? &values[index + 1] : &innermost;
    values[index].count = 1;
    values[index].keys = &key;
    values[index].elements = &elements[index];
  }
  return scripted.read(values.front());
}

void expectAbsent(SharedObjectDeviceModelLibrary& library) {
  EXPECT_FALSE(library.isAvailable());
  EXPECT_FALSE(library.offersServiceInfoWithSpec());
  EXPECT_EQ(library.serviceInfoWithSpec({}), nullptr);
  EXPECT_EQ(library.serviceInfoWithURI("socket://a"), nullptr);
  EXPECT_EQ(library.registeredStoreForServiceInfo(nullptr), nullptr);
  EXPECT_EQ(library.itemForKey(nullptr, "key"), nullptr);
  EXPECT_TRUE(library.representedObject(nullptr).isAbsent());
  EXPECT_TRUE(library.deviceFamilyName(nullptr).isAbsent());
}

std::string reasonOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const ATException& exception) {
    return exception.reason();
  }
  ADD_FAILURE() << "nothing was thrown";
  return {};
}

// A library that is there and cannot be used for this reason, so that every question fails, and not only the first.
void expectUnusable(SharedObjectDeviceModelLibrary& library, const testing::Matcher<std::string>& reason) {
  for (int question = 1; question <= 2; ++question) {
    EXPECT_THAT(reasonOf([&] { library.isAvailable(); }), reason) << question;
    EXPECT_THAT(reasonOf([&] { library.offersServiceInfoWithSpec(); }), reason) << question;
    EXPECT_THAT(reasonOf([&] { library.serviceInfoWithURI("socket://a"); }), reason) << question;
  }
}

}  // namespace

TEST(SharedObjectDeviceModelLibrary, IsAbsentWithoutTheFile) {
  const TemporaryFolder folder;
  const std::string path = folder.path("missing.so");
  SharedObjectDeviceModelLibrary library(path.c_str());
  expectAbsent(library);
}

TEST(SharedObjectDeviceModelLibrary, IsAbsentWithoutItsFolderOrWithALinkToNothing) {
  const TemporaryFolder folder;
  const std::string inMissingFolder = folder.path("missing/library.so");
  SharedObjectDeviceModelLibrary library(inMissingFolder.c_str());
  expectAbsent(library);
  const std::string link = folder.path("link.so");
  std::filesystem::create_symlink(folder.path("missing.so"), link);
  SharedObjectDeviceModelLibrary linked(link.c_str());
  expectAbsent(linked);
}

TEST(SharedObjectDeviceModelLibrary, AFileThatTheLoaderCannotFollowIsAFailure) {
  const TemporaryFolder folder;
  const std::string path = folder.path("loop.so");
  std::filesystem::create_symlink(path, path);
  SharedObjectDeviceModelLibrary library(path.c_str());
  expectUnusable(library, StartsWith("the device-model library cannot be loaded: " + path + ": "));
}

TEST(SharedObjectDeviceModelLibrary, IsAbsentWhenTheLoaderFindsNoFileOfItsName) {
  SharedObjectDeviceModelLibrary library("libNoDeviceModelLibraryOfThisName.so.1");
  expectAbsent(library);
}

TEST(SharedObjectDeviceModelLibrary, AFileThatIsNoSharedObjectIsAFailure) {
  const TemporaryFolder folder;
  for (const std::string& contents : {std::string(), std::string("no shared object\n"), std::string(4096, 'x')}) {
    const std::string path = folder.file("text.so", contents);
    SharedObjectDeviceModelLibrary library(path.c_str());
    expectUnusable(library, StartsWith("the device-model library cannot be loaded: "));
  }
}

TEST(SharedObjectDeviceModelLibrary, AFolderOfItsNameIsAFailure) {
  const TemporaryFolder folder;
  const std::string path = folder.path();
  SharedObjectDeviceModelLibrary library(path.c_str());
  expectUnusable(library, StartsWith("the device-model library cannot be loaded: " + path + ": "));
}

TEST(SharedObjectDeviceModelLibrary, ALibraryWithoutTheEntryPointIsAFailure) {
  const std::string path = fixture("MissingSymbol");
  ASSERT_TRUE(std::filesystem::exists(path));
  SharedObjectDeviceModelLibrary library(path.c_str());
  expectUnusable(library, path + " cannot be used: it has no entry point");
}

TEST(SharedObjectDeviceModelLibrary, ALibraryThatCannotBeUsedIsClosed) {
  const ModuleCopy module(fixture("MissingSymbol"));
  SharedObjectDeviceModelLibrary library(module.path().c_str());
  expectUnusable(library, module.path() + " cannot be used: it has no entry point");
  EXPECT_FALSE(module.isLoaded());
}

TEST(SharedObjectDeviceModelLibrary, AnEntryPointThatGivesNoTableIsAFailure) {
  const std::string path = fixture("NullTable");
  ASSERT_TRUE(std::filesystem::exists(path));
  SharedObjectDeviceModelLibrary library(path.c_str());
  expectUnusable(library, path + " cannot be used: it gives no operations");
}

TEST(SharedObjectDeviceModelLibrary, AnotherInterfaceVersionIsAFailure) {
  for (const std::uint32_t version : {0U, QZVM_INTERFACE_VERSION + 1, 0xFFFFFFFFU}) {
    Scripted scripted;
    scripted.script.table.interfaceVersion = version;
    expectUnusable(scripted.library, scripted.module.path() + " cannot be used: it is of another interface version");
  }
}

TEST(SharedObjectDeviceModelLibrary, ATableThatLacksAnyEntryIsAFailure) {
  constexpr std::size_t kFirst = offsetof(QZVMInterface, offersServiceInfoWithSpec);
  constexpr std::size_t kEntry = sizeof(QZVMInterface::lastError);
  for (std::size_t offset = kFirst; offset < sizeof(QZVMInterface); offset += kEntry) {
    Scripted scripted;
    std::memset(reinterpret_cast<char*>(&scripted.script.table) + offset, 0, kEntry);
    EXPECT_EQ(reasonOf([&] { scripted.library.isAvailable(); }),
              scripted.module.path() + " cannot be used: it lacks operations")
        << "entry " << (offset - kFirst) / kEntry;
  }
}

TEST(SharedObjectDeviceModelLibrary, IsThereWithACompleteTable) {
  Scripted scripted;
  EXPECT_TRUE(scripted.library.isAvailable());
}

TEST(SharedObjectDeviceModelLibrary, IsOpenedAtTheFirstQuestion) {
  const ModuleCopy module(fixture("ScriptedLibrary"));
  SharedObjectDeviceModelLibrary library(module.path().c_str());
  EXPECT_FALSE(module.isLoaded());
  EXPECT_TRUE(library.isAvailable());
  EXPECT_TRUE(module.isLoaded());
}

TEST(SharedObjectDeviceModelLibrary, StaysOpen) {
  const ModuleCopy module(fixture("ScriptedLibrary"));
  { EXPECT_TRUE(SharedObjectDeviceModelLibrary(module.path().c_str()).isAvailable()); }
  EXPECT_TRUE(module.isLoaded());
}

TEST(SharedObjectDeviceModelLibrary, AbsentLibraryIsLookedForOnce) {
  const TemporaryFolder folder;
  const std::string path = folder.path("late.so");
  SharedObjectDeviceModelLibrary library(path.c_str());
  EXPECT_FALSE(library.isAvailable());
  std::filesystem::copy_file(fixture("ScriptedLibrary"), path);
  EXPECT_FALSE(library.isAvailable());
}

TEST(SharedObjectDeviceModelLibrary, LibraryCanSayThatSpecIsNotOffered) {
  Scripted scripted;
  EXPECT_TRUE(scripted.library.offersServiceInfoWithSpec());
  scripted.script.results[OFFERS_SPEC] = QZVM_ABSENT;
  EXPECT_FALSE(scripted.library.offersServiceInfoWithSpec());
  EXPECT_TRUE(scripted.library.isAvailable());
}

TEST(SharedObjectDeviceModelLibrary, SpecGivesThePropertiesThatAreThere) {
  Scripted scripted;
  EXPECT_NE(scripted.library.serviceInfoWithSpec({"socket://a", "\"Z9\"", true}), nullptr);
  EXPECT_STREQ(scripted.script.uri, "socket://a");
  EXPECT_STREQ(scripted.script.modelName, "\"Z9\"");
  EXPECT_EQ(scripted.script.skipReachabilityCheck, 1);
}

TEST(SharedObjectDeviceModelLibrary, SpecLeavesAbsentPropertiesOut) {
  Scripted scripted;
  EXPECT_NE(scripted.library.serviceInfoWithSpec({}), nullptr);
  EXPECT_STREQ(scripted.script.uri, "-");
  EXPECT_STREQ(scripted.script.modelName, "-");
  EXPECT_EQ(scripted.script.skipReachabilityCheck, 1);
}

TEST(SharedObjectDeviceModelLibrary, SpecCanAskForTheReachabilityCheck) {
  Scripted scripted;
  EXPECT_NE(scripted.library.serviceInfoWithSpec({"socket://a", "\"Z9\"", false}), nullptr);
  EXPECT_EQ(scripted.script.skipReachabilityCheck, 0);
}

TEST(SharedObjectDeviceModelLibrary, URIAndKeyReachTheLibrary) {
  Scripted scripted;
  const auto info = scripted.library.serviceInfoWithURI("socket://b");
  EXPECT_STREQ(scripted.script.uri, "socket://b");
  const auto store = scripted.library.registeredStoreForServiceInfo(info.get());
  const auto item = scripted.library.itemForKey(store.get(), "VMCustomMediaStorage");
  EXPECT_STREQ(scripted.script.key, "VMCustomMediaStorage");
  EXPECT_NE(item, nullptr);
}

TEST(SharedObjectDeviceModelLibrary, EveryOperationCanAnswerAbsent) {
  Scripted scripted;
  const auto info = scripted.info();
  const auto store = scripted.library.registeredStoreForServiceInfo(info.get());
  const auto item = scripted.library.itemForKey(store.get(), "key");
  ASSERT_NE(item, nullptr);
  for (int& result : scripted.script.results) result = QZVM_ABSENT;
  EXPECT_EQ(scripted.library.serviceInfoWithSpec({}), nullptr);
  EXPECT_EQ(scripted.library.serviceInfoWithURI("socket://a"), nullptr);
  EXPECT_EQ(scripted.library.registeredStoreForServiceInfo(info.get()), nullptr);
  EXPECT_EQ(scripted.library.itemForKey(store.get(), "key"), nullptr);
  EXPECT_TRUE(scripted.library.representedObject(item.get()).isAbsent());
  EXPECT_TRUE(scripted.library.deviceFamilyName(info.get()).isAbsent());
}

TEST(SharedObjectDeviceModelLibrary, NullObjectIsAnsweredAbsentWithoutTheLibrary) {
  Scripted scripted;
  EXPECT_EQ(scripted.library.registeredStoreForServiceInfo(nullptr), nullptr);
  EXPECT_EQ(scripted.library.itemForKey(nullptr, "key"), nullptr);
  EXPECT_TRUE(scripted.library.representedObject(nullptr).isAbsent());
  EXPECT_TRUE(scripted.library.deviceFamilyName(nullptr).isAbsent());
  EXPECT_THAT(scripted.script.calls, testing::Each(0));
}

TEST(SharedObjectDeviceModelLibrary, FailureOfEveryOperationIsAnExceptionWithTheLibrarysReason) {
  Scripted scripted;
  auto& library = scripted.library;
  const auto info = scripted.info();
  const auto store = library.registeredStoreForServiceInfo(info.get());
  const auto item = library.itemForKey(store.get(), "key");
  scripted.script.error = textOf("the printer is on fire");
  for (int& result : scripted.script.results) result = QZVM_FAILED;
  const std::vector<std::function<void()>> operations = {
      [&] { library.offersServiceInfoWithSpec(); },      [&] { library.serviceInfoWithSpec({}); },
      [&] { library.serviceInfoWithURI("socket://a"); }, [&] { library.registeredStoreForServiceInfo(info.get()); },
      [&] { library.itemForKey(store.get(), "key"); },   [&] { library.representedObject(item.get()); },
      [&] { library.deviceFamilyName(info.get()); },
  };
  for (const auto& operation : operations) EXPECT_EQ(reasonOf(operation), "the printer is on fire");
}

TEST(SharedObjectDeviceModelLibrary, UnknownResultIsAFailure) {
  Scripted scripted;
  scripted.script.results[INFO_WITH_URI] = 7;
  EXPECT_THROW(scripted.info(), ATException);
}

TEST(SharedObjectDeviceModelLibrary, ReasonThatIsNotUTF8IsAFailureToo) {
  Scripted scripted;
  scripted.script.error = textOf("\xFF");
  scripted.script.results[INFO_WITH_URI] = QZVM_FAILED;
  EXPECT_EQ(reasonOf([&] { scripted.info(); }), "the device-model library failed");
}

TEST(SharedObjectDeviceModelLibrary, NullReasonWithASizeIsAFailureToo) {
  Scripted scripted;
  scripted.script.error = {nullptr, 5};
  scripted.script.results[INFO_WITH_URI] = QZVM_FAILED;
  EXPECT_EQ(reasonOf([&] { scripted.info(); }), "the device-model library failed");
}

TEST(SharedObjectDeviceModelLibrary, EmptyReasonIsAFailureToo) {
  Scripted scripted;
  scripted.script.results[INFO_WITH_URI] = QZVM_FAILED;
  EXPECT_THROW(scripted.info(), ATException);
}

TEST(SharedObjectDeviceModelLibrary, EveryObjectIsGivenBackOnce) {
  Scripted scripted;
  QZVMValue value = string("a");
  scripted.script.value = &value;
  {
    const auto info = scripted.info();
    const auto store = scripted.library.registeredStoreForServiceInfo(info.get());
    const auto item = scripted.library.itemForKey(store.get(), "key");
    scripted.library.representedObject(item.get());
    scripted.library.deviceFamilyName(info.get());
    EXPECT_EQ(scripted.script.values, 0);
    EXPECT_EQ(scripted.script.infos, 1);
    EXPECT_EQ(scripted.script.stores, 1);
    EXPECT_EQ(scripted.script.items, 1);
  }
  EXPECT_EQ(scripted.script.infos, 0);
  EXPECT_EQ(scripted.script.stores, 0);
  EXPECT_EQ(scripted.script.items, 0);
}

TEST(SharedObjectDeviceModelLibrary, ValueThatCannotBeReadIsGivenBack) {
  Scripted scripted;
  EXPECT_EQ(reasonOf([&] { scripted.read(string("\xFF")); }),
            "the device-model library gave a text that is null or not UTF-8");
  EXPECT_EQ(scripted.script.values, 0);
}

TEST(SharedObjectDeviceModelLibrary, StringsKeepEveryByte) {
  Scripted scripted;
  const std::string text("a\0b \"\xC3\xA9\xF0\x9F\x98\x80", 11);
  EXPECT_TRUE(scripted.read(string(text)).equals(text));
  EXPECT_TRUE(scripted.read(string("")).equals(""));
  EXPECT_TRUE(scripted.read(valueOfKind(QZVM_STRING)).equals(""));
}

TEST(SharedObjectDeviceModelLibrary, IntegersKeepTheirValue) {
  Scripted scripted;
  QZVMValue integer = valueOfKind(QZVM_INTEGER);
  integer.integer = std::numeric_limits<std::int64_t>::min();
  EXPECT_EQ(scripted.read(integer).description(), "-9223372036854775808");
  QZVMValue big = valueOfKind(QZVM_UNSIGNED);
  big.unsignedInteger = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(scripted.read(big).description(), "18446744073709551615");
}

TEST(SharedObjectDeviceModelLibrary, RealNumbersAndBooleansKeepTheirValue) {
  Scripted scripted;
  QZVMValue real = valueOfKind(QZVM_REAL);
  real.real = 2.5;
  EXPECT_EQ(scripted.read(real).description(), "2.5");
  QZVMValue boolean = valueOfKind(QZVM_BOOLEAN);
  EXPECT_EQ(scripted.read(boolean).description(), "0");
  boolean.boolean = 2;
  EXPECT_EQ(scripted.read(boolean).description(), "1");
}

TEST(SharedObjectDeviceModelLibrary, ListsAndMapsKeepTheirOrder) {
  Scripted scripted;
  const QZVMValue one = string("1");
  const QZVMValue two = string("2");
  const QZVMValue* elements[] = {&two, &one};
  QZVMValue list = valueOfKind(QZVM_LIST);
  list.count = 2;
  list.elements = elements;
  const DeviceValue readList = scripted.read(list);
  ASSERT_NE(readList.list(), nullptr);
  EXPECT_EQ(readList.description(), "(2, 1)");

  const QZVMText keys[] = {textOf("z"), textOf("a")};
  QZVMValue map = list;
  map.kind = QZVM_MAP;
  map.keys = keys;
  const DeviceValue readMap = scripted.read(map);
  EXPECT_THAT(keysOf(readMap), ElementsAre("z", "a"));
  EXPECT_TRUE(readMap.valueForKey("z").equals("2"));
}

TEST(SharedObjectDeviceModelLibrary, EmptyListsAndMapsAreThere) {
  Scripted scripted;
  EXPECT_NE(scripted.read(valueOfKind(QZVM_LIST)).list(), nullptr);
  EXPECT_NE(scripted.read(valueOfKind(QZVM_MAP)).map(), nullptr);
}

TEST(SharedObjectDeviceModelLibrary, TextThatIsNotUTF8IsAFailure) {
  Scripted scripted;
  for (const char* text : {"\xFF", "a\x80", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82"}) {
    EXPECT_THROW(scripted.read(string(text)), ATException);
  }
}

TEST(SharedObjectDeviceModelLibrary, NullTextWithASizeIsAFailure) {
  Scripted scripted;
  QZVMValue value = valueOfKind(QZVM_STRING);
  value.text = {nullptr, 5};
  EXPECT_EQ(reasonOf([&] { scripted.read(value); }), "the device-model library gave a text that is null or not UTF-8");
}

TEST(SharedObjectDeviceModelLibrary, KeyThatIsNotUTF8IsAFailure) {
  Scripted scripted;
  const QZVMValue element = string("1");
  const QZVMValue* elements[] = {&element};
  const QZVMText keys[] = {textOf("\xFF")};
  QZVMValue map = valueOfKind(QZVM_MAP);
  map.count = 1;
  map.keys = keys;
  map.elements = elements;
  EXPECT_THROW(scripted.read(map), ATException);
}

TEST(SharedObjectDeviceModelLibrary, UnknownKindIsAFailure) {
  Scripted scripted;
  for (const int kind : {0, 8, 99, -1}) {
    EXPECT_EQ(reasonOf([&] { scripted.read(valueOfKind(kind)); }),
              "the device-model library gave a value of an unknown kind")
        << kind;
  }
}

TEST(SharedObjectDeviceModelLibrary, NullValueIsAFailure) {
  Scripted scripted;
  const auto info = scripted.info();
  EXPECT_EQ(reasonOf([&] { scripted.library.deviceFamilyName(info.get()); }),
            "the device-model library gave a null value");
  const QZVMValue* elements[] = {nullptr};
  QZVMValue list = valueOfKind(QZVM_LIST);
  list.count = 1;
  list.elements = elements;
  EXPECT_THROW(scripted.read(list), ATException);
}

TEST(SharedObjectDeviceModelLibrary, DeepNestingIsAFailureAndSixtyFourLevelsAreNot) {
  Scripted scripted;
  EXPECT_NE(readNested(scripted, QZVM_LIST, 64).list(), nullptr);
  EXPECT_NE(readNested(scripted, QZVM_MAP, 64).map(), nullptr);
  for (const std::size_t levels : {65U, 66U, 1000U}) {
    EXPECT_EQ(reasonOf([&] { readNested(scripted, QZVM_LIST, levels); }),
              "the device-model library's value is nested too deeply")
        << levels;
    EXPECT_THROW(readNested(scripted, QZVM_MAP, levels), ATException) << levels;
  }
}

TEST(SharedObjectDeviceModelLibrary, EveryQuestionGivesValuesOfItsOwn) {
  Scripted scripted;
  QZVMValue list = valueOfKind(QZVM_LIST);
  scripted.script.value = &list;
  const auto info = scripted.info();
  const DeviceValue first = scripted.library.deviceFamilyName(info.get());
  first.list()->push_back("changed");
  EXPECT_THAT(*scripted.library.deviceFamilyName(info.get()).list(), SizeIs(0));
}

TEST(DeviceModelLibrary, ReplacementStandsInUntilItIsTakenBack) {
  DeviceModelLibrary& own = DeviceModelLibrary::defaultLibrary();
  {
    FakeDeviceModelLibrary fake;
    EXPECT_EQ(&DeviceModelLibrary::defaultLibrary(), &fake);
  }
  EXPECT_EQ(&DeviceModelLibrary::defaultLibrary(), &own);
}

namespace {

// The stored library, with this snapshot and fresh state.
struct Stored {
  explicit Stored(const std::string& snapshot) { variable.set(folder.file("snapshot.json", snapshot)); }

  DeviceValue representedObject() {
    const auto info = library.serviceInfoWithSpec({"socket://a", "Z9", true});
    const auto store = library.registeredStoreForServiceInfo(info.get());
    const auto item = library.itemForKey(store.get(), "VMCustomMediaStorage");
    return library.representedObject(item.get());
  }

  TemporaryFolder folder;
  EnvironmentVariable variable{"QZVORANTISMODEL_SNAPSHOT"};
  ModuleCopy module{AT_STORED_LIBRARY};
  SharedObjectDeviceModelLibrary library{module.path().c_str()};
};

std::string snapshotWithStore(const std::string& representedObject) {
  return R"({"format": "vorantis-device-snapshot", "formatVersion": 1, "devices": [{"uri": "socket://a",
    "deviceFamilyName": "CID:QZVR2PCLS;", "dataStore": {"VMCustomMediaStorage": )" +
         representedObject + "}}]}";
}

}  // namespace

TEST(StoredLibraryThroughTheLoader, GivesEveryKindOfValue) {
  Stored stored(snapshotWithStore(
      R"({"s": "\u00e9", "i": -5, "u": 18446744073709551615, "r": 2.5, "t": true, "f": false, "n": null,
          "l": [1, "a", [], {}], "m": {"z": 1, "a": 2}})"));
  EXPECT_EQ(stored.representedObject().description(),
            "{s = \u00e9; i = -5; u = 18446744073709551615; r = 2.5; t = 1; f = 0; l = (1, a, (), {}); "
            "m = {z = 1; a = 2; }; }");
}

TEST(StoredLibraryThroughTheLoader, ChangesNeverReachTheLibrary) {
  Stored stored(snapshotWithStore(R"({"MediaInfo": {"a": {"ICCProfiles": [{"URL": "x"}]}}})"));
  const DeviceValue first = stored.representedObject();
  const auto item = first.valueForKey("MediaInfo").valueForKey("a");
  item.valueForKey("ICCProfiles").list()->front().map()->set("URL", "changed");
  item.valueForKey("ICCProfiles").list()->push_back("changed");
  EXPECT_EQ(stored.representedObject().description(), "{MediaInfo = {a = {ICCProfiles = ({URL = x; }); }; }; }");
}

TEST(StoredLibraryThroughTheLoader, MediaReaderMakesRecordsOfTheSnapshot) {
  Stored stored(snapshotWithStore(R"({"MediumListVersion": "17", "MediaInfo": {
      "z": {"Name": "first", "MediumID": "1"}, "a": {"Name": "second", "MediumID": null, "ParentID": "12"}}})"));
  DeviceModelLibrary::setDefaultLibrary(&stored.library);
  const DeviceValue data = ATCustomMediaTypesReaderImpl().dataFromDevice("socket://a", std::nullopt);
  DeviceModelLibrary::setDefaultLibrary(nullptr);
  EXPECT_EQ(
      data.description(),
      "{MedaListVersion = 17; MediaList = ({MediaName = first; ID = 1; }, {MediaName = second; ParentID = 12; }); }");
}

TEST(StoredLibraryThroughTheLoader, UnknownDeviceHasServiceInformationOnly) {
  Stored stored(snapshotWithStore("{}"));
  const auto info = stored.library.serviceInfoWithURI("socket://unknown");
  ASSERT_NE(info, nullptr);
  EXPECT_EQ(stored.library.registeredStoreForServiceInfo(info.get()), nullptr);
  EXPECT_TRUE(stored.library.deviceFamilyName(info.get()).isAbsent());
}

TEST(StoredLibraryThroughTheLoader, GivesTheFamilyName) {
  Stored stored(snapshotWithStore("{}"));
  const auto info = stored.library.serviceInfoWithURI("socket://a");
  EXPECT_TRUE(stored.library.deviceFamilyName(info.get()).equals("CID:QZVR2PCLS;"));
}

TEST(StoredLibraryThroughTheLoader, UnusableSnapshotIsAnExceptionOfTheOperation) {
  Stored stored("no JSON");
  EXPECT_TRUE(stored.library.isAvailable());
  EXPECT_THAT(reasonOf([&] { stored.library.offersServiceInfoWithSpec(); }), HasSubstr("snapshot.json"));
  EXPECT_THROW(stored.library.serviceInfoWithSpec({}), ATException);
  EXPECT_THROW(stored.library.serviceInfoWithURI("socket://a"), ATException);
}
