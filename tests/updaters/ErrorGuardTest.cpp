// SPDX-License-Identifier: MIT
#include "updaters/ErrorGuard.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "base/ATException.h"

TEST(ErrorGuard, RunsTheOperationOnceAndHasNoReasonWhenItSucceeds) {
  int runs = 0;
  EXPECT_EQ(reasonOfFailure([&] { ++runs; }), std::nullopt);
  EXPECT_EQ(runs, 1);
}

TEST(ErrorGuard, RunsAFailingOperationOnce) {
  int runs = 0;
  EXPECT_NE(reasonOfFailure([&] {
              ++runs;
              throw std::runtime_error("broken");
            }),
            std::nullopt);
  EXPECT_EQ(runs, 1);
}

TEST(ErrorGuard, GivesTheReasonOfAProgrammingError) {
  EXPECT_EQ(reasonOfFailure([] { throw ATException("AName", "the reason", "the info"); }), "the reason");
}

TEST(ErrorGuard, GivesTheTextOfAStandardException) {
  EXPECT_EQ(reasonOfFailure([] { throw std::out_of_range("position 7"); }), "position 7");
}

TEST(ErrorGuard, AnEmptyReasonIsAReason) {
  EXPECT_EQ(reasonOfFailure([] { throw ATException("AName", ""); }), "");
}

TEST(ErrorGuard, CatchesExhaustedMemory) {
  EXPECT_NE(reasonOfFailure([] { throw std::bad_alloc(); }), std::nullopt);
}

TEST(ErrorGuard, CatchesWhatIsNoExceptionClass) {
  struct Anything {};
  EXPECT_NE(reasonOfFailure([] { throw 42; }), std::nullopt);
  EXPECT_NE(reasonOfFailure([] { throw "text"; }), std::nullopt);
  EXPECT_NE(reasonOfFailure([] { throw Anything(); }), std::nullopt);
}

TEST(ErrorGuard, LeavesWhatWasChangedBeforeTheFailure) {
  int changed = 0;
  reasonOfFailure([&] {
    changed = 1;
    throw std::runtime_error("broken");
  });
  EXPECT_EQ(changed, 1);
}
