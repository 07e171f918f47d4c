// SPDX-License-Identifier: MIT
#include "ppd/document/ATPPDGroup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include "base/ATException.h"
#include "tests/ppd/TestSupport.h"

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::linesOf;

namespace {

constexpr const char* kOpen = "*OpenGroup: General/General Options\n";

std::string nameOf(const char* statement) {
  return ATPPDGroup::groupWithString(statement)->name();
}

std::shared_ptr<ATPPDGroup> groupWithTwoOptions() {
  auto group = ATPPDGroup::groupWithString(kOpen);
  group->addString("*OpenUI *A: PickOne\n", PPDLineTypeOpenUI);
  group->addString("*DefaultA: x\n", PPDLineTypeDefaultChoice);
  group->addString("*A x: \"\"\n", PPDLineTypeChoice);
  group->addString("*CloseUI: *A\n", PPDLineTypeCloseUI);
  group->addString("*OpenUI *B: PickOne\n", PPDLineTypeOpenUI);
  group->addString("*DefaultB: y\n", PPDLineTypeDefaultChoice);
  group->addString("*CloseUI: *B\n", PPDLineTypeCloseUI);
  return group;
}

}  // namespace

TEST(ATPPDGroup, BeginsWithItsOpenGroupStatement) {
  const auto group = ATPPDGroup::groupWithString(kOpen);
  ASSERT_EQ(group->PPDObjects().size(), 1U);
  const IATPPDObject& first = **group->PPDObjects().begin();
  EXPECT_EQ(typeid(first), typeid(ATPPDObject));
  EXPECT_THAT(linesOf(*group), ElementsAre(kOpen));
  EXPECT_THAT(group->options(), IsEmpty());
}

class ATPPDGroupOwnLine : public testing::TestWithParam<PPDLineType> {};

TEST_P(ATPPDGroupOwnLine, BecomesAPlainObjectOfItsOwn) {
  const auto group = groupWithTwoOptions();
  const std::size_t before = group->PPDObjects().size();
  group->addString("line\n", GetParam());
  ASSERT_EQ(group->PPDObjects().size(), before + 1);
  const IATPPDObject& last = *group->PPDObjects().back();
  EXPECT_EQ(typeid(last), typeid(ATPPDObject));
  EXPECT_THAT(linesOf(last), ElementsAre("line\n"));
  EXPECT_EQ(group->options().size(), 2U);
}

INSTANTIATE_TEST_SUITE_P(Types, ATPPDGroupOwnLine,
                         testing::Values(PPDLineTypeStatement, PPDLineTypeContinuation, PPDLineTypeEnd,
                                         PPDLineTypeOpenGroup, PPDLineTypeCloseGroup));

class ATPPDGroupPassedLine : public testing::TestWithParam<PPDLineType> {};

TEST_P(ATPPDGroupPassedLine, GoesToThePlainObjectThatStandsLast) {
  const auto group = ATPPDGroup::groupWithString(kOpen);
  group->addString("*Foo: x\n", PPDLineTypeStatement);
  group->addString("line\n", GetParam());
  EXPECT_EQ(group->PPDObjects().size(), 2U);
  EXPECT_THAT(linesOf(*group->PPDObjects().back()), ElementsAre("*Foo: x\n", "line\n"));
}

TEST_P(ATPPDGroupPassedLine, GoesToTheOptionThatStandsLastWithItsType) {
  const auto group = groupWithTwoOptions();
  const std::size_t before = group->PPDObjects().size();
  group->addString("line\n", GetParam());
  EXPECT_EQ(group->PPDObjects().size(), before);
  const auto& option = *group->options().back();
  EXPECT_THAT(linesOf(option), ElementsAre("*OpenUI *B: PickOne\n", "*DefaultB: y\n", "*CloseUI: *B\n", "line\n"));
  const bool isChoice = GetParam() == PPDLineTypeChoice;
  EXPECT_EQ(option.choices().size(), isChoice ? 1U : 0U);
  const bool isDefault = GetParam() == PPDLineTypeDefaultChoice;
  EXPECT_EQ(option.defChoice(), StatementString(isDefault ? "line\n" : "*DefaultB: y\n"));
}

TEST_P(ATPPDGroupPassedLine, IsLostWithoutAnyObject) {
  ATPPDGroup group;
  group.addString("line\n", GetParam());
  EXPECT_THAT(linesOf(group), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Types, ATPPDGroupPassedLine,
                         testing::Values(PPDLineTypeComment, PPDLineTypeCloseUI, PPDLineTypeOrderDependency,
                                         PPDLineTypeDefaultChoice, PPDLineTypeChoice, PPDLineTypeNewLine,
                                         PPDLineTypeChoiceContinuation, PPDLineTypeChoiceEnd));

TEST(ATPPDGroup, AnOpenUILineBecomesAnOption) {
  const auto group = ATPPDGroup::groupWithString(kOpen);
  group->addString("*OpenUI *A: PickOne\n", PPDLineTypeOpenUI);
  ASSERT_EQ(group->PPDObjects().size(), 2U);
  ASSERT_EQ(group->options().size(), 1U);
  EXPECT_EQ(group->PPDObjects().back(), group->options().front());
  EXPECT_THAT(linesOf(*group->options().front()), ElementsAre("*OpenUI *A: PickOne\n"));
}

class ATPPDGroupForeignLine : public testing::TestWithParam<int> {};

TEST_P(ATPPDGroupForeignLine, IsDroppedAndLogged) {
  const auto group = ATPPDGroup::groupWithString(kOpen);
  const TestLog log;
  group->addString("line", static_cast<PPDLineType>(GetParam()));
  log.expect("-[ATPPDGroup addString:ofType:]: String line of type " + std::to_string(GetParam()) + " is ignored!\n");
  EXPECT_THAT(linesOf(*group), ElementsAre(kOpen));
}

INSTANTIATE_TEST_SUITE_P(Types, ATPPDGroupForeignLine, testing::Values(-1, 0, 15, 1000));

TEST(ATPPDGroup, NameEndsAtTheSlash) {
  EXPECT_EQ(nameOf("*OpenGroup: General/General Options\n"), "General");
  EXPECT_EQ(nameOf("*OpenGroup: \t General Things \t/Text\n"), "General Things");
  EXPECT_EQ(nameOf("*OpenGroup:General/Text"), "General");
  EXPECT_EQ(nameOf("*OpenGroup:\r\nGeneral/Text"), "General");
  EXPECT_EQ(nameOf("*OpenGroup: a:b/Text\n"), "a:b");
}

TEST(ATPPDGroup, NameKeepsTheLineEndWithoutATranslationText) {
  EXPECT_EQ(nameOf("*OpenGroup: General\n"), "General\n");
  EXPECT_EQ(nameOf("*OpenGroup: General \r\n"), "General \r\n");
  EXPECT_EQ(nameOf("*OpenGroup: General  "), "General");
}

TEST(ATPPDGroup, NameDirectlyAtASlashEndsAtTheNextBlank) {
  EXPECT_EQ(nameOf("*OpenGroup: /Text more\n"), "/Text");
  EXPECT_EQ(nameOf("*OpenGroup: /Text\n"), "/Text");
}

TEST(ATPPDGroup, NameIsEmptyWithoutAColonOrAnythingBehindIt) {
  EXPECT_EQ(nameOf("*OpenGroup General/Text\n"), "");
  EXPECT_EQ(nameOf("*OpenGroup:\n"), "");
  EXPECT_EQ(nameOf("*OpenGroup: \t \r\n"), "");
  EXPECT_EQ(nameOf("*OpenGroup:"), "");
  EXPECT_EQ(nameOf(""), "");
}

TEST(ATPPDGroup, NameOfAGroupWithoutLinesIsAProgrammingError) {
  EXPECT_THROW(ATPPDGroup().name(), ATException);
  ATPPDGroup group;
  group.appendObjectToPPDObjects(std::make_shared<ATPPDObject>());
  EXPECT_THROW(group.name(), ATException);
}

TEST(ATPPDGroup, NameComesFromTheFirstStringThoughTheFirstChildHasNone) {
  const auto group = ATPPDGroup::groupWithString(kOpen);
  group->insertObjectToPPDObjects(std::make_shared<ATPPDObject>(), 0);
  group->insertObjectToPPDObjects(std::make_shared<ATPPDGroup>(), 1);
  group->addString("*Other: Wrong/Text\n", PPDLineTypeStatement);
  EXPECT_EQ(group->name(), "General");
}

TEST(ATPPDGroup, NameComesFromTheFirstStringOfWhateverStandsFirst) {
  ATPPDGroup group;
  group.appendObjectToPPDObjects(ATPPDGroup::groupWithString("*OpenGroup: Inner/Text\n"));
  group.addString(kOpen, PPDLineTypeOpenGroup);
  EXPECT_EQ(group.name(), "Inner");
}

TEST(ATPPDGroup, NameIsWorkedOutOnce) {
  const auto group = ATPPDGroup::groupWithString(kOpen);
  ASSERT_EQ(group->name(), "General");
  group->removeObjectFromPPDObjects((*group->PPDObjects().begin()).get());
  EXPECT_EQ(group->name(), "General");
}

TEST(ATPPDGroup, FindsOptionsByTheirNames) {
  const auto group = groupWithTwoOptions();
  ASSERT_EQ(group->options().size(), 2U);
  EXPECT_EQ(group->optionForName("A"), group->options()[0]);
  EXPECT_EQ(group->optionForName("B"), group->options()[1]);
  EXPECT_EQ(group->optionForName("a"), nullptr);
  EXPECT_EQ(group->optionForName("C"), nullptr);
  EXPECT_EQ(group->optionForName(""), nullptr);
}

TEST(ATPPDGroup, AnOptionWithoutADefaultIsFoundByTheEmptyNameOnly) {
  const auto group = groupWithTwoOptions();
  group->addString("*OpenUI *C: PickOne\n", PPDLineTypeOpenUI);
  EXPECT_EQ(group->optionForName("C"), nullptr);
  EXPECT_EQ(group->optionForName(""), group->options()[2]);
}

TEST(ATPPDGroup, ALookUpAsksNoOptionBehindTheMatchForItsName) {
  const auto group = groupWithTwoOptions();
  for (int time = 0; time < 5; ++time) ASSERT_EQ(group->optionForName("A"), group->options()[0]);
  group->options()[1]->setDefChoice(StatementString("*DefaultLater: x\n"));
  EXPECT_EQ(group->optionForName("B"), nullptr);
  EXPECT_EQ(group->optionForName("Later"), group->options()[1]);
}

TEST(ATPPDGroup, AnOptionThatWasAskedBeforeItsDefaultStatementCameHasNoNameForGood) {
  for (const int lookUps : {0, 1, 5}) {
    const auto group = ATPPDGroup::groupWithString(kOpen);
    group->addString("*OpenUI *A: PickOne\n", PPDLineTypeOpenUI);
    for (int time = 0; time < lookUps; ++time) ASSERT_EQ(group->optionForName("A"), nullptr);
    group->addString("*DefaultA: x\n", PPDLineTypeDefaultChoice);
    EXPECT_EQ(group->optionForName("A"), lookUps == 0 ? group->options()[0] : nullptr);
    EXPECT_EQ(group->optionForName(""), lookUps == 0 ? nullptr : group->options()[0]);
    EXPECT_EQ(group->options()[0]->defaultValue(), "x");
  }
}

TEST(ATPPDGroup, TheFirstOfTwoOptionsOfTheSameNameIsFound) {
  const auto group = groupWithTwoOptions();
  group->addString("*OpenUI *A: PickOne\n", PPDLineTypeOpenUI);
  group->addString("*DefaultA: z\n", PPDLineTypeDefaultChoice);
  EXPECT_EQ(group->optionForName("A"), group->options()[0]);
}

TEST(ATPPDGroup, OptionsAreFoundByManyLookUpsWhileLinesCome) {
  const auto group = ATPPDGroup::groupWithString(kOpen);
  for (int number = 0; number < 12; ++number) {
    group->addString("*OpenUI *O\n", PPDLineTypeOpenUI);
    group->addString("*DefaultO" + std::to_string(number % 8) + ": x\n", PPDLineTypeDefaultChoice);
    for (int asked = 0; asked < 10; ++asked) {
      const bool known = asked <= number && asked < 8;
      EXPECT_EQ(group->optionForName("O" + std::to_string(asked)),
                known ? group->options()[static_cast<std::size_t>(asked)] : nullptr);
    }
  }
}

TEST(ATPPDGroup, LinesBetweenOpenUIAndCloseUIAreHeldByTheOption) {
  const std::vector<std::pair<const char*, PPDLineType>> lines = {
      {"*OpenUI *A: PickOne\n", PPDLineTypeOpenUI}, {"*OrderDependency: 1 AnySetup *A\n", PPDLineTypeOrderDependency},
      {"*DefaultA: x\n", PPDLineTypeDefaultChoice}, {"*A x: \"1\n", PPDLineTypeChoice},
      {"2\"\n", PPDLineTypeChoiceContinuation},     {"*End\n", PPDLineTypeChoiceEnd},
      {"*% comment\n", PPDLineTypeComment},         {"\n", PPDLineTypeNewLine},
      {"*A y: \"\"\n", PPDLineTypeChoice},          {"*CloseUI: *A\n", PPDLineTypeCloseUI},
  };
  const auto group = ATPPDGroup::groupWithString(kOpen);
  TestSupport::Texts expected;
  for (const auto& [line, type] : lines) {
    group->addString(line, type);
    expected.emplace_back(line);
  }
  EXPECT_EQ(linesOf(*group->options().front()), expected);
  EXPECT_EQ(group->options().front()->choices().size(), 2U);
  expected.insert(expected.begin(), kOpen);
  EXPECT_EQ(linesOf(*group), expected);
}

TEST(ATPPDGroup, ACommentBehindCloseUIBelongsToTheOption) {
  const auto group = groupWithTwoOptions();
  group->addString("*% comment\n", PPDLineTypeComment);
  EXPECT_EQ(linesOf(*group->options().back()).back(), "*% comment\n");
  const auto added = ATPPDChoice::initWithName("new", "New", "", "B", {});
  group->options().back()->addChoice(added);
  EXPECT_EQ(group->options().back()->choiceForName("new"), added);
  EXPECT_EQ(linesOf(*group).back(), "*% comment\n");
  EXPECT_EQ(linesOf(*group).size(), 9U);
}

TEST(ATPPDGroup, ACommentBetweenTwoOptionsStaysInPlace) {
  const auto group = ATPPDGroup::groupWithString(kOpen);
  group->addString("*OpenUI *A: PickOne\n", PPDLineTypeOpenUI);
  group->addString("*CloseUI: *A\n", PPDLineTypeCloseUI);
  group->addString("*% comment\n", PPDLineTypeComment);
  group->addString("*OpenUI *B: PickOne\n", PPDLineTypeOpenUI);
  group->addString("*CloseUI: *B\n", PPDLineTypeCloseUI);
  group->addString("*CloseGroup: General\n", PPDLineTypeCloseGroup);
  EXPECT_THAT(linesOf(*group), ElementsAre(kOpen, "*OpenUI *A: PickOne\n", "*CloseUI: *A\n", "*% comment\n",
                                           "*OpenUI *B: PickOne\n", "*CloseUI: *B\n", "*CloseGroup: General\n"));
}
