// SPDX-License-Identifier: MIT
#include "ppd/NameIndex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;

TEST(NameIndex, FindsNothingAtFirst) {
  EXPECT_THAT(NameIndex().find("Foo"), IsEmpty());
}

TEST(NameIndex, FindsThePositionsOfANameInAscendingOrder) {
  NameIndex index;
  index.add("Foo", 7);
  index.add("Bar", 5);
  index.add("Foo", 3);
  EXPECT_THAT(index.find("Foo"), ElementsAre(3, 7));
  EXPECT_THAT(index.find("Bar"), ElementsAre(5));
}

TEST(NameIndex, ComparesNamesExactly) {
  NameIndex index;
  index.add("Foo", 1);
  EXPECT_THAT(index.find("foo"), IsEmpty());
  EXPECT_THAT(index.find("Fo"), IsEmpty());
  EXPECT_THAT(index.find("Foo "), IsEmpty());
  EXPECT_THAT(index.find(""), IsEmpty());
}

TEST(NameIndex, TheEmptyNameIsAName) {
  NameIndex index;
  index.add("", 4);
  EXPECT_THAT(index.find(""), ElementsAre(4));
}

TEST(NameIndex, RemovesOnePositionOfAName) {
  NameIndex index;
  index.add("Foo", 1);
  index.add("Foo", 2);
  index.remove("Foo", 1);
  EXPECT_THAT(index.find("Foo"), ElementsAre(2));
  index.remove("Foo", 2);
  EXPECT_THAT(index.find("Foo"), IsEmpty());
  index.add("Foo", 3);
  EXPECT_THAT(index.find("Foo"), ElementsAre(3));
}

TEST(NameIndex, RemovingWhatIsNotThereChangesNothing) {
  NameIndex index;
  index.add("Foo", 1);
  index.remove("Bar", 1);
  index.remove("Foo", 2);
  EXPECT_THAT(index.find("Foo"), ElementsAre(1));
}
