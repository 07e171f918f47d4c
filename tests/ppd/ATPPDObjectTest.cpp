// SPDX-License-Identifier: MIT
#include "ppd/document/ATPPDObject.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <typeinfo>

#include "ppd/document/ATPPDAttribute.h"
#include "ppd/document/ATPPDChoice.h"
#include "tests/ppd/TestSupport.h"

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::linesOf;

TEST(ATPPDObject, HasNoLinesAtFirst) {
  const ATPPDObject object;
  EXPECT_THAT(linesOf(object), IsEmpty());
  EXPECT_TRUE(object.container().empty());
}

TEST(ATPPDObject, KeepsLinesOfEveryTypeInOrder) {
  ATPPDObject object;
  TestSupport::Texts expected;
  for (int type = -1; type <= 16; ++type) {
    expected.push_back("line of type " + std::to_string(type) + "\r\n");
    object.addString(expected.back(), static_cast<PPDLineType>(type));
  }
  EXPECT_EQ(linesOf(object), expected);
  EXPECT_EQ(TestSupport::textsOf(object.container()), expected);
}

TEST(ATPPDObject, ObjectWithStringHoldsTheLine) {
  EXPECT_THAT(linesOf(*ATPPDObject::objectWithString("*% x\n", PPDLineTypeComment)), ElementsAre("*% x\n"));
}

TEST(ATPPDObject, ObjectWithStringIsPlainAlsoFromASubclass) {
  const auto fromAttribute = ATPPDAttribute::objectWithString("*Foo: x\n", PPDLineTypeStatement);
  const auto fromChoice = ATPPDChoice::objectWithString("*Foo x: \"\"\n", PPDLineTypeChoice);
  const ATPPDObject& one = *fromAttribute;
  const ATPPDObject& other = *fromChoice;
  EXPECT_EQ(typeid(one), typeid(ATPPDObject));
  EXPECT_EQ(typeid(other), typeid(ATPPDObject));
}

TEST(ATPPDObject, StringsAreANewList) {
  ATPPDObject object;
  object.addString("one\n", PPDLineTypeStatement);
  auto strings = object.strings();
  strings.clear();
  EXPECT_THAT(linesOf(object), ElementsAre("one\n"));
}
