// SPDX-License-Identifier: MIT
#include "updaters/GuardedProfileUpdater.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "base/ATException.h"
#include "ppd/lists/Budget.h"

TEST(GuardedProfileUpdater, RunsTheOperationOnceAndHasNoReasonWhenItSucceeds) {
  int runs = 0;
  EXPECT_EQ(reasonOfFailure([&] { ++runs; }), std::nullopt);
  EXPECT_EQ(runs, 1);
}

TEST(GuardedProfileUpdater, RunsAFailingOperationOnce) {
  int runs = 0;
  EXPECT_NE(reasonOfFailure([&] {
              ++runs;
              throw std::runtime_error("broken");
            }),
            std::nullopt);
  EXPECT_EQ(runs, 1);
}

TEST(GuardedProfileUpdater, GivesTheReasonOfAProgrammingError) {
  EXPECT_EQ(reasonOfFailure([] { throw ATException("AName", "the reason", "the info"); }), "the reason");
}

TEST(GuardedProfileUpdater, GivesTheTextOfAStandardException) {
  EXPECT_EQ(reasonOfFailure([] { throw std::out_of_range("position 7"); }), "position 7");
}

TEST(GuardedProfileUpdater, AnEmptyReasonIsAReason) {
  EXPECT_EQ(reasonOfFailure([] { throw ATException("AName", ""); }), "");
}

TEST(GuardedProfileUpdater, ALackOfMemoryIsNotCaught) {
  EXPECT_THROW(reasonOfFailure([] { throw std::bad_alloc(); }), std::bad_alloc);
  EXPECT_THROW(reasonOfFailure([] { throw std::bad_array_new_length(); }), std::bad_alloc);
}

TEST(GuardedProfileUpdater, TheEndOfTheBudgetIsNotCaught) {
  EXPECT_THROW(reasonOfFailure([] { throw BudgetExceeded(); }), BudgetExceeded);
}

TEST(GuardedProfileUpdater, CatchesWhatIsNoExceptionClass) {
  struct Anything {};
  EXPECT_NE(reasonOfFailure([] { throw 42; }), std::nullopt);
  EXPECT_NE(reasonOfFailure([] { throw "text"; }), std::nullopt);
  EXPECT_NE(reasonOfFailure([] { throw Anything(); }), std::nullopt);
}

TEST(GuardedProfileUpdater, LeavesWhatWasChangedBeforeTheFailure) {
  int changed = 0;
  reasonOfFailure([&] {
    changed = 1;
    throw std::runtime_error("broken");
  });
  EXPECT_EQ(changed, 1);
}
