// SPDX-License-Identifier: MIT
#include "ppd/lists/ObjectList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <random>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct Thing : Listed<Thing> {
  explicit Thing(int given) : value(given) {}
  int value;
};
bool operator==(const Thing& thing, int value) {
  return thing.value == value;
}

using List = ObjectList<Thing>;
using Pointer = std::shared_ptr<Thing>;

Pointer object(int value) {
  return std::make_shared<Thing>(value);
}

std::vector<int> valuesOf(const List& list) {
  std::vector<int> values;
  for (const Pointer& each : list) values.push_back(each->value);
  return values;
}

std::vector<Pointer> objectsOf(const List& list) {
  return {list.begin(), list.end()};
}

}  // namespace

TEST(ObjectList, IsEmptyAtFirst) {
  const List list;
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(list.size(), 0U);
  EXPECT_THAT(valuesOf(list), IsEmpty());
  EXPECT_EQ(list.positionOf(object(1).get()), std::nullopt);
}

TEST(ObjectList, AppendedObjectsStandInOrder) {
  List list;
  for (int value = 1; value <= 3; ++value) list.append(object(value));
  EXPECT_THAT(valuesOf(list), ElementsAre(1, 2, 3));
  EXPECT_EQ(list.size(), 3U);
  EXPECT_EQ(**list.begin(), 1);
  EXPECT_EQ(*list.back(), 3);
  EXPECT_EQ(*list.at(list.lastPosition()), 3);
}

TEST(ObjectList, PositionsOfAppendedObjectsAreInListOrder) {
  List list;
  const auto first = list.append(object(1));
  const auto second = list.append(object(2));
  EXPECT_LT(first, second);
  EXPECT_EQ(list.positionOfIndex(0), first);
}

TEST(ObjectList, InsertsBeforeAndAfterAnObject) {
  List list;
  const auto middle = list.append(object(5));
  list.insertBefore(middle, object(4));
  list.insertAfter(middle, object(6));
  list.insertBefore(middle, object(45));
  list.insertAfter(list.lastPosition(), object(7));
  EXPECT_THAT(valuesOf(list), ElementsAre(4, 45, 5, 6, 7));
  EXPECT_EQ(*list.at(middle), 5);
}

TEST(ObjectList, FindsThePositionOfAnIndexFromBothEnds) {
  List list;
  for (int value = 0; value < 7; ++value) list.append(object(value));
  for (std::size_t index = 0; index < 7; ++index) {
    EXPECT_EQ(*list.at(list.positionOfIndex(index)), static_cast<int>(index));
  }
  list.insertBefore(list.positionOfIndex(7), object(7));
  EXPECT_EQ(*list.back(), 7);
}

TEST(ObjectList, PositionOfIndexZeroInAnEmptyListIsItsEnd) {
  List list;
  list.insertBefore(list.positionOfIndex(0), object(1));
  EXPECT_THAT(valuesOf(list), ElementsAre(1));
}

TEST(ObjectList, FindsObjectsByIdentity) {
  List list;
  const Pointer one = object(1);
  const Pointer equal = object(1);
  const auto position = list.append(one);
  EXPECT_EQ(list.positionOf(one.get()), position);
  EXPECT_EQ(list.positionOf(equal.get()), std::nullopt);
  EXPECT_EQ(list.positionOf(nullptr), std::nullopt);
}

TEST(ObjectList, FindsObjectsThatCameAfterTheFirstQuestion) {
  List list;
  const Pointer one = object(1);
  list.append(one);
  ASSERT_TRUE(list.positionOf(one.get()));
  const Pointer two = object(2);
  const auto position = list.insertBefore(list.positionOfIndex(0), two);
  EXPECT_EQ(list.positionOf(two.get()), position);
}

TEST(ObjectList, RemovesAtThePosition) {
  List list;
  const Pointer two = object(2);
  list.append(object(1));
  list.append(two);
  list.append(object(3));
  list.removeAt(*list.positionOf(two.get()));
  EXPECT_THAT(valuesOf(list), ElementsAre(1, 3));
  EXPECT_EQ(list.size(), 2U);
  EXPECT_EQ(list.positionOf(two.get()), std::nullopt);
  EXPECT_EQ(two.use_count(), 1);
}

TEST(ObjectList, AnObjectMayStandTwiceAndIsRemovedOnce) {
  List list;
  const Pointer one = object(1);
  list.append(one);
  list.append(object(2));
  list.append(one);
  EXPECT_EQ(list.positionOf(one.get()), list.positionOfIndex(0));
  list.removeAt(*list.positionOf(one.get()));
  EXPECT_THAT(valuesOf(list), ElementsAre(2, 1));
  list.removeAt(*list.positionOf(one.get()));
  EXPECT_THAT(valuesOf(list), ElementsAre(2));
  EXPECT_EQ(list.positionOf(one.get()), std::nullopt);
}

TEST(ObjectList, OfAnObjectThatStandsTwiceTheFirstInListOrderIsFoundWhicheverCameFirst) {
  for (const bool asked : {false, true}) {
    List list;
    const Pointer twice = object(1);
    const auto behind = list.append(twice);
    if (asked) {
      ASSERT_EQ(list.positionOf(twice.get()), behind);
    }
    list.insertBefore(behind, object(2));
    const auto front = list.insertBefore(list.positionOfIndex(0), twice);
    list.insertAfter(front, object(3));
    ASSERT_THAT(valuesOf(list), ElementsAre(1, 3, 2, 1));
    EXPECT_EQ(list.positionOf(twice.get()), front);
    list.removeAt(*list.positionOf(twice.get()));
    EXPECT_THAT(valuesOf(list), ElementsAre(3, 2, 1));
    EXPECT_EQ(list.positionOf(twice.get()), behind);
    list.removeAt(behind);
    EXPECT_EQ(list.positionOf(twice.get()), std::nullopt);
    const auto again = list.append(twice);
    EXPECT_EQ(list.positionOf(twice.get()), again);
  }
}

TEST(ObjectList, OtherObjectsAreFoundWhileOneStandsTwice) {
  List list;
  const Pointer twice = object(1);
  const Pointer other = object(2);
  list.append(twice);
  list.append(twice);
  ASSERT_TRUE(list.positionOf(twice.get()));
  const auto position = list.insertAfter(list.positionOfIndex(0), other);
  EXPECT_EQ(list.positionOf(other.get()), position);
  EXPECT_EQ(list.positionOf(object(3).get()), std::nullopt);
  list.removeAt(position);
  EXPECT_EQ(list.positionOf(other.get()), std::nullopt);
}

TEST(ObjectList, IsAppendedToBehindWhateverWasEditedInTheMiddle) {
  List list;
  const auto one = list.append(object(1));
  list.insertBefore(one, object(0));
  const auto two = list.append(object(2));
  list.insertAfter(one, object(15));
  list.removeAt(one);
  list.append(object(3));
  list.removeAt(two);
  list.append(object(4));
  EXPECT_THAT(valuesOf(list), ElementsAre(0, 15, 3, 4));
  EXPECT_EQ(*list.back(), 4);
  list.removeAt(list.lastPosition());
  EXPECT_EQ(*list.back(), 3);
  EXPECT_EQ(list.at(one), nullptr);
}

TEST(ObjectList, GivesOutPositionsInTheOrderOfInsertionAndNeverAgain) {
  List list;
  EXPECT_EQ(list.positionsEnd(), 1U);
  const auto one = list.append(object(1));
  const auto two = list.insertBefore(one, object(2));
  list.removeAt(two);
  list.removeAt(one);
  const auto three = list.append(object(3));
  EXPECT_EQ((std::vector{one, two, three}), (std::vector<List::Position>{1, 2, 3}));
  EXPECT_EQ(list.positionsEnd(), 4U);
  EXPECT_EQ(list.at(one), nullptr);
}

TEST(ObjectList, CanBeEmptiedAndFilledAgain) {
  List list;
  const Pointer one = object(1);
  list.append(one);
  list.removeAt(*list.positionOf(one.get()));
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(list.begin(), list.end());
  const Pointer two = object(2);
  list.append(two);
  list.append(one);
  EXPECT_THAT(valuesOf(list), ElementsAre(2, 1));
  EXPECT_TRUE(list.positionOf(one.get()));
  EXPECT_TRUE(list.positionOf(two.get()));
}

TEST(ObjectList, ACopyIsEditedOnItsOwn) {
  List list;
  const Pointer one = object(1);
  list.append(one);
  ASSERT_TRUE(list.positionOf(one.get()));
  List copy = list;
  copy.append(object(2));
  copy.removeAt(*copy.positionOf(one.get()));
  EXPECT_THAT(valuesOf(copy), ElementsAre(2));
  EXPECT_THAT(valuesOf(list), ElementsAre(1));
  EXPECT_TRUE(list.positionOf(one.get()));
}

// Every edit is made on a plain vector too; both must stay equal.
TEST(ObjectList, EqualsAPlainVectorUnderRandomEdits) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    const bool repeated = seed % 2 == 0;  // whether objects may stand in the list more than once
    std::mt19937 random(seed);
    const auto below = [&random](std::size_t limit) { return std::size_t{random()} % limit; };
    List list;
    std::vector<Pointer> model;
    for (int step = 0; step < 300; ++step) {
      const std::size_t index = below(model.size() + 1);
      const bool hasObject = index < model.size();
      const bool again = repeated && hasObject && below(3) == 0;
      const Pointer added = again ? model[index] : object(step);
      switch (below(6)) {
        case 0:
          list.append(added);
          model.push_back(added);
          break;
        case 1:
          list.insertBefore(list.positionOfIndex(index), added);
          model.insert(model.begin() + static_cast<std::ptrdiff_t>(index), added);
          break;
        case 2:
          if (!hasObject) break;
          list.insertAfter(list.positionOfIndex(index), added);
          model.insert(model.begin() + static_cast<std::ptrdiff_t>(index) + 1, added);
          break;
        case 3:
          if (hasObject) {
            const auto first = std::find(model.begin(), model.end(), model[index]) - model.begin();
            EXPECT_EQ(list.positionOf(model[index].get()), list.positionOfIndex(static_cast<std::size_t>(first)));
          }
          EXPECT_EQ(list.positionOf(object(step).get()), std::nullopt);
          break;
        default:
          if (!hasObject) break;
          list.removeAt(*list.positionOf(model[index].get()));
          model.erase(std::find(model.begin(), model.end(), Pointer(model[index])));
      }
      ASSERT_EQ(objectsOf(list), model) << "seed " << seed << ", step " << step;
      ASSERT_EQ(list.size(), model.size());
    }
  }
}

TEST(ObjectList, AnObjectMayStandInSeveralLists) {
  List list;
  List other;
  const Pointer one = object(1);
  const Pointer two = object(2);
  other.append(object(3));
  list.append(one);
  list.append(two);
  other.append(two);
  other.append(one);
  EXPECT_EQ(list.positionOf(one.get()), 1U);
  EXPECT_EQ(list.positionOf(two.get()), 2U);
  EXPECT_EQ(other.positionOf(one.get()), 3U);
  list.removeAt(1);
  EXPECT_EQ(list.positionOf(one.get()), std::nullopt);
  EXPECT_EQ(other.positionOf(one.get()), 3U);
  other.removeAt(3);
  list.append(one);
  list.append(one);
  list.removeAt(*list.positionOf(one.get()));
  EXPECT_THAT(valuesOf(list), ElementsAre(2, 1));
  EXPECT_EQ(list.positionOf(one.get()), 4U);
}

TEST(ObjectList, WithABudgetSpendsAVisitForEachObjectThatIsComeTo) {
  Budget budget;
  List list(&budget);
  for (int value = 1; value <= 3; ++value) list.append(object(value));
  EXPECT_EQ(budget.left().visits, Budget::kAll.visits);
  EXPECT_THAT(valuesOf(list), ElementsAre(1, 2, 3));
  EXPECT_EQ(Budget::kAll.visits - budget.left().visits, 3U);
  list.at(2);
  EXPECT_EQ(Budget::kAll.visits - budget.left().visits, 4U);
  list.found(2);
  EXPECT_EQ(Budget::kAll.visits - budget.left().visits, 4U);
  budget.restore({0, 0, 0, 0, 2});
  EXPECT_THROW(valuesOf(list), BudgetExceeded);
}

TEST(ObjectList, StaysUsableWhenItsObjectsWereTakenOver) {
  List list;
  list.append(object(1));
  List other = std::move(list);
  list.append(object(2));  // NOLINT(bugprone-use-after-move): that is what is tested
  EXPECT_EQ(other.size(), 1U);
  EXPECT_EQ(*other.back(), 1);
  EXPECT_EQ(*list.back(), 2);
}
