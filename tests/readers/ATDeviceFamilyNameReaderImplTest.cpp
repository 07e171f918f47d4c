// SPDX-License-Identifier: MIT
#include "readers/ATDeviceFamilyNameReaderImpl.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/ATException.h"
#include "tests/readers/FakeDeviceModelLibrary.h"
#include "tests/support/TestLog.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {
constexpr const char* kSignature = "-[ATDeviceFamilyNameReaderImpl familyNameFromDevice:]: ";
}

TEST(ATDeviceFamilyNameReaderImpl, GivesAnEmptyMapWithoutTheLibrary) {
  FakeDeviceModelLibrary library;
  library.available = false;
  const TestLog log;
  const DeviceValue name = ATDeviceFamilyNameReaderImpl().familyNameFromDevice("socket://a");
  ASSERT_NE(name.map(), nullptr);
  EXPECT_EQ(name.map()->size(), 0U);
  EXPECT_THAT(library.calls, IsEmpty());
  log.expectLines({std::string(kSignature) + "QZVorantisModel framework is not loaded"});
}

TEST(ATDeviceFamilyNameReaderImpl, MakesServiceInformationWithoutAModelNameAndGivesNothing) {
  FakeDeviceModelLibrary library;
  library.familyName = "CID:QZVR2PCLS;";
  const TestLog log;
  EXPECT_TRUE(ATDeviceFamilyNameReaderImpl().familyNameFromDevice("socket://a").isAbsent());
  EXPECT_THAT(library.calls, ElementsAre("serviceInfoWithSpec kURIProp=socket://a kVMSkipReachabilityCheckProp=true"));
  log.expectLines({});
}

TEST(ATDeviceFamilyNameReaderImpl, EmptyURIIsNoProperty) {
  FakeDeviceModelLibrary library;
  EXPECT_TRUE(ATDeviceFamilyNameReaderImpl().familyNameFromDevice("").isAbsent());
  EXPECT_THAT(library.calls, ElementsAre("serviceInfoWithSpec kVMSkipReachabilityCheckProp=true"));
}

TEST(ATDeviceFamilyNameReaderImpl, OlderLibraryIsAskedByURI) {
  FakeDeviceModelLibrary library;
  library.offersSpec = false;
  const TestLog log;
  EXPECT_TRUE(ATDeviceFamilyNameReaderImpl().familyNameFromDevice("socket://a").isAbsent());
  EXPECT_TRUE(ATDeviceFamilyNameReaderImpl().familyNameFromDevice("").isAbsent());
  EXPECT_THAT(library.calls, ElementsAre("serviceInfoWithURI socket://a", "serviceInfoWithURI "));
  const std::string line = std::string(kSignature) + "Service info was created using serviceInfoWithURI:";
  log.expectLines({line, line});
}

TEST(ATDeviceFamilyNameReaderImpl, NoServiceInformationChangesNothing) {
  FakeDeviceModelLibrary library;
  library.givesNothingAt = "serviceInfoWithSpec";
  EXPECT_TRUE(ATDeviceFamilyNameReaderImpl().familyNameFromDevice("socket://a").isAbsent());
}

TEST(ATDeviceFamilyNameReaderImpl, FailureOfTheLibraryGoesUp) {
  FakeDeviceModelLibrary library;
  for (const char* operation : {"offersServiceInfoWithSpec", "serviceInfoWithSpec", "serviceInfoWithURI"}) {
    library.offersSpec = std::string(operation) != "serviceInfoWithURI";
    library.failsAt = operation;
    EXPECT_THROW(ATDeviceFamilyNameReaderImpl().familyNameFromDevice("socket://a"), ATException) << operation;
  }
}
