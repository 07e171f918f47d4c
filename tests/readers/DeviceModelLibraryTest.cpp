// SPDX-License-Identifier: MIT
#include "readers/DeviceModelLibrary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/ATException.h"
#include "tests/readers/FakeDeviceModelLibrary.h"

using testing::ElementsAre;

TEST(DeviceModelLibrary, ServiceInformationHasURIAndModelNameAndSkipsTheReachabilityCheck) {
  FakeDeviceModelLibrary library;
  const auto made = library.serviceInfoForDevice("socket://a", "\"Z9\"");
  EXPECT_NE(made.info, nullptr);
  EXPECT_TRUE(made.withSpec);
  EXPECT_THAT(library.calls, ElementsAre("serviceInfoWithSpec kURIProp=socket://a kModelNameProp=\"Z9\" "
                                         "kVMSkipReachabilityCheckProp=true"));
}

TEST(DeviceModelLibrary, ServiceInformationLeavesEmptyAndAbsentTextsOut) {
  FakeDeviceModelLibrary library;
  library.serviceInfoForDevice("socket://a");
  library.serviceInfoForDevice("socket://a", "");
  library.serviceInfoForDevice("", "Z9");
  library.serviceInfoForDevice("", "");
  library.serviceInfoForDevice("");
  library.serviceInfoForDevice(" ", " ");
  const std::string skipping = "kVMSkipReachabilityCheckProp=true";
  EXPECT_THAT(library.calls, ElementsAre("serviceInfoWithSpec kURIProp=socket://a " + skipping,
                                         "serviceInfoWithSpec kURIProp=socket://a " + skipping,
                                         "serviceInfoWithSpec kModelNameProp=Z9 " + skipping,
                                         "serviceInfoWithSpec " + skipping, "serviceInfoWithSpec " + skipping,
                                         "serviceInfoWithSpec kURIProp=  kModelNameProp=  " + skipping));
}

TEST(DeviceModelLibrary, ServiceInformationOfAnOlderLibraryIsMadeOfTheURIAlone) {
  FakeDeviceModelLibrary library;
  library.offersSpec = false;
  const auto made = library.serviceInfoForDevice("socket://a", "\"Z9\"");
  EXPECT_NE(made.info, nullptr);
  EXPECT_FALSE(made.withSpec);
  library.serviceInfoForDevice("", std::nullopt);
  EXPECT_THAT(library.calls, ElementsAre("serviceInfoWithURI socket://a", "serviceInfoWithURI "));
}

TEST(DeviceModelLibrary, ServiceInformationMayBeAbsentInEitherWay) {
  FakeDeviceModelLibrary library;
  for (const bool withSpec : {true, false}) {
    library.offersSpec = withSpec;
    library.givesNothingAt = withSpec ? "serviceInfoWithSpec" : "serviceInfoWithURI";
    const auto made = library.serviceInfoForDevice("socket://a", "Z9");
    EXPECT_EQ(made.info, nullptr);
    EXPECT_EQ(made.withSpec, withSpec);
  }
}

TEST(DeviceModelLibrary, AFailureToMakeServiceInformationGoesUp) {
  FakeDeviceModelLibrary library;
  for (const char* operation : {"offersServiceInfoWithSpec", "serviceInfoWithSpec", "serviceInfoWithURI"}) {
    library.offersSpec = std::string(operation) != "serviceInfoWithURI";
    library.failsAt = operation;
    EXPECT_THROW(library.serviceInfoForDevice("socket://a"), ATException) << operation;
  }
}
