// SPDX-License-Identifier: MIT
#include "readers/ATCustomMediaTypesReaderImpl.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/ATException.h"
#include "tests/readers/FakeDeviceModelLibrary.h"
#include "tests/support/TestLog.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

DeviceValue read(const std::string& uri = "socket://a", const std::optional<std::string>& modelName = "\"Z9\"") {
  return ATCustomMediaTypesReaderImpl().dataFromDevice(uri, modelName);
}

// The store's represented object with this one item and no version.
DeviceValue storeWith(const DeviceValue& item) {
  return mapOf({{"MediaInfo", mapOf({{"key", item}})}});
}

// The record that is made of this item.
DeviceValue recordOf(const DeviceValue& item) {
  FakeDeviceModelLibrary library;
  library.stored = storeWith(item);
  const auto list = read().valueForKey("MediaList").list();
  if (list == nullptr || list->size() != 1) {
    ADD_FAILURE() << "not one record";
    return {};
  }
  return list->front();
}

DeviceValue completeItem() {
  return mapOf({{"Name", "My Canvas"},
                {"MediumID", "4711"},
                {"CategoryName", "Custom"},
                {"CategoryID", "CUSTOM"},
                {"ICCProfiles", listOf({mapOf({{"URL", "file:///a.icc"}})})},
                {"ParentID", "12"},
                {"PropertiesInfo", mapOf({{"DefaultGlossEnhancer", "FULLPAGE"}, {"Other", "x"}})},
                {"Unknown", "y"}});
}

std::string line(const std::string& message) {
  return "-[ATCustomMediaTypesReaderImpl dataFromDevice:modelName:]: " + message;
}

}  // namespace

TEST(ATCustomMediaTypesReaderImpl, ResultHasNoKeysWithoutTheLibrary) {
  FakeDeviceModelLibrary library;
  library.available = false;
  const TestLog log;
  const DeviceValue data = read();
  ASSERT_NE(data.map(), nullptr);
  EXPECT_THAT(keysOf(data), IsEmpty());
  EXPECT_THAT(library.calls, IsEmpty());
  log.expectLines({line("QZVorantisModel framework is not loaded")});
}

TEST(ATCustomMediaTypesReaderImpl, AsksTheStoreOfTheDeviceForTheMediaItem) {
  FakeDeviceModelLibrary library;
  read();
  EXPECT_THAT(
      library.calls,
      ElementsAre("serviceInfoWithSpec kURIProp=socket://a kModelNameProp=\"Z9\" kVMSkipReachabilityCheckProp=true",
                  "registeredStoreForServiceInfo", "itemForKey VMCustomMediaStorage", "representedObject"));
}

TEST(ATCustomMediaTypesReaderImpl, EmptyURIAndModelNameAreNoProperties) {
  FakeDeviceModelLibrary library;
  read("", "");
  EXPECT_EQ(library.calls.front(), "serviceInfoWithSpec kVMSkipReachabilityCheckProp=true");
}

TEST(ATCustomMediaTypesReaderImpl, AbsentModelNameIsNoProperty) {
  FakeDeviceModelLibrary library;
  read("socket://a", std::nullopt);
  EXPECT_EQ(library.calls.front(), "serviceInfoWithSpec kURIProp=socket://a kVMSkipReachabilityCheckProp=true");
}

TEST(ATCustomMediaTypesReaderImpl, ModelNameIsGivenWithoutAURI) {
  FakeDeviceModelLibrary library;
  read("", "Z9");
  EXPECT_EQ(library.calls.front(), "serviceInfoWithSpec kModelNameProp=Z9 kVMSkipReachabilityCheckProp=true");
}

TEST(ATCustomMediaTypesReaderImpl, OlderLibraryIsAskedByURI) {
  FakeDeviceModelLibrary library;
  library.offersSpec = false;
  library.stored = storeWith(completeItem());
  const DeviceValue data = read();
  EXPECT_THAT(library.calls, ElementsAre("serviceInfoWithURI socket://a", "registeredStoreForServiceInfo",
                                         "itemForKey VMCustomMediaStorage", "representedObject"));
  EXPECT_EQ(data.valueForKey("MediaList").list()->size(), 1U);
}

TEST(ATCustomMediaTypesReaderImpl, OlderLibraryIsAskedByAnEmptyURIToo) {
  FakeDeviceModelLibrary library;
  library.offersSpec = false;
  read("", std::nullopt);
  EXPECT_EQ(library.calls.front(), "serviceInfoWithURI ");
}

TEST(ATCustomMediaTypesReaderImpl, NothingAtAnyStepGivesAnEmptyListAndNoVersion) {
  for (const char* operation :
       {"serviceInfoWithSpec", "registeredStoreForServiceInfo", "itemForKey", "representedObject"}) {
    FakeDeviceModelLibrary library;
    library.stored = mapOf({{"MediaInfo", mapOf({{"a", completeItem()}})}, {"MediumListVersion", "17"}});
    library.givesNothingAt = operation;
    const DeviceValue data = read();
    EXPECT_THAT(keysOf(data), ElementsAre("MediaList")) << operation;
    EXPECT_THAT(*data.valueForKey("MediaList").list(), IsEmpty()) << operation;
  }
}

TEST(ATCustomMediaTypesReaderImpl, NothingFromAnOlderLibraryGivesAnEmptyList) {
  FakeDeviceModelLibrary library;
  library.offersSpec = false;
  library.givesNothingAt = "serviceInfoWithURI";
  EXPECT_THAT(keysOf(read()), ElementsAre("MediaList"));
}

TEST(ATCustomMediaTypesReaderImpl, FailureOfTheLibraryAtAnyStepGoesUp) {
  for (const char* operation : {"offersServiceInfoWithSpec", "serviceInfoWithSpec", "serviceInfoWithURI",
                                "registeredStoreForServiceInfo", "itemForKey", "representedObject"}) {
    FakeDeviceModelLibrary library;
    library.offersSpec = std::string(operation) != "serviceInfoWithURI";
    library.failsAt = operation;
    try {
      read();
      ADD_FAILURE() << operation << " did not fail";
    } catch (const ATException& exception) {
      EXPECT_EQ(exception.reason(), std::string("no answer from ") + operation);
    }
  }
}

TEST(ATCustomMediaTypesReaderImpl, StoreWithoutMediaInfoKeepsItsVersion) {
  FakeDeviceModelLibrary library;
  library.stored = mapOf({{"MediumListVersion", "17"}});
  const DeviceValue data = read();
  EXPECT_TRUE(data.valueForKey("MedaListVersion").equals("17"));
  EXPECT_THAT(*data.valueForKey("MediaList").list(), IsEmpty());
}

TEST(ATCustomMediaTypesReaderImpl, StoreWithoutAVersionHasAListOnly) {
  FakeDeviceModelLibrary library;
  library.stored = storeWith(completeItem());
  EXPECT_THAT(keysOf(read()), ElementsAre("MediaList"));
}

TEST(ATCustomMediaTypesReaderImpl, EmptyMediaInfoGivesAnEmptyList) {
  FakeDeviceModelLibrary library;
  library.stored = mapOf({{"MediaInfo", mapOf({})}});
  ASSERT_NE(read().valueForKey("MediaList").list(), nullptr);
  EXPECT_THAT(*read().valueForKey("MediaList").list(), IsEmpty());
}

TEST(ATCustomMediaTypesReaderImpl, VersionIsPassedOnAsTheStoreHoldsIt) {
  FakeDeviceModelLibrary library;
  for (const DeviceValue& version : {DeviceValue(" 17 "), DeviceValue(""), DeviceValue(std::int64_t{17})}) {
    library.stored = mapOf({{"MediumListVersion", version}});
    EXPECT_EQ(read().valueForKey("MedaListVersion").description(), version.description());
    EXPECT_EQ(read().valueForKey("MedaListVersion").text() == nullptr, version.text() == nullptr);
  }
}

TEST(ATCustomMediaTypesReaderImpl, RecordHasTheSevenKeysInOrder) {
  const DeviceValue record = recordOf(completeItem());
  EXPECT_THAT(keysOf(record), ElementsAre("MediaName", "ID", "CategoryName", "CategoryID", "ICCProfiles", "ParentID",
                                          "DefaultGlossEnhancer"));
  EXPECT_TRUE(record.valueForKey("MediaName").equals("My Canvas"));
  EXPECT_TRUE(record.valueForKey("ID").equals("4711"));
  EXPECT_TRUE(record.valueForKey("CategoryName").equals("Custom"));
  EXPECT_TRUE(record.valueForKey("CategoryID").equals("CUSTOM"));
  EXPECT_TRUE(record.valueForKey("ICCProfiles").list()->front().valueForKey("URL").equals("file:///a.icc"));
  EXPECT_TRUE(record.valueForKey("ParentID").equals("12"));
  EXPECT_TRUE(record.valueForKey("DefaultGlossEnhancer").equals("FULLPAGE"));
}

TEST(ATCustomMediaTypesReaderImpl, RecordEndsAtTheFirstValueThatTheItemLacks) {
  const std::vector<const char*> storeKeys = {"Name", "MediumID", "CategoryName", "CategoryID", "ICCProfiles"};
  const std::vector<std::string> recordKeys = {"MediaName", "ID", "CategoryName", "CategoryID", "ICCProfiles"};
  for (std::size_t missing = 0; missing < storeKeys.size(); ++missing) {
    const DeviceValue item = completeItem();
    item.map()->set(storeKeys[missing], {});
    std::vector<std::string> expected(recordKeys.begin(), recordKeys.begin() + static_cast<std::ptrdiff_t>(missing));
    expected.insert(expected.end(), {"ParentID", "DefaultGlossEnhancer"});
    EXPECT_EQ(keysOf(recordOf(item)), expected) << storeKeys[missing];
  }
}

TEST(ATCustomMediaTypesReaderImpl, EmptyNameIsThere) {
  EXPECT_THAT(keysOf(recordOf(mapOf({{"Name", ""}, {"MediumID", ""}}))), ElementsAre("MediaName", "ID"));
}

TEST(ATCustomMediaTypesReaderImpl, ItemWithoutNameKeepsItsParentOnly) {
  EXPECT_THAT(keysOf(recordOf(mapOf({{"ParentID", "12"}, {"MediumID", "4711"}}))), ElementsAre("ParentID"));
}

TEST(ATCustomMediaTypesReaderImpl, ItemWithNothingGivesAnEmptyRecord) {
  EXPECT_THAT(keysOf(recordOf(mapOf({}))), IsEmpty());
}

TEST(ATCustomMediaTypesReaderImpl, GlossEnhancerComesFromThePropertiesOnly) {
  EXPECT_THAT(keysOf(recordOf(mapOf({{"DefaultGlossEnhancer", "OFF"}}))), IsEmpty());
  EXPECT_THAT(keysOf(recordOf(mapOf({{"PropertiesInfo", mapOf({{"Other", "x"}})}}))), IsEmpty());
}

TEST(ATCustomMediaTypesReaderImpl, ValuesOfAnyTypeArePassedOn) {
  const DeviceValue record = recordOf(mapOf({{"Name", std::int64_t{5}},
                                             {"MediumID", true},
                                             {"CategoryName", 1.5},
                                             {"CategoryID", listOf({})},
                                             {"ICCProfiles", "no list"}}));
  EXPECT_EQ(record.description(),
            "{MediaName = 5; ID = 1; CategoryName = 1.5; CategoryID = (); ICCProfiles = no list; }");
  EXPECT_EQ(record.valueForKey("MediaName").text(), nullptr);
}

TEST(ATCustomMediaTypesReaderImpl, ProfileListAndEntriesAreThoseOfTheItem) {
  const DeviceValue item = completeItem();
  const DeviceValue record = recordOf(item);
  EXPECT_EQ(record.valueForKey("ICCProfiles").list(), item.valueForKey("ICCProfiles").list());
}

TEST(ATCustomMediaTypesReaderImpl, RecordsComeInTheOrderOfTheStore) {
  FakeDeviceModelLibrary library;
  library.stored = mapOf({{"MediaInfo", mapOf({{"z", mapOf({{"Name", "first"}})},
                                               {"a", mapOf({{"Name", "second"}})},
                                               {"m", mapOf({{"Name", "third"}})}})}});
  std::vector<std::string> names;
  const auto list = read().valueForKey("MediaList").list();
  for (const DeviceValue& record : *list) {
    names.push_back(record.valueForKey("MediaName").description());
  }
  EXPECT_THAT(names, ElementsAre("first", "second", "third"));
}

TEST(ATCustomMediaTypesReaderImpl, RepresentedObjectThatIsNoMapThrows) {
  FakeDeviceModelLibrary library;
  for (const DeviceValue& stored : {DeviceValue("text"), DeviceValue(true), listOf({})}) {
    library.stored = stored;
    EXPECT_THROW(read(), ATException) << stored.description();
  }
}

TEST(ATCustomMediaTypesReaderImpl, MediaInfoThatIsNoMapThrows) {
  FakeDeviceModelLibrary library;
  for (const DeviceValue& media : {DeviceValue("text"), DeviceValue(std::int64_t{1}), listOf({completeItem()})}) {
    library.stored = mapOf({{"MediaInfo", media}});
    try {
      read();
      ADD_FAILURE() << media.description();
    } catch (const ATException& exception) {
      EXPECT_EQ(exception.reason(), "value of the wrong type: \"MediaInfo\" is no map");
    }
  }
}

TEST(ATCustomMediaTypesReaderImpl, StoreItemThatIsNoMapThrows) {
  FakeDeviceModelLibrary library;
  library.stored = storeWith("text");
  EXPECT_THROW(read(), ATException);
}

TEST(ATCustomMediaTypesReaderImpl, PropertiesThatAreNoMapThrow) {
  FakeDeviceModelLibrary library;
  library.stored = storeWith(mapOf({{"Name", "a"}, {"PropertiesInfo", "text"}}));
  EXPECT_THROW(read(), ATException);
}

TEST(ATCustomMediaTypesReaderImpl, MessagesShowURIModelNameVersionAndNumberOfMedia) {
  FakeDeviceModelLibrary library;
  library.stored = mapOf({{"MediaInfo", mapOf({{"a", mapOf({})}, {"b", mapOf({})}})}, {"MediumListVersion", "17"}});
  const TestLog log;
  read();
  log.expectLines({line("Service info was created using serviceInfoWithSpec, URI is socket://a, model name is \"Z9\""),
                   line("Media list version in VMF DataStore 17"), line("Found 2 custom media in VMF DataStore"),
                   line("Media dictionary from DataStore: {a = {}; b = {}; }")});
}

TEST(ATCustomMediaTypesReaderImpl, MessagesShowNullAndZeroForAnEmptyStore) {
  FakeDeviceModelLibrary library;
  const TestLog log;
  read("", std::nullopt);
  log.expectLines({line("Service info was created using serviceInfoWithSpec, URI is , model name is (null)"),
                   line("Media list version in VMF DataStore (null)"), line("Found 0 custom media in VMF DataStore"),
                   line("Media dictionary from DataStore: (null)")});
}

TEST(ATCustomMediaTypesReaderImpl, MessageOfAnOlderLibrary) {
  FakeDeviceModelLibrary library;
  library.offersSpec = false;
  const TestLog log;
  read();
  log.expectLines({line("Service info was created using serviceInfoWithURI:"),
                   line("Media list version in VMF DataStore (null)"), line("Found 0 custom media in VMF DataStore"),
                   line("Media dictionary from DataStore: (null)")});
}

TEST(ATCustomMediaTypesReaderImpl, PPDRecordHasNoMedia) {
  FakeDeviceModelLibrary library;
  library.stored = storeWith(completeItem());
  EXPECT_TRUE(ATCustomMediaTypesReaderImpl().dataFromPPD(nullptr).isAbsent());
  EXPECT_THAT(library.calls, IsEmpty());
}
