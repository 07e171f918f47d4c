// SPDX-License-Identifier: MIT
#include "base/Budget.h"

#include <gtest/gtest.h>

TEST(Budget, HoldsSoManyStatements) {
  Budget budget;
  EXPECT_NO_THROW(budget.spend(Budget::kStatements - 1, 0));
  EXPECT_NO_THROW(budget.spend(1, 0));
  EXPECT_NO_THROW(budget.spend(0, 0));
  EXPECT_THROW(budget.spend(1, 0), BudgetExceeded);
}

TEST(Budget, HoldsSoManyBytes) {
  Budget budget;
  EXPECT_NO_THROW(budget.spend(1, Budget::kBytes));
  EXPECT_THROW(budget.spend(1, 1), BudgetExceeded);
}

TEST(Budget, ItsEndHasANameAndAReason) {
  EXPECT_EQ(BudgetExceeded().name(), "ATBudgetException");
  EXPECT_EQ(BudgetExceeded().reason(), "more is asked for than any real device has a use for");
}

TEST(Budget, WhatIsTooMuchAtOnceIsNotTaken) {
  Budget budget;
  EXPECT_THROW(budget.spend(Budget::kStatements + 1, 0), BudgetExceeded);
  EXPECT_THROW(budget.spend(1, Budget::kBytes + 1), BudgetExceeded);
  EXPECT_NO_THROW(budget.spend(Budget::kStatements, Budget::kBytes));
}
