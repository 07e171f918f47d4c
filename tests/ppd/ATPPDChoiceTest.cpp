// SPDX-License-Identifier: MIT
#include "ppd/document/ATPPDChoice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

#include "tests/ppd/TestSupport.h"

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::linesOf;

namespace {

constexpr std::nullopt_t null = std::nullopt;
constexpr const char* kSignature = "-[ATPPDChoice choiceStringWithName:optionName:text:code:]: ";

std::optional<std::string> copyOf(std::optional<std::string_view> part) {
  return part ? std::optional<std::string>(*part) : std::nullopt;
}

std::optional<std::string> nameOf(const char* line) {
  return copyOf(ATPPDChoice::choiceWithString(line)->name());
}

std::optional<std::string> codeOf(const char* line) {
  return copyOf(ATPPDChoice::choiceWithString(line)->code());
}

// A text with which the statement of `*O n/TEXT: ""` has this many bytes, line end left out.
std::string textForLine(std::size_t size) {
  return std::string(size - std::string("*O n/: \"\"").size(), 't');
}

}  // namespace

TEST(ATPPDChoice, HoldsItsLinesAsTheyCome) {
  const auto choice = ATPPDChoice::choiceWithString("*MediaType Plain/Plain Paper: \"1\n");
  choice->addString("2\"\n", PPDLineTypeChoiceContinuation);
  choice->addString("*End\n", PPDLineTypeChoiceEnd);
  EXPECT_THAT(linesOf(*choice), ElementsAre("*MediaType Plain/Plain Paper: \"1\n", "2\"\n", "*End\n"));
}

TEST(ATPPDChoice, NameStandsBetweenTheKeywordAndTheSlashOrColon) {
  EXPECT_EQ(nameOf("*PageSize Letter/US Letter: \"x\"\n"), "Letter");
  EXPECT_EQ(nameOf("*MediaType Plain: \"x\"\n"), "Plain");
  EXPECT_EQ(nameOf("*MediaType \t Plain \t/Text: \"x\"\n"), "Plain");
  EXPECT_EQ(nameOf("*MediaType\tPlain Paper : \"x\"\n"), "Plain Paper");
  EXPECT_EQ(nameOf(" \t*MediaType Plain: \"x\"\n"), "Plain");
  EXPECT_EQ(nameOf("*MediaType\xC2\xA0Plain\xE3\x80\x80: \"x\"\n"), "Plain");
}

TEST(ATPPDChoice, NameRunsToTheEndWithoutSlashAndColon) {
  EXPECT_EQ(nameOf("*MediaType Plain"), "Plain");
  EXPECT_EQ(nameOf("*MediaType Plain\n"), "Plain\n");
}

TEST(ATPPDChoice, LineEndsBeforeTheNameAreSkipped) {
  EXPECT_EQ(nameOf("*MediaType \r\n Plain: \"x\""), "Plain");
}

TEST(ATPPDChoice, NameIsEmptyWhenNothingCanBeTaken) {
  EXPECT_EQ(nameOf("*MediaType: \"x\"\n"), "\"x\"\n");  // the keyword runs to the blank behind the colon
  EXPECT_EQ(nameOf("*MediaType /Text: \"x\"\n"), "");
  EXPECT_EQ(nameOf("*MediaType : \"x\"\n"), "");
  EXPECT_EQ(nameOf("*MediaType\n"), "");
  EXPECT_EQ(nameOf("*MediaType \n"), "");
  EXPECT_EQ(nameOf(""), "");
}

TEST(ATPPDChoice, CodeStandsBetweenTheFirstAndTheLastQuoteOfTheFirstLine) {
  EXPECT_EQ(codeOf("*MediaType Plain/Plain Paper: \"<<1>> setpagedevice\"\n"), "<<1>> setpagedevice");
  EXPECT_EQ(codeOf("*MediaType Plain: \"\"\n"), "");
  EXPECT_EQ(codeOf("*MediaType Plain: \"a\" \"b\"\n"), "a\" \"b");
  EXPECT_EQ(codeOf("*MediaType Plain: x\n"), null);
  EXPECT_EQ(codeOf("*MediaType Plain: \"x\n"), null);
}

TEST(ATPPDChoice, FurtherLinesOfACodeAreNotLookedAt) {
  const auto choice = ATPPDChoice::choiceWithString("*MediaType Plain: \"one\n");
  choice->addString("two\"\n", PPDLineTypeChoiceContinuation);
  EXPECT_EQ(choice->code(), null);
}

TEST(ATPPDChoice, HasNeitherNameNorCodeWithoutLines) {
  ATPPDChoice choice;
  EXPECT_EQ(choice.name(), null);
  EXPECT_EQ(choice.code(), null);
  choice.addString("*MediaType Plain: \"x\"\n", PPDLineTypeChoice);
  EXPECT_EQ(choice.name(), "Plain");
  EXPECT_EQ(choice.code(), "x");
}

TEST(ATPPDChoice, StatementIsBuiltFromItsParts) {
  EXPECT_EQ(ATPPDChoice::choiceStringWithName("Custom1", "MediaType", "My Paper", "code"),
            "*MediaType Custom1/My Paper: \"code\"\n");
  EXPECT_EQ(ATPPDChoice::choiceStringWithName("Custom1", "MediaType", "", ""), "*MediaType Custom1/: \"\"\n");
}

TEST(ATPPDChoice, AnAbsentCodeIsWrittenAsTheEmptyOne) {
  EXPECT_EQ(ATPPDChoice::choiceStringWithName("Custom1", "MediaType", "My Paper", null),
            "*MediaType Custom1/My Paper: \"\"\n");
}

TEST(ATPPDChoice, NameOfAStatementHasOneTo40Bytes) {
  EXPECT_TRUE(ATPPDChoice::choiceStringWithName(std::string(40, 'n'), "MediaType", "Text", "code"));
  EXPECT_TRUE(ATPPDChoice::choiceStringWithName(std::string(38, 'n') + "\xC3\xA9", "MediaType", "Text", "code"));
  const TestLog log;
  const std::string tooLong(41, 'n');
  EXPECT_EQ(ATPPDChoice::choiceStringWithName(tooLong, "MediaType", "Text", "code"), null);
  EXPECT_EQ(ATPPDChoice::choiceStringWithName("", "MediaType", "Text", "code"), null);
  log.expect(kSignature + ("Cannot create ATPPDChoice from name: " + tooLong) + ", option: MediaType, text: Text\n" +
             kSignature + "Cannot create ATPPDChoice from name: , option: MediaType, text: Text\n");
}

TEST(ATPPDChoice, AStatementNeedsAnOptionKeyword) {
  const TestLog log;
  EXPECT_EQ(ATPPDChoice::choiceStringWithName("Custom1", "", "Text", "code"), null);
  log.expect(kSignature + std::string("Cannot create ATPPDChoice from name: Custom1, option: , text: Text\n"));
}

TEST(ATPPDChoice, TextIsNotChecked) {
  EXPECT_EQ(ATPPDChoice::choiceStringWithName("n", "O", "<\":>\xE2\x82\xAC{}", "c"),
            "*O n/<\":>\xE2\x82\xAC{}: \"c\"\n");
  EXPECT_TRUE(ATPPDChoice::choiceStringWithName("n", "O", std::string(200, 't'), "c"));
}

TEST(ATPPDChoice, ALineOfAStatementHasUpTo255BytesWithoutItsLineEnd) {
  const auto longest = ATPPDChoice::choiceStringWithName("n", "O", textForLine(255), "");
  ASSERT_TRUE(longest);
  EXPECT_EQ(longest->size(), 256U);  // the line feed included
  const TestLog log;
  EXPECT_EQ(ATPPDChoice::choiceStringWithName("n", "O", textForLine(256), ""), null);
  const std::string line = "*O n/" + textForLine(256) + ": \"\"";
  log.expect(kSignature + ("Not valid component " + line) + ", string: " + line + "\n\n");
}

TEST(ATPPDChoice, LengthCountsBytes) {
  std::string text = textForLine(255);
  text.replace(0, 2, "\xC3\xA9");
  EXPECT_TRUE(ATPPDChoice::choiceStringWithName("n", "O", text, ""));
  EXPECT_EQ(ATPPDChoice::choiceStringWithName("n", "O", text + "\xC3\xA9", ""), null);
}

TEST(ATPPDChoice, EachLineOfAStatementIsCheckedByItself) {
  const std::string half(200, 't');
  EXPECT_EQ(ATPPDChoice::choiceStringWithName("n", "O", half + "\n" + half, "c"),
            "*O n/" + half + "\n" + half + ": \"c\"\n");
  EXPECT_EQ(ATPPDChoice::choiceStringWithName("n", "O", half + "\r\n\xE2\x80\xA8" + half, "c"),
            "*O n/" + half + "\r\n\xE2\x80\xA8" + half + ": \"c\"\n");
  EXPECT_EQ(ATPPDChoice::choiceStringWithName("n", "O", half, half), null);
  EXPECT_TRUE(ATPPDChoice::choiceStringWithName("n", "O", half, "\n" + half));
  EXPECT_EQ(ATPPDChoice::choiceStringWithName("n", "O", "t", "\n" + std::string(255, 'c')), null);
}

TEST(ATPPDChoice, TheFirstLineThatIsTooLongIsLogged) {
  const std::string first(256, 'a');
  const std::string statement = "*O n/t: \"\n" + first + "\n" + std::string(300, 'b') + "\"\n";
  const TestLog log;
  EXPECT_EQ(ATPPDChoice::choiceStringWithName("n", "O", "t", "\n" + first + "\n" + std::string(300, 'b')), null);
  log.expect(kSignature + ("Not valid component " + first) + ", string: " + statement + "\n");
}

TEST(ATPPDChoice, IsMadeWithItsLocalizedStatements) {
  const auto choice = ATPPDChoice::initWithName("Custom1", "My Paper", "code", "MediaType", {{"de", "Mein Papier"}});
  ASSERT_TRUE(choice);
  EXPECT_EQ(choice->name(), "Custom1");
  EXPECT_EQ(choice->code(), "code");
  EXPECT_THAT(linesOf(*choice),
              ElementsAre("*MediaType Custom1/My Paper: \"code\"\n", "*de.MediaType Custom1/Mein Papier: \"\"\n"));
}

TEST(ATPPDChoice, LocalizedStatementsStandInTheGivenOrder) {
  const auto choice = ATPPDChoice::initWithName("n", "t", "c", "O", {{"fr", "F"}, {"de", "D"}, {"en", "E"}});
  EXPECT_THAT(linesOf(*choice),
              ElementsAre("*O n/t: \"c\"\n", "*fr.O n/F: \"\"\n", "*de.O n/D: \"\"\n", "*en.O n/E: \"\"\n"));
}

TEST(ATPPDChoice, IsMadeWithoutLocalizations) {
  EXPECT_THAT(linesOf(*ATPPDChoice::initWithName("n", "t", "c", "O", {})), ElementsAre("*O n/t: \"c\"\n"));
}

TEST(ATPPDChoice, AnAbsentCodeIsTheEmptyOneOfTheStatement) {
  const auto choice = ATPPDChoice::initWithName("n", "t", null, "O", {});
  EXPECT_THAT(linesOf(*choice), ElementsAre("*O n/t: \"\"\n"));
  EXPECT_EQ(choice->code(), "");
}

TEST(ATPPDChoice, NameAndCodeStayAsGiven) {
  const auto choice = ATPPDChoice::initWithName(" a/b ", "t", "c\"d", "O", {});
  EXPECT_EQ(choice->name(), " a/b ");
  EXPECT_EQ(choice->code(), "c\"d");
}

TEST(ATPPDChoice, ACodeThatWasGivenStaysWhateverQuotesStandInFrontOfIt) {
  const auto choice =
      ATPPDChoice::initWithName("Roll \"7700\" wide", "a \"text\"", "<<\"1\">>", "O", {{"de", "\"D\""}});
  EXPECT_THAT(linesOf(*choice), ElementsAre("*O Roll \"7700\" wide/a \"text\": \"<<\"1\">>\"\n",
                                            "*de.O Roll \"7700\" wide/\"D\": \"\"\n"));
  EXPECT_EQ(choice->name(), "Roll \"7700\" wide");
  EXPECT_EQ(choice->code(), "<<\"1\">>");
  EXPECT_EQ(ATPPDChoice::initWithName("Roll \"7700\" wide", "t", "", "O", {})->code(), "");
  // No code was given, so it is what stands between the quotes of the statement.
  EXPECT_EQ(ATPPDChoice::initWithName("Roll \"7700\" wide", "t", null, "O", {})->code(), "7700\" wide/t: \"");
}

TEST(ATPPDChoice, NameAndCodeStayWhenLinesCome) {
  const auto choice = ATPPDChoice::choiceWithString("*MediaType Plain: \"x\"\n");
  const auto name = choice->name();
  const auto code = choice->code();
  for (int count = 0; count < 10; ++count) choice->addString("*Other Name: \"y\"\n", PPDLineTypeChoiceContinuation);
  EXPECT_EQ(name, "Plain");  // the very text that was given out
  EXPECT_EQ(code, "x");
  EXPECT_EQ(choice->name(), "Plain");
  EXPECT_EQ(choice->code(), "x");
}

TEST(ATPPDChoice, NoChoiceIsMadeWithoutAStatement) {
  EXPECT_EQ(ATPPDChoice::initWithName("", "t", "c", "O", {{"de", "D"}}), nullptr);
  EXPECT_EQ(ATPPDChoice::initWithName(std::string(41, 'n'), "t", "c", "O", {}), nullptr);
  EXPECT_EQ(ATPPDChoice::initWithName("n", "t", "c", "", {}), nullptr);
  EXPECT_EQ(ATPPDChoice::initWithName("n", std::string(256, 't'), "c", "O", {}), nullptr);
}

TEST(ATPPDChoice, NoLimitAppliesToLocalizedStatements) {
  const std::string text(400, 'x');
  const auto choice = ATPPDChoice::initWithName("n", "t", "c", "O", {{"de", text}});
  ASSERT_TRUE(choice);
  EXPECT_THAT(linesOf(*choice), ElementsAre("*O n/t: \"c\"\n", "*de.O n/" + text + ": \"\"\n"));
}

TEST(ATPPDChoice, ATextWithALineFeedStaysInOneString) {
  const auto choice = ATPPDChoice::initWithName("n", "one\ntwo", "c", "O", {});
  EXPECT_THAT(linesOf(*choice), ElementsAre("*O n/one\ntwo: \"c\"\n"));
}
