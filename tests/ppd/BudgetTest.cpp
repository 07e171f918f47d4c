// SPDX-License-Identifier: MIT
#include "ppd/lists/Budget.h"

#include <gtest/gtest.h>

TEST(Budget, HoldsAllThatARunMayNeed) {
  const Budget budget;
  EXPECT_EQ(budget.left().lines, Budget::kAll.lines);
  EXPECT_EQ(budget.left().options, Budget::kAll.options);
  EXPECT_EQ(budget.left().statements, Budget::kAll.statements);
  EXPECT_EQ(budget.left().bytes, Budget::kAll.bytes);
  EXPECT_EQ(budget.left().visits, Budget::kAll.visits);
}

TEST(Budget, EachAmountIsSpentByItself) {
  Budget budget;
  budget.restore({2, 5, 3, 10, 1});
  budget.readLine();
  EXPECT_EQ(budget.left().lines, 1U);
  budget.addOptions(4);
  EXPECT_EQ(budget.left().options, 1U);
  budget.changeStatement(7);
  EXPECT_EQ(budget.left().statements, 2U);
  EXPECT_EQ(budget.left().bytes, 3U);
  budget.visit();
  EXPECT_EQ(budget.left().visits, 0U);
}

TEST(Budget, EachAmountHasAnEnd) {
  Budget budget;
  budget.restore({1, 1, 1, 10, 1});
  EXPECT_NO_THROW(budget.readLine());
  EXPECT_THROW(budget.readLine(), BudgetExceeded);
  EXPECT_NO_THROW(budget.addOptions(1));
  EXPECT_THROW(budget.addOptions(1), BudgetExceeded);
  EXPECT_NO_THROW(budget.visit());
  EXPECT_THROW(budget.visit(), BudgetExceeded);
  EXPECT_NO_THROW(budget.changeStatement(10));
  EXPECT_THROW(budget.changeStatement(0), BudgetExceeded);
  budget.restore({1, 1, 2, 10, 1});
  EXPECT_THROW(budget.changeStatement(11), BudgetExceeded);
}

TEST(Budget, WhatIsNeededIsNotSpent) {
  Budget budget;
  budget.restore({0, 0, 0, 10, 0});
  EXPECT_NO_THROW(budget.needBytes(10));
  EXPECT_NO_THROW(budget.needBytes(10));
  EXPECT_THROW(budget.needBytes(11), BudgetExceeded);
}

TEST(Budget, WhatIsTooMuchAtOnceIsNotTaken) {
  Budget budget;
  budget.restore({0, 3, 0, 0, 0});
  EXPECT_THROW(budget.addOptions(4), BudgetExceeded);
  EXPECT_NO_THROW(budget.addOptions(3));
}

TEST(Budget, ItsEndHasANameAndAReason) {
  EXPECT_EQ(BudgetExceeded().name(), "ATBudgetException");
  EXPECT_EQ(BudgetExceeded().reason(), "more is asked for than any real device has a use for");
}
