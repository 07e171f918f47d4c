// SPDX-License-Identifier: MIT
#include "ppd/FirstByName.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

class Named {
 public:
  explicit Named(std::string name) : name_(std::move(name)) {}
  const std::string& name() const { return name_; }

 private:
  std::string name_;
};

using Objects = std::vector<std::shared_ptr<Named>>;

Objects objectsNamed(const std::vector<std::string>& names) {
  Objects objects;
  for (const std::string& name : names) objects.push_back(std::make_shared<Named>(name));
  return objects;
}

}  // namespace

TEST(FirstByName, FindsTheFirstHoweverOftenItIsAsked) {
  const FirstByName<Named> first;
  const Objects objects = objectsNamed({"A", "B", "", "A", "b"});
  for (std::size_t time = 0; time < 3 * kWalksBeforeIndex; ++time) {
    EXPECT_EQ(first.find(objects, "A"), objects[0]);
    EXPECT_EQ(first.find(objects, "B"), objects[1]);
    EXPECT_EQ(first.find(objects, ""), objects[2]);
    EXPECT_EQ(first.find(objects, "b"), objects[4]);
    EXPECT_EQ(first.find(objects, "C"), nullptr);
  }
}

TEST(FirstByName, FindsNothingAmongNoObjects) {
  const FirstByName<Named> first;
  for (std::size_t time = 0; time < 3 * kWalksBeforeIndex; ++time) EXPECT_EQ(first.find(Objects{}, "A"), nullptr);
}

TEST(FirstByName, FindsAmongOtherObjectsAfterForgetting) {
  const FirstByName<Named> first;
  Objects objects = objectsNamed({"A", "B"});
  for (std::size_t time = 0; time < 2 * kWalksBeforeIndex; ++time) EXPECT_EQ(first.find(objects, "A"), objects[0]);
  objects = objectsNamed({"C", "A"});
  first.forget();
  EXPECT_EQ(first.find(objects, "A"), objects[1]);
  EXPECT_EQ(first.find(objects, "B"), nullptr);
  EXPECT_EQ(first.find(objects, "C"), objects[0]);
}
