// SPDX-License-Identifier: MIT
#include "explain/report/WarningCode.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <set>
#include <string>

TEST(WarningCode, TheTableHasEachCodeAtItsPlace) {
  const auto& kinds = allWarningKinds();
  ASSERT_FALSE(kinds.empty());
  for (std::size_t index = 0; index < kinds.size(); ++index) {
    EXPECT_EQ(static_cast<std::size_t>(kinds[index].code), index) << kinds[index].name;
    EXPECT_EQ(&kindOf(kinds[index].code), &kinds[index]);
  }
}

TEST(WarningCode, WhatTheUserLosesMostComesFirst) {
  const auto& kinds = allWarningKinds();
  EXPECT_TRUE(std::is_sorted(kinds.begin(), kinds.end(),
                             [](const auto& one, const auto& other) { return one.gravity < other.gravity; }));
}

TEST(WarningCode, EachHasANameOfItsOwnATitleAndARemedy) {
  std::set<std::string> names;
  for (const WarningKind& kind : allWarningKinds()) {
    EXPECT_TRUE(names.insert(kind.name).second) << kind.name;
    const std::string name = kind.name;
    EXPECT_TRUE(std::all_of(name.begin(), name.end(), [](char each) {
      return each == '-' || (each >= 'a' && each <= 'z') || (each >= '0' && each <= '9');
    })) << name;
    const std::string title = kind.title;
    EXPECT_TRUE(!title.empty() && std::isupper(static_cast<unsigned char>(title.front())) && title.back() != '.');
    const std::string remedy = kind.remedy;
    EXPECT_TRUE(!remedy.empty() && remedy.back() == '.') << name;
  }
}
