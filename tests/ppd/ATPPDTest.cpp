// SPDX-License-Identifier: MIT
#include "ppd/document/ATPPD.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <typeinfo>
#include <utility>
#include <vector>

#include "tests/ppd/TestSupport.h"

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::linesOf;
using TestSupport::Texts;

namespace {

using AttributePtr = ATPPD::AttributePtr;
using Attributes = ATPPD::Attributes;
using ObjectPtr = std::shared_ptr<IATPPDObject>;
using Line = std::pair<std::string, PPDLineType>;
constexpr std::nullopt_t null = std::nullopt;

constexpr PPDLineType kTypes[] = {
    PPDLineTypeComment,
    PPDLineTypeStatement,
    PPDLineTypeContinuation,
    PPDLineTypeEnd,
    PPDLineTypeOpenGroup,
    PPDLineTypeCloseGroup,
    PPDLineTypeOpenUI,
    PPDLineTypeCloseUI,
    PPDLineTypeOrderDependency,
    PPDLineTypeDefaultChoice,
    PPDLineTypeChoice,
    PPDLineTypeNewLine,
    PPDLineTypeChoiceContinuation,
    PPDLineTypeChoiceEnd,
};

void addTo(ATPPD& document, const std::vector<Line>& lines) {
  for (const auto& [text, type] : lines) document.addString(text, type);
}

std::unique_ptr<ATPPD> documentOf(const std::vector<Line>& lines) {
  auto document = std::make_unique<ATPPD>();
  addTo(*document, lines);
  return document;
}

std::unique_ptr<ATPPD> documentOfStatements(const Texts& statements) {
  auto document = std::make_unique<ATPPD>();
  for (const std::string& statement : statements) document->addString(statement, PPDLineTypeStatement);
  return document;
}

std::vector<ObjectPtr> childrenOf(const ATPPD& document) {
  return {document.PPDObjects().begin(), document.PPDObjects().end()};
}

Attributes attributesOf(const ATPPD& document) {
  return {document.attributes().begin(), document.attributes().end()};
}

Texts linesOfAll(const Attributes& attributes) {
  Texts lines;
  for (const AttributePtr& attribute : attributes) {
    for (std::string& line : linesOf(*attribute)) lines.push_back(std::move(line));
  }
  return lines;
}

const std::type_info& kindOf(const IATPPDObject& object) {
  return typeid(object);
}

AttributePtr built(std::string_view name, const ATPPD::Spec& spec = null) {
  return ATPPDAttribute::initWithName(name, spec, null, "\"v\"");
}

}  // namespace

// The routing of lines: every line type, in every state that the document can be in while a file is read.
namespace {

enum class State { noChild, behindAttribute, behindPlainObject, behindOption, groupOpen, behindGroup };

std::vector<Line> linesToReach(State state) {
  switch (state) {
    case State::noChild:
      return {};
    case State::behindAttribute:
      return {{"*Before: x\n", PPDLineTypeStatement}};
    case State::behindPlainObject:
      return {{"*% before\n", PPDLineTypeComment}};
    case State::behindOption:
      return {{"*OpenUI *A\n", PPDLineTypeOpenUI}};
    case State::groupOpen:
      return {{"*OpenGroup: G/T\n", PPDLineTypeOpenGroup}};
    case State::behindGroup:
      return {{"*OpenGroup: G/T\n", PPDLineTypeOpenGroup}, {"*CloseGroup: G\n", PPDLineTypeCloseGroup}};
  }
  return {};
}

// Whether the children are asked for before the line comes; reading must not depend on it.
using RoutingParameter = std::tuple<State, bool>;

class ATPPDRouting : public testing::TestWithParam<RoutingParameter> {
 protected:
  ATPPDRouting() : before_(linesToReach(state())) {}

  static State state() { return std::get<0>(GetParam()); }
  static bool groupIsOpen() { return state() == State::groupOpen; }

  std::unique_ptr<ATPPD> document() const {
    auto document = documentOf(before_);
    if (std::get<1>(GetParam())) static_cast<void>(document->PPDObjects());
    return document;
  }

  // Adds the line and expects a new child of this class that holds just the line.
  void expectNewChild(PPDLineType type, const std::type_info& kind) const {
    SCOPED_TRACE(testing::Message() << "type " << type);
    const auto document = this->document();
    document->addString("line\n", type);
    Texts expected;
    for (const auto& line : before_) expected.push_back(line.first);
    expected.emplace_back("line\n");
    EXPECT_EQ(linesOf(*document), expected);
    ASSERT_EQ(document->PPDObjects().size(), childrenBefore() + 1);
    const ObjectPtr last = document->PPDObjects().back();
    EXPECT_EQ(kindOf(*last), kind);
    EXPECT_THAT(linesOf(*last), ElementsAre("line\n"));
    const bool isAttribute = kind == typeid(ATPPDAttribute);
    const bool isGroup = kind == typeid(ATPPDGroup);
    EXPECT_EQ(document->attributes().size(), attributesBefore() + (isAttribute ? 1U : 0U));
    EXPECT_EQ(document->groups().size(), groupsBefore() + (isGroup ? 1U : 0U));
    if (isAttribute) {
      EXPECT_EQ(document->attributes().back(), last);
    }
    if (isGroup) {
      EXPECT_EQ(document->groups().back(), last);
    }
    EXPECT_EQ(document->groupOpened(), isGroup || groupIsOpen());
    EXPECT_EQ(linesOf(*document), expected);
  }

  // Adds the line and expects it among those of the last child, or nowhere.
  void expectLastChild(PPDLineType type, bool kept) const {
    SCOPED_TRACE(testing::Message() << "type " << type);
    const auto document = this->document();
    document->addString("line\n", type);
    Texts expected;
    for (const auto& line : before_) expected.push_back(line.first);
    if (kept) expected.emplace_back("line\n");
    EXPECT_EQ(linesOf(*document), expected);
    ASSERT_EQ(document->PPDObjects().size(), childrenBefore());
    if (childrenBefore() > 0) {
      EXPECT_EQ(linesOf(*document->PPDObjects().back()), expected);
    }
    EXPECT_EQ(document->attributes().size(), attributesBefore());
    EXPECT_EQ(document->groups().size(), groupsBefore());
    EXPECT_EQ(document->groupOpened(), groupIsOpen() && type != PPDLineTypeCloseGroup);
    EXPECT_EQ(linesOf(*document), expected);
  }

  std::size_t childrenBefore() const { return before_.empty() ? 0U : 1U; }
  static std::size_t attributesBefore() { return state() == State::behindAttribute ? 1U : 0U; }
  static std::size_t groupsBefore() { return state() == State::groupOpen || state() == State::behindGroup ? 1U : 0U; }

  std::vector<Line> before_;
};

}  // namespace

TEST_P(ATPPDRouting, CommentAndNewLineBeginAPlainObjectOutsideGroups) {
  for (const PPDLineType type : {PPDLineTypeComment, PPDLineTypeNewLine}) {
    groupIsOpen() ? expectLastChild(type, true) : expectNewChild(type, typeid(ATPPDObject));
  }
}

TEST_P(ATPPDRouting, StatementBeginsAnAttributeOutsideGroups) {
  groupIsOpen() ? expectLastChild(PPDLineTypeStatement, true)
                : expectNewChild(PPDLineTypeStatement, typeid(ATPPDAttribute));
}

TEST_P(ATPPDRouting, OpenUIBeginsAnOptionOutsideGroups) {
  groupIsOpen() ? expectLastChild(PPDLineTypeOpenUI, true) : expectNewChild(PPDLineTypeOpenUI, typeid(ATPPDOption));
}

TEST_P(ATPPDRouting, OpenGroupBeginsAGroupEverywhere) {
  expectNewChild(PPDLineTypeOpenGroup, typeid(ATPPDGroup));
}

TEST_P(ATPPDRouting, LinesOfAUIBlockGoToTheLastChild) {
  for (const PPDLineType type : {PPDLineTypeCloseUI, PPDLineTypeOrderDependency, PPDLineTypeDefaultChoice,
                                 PPDLineTypeChoice, PPDLineTypeChoiceContinuation, PPDLineTypeChoiceEnd}) {
    expectLastChild(type, state() != State::noChild);
  }
}

TEST_P(ATPPDRouting, FurtherLinesAndCloseGroupGoToTheLastChildAndAnOptionDropsThem) {
  for (const PPDLineType type : {PPDLineTypeContinuation, PPDLineTypeEnd, PPDLineTypeCloseGroup}) {
    expectLastChild(type, state() != State::noChild && state() != State::behindOption);
  }
}

TEST_P(ATPPDRouting, LinesOfNoKnownTypeAreDroppedAndLogged) {
  for (const int type : {-1, 0, 15, 1000}) {
    const TestLog log;
    expectLastChild(static_cast<PPDLineType>(type), false);
    log.expect("-[ATPPD addString:ofType:]: ERROR: String line\n of type " + std::to_string(type) + " is ignored!\n");
  }
}

TEST_P(ATPPDRouting, NothingIsLoggedForALineThatIsTaken) {
  const TestLog log;
  for (const PPDLineType type : kTypes) {
    const bool refused = type == PPDLineTypeContinuation || type == PPDLineTypeEnd || type == PPDLineTypeCloseGroup;
    if (state() == State::behindOption && refused) continue;
    const auto document = this->document();
    document->addString("line\n", type);
    static_cast<void>(document->PPDObjects());
  }
  log.expect("");
}

INSTANTIATE_TEST_SUITE_P(States, ATPPDRouting,
                         testing::Combine(testing::Values(State::noChild, State::behindAttribute,
                                                          State::behindPlainObject, State::behindOption,
                                                          State::groupOpen, State::behindGroup),
                                          testing::Bool()));

TEST(ATPPD, IsEmptyAtFirst) {
  const ATPPD document;
  EXPECT_FALSE(document.groupOpened());
  EXPECT_THAT(linesOf(document), IsEmpty());
  EXPECT_TRUE(document.PPDObjects().empty());
  EXPECT_TRUE(document.attributes().empty());
  EXPECT_THAT(document.groups(), IsEmpty());
  EXPECT_EQ(document.supportedLocalizations(), nullptr);
  EXPECT_EQ(document.attributeForName("Foo"), nullptr);
  EXPECT_THAT(document.attributesForName("Foo"), IsEmpty());
  EXPECT_THAT(document.attributesForName("Foo", "x"), IsEmpty());
  EXPECT_THAT(document.localizationForAttributeWithName("Foo"), IsEmpty());
  EXPECT_EQ(document.groupForName("G"), nullptr);
  EXPECT_EQ(document.optionForName("A"), nullptr);
}

TEST(ATPPD, AnOptionLogsTheLineThatItDrops) {
  const auto document = documentOf({{"*OpenUI *A\n", PPDLineTypeOpenUI}});
  const TestLog log;
  document->addString("*CloseGroup: G\n", PPDLineTypeCloseGroup);
  log.expect("-[ATPPDOption addString:ofType:]: String *CloseGroup: G\n of type 6 is ignored!\n");
}

TEST(ATPPD, CommentsAndEmptyLinesAreChildrenOfTheirOwn) {
  const auto document = documentOf({{"*% 1\n", PPDLineTypeComment},
                                    {"\n", PPDLineTypeNewLine},
                                    {"\r\n", PPDLineTypeNewLine},
                                    {"*% 2\n", PPDLineTypeComment}});
  EXPECT_EQ(document->PPDObjects().size(), 4U);
  EXPECT_THAT(linesOf(*document), ElementsAre("*% 1\n", "\n", "\r\n", "*% 2\n"));
}

TEST(ATPPD, AStatementOfSeveralLinesIsOneChild) {
  const auto document = documentOf({{"*Foo: \"a\n", PPDLineTypeStatement},
                                    {"b\n", PPDLineTypeContinuation},
                                    {"c\"\n", PPDLineTypeContinuation},
                                    {"*End\n", PPDLineTypeEnd},
                                    {"*Bar: x\n", PPDLineTypeStatement}});
  EXPECT_EQ(document->PPDObjects().size(), 2U);
  EXPECT_THAT(linesOf(*document->attributeForName("Foo")), ElementsAre("*Foo: \"a\n", "b\n", "c\"\n", "*End\n"));
  EXPECT_EQ(document->attributeForName("Foo")->value(), "\"a\nb\nc\"");
}

TEST(ATPPD, ACommentInsideAValueTakesTheRestOfTheValue) {
  const auto document = documentOf({{"*Foo: \"a\n", PPDLineTypeStatement},
                                    {"*% comment\n", PPDLineTypeComment},
                                    {"b\"\n", PPDLineTypeContinuation},
                                    {"*End\n", PPDLineTypeEnd}});
  EXPECT_EQ(document->attributeForName("Foo")->value(), "\"a");
  EXPECT_EQ(document->PPDObjects().size(), 2U);
  EXPECT_THAT(linesOf(*document->PPDObjects().back()), ElementsAre("*% comment\n", "b\"\n", "*End\n"));
}

TEST(ATPPD, ACommentInsideABlockOutsideGroupsTakesTheRestOfTheBlock) {
  const auto document = documentOf({{"*OpenUI *A\n", PPDLineTypeOpenUI},
                                    {"*A x: \"\"\n", PPDLineTypeChoice},
                                    {"*% comment\n", PPDLineTypeComment},
                                    {"*A y: \"\"\n", PPDLineTypeChoice},
                                    {"*CloseUI: *A\n", PPDLineTypeCloseUI}});
  ASSERT_EQ(document->PPDObjects().size(), 2U);
  EXPECT_THAT(linesOf(**document->PPDObjects().begin()), ElementsAre("*OpenUI *A\n", "*A x: \"\"\n"));
  EXPECT_THAT(linesOf(*document->PPDObjects().back()), ElementsAre("*% comment\n", "*A y: \"\"\n", "*CloseUI: *A\n"));
}

TEST(ATPPD, TheNewGroupIsTheOpenOneAndGroupsDoNotNest) {
  const auto document = documentOf({{"*OpenGroup: G/T\n", PPDLineTypeOpenGroup},
                                    {"*Foo: 1\n", PPDLineTypeStatement},
                                    {"*OpenGroup: H/T\n", PPDLineTypeOpenGroup},
                                    {"*Foo: 2\n", PPDLineTypeStatement},
                                    {"*CloseGroup: H\n", PPDLineTypeCloseGroup},
                                    {"*Foo: 3\n", PPDLineTypeStatement}});
  ASSERT_EQ(document->groups().size(), 2U);
  EXPECT_THAT(linesOf(*document->groups()[0]), ElementsAre("*OpenGroup: G/T\n", "*Foo: 1\n"));
  EXPECT_THAT(linesOf(*document->groups()[1]), ElementsAre("*OpenGroup: H/T\n", "*Foo: 2\n", "*CloseGroup: H\n"));
  EXPECT_THAT(linesOfAll(attributesOf(*document)), ElementsAre("*Foo: 3\n"));
}

TEST(ATPPD, GroupOpenedFollowsTheLinesAndCanBeSet) {
  ATPPD document;
  document.addString("*OpenGroup: G/T\n", PPDLineTypeOpenGroup);
  EXPECT_TRUE(document.groupOpened());
  document.addString("*CloseGroup: G\n", PPDLineTypeCloseGroup);
  EXPECT_FALSE(document.groupOpened());
  document.setGroupOpened(true);
  EXPECT_TRUE(document.groupOpened());
  document.addString("*Foo: x\n", PPDLineTypeStatement);
  EXPECT_TRUE(document.attributes().empty());
  EXPECT_THAT(linesOf(*document.groups().front()), ElementsAre("*OpenGroup: G/T\n", "*CloseGroup: G\n", "*Foo: x\n"));
}

TEST(ATPPD, FurtherLinesGoToAnAttributeThatWasAddedLast) {
  ATPPD document;
  document.addPPDAttribute(ATPPDAttribute::attributeWithString("*Foo: \"a\n"));
  document.addString("b\"\n", PPDLineTypeContinuation);
  EXPECT_THAT(linesOf(document), ElementsAre("*Foo: \"a\n", "b\"\n"));
  EXPECT_EQ(document.PPDObjects().size(), 1U);
}

TEST(ATPPD, FurtherLinesGoToTheChildThatIsLastAfterARemoval) {
  const auto document = documentOf({{"*OpenUI *A\n", PPDLineTypeOpenUI}, {"*Foo: x\n", PPDLineTypeStatement}});
  document->removePPDAttribute(document->attributeForName("Foo"));
  document->addString("more\n", PPDLineTypeContinuation);
  EXPECT_THAT(linesOf(*document), ElementsAre("*OpenUI *A\n"));  // an option has no place for it
  document->addString("*A x: \"\"\n", PPDLineTypeChoice);
  EXPECT_EQ(document->PPDObjects().size(), 1U);
  EXPECT_THAT(linesOf(*document), ElementsAre("*OpenUI *A\n", "*A x: \"\"\n"));
}

TEST(ATPPD, FurtherLinesAreLostWhenTheOnlyChildWasRemoved) {
  const auto document = documentOfStatements({"*Foo: x\n"});
  document->removePPDAttribute(document->attributeForName("Foo"));
  document->addString("more\n", PPDLineTypeContinuation);
  EXPECT_THAT(linesOf(*document), IsEmpty());
  EXPECT_TRUE(document->PPDObjects().empty());
}

// Look-ups.

TEST(ATPPD, FindsTheFirstAttributeOfAName) {
  const auto document = documentOfStatements({"*Foo A: 1\n", "*Bar: 2\n", "*Foo: 3\n", "*Foo B: 4\n", "*foo: 5\n"});
  for (int time = 0; time < 10; ++time) {
    EXPECT_EQ(document->attributeForName("Foo")->value(), "1");
    EXPECT_EQ(document->attributeForName("Foo", "B")->value(), "4");
    EXPECT_EQ(document->attributeForName("Bar")->value(), "2");
    EXPECT_EQ(document->attributeForName("foo")->value(), "5");
    EXPECT_EQ(document->attributeForName("FOO"), nullptr);
    EXPECT_EQ(document->attributeForName("Fo"), nullptr);
    EXPECT_EQ(document->attributeForName(""), nullptr);
    EXPECT_EQ(document->attributeForName("Foo", "b"), nullptr);
    EXPECT_EQ(document->attributeForName("Foo", ""), nullptr);
    EXPECT_EQ(document->attributeForName("Bar", "A"), nullptr);
  }
}

TEST(ATPPD, FindsEveryAttributeOfANameInListOrder) {
  const auto document = documentOfStatements({"*Foo A: 1\n", "*Bar: 2\n", "*Foo: 3\n", "*Foo A: 4\n"});
  EXPECT_THAT(linesOfAll(document->attributesForName("Foo")), ElementsAre("*Foo A: 1\n", "*Foo: 3\n", "*Foo A: 4\n"));
  EXPECT_THAT(document->attributesForName("Baz"), IsEmpty());
}

TEST(ATPPD, AttributesInsideGroupsAndOptionsAreNotFound) {
  const auto document = documentOf({{"*OpenGroup: G/T\n", PPDLineTypeOpenGroup},
                                    {"*Foo A: 1\n", PPDLineTypeStatement},
                                    {"*OpenUI *A\n", PPDLineTypeOpenUI},
                                    {"*Foo B: 2\n", PPDLineTypeChoice},
                                    {"*CloseUI: *A\n", PPDLineTypeCloseUI},
                                    {"*CloseGroup: G\n", PPDLineTypeCloseGroup}});
  EXPECT_EQ(document->attributeForName("Foo"), nullptr);
  EXPECT_THAT(document->attributesForName("Foo"), IsEmpty());
  EXPECT_THAT(document->attributesForName("Foo", "A"), IsEmpty());
}

TEST(ATPPD, FindsAttributesWhoseSpecContainsAPart) {
  const auto document = documentOfStatements({"*P RGB.Plain.300: 1\n", "*Q RGB.Plain.300: 2\n", "*P: Plain\n",
                                              "*P RGB.Glossy.300/Plain: 3\n", "*P CMYK.PlainPlus.600: 4\n"});
  EXPECT_THAT(linesOfAll(document->attributesForName("P", "Plain")),
              ElementsAre("*P RGB.Plain.300: 1\n", "*P CMYK.PlainPlus.600: 4\n"));
  EXPECT_THAT(linesOfAll(document->attributesForName("P", ".Plain.")), ElementsAre("*P RGB.Plain.300: 1\n"));
  EXPECT_THAT(document->attributesForName("P", ""), IsEmpty());
  EXPECT_THAT(document->attributesForName("R", "Plain"), IsEmpty());
}

TEST(ATPPD, ARemovedAttributeIsNotFoundAgainWhateverTheFirstLookUpWas) {
  using LookUp = Attributes (*)(const ATPPD&);
  const LookUp lookUps[] = {
      [](const ATPPD& document) { return document.attributesForName("P"); },
      [](const ATPPD& document) { return document.attributesForName("P", "Plain"); },
      [](const ATPPD& document) { return document.localizationForAttributeWithName("P"); },
      [](const ATPPD& document) { return document.localizationForAttributeWithName("P", "A.Plain.1"); },
  };
  for (const LookUp first : lookUps) {
    for (const LookUp second : lookUps) {
      const auto document = documentOfStatements({"*cupsLanguages: \"de\"\n", "*P A.Plain.1: x\n",
                                                  "*de.P A.Plain.1: x\n", "*P A.Plain.1: y\n", "*de.P A.Plain.1: y\n"});
      for (const AttributePtr& found : first(*document)) {
        ASSERT_NE(found, nullptr);
        document->removePPDAttribute(found);
        const Attributes left = second(*document);
        ASSERT_EQ(std::count(left.begin(), left.end(), nullptr), 0);
        EXPECT_EQ(std::count(left.begin(), left.end(), found), 0);
      }
      EXPECT_THAT(first(*document), IsEmpty());
    }
  }
}

TEST(ATPPD, AttributesThatComeAfterTheFirstLookUpAreFound) {
  const auto document = documentOfStatements({"*Foo A: 1\n"});
  EXPECT_EQ(document->attributesForName("Foo").size(), 1U);
  EXPECT_EQ(document->attributesForName("Foo", "A").size(), 1U);
  document->addString("*Foo AB: 2\n", PPDLineTypeStatement);
  document->addString("*Bar: 3\n", PPDLineTypeStatement);
  document->addPPDAttribute(built("Foo", "CA"));
  EXPECT_EQ(document->attributesForName("Foo").size(), 3U);
  EXPECT_THAT(linesOfAll(document->attributesForName("Foo", "A")),
              ElementsAre("*Foo A: 1\n", "*Foo AB: 2\n", "*Foo CA: \"v\"\n"));
  EXPECT_EQ(document->attributeForName("Bar")->value(), "3");
}

TEST(ATPPD, FindsAnAttributeWithABlankBehindItsAsterisk) {
  const auto document = documentOfStatements({" * QZPPDUpdaters: \"A\"\n", "* QZPPDUpdaters Spec: \"B\"\n"});
  for (int time = 0; time < 5; ++time) {
    ASSERT_NE(document->attributeForName("QZPPDUpdaters"), nullptr);
    EXPECT_EQ(document->attributeForName("QZPPDUpdaters")->value(), "\"A\"");
    ASSERT_NE(document->attributeForName("QZPPDUpdaters", "Spec"), nullptr);
    EXPECT_EQ(document->attributeForName("QZPPDUpdaters", "Spec")->value(), "\"B\"");
    EXPECT_EQ(document->attributesForName("QZPPDUpdaters").size(), 2U);
    EXPECT_EQ(document->attributeForName(" QZPPDUpdaters"), nullptr);
  }
}

TEST(ATPPD, AnAttributeIsFoundByTheNameThatItHasNow) {
  for (const int lookUps : {0, 1, 5}) {
    const auto document = documentOfStatements({"*cupsLanguages: \"de\"\n"});
    const auto later = std::make_shared<ATPPDAttribute>();
    document->addPPDAttribute(later);
    const AttributePtr other = built("Foo", "A.B.C");
    document->addPPDAttribute(other);
    for (int time = 0; time < lookUps; ++time) {
      ASSERT_EQ(document->attributeForName("Foo"), other);
      ASSERT_EQ(document->attributeForName("Foo", "A.B.C"), other);
      ASSERT_EQ(document->attributeForName("Bar"), nullptr);
      ASSERT_EQ(document->attributesForName("Foo"), Attributes{other});
      ASSERT_EQ(document->attributesForName("Foo", "A.B"), Attributes{other});
      ASSERT_THAT(document->localizationForAttributeWithName("Foo"), IsEmpty());
    }
    later->addString("*Foo A.B.C: x\n", PPDLineTypeStatement);
    EXPECT_EQ(document->attributeForName("Foo"), later);
    EXPECT_EQ(document->attributeForName("Foo", "A.B.C"), later);
    EXPECT_EQ(document->attributesForName("Foo"), (Attributes{later, other}));
    EXPECT_EQ(document->attributesForName("Foo", "A.B"), (Attributes{later, other}));
    EXPECT_EQ(document->attributeForName("Foo")->value(), "x");
  }
}

TEST(ATPPD, ALocalizationIsFoundByTheNameThatItHasNow) {
  for (const int lookUps : {0, 1, 5}) {
    const auto document = documentOfStatements({"*cupsLanguages: \"de\"\n"});
    const auto later = std::make_shared<ATPPDAttribute>();
    document->addPPDAttribute(later);
    for (int time = 0; time < lookUps; ++time) {
      ASSERT_THAT(document->localizationForAttributeWithName("Foo"), IsEmpty());
      ASSERT_THAT(document->localizationForAttributeWithName("Foo", "S"), IsEmpty());
    }
    later->addString("*de.Foo S: x\n", PPDLineTypeStatement);
    EXPECT_EQ(document->localizationForAttributeWithName("Foo"), Attributes{later});
    EXPECT_EQ(document->localizationForAttributeWithName("Foo", "S"), Attributes{later});
  }
}

TEST(ATPPD, ALookUpAsksNoOptionBehindTheMatchForItsName) {
  const std::vector<Line> lines = {
      {"*OpenGroup: G/T\n", PPDLineTypeOpenGroup},  {"*OpenUI *A\n", PPDLineTypeOpenUI},
      {"*DefaultA: x\n", PPDLineTypeDefaultChoice}, {"*OpenUI *B\n", PPDLineTypeOpenUI},
      {"*CloseGroup: G\n", PPDLineTypeCloseGroup},  {"*OpenGroup: H/T\n", PPDLineTypeOpenGroup},
      {"*OpenUI *C\n", PPDLineTypeOpenUI}};
  for (const bool asked : {false, true}) {
    const auto document = documentOf(lines);
    const auto a = document->groups()[0]->options()[0];
    const auto b = document->groups()[0]->options()[1];
    const auto c = document->groups()[1]->options()[0];
    for (int time = 0; time < 5; ++time) ASSERT_EQ(document->optionForName("A"), a);
    if (asked) {
      ASSERT_EQ(document->optionForName(""), b);  // which asks the one of the other group for nothing
    }
    b->setDefChoice(StatementString("*DefaultB: x\n"));
    c->setDefChoice(StatementString("*DefaultC: x\n"));
    EXPECT_EQ(document->optionForName("B"), asked ? nullptr : b);
    EXPECT_EQ(document->optionForName("C"), c);
  }
}

TEST(ATPPD, FindsAGroupByItsName) {
  const auto document = documentOf({{"*OpenGroup: G/T\n", PPDLineTypeOpenGroup},
                                    {"*CloseGroup: G\n", PPDLineTypeCloseGroup},
                                    {"*OpenGroup: H\n", PPDLineTypeOpenGroup},
                                    {"*CloseGroup: H\n", PPDLineTypeCloseGroup},
                                    {"*OpenGroup: G/Second\n", PPDLineTypeOpenGroup}});
  EXPECT_EQ(document->groupForName("G"), document->groups()[0]);
  EXPECT_EQ(document->groupForName("H\n"), document->groups()[1]);
  EXPECT_EQ(document->groupForName("H"), nullptr);
  EXPECT_EQ(document->groupForName("g"), nullptr);
}

TEST(ATPPD, FindsOptionsInsideGroupsOnly) {
  const auto document = documentOf({{"*OpenUI *A\n", PPDLineTypeOpenUI},
                                    {"*DefaultA: x\n", PPDLineTypeDefaultChoice},
                                    {"*CloseUI: *A\n", PPDLineTypeCloseUI},
                                    {"*OpenGroup: G/T\n", PPDLineTypeOpenGroup},
                                    {"*OpenUI *B\n", PPDLineTypeOpenUI},
                                    {"*DefaultB: x\n", PPDLineTypeDefaultChoice},
                                    {"*CloseUI: *B\n", PPDLineTypeCloseUI},
                                    {"*CloseGroup: G\n", PPDLineTypeCloseGroup},
                                    {"*OpenGroup: H/T\n", PPDLineTypeOpenGroup},
                                    {"*OpenUI *B\n", PPDLineTypeOpenUI},
                                    {"*DefaultB: y\n", PPDLineTypeDefaultChoice},
                                    {"*CloseUI: *B\n", PPDLineTypeCloseUI},
                                    {"*OpenUI *C\n", PPDLineTypeOpenUI},
                                    {"*DefaultC: x\n", PPDLineTypeDefaultChoice}});
  EXPECT_EQ(document->optionForName("A"), nullptr);
  EXPECT_EQ(document->optionForName("B"), document->groups()[0]->options()[0]);
  EXPECT_EQ(document->optionForName("C"), document->groups()[1]->options()[1]);
  EXPECT_EQ(document->optionForName("D"), nullptr);
}

TEST(ATPPD, GroupsAndOptionsAreFoundByManyLookUpsWhileLinesCome) {
  ATPPD document;
  for (int number = 0; number < 12; ++number) {
    const std::string name = std::to_string(number % 8);
    addTo(document, {{"*OpenGroup: G" + name + "/T\n", PPDLineTypeOpenGroup},
                     {"*OpenUI *O\n", PPDLineTypeOpenUI},
                     {"*DefaultO" + name + ": x\n", PPDLineTypeDefaultChoice},
                     {"*CloseUI: *O\n", PPDLineTypeCloseUI},
                     {"*OpenUI *P\n", PPDLineTypeOpenUI},
                     {"*DefaultP" + name + ": x\n", PPDLineTypeDefaultChoice},
                     {"*CloseUI: *P\n", PPDLineTypeCloseUI},
                     {"*CloseGroup: G\n", PPDLineTypeCloseGroup}});
    for (int asked = 0; asked < 10; ++asked) {
      const bool known = asked <= number && asked < 8;
      const std::string digit = std::to_string(asked);
      const auto index = static_cast<std::size_t>(asked);
      EXPECT_EQ(document.groupForName("G" + digit), known ? document.groups()[index] : nullptr);
      EXPECT_EQ(document.optionForName("O" + digit), known ? document.groups()[index]->options()[0] : nullptr);
      EXPECT_EQ(document.optionForName("P" + digit), known ? document.groups()[index]->options()[1] : nullptr);
    }
  }
}

TEST(ATPPD, AnOptionThatItsGroupTakesByItselfIsFoundThroughTheDocument) {
  const auto document = documentOf({{"*OpenGroup: G/T\n", PPDLineTypeOpenGroup},
                                    {"*OpenUI *A\n", PPDLineTypeOpenUI},
                                    {"*DefaultA: x\n", PPDLineTypeDefaultChoice}});
  ASSERT_NE(document->optionForName("A"), nullptr);
  document->groups()[0]->addString("*OpenUI *B\n", PPDLineTypeOpenUI);
  document->groups()[0]->addString("*DefaultB: x\n", PPDLineTypeDefaultChoice);
  EXPECT_EQ(document->optionForName("B"), document->groups()[0]->options()[1]);
}

// Languages.

namespace {

Texts languagesOf(const std::string& value) {
  const auto document = documentOfStatements({"*cupsLanguages: " + value + "\n"});
  const auto* languages = document->supportedLocalizations();
  return languages != nullptr ? *languages : Texts{"none"};
}

}  // namespace

TEST(ATPPD, LanguagesAreSplitAtEveryWhiteSpaceCharacter) {
  EXPECT_THAT(languagesOf("\"de fr\""), ElementsAre("de", "fr"));
  EXPECT_THAT(languagesOf("\"de\tfr\""), ElementsAre("de", "fr"));
  EXPECT_THAT(languagesOf("\"de\xC2\xA0"
                          "fr\""),
              ElementsAre("de", "fr"));
  EXPECT_THAT(languagesOf("\"de  fr\""), ElementsAre("de", "", "fr"));
  EXPECT_THAT(languagesOf("\" de \""), ElementsAre("", "de", ""));
  EXPECT_THAT(languagesOf("\"de de\""), ElementsAre("de", "de"));
  EXPECT_THAT(languagesOf("\"de\""), ElementsAre("de"));
  EXPECT_THAT(languagesOf("\"\""), ElementsAre(""));
}

TEST(ATPPD, LineEndsDoNotSplitLanguages) {
  const auto document =
      documentOf({{"*cupsLanguages: \"de\n", PPDLineTypeStatement}, {"fr it\"\n", PPDLineTypeContinuation}});
  ASSERT_NE(document->supportedLocalizations(), nullptr);
  EXPECT_THAT(*document->supportedLocalizations(), ElementsAre("de\nfr", "it"));
}

TEST(ATPPD, ThereAreNoLanguagesWithoutQuotes) {
  EXPECT_THAT(languagesOf("de fr"), ElementsAre("none"));
  const auto document = documentOfStatements({"*cupsLanguages: de\n", "*de.ModelName: x\n"});
  EXPECT_THAT(document->localizationForAttributeWithName("ModelName"), IsEmpty());
}

TEST(ATPPD, TheFirstLanguageAttributeCountsWhateverItsSpec) {
  const auto document = documentOfStatements({"*cupsLanguages x: \"de\"\n", "*cupsLanguages: \"fr\"\n"});
  EXPECT_THAT(*document->supportedLocalizations(), ElementsAre("de"));
}

TEST(ATPPD, LanguagesAreLookedForAgainUntilTheyAreFound) {
  ATPPD document;
  EXPECT_EQ(document.supportedLocalizations(), nullptr);
  document.addString("*cupsLanguages: de\n", PPDLineTypeStatement);
  EXPECT_EQ(document.supportedLocalizations(), nullptr);
  document.attributeForName("cupsLanguages")->setValue("\"de fr\"");
  ASSERT_NE(document.supportedLocalizations(), nullptr);
  EXPECT_THAT(*document.supportedLocalizations(), ElementsAre("de", "fr"));
}

TEST(ATPPD, LanguagesStayWhenTheAttributeChangesOrGoes) {
  const auto document = documentOfStatements({"*cupsLanguages: \"de\"\n", "*de.Foo: x\n", "*fr.Foo: y\n"});
  ASSERT_NE(document->supportedLocalizations(), nullptr);
  document->attributeForName("cupsLanguages")->setValue("\"fr\"");
  EXPECT_THAT(*document->supportedLocalizations(), ElementsAre("de"));
  document->removePPDAttribute(document->attributeForName("cupsLanguages"));
  EXPECT_THAT(*document->supportedLocalizations(), ElementsAre("de"));
  EXPECT_THAT(linesOfAll(document->localizationForAttributeWithName("Foo")), ElementsAre("*de.Foo: x\n"));
}

TEST(ATPPD, LocalizationsStandInListOrderNotInLanguageOrder) {
  const auto document =
      documentOfStatements({"*fr.ModelName: 1\n", "*ModelName: 2\n", "*de.ModelName: 3\n", "*it.ModelName: 4\n",
                            "*fr.ModelName x: 5\n", "*de.Other: 6\n", "*cupsLanguages: \"de fr\"\n"});
  EXPECT_THAT(linesOfAll(document->localizationForAttributeWithName("ModelName")),
              ElementsAre("*fr.ModelName: 1\n", "*de.ModelName: 3\n", "*fr.ModelName x: 5\n"));
  EXPECT_THAT(linesOfAll(document->localizationForAttributeWithName("ModelName", "x")),
              ElementsAre("*fr.ModelName x: 5\n"));
  EXPECT_THAT(document->localizationForAttributeWithName("ModelName", ""), IsEmpty());
  EXPECT_THAT(document->localizationForAttributeWithName("modelname"), IsEmpty());
}

TEST(ATPPD, RepeatedLanguagesGiveEachLocalizationOnce) {
  const auto document = documentOfStatements({"*cupsLanguages: \"de de\"\n", "*de.Foo: x\n"});
  EXPECT_EQ(document->localizationForAttributeWithName("Foo").size(), 1U);
}

TEST(ATPPD, AnEmptyLanguageIsALanguage) {
  const auto document = documentOfStatements({"*cupsLanguages: \"de \"\n", "*.Foo: x\n", "*de.Foo: y\n"});
  EXPECT_THAT(linesOfAll(document->localizationForAttributeWithName("Foo")), ElementsAre("*.Foo: x\n", "*de.Foo: y\n"));
}

// Additions.

TEST(ATPPD, TheFirstAddedAttributeStandsAtTheVeryEnd) {
  const auto document = documentOf({{"*% comment\n", PPDLineTypeComment}, {"*OpenGroup: G/T\n", PPDLineTypeOpenGroup}});
  const AttributePtr added = built("Foo");
  document->addPPDAttribute(added);
  EXPECT_THAT(linesOf(*document), ElementsAre("*% comment\n", "*OpenGroup: G/T\n", "*Foo: \"v\"\n"));
  EXPECT_EQ(document->attributes().back(), added);
  EXPECT_EQ(document->attributeForName("Foo"), added);
}

TEST(ATPPD, AddedAttributesStandBehindTheLastOneInTheOrderOfAdding) {
  const auto document = documentOf({{"*Foo: x\n", PPDLineTypeStatement},
                                    {"*Bar: \"x\n", PPDLineTypeStatement},
                                    {"\"\n", PPDLineTypeContinuation},
                                    {"*% comment\n", PPDLineTypeComment},
                                    {"*OpenUI *A\n", PPDLineTypeOpenUI},
                                    {"*OpenGroup: G/T\n", PPDLineTypeOpenGroup}});
  document->addPPDAttribute(built("One"));
  document->addPPDAttribute(built("Two"));
  EXPECT_THAT(linesOf(*document), ElementsAre("*Foo: x\n", "*Bar: \"x\n", "\"\n", "*One: \"v\"\n", "*Two: \"v\"\n",
                                              "*% comment\n", "*OpenUI *A\n", "*OpenGroup: G/T\n"));
  EXPECT_EQ(document->attributes().size(), 4U);
}

TEST(ATPPD, TheLastAttributeMayStandBehindAGroup) {
  const auto document = documentOf({{"*Foo: x\n", PPDLineTypeStatement},
                                    {"*OpenGroup: G/T\n", PPDLineTypeOpenGroup},
                                    {"*CloseGroup: G\n", PPDLineTypeCloseGroup},
                                    {"*Bar: x\n", PPDLineTypeStatement},
                                    {"*% comment\n", PPDLineTypeComment}});
  document->addPPDAttribute(built("One"));
  EXPECT_THAT(linesOf(*document), ElementsAre("*Foo: x\n", "*OpenGroup: G/T\n", "*CloseGroup: G\n", "*Bar: x\n",
                                              "*One: \"v\"\n", "*% comment\n"));
}

TEST(ATPPD, AnAttributeIsListedOnlyWhenTheLastOneIsNoChild) {
  const auto document = documentOfStatements({"*Foo: x\n"});
  document->removeObjectFromPPDObjects(document->attributes().back().get());
  const AttributePtr added = built("Bar");
  document->addPPDAttribute(added);
  EXPECT_THAT(linesOf(*document), IsEmpty());
  EXPECT_EQ(document->attributes().size(), 2U);
  EXPECT_EQ(document->attributeForName("Bar"), added);
}

TEST(ATPPD, AddingNullIsIgnored) {
  const auto document = documentOfStatements({"*Foo: x\n"});
  const TestLog log;
  document->addPPDAttribute(nullptr);
  log.expect("");
  EXPECT_THAT(linesOf(*document), ElementsAre("*Foo: x\n"));
  EXPECT_EQ(document->attributes().size(), 1U);
}

TEST(ATPPD, AdditionsAreLogged) {
  ATPPD document;
  const TestLog log;
  document.addPPDAttribute(ATPPDAttribute::initWithName("Foo", "Bar", null, "\"v\""));
  document.addPPDAttribute(ATPPDAttribute::attributeWithString("*Bar\n"));
  document.addPPDAttribute(std::make_shared<ATPPDAttribute>());
  log.expect(
      "-[ATPPD addPPDAttribute:]: Adding Foo attribute with value \"v\"\n"
      "-[ATPPD addPPDAttribute:]: Adding Bar\n attribute with value (null)\n"
      "-[ATPPD addPPDAttribute:]: Adding (null) attribute with value (null)\n");
}

// Removals.

TEST(ATPPD, RemovesAnAttribute) {
  const auto document = documentOfStatements({"*Foo: 1\n", "*Foo: 2\n", "*Bar: 3\n"});
  const TestLog log;
  document->removePPDAttribute(document->attributeForName("Foo"));
  log.expect("-[ATPPD removePPDAttribute:]: Removing attribute Foo...\n");
  EXPECT_THAT(linesOf(*document), ElementsAre("*Foo: 2\n", "*Bar: 3\n"));
  EXPECT_THAT(linesOfAll(attributesOf(*document)), ElementsAre("*Foo: 2\n", "*Bar: 3\n"));
  EXPECT_EQ(document->attributeForName("Foo")->value(), "2");
}

TEST(ATPPD, RemovesByIdentity) {
  const auto document = documentOfStatements({"*Foo: 1\n", "*Foo: 1\n"});
  const Attributes both = document->attributesForName("Foo");
  ASSERT_EQ(both.size(), 2U);
  document->removePPDAttribute(both[1]);
  EXPECT_EQ(attributesOf(*document), Attributes{both[0]});
  EXPECT_EQ(childrenOf(*document), std::vector<ObjectPtr>{both[0]});
}

TEST(ATPPD, RemovingAStrangerChangesNothing) {
  const auto document = documentOfStatements({"*Foo: 1\n"});
  const TestLog log;
  document->removePPDAttribute(ATPPDAttribute::attributeWithString("*Foo: 1\n"));
  log.expect("-[ATPPD removePPDAttribute:]: Removing attribute Foo...\n");
  EXPECT_THAT(linesOf(*document), ElementsAre("*Foo: 1\n"));
  EXPECT_EQ(document->attributes().size(), 1U);
}

TEST(ATPPD, RemovingNullIsLoggedOnly) {
  const auto document = documentOfStatements({"*Foo: 1\n"});
  const TestLog log;
  document->removePPDAttribute(nullptr);
  log.expect("-[ATPPD removePPDAttribute:]: Removing attribute (null)...\n");
  EXPECT_THAT(linesOf(*document), ElementsAre("*Foo: 1\n"));
}

TEST(ATPPD, RemovesFromTheListWhatIsNoChildAndFromTheChildrenWhatIsNotListed) {
  const auto document = documentOfStatements({"*Foo: 1\n", "*Bar: 2\n"});
  const AttributePtr foo = document->attributeForName("Foo");
  document->removeObjectFromPPDObjects(foo.get());
  document->removePPDAttribute(foo);
  EXPECT_EQ(document->attributes().size(), 1U);
  const AttributePtr unlisted = built("Unlisted");
  document->appendObjectToPPDObjects(unlisted);
  document->removePPDAttribute(unlisted);
  EXPECT_THAT(linesOf(*document), ElementsAre("*Bar: 2\n"));
}

TEST(ATPPD, RemovesOneOccurrence) {
  ATPPD document;
  const AttributePtr twice = built("Foo");
  document.addPPDAttribute(twice);
  document.addPPDAttribute(twice);
  EXPECT_THAT(linesOf(document), ElementsAre("*Foo: \"v\"\n", "*Foo: \"v\"\n"));
  document.removePPDAttribute(twice);
  EXPECT_THAT(linesOf(document), ElementsAre("*Foo: \"v\"\n"));
  EXPECT_EQ(document.attributes().size(), 1U);
  EXPECT_EQ(document.attributesForName("Foo").size(), 1U);
  document.removePPDAttribute(twice);
  EXPECT_THAT(linesOf(document), IsEmpty());
  EXPECT_EQ(document.attributeForName("Foo"), nullptr);
}

TEST(ATPPD, RemovesTheFirstOccurrenceInListOrder) {
  ATPPD document;
  const AttributePtr twice = built("Twice");
  document.addPPDAttribute(twice);
  document.addPPDAttribute(built("Between"));
  document.addPPDAttribute(twice);
  ASSERT_THAT(linesOf(document), ElementsAre("*Twice: \"v\"\n", "*Between: \"v\"\n", "*Twice: \"v\"\n"));
  document.removePPDAttribute(twice);
  EXPECT_THAT(linesOf(document), ElementsAre("*Between: \"v\"\n", "*Twice: \"v\"\n"));
  EXPECT_THAT(linesOfAll(attributesOf(document)), ElementsAre("*Between: \"v\"\n", "*Twice: \"v\"\n"));
  EXPECT_EQ(document.attributeForName("Twice"), twice);
  document.removePPDAttribute(twice);
  EXPECT_THAT(linesOf(document), ElementsAre("*Between: \"v\"\n"));
  EXPECT_EQ(document.attributeForName("Twice"), nullptr);
}

TEST(ATPPD, RemovingNullWithLocalizationsIsLoggedOnly) {
  const Texts lines = {"*cupsLanguages: \"de\"\n", "*Foo: 1\n", "*de.Foo: 2\n", "*de.(null): 3\n", "*de.: 4\n"};
  const auto document = documentOfStatements(lines);
  document->addPPDAttribute(std::make_shared<ATPPDAttribute>());
  const TestLog log;
  document->removePPDAttributeWithLocalizations(nullptr);
  log.expect("-[ATPPD removePPDAttribute:]: Removing attribute (null)...\n");
  EXPECT_EQ(linesOf(*document), lines);
  EXPECT_EQ(document->attributes().size(), 6U);
}

TEST(ATPPD, AttributesInsideGroupsCannotBeRemoved) {
  const auto document = documentOf({{"*OpenGroup: G/T\n", PPDLineTypeOpenGroup}, {"*Foo: x\n", PPDLineTypeStatement}});
  document->removePPDAttribute(ATPPDAttribute::attributeWithString("*Foo: x\n"));
  EXPECT_THAT(linesOf(*document), ElementsAre("*OpenGroup: G/T\n", "*Foo: x\n"));
}

TEST(ATPPD, RemovesAnAttributeWithTheLocalizationsOfItsNameAndSpec) {
  const auto document =
      documentOfStatements({"*cupsLanguages: \"de fr\"\n", "*fr.Foo A: 1\n", "*Foo A: 2\n", "*Foo B: 3\n",
                            "*de.Foo A: 4\n", "*de.Foo B: 5\n", "*it.Foo A: 6\n", "*de.Foo A: 7\n"});
  const TestLog log;
  document->removePPDAttributeWithLocalizations(document->attributeForName("Foo", "A"));
  log.expect(
      "-[ATPPD removePPDAttribute:]: Removing attribute Foo...\n"
      "-[ATPPD removePPDAttribute:]: Removing attribute fr.Foo...\n"
      "-[ATPPD removePPDAttribute:]: Removing attribute de.Foo...\n"
      "-[ATPPD removePPDAttribute:]: Removing attribute de.Foo...\n");
  EXPECT_THAT(linesOf(*document),
              ElementsAre("*cupsLanguages: \"de fr\"\n", "*Foo B: 3\n", "*de.Foo B: 5\n", "*it.Foo A: 6\n"));
}

TEST(ATPPD, WithoutASpecLocalizationsOfEverySpecAreRemoved) {
  const auto document =
      documentOfStatements({"*cupsLanguages: \"de\"\n", "*Foo: 1\n", "*Foo A: 2\n", "*de.Foo: 3\n", "*de.Foo A: 4\n"});
  document->removePPDAttributeWithLocalizations(document->attributeForName("Foo"));
  EXPECT_THAT(linesOf(*document), ElementsAre("*cupsLanguages: \"de\"\n", "*Foo A: 2\n"));
}

TEST(ATPPD, LocalizationsAreFoundThoughTheLanguageAttributeIsRemoved) {
  const auto document = documentOfStatements({"*cupsLanguages: \"de\"\n", "*de.cupsLanguages: x\n", "*Foo: 1\n"});
  document->removePPDAttributeWithLocalizations(document->attributeForName("cupsLanguages"));
  EXPECT_THAT(linesOf(*document), ElementsAre("*Foo: 1\n"));
}

TEST(ATPPD, LaterChangesOfTheListOfChildrenThatWasSetDoNotShow) {
  const auto document = documentOfStatements({"*Foo: 1\n"});
  ATPPD::PPDObjectList list;
  const AttributePtr foo = document->attributeForName("Foo");
  list.append(foo);
  document->setPPDObjects(list);
  list.append(ATPPDObject::objectWithString("*% new\n", PPDLineTypeComment));
  document->addPPDAttribute(built("Bar"));
  list.removeAt(*list.positionOf(foo.get()));
  EXPECT_THAT(linesOf(*document), ElementsAre("*Foo: 1\n", "*Bar: \"v\"\n"));
}

TEST(ATPPD, TheListOfChildrenCanBeReplaced) {
  const auto document = documentOfStatements({"*Foo: 1\n"});
  ATPPD::PPDObjectList fresh;
  fresh.append(ATPPDObject::objectWithString("*% new\n", PPDLineTypeComment));
  document->setPPDObjects(std::move(fresh));
  EXPECT_THAT(linesOf(*document), ElementsAre("*% new\n"));
  EXPECT_EQ(document->attributes().size(), 1U);
}

// Reading does not depend on when the document is asked for something.

namespace {

std::vector<Line> randomLines(unsigned seed) {
  std::mt19937 random(seed);
  std::vector<Line> lines;
  for (int number = 0; number < 120; ++number) {
    const PPDLineType type = kTypes[random() % std::size(kTypes)];
    const std::string spec = random() % 2 == 0 ? "" : " Spec" + std::to_string(random() % 4);
    lines.emplace_back("*Name" + std::to_string(random() % 6) + spec + "/Text: \"" + std::to_string(number) + "\"\n",
                       type);
  }
  return lines;
}

// What the lines of a file become: for each child its class and its lines.
std::vector<std::pair<std::string, Texts>> outlineOf(const ATPPD& document) {
  std::vector<std::pair<std::string, Texts>> outline;
  for (const ObjectPtr& child : document.PPDObjects()) outline.emplace_back(kindOf(*child).name(), linesOf(*child));
  return outline;
}

// The lines that are kept, by the rules alone.
Texts keptOf(const std::vector<Line>& lines) {
  enum class Last { none, option, other } last = Last::none;
  bool groupOpen = false;
  Texts kept;
  for (const auto& [text, type] : lines) {
    const bool beginsOutsideGroups = type == PPDLineTypeComment || type == PPDLineTypeNewLine ||
                                     type == PPDLineTypeStatement || type == PPDLineTypeOpenUI;
    if (type == PPDLineTypeOpenGroup || (beginsOutsideGroups && !groupOpen)) {
      last = type == PPDLineTypeOpenUI ? Last::option : Last::other;
      kept.push_back(text);
    } else {
      const bool noLineOfABlock =
          type == PPDLineTypeContinuation || type == PPDLineTypeEnd || type == PPDLineTypeCloseGroup;
      if (last == Last::other || (last == Last::option && !noLineOfABlock)) kept.push_back(text);
    }
    if (type == PPDLineTypeOpenGroup) groupOpen = true;
    if (type == PPDLineTypeCloseGroup) groupOpen = false;
  }
  return kept;
}

}  // namespace

TEST(ATPPD, KeepsEveryLineThatItsChildTakes) {
  for (unsigned seed = 1; seed <= 100; ++seed) {
    const auto lines = randomLines(seed);
    const auto document = documentOf(lines);
    ASSERT_EQ(linesOf(*document), keptOf(lines)) << "seed " << seed;
    static_cast<void>(document->PPDObjects());
    ASSERT_EQ(linesOf(*document), keptOf(lines)) << "seed " << seed;
  }
}

TEST(ATPPD, ReadingDoesNotDependOnQuestionsInBetween) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    const auto lines = randomLines(seed);
    const auto asked = std::make_unique<ATPPD>();
    std::mt19937 random(seed);
    for (const auto& [text, type] : lines) {
      asked->addString(text, type);
      switch (random() % 8) {
        case 0:
          static_cast<void>(asked->PPDObjects());
          break;
        case 1:
          static_cast<void>(asked->attributeForName("Name1", "Spec1"));
          break;
        case 2:
          static_cast<void>(asked->attributesForName("Name2", "Spec"));
          break;
        case 3:
          static_cast<void>(asked->optionForName("Name3"));
          break;
        case 4:
          static_cast<void>(asked->supportedLocalizations());
          break;
        default:
          break;
      }
    }
    const auto never = documentOf(lines);
    ASSERT_EQ(outlineOf(*asked), outlineOf(*never)) << "seed " << seed;
    ASSERT_EQ(linesOfAll(attributesOf(*asked)), linesOfAll(attributesOf(*never))) << "seed " << seed;
    for (int name = 0; name < 6; ++name) {
      const std::string text = "Name" + std::to_string(name);
      ASSERT_EQ(linesOfAll(asked->attributesForName(text)), linesOfAll(never->attributesForName(text)));
      ASSERT_EQ(linesOfAll(asked->attributesForName(text, "c3")), linesOfAll(never->attributesForName(text, "c3")));
    }
  }
}

TEST(ATPPD, EveryLookUpMayBeTheFirstOne) {
  const std::vector<Line> lines = {
      {"*cupsLanguages: \"de\"\n", PPDLineTypeStatement}, {"*Foo A: 1\n", PPDLineTypeStatement},
      {"*de.Foo A: 2\n", PPDLineTypeStatement},           {"*Foo AB: 3\n", PPDLineTypeStatement},
      {"*OpenGroup: G/T\n", PPDLineTypeOpenGroup},        {"*OpenUI *O\n", PPDLineTypeOpenUI},
      {"*DefaultO: x\n", PPDLineTypeDefaultChoice}};
  EXPECT_EQ(documentOf(lines)->attributeForName("Foo")->value(), "1");
  EXPECT_EQ(documentOf(lines)->attributeForName("Bar"), nullptr);
  EXPECT_EQ(documentOf(lines)->attributesForName("Foo").size(), 2U);
  EXPECT_EQ(documentOf(lines)->attributesForName("Foo", "A").size(), 2U);
  EXPECT_EQ(documentOf(lines)->localizationForAttributeWithName("Foo").size(), 1U);
  EXPECT_EQ(documentOf(lines)->supportedLocalizations()->size(), 1U);
  EXPECT_NE(documentOf(lines)->groupForName("G"), nullptr);
  EXPECT_NE(documentOf(lines)->optionForName("O"), nullptr);
  EXPECT_EQ(documentOf(lines)->attributes().size(), 4U);
  EXPECT_EQ(documentOf(lines)->groups().size(), 1U);
  EXPECT_EQ(documentOf(lines)->PPDObjects().size(), 5U);
  const auto added = documentOf(lines);
  added->addPPDAttribute(built("New"));
  EXPECT_EQ(linesOf(*added)[4], "*New: \"v\"\n");
  const auto removed = documentOf(lines);
  removed->removePPDAttribute(built("New"));
  EXPECT_EQ(linesOf(*removed).size(), 7U);
  const auto appended = documentOf(lines);
  appended->appendObjectToPPDObjects(built("New"));
  EXPECT_EQ(linesOf(*appended).back(), "*New: \"v\"\n");
}

// The document as plain lists that every question walks.
namespace {

struct ModelOfDocument {
  std::vector<ObjectPtr> children;
  Attributes attributes;
  std::set<std::string> languages;

  template <class Matches>
  Attributes all(Matches matches) const {
    Attributes found;
    std::copy_if(attributes.begin(), attributes.end(), std::back_inserter(found), matches);
    return found;
  }

  Attributes all(const std::string& name, const ATPPD::Spec& spec) const {
    return all([&](const auto& each) { return each->name() == name && (!spec || each->spec() == spec); });
  }

  AttributePtr first(const std::string& name, const ATPPD::Spec& spec) const {
    const Attributes found = all(name, spec);
    return found.empty() ? nullptr : found.front();
  }

  Attributes allWithSpecContaining(const std::string& name, const std::string& part) const {
    return all([&](const auto& each) {
      return each->name() == name && !part.empty() && each->spec() && each->spec()->find(part) != std::string::npos;
    });
  }

  Attributes localizations(const std::string& name, const ATPPD::Spec& spec) const {
    return all([&](const auto& each) {
      return std::any_of(languages.begin(), languages.end(),
                         [&](const auto& language) { return each->name() == language + "." + name; }) &&
             (!spec || each->spec() == spec);
    });
  }

  void add(const AttributePtr& attribute) {
    auto place = children.end();
    if (!attributes.empty()) {
      place = std::find(children.begin(), children.end(), attributes.back());
      ASSERT_NE(place, children.end());
      ++place;
    }
    children.insert(place, attribute);
    attributes.push_back(attribute);
  }

  void remove(const AttributePtr& attribute) {
    attributes.erase(std::remove(attributes.begin(), attributes.end(), attribute), attributes.end());
    children.erase(std::remove(children.begin(), children.end(), attribute), children.end());
  }
};

class RandomDocument {
 public:
  explicit RandomDocument(unsigned seed) : random_(seed) {
    model_.languages = {"de", "fr"};
    parse("*cupsLanguages: \"fr de de\"\n", PPDLineTypeStatement);
    for (int count = 0; count < 30; ++count) parseAny();
  }

  void change() {
    switch (below(6)) {
      case 0:
        parseAny();
        break;
      case 1: {
        const AttributePtr added = takeRemoved();
        document_.addPPDAttribute(added);
        model_.add(added);
        break;
      }
      case 2:
        if (const AttributePtr removed = anyAttribute()) {
          document_.removePPDAttribute(removed);
          remove(removed);
        }
        break;
      case 3:
        if (const AttributePtr removed = anyAttribute()) {
          const Attributes localizations = model_.localizations(std::string(*removed->name()), removed->spec());
          document_.removePPDAttributeWithLocalizations(removed);
          remove(removed);
          for (const AttributePtr& localization : localizations) {
            if (localization != removed) remove(localization);
          }
        }
        break;
      case 4:
        if (const AttributePtr changed = anyAttribute()) changed->setValue(std::to_string(below(1000)));
        break;
      default:
        if (const AttributePtr changed = anyAttribute()) changed->setText("Text" + std::to_string(below(1000)));
    }
  }

  void compareLists() const {
    ASSERT_EQ(childrenOf(document_), model_.children);
    ASSERT_EQ(attributesOf(document_), model_.attributes);
    Texts lines;
    for (const ObjectPtr& child : model_.children) {
      for (std::string& line : linesOf(*child)) lines.push_back(std::move(line));
    }
    ASSERT_EQ(linesOf(document_), lines);
  }

  void compareOneLookUp() {
    const std::string name = anyName();
    const ATPPD::Spec spec = anySpec();
    switch (below(4)) {
      case 0:
        ASSERT_EQ(document_.attributeForName(name, spec), model_.first(name, spec)) << name;
        break;
      case 1:
        ASSERT_EQ(document_.attributesForName(name), model_.all(name, null)) << name;
        break;
      case 2: {
        const std::string part(spec ? spec->substr(below(spec->size())) : "");
        ASSERT_EQ(document_.attributesForName(name, part), model_.allWithSpecContaining(name, part))
            << name << ", " << part;
        break;
      }
      default:
        ASSERT_EQ(document_.localizationForAttributeWithName(name, spec), model_.localizations(name, spec)) << name;
    }
  }

  std::size_t below(std::size_t limit) { return std::size_t{random_()} % limit; }

 private:
  std::string anyName() {
    static constexpr const char* kNames[] = {"A", "B", "a", "de.A", "fr.A", "it.A", "de.B", "fr.de.A", ".A"};
    return kNames[below(std::size(kNames))];
  }

  ATPPD::Spec anySpec() {
    static constexpr const char* kSpecs[] = {"S", "T", "R.S.T", "S.S.S", "R.T.S"};
    const std::size_t chosen = below(std::size(kSpecs) + 2);
    return chosen < std::size(kSpecs) ? ATPPD::Spec(kSpecs[chosen]) : null;
  }

  void parse(const std::string& line, PPDLineType type) {
    document_.addString(line, type);
    const ObjectPtr child = document_.PPDObjects().back();
    if (!model_.children.empty() && child == model_.children.back()) return;
    model_.children.push_back(child);
    if (auto attribute = std::dynamic_pointer_cast<ATPPDAttribute>(child)) model_.attributes.push_back(attribute);
  }

  void parseAny() {
    const ATPPD::Spec spec = anySpec();
    switch (below(6)) {
      case 0:
        parse("*% comment\n", PPDLineTypeComment);
        break;
      case 1:
        parse("*OpenGroup: G/T\n", PPDLineTypeOpenGroup);
        parse("*A S: inside\n", PPDLineTypeStatement);
        parse("*CloseGroup: G\n", PPDLineTypeCloseGroup);
        break;
      default:
        parse("*" + anyName() + (spec ? " " + std::string(*spec) : "") + ": \"x\"\r\n", PPDLineTypeStatement);
    }
  }

  AttributePtr takeRemoved() {
    if (removed_.empty() || below(2) == 0) return built(anyName(), anySpec());
    const AttributePtr again = removed_.back();
    removed_.pop_back();
    return again;
  }

  // Any attribute but the one with the languages.
  AttributePtr anyAttribute() {
    const AttributePtr chosen = model_.attributes[below(model_.attributes.size())];
    return chosen->name() == "cupsLanguages" ? nullptr : chosen;
  }

  void remove(const AttributePtr& attribute) {
    model_.remove(attribute);
    removed_.push_back(attribute);
  }

  std::mt19937 random_;
  ATPPD document_;
  ModelOfDocument model_;
  Attributes removed_;
};

}  // namespace

TEST(ATPPD, EqualsPlainListsUnderRandomEditsWithManyLookUps) {
  for (unsigned seed = 1; seed <= 30; ++seed) {
    RandomDocument document(seed);
    for (int step = 0; step < 150; ++step) {
      SCOPED_TRACE(testing::Message() << "seed " << seed << ", step " << step);
      document.change();
      ASSERT_NO_FATAL_FAILURE(document.compareLists());
      for (int count = 0; count < 5; ++count) ASSERT_NO_FATAL_FAILURE(document.compareOneLookUp());
    }
  }
}

TEST(ATPPD, EqualsPlainListsUnderRandomEditsWithFewLookUps) {
  for (unsigned seed = 1001; seed <= 1200; ++seed) {
    RandomDocument document(seed);
    for (int step = 0; step < 30; ++step) {
      SCOPED_TRACE(testing::Message() << "seed " << seed << ", step " << step);
      document.change();
      if (document.below(10) > 0) continue;
      ASSERT_NO_FATAL_FAILURE(document.compareOneLookUp());
    }
    ASSERT_NO_FATAL_FAILURE(document.compareLists());
  }
}

TEST(ATPPD, AnAttributeMayBeRemovedByTheReferenceThatItsListGives) {
  ATPPD document;
  document.addString("*A: 1\n", PPDLineTypeStatement);
  document.addString("*B: 2\n", PPDLineTypeStatement);
  document.removePPDAttribute(document.attributes().back());
  EXPECT_THAT(TestSupport::linesOf(document), testing::ElementsAre("*A: 1\n"));
  document.removePPDAttributeWithLocalizations(document.attributes().back());
  EXPECT_THAT(TestSupport::linesOf(document), testing::IsEmpty());
}
