// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "library/QZVorantisModel.h"
#include "tests/library/Environment.h"
#include "tests/library/ModuleCopy.h"

using testing::HasSubstr;
using testing::StartsWith;

namespace {

QZVMText textOf(std::string_view text) {
  return {text.data(), text.size()};
}

std::string stringOf(QZVMText text) {
  return text.size == 0 ? std::string() : std::string(text.bytes, text.size);
}

std::string withMembers(const std::string& members) {
  return R"({"format": "vorantis-device-snapshot", "formatVersion": 1)" + (members.empty() ? "" : ", " + members) + "}";
}

std::string withDevices(const std::string& devices) {
  return withMembers("\"devices\": [" + devices + "]");
}

std::string nested(std::size_t levels) {
  return std::string(levels, '[') + std::string(levels, ']');
}

/// A fresh stored library with an environment of its own. No snapshot is set at first.
class FreshLibrary {
 public:
  FreshLibrary() = default;
  FreshLibrary(const FreshLibrary&) = delete;
  FreshLibrary& operator=(const FreshLibrary&) = delete;
  ~FreshLibrary() {
    if (info_ != nullptr) table().releaseServiceInfo(info_);
    if (store_ != nullptr) table().releaseStore(store_);
    if (item_ != nullptr) table().releaseItem(item_);
  }

  const QZVMInterface& table() {
    if (table_ == nullptr) {
      const auto entry =
          reinterpret_cast<decltype(&QZVorantisModelInterface)>(module_.symbol("QZVorantisModelInterface"));
      table_ = entry();
    }
    return *table_;
  }

  std::string snapshotPath() const { return folder_.path("snapshot.json"); }
  std::string logPath() const { return folder_.path("library.log"); }

  void useSnapshot(const std::string& text) { snapshot_.set(folder_.file("snapshot.json", text)); }
  void useLog() {
    if (!std::filesystem::exists(logPath())) folder_.file("library.log", "");
    log_.set(logPath());
  }

  // The service information of the device; the fixture gives it back.
  const QZVMServiceInfo* info(std::string_view uri = "socket://a") {
    if (info_ != nullptr) table().releaseServiceInfo(info_);
    info_ = nullptr;
    EXPECT_EQ(table().serviceInfoWithURI(textOf(uri), &info_), QZVM_OK);
    return info_;
  }

  const QZVMServiceInfo* infoWithSpec(const char* uri, const char* modelName) {
    if (info_ != nullptr) table().releaseServiceInfo(info_);
    info_ = nullptr;
    const QZVMText uriText = textOf(uri == nullptr ? "" : uri);
    const QZVMText modelText = textOf(modelName == nullptr ? "" : modelName);
    const unsigned char skip = 1;
    const QZVMServiceInfoSpec spec{uri == nullptr ? nullptr : &uriText, modelName == nullptr ? nullptr : &modelText,
                                   &skip};
    EXPECT_EQ(table().serviceInfoWithSpec(&spec, &info_), QZVM_OK);
    return info_;
  }

  // The family name of the device, or the operation's result.
  std::string familyName(const QZVMServiceInfo* ofInfo) {
    QZVMValue* value = nullptr;
    const QZVMResult result = table().deviceFamilyName(ofInfo, &value);
    if (result != QZVM_OK) return result == QZVM_ABSENT ? "absent" : "failed";
    EXPECT_EQ(table().kind(value), QZVM_STRING);
    const std::string name = stringOf(table().stringValue(value));
    table().releaseValue(value);
    return name;
  }

  // The represented object of the item of this key, which the library lends; null when there is no item.
  const QZVMValue* stored(std::string_view key) {
    EXPECT_EQ(table().registeredStoreForServiceInfo(info(), &store_), QZVM_OK);
    if (store_ == nullptr || table().itemForKey(store_, textOf(key), &item_) != QZVM_OK) return nullptr;
    QZVMValue* value = nullptr;
    return table().representedObject(item_, &value) == QZVM_OK ? value : nullptr;
  }

  std::string lastError() { return stringOf(table().lastError()); }

  TemporaryFolder folder_;
  EnvironmentVariable snapshot_{"QZVORANTISMODEL_SNAPSHOT"};
  EnvironmentVariable log_{"QZVORANTISMODEL_LOG"};
  ModuleCopy module_{AT_STORED_LIBRARY};
  const QZVMInterface* table_ = nullptr;
  QZVMServiceInfo* info_ = nullptr;
  QZVMStore* store_ = nullptr;
  QZVMItem* item_ = nullptr;
};

// Each text is a snapshot that cannot be used: it fails the first operation, and what goes to the log is the reason
// that the operation gives, with the file and the text that stands beside it.
void expectDiagnostics(const std::vector<std::pair<std::string, std::string>>& cases) {
  for (const auto& [text, diagnostic] : cases) {
    SCOPED_TRACE(text);
    FreshLibrary library;
    library.useLog();
    library.useSnapshot(text);
    QZVMServiceInfo* out = nullptr;
    EXPECT_EQ(library.table().serviceInfoWithURI(textOf("socket://a"), &out), QZVM_FAILED);
    EXPECT_EQ(out, nullptr);
    EXPECT_THAT(library.lastError(), StartsWith(library.snapshotPath() + ": "));
    EXPECT_THAT(library.lastError(), HasSubstr(diagnostic));
    EXPECT_EQ(contentsOfFile(library.logPath()), library.lastError() + "\n");
  }
}

class StoredDeviceModelLibrary : public testing::Test, protected FreshLibrary {};

}  // namespace

TEST_F(StoredDeviceModelLibrary, HasTheInterfaceVersionOfItsHeader) {
  EXPECT_EQ(table().interfaceVersion, QZVM_INTERFACE_VERSION);
}

TEST_F(StoredDeviceModelLibrary, ExportsNothingOfItsInside) {
  EXPECT_NE(module_.symbol("QZVorantisModelInterface"), nullptr);
  EXPECT_EQ(module_.symbol("_ZN8snapshot9parseJSONESt17basic_string_viewIcSt11char_traitsIcEEm"), nullptr);
}

TEST_F(StoredDeviceModelLibrary, WithoutASnapshotKnowsNoDevice) {
  EXPECT_EQ(table().offersServiceInfoWithSpec(), QZVM_OK);
  EXPECT_EQ(familyName(info()), "absent");
  EXPECT_EQ(table().registeredStoreForServiceInfo(info(), &store_), QZVM_ABSENT);
  EXPECT_EQ(familyName(infoWithSpec(nullptr, nullptr)), "absent");
}

TEST_F(StoredDeviceModelLibrary, WithAnEmptySnapshotVariableKnowsNoDevice) {
  snapshot_.set("");
  EXPECT_EQ(table().offersServiceInfoWithSpec(), QZVM_OK);
  EXPECT_EQ(familyName(info()), "absent");
}

TEST_F(StoredDeviceModelLibrary, OffersSpecByDefault) {
  useSnapshot(withDevices(""));
  EXPECT_EQ(table().offersServiceInfoWithSpec(), QZVM_OK);
}

TEST_F(StoredDeviceModelLibrary, CanPlayAnOlderLibrary) {
  useSnapshot(withMembers(R"("offersServiceInfoWithSpec": false, "devices": [])"));
  EXPECT_EQ(table().offersServiceInfoWithSpec(), QZVM_ABSENT);
}

TEST_F(StoredDeviceModelLibrary, ServiceInformationByURIHasTheEmptyModelName) {
  useSnapshot(withDevices(R"({"uri": "socket://a", "modelName": "Z9", "deviceFamilyName": "Z9"},
                             {"uri": "socket://a", "modelName": "", "deviceFamilyName": "empty"})"));
  EXPECT_EQ(familyName(info("socket://a")), "empty");
  EXPECT_EQ(familyName(infoWithSpec("socket://a", "Z9")), "Z9");
}

TEST_F(StoredDeviceModelLibrary, ServiceInformationWithoutPropertiesHasEmptyNames) {
  useSnapshot(
      withDevices(R"({"uri": "socket://a", "deviceFamilyName": "A"}, {"modelName": "Z9", "deviceFamilyName": "Z9"},
                             {"uri": "", "modelName": "", "deviceFamilyName": "empty"})"));
  EXPECT_EQ(familyName(infoWithSpec(nullptr, nullptr)), "empty");
  EXPECT_EQ(familyName(infoWithSpec(nullptr, "Z9")), "Z9");
  EXPECT_EQ(familyName(infoWithSpec("socket://a", nullptr)), "A");
  EXPECT_EQ(familyName(infoWithSpec("", "")), "empty");
}

TEST_F(StoredDeviceModelLibrary, DeviceWithoutNamesMatchesEverything) {
  useSnapshot(withDevices(R"({"deviceFamilyName": "any"})"));
  EXPECT_EQ(familyName(infoWithSpec("socket://a", "Z9")), "any");
  EXPECT_EQ(familyName(infoWithSpec(nullptr, nullptr)), "any");
  EXPECT_EQ(familyName(info("")), "any");
}

TEST_F(StoredDeviceModelLibrary, FirstMatchingDeviceAnswersAlsoWhenItHasLess) {
  useSnapshot(withDevices(R"({"uri": "socket://a"}, {"uri": "socket://a", "deviceFamilyName": "A", "dataStore": {}})"));
  EXPECT_EQ(familyName(info()), "absent");
  EXPECT_EQ(table().registeredStoreForServiceInfo(info(), &store_), QZVM_ABSENT);
}

TEST_F(StoredDeviceModelLibrary, UnknownDeviceHasServiceInformationOnly) {
  useSnapshot(withDevices(R"({"uri": "socket://a", "deviceFamilyName": "A", "dataStore": {}})"));
  EXPECT_NE(info("socket://b"), nullptr);
  EXPECT_EQ(familyName(info("socket://b")), "absent");
  EXPECT_EQ(table().registeredStoreForServiceInfo(info("socket://b"), &store_), QZVM_ABSENT);
}

TEST_F(StoredDeviceModelLibrary, ANameOfOneByteIsAName) {
  useSnapshot(withDevices(R"({"uri": "a", "deviceFamilyName": "F"})"));
  EXPECT_EQ(familyName(info("a")), "F");
}

TEST_F(StoredDeviceModelLibrary, EmptyFamilyNameIsThere) {
  useSnapshot(withDevices(R"({"deviceFamilyName": ""})"));
  EXPECT_EQ(familyName(info()), "");
}

TEST_F(StoredDeviceModelLibrary, StoreGivesItemsByExactKey) {
  useSnapshot(withDevices(R"({"dataStore": {"key": "value", "": "empty"}})"));
  const QZVMValue* value = stored("key");
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(stringOf(table().stringValue(value)), "value");
  QZVMItem* item = nullptr;
  EXPECT_EQ(table().itemForKey(store_, textOf("Key"), &item), QZVM_ABSENT);
  EXPECT_EQ(table().itemForKey(store_, textOf("ke"), &item), QZVM_ABSENT);
  EXPECT_EQ(item, nullptr);
  ASSERT_EQ(table().itemForKey(store_, QZVMText{nullptr, 0}, &item), QZVM_OK);
  table().releaseItem(item);
}

TEST_F(StoredDeviceModelLibrary, ItemThatIsNullHasNoRepresentedObject) {
  useSnapshot(withDevices(R"({"dataStore": {"key": null}})"));
  EXPECT_EQ(stored("key"), nullptr);
}

TEST_F(StoredDeviceModelLibrary, EveryKindOfValueIsGiven) {
  useSnapshot(withDevices(R"({"dataStore": {"key": {
      "s": "a\u0000b", "i": -9223372036854775808, "u": 18446744073709551615, "r": 0.5, "t": true, "f": false,
      "n": null, "l": ["x", null, 2], "m": {"z": 1, "a": 2, "z": 3}}}})"));
  const QZVMValue* map = stored("key");
  ASSERT_NE(map, nullptr);
  ASSERT_EQ(table().kind(map), QZVM_MAP);
  ASSERT_EQ(table().count(map), 8U);
  std::string keys;
  for (std::size_t index = 0; index < 8; ++index) keys += stringOf(table().keyAt(map, index));
  EXPECT_EQ(keys, "siurtflm");
  const auto member = [&](std::size_t index, QZVMKind kind) {
    const QZVMValue* value = table().valueAt(map, index);
    EXPECT_EQ(table().kind(value), kind) << index;
    return value;
  };
  EXPECT_EQ(stringOf(table().stringValue(member(0, QZVM_STRING))), std::string("a\0b", 3));
  EXPECT_EQ(table().integerValue(member(1, QZVM_INTEGER)), INT64_MIN);
  EXPECT_EQ(table().unsignedValue(member(2, QZVM_UNSIGNED)), UINT64_MAX);
  EXPECT_EQ(table().realValue(member(3, QZVM_REAL)), 0.5);
  EXPECT_EQ(table().booleanValue(member(4, QZVM_BOOLEAN)), 1);
  EXPECT_EQ(table().booleanValue(member(5, QZVM_BOOLEAN)), 0);

  const QZVMValue* list = member(6, QZVM_LIST);
  ASSERT_EQ(table().count(list), 2U);
  EXPECT_EQ(stringOf(table().stringValue(table().elementAt(list, 0))), "x");
  EXPECT_EQ(table().integerValue(table().elementAt(list, 1)), 2);

  const QZVMValue* inner = member(7, QZVM_MAP);
  ASSERT_EQ(table().count(inner), 2U);
  EXPECT_EQ(stringOf(table().keyAt(inner, 0)), "z");
  EXPECT_EQ(table().integerValue(table().valueAt(inner, 0)), 3);
}

TEST_F(StoredDeviceModelLibrary, IntegerUpToTheSignedLimitIsSignedAndAboveUnsigned) {
  useSnapshot(withDevices(R"({"dataStore": {"key": [9223372036854775807, 9223372036854775808]}})"));
  const QZVMValue* list = stored("key");
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(table().kind(table().elementAt(list, 0)), QZVM_INTEGER);
  EXPECT_EQ(table().kind(table().elementAt(list, 1)), QZVM_UNSIGNED);
}

TEST_F(StoredDeviceModelLibrary, ReadsTheSnapshotAtTheFirstOperation) {
  useLog();
  snapshot_.set(snapshotPath());  // does not exist yet
  table();
  EXPECT_EQ(contentsOfFile(logPath()), "");
  useSnapshot(withDevices(R"({"deviceFamilyName": "A"})"));
  EXPECT_EQ(familyName(info()), "A");
}

TEST_F(StoredDeviceModelLibrary, ReadsTheSnapshotOnceAndNeverWritesIt) {
  const std::string text = withDevices(R"({"deviceFamilyName": "A"})");
  useSnapshot(text);
  EXPECT_EQ(familyName(info()), "A");
  EXPECT_EQ(contentsOfFile(snapshotPath()), text);
  useSnapshot("no JSON any more");
  EXPECT_EQ(familyName(info()), "A");
  snapshot_.set("");
  EXPECT_EQ(familyName(info()), "A");
}

TEST_F(StoredDeviceModelLibrary, UnusableSnapshotIsReadOnceToo) {
  useSnapshot("no JSON");
  EXPECT_EQ(table().offersServiceInfoWithSpec(), QZVM_FAILED);
  useSnapshot(withDevices(""));
  EXPECT_EQ(table().offersServiceInfoWithSpec(), QZVM_FAILED);
}

TEST_F(StoredDeviceModelLibrary, UnusableSnapshotFailsEachFirstOperation) {
  useSnapshot("no JSON");
  const QZVMServiceInfoSpec spec{nullptr, nullptr, nullptr};
  EXPECT_EQ(table().offersServiceInfoWithSpec(), QZVM_FAILED);
  EXPECT_THAT(lastError(), HasSubstr(snapshotPath()));
  EXPECT_EQ(table().serviceInfoWithSpec(&spec, &info_), QZVM_FAILED);
  EXPECT_THAT(lastError(), HasSubstr(snapshotPath()));
  EXPECT_EQ(table().serviceInfoWithURI(textOf("socket://a"), &info_), QZVM_FAILED);
  EXPECT_THAT(lastError(), HasSubstr(snapshotPath()));
  EXPECT_EQ(info_, nullptr);
}

TEST_F(StoredDeviceModelLibrary, NothingIsLoggedWhenNothingIsWrong) {
  useLog();
  useSnapshot(withDevices("{}"));
  info("socket://a");
  EXPECT_EQ(contentsOfFile(logPath()), "");
}

TEST_F(StoredDeviceModelLibrary, ALogThatIsNotThereIsNotMade) {
  log_.set(logPath());
  useSnapshot("no JSON");
  EXPECT_EQ(table().offersServiceInfoWithSpec(), QZVM_FAILED);
  EXPECT_FALSE(std::filesystem::exists(logPath()));
}

TEST_F(StoredDeviceModelLibrary, NothingIsLoggedThroughALink) {
  const std::string target = folder_.file("target", "untouched");
  std::filesystem::create_symlink(target, logPath());
  log_.set(logPath());
  useSnapshot("no JSON");
  EXPECT_EQ(table().offersServiceInfoWithSpec(), QZVM_FAILED);
  EXPECT_EQ(contentsOfFile(target), "untouched");
}

TEST_F(StoredDeviceModelLibrary, APipeAsLogIsNotWaitedFor) {
  ASSERT_EQ(mkfifo(logPath().c_str(), 0600), 0);
  log_.set(logPath());
  useSnapshot("no JSON");
  EXPECT_EQ(table().offersServiceInfoWithSpec(), QZVM_FAILED);
}

TEST_F(StoredDeviceModelLibrary, NothingIsLoggedIntoAPipe) {
  ASSERT_EQ(mkfifo(logPath().c_str(), 0600), 0);
  const int reader = open(logPath().c_str(), O_RDWR | O_NONBLOCK);
  ASSERT_GE(reader, 0);
  log_.set(logPath());
  useSnapshot("no JSON");
  const QZVMInterface& library = table();
  const int next = dup(reader);
  close(next);
  EXPECT_EQ(library.offersServiceInfoWithSpec(), QZVM_FAILED);
  char byte;
  EXPECT_LT(read(reader, &byte, 1), 0);
  EXPECT_EQ(dup(reader), next);  // nothing was left open
  close(next);
  close(reader);
}

TEST_F(StoredDeviceModelLibrary, MissingSnapshotIsLoggedWithItsPath) {
  useLog();
  snapshot_.set(snapshotPath());
  EXPECT_EQ(table().offersServiceInfoWithSpec(), QZVM_FAILED);
  EXPECT_THAT(contentsOfFile(logPath()), StartsWith(snapshotPath() + ": cannot be opened"));
}

TEST_F(StoredDeviceModelLibrary, FolderAsSnapshotIsLoggedWithItsPath) {
  useLog();
  snapshot_.set(folder_.path());
  EXPECT_EQ(table().offersServiceInfoWithSpec(), QZVM_FAILED);
  EXPECT_THAT(contentsOfFile(logPath()), StartsWith(folder_.path() + ": cannot be read"));
}

TEST_F(StoredDeviceModelLibrary, TooLargeSnapshotIsLogged) {
  useLog();
  useSnapshot("");
  std::filesystem::resize_file(snapshotPath(), 64U * 1024 * 1024 + 1);
  EXPECT_EQ(table().offersServiceInfoWithSpec(), QZVM_FAILED);
  EXPECT_THAT(contentsOfFile(logPath()), HasSubstr("64 MiB"));
}

TEST_F(StoredDeviceModelLibrary, DiagnosticsAreAddedToTheLog) {
  folder_.file("library.log", "earlier\n");
  useLog();
  useSnapshot("no JSON");
  EXPECT_EQ(table().offersServiceInfoWithSpec(), QZVM_FAILED);
  EXPECT_THAT(contentsOfFile(logPath()), StartsWith("earlier\n" + snapshotPath() + ": line 1: "));
}

TEST_F(StoredDeviceModelLibrary, DiagnosticsNeverGoToStandardErrorOrOutput) {
  testing::internal::CaptureStderr();
  testing::internal::CaptureStdout();
  useSnapshot("no JSON");
  const QZVMResult withoutLog = table().offersServiceInfoWithSpec();
  log_.set("");
  const QZVMResult withEmptyLog = table().offersServiceInfoWithSpec();
  log_.set(folder_.path());
  const QZVMResult withFolderAsLog = table().offersServiceInfoWithSpec();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(withoutLog, QZVM_FAILED);
  EXPECT_EQ(withEmptyLog, QZVM_FAILED);
  EXPECT_EQ(withFolderAsLog, QZVM_FAILED);
}

TEST(UnusableSnapshot, SnapshotThatIsNoJSONIsLoggedWithFileAndLine) {
  expectDiagnostics({{"", "line 1"},
                     {"{\n\"format\": oops}", "line 2"},
                     {withDevices("") + "\n}", "line 2"},
                     {"{\n\"a\": \"\\uD83D\"}", "line 2"},
                     {"{\n\n\"a\": \"\xFF\"}", "line 3"},
                     {"{\n\"a\": 1e999}", "line 2"},
                     {withMembers("\n\"devices\": [{\"dataStore\": {\"a\": " + nested(61) + "}}]"), "64 levels"},
                     {withMembers("\n\"devices\": [{\"dataStore\": {\"a\": " + nested(61) + "}}]"), "line 2"},
                     {"null", "a value is expected"}});
}

TEST(UnusableSnapshot, SnapshotOfTheWrongFormIsLoggedWithFileAndMember) {
  expectDiagnostics(
      {{"[]", "object"},
       {R"({"formatVersion": 1, "devices": []})", "\"format\""},
       {R"({"format": "x", "formatVersion": 1, "devices": []})", "\"format\""},
       {R"({"format": 1, "formatVersion": 1, "devices": []})", "\"format\""},
       {R"({"format": "vorantis-device-snapshot", "devices": []})", "\"formatVersion\""},
       {R"({"format": "vorantis-device-snapshot", "formatVersion": 2, "devices": []})", "\"formatVersion\""},
       {R"({"format": "vorantis-device-snapshot", "formatVersion": "1", "devices": []})", "\"formatVersion\""},
       {withMembers(""), "\"devices\""},
       {withMembers(R"("devices": {})"), "\"devices\""},
       {withDevices("5"), "\"devices\""},
       {withMembers(R"("devices": [], "offersServiceInfoWithSpec": 0)"), "\"offersServiceInfoWithSpec\""},
       {withDevices(R"({"uri": 5})"), "\"uri\""},
       {withDevices(R"({"modelName": []})"), "\"modelName\""},
       {withDevices(R"({"deviceFamilyName": 5})"), "\"deviceFamilyName\""},
       {withDevices(R"({"dataStore": []})"), "\"dataStore\""}});
}

TEST_F(StoredDeviceModelLibrary, SixtyFourLevelsAreGivenInFull) {
  // The snapshot itself, "devices", the device and "dataStore" are the first four.
  useSnapshot(withDevices(R"({"dataStore": {"key": )" + nested(60) + "}}"));
  const QZVMValue* value = stored("key");
  ASSERT_NE(value, nullptr);
  std::size_t levels = 1;
  while (table().count(value) == 1) {
    value = table().elementAt(value, 0);
    ++levels;
  }
  EXPECT_EQ(levels, 60U);
}
