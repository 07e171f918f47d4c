// SPDX-License-Identifier: MIT
#include "ppd/document/ATPPDCompoundObject.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "base/ATException.h"
#include "ppd/document/ATPPDObject.h"
#include "tests/ppd/TestSupport.h"

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::linesOf;

namespace {

std::shared_ptr<ATPPDObject> plain(const std::string& line) {
  return ATPPDObject::objectWithString(line, PPDLineTypeComment);
}

}  // namespace

TEST(ATPPDCompoundObject, IsEmptyAtFirst) {
  const ATPPDCompoundObject object;
  EXPECT_TRUE(object.PPDObjects().empty());
  EXPECT_THAT(linesOf(object), IsEmpty());
}

TEST(ATPPDCompoundObject, TakesNoLinesItself) {
  ATPPDCompoundObject object;
  EXPECT_THROW(object.addString("*Foo: x\n", PPDLineTypeStatement), ATException);
  EXPECT_TRUE(object.PPDObjects().empty());
}

TEST(ATPPDCompoundObject, StringsAreThoseOfEveryChildInOrder) {
  ATPPDCompoundObject object;
  auto two = plain("2\n");
  two->addString("3\n", PPDLineTypeContinuation);
  object.appendObjectToPPDObjects(plain("1\n"));
  object.appendObjectToPPDObjects(std::make_shared<ATPPDObject>());
  object.appendObjectToPPDObjects(two);
  EXPECT_THAT(linesOf(object), ElementsAre("1\n", "2\n", "3\n"));
  EXPECT_EQ(object.PPDObjects().size(), 3U);
}

TEST(ATPPDCompoundObject, StringsReachThroughChildrenOfChildren) {
  auto inner = std::make_shared<ATPPDCompoundObject>();
  inner->appendObjectToPPDObjects(plain("inner\n"));
  ATPPDCompoundObject outer;
  outer.appendObjectToPPDObjects(plain("before\n"));
  outer.appendObjectToPPDObjects(inner);
  outer.appendObjectToPPDObjects(plain("behind\n"));
  EXPECT_THAT(linesOf(outer), ElementsAre("before\n", "inner\n", "behind\n"));
}

TEST(ATPPDCompoundObject, InsertsBeforeTheIndex) {
  ATPPDCompoundObject object;
  object.insertObjectToPPDObjects(plain("b"), 0);
  object.insertObjectToPPDObjects(plain("a"), 0);
  object.insertObjectToPPDObjects(plain("d"), 2);
  object.insertObjectToPPDObjects(plain("c"), 2);
  EXPECT_THAT(linesOf(object), ElementsAre("a", "b", "c", "d"));
}

TEST(ATPPDCompoundObject, RefusesAnIndexAboveTheNumberOfChildren) {
  ATPPDCompoundObject object;
  EXPECT_THROW(object.insertObjectToPPDObjects(plain("a"), 1), ATException);
  object.appendObjectToPPDObjects(plain("a"));
  EXPECT_THROW(object.insertObjectToPPDObjects(plain("b"), 2), ATException);
  EXPECT_THAT(linesOf(object), ElementsAre("a"));
}

TEST(ATPPDCompoundObject, RefusesNull) {
  ATPPDCompoundObject object;
  const auto reasonOf = [](const auto& call) -> std::string {
    try {
      call();
    } catch (const ATException& exception) {
      return exception.reason();
    }
    return "nothing was thrown";
  };
  EXPECT_EQ(reasonOf([&] { object.appendObjectToPPDObjects(nullptr); }),
            "value of the wrong type: no object to append");
  EXPECT_EQ(reasonOf([&] { object.insertObjectToPPDObjects(nullptr, 0); }),
            "value of the wrong type: no object to insert");
  EXPECT_EQ(reasonOf([&] { object.insertObjectToPPDObjects(plain("a"), 1); }),
            "-[ATPPDCompoundObject insertObjectToPPDObjects:atIndex:]: position out of range");
  EXPECT_EQ(reasonOf([&] { object.addString("*Foo: x\n", PPDLineTypeStatement); }),
            "-[ATPPDCompoundObject addString:ofType:]: operation not provided");
  EXPECT_TRUE(object.PPDObjects().empty());
}

TEST(ATPPDCompoundObject, RemovesByIdentity) {
  ATPPDCompoundObject object;
  const auto one = plain("same");
  const auto other = plain("same");
  object.appendObjectToPPDObjects(one);
  object.appendObjectToPPDObjects(other);
  object.removeObjectFromPPDObjects(other.get());
  ASSERT_EQ(object.PPDObjects().size(), 1U);
  EXPECT_EQ(*object.PPDObjects().begin(), one);
}

TEST(ATPPDCompoundObject, RemovesOneOccurrence) {
  ATPPDCompoundObject object;
  const auto twice = plain("twice");
  object.appendObjectToPPDObjects(twice);
  object.appendObjectToPPDObjects(twice);
  object.removeObjectFromPPDObjects(twice.get());
  EXPECT_THAT(linesOf(object), ElementsAre("twice"));
}

TEST(ATPPDCompoundObject, RemovesTheFirstOccurrenceInListOrder) {
  for (const bool insertedLater : {false, true}) {
    ATPPDCompoundObject object;
    const auto twice = plain("twice");
    if (!insertedLater) object.appendObjectToPPDObjects(twice);
    object.appendObjectToPPDObjects(plain("between"));
    object.appendObjectToPPDObjects(twice);
    if (insertedLater) object.insertObjectToPPDObjects(twice, 0);
    ASSERT_THAT(linesOf(object), ElementsAre("twice", "between", "twice"));
    object.removeObjectFromPPDObjects(twice.get());
    EXPECT_THAT(linesOf(object), ElementsAre("between", "twice"));
    object.removeObjectFromPPDObjects(twice.get());
    EXPECT_THAT(linesOf(object), ElementsAre("between"));
    object.removeObjectFromPPDObjects(twice.get());
    EXPECT_THAT(linesOf(object), ElementsAre("between"));
  }
}

TEST(ATPPDCompoundObject, RemovingNullOrAStrangerDoesNothing) {
  ATPPDCompoundObject object;
  object.appendObjectToPPDObjects(plain("a"));
  object.removeObjectFromPPDObjects(nullptr);
  object.removeObjectFromPPDObjects(plain("a").get());
  EXPECT_THAT(linesOf(object), ElementsAre("a"));
}

TEST(ATPPDCompoundObject, AChildsChildIsNoChild) {
  auto inner = std::make_shared<ATPPDCompoundObject>();
  const auto leaf = plain("leaf");
  inner->appendObjectToPPDObjects(leaf);
  ATPPDCompoundObject outer;
  outer.appendObjectToPPDObjects(inner);
  outer.removeObjectFromPPDObjects(leaf.get());
  EXPECT_THAT(linesOf(outer), ElementsAre("leaf"));
}

TEST(ATPPDCompoundObject, LaterChangesOfTheListThatWasSetDoNotShow) {
  ATPPDCompoundObject object;
  const auto one = plain("1");
  ATPPDCompoundObject::PPDObjectList list;
  list.append(one);
  list.append(plain("2"));
  object.setPPDObjects(list);
  list.append(plain("3"));
  list.removeAt(*list.positionOf(one.get()));
  EXPECT_THAT(linesOf(object), ElementsAre("1", "2"));
  object.removeObjectFromPPDObjects(one.get());
  object.appendObjectToPPDObjects(plain("4"));
  EXPECT_THAT(linesOf(object), ElementsAre("2", "4"));
  EXPECT_EQ(list.size(), 2U);
  EXPECT_THAT(linesOf(*list.back()), ElementsAre("3"));
}

TEST(ATPPDCompoundObject, TheSetterReplacesTheWholeList) {
  ATPPDCompoundObject object;
  object.appendObjectToPPDObjects(plain("old"));
  ATPPDCompoundObject::PPDObjectList fresh;
  fresh.append(plain("new 1"));
  fresh.append(plain("new 2"));
  object.setPPDObjects(std::move(fresh));
  EXPECT_THAT(linesOf(object), ElementsAre("new 1", "new 2"));
  object.appendObjectToPPDObjects(plain("new 3"));
  EXPECT_THAT(linesOf(object), ElementsAre("new 1", "new 2", "new 3"));
}
