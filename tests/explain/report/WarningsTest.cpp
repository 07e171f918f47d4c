// SPDX-License-Identifier: MIT
#include "explain/report/Warnings.h"

#include <gtest/gtest.h>

namespace {

using Code = WarningCode;

std::vector<Code> sorted(const std::vector<Code>& codes) {
  std::vector<Warning> all;
  Warnings warnings(all);
  for (const Code code : codes) warnings.add(code);
  warnings.sort();
  std::vector<Code> inOrder;
  for (const Warning& warning : all) inOrder.push_back(warning.code);
  return inOrder;
}

}  // namespace

TEST(Warnings, AreSaidOnce) {
  std::vector<Warning> all;
  Warnings warnings(all);
  warnings.add(Code::lineSplit, {{"line", 3U}});
  warnings.add(Code::lineSplit, {{"line", 3U}});
  warnings.add(Code::lineSplit, {{"line", 4U}});
  warnings.add({Code::lineSplit, {{"line", 4U}}});
  EXPECT_EQ(all.size(), 2U);
}

TEST(Warnings, TheGravestComesFirstAndThoseOfOneCodeStayInTheirOrder) {
  EXPECT_EQ(sorted({Code::earlierSetup, Code::profileMissing, Code::noUpdaters}),
            (std::vector{Code::noUpdaters, Code::profileMissing, Code::earlierSetup}));
  std::vector<Warning> all;
  Warnings warnings(all);
  for (const char* path : {"/b", "/a"}) warnings.add(Code::profileMissing, {{"path", path}}, AboutMedium{"M", "1"});
  warnings.sort();
  EXPECT_EQ(std::get<std::string>(*all[0].fact("path")), "/b");
}

TEST(Warnings, ACauseComesInFrontOfWhatFollowsFromIt) {
  EXPECT_EQ(sorted({Code::leftByEarlierSetup, Code::noUpdaters, Code::earlierSetup, Code::cutAtNonUTF8}),
            (std::vector{Code::cutAtNonUTF8, Code::noUpdaters, Code::earlierSetup, Code::leftByEarlierSetup}));
  std::vector<Warning> all;
  Warnings warnings(all);
  warnings.add(Code::noUpdaters);
  warnings.add(Code::cutAtNonUTF8);
  warnings.sort();
  EXPECT_FALSE(all[0].because);
  EXPECT_EQ(all[1].because, Code::cutAtNonUTF8);
}

TEST(Warnings, WhatFollowsFromALighterOneLendsItItsGravity) {
  // Nothing is done is graver than that the device is not known, which is graver than a missing file.
  EXPECT_EQ(
      sorted({Code::profileMissing, Code::noDevice, Code::emptyResult, Code::readingStopped, Code::noUpdaters}),
      (std::vector{Code::readingStopped, Code::noUpdaters, Code::emptyResult, Code::noDevice, Code::profileMissing}));
}
