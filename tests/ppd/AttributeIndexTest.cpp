// SPDX-License-Identifier: MIT
#include "ppd/AttributeIndex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

ATPPDAttribute& addTo(AttributeIndex& index, std::vector<std::shared_ptr<ATPPDAttribute>>& owner, const char* line,
                      AttributeIndex::List::Position position) {
  owner.push_back(ATPPDAttribute::attributeWithString(line));
  index.add(*owner.back(), position);
  return *owner.back();
}

class AttributeIndexTest : public testing::Test {
 protected:
  ATPPDAttribute& add(const char* line, AttributeIndex::List::Position position) {
    return addTo(index_, owner_, line, position);
  }

  AttributeIndex index_;
  std::vector<std::shared_ptr<ATPPDAttribute>> owner_;
};

}  // namespace

TEST_F(AttributeIndexTest, FindsByNameWithAnySpecOrNone) {
  add("*Foo: x\n", 1);
  add("*Foo Bar: x\n", 2);
  add("*Baz Bar: x\n", 3);
  EXPECT_THAT(index_.find("Foo", std::nullopt), ElementsAre(1, 2));
  EXPECT_THAT(index_.find("Baz", std::nullopt), ElementsAre(3));
  EXPECT_THAT(index_.find("foo", std::nullopt), IsEmpty());
}

TEST_F(AttributeIndexTest, FindsByNameAndSpec) {
  add("*Foo: x\n", 1);
  add("*Foo Bar: x\n", 2);
  add("*Foo Baz: x\n", 3);
  add("*Foo Bar/Text: x\n", 4);
  EXPECT_THAT(index_.find("Foo", "Bar"), ElementsAre(2, 4));
  EXPECT_THAT(index_.find("Foo", "bar"), IsEmpty());
  EXPECT_THAT(index_.find("Foo", ""), IsEmpty());
}

TEST_F(AttributeIndexTest, KeepsNameAndSpecApart) {
  add("*AB C: x\n", 1);
  add("*A BC: x\n", 2);
  add("*A B C: x\n", 3);
  EXPECT_THAT(index_.find("AB", "C"), ElementsAre(1));
  EXPECT_THAT(index_.find("A", "BC"), ElementsAre(2));
  EXPECT_THAT(index_.find("A", "B C"), ElementsAre(3));
}

TEST_F(AttributeIndexTest, LeavesOutAttributesWithoutAName) {
  add("*: x\n", 1);
  EXPECT_THAT(index_.find("", std::nullopt), IsEmpty());
}

TEST_F(AttributeIndexTest, RemovesFromBothLookUps) {
  ATPPDAttribute& first = add("*Foo Bar: x\n", 1);
  add("*Foo Bar: y\n", 2);
  index_.remove(first, 1);
  EXPECT_THAT(index_.find("Foo", std::nullopt), ElementsAre(2));
  EXPECT_THAT(index_.find("Foo", "Bar"), ElementsAre(2));
}

TEST_F(AttributeIndexTest, AChangedValueOrTextChangesNothing) {
  ATPPDAttribute& attribute = add("*Foo Bar: x\n", 1);
  attribute.setValue("y");
  attribute.setText("Text");
  EXPECT_THAT(index_.find("Foo", "Bar"), ElementsAre(1));
  index_.remove(attribute, 1);
  EXPECT_THAT(index_.find("Foo", "Bar"), IsEmpty());
  EXPECT_THAT(index_.find("Foo", std::nullopt), IsEmpty());
}
