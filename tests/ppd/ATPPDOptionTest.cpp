// SPDX-License-Identifier: MIT
#include "ppd/document/ATPPDOption.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include "ppd/document/ATPPDAttribute.h"
#include "tests/ppd/TestSupport.h"

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::linesOf;

namespace {

using ChoicePtr = std::shared_ptr<ATPPDChoice>;
constexpr std::nullopt_t null = std::nullopt;

constexpr const char* kOpen = "*OpenUI *MediaType/Media: PickOne\n";
constexpr const char* kDefault = "*DefaultMediaType: Plain\n";
constexpr const char* kPlain = "*MediaType Plain/Plain Paper: \"1\"\n";
constexpr const char* kGlossy = "*MediaType Glossy/Glossy Paper: \"2\"\n";
constexpr const char* kClose = "*CloseUI: *MediaType\n";

std::shared_ptr<ATPPDOption> optionWithoutEnd() {
  auto option = ATPPDOption::optionWithString(kOpen);
  option->addString(kDefault, PPDLineTypeDefaultChoice);
  option->addString(kPlain, PPDLineTypeChoice);
  option->addString(kGlossy, PPDLineTypeChoice);
  return option;
}

std::shared_ptr<ATPPDOption> mediaType() {
  auto option = optionWithoutEnd();
  option->addString(kClose, PPDLineTypeCloseUI);
  return option;
}

ChoicePtr choice(const std::string& name, const std::string& code = "") {
  return ATPPDChoice::initWithName(name, "Text", code, "MediaType", {});
}

std::string lineOf(const std::string& name, const std::string& code = "") {
  return "*MediaType " + name + "/Text: \"" + code + "\"\n";
}

std::vector<std::string> namesOf(const ATPPDOption& option) {
  std::vector<std::string> names;
  for (const ChoicePtr& each : option.choices()) names.emplace_back(each->name().value_or("(null)"));
  return names;
}

std::shared_ptr<ATPPDOption> optionWithDefault(const char* statement) {
  auto option = std::make_shared<ATPPDOption>();
  option->setDefChoice(StatementString(statement));
  return option;
}

}  // namespace

TEST(ATPPDOption, BeginsWithItsOpenUIStatement) {
  const auto option = ATPPDOption::optionWithString(kOpen);
  EXPECT_THAT(linesOf(*option), ElementsAre(kOpen));
  ASSERT_EQ(option->PPDObjects().size(), 1U);
  const IATPPDObject& first = **option->PPDObjects().begin();
  EXPECT_EQ(typeid(first), typeid(ATPPDObject));
  EXPECT_TRUE(option->choices().empty());
  EXPECT_EQ(option->defChoice(), null);
}

TEST(ATPPDOption, IsWrittenAsItWasRead) {
  const auto option = mediaType();
  const TestSupport::Texts expected = {kOpen, kDefault, kPlain, kGlossy, kClose};
  EXPECT_EQ(linesOf(*option), expected);
  EXPECT_EQ(option->PPDObjects().size(), 5U);
  EXPECT_EQ(linesOf(*option), expected);
}

class ATPPDOptionPlainLine : public testing::TestWithParam<PPDLineType> {};

TEST_P(ATPPDOptionPlainLine, BecomesAPlainObjectOfItsOwn) {
  const auto option = ATPPDOption::optionWithString(kOpen);
  option->addString("line\n", GetParam());
  ASSERT_EQ(option->PPDObjects().size(), 2U);
  const IATPPDObject& last = *option->PPDObjects().back();
  EXPECT_EQ(typeid(last), typeid(ATPPDObject));
  EXPECT_THAT(linesOf(last), ElementsAre("line\n"));
  EXPECT_TRUE(option->choices().empty());
  EXPECT_EQ(option->defChoice().has_value(), GetParam() == PPDLineTypeDefaultChoice);
}

INSTANTIATE_TEST_SUITE_P(Types, ATPPDOptionPlainLine,
                         testing::Values(PPDLineTypeComment, PPDLineTypeOpenUI, PPDLineTypeCloseUI,
                                         PPDLineTypeOrderDependency, PPDLineTypeNewLine, PPDLineTypeDefaultChoice));

TEST(ATPPDOption, AChoiceLineBecomesAChoice) {
  const auto option = ATPPDOption::optionWithString(kOpen);
  option->addString(kPlain, PPDLineTypeChoice);
  ASSERT_EQ(option->PPDObjects().size(), 2U);
  ASSERT_EQ(option->choices().size(), 1U);
  EXPECT_EQ(option->PPDObjects().back(), *option->choices().begin());
  EXPECT_THAT(linesOf(**option->choices().begin()), ElementsAre(kPlain));
}

TEST(ATPPDOption, FurtherLinesOfAChoiceAreHeldByIt) {
  const auto option = ATPPDOption::optionWithString(kOpen);
  option->addString("*MediaType Plain: \"one\n", PPDLineTypeChoice);
  option->addString("two\"\n", PPDLineTypeChoiceContinuation);
  option->addString("*End\n", PPDLineTypeChoiceEnd);
  EXPECT_EQ(option->PPDObjects().size(), 2U);
  EXPECT_THAT(linesOf(**option->choices().begin()), ElementsAre("*MediaType Plain: \"one\n", "two\"\n", "*End\n"));
}

TEST(ATPPDOption, FurtherLinesGoToTheLastObjectWhateverItIs) {
  const auto option = ATPPDOption::optionWithString(kOpen);
  option->addString(kPlain, PPDLineTypeChoice);
  option->addString("*% comment\n", PPDLineTypeComment);
  option->addString("more\n", PPDLineTypeChoiceContinuation);
  EXPECT_EQ(option->PPDObjects().size(), 3U);
  EXPECT_THAT(linesOf(*option->PPDObjects().back()), ElementsAre("*% comment\n", "more\n"));
}

TEST(ATPPDOption, FurtherLinesGoToTheLastObjectAlsoAfterAQuestion) {
  const auto option = ATPPDOption::optionWithString(kOpen);
  option->addString(kPlain, PPDLineTypeChoice);
  ASSERT_TRUE(option->choiceForName("Plain"));
  option->addString("more\n", PPDLineTypeChoiceContinuation);
  option->addString(kGlossy, PPDLineTypeChoice);
  EXPECT_THAT(linesOf(*option->choiceForName("Plain")), ElementsAre(kPlain, "more\n"));
  EXPECT_THAT(namesOf(*option), ElementsAre("Plain", "Glossy"));
  EXPECT_THAT(linesOf(*option), ElementsAre(kOpen, kPlain, "more\n", kGlossy));
}

TEST(ATPPDOption, FurtherLinesAreLostWithoutAnyObject) {
  ATPPDOption option;
  option.addString("more\n", PPDLineTypeChoiceContinuation);
  option.addString("*End\n", PPDLineTypeChoiceEnd);
  EXPECT_THAT(linesOf(option), IsEmpty());
  EXPECT_TRUE(option.PPDObjects().empty());
}

class ATPPDOptionForeignLine : public testing::TestWithParam<int> {};

TEST_P(ATPPDOptionForeignLine, IsDroppedAndLogged) {
  const auto option = mediaType();
  const TestLog log;
  option->addString("line", static_cast<PPDLineType>(GetParam()));
  log.expect("-[ATPPDOption addString:ofType:]: String line of type " + std::to_string(GetParam()) + " is ignored!\n");
  EXPECT_THAT(linesOf(*option), ElementsAre(kOpen, kDefault, kPlain, kGlossy, kClose));
  EXPECT_EQ(option->PPDObjects().size(), 5U);
}

INSTANTIATE_TEST_SUITE_P(Types, ATPPDOptionForeignLine, testing::Values(-1, 0, 2, 3, 4, 5, 6, 15, 1000));

TEST(ATPPDOption, NameComesFromTheDefaultStatement) {
  EXPECT_EQ(mediaType()->name(), "MediaType");
  EXPECT_EQ(optionWithDefault("*DefaultMediaType: Plain\n")->name(), "MediaType");
  EXPECT_EQ(optionWithDefault("*Default \t Media Type \t: Plain\n")->name(), "Media Type");
  EXPECT_EQ(optionWithDefault(" \n*DefaultX:y")->name(), "X");
  EXPECT_EQ(optionWithDefault("*DefaultMediaType")->name(), "MediaType");
  EXPECT_EQ(optionWithDefault("*DefaultMediaType\n")->name(), "MediaType\n");
  EXPECT_EQ(optionWithDefault("*DefaultMedia/Type: Plain\n")->name(), "Media/Type");
}

TEST(ATPPDOption, NameIsEmptyWhenTheDefaultStatementGivesNone) {
  EXPECT_EQ(optionWithDefault("*Default: Plain\n")->name(), "");
  EXPECT_EQ(optionWithDefault("*Default")->name(), "");
  EXPECT_EQ(optionWithDefault("*Foo: Plain\n")->name(), "");
  EXPECT_EQ(optionWithDefault("")->name(), "");
}

TEST(ATPPDOption, WithoutADefaultStatementNameIsEmptyAndThereIsNoDefaultValue) {
  const auto option = ATPPDOption::optionWithString(kOpen);
  option->addString(kPlain, PPDLineTypeChoice);
  EXPECT_EQ(option->name(), "");
  EXPECT_EQ(option->defaultValue(), null);
  EXPECT_TRUE(option->choiceForName("Plain"));
}

TEST(ATPPDOption, ANameAskedForBeforeTheDefaultStatementStaysEmpty) {
  const auto option = ATPPDOption::optionWithString(kOpen);
  ASSERT_EQ(option->name(), "");
  option->addString(kDefault, PPDLineTypeDefaultChoice);
  EXPECT_EQ(option->name(), "");
  EXPECT_EQ(option->defaultValue(), "Plain");
}

TEST(ATPPDOption, DefaultValueIsWhatFollowsTheFirstColonTrimmed) {
  EXPECT_EQ(mediaType()->defaultValue(), "Plain");
  EXPECT_EQ(optionWithDefault("*DefaultX: \t a:b c \r\n")->defaultValue(), "a:b c");
  EXPECT_EQ(optionWithDefault("*DefaultX:\n")->defaultValue(), "");
  EXPECT_EQ(optionWithDefault("*DefaultX\n")->defaultValue(), null);
}

TEST(ATPPDOption, AnAbsentDefaultValueIsLookedForAgain) {
  auto option = mediaType();
  option->setDefChoice(StatementString("*DefaultMediaType Plain\n"));
  ASSERT_EQ(option->defaultValue(), null);
  option->setDefChoice(StatementString("*DefaultMediaType: Glossy\n"));
  EXPECT_EQ(option->defaultValue(), "Glossy");
}

TEST(ATPPDOption, ALaterDefaultStatementDoesNotChangeNameAndDefaultValue) {
  const auto option = mediaType();
  ASSERT_EQ(option->name(), "MediaType");
  ASSERT_EQ(option->defaultValue(), "Plain");
  option->setDefChoice(StatementString("*DefaultOther: Glossy\n"));
  EXPECT_EQ(option->defChoice(), StatementString("*DefaultOther: Glossy\n"));
  EXPECT_EQ(option->name(), "MediaType");
  EXPECT_EQ(option->defaultValue(), "Plain");
  option->setDefChoice(null);
  EXPECT_EQ(option->defaultValue(), "Plain");
}

TEST(ATPPDOption, TheLastDefaultStatementCounts) {
  const auto option = mediaType();
  option->addString("*DefaultOther: Glossy\n", PPDLineTypeDefaultChoice);
  EXPECT_EQ(option->defChoice(), StatementString("*DefaultOther: Glossy\n"));
  EXPECT_EQ(option->name(), "Other");
  EXPECT_THAT(linesOf(*option), ElementsAre(kOpen, kDefault, kPlain, kGlossy, kClose, "*DefaultOther: Glossy\n"));
}

TEST(ATPPDOption, SettingTheDefaultStatementDoesNotChangeTheLines) {
  const auto option = mediaType();
  option->setDefChoice(StatementString("*DefaultMediaType: Glossy\n"));
  EXPECT_THAT(linesOf(*option), ElementsAre(kOpen, kDefault, kPlain, kGlossy, kClose));
}

TEST(ATPPDOption, AnAddedChoiceStandsBeforeTheCloseUIStatement) {
  const auto option = mediaType();
  const TestLog log;
  option->addChoice(choice("Custom1"));
  option->addChoice(choice("Custom2"));
  log.expect("-[ATPPDOption addChoice:]: Adding choice Custom1\n-[ATPPDOption addChoice:]: Adding choice Custom2\n");
  EXPECT_THAT(namesOf(*option), ElementsAre("Plain", "Glossy", "Custom1", "Custom2"));
  EXPECT_THAT(linesOf(*option),
              ElementsAre(kOpen, kDefault, kPlain, kGlossy, lineOf("Custom1"), lineOf("Custom2"), kClose));
}

TEST(ATPPDOption, AnAddedChoiceStandsBehindOtherStatementsOfTheBlock) {
  const auto option = optionWithoutEnd();
  option->addString("*% comment\n", PPDLineTypeComment);
  option->addString("*OrderDependency: 1 AnySetup *MediaType\n", PPDLineTypeOrderDependency);
  option->addString(" * closeui : *MediaType\n", PPDLineTypeCloseUI);
  option->addChoice(choice("Custom1"));
  EXPECT_THAT(linesOf(*option),
              ElementsAre(kOpen, kDefault, kPlain, kGlossy, "*% comment\n", "*OrderDependency: 1 AnySetup *MediaType\n",
                          lineOf("Custom1"), " * closeui : *MediaType\n"));
}

TEST(ATPPDOption, AFirstChoiceThatGetsItsCodeAfterALookIsFound) {
  ATPPDOption option;
  const auto late = std::make_shared<ATPPDChoice>();
  option.addChoice(late);
  EXPECT_EQ(option.choiceWithCodeContaining("4711"), nullptr);
  late->addString("*MediaType Custom1/Canvas: \"4711\"\n", PPDLineTypeChoice);
  EXPECT_EQ(option.choiceWithCodeContaining("4711"), late);
}

TEST(ATPPDOption, AnAddedChoiceStandsBetweenTheTwoLinesOfAnEmptyBlock) {
  const auto option = ATPPDOption::optionWithString(kOpen);
  option->addString(kClose, PPDLineTypeCloseUI);
  option->addChoice(choice("Custom1"));
  EXPECT_THAT(linesOf(*option), ElementsAre(kOpen, lineOf("Custom1"), kClose));
}

TEST(ATPPDOption, AnAddedChoiceIsListedAndNotWrittenWithoutACloseUIStatement) {
  const auto option = optionWithoutEnd();
  const ChoicePtr added = choice("Custom1");
  option->addChoice(added);
  EXPECT_THAT(namesOf(*option), ElementsAre("Plain", "Glossy", "Custom1"));
  EXPECT_EQ(option->choiceForName("Custom1"), added);
  EXPECT_THAT(linesOf(*option), ElementsAre(kOpen, kDefault, kPlain, kGlossy));
}

TEST(ATPPDOption, AnAddedChoiceIsNotWrittenWhenALineFollowsTheCloseUIStatement) {
  const auto option = mediaType();
  option->addString("\n", PPDLineTypeNewLine);
  option->addChoice(choice("Custom1"));
  EXPECT_THAT(namesOf(*option), ElementsAre("Plain", "Glossy", "Custom1"));
  EXPECT_THAT(linesOf(*option), ElementsAre(kOpen, kDefault, kPlain, kGlossy, kClose, "\n"));
}

TEST(ATPPDOption, AnAddedChoiceNeedsTwoObjectsToBeWritten) {
  ATPPDOption option;
  option.addString(kClose, PPDLineTypeCloseUI);
  option.addChoice(choice("Custom1"));
  EXPECT_THAT(namesOf(option), ElementsAre("Custom1"));
  EXPECT_THAT(linesOf(option), ElementsAre(kClose));
  ATPPDOption empty;
  empty.addChoice(choice("Custom1"));
  EXPECT_THAT(namesOf(empty), ElementsAre("Custom1"));
  EXPECT_THAT(linesOf(empty), IsEmpty());
}

TEST(ATPPDOption, TheFirstLineOfTheLastObjectDecides) {
  const auto option = mediaType();
  option->addString("further line\n", PPDLineTypeChoiceContinuation);
  option->addChoice(choice("Custom1"));
  EXPECT_THAT(linesOf(*option),
              ElementsAre(kOpen, kDefault, kPlain, kGlossy, lineOf("Custom1"), kClose, "further line\n"));
}

TEST(ATPPDOption, ALastObjectWithoutLinesIsNoCloseUIStatement) {
  const auto option = mediaType();
  option->appendObjectToPPDObjects(std::make_shared<ATPPDObject>());
  option->addChoice(choice("Custom1"));
  EXPECT_THAT(linesOf(*option), ElementsAre(kOpen, kDefault, kPlain, kGlossy, kClose));
}

// The last object may be of any kind; the first line that it is written as decides.

TEST(ATPPDOption, TheFirstLineOfALastObjectMadeOfOthersDecides) {
  for (const bool closes : {true, false}) {
    const auto option = optionWithoutEnd();
    const auto last = std::make_shared<ATPPDCompoundObject>();
    last->appendObjectToPPDObjects(std::make_shared<ATPPDObject>());
    if (!closes) last->appendObjectToPPDObjects(ATPPDObject::objectWithString("*% comment\n", PPDLineTypeComment));
    last->appendObjectToPPDObjects(ATPPDObject::objectWithString(kClose, PPDLineTypeCloseUI));
    option->appendObjectToPPDObjects(last);
    option->addChoice(choice("Custom1"));
    TestSupport::Texts expected = {kOpen, kDefault, kPlain, kGlossy};
    expected.push_back(closes ? lineOf("Custom1") : "*% comment\n");
    expected.emplace_back(kClose);
    EXPECT_EQ(linesOf(*option), expected);
  }
}

TEST(ATPPDOption, TheCanonicalLineOfALastAttributeDecides) {
  const auto option = optionWithoutEnd();
  const auto last = ATPPDAttribute::attributeWithString("*Foo: x\n");
  last->setAttributeString(StatementString(kClose));
  option->appendObjectToPPDObjects(last);
  option->addChoice(choice("Custom1"));
  EXPECT_THAT(linesOf(*option), ElementsAre(kOpen, kDefault, kPlain, kGlossy, lineOf("Custom1"), kClose));
  const auto other = optionWithoutEnd();
  const auto closing = ATPPDAttribute::attributeWithString(kClose);
  closing->setAttributeString(StatementString("*Foo: x\n"));
  other->appendObjectToPPDObjects(closing);
  other->addChoice(choice("Custom1"));
  EXPECT_THAT(linesOf(*other), ElementsAre(kOpen, kDefault, kPlain, kGlossy, "*Foo: x\n"));
}

TEST(ATPPDOption, AListedChoiceIsNotAddedAgain) {
  const auto option = mediaType();
  const ChoicePtr added = choice("Custom1");
  option->addChoice(added);
  option->addChoice(added);
  option->addChoice(option->choiceForName("Plain"));
  EXPECT_THAT(namesOf(*option), ElementsAre("Plain", "Glossy", "Custom1"));
  EXPECT_THAT(linesOf(*option), ElementsAre(kOpen, kDefault, kPlain, kGlossy, lineOf("Custom1"), kClose));
}

TEST(ATPPDOption, AnotherChoiceOfTheSameNameIsAdded) {
  const auto option = mediaType();
  option->addChoice(choice("Plain"));
  EXPECT_THAT(namesOf(*option), ElementsAre("Plain", "Glossy", "Plain"));
  EXPECT_THAT(linesOf(*option->choiceForName("Plain")), ElementsAre(kPlain));
}

TEST(ATPPDOption, RemovesAChoice) {
  const auto option = mediaType();
  const TestLog log;
  option->removeChoice(option->choiceForName("Plain"));
  log.expect("-[ATPPDOption removeChoice:]: MediaType, removing choice Plain...\n");
  EXPECT_THAT(namesOf(*option), ElementsAre("Glossy"));
  EXPECT_THAT(linesOf(*option), ElementsAre(kOpen, kDefault, kGlossy, kClose));
  EXPECT_EQ(option->choiceForName("Plain"), nullptr);
}

TEST(ATPPDOption, RemovesByIdentity) {
  const auto option = mediaType();
  const ChoicePtr equal = ATPPDChoice::choiceWithString(kPlain);
  const TestLog log;
  option->removeChoice(equal);
  log.expect("-[ATPPDOption removeChoice:]: MediaType, removing choice Plain...\n");
  EXPECT_THAT(namesOf(*option), ElementsAre("Plain", "Glossy"));
  EXPECT_EQ(linesOf(*option).size(), 5U);
}

TEST(ATPPDOption, AChoiceOfAnotherOptionIsNotRemoved) {
  const auto option = mediaType();
  const auto other = mediaType();
  option->removeChoice(other->choiceForName("Plain"));
  EXPECT_THAT(namesOf(*option), ElementsAre("Plain", "Glossy"));
  EXPECT_THAT(namesOf(*other), ElementsAre("Plain", "Glossy"));
}

TEST(ATPPDOption, RemovingNullIsLoggedOnly) {
  const auto option = mediaType();
  const TestLog log;
  option->removeChoice(nullptr);
  log.expect("-[ATPPDOption removeChoice:]: MediaType, removing choice (null)...\n");
  EXPECT_EQ(linesOf(*option).size(), 5U);
}

TEST(ATPPDOption, AChoiceThatIsOnlyAmongTheObjectsIsRemovedThere) {
  const auto option = mediaType();
  const ChoicePtr unlisted = choice("Custom1");
  option->appendObjectToPPDObjects(unlisted);
  option->removeChoice(unlisted);
  EXPECT_THAT(linesOf(*option), ElementsAre(kOpen, kDefault, kPlain, kGlossy, kClose));
}

TEST(ATPPDOption, ARemovedChoiceCanBeAddedAgainBehindTheOthers) {
  const auto option = mediaType();
  const ChoicePtr plain = option->choiceForName("Plain");
  option->removeChoice(plain);
  option->addChoice(plain);
  EXPECT_THAT(linesOf(*option), ElementsAre(kOpen, kDefault, kGlossy, kPlain, kClose));
}

TEST(ATPPDOption, ChoiceForNameComparesExactly) {
  const auto option = mediaType();
  EXPECT_TRUE(option->choiceForName("Plain"));
  EXPECT_EQ(option->choiceForName("plain"), nullptr);
  EXPECT_EQ(option->choiceForName("Plai"), nullptr);
  EXPECT_EQ(option->choiceForName(""), nullptr);
}

TEST(ATPPDOption, AChoiceWithTheEmptyNameIsFoundByIt) {
  const auto option = ATPPDOption::optionWithString(kOpen);
  option->addString("*MediaType : \"x\"\n", PPDLineTypeChoice);
  for (int time = 0; time < 10; ++time) EXPECT_EQ(option->choiceForName(""), *option->choices().begin());
}

TEST(ATPPDOption, TheFirstOfTwoChoicesWithTheSameNameIsFound) {
  const auto option = ATPPDOption::optionWithString(kOpen);
  option->addString(lineOf("Same", "1"), PPDLineTypeChoice);
  option->addString(lineOf("Same", "2"), PPDLineTypeChoice);
  for (int time = 0; time < 10; ++time) EXPECT_EQ(option->choiceForName("Same")->code(), "1");
  option->removeChoice(option->choiceForName("Same"));
  EXPECT_EQ(option->choiceForName("Same")->code(), "2");
}

TEST(ATPPDOption, AChoiceIsFoundByTheNameThatItHasNow) {
  for (const int lookUps : {0, 1, 5}) {
    const auto option = mediaType();
    const auto later = std::make_shared<ATPPDChoice>();
    option->addChoice(later);
    option->addChoice(choice("Custom1"));
    const ChoicePtr custom = option->choiceForName("Custom1");
    for (int time = 0; time < lookUps; ++time) {
      ASSERT_EQ(option->choiceForName("Custom2"), nullptr);
      ASSERT_EQ(option->choiceForName("Custom1"), custom);
      ASSERT_EQ(option->choiceForName(""), nullptr);
    }
    later->addString(lineOf("Custom1"), PPDLineTypeChoice);
    EXPECT_EQ(option->choiceForName("Custom1"), later);
    EXPECT_TRUE(option->choiceForName("Plain"));
    option->removeChoice(later);
    EXPECT_EQ(option->choiceForName("Custom1"), custom);
  }
}

TEST(ATPPDOption, AChoiceIsFoundByTheCodeThatItHasNow) {
  for (const int lookUps : {0, 1, 5}) {
    const auto option = mediaType();
    const auto later = std::make_shared<ATPPDChoice>();
    const ChoicePtr custom = choice("Custom1", "id-4711");
    option->addChoice(later);
    option->addChoice(custom);
    for (int time = 0; time < lookUps; ++time) {
      ASSERT_EQ(option->choiceWithCodeContaining("id-47"), custom);
      ASSERT_EQ(option->choiceWithCodeContaining("4"), custom);
      ASSERT_EQ(option->choiceWithCodeContaining("none"), nullptr);
    }
    later->addString(lineOf("Custom2", "id-4712"), PPDLineTypeChoice);
    EXPECT_EQ(option->choiceWithCodeContaining("id-47"), later);
    EXPECT_EQ(option->choiceWithCodeContaining("4"), later);
    EXPECT_EQ(option->choiceWithCodeContaining("4711"), custom);
    EXPECT_EQ(option->choiceWithCodeContaining("4712"), later);
    option->removeChoice(later);
    EXPECT_EQ(option->choiceWithCodeContaining("id-47"), custom);
    EXPECT_EQ(option->choiceWithCodeContaining("4712"), nullptr);
  }
}

TEST(ATPPDOption, FindsTheFirstChoiceWhoseCodeContainsAPart) {
  const auto option = ATPPDOption::optionWithString(kOpen);
  option->addString("*MediaType None: x\n", PPDLineTypeChoice);
  option->addString(lineOf("A", "<</MediaType (id-12)>>"), PPDLineTypeChoice);
  option->addString(lineOf("B", "<</MediaType (id-1)>>"), PPDLineTypeChoice);
  EXPECT_EQ(option->choiceWithCodeContaining("id-1")->name(), "A");
  EXPECT_EQ(option->choiceWithCodeContaining("id-1)")->name(), "B");
  EXPECT_EQ(option->choiceWithCodeContaining("ID-1"), nullptr);
  EXPECT_EQ(option->choiceWithCodeContaining("Text"), nullptr);
}

TEST(ATPPDOption, TheEmptyStringIsContainedInNoCode) {
  const auto option = mediaType();
  EXPECT_EQ(option->choiceWithCodeContaining(""), nullptr);
}

TEST(ATPPDOption, DescriptionEndsWithTheName) {
  const std::string description = mediaType()->description();
  EXPECT_TRUE(description.ends_with(": MediaType")) << description;
  EXPECT_GT(description.size(), std::string(": MediaType").size());
}

TEST(ATPPDOption, TheListOfObjectsCanBeReplaced) {
  const auto option = mediaType();
  ATPPDOption::PPDObjectList fresh;
  fresh.append(ATPPDObject::objectWithString("new\n", PPDLineTypeComment));
  option->setPPDObjects(std::move(fresh));
  EXPECT_THAT(linesOf(*option), ElementsAre("new\n"));
  EXPECT_THAT(namesOf(*option), ElementsAre("Plain", "Glossy"));
}

TEST(ATPPDOption, ObjectsAreInsertedAmongThoseThatWereRead) {
  const auto option = mediaType();
  option->insertObjectToPPDObjects(ATPPDObject::objectWithString("new\n", PPDLineTypeComment), 1);
  EXPECT_THAT(linesOf(*option), ElementsAre(kOpen, "new\n", kDefault, kPlain, kGlossy, kClose));
}

namespace {

// The same option as plain lists.
struct ModelOfOption {
  std::vector<ChoicePtr> choices;

  ChoicePtr choiceForName(const std::string& name) const {
    const auto found =
        std::find_if(choices.begin(), choices.end(), [&](const auto& each) { return each->name() == name; });
    return found == choices.end() ? nullptr : *found;
  }

  ChoicePtr choiceWithCodeContaining(const std::string& part) const {
    const auto found = std::find_if(choices.begin(), choices.end(), [&](const auto& each) {
      return !part.empty() && each->code() && each->code()->find(part) != std::string::npos;
    });
    return found == choices.end() ? nullptr : *found;
  }

  TestSupport::Texts lines() const {
    TestSupport::Texts lines = {kOpen, kDefault};
    for (const auto& each : choices) {
      for (std::string& line : linesOf(*each)) lines.push_back(std::move(line));
    }
    lines.emplace_back(kClose);
    return lines;
  }
};

}  // namespace

TEST(ATPPDOption, EqualsPlainListsUnderRandomEditsAndQuestions) {
  const std::string filler(20, '.');
  for (unsigned seed = 1; seed <= 40; ++seed) {
    std::mt19937 random(seed);
    const auto below = [&random](std::size_t limit) { return std::size_t{random()} % limit; };
    const auto randomName = [&] { return "N" + std::to_string(below(12)); };
    const auto option = ATPPDOption::optionWithString(kOpen);
    option->addString(kDefault, PPDLineTypeDefaultChoice);
    for (int count = 0; count < 5; ++count) {
      option->addString(lineOf(randomName(), filler + "id" + std::to_string(below(20))), PPDLineTypeChoice);
    }
    option->addString(kClose, PPDLineTypeCloseUI);
    ModelOfOption model;
    for (const auto& each : option->choices()) model.choices.push_back(each);
    std::vector<ChoicePtr> removed;
    for (int step = 0; step < 250; ++step) {
      SCOPED_TRACE(testing::Message() << "seed " << seed << ", step " << step);
      switch (below(6)) {
        case 0: {
          ChoicePtr added;
          if (!removed.empty() && below(2) == 0) {
            added = removed.back();
            removed.pop_back();
          } else if (below(4) == 0) {
            added = std::make_shared<ATPPDChoice>();
          } else {
            added = ATPPDChoice::choiceWithString(lineOf(randomName(), filler + "id" + std::to_string(below(20))));
          }
          option->addChoice(added);
          model.choices.push_back(added);
          break;
        }
        case 1: {
          if (model.choices.empty()) break;
          const auto place = model.choices.begin() + static_cast<std::ptrdiff_t>(below(model.choices.size()));
          option->removeChoice(*place);
          removed.push_back(*place);
          model.choices.erase(place);
          break;
        }
        case 2:
          for (const ChoicePtr& each : model.choices) {
            if (!each->container().empty() || below(2) == 0) continue;
            each->addString(lineOf(randomName(), filler + "id" + std::to_string(below(20))), PPDLineTypeChoice);
          }
          break;
        default: {
          const std::string name = randomName();
          ASSERT_EQ(option->choiceForName(name), model.choiceForName(name)) << name;
          const std::string part = (below(2) == 0 ? "id" : "") + std::to_string(below(20));
          ASSERT_EQ(option->choiceWithCodeContaining(part), model.choiceWithCodeContaining(part)) << part;
        }
      }
      ASSERT_EQ(std::vector<ChoicePtr>(option->choices().begin(), option->choices().end()), model.choices);
      ASSERT_EQ(linesOf(*option), model.lines());
    }
  }
}

TEST(ATPPDOption, AChoiceMayBeRemovedByTheReferenceThatItsListGives) {
  const auto option = ATPPDOption::optionWithString("*OpenUI *M/M: PickOne\n");
  option->addString("*M A/A: \"a\"\n", PPDLineTypeChoice);
  option->removeChoice(option->choices().back());
  EXPECT_TRUE(option->choices().empty());
  EXPECT_EQ(option->PPDObjects().size(), 1U);
}

TEST(ATPPDOption, AChoiceWithoutLinesThatGetsACodeLaterIsFoundByIt) {
  const auto option = mediaType();
  const auto later = std::make_shared<ATPPDChoice>();
  const ChoicePtr behind = choice("Behind", "471");
  option->addChoice(later);
  option->addChoice(behind);
  EXPECT_EQ(option->choiceWithCodeContaining("471"), behind);
  later->addString("*MediaType Later/Later: \"4711\"\n", PPDLineTypeChoice);
  EXPECT_EQ(option->choiceWithCodeContaining("471"), later);
  EXPECT_EQ(option->choiceForName("Later"), later);
}
