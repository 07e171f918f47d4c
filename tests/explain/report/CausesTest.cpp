// SPDX-License-Identifier: MIT
#include "explain/report/Causes.h"

#include <gtest/gtest.h>

using Code = WarningCode;

TEST(Causes, ACauseThatTheRunHasIsGiven) {
  EXPECT_EQ(Causes::of(Code::leftByEarlierSetup, {Code::leftByEarlierSetup, Code::earlierSetup}), Code::earlierSetup);
  EXPECT_EQ(Causes::of(Code::leftByEarlierSetup, {Code::leftByEarlierSetup, Code::noDevice}), std::nullopt);
  EXPECT_EQ(Causes::of(Code::earlierSetup, {Code::leftByEarlierSetup, Code::earlierSetup}), std::nullopt);
}

TEST(Causes, TheFirstCauseOfAChainCounts) {
  EXPECT_EQ(Causes::of(Code::idNotFound, {Code::idNotFound, Code::noMediaOption, Code::cutAtNonUTF8}),
            Code::cutAtNonUTF8);
  EXPECT_EQ(Causes::of(Code::idNotFound, {Code::idNotFound, Code::noMediaOption}), Code::noMediaOption);
}

TEST(Causes, NoneIsItsOwnCause) {
  std::set<Code> all;
  for (const WarningKind& kind : allWarningKinds()) all.insert(kind.code);
  for (const Code code : all) {
    const auto cause = Causes::of(code, all);
    EXPECT_NE(cause, code) << nameOf(code);
    EXPECT_TRUE(!cause || !Causes::of(*cause, all)) << nameOf(code);
  }
}
