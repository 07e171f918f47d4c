// SPDX-License-Identifier: MIT
//
// Values on their way to the framework; those on their way from it are in FrameworkDeviceModelLibraryTest.cpp.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "tests/framework/ThroughFoundation.h"

TEST(PropertyList, KeepsTexts) {
  for (const std::string text : {"", "a text", "\xC3\xA4\xF0\x9F\x96\xA8"}) {
    EXPECT_EQ(*throughFoundation(text).text(), text);
  }
  const std::string withZero("a\0b", 3);
  EXPECT_EQ(*throughFoundation(withZero).text(), withZero);
}

TEST(PropertyList, KeepsNumbersWithTheirTypes) {
  for (const std::int64_t number : {std::numeric_limits<std::int64_t>::min(), std::int64_t{-1}, std::int64_t{0},
                                    std::int64_t{1}, std::numeric_limits<std::int64_t>::max()}) {
    ASSERT_NE(throughFoundation(number).integer(), nullptr) << number;
    EXPECT_EQ(*throughFoundation(number).integer(), number);
  }
  const std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();
  ASSERT_NE(throughFoundation(largest).unsignedInteger(), nullptr);
  EXPECT_EQ(*throughFoundation(largest).unsignedInteger(), largest);
  for (const double number : {0.1, -2.5, 1e300, 3.0}) {
    ASSERT_NE(throughFoundation(number).real(), nullptr) << number;
    EXPECT_EQ(*throughFoundation(number).real(), number);
  }
  for (const bool flag : {false, true}) {
    ASSERT_NE(throughFoundation(flag).flag(), nullptr) << flag;
    EXPECT_EQ(*throughFoundation(flag).flag(), flag);
  }
}

TEST(PropertyList, KeepsListsAndMaps) {
  const auto list = std::make_shared<DeviceValue::List>();
  list->push_back("one");
  list->push_back(std::int64_t{2});
  list->push_back(std::make_shared<DeviceValue::List>());
  const auto map = std::make_shared<DeviceMap>();
  map->set("list", list);
  EXPECT_EQ(throughFoundation(map).description(), "{list = (one, 2, ()); }");
}

TEST(PropertyList, LeavesAbsentValuesOut) {
  EXPECT_TRUE(throughFoundation(DeviceValue()).isAbsent());
  const auto list = std::make_shared<DeviceValue::List>(2);
  list->push_back("one");
  EXPECT_EQ(throughFoundation(list).description(), "(one)");
  const auto map = std::make_shared<DeviceMap>();
  map->add("absent", DeviceValue());
  map->add("there", "x");
  EXPECT_EQ(throughFoundation(map).description(), "{there = x; }");
}
