// SPDX-License-Identifier: MIT
#include "ppd/lists/NameIndex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <utility>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::nullopt_t null = std::nullopt;

// Counts how often it is asked.
struct Thing : Listed<Thing> {
  std::optional<std::string> itsName;
  mutable int asked = 0;

  std::optional<std::string_view> name() const {
    ++asked;
    return itsName;
  }
};

using Pointer = std::shared_ptr<Thing>;
using List = ObjectList<Thing>;
using Index = NameIndex<Thing>;

Pointer thing(std::optional<std::string> name) {
  auto thing = std::make_shared<Thing>();
  thing->itsName = std::move(name);
  return thing;
}

struct NameIndexTest : testing::Test {
  List list;
  Index index;

  Pointer add(std::optional<std::string> name) {
    auto added = thing(std::move(name));
    list.append(added);
    return added;
  }
  Pointer first(std::string_view name) {
    const auto position = index.first(list, name);
    return position ? list.at(*position) : nullptr;
  }
  void remove(const Pointer& object) { list.removeAt(*list.positionOf(object.get())); }
};

}  // namespace

TEST_F(NameIndexTest, FindsNothingInAnEmptyList) {
  EXPECT_EQ(first("A"), nullptr);
  EXPECT_EQ(first(""), nullptr);
}

TEST_F(NameIndexTest, FindsTheFirstOfAName) {
  const Pointer a = add("A");
  const Pointer b = add("B");
  add("A");
  for (int time = 0; time < 5; ++time) {
    EXPECT_EQ(first("B"), b);
    EXPECT_EQ(first("A"), a);
    EXPECT_EQ(first("C"), nullptr);
  }
}

TEST_F(NameIndexTest, ComparesNamesExactly) {
  add("Foo");
  EXPECT_EQ(first("foo"), nullptr);
  EXPECT_EQ(first("Fo"), nullptr);
  EXPECT_EQ(first("Foo "), nullptr);
  EXPECT_EQ(first(""), nullptr);
}

TEST_F(NameIndexTest, TheEmptyNameIsANameAndNoNameIsNone) {
  add(null);
  const Pointer empty = add("");
  EXPECT_EQ(first(""), empty);
  EXPECT_EQ(first(""), empty);
}

TEST_F(NameIndexTest, AsksNothingBehindTheFirstMatch) {
  const Pointer a = add("A");
  const Pointer b = add("B");
  const Pointer c = add("C");
  ASSERT_EQ(first("B"), b);
  EXPECT_GT(a->asked, 0);
  EXPECT_GT(b->asked, 0);
  EXPECT_EQ(c->asked, 0);
  ASSERT_EQ(first("A"), a);
  ASSERT_EQ(first("B"), b);
  EXPECT_EQ(c->asked, 0);
  c->itsName = "X";
  EXPECT_EQ(first("X"), c);
}

TEST_F(NameIndexTest, AsksAnObjectThatHasANameOnce) {
  const Pointer a = add("A");
  for (int time = 0; time < 5; ++time) {
    EXPECT_EQ(first("A"), a);
    EXPECT_EQ(first("B"), nullptr);
  }
  EXPECT_EQ(a->asked, 1);
}

TEST_F(NameIndexTest, FindsWhatWasAppendedAfterALookUp) {
  EXPECT_EQ(first("A"), nullptr);
  const Pointer a = add("A");
  EXPECT_EQ(first("A"), a);
  EXPECT_EQ(first("B"), nullptr);
  const Pointer b = add("B");
  add("A");
  EXPECT_EQ(first("B"), b);
  EXPECT_EQ(first("A"), a);
}

TEST_F(NameIndexTest, DoesNotFindWhatWasRemoved) {
  const Pointer first1 = add("A");
  const Pointer second = add("A");
  const Pointer third = add("A");
  ASSERT_EQ(first("A"), first1);
  remove(first1);
  EXPECT_EQ(first("A"), second);
  remove(third);
  EXPECT_EQ(first("A"), second);
  remove(second);
  EXPECT_EQ(first("A"), nullptr);
  list.append(first1);
  EXPECT_EQ(first("A"), first1);
}

TEST_F(NameIndexTest, PassesOverWhatWasRemovedBeforeItWasAsked) {
  const Pointer a = add("A");
  const Pointer again = add("A");
  remove(a);
  EXPECT_EQ(first("A"), again);
  EXPECT_EQ(a->asked, 0);
}

TEST_F(NameIndexTest, AnObjectIsFoundByTheNameThatItGetsLater) {
  for (const int lookUps : {1, 5}) {
    const Pointer nameless = add(null);
    const Pointer later = add("N" + std::to_string(lookUps));
    const std::string name = *later->itsName;
    for (int time = 0; time < lookUps; ++time) {
      ASSERT_EQ(first(name), later);
      ASSERT_EQ(first("none"), nullptr);
    }
    nameless->itsName = name;
    EXPECT_EQ(first(name), nameless);
    EXPECT_EQ(first(name), nameless);
    remove(nameless);
    EXPECT_EQ(first(name), later);
  }
}

TEST_F(NameIndexTest, ANamelessObjectThatWasRemovedIsNotAsked) {
  const Pointer nameless = add(null);
  ASSERT_EQ(first("A"), nullptr);
  remove(nameless);
  const int asked = nameless->asked;
  nameless->itsName = "A";
  EXPECT_EQ(first("A"), nullptr);
  EXPECT_EQ(nameless->asked, asked);
}

TEST_F(NameIndexTest, AnObjectMayStandTwice) {
  const Pointer twice = add("A");
  const Pointer other = add("A");
  list.append(twice);
  ASSERT_EQ(first("A"), twice);
  remove(twice);
  EXPECT_EQ(first("A"), other);
  remove(other);
  EXPECT_EQ(first("A"), twice);
}

TEST_F(NameIndexTest, AsksWhatHadNoNameOnlyAsFarAsAWalkComes) {
  const Pointer early = add(null);
  const Pointer a = add("A");
  const Pointer late = add(null);
  ASSERT_EQ(first("none"), nullptr);
  const int asked = late->asked;
  late->itsName = "A";
  EXPECT_EQ(first("A"), a);
  EXPECT_EQ(late->asked, asked);
  early->itsName = "B";
  EXPECT_EQ(first("B"), early);
  EXPECT_EQ(late->asked, asked);
  remove(a);
  EXPECT_EQ(first("A"), late);
}

TEST_F(NameIndexTest, GoesThroughAllOfAName) {
  add("A");
  add("B");
  add("A");
  add(null);
  add("A");
  EXPECT_THAT(index.of("A").positions, IsEmpty());
  EXPECT_EQ(index.askNext(list, "A"), 1U);
  EXPECT_THAT(index.of("A").positions, ElementsAre(1));
  EXPECT_EQ(index.askNext(list, "A"), 3U);
  EXPECT_EQ(index.askNext(list, "A"), 5U);
  EXPECT_EQ(index.askNext(list, "A"), null);
  EXPECT_THAT(index.of("A").positions, ElementsAre(1, 3, 5));
  EXPECT_THAT(index.of("B").positions, ElementsAre(2));
  EXPECT_EQ(index.namelessFrom(0), 4U);
  EXPECT_EQ(index.namelessFrom(5), null);
}

TEST_F(NameIndexTest, CountsTheNamesThatCameLater) {
  const Pointer nameless = add(null);
  add("A");
  index.askAll(list, "A");
  EXPECT_EQ(index.of("A").cameLater, 0U);
  nameless->itsName = "A";
  index.askAll(list, "B");
  EXPECT_EQ(index.of("A").cameLater, 1U);
  EXPECT_THAT(index.of("A").positions, ElementsAre(1, 2));
  EXPECT_EQ(index.namelessFrom(0), null);
}

TEST_F(NameIndexTest, SpendsAVisitForEachObjectThatIsAsked) {
  Budget budget;
  List spending(&budget);
  for (const char* name : {"A", "B", "C"}) spending.append(thing(name));
  budget.restore({0, 0, 0, 0, 4});
  EXPECT_EQ(index.first(spending, "B"), 2U);
  EXPECT_EQ(budget.left().visits, 2U);
  EXPECT_EQ(index.first(spending, "B"), 2U);
  EXPECT_EQ(budget.left().visits, 1U);
  EXPECT_EQ(index.first(spending, "C"), 3U);
  EXPECT_THROW(index.first(spending, "A"), BudgetExceeded);
}

TEST(NameIndex, EqualsAWalkUnderRandomEdits) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    std::mt19937 random(seed);
    const auto below = [&random](std::size_t limit) { return std::size_t{random()} % limit; };
    const auto anyName = [&] { return std::string(1, static_cast<char>('a' + below(6))); };
    List list;
    Index index;
    const auto anyThing = [&]() -> Pointer {
      return list.empty() ? nullptr : list.at(list.positionOfIndex(below(list.size())));
    };
    for (int step = 0; step < 200; ++step) {
      SCOPED_TRACE(testing::Message() << "seed " << seed << ", step " << step);
      const Pointer any = anyThing();
      switch (below(6)) {
        case 0:
          list.append(thing(below(4) == 0 ? std::optional<std::string>() : anyName()));
          break;
        case 1:
          if (any != nullptr) list.append(any);
          break;
        case 2:
          if (any != nullptr) list.removeAt(*list.positionOf(any.get()));
          break;
        case 3:
          if (any != nullptr && !any->itsName) any->itsName = anyName();
          break;
        default: {
          const std::string name = anyName();
          std::optional<List::Position> expected;
          const auto askedBehind = [&] {  // objects that a walk does not come to
            int asked = 0;
            for (const auto& object : list) {
              if (expected && *list.positionOf(object.get()) > *expected) asked += object->asked;
            }
            return asked;
          };
          for (List::Position position = 1; position < list.positionsEnd() && !expected; ++position) {
            if (list.at(position) != nullptr && list.at(position)->itsName == name) expected = position;
          }
          const int asked = askedBehind();
          ASSERT_EQ(index.first(list, name), expected) << name;
          ASSERT_EQ(askedBehind(), asked) << name;
        }
      }
    }
  }
}
