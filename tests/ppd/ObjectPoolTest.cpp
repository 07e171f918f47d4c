// SPDX-License-Identifier: MIT
#include "ppd/lists/ObjectPool.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <stdexcept>
#include <vector>

namespace {

/// Counts how many of its kind there are; none is made of a negative number.
class Counted {
 public:
  explicit Counted(int given) : number(given) {
    if (given < 0) throw std::runtime_error("refused");
    ++count;
  }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  ~Counted() { --count; }

  const int number;
  static int count;
};

int Counted::count = 0;

}  // namespace

TEST(ObjectPool, MakesEachObjectOfWhatIsGivenAtAPlaceOfItsOwn) {
  ObjectPool<Counted> pool;
  std::vector<std::shared_ptr<Counted>> objects;
  std::set<const Counted*> places;
  for (int number = 0; number < 500; ++number) {
    objects.push_back(pool.make(number));
    places.insert(objects.back().get());
  }
  EXPECT_EQ(places.size(), 500U);
  for (int number = 0; number < 500; ++number) EXPECT_EQ(objects[static_cast<std::size_t>(number)]->number, number);
}

TEST(ObjectPool, ObjectsOutliveThePool) {
  ASSERT_EQ(Counted::count, 0);
  std::shared_ptr<Counted> last;
  {
    ObjectPool<Counted> pool;
    for (int number = 0; number < 3; ++number) last = pool.make(number);
  }
  EXPECT_EQ(last->number, 2);
  last.reset();
  EXPECT_EQ(Counted::count, 0);
}

TEST(ObjectPool, EightObjectsGoWithTheLastOfThem) {
  ObjectPool<Counted> pool;
  std::vector<std::shared_ptr<Counted>> objects;
  for (int number = 0; number < 17; ++number) objects.push_back(pool.make(number));
  objects.erase(objects.begin(), objects.begin() + 7);
  EXPECT_EQ(Counted::count, 17) << "the eighth still needs their place";
  objects.erase(objects.begin());
  EXPECT_EQ(Counted::count, 9);
}

TEST(ObjectPool, AnObjectThatCannotBeMadeLeavesTheOthersAsTheyAre) {
  ObjectPool<Counted> pool;
  const auto first = pool.make(1);
  EXPECT_THROW(pool.make(-1), std::runtime_error);
  const auto second = pool.make(2);
  EXPECT_EQ(first->number, 1);
  EXPECT_EQ(second->number, 2);
}
