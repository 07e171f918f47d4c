// SPDX-License-Identifier: MIT
//
// The framework's shared object is loaded by the test that needs it first, and stays: a class cannot be unloaded.
#include "readers/framework/FrameworkDeviceModelLibrary.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <limits>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define AT_ADDRESS_SANITIZER
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define AT_ADDRESS_SANITIZER
#endif

#if defined(AT_ADDRESS_SANITIZER)
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();  // of the sanitizer's runtime; GCC has no header
#elif defined(__APPLE__)
#include <malloc/malloc.h>
#else
#include <malloc.h>
#endif

#include "base/ATException.h"
#include "readers/ATDeviceFamilyNameReaderImpl.h"
#include "readers/IATDataReader.h"
#include "tests/library/Environment.h"

using testing::AllOf;
using testing::HasSubstr;
using testing::IsNull;
using testing::NotNull;

namespace {

const char* const kURI = "socket://192.0.2.10:9100";

void* framework() {
  static void* const object = dlopen(AT_TEST_FRAMEWORK, RTLD_NOW | RTLD_GLOBAL);
  if (object == nullptr) throw std::runtime_error(dlerror());
  return object;
}

long liveObjects() {
  return reinterpret_cast<long (*)()>(dlsym(framework(), "AVMTestLiveObjects"))();
}

std::string lastSpec() {
  return reinterpret_cast<const char* (*)()>(dlsym(framework(), "AVMTestLastSpec"))();
}

std::size_t bytesInUse() {
#if defined(AT_ADDRESS_SANITIZER)
  return __sanitizer_get_current_allocated_bytes();
#elif defined(__APPLE__)
  malloc_statistics_t statistics;
  malloc_zone_statistics(nullptr, &statistics);
  return statistics.size_in_use;
#else
  return mallinfo2().uordblks;
#endif
}

// The back end with the framework of a stored device, and every object given back at the end.
class Framework : public testing::Test {
 protected:
  Framework() {
    setenv("QZVORANTISMODEL_SNAPSHOT", AT_TEST_SNAPSHOT, 1);  // read once by the framework
    framework();
  }
  void TearDown() override { EXPECT_EQ(liveObjects(), 0); }

  // What the operation answers from now on; see TestObjects.m.
  void answer(const std::string& operation, const std::string& object) { answer_.set(operation + " " + object); }

  std::unique_ptr<DeviceModelLibrary::Item> item() {
    const auto info = library_.serviceInfoWithURI(kURI);
    const auto store = library_.registeredStoreForServiceInfo(info.get());
    return library_.itemForKey(store.get(), VMCustomMediaStorage);
  }

  // The device value that is made of an object.
  DeviceValue valueOf(const std::string& object) {
    answer("representedObject", object);
    return library_.representedObject(item().get());
  }

  // What is thrown for an object.
  ATException exceptionFor(const std::string& object) {
    try {
      valueOf(object);
    } catch (const ATException& exception) {
      return exception;
    }
    ADD_FAILURE() << object << ": nothing was thrown";
    return {"", ""};
  }

  FrameworkDeviceModelLibrary library_;
  EnvironmentVariable answer_{"AVM_TEST_ANSWER"};
};

using FrameworkDeviceModelLibraryTest = Framework;

}  // namespace

TEST(FrameworkDeviceModelLibraryDeathTest, IsAbsentWithoutTheFramework) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // a new process, which loads nothing
  const auto isAbsent = [] {
    FrameworkDeviceModelLibrary library;
    return !library.isAvailable() && !library.offersServiceInfoWithSpec() &&
           library.serviceInfoWithSpec({}) == nullptr && library.serviceInfoWithURI(kURI) == nullptr;
  };
  EXPECT_EXIT(std::_Exit(isAbsent() ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST_F(FrameworkDeviceModelLibraryTest, FindsClassesAndOperations) {
  EXPECT_TRUE(library_.isAvailable());
  EXPECT_TRUE(library_.offersServiceInfoWithSpec());
  answer("respondsToSelector:", "nil");
  EXPECT_FALSE(library_.offersServiceInfoWithSpec());
}

TEST_F(FrameworkDeviceModelLibraryTest, GivesThePropertiesThatAreThere) {
  EXPECT_THAT(library_.serviceInfoWithSpec({.uri = kURI, .modelName = "\"Z9\""}), NotNull());
  EXPECT_EQ(lastSpec(),
            "AVMServiceURI=socket://192.0.2.10:9100\n"
            "AVMServiceModelName=\"Z9\"\n"
            "AVMServiceSkipReachabilityCheck=true\n"
            "3 keys");
  EXPECT_THAT(library_.serviceInfoWithSpec({.uri = {}, .modelName = {}, .skipReachabilityCheck = false}), NotNull());
  EXPECT_EQ(lastSpec(), "AVMServiceSkipReachabilityCheck=false\n1 keys");
}

TEST_F(FrameworkDeviceModelLibraryTest, GivesTextsAsTheyAre) {
  EXPECT_THAT(library_.serviceInfoWithSpec({.uri = "", .modelName = "\xC3\xA4\xF0\x9F\x96\xA8"}), NotNull());
  EXPECT_EQ(lastSpec(),
            "AVMServiceURI=\n"
            "AVMServiceModelName=\xC3\xA4\xF0\x9F\x96\xA8\n"
            "AVMServiceSkipReachabilityCheck=true\n"
            "3 keys");
  EXPECT_THAT(library_.serviceInfoWithURI("socket://\xC3\xA4"), NotNull());
  EXPECT_EQ(lastSpec(), "only socket://\xC3\xA4\n");
}

TEST_F(FrameworkDeviceModelLibraryTest, AnswersAbsentForNull) {
  EXPECT_THAT(library_.registeredStoreForServiceInfo(nullptr), IsNull());
  EXPECT_THAT(library_.itemForKey(nullptr, "key"), IsNull());
  EXPECT_TRUE(library_.representedObject(nullptr).isAbsent());
  EXPECT_TRUE(library_.deviceFamilyName(nullptr).isAbsent());
}

TEST_F(FrameworkDeviceModelLibraryTest, ReadsTheDevice) {
  const auto info = library_.serviceInfoWithSpec({.uri = kURI, .modelName = {}});
  EXPECT_EQ(library_.deviceFamilyName(info.get()).description(), "MFG:Vorantis;CID:QZVR2PCLS;");
  const auto store = library_.registeredStoreForServiceInfo(info.get());
  EXPECT_THAT(library_.itemForKey(store.get(), "another key"), IsNull());
  const auto item = library_.itemForKey(store.get(), VMCustomMediaStorage);
  EXPECT_EQ(
      library_.representedObject(item.get()).description(),
      "{MediumListVersion = 17; MediaInfo = {z = {Name = Z; }; a = {Name = A; ICCProfiles = (1, 2.5, 0, -3); }; }; }");
  const auto other = library_.serviceInfoWithURI("socket://192.0.2.99");
  EXPECT_THAT(library_.registeredStoreForServiceInfo(other.get()), IsNull());
  EXPECT_TRUE(library_.deviceFamilyName(other.get()).isAbsent());
}

TEST_F(FrameworkDeviceModelLibraryTest, GivesValuesOfItsOwnToEveryQuestion) {
  const auto asked = item();
  const DeviceValue first = library_.representedObject(asked.get());
  first.map()->set("MediumListVersion", "changed");
  EXPECT_TRUE(library_.representedObject(asked.get()).valueForKey("MediumListVersion").equals("17"));
}

TEST_F(FrameworkDeviceModelLibraryTest, ConvertsTexts) {
  EXPECT_EQ(*valueOf("text").text(), "a text");
  EXPECT_EQ(*valueOf("empty-text").text(), "");
  EXPECT_EQ(*valueOf("mutable-text").text(), "\xC3\xA4\xF0\x9F\x96\xA8");
  EXPECT_EQ(*valueOf("text-with-zero").text(), std::string("a\0b", 3));
}

TEST_F(FrameworkDeviceModelLibraryTest, ConvertsNumbersByTheirType) {
  EXPECT_TRUE(*valueOf("yes").flag());
  EXPECT_FALSE(*valueOf("no").flag());
  EXPECT_EQ(*valueOf("char").integer(), 1);
  EXPECT_EQ(*valueOf("negative").integer(), -7);
  EXPECT_EQ(*valueOf("smallest").integer(), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(*valueOf("largest").integer(), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(*valueOf("unsigned").unsignedInteger(), std::numeric_limits<std::uint64_t>::max());
  EXPECT_EQ(*valueOf("small-unsigned").integer(), 9);
  EXPECT_EQ(*valueOf("real").real(), 2.5);
  EXPECT_EQ(*valueOf("float").real(), 0.1);
  EXPECT_EQ(*valueOf("decimal").real(), 1.25);
}

TEST_F(FrameworkDeviceModelLibraryTest, ConvertsListsAndMapsInTheirOrder) {
  EXPECT_EQ(valueOf("empty-list").list()->size(), 0U);
  EXPECT_EQ(valueOf("list").description(), "(one, 2)");
  EXPECT_EQ(valueOf("empty-map").map()->size(), 0U);
  EXPECT_EQ(valueOf("ordered-map").description(), "{z = 1; a = 2; m = 3; b = 4; }");
  EXPECT_EQ(valueOf("map-without-members").map()->size(), 0U);
  EXPECT_EQ(valueOf("large-storage").valueForKey("MediaInfo").map()->size(), 40000U);
}

TEST_F(FrameworkDeviceModelLibraryTest, GoesAsDeepAsTheOtherBackEnd) {
  DeviceValue value = valueOf("nested-64");
  for (int level = 0; level < 64; ++level) value = value.list()->at(0);
  EXPECT_TRUE(value.equals("innermost"));
  EXPECT_THAT(exceptionFor("nested-65").reason(), HasSubstr("nested too deeply"));
}

TEST_F(FrameworkDeviceModelLibraryTest, CarriesAlongWhatItHasNoUseFor) {
  for (const char* kind : {"object", "date", "data", "null", "url", "class", "hostile-object", "lone-surrogate"}) {
    const DeviceValue value = valueOf(kind);
    EXPECT_TRUE(value.isOfOtherKind()) << kind;
    EXPECT_NE(value.description(), "") << kind;
    EXPECT_FALSE(value.equals(value.description())) << kind;
    EXPECT_THROW(value.textFor("a test"), ATException) << kind;
    EXPECT_THROW(value.valueForKey("a key"), ATException) << kind;
  }
  EXPECT_EQ(valueOf("url").description(), "file:///x");
  const DeviceValue dates = valueOf("list-of-dates");
  ASSERT_EQ(dates.list()->size(), 1U);
  EXPECT_TRUE(dates.list()->front().isOfOtherKind());
  EXPECT_TRUE(valueOf("map-with-date").valueForKey("MediaInfo").isOfOtherKind());
  const auto map = valueOf("map-with-number-key").map();
  ASSERT_EQ(map->size(), 1U);
  EXPECT_TRUE(map->isOtherKey(0));
  EXPECT_TRUE(map->get(map->entries()[0].first).isAbsent());
}

TEST_F(FrameworkDeviceModelLibraryTest, CarriesAlongTextsThatAreNoUnicode) {
  const DeviceValue map = valueOf("map-with-surrogate");
  EXPECT_TRUE(map.valueForKey("Unread").isOfOtherKind());
  EXPECT_TRUE(map.valueForKey("another key").isAbsent());
  const auto keyed = valueOf("map-with-surrogate-key").map();
  ASSERT_EQ(keyed->size(), 1U);
  EXPECT_TRUE(keyed->isOtherKey(0));
  EXPECT_TRUE(keyed->entries()[0].second.equals("x"));
}

TEST_F(FrameworkDeviceModelLibraryTest, RefusesWhatHasNoEnd) {
  EXPECT_THAT(exceptionFor("cyclic-map").reason(), HasSubstr("nested too deeply"));
  EXPECT_THAT(exceptionFor("cyclic-list").reason(), HasSubstr("nested too deeply"));
  EXPECT_THAT(exceptionFor("shared").reason(), HasSubstr("more than can be right"));
  EXPECT_THAT(exceptionFor("endless-map").reason(), HasSubstr("more than can be right"));
  EXPECT_THAT(exceptionFor("endless-map-of-nothing").reason(), HasSubstr("more than can be right"));
}

TEST_F(FrameworkDeviceModelLibraryTest, TellsWhatAnExceptionSays) {
  const ATException thrown = exceptionFor("throw");
  EXPECT_EQ(thrown.name(), "AVMStoreException");
  EXPECT_EQ(thrown.reason(), "the store is locked");
  EXPECT_EQ(thrown.userInfo(), "{code = 4711; }");

  const ATException bare = exceptionFor("throw-bare");
  EXPECT_EQ(bare.name(), "AVMBareException");
  EXPECT_EQ(bare.reason(), "");
  EXPECT_EQ(bare.userInfo(), std::nullopt);

  EXPECT_EQ(exceptionFor("throw-cyclic").name(), "AVMCyclicException");
  EXPECT_THAT(exceptionFor("throw-cyclic").userInfo().value_or(""), HasSubstr("{map = "));
  EXPECT_THAT(exceptionFor("throw-map").name(), HasSubstr("Dictionary"));
  EXPECT_EQ(exceptionFor("throwing-map").name(), "AVMEnumerationException");
  EXPECT_EQ(exceptionFor("throw-surrogate").name(), "AVMTextException");
  EXPECT_EQ(exceptionFor("throw-text").reason(), "a text that was thrown");
  EXPECT_EQ(exceptionFor("throw-hostile").name(), "NSException");
}

TEST_F(FrameworkDeviceModelLibraryTest, AnObjectWithoutTheOperationIsAnException) {
  for (const auto& [operation, message] : std::initializer_list<std::pair<const char*, const char*>>{
           {"defaultSystemDataStoreFactory", "registeredStoreForServiceInfo:"},
           {"registeredStoreForServiceInfo:", "itemForKey:"},
           {"itemForKey:", "representedObject"}}) {
    answer(operation, "text");
    try {
      library_.representedObject(item().get());
      ADD_FAILURE() << operation;
    } catch (const ATException& exception) {
      EXPECT_EQ(exception.name(), "NSInvalidArgumentException");
      EXPECT_THAT(exception.reason(), HasSubstr(message));
    }
  }
}

TEST_F(FrameworkDeviceModelLibraryTest, NilAtAStepIsAbsentFromThereOn) {
  for (const char* operation : {"serviceInfoWithURI:", "defaultSystemDataStoreFactory",
                                "registeredStoreForServiceInfo:", "itemForKey:", "representedObject"}) {
    answer(operation, "nil");
    EXPECT_TRUE(library_.representedObject(item().get()).isAbsent()) << operation;
  }
  for (const char* operation :
       {"serviceInfoWithURI:", "newStatusFactory", "interfaceForProtocol:serviceInfo:", "deviceFamilyName"}) {
    answer(operation, "nil");
    const auto info = library_.serviceInfoWithURI(kURI);
    EXPECT_TRUE(library_.deviceFamilyName(info.get()).isAbsent()) << operation;
  }
}

TEST_F(FrameworkDeviceModelLibraryTest, AnExceptionAtAnyStepIsTold) {
  for (const char* operation : {"serviceInfoWithURI:", "serviceInfoWithSpec:", "defaultSystemDataStoreFactory",
                                "registeredStoreForServiceInfo:", "itemForKey:", "representedObject",
                                "newStatusFactory", "interfaceForProtocol:serviceInfo:", "deviceFamilyName"}) {
    answer(operation, "throw");
    const auto askAll = [&] {
      const auto info = library_.serviceInfoWithURI(kURI);
      library_.serviceInfoWithSpec({});
      library_.deviceFamilyName(info.get());
      library_.representedObject(item().get());
    };
    EXPECT_THROW(askAll(), ATException) << operation;
  }
  answer("respondsToSelector:", "throw");
  EXPECT_THROW(library_.offersServiceInfoWithSpec(), ATException);
}

TEST_F(FrameworkDeviceModelLibraryTest, AnObjectThatCannotBeFreedHarmsNobody) {
  answer("serviceInfoWithURI:", "hostile-object");
  EXPECT_THAT(library_.serviceInfoWithURI(kURI), NotNull());
}

TEST_F(FrameworkDeviceModelLibraryTest, ServesTheReaderOfTheFamilyName) {
  DeviceModelLibrary::setDefaultLibrary(&library_);
  EXPECT_TRUE(ATDeviceFamilyNameReaderImpl().familyNameFromDevice(kURI).isAbsent());
  EXPECT_EQ(lastSpec(), "AVMServiceURI=socket://192.0.2.10:9100\nAVMServiceSkipReachabilityCheck=true\n2 keys");
  answer("respondsToSelector:", "nil");
  EXPECT_TRUE(ATDeviceFamilyNameReaderImpl().familyNameFromDevice("").isAbsent());
  EXPECT_EQ(lastSpec(), "only \n");
  DeviceModelLibrary::setDefaultLibrary(nullptr);
}

// Each operation many times, and what is left of it: less than the smallest object for each time.
TEST_F(FrameworkDeviceModelLibraryTest, LeavesNothingBehind) {
  const auto ask = [](const std::function<void()>& question) {
    try {
      question();
    } catch (const ATException&) {
    }
  };
  const auto askAll = [&](const std::string& object) {
    answer("nothing", "nil");
    library_.offersServiceInfoWithSpec();
    library_.serviceInfoWithSpec({.uri = kURI, .modelName = "a model"});
    const auto info = library_.serviceInfoWithURI(kURI);
    answer("deviceFamilyName", object);
    ask([&] { library_.deviceFamilyName(info.get()); });
    ask([&] { valueOf(object); });
    answer("serviceInfoWithURI:", object);
    ask([&] { library_.deviceFamilyName(library_.serviceInfoWithURI(kURI).get()); });
  };
  for (const char* object :
       {"text", "list", "ordered-map", "date", "throw", "throw-text", "throw-hostile", "throw-cyclic", "throwing-map",
        "map-with-number-key", "lone-surrogate", "cyclic-map", "nil"}) {
    constexpr int kTimes = 300;
    for (int time = 0; time < kTimes; ++time) askAll(object);
    const std::size_t before = bytesInUse();
    for (int time = 0; time < kTimes; ++time) askAll(object);
    EXPECT_LT(bytesInUse(), before + 16 * kTimes) << object;
  }
}
