// SPDX-License-Identifier: MIT
#include "setup/CarriedDefaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::string ppd(const std::string& size, const std::string& medium, const std::string& sizes = "A4 A1") {
  std::string text = "*PPD-Adobe: \"4.3\"\n*DefaultPageSize: " + size + "\n";
  if (sizes.find("A4") != std::string::npos) text += "*PageSize A4/A4: \"a\"\n";
  if (sizes.find("A1") != std::string::npos) text += "*PageSize A1/A1: \"b\"\n";
  return text + "*DefaultColorSpace: RGB\n*DefaultMediaType: " + medium +
         "\n*MediaType Plain/Plain: \"\"\n*MediaType Custom1/C: \"\"\n";
}

}  // namespace

TEST(CarriedDefaults, AreThoseOfTheQueue) {
  const auto carried = CarriedDefaults::from(ppd("A1", "Custom2"), ppd("A4", "Plain"), "Custom1");
  EXPECT_EQ(carried.ppd, ppd("A1", "Custom1"));
  EXPECT_THAT(carried.lost, IsEmpty());
}

TEST(CarriedDefaults, OneThatIsNotOfferedAnyMoreIsSaid) {
  const auto carried = CarriedDefaults::from(ppd("A1", "Plain"), ppd("A4", "Plain", "A4"), "Canvas (ID 7)");
  EXPECT_EQ(carried.ppd, ppd("A4", "Plain", "A4"));
  EXPECT_THAT(carried.lost, ElementsAre("the default PageSize was A1, which is gone; now it is A4",
                                        "the default MediaType was Canvas (ID 7), which is gone; now it is Plain"));
}

TEST(CarriedDefaults, CustomSizesAreCarried) {
  EXPECT_EQ(CarriedDefaults::from(ppd("Custom.100x200mm", "Plain"), ppd("A4", "Plain"), "Plain").ppd,
            ppd("Custom.100x200mm", "Plain"));
}

TEST(CarriedDefaults, WhatIsNoChoiceOfAnOptionStaysAsItWasMade) {
  std::string old = ppd("A4", "Plain");
  old.replace(old.find("RGB"), 3, "CMY");
  const auto carried = CarriedDefaults::from(old, ppd("A4", "Plain"), "Plain");
  EXPECT_EQ(carried.ppd, ppd("A4", "Plain"));
  EXPECT_THAT(carried.lost, IsEmpty());
}

TEST(CarriedDefaults, TheRestComesOutByteForByte) {
  const std::string fresh = "*PPD-Adobe: \"4.3\"\r\n\r\n*DefaultPageSize: A4\r\n\n*PageSize A4: \"\"\r*% no line end";
  EXPECT_EQ(CarriedDefaults::from("", fresh, "").ppd, fresh);
  EXPECT_EQ(CarriedDefaults::from(fresh, fresh, "").ppd, fresh);
}
