// SPDX-License-Identifier: MIT
#include "ppd/document/ATPPDAttribute.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "tests/ppd/TestSupport.h"

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::linesOf;

namespace {

using Part = ATPPDAttribute::Part;
constexpr std::nullopt_t null = std::nullopt;

std::shared_ptr<ATPPDAttribute> attribute(const char* line) {
  return ATPPDAttribute::attributeWithString(line);
}

std::shared_ptr<ATPPDAttribute> attributeOfLines(const TestSupport::Texts& lines) {
  auto attribute = std::make_shared<ATPPDAttribute>();
  for (const std::string& line : lines) attribute->addString(line, PPDLineTypeStatement);
  return attribute;
}

// The parts of attributes that are gone when they are compared.
using Copy = std::optional<std::string>;

Copy copyOf(const Part& part) {
  return part ? Copy(*part) : null;
}
Copy nameOf(const char* line) {
  return copyOf(attribute(line)->name());
}
Copy specOf(const char* line) {
  return copyOf(attribute(line)->spec());
}
Copy textOf(const char* line) {
  return copyOf(attribute(line)->text());
}
Copy valueOf(const char* line) {
  return copyOf(attribute(line)->value());
}
Copy valueOfLines(const TestSupport::Texts& lines) {
  return copyOf(attributeOfLines(lines)->value());
}

const TestSupport::Texts kSeveralLines = {"*Foo Bar/Text: \"one\r\n", "  two\r\n", "three\"\r\n", "*End\r\n"};

}  // namespace

TEST(ATPPDAttribute, QuotedStatementWithoutAnOptionKeyword) {
  const auto modelName = attribute("*ModelName: \"Printer 100\"\n");
  EXPECT_EQ(modelName->name(), "ModelName");
  EXPECT_EQ(modelName->spec(), null);
  EXPECT_EQ(modelName->text(), null);
  EXPECT_EQ(modelName->value(), "\"Printer 100\"");
}

TEST(ATPPDAttribute, StatementWithAllFourParts) {
  const auto profile = attribute("*cupsICCProfile RGB.Plain/Plain Paper: \"/Library/Plain.icc\"\n");
  EXPECT_EQ(profile->name(), "cupsICCProfile");
  EXPECT_EQ(profile->spec(), "RGB.Plain");
  EXPECT_EQ(profile->text(), "Plain Paper");
  EXPECT_EQ(profile->value(), "\"/Library/Plain.icc\"");
}

TEST(ATPPDAttribute, StatementWithoutQuotes) {
  const auto foo = attribute("*Foo Bar: Baz\n");
  EXPECT_EQ(foo->name(), "Foo");
  EXPECT_EQ(foo->spec(), "Bar");
  EXPECT_EQ(foo->text(), null);
  EXPECT_EQ(foo->value(), "Baz");
}

TEST(ATPPDAttribute, ASlashDoesNotEndTheName) {
  const auto foo = attribute("*Foo/Text: Baz\n");
  EXPECT_EQ(foo->name(), "Foo/Text");
  EXPECT_EQ(foo->spec(), null);
  EXPECT_EQ(foo->text(), null);
  EXPECT_EQ(foo->value(), "Baz");
}

TEST(ATPPDAttribute, NameEndsAtWhiteSpaceOrColon) {
  EXPECT_EQ(nameOf("*Foo Bar: x"), "Foo");
  EXPECT_EQ(nameOf("*Foo\tBar: x"), "Foo");
  EXPECT_EQ(nameOf("*Foo\xC2\xA0"
                   "Bar: x"),
            "Foo");
  EXPECT_EQ(nameOf("*Foo:x"), "Foo");
  EXPECT_EQ(nameOf("*Foo"), "Foo");
}

TEST(ATPPDAttribute, NameKeepsALineEnd) {
  EXPECT_EQ(nameOf("*Foo\n"), "Foo\n");
  EXPECT_EQ(nameOf("*Foo\r\n"), "Foo\r\n");
}

TEST(ATPPDAttribute, NameNeedsAnAsteriskAndACharacter) {
  EXPECT_EQ(nameOf("Foo: x"), null);
  EXPECT_EQ(nameOf("*: x"), null);
  EXPECT_EQ(nameOf("*"), null);
  EXPECT_EQ(nameOf("* \n"), null);
  EXPECT_EQ(nameOf(""), null);
}

TEST(ATPPDAttribute, BlanksBeforeTheAsteriskAndTheNameAreSkipped) {
  EXPECT_EQ(nameOf(" \t* Foo: x"), "Foo");
  EXPECT_EQ(nameOf("\n*\r\nFoo: x"), "Foo");
}

TEST(ATPPDAttribute, SpecIsTrimmedOfWhiteSpace) {
  EXPECT_EQ(specOf("*Foo    Bar   : x\n"), "Bar");
  EXPECT_EQ(specOf("*Foo \t Bar \t/Text: x\n"), "Bar");
  EXPECT_EQ(specOf("*Foo Bar Baz: x\n"), "Bar Baz");
}

TEST(ATPPDAttribute, SpecKeepsALineEnd) {
  EXPECT_EQ(specOf("*Foo Bar\n"), "Bar\n");
}

TEST(ATPPDAttribute, SpecNeedsACharacterBeforeSlashAndColon) {
  EXPECT_EQ(specOf("*Foo: x\n"), null);
  EXPECT_EQ(specOf("*Foo  : x\n"), null);
  EXPECT_EQ(specOf("*Foo /Text: x\n"), null);
  EXPECT_EQ(specOf("*: x\n"), null);
}

TEST(ATPPDAttribute, TextIsUntrimmed) {
  EXPECT_EQ(textOf("*Foo Bar/ Two Words : x\n"), " Two Words ");
  EXPECT_EQ(textOf("*Foo Bar/One/Two: x\n"), "One/Two");
  EXPECT_EQ(textOf("*Foo Bar/: x\n"), "");
}

TEST(ATPPDAttribute, TextNeedsASpec) {
  EXPECT_EQ(textOf("*Foo /Text: x\n"), null);
  EXPECT_EQ(textOf("*Foo/Text: x\n"), null);
}

TEST(ATPPDAttribute, ASlashInTheValueBeginsNoText) {
  EXPECT_EQ(textOf("*Foo Bar: \"/Library/x\"\n"), null);
  EXPECT_EQ(textOf("*Foo: \"/Library/x\"\n"), null);
  EXPECT_EQ(textOf("*Foo Bar: x\n"), null);
}

TEST(ATPPDAttribute, TokensAreComparedWithoutRegardToLetterCase) {
  const auto foo = attribute("*Foo: x\n");
  ASSERT_EQ(foo->name(), "Foo");
  EXPECT_EQ(foo->specFromAttributeString("*FOO Bar/Text: x"), "Bar");
  EXPECT_EQ(foo->textFromAttributeString("*fOO Bar/Text: x"), "Text");
}

TEST(ATPPDAttribute, SpecAndTextNeedTheAttributesOwnName) {
  const auto foo = attribute("*Foo: x\n");
  EXPECT_EQ(foo->specFromAttributeString("*Bar Spec/Text: x"), null);
  EXPECT_EQ(foo->textFromAttributeString("*Bar Spec/Text: x"), null);
  EXPECT_EQ(foo->specFromAttributeString("Foo Spec/Text: x"), null);
  EXPECT_EQ(foo->textFromAttributeString("Foo Spec/Text: x"), null);
}

TEST(ATPPDAttribute, NameAndValueComeFromAnyLine) {
  EXPECT_EQ(ATPPDAttribute::nameFromAttributeString("*Foo Bar: x"), "Foo");
  EXPECT_EQ(ATPPDAttribute::valueFromAttributeString("*Foo Bar: x"), "x");
  EXPECT_EQ(ATPPDAttribute::valueFromAttributeString("no asterisk: x"), "x");
}

TEST(ATPPDAttribute, ValueIsEverythingBehindTheFirstColonTrimmed) {
  EXPECT_EQ(valueOf("*Foo:   \"a b\"  \r\n"), "\"a b\"");
  EXPECT_EQ(valueOf("*Foo: a:b\n"), "a:b");
  EXPECT_EQ(valueOf("*Foo:x"), "x");
  EXPECT_EQ(valueOf("*Foo:\xC2\xA0x\xE2\x80\xA8"), "x");
  EXPECT_EQ(valueOf("*Foo:\n"), "");
}

TEST(ATPPDAttribute, ValueNeedsAColonWithSomethingInFront) {
  EXPECT_EQ(valueOf("*Foo Bar\n"), null);
  EXPECT_EQ(valueOf(": x\n"), null);
  EXPECT_EQ(valueOf("  : x\n"), null);
  EXPECT_EQ(valueOf(""), null);
}

TEST(ATPPDAttribute, HasNoPartsWithoutLines) {
  const ATPPDAttribute empty;
  EXPECT_EQ(empty.name(), null);
  EXPECT_EQ(empty.spec(), null);
  EXPECT_EQ(empty.text(), null);
  EXPECT_EQ(empty.value(), null);
  EXPECT_THAT(linesOf(empty), IsEmpty());
  EXPECT_EQ(ATPPDAttribute::valueFromAttributeStrings(empty.container()), null);
}

TEST(ATPPDAttribute, AnAbsentPartIsLookedForAgain) {
  ATPPDAttribute foo;
  ASSERT_EQ(foo.name(), null);
  ASSERT_EQ(foo.value(), null);
  foo.addString("*Foo Bar/Text: x\n", PPDLineTypeStatement);
  EXPECT_EQ(foo.name(), "Foo");
  EXPECT_EQ(foo.spec(), "Bar");
  EXPECT_EQ(foo.text(), "Text");
  EXPECT_EQ(foo.value(), "x");
}

TEST(ATPPDAttribute, AFoundPartIsKept) {
  const auto foo = attribute("*Foo: \"one\n");
  ASSERT_EQ(foo->value(), "\"one");
  foo->addString("two\"\n", PPDLineTypeContinuation);
  EXPECT_EQ(foo->value(), "\"one");
}

TEST(ATPPDAttribute, ValueOfSeveralLinesReachesToTheClosingQuote) {
  EXPECT_EQ(valueOfLines(kSeveralLines), "\"one\n  two\r\nthree\"");
  EXPECT_EQ(valueOfLines({"*Foo: \"one\n", "two\" \t\n", "three\n"}), "\"one\ntwo\" \t");
}

TEST(ATPPDAttribute, ALineThatHoldsOnlyTheOpeningQuoteDoesNotEndTheValue) {
  EXPECT_EQ(valueOfLines({"*Foo: \"\n", "one\n", "two\"\n", "*End\n"}), "\"\none\ntwo\"");
  EXPECT_EQ(valueOfLines({"*Foo: \"\n", "\"\n", "*End\n"}), "\"\n\"");
}

TEST(ATPPDAttribute, AValueThatIsClosedOnTheFirstLineEndsThere) {
  EXPECT_EQ(valueOfLines({"*Foo: \"one\"\n", "*End\n"}), "\"one\"");
  EXPECT_EQ(valueOfLines({"*Foo: \"\"\n", "*End\n"}), "\"\"");
}

TEST(ATPPDAttribute, AValueThatIsNeverClosedTakesAllLines) {
  EXPECT_EQ(valueOfLines({"*Foo: one\n", "two\n", "\n", "three\n\n"}), "one\ntwo\n\nthree");
}

TEST(ATPPDAttribute, ValueOfSeveralLinesWithoutAColonBeginsWithNull) {
  EXPECT_EQ(valueOfLines({"*Foo\n", "two\n"}), "(null)\ntwo");
}

TEST(ATPPDAttribute, ValueOfSeveralLinesKeepsItsWhiteSpace) {
  EXPECT_EQ(valueOfLines({"*Foo: one\n", " two \n"}), "one\n two ");
}

TEST(ATPPDAttribute, AnUnchangedAttributeIsWrittenAsItWasRead) {
  const auto foo = attributeOfLines(kSeveralLines);
  foo->name();
  foo->spec();
  foo->text();
  foo->value();
  EXPECT_EQ(linesOf(*foo), kSeveralLines);
  EXPECT_EQ(foo->attributeString(), null);
}

TEST(ATPPDAttribute, AChangedValueIsWrittenAsOneComposedStatement) {
  const auto foo = attributeOfLines(kSeveralLines);
  foo->setValue("\"new\"");
  EXPECT_EQ(foo->value(), "\"new\"");
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo Bar/Text: \"new\"\n"));
}

TEST(ATPPDAttribute, AValueOfSeveralLinesKeepsItsInnerLineEndsInTheComposedStatement) {
  const auto foo = attributeOfLines(kSeveralLines);
  foo->setText("New");
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo Bar/New: \"one\n  two\r\nthree\"\n"));
  const auto other = attributeOfLines(kSeveralLines);
  other->setValue(std::string(*other->value()));
  EXPECT_THAT(linesOf(*other), ElementsAre("*Foo Bar/Text: \"one\n  two\r\nthree\"\n"));
}

TEST(ATPPDAttribute, TheReadLinesStayInTheContainer) {
  const auto foo = attributeOfLines(kSeveralLines);
  foo->setValue("x");
  EXPECT_EQ(TestSupport::textsOf(foo->container()), kSeveralLines);
}

TEST(ATPPDAttribute, CarriageReturnsStayUntilTheAttributeIsChanged) {
  const auto foo = attribute("*Foo Bar:  x\r\n");
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo Bar:  x\r\n"));
  foo->setValue("y");
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo Bar: y\n"));
}

TEST(ATPPDAttribute, AnEqualValueStillComposesTheLine) {
  const auto foo = attribute("*Foo  Bar:x\r\n");
  foo->setValue("x");
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo Bar: x\n"));
  const auto other = attribute("*Foo  Bar/Text:x\r\n");
  other->setText("Text");
  EXPECT_THAT(linesOf(*other), ElementsAre("*Foo Bar/Text: x\n"));
}

TEST(ATPPDAttribute, APartThatIsSetToItselfChangesNothing) {
  const auto foo = attribute("*Foo  Bar/Text:x\r\n");
  foo->setValue(foo->value());
  foo->setText(foo->text());
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo  Bar/Text:x\r\n"));
}

TEST(ATPPDAttribute, APartMayBeSetToAnotherPart) {
  const auto foo = attribute("*Foo Bar/Text: x\n");
  foo->setValue(foo->text());
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo Bar/Text: Text\n"));
  foo->setText(foo->spec());
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo Bar/Bar: Text\n"));
}

TEST(ATPPDAttribute, LaterChangesComposeTheLineAgain) {
  const auto foo = attribute("*Foo Bar: x\n");
  foo->setValue("1");
  foo->setText("One");
  foo->setValue("2");
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo Bar/One: 2\n"));
}

TEST(ATPPDAttribute, ATextWithoutASpecIsLeftOutOfTheLine) {
  const auto foo = attribute("*Foo: x\n");
  foo->setText("Text");
  EXPECT_EQ(foo->text(), "Text");
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo: x\n"));
}

TEST(ATPPDAttribute, AnEmptyTextTakesTheSlashAway) {
  const auto foo = attribute("*Foo Bar/Text: x\n");
  foo->setText("");
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo Bar: x\n"));
}

TEST(ATPPDAttribute, AnAbsentPartIsParsedAgainWhenTheLineIsComposed) {
  const auto foo = attribute("*Foo Bar/Text: x\n");
  foo->setText(null);
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo Bar/Text: x\n"));
  foo->setValue(null);
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo Bar/Text: x\n"));
}

TEST(ATPPDAttribute, AChangedStatementWithoutAValueIsWrittenWithNull) {
  const auto foo = attribute("*Foo Bar/Text");
  foo->setText("New");
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo Bar/New: (null)\n"));
}

TEST(ATPPDAttribute, AValueIsWrittenAsItStands) {
  const auto foo = attribute("*Foo: x\n");
  foo->setValue("{} %@ %d\\");
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo: {} %@ %d\\\n"));
}

TEST(ATPPDAttribute, IsBuiltFromParts) {
  const auto foo = ATPPDAttribute::initWithName("Foo", "Bar", "Text", "\"x\"");
  ASSERT_TRUE(foo);
  EXPECT_EQ(foo->name(), "Foo");
  EXPECT_EQ(foo->spec(), "Bar");
  EXPECT_EQ(foo->text(), "Text");
  EXPECT_EQ(foo->value(), "\"x\"");
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo Bar/Text: \"x\"\n"));
  EXPECT_THAT(TestSupport::textsOf(foo->container()), ElementsAre("*Foo Bar/Text: \"x\"\n"));
  EXPECT_EQ(foo->attributeString(), StatementString("*Foo Bar/Text: \"x\"\n"));
}

TEST(ATPPDAttribute, IsNotBuiltWithoutAName) {
  EXPECT_EQ(ATPPDAttribute::initWithName(null, "Bar", "Text", "x"), nullptr);
  EXPECT_EQ(ATPPDAttribute::initWithName("", "Bar", "Text", "x"), nullptr);
}

TEST(ATPPDAttribute, AnAbsentOrEmptyValueBecomesTwoQuotes) {
  const auto absent = ATPPDAttribute::initWithName("Foo", "Bar", "Text", null);
  EXPECT_EQ(absent->value(), "\"\"");
  EXPECT_THAT(linesOf(*absent), ElementsAre("*Foo Bar/Text: \"\"\n"));
  EXPECT_THAT(linesOf(*ATPPDAttribute::initWithName("Foo", "Bar", "Text", "")), ElementsAre("*Foo Bar/Text: \"\"\n"));
}

TEST(ATPPDAttribute, IsBuiltWithoutSpecOrText) {
  EXPECT_THAT(linesOf(*ATPPDAttribute::initWithName("Foo", null, null, "x")), ElementsAre("*Foo: x\n"));
  EXPECT_THAT(linesOf(*ATPPDAttribute::initWithName("Foo", "", "", "x")), ElementsAre("*Foo: x\n"));
  EXPECT_THAT(linesOf(*ATPPDAttribute::initWithName("Foo", "Bar", null, "x")), ElementsAre("*Foo Bar: x\n"));
  EXPECT_THAT(linesOf(*ATPPDAttribute::initWithName("Foo", null, "Text", "x")), ElementsAre("*Foo: x\n"));
  EXPECT_THAT(linesOf(*ATPPDAttribute::initWithName("Foo", "", "Text", "x")), ElementsAre("*Foo: x\n"));
}

TEST(ATPPDAttribute, PartsAreKeptAsTheyWereGiven) {
  const auto foo = ATPPDAttribute::initWithName("Foo", " Bar ", " Text ", " x ");
  EXPECT_EQ(foo->spec(), " Bar ");
  EXPECT_EQ(foo->text(), " Text ");
  EXPECT_EQ(foo->value(), " x ");
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo  Bar / Text :  x \n"));
  EXPECT_EQ(ATPPDAttribute::initWithName("Foo", "", null, "x")->spec(), "");
}

TEST(ATPPDAttribute, ABuiltAttributeIsChangedLikeARead) {
  const auto foo = ATPPDAttribute::initWithName("Foo", "Bar", null, null);
  foo->setValue("\"y\"");
  foo->setText("Text");
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo Bar/Text: \"y\"\n"));
}

TEST(ATPPDAttribute, TheComposedLineCanBeReplacedAndTakenBack) {
  const auto foo = attribute("*Foo Bar: x\r\n");
  foo->setAttributeString(StatementString("*Something else\n"));
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Something else\n"));
  EXPECT_EQ(foo->attributeString(), StatementString("*Something else\n"));
  foo->setAttributeString(null);
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo Bar: x\r\n"));
}

TEST(ATPPDAttribute, PartsComeFromTheLineThatIsWritten) {
  const auto foo = attribute("*Foo Bar: x\n");
  foo->setAttributeString(StatementString("*New Spec/Text: y\n"));
  EXPECT_EQ(foo->name(), "New");
  EXPECT_EQ(foo->spec(), "Spec");
  EXPECT_EQ(foo->text(), "Text");
  EXPECT_EQ(foo->value(), "y");
}

TEST(ATPPDAttribute, PartsThatWereFoundStayWhateverLineIsWritten) {
  for (const char* line : {"*New Spec/Other: y\n", "no statement\n", ""}) {
    const auto foo = attribute("*Foo Bar/Text: x\n");
    static_cast<void>(foo->text());  // which needs the name, too
    static_cast<void>(foo->value());
    foo->setAttributeString(StatementString(line));
    EXPECT_EQ(foo->name(), "Foo");
    EXPECT_EQ(foo->text(), "Text");
    EXPECT_EQ(foo->value(), "x");
    EXPECT_EQ(foo->spec(), null);  // nobody asked for it, and it does not stand behind "Foo" now
  }
}

TEST(ATPPDAttribute, AValueOfSeveralLinesIsOneOfTheWrittenLineOnceThereIsOne) {
  const auto foo = attributeOfLines(kSeveralLines);
  foo->setAttributeString(StatementString("*Foo: y\n"));
  EXPECT_EQ(foo->value(), "y");
  const auto other = attributeOfLines(kSeveralLines);
  ASSERT_EQ(other->value(), "\"one\n  two\r\nthree\"");
  other->setAttributeString(StatementString("*Foo: y\n"));
  EXPECT_EQ(other->value(), "\"one\n  two\r\nthree\"");
}

TEST(ATPPDAttribute, APartThatIsSetToNothingIsLookedForInTheLineThatIsWritten) {
  for (const bool asked : {false, true}) {
    const auto foo = attribute("*Foo Bar/Text: x\n");
    const auto ask = [&] {
      if (!asked) return;
      static_cast<void>(foo->name());
      static_cast<void>(foo->spec());
      static_cast<void>(foo->text());
      static_cast<void>(foo->value());
    };
    ask();
    foo->setValue("y");
    ask();
    foo->setText(null);
    ask();
    EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo Bar/Text: y\n"));
    EXPECT_EQ(foo->text(), "Text");
    foo->setText("");
    ask();
    foo->setText(null);  // no text stands in the line now
    ask();
    EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo Bar: y\n"));
    foo->setValue(null);
    EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo Bar: y\n"));
    EXPECT_EQ(foo->value(), "y");
  }
}

TEST(ATPPDAttribute, ASlashOfTheSpecBeginsATextOnceTheLineIsComposed) {
  const auto foo = ATPPDAttribute::initWithName("Foo", "A/B", null, "x");
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo A/B: x\n"));
  EXPECT_EQ(foo->spec(), "A/B");
  EXPECT_EQ(foo->text(), "B");
  foo->setValue("y");
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo A/B/B: y\n"));
  foo->setValue("z");
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo A/B/B: z\n"));
  const auto unasked = ATPPDAttribute::initWithName("Foo", "A/B", null, "x");
  unasked->setValue("y");
  EXPECT_THAT(linesOf(*unasked), ElementsAre("*Foo A/B/B: y\n"));
  EXPECT_EQ(unasked->spec(), "A/B");
  EXPECT_EQ(unasked->text(), "B");
}

TEST(ATPPDAttribute, ComposesTheLineOnRequest) {
  const auto foo = attribute("*Foo   Bar /Text:x\r\n");
  foo->updateAttributeString();
  EXPECT_THAT(linesOf(*foo), ElementsAre("*Foo Bar/Text: x\n"));
}

namespace {

class CountingAttribute : public ATPPDAttribute {
 public:
  int changes = 0;
  void setText(const Part& text) override {
    ++changes;
    ATPPDAttribute::setText(text);
  }
  void setValue(const Part& value) override {
    ++changes;
    ATPPDAttribute::setValue(value);
  }
};

}  // namespace

TEST(ATPPDAttribute, TheSettersCanBeOverridden) {
  CountingAttribute counting;
  counting.addString("*Foo Bar: x\n", PPDLineTypeStatement);
  ATPPDAttribute& plain = counting;
  plain.setText("Text");
  plain.setValue("y");
  EXPECT_EQ(counting.changes, 2);
  EXPECT_THAT(linesOf(counting), ElementsAre("*Foo Bar/Text: y\n"));
}

TEST(ATPPDAttribute, AnAbsentNameAndValueAreWrittenAsNull) {
  ATPPDAttribute attribute;
  attribute.setText("t");
  EXPECT_THAT(linesOf(attribute), ElementsAre("*(null): (null)\n"));
}

TEST(ATPPDAttribute, ThePartOfAnotherIsNotItsOwnThoughTheBytesAreShared) {
  const StatementString line("*A S/T:  1\n");
  for (const bool asksItself : {false, true}) {
    const auto one = ATPPDAttribute::attributeWithString(line);
    const auto other = ATPPDAttribute::attributeWithString(line);
    if (asksItself) one->value();
    one->setValue(other->value());
    EXPECT_THAT(linesOf(*one), ElementsAre("*A S/T: 1\n"));
    other->setText(other->text());
    EXPECT_THAT(linesOf(*other), ElementsAre("*A S/T:  1\n"));
  }
}

TEST(ATPPDAttribute, AbsentSetToAbsentChangesNothing) {
  const auto attribute = ATPPDAttribute::attributeWithString("*A  S\n");
  attribute->setValue(std::nullopt);
  attribute->setText(std::nullopt);
  EXPECT_THAT(linesOf(*attribute), ElementsAre("*A  S\n"));
  EXPECT_FALSE(attribute->attributeString());
}
