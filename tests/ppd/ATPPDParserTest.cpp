// SPDX-License-Identifier: MIT
#include "ppd/lines/ATPPDParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/ppd/TestSupport.h"

using namespace std::string_view_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using TestSupport::TemporaryFile;

namespace {

using Lines = std::vector<std::pair<std::string, PPDLineType>>;
using Errors = std::vector<std::pair<int, std::optional<std::int64_t>>>;

struct RecordingDelegate : IATPPDParserDelegate {
  Lines lines;
  Errors errors;
  std::vector<std::int64_t> lineNumbers;
  ATPPDParser* parser = nullptr;

  void didRecognizeString(ATPPDParser& sender, const StatementString& string, PPDLineType type) override {
    parser = &sender;
    lines.emplace_back(string.view(), type);
    lineNumbers.push_back(sender.lineNumber());
  }
  void didFailWithError(ATPPDParser& sender, const PPDParserError& error) override {
    parser = &sender;
    errors.emplace_back(error.code, error.lineNumber);
  }

  TestSupport::Texts texts() const {
    TestSupport::Texts texts;
    for (const auto& line : lines) texts.push_back(line.first);
    return texts;
  }
  std::vector<PPDLineType> types() const {
    std::vector<PPDLineType> types;
    for (const auto& line : lines) types.push_back(line.second);
    return types;
  }
};

// A delegate that leaves out the operation that it need not have.
struct LinesOnlyDelegate : IATPPDParserDelegate {
  int lines = 0;
  void didRecognizeString(ATPPDParser& /*parser*/, const StatementString& /*string*/, PPDLineType /*type*/) override {
    ++lines;
  }
};

class ATPPDParserTest : public testing::Test {
 protected:
  ATPPDParserTest() { parser_.setDelegate(&delegate_); }

  bool parse(std::string_view bytes) {
    const TemporaryFile file(bytes);
    return parser_.parsePPDFileAtPath(file.path());
  }

  RecordingDelegate delegate_;
  ATPPDParser parser_;
};

constexpr std::nullopt_t null = std::nullopt;

}  // namespace

// The typing of lines, one row for a kind of line, one column for the last type and the state of its value.
namespace {

constexpr int error(int code) {
  return -code;
}
constexpr int e3 = error(3);
constexpr int e4 = error(4);
constexpr int e5 = error(5);
constexpr int e6 = error(6);
constexpr int e7 = error(7);

struct Row {
  const char* line;
  // A line type, or an error. "open" and "closed" tell about the value of the last statement.
  int startClosed, startOpen;          // at the start, and behind CloseGroup
  int endClosed, endOpen;              // behind End and CloseUI
  int group;                           // behind OpenGroup
  int statementClosed, statementOpen;  // behind Statement and Continuation
  int block;                           // behind OpenUI, OrderDependency, DefaultChoice and ChoiceEnd
  int choice;                          // behind Choice
  int choiceContinuation;              // behind ChoiceContinuation
};

void PrintTo(const Row& row, std::ostream* stream) {
  *stream << testing::PrintToString(row.line);
}

// clang-format off
const Row kRows[] = {
    //                                    start     end       group  statement block choice continuation
    {"*% comment\n",                      1,  1,    1,  1,    1,     1,  1,    1,    1,     1},
    {"*%\n",                              1,  1,    1,  1,    1,     1,  1,    1,    1,     1},
    {"\n",                                12, 12,   12, 12,   12,    12, 12,   12,   12,    12},
    {"\r\n",                              12, 12,   12, 12,   12,    12, 12,   12,   12,    12},
    {"plain text\n",                      e3, e3,   e3, e3,   e4,    3,  3,    e5,   13,    13},
    {"   \n",                             e3, e3,   e3, e3,   e4,    3,  3,    e5,   13,    13},
    {" *% no comment\n",                  e3, e3,   e3, e3,   e4,    3,  3,    e5,   13,    13},
    {"*End\n",                            e6, e6,   e6, e6,   2,     4,  e6,   11,   11,    14},
    {"*EndOfSomething: x\n",              e6, e6,   e6, e6,   2,     4,  e6,   11,   11,    14},
    {"*end\n",                            2,  3,    2,  3,    2,     2,  3,    11,   11,    11},
    {" *End\n",                           e3, e3,   e3, e3,   e4,    3,  3,    e5,   13,    13},
    {"*OpenGroup: General/Text\n",        5,  5,    5,  5,    2,     5,  5,    11,   11,    11},
    {"* opengroup : General\n",           5,  5,    5,  5,    2,     5,  5,    11,   11,    11},
    {"*\topengroup: General\n",           5,  5,    5,  5,    2,     5,  5,    11,   11,    11},
    {"*\xC2\xA0OpenGroup: General\n",     5,  5,    5,  5,    2,     5,  5,    11,   11,    11},
    {"*OpenGroup General\n",              2,  3,    2,  3,    2,     2,  3,    11,   11,    11},
    {" *OpenGroup: General\n",            e3, e3,   e3, e3,   e4,    3,  3,    e5,   13,    13},
    {"*CloseGroup: General\n",            e7, e7,   6,  6,    6,     6,  6,    11,   11,    11},
    {"*CLOSEGROUP :\n",                   e7, e7,   6,  6,    6,     6,  6,    11,   11,    11},
    {"* closegroup:\n",                   e7, e7,   6,  6,    6,     6,  6,    11,   11,    11},
    {"*CloseGroup\n",                     2,  3,    2,  3,    2,     2,  3,    11,   11,    11},
    {" *CloseGroup: General\n",           e3, e3,   6,  6,    6,     3,  3,    e5,   13,    13},
    {"*OpenUI *A/Text: PickOne\n",        7,  7,    7,  7,    7,     7,  7,    11,   11,    11},
    {"*openui\n",                         7,  7,    7,  7,    7,     7,  7,    11,   11,    11},
    {"*  OPENUI *A: PickOne\n",           7,  7,    7,  7,    7,     7,  7,    11,   11,    11},
    {"*OpenUIExtra: x\n",                 7,  7,    7,  7,    7,     7,  7,    11,   11,    11},
    {" *OpenUI *A: PickOne\n",            e3, e3,   e3, e3,   7,     3,  3,    e5,   13,    13},
    {"*JCLOpenUI *A: PickOne\n",          2,  3,    2,  3,    2,     2,  3,    11,   11,    11},
    {"*CloseUI: *A\n",                    2,  3,    2,  3,    2,     2,  3,    8,    8,     8},
    {"*closeui :\n",                      2,  3,    2,  3,    2,     2,  3,    8,    8,     8},
    {"*CloseUI *A\n",                     2,  3,    2,  3,    2,     2,  3,    11,   11,    11},
    {" *CloseUI: *A\n",                   e3, e3,   e3, e3,   e4,    3,  3,    8,    13,    13},
    {"*JCLCloseUI: *A\n",                 2,  3,    2,  3,    2,     2,  3,    11,   11,    11},
    {"*OrderDependency: 1 AnySetup *A\n", 2,  3,    2,  3,    2,     2,  3,    9,    9,     9},
    {"*orderdependency:\n",               2,  3,    2,  3,    2,     2,  3,    9,    9,     9},
    {"*OrderDependency 1\n",              2,  3,    2,  3,    2,     2,  3,    11,   11,    11},
    {" *OrderDependency: 1\n",            e3, e3,   e3, e3,   e4,    3,  3,    9,    13,    13},
    {"*DefaultA: x\n",                    2,  3,    2,  3,    2,     2,  3,    10,   10,    10},
    {"*Default\n",                        2,  3,    2,  3,    2,     2,  3,    10,   10,    10},
    {"*defaultA: x\n",                    2,  3,    2,  3,    2,     2,  3,    11,   11,    11},
    {" *DefaultA: x\n",                   e3, e3,   e3, e3,   e4,    3,  3,    e5,   13,    13},
    {"*Foo: \"x\"\n",                     2,  3,    2,  3,    2,     2,  3,    11,   11,    11},
    {"*Foo: \"x\n",                       2,  3,    2,  3,    2,     2,  3,    11,   11,    11},
    {"*A x/Text: \"\"\n",                 2,  3,    2,  3,    2,     2,  3,    11,   11,    11},
    {"*\n",                               2,  3,    2,  3,    2,     2,  3,    11,   11,    11},
    {"*\xC3\xA9: x\n",                    2,  3,    2,  3,    2,     2,  3,    11,   11,    11},
    {"*\x7F: x\n",                        2,  3,    2,  3,    2,     2,  3,    11,   11,    11},
};
// clang-format on

class ATPPDParserTyping : public testing::TestWithParam<Row> {
 protected:
  // Types the row's line in one state and compares type and error.
  void expectType(PPDLineType lastType, bool closed, int expected) {
    SCOPED_TRACE(testing::Message() << "behind type " << lastType << (closed ? ", closed" : ", open"));
    RecordingDelegate delegate;
    ATPPDParser parser;
    parser.setDelegate(&delegate);
    parser.setLastLineType(lastType);
    parser.setLastStatementClosed(closed);
    parser.setLineNumber(17);
    const PPDLineType type = parser.typeOfString(GetParam().line);
    EXPECT_EQ(type, expected < 0 ? 0 : expected);
    const Errors errors = expected < 0 ? Errors{{-expected, 17}} : Errors{};
    EXPECT_EQ(delegate.errors, errors);
    EXPECT_THAT(delegate.lines, IsEmpty());
    EXPECT_EQ(parser.lastLineType(), lastType);
    EXPECT_EQ(parser.lastStatementClosed(), closed);
    EXPECT_EQ(parser.lineNumber(), 17);
  }
  void expectTypes(std::vector<PPDLineType> lastTypes, int closed, int open) {
    for (const PPDLineType lastType : lastTypes) {
      expectType(lastType, true, closed);
      expectType(lastType, false, open);
    }
  }
};

}  // namespace

TEST_P(ATPPDParserTyping, AtTheStartAndBehindCloseGroup) {
  expectTypes({PPDLineTypeInvalid, PPDLineTypeCloseGroup}, GetParam().startClosed, GetParam().startOpen);
}

TEST_P(ATPPDParserTyping, BehindEndAndCloseUI) {
  expectTypes({PPDLineTypeEnd, PPDLineTypeCloseUI}, GetParam().endClosed, GetParam().endOpen);
}

TEST_P(ATPPDParserTyping, BehindOpenGroup) {
  expectTypes({PPDLineTypeOpenGroup}, GetParam().group, GetParam().group);
}

TEST_P(ATPPDParserTyping, BehindStatementAndContinuation) {
  expectTypes({PPDLineTypeStatement, PPDLineTypeContinuation}, GetParam().statementClosed, GetParam().statementOpen);
}

TEST_P(ATPPDParserTyping, BehindTheStatementsOfAUIBlock) {
  expectTypes({PPDLineTypeOpenUI, PPDLineTypeOrderDependency, PPDLineTypeDefaultChoice, PPDLineTypeChoiceEnd},
              GetParam().block, GetParam().block);
}

TEST_P(ATPPDParserTyping, BehindChoice) {
  expectTypes({PPDLineTypeChoice}, GetParam().choice, GetParam().choice);
}

TEST_P(ATPPDParserTyping, BehindChoiceContinuation) {
  expectTypes({PPDLineTypeChoiceContinuation}, GetParam().choiceContinuation, GetParam().choiceContinuation);
}

TEST_P(ATPPDParserTyping, BehindATypeThatIsNeverRemembered) {
  const int type = GetParam().startClosed;
  const int expected = type == PPDLineTypeComment || type == PPDLineTypeNewLine ? type : 0;
  for (const int lastType : {-1, 1, 12, 15, 1000}) {
    expectTypes({static_cast<PPDLineType>(lastType)}, expected, expected);
  }
}

INSTANTIATE_TEST_SUITE_P(Lines, ATPPDParserTyping, testing::ValuesIn(kRows));

TEST_F(ATPPDParserTest, HasItsAccessors) {
  EXPECT_EQ(parser_.delegate(), &delegate_);
  parser_.setDelegate(nullptr);
  EXPECT_EQ(parser_.delegate(), nullptr);
  parser_.setLineNumber(std::int64_t{1} << 40);
  EXPECT_EQ(parser_.lineNumber(), std::int64_t{1} << 40);
  parser_.setLastLineType(PPDLineTypeChoiceEnd);
  EXPECT_EQ(parser_.lastLineType(), PPDLineTypeChoiceEnd);
  parser_.setLastStatementClosed(false);
  EXPECT_FALSE(parser_.lastStatementClosed());
  parser_.setLastStatementClosed(true);
  EXPECT_TRUE(parser_.lastStatementClosed());
}

TEST_F(ATPPDParserTest, RemembersTheTypeOfALineThatIsNoCommentAndNotEmpty) {
  parser_.setLastLineType(PPDLineTypeStatement);
  EXPECT_TRUE(parser_.recognizeString("*% x\n"));
  EXPECT_EQ(parser_.lastLineType(), PPDLineTypeStatement);
  EXPECT_TRUE(parser_.recognizeString("\n"));
  EXPECT_EQ(parser_.lastLineType(), PPDLineTypeStatement);
  EXPECT_TRUE(parser_.recognizeString("*OpenUI *A: PickOne\n"));
  EXPECT_EQ(parser_.lastLineType(), PPDLineTypeOpenUI);
}

TEST_F(ATPPDParserTest, CountsEveryAcceptedLine) {
  parser_.setLineNumber(1);
  for (const char* line : {"*% x\n", "\n", "*Foo: x\n", "*End\n"}) EXPECT_TRUE(parser_.recognizeString(line));
  EXPECT_EQ(parser_.lineNumber(), 5);
  EXPECT_THAT(delegate_.lineNumbers, ElementsAre(2, 3, 4, 5));  // counted before the delegate is called
  EXPECT_EQ(delegate_.parser, &parser_);
}

TEST_F(ATPPDParserTest, ARejectedLineChangesNothing) {
  parser_.setLineNumber(9);
  EXPECT_FALSE(parser_.recognizeString("plain\n"));
  EXPECT_EQ(parser_.lineNumber(), 9);
  EXPECT_EQ(parser_.lastLineType(), PPDLineTypeInvalid);
  EXPECT_TRUE(parser_.lastStatementClosed());
  EXPECT_THAT(delegate_.lines, IsEmpty());
  EXPECT_THAT(delegate_.errors, ElementsAre(Pair(3, 9)));
  EXPECT_EQ(delegate_.parser, &parser_);
}

TEST_F(ATPPDParserTest, AStatementClosesOrOpensTheValue) {
  for (const auto& [line, closed] : std::vector<std::pair<const char*, bool>>{
           {"*Foo: x\n", true}, {"*Foo: \"x\"\n", true}, {"*Foo: \"x\n", false}, {"*Foo\n", false}}) {
    ATPPDParser parser;
    EXPECT_TRUE(parser.recognizeString(line));
    EXPECT_EQ(parser.lastLineType(), PPDLineTypeStatement);
    EXPECT_EQ(parser.lastStatementClosed(), closed) << line;
  }
}

TEST_F(ATPPDParserTest, AContinuationClosesTheValueWithAQuoteAtItsEnd) {
  for (const auto& [line, closed] : std::vector<std::pair<const char*, bool>>{
           {"x\" \r\n", true}, {"x\n", false}, {"\"x\n", false}, {"*Foo: \"x\"\n", true}, {"*Foo: x\n", false}}) {
    ATPPDParser parser;
    EXPECT_TRUE(parser.recognizeString("*Foo: \"a\n"));
    EXPECT_TRUE(parser.recognizeString(line));
    EXPECT_EQ(parser.lastLineType(), PPDLineTypeContinuation);
    EXPECT_EQ(parser.lastStatementClosed(), closed) << line;
  }
}

TEST_F(ATPPDParserTest, NoOtherTypeClosesOrOpensTheValue) {
  const std::vector<std::pair<PPDLineType, const char*>> lines = {
      {PPDLineTypeStatement, "*% \"\n"},
      {PPDLineTypeStatement, "\n"},
      {PPDLineTypeStatement, "*OpenGroup: \"\n"},
      {PPDLineTypeStatement, "*CloseGroup: \"\n"},
      {PPDLineTypeStatement, "*OpenUI \"\n"},
      {PPDLineTypeOpenUI, "*CloseUI: \"\n"},
      {PPDLineTypeOpenUI, "*OrderDependency: \"\n"},
      {PPDLineTypeOpenUI, "*DefaultA: \"\n"},
      {PPDLineTypeOpenUI, "*A x: \"\n"},
      {PPDLineTypeChoice, "x\"\n"},
      {PPDLineTypeChoiceContinuation, "*End\n"},
  };
  for (const auto& [lastType, line] : lines) {
    for (const bool closed : {true, false}) {
      ATPPDParser parser;
      parser.setLastLineType(lastType);
      parser.setLastStatementClosed(closed);
      EXPECT_TRUE(parser.recognizeString(line)) << line;
      EXPECT_EQ(parser.lastStatementClosed(), closed) << line;
    }
  }
  ATPPDParser parser;
  parser.setLastLineType(PPDLineTypeStatement);
  EXPECT_TRUE(parser.recognizeString("*End\n"));
  EXPECT_EQ(parser.lastLineType(), PPDLineTypeEnd);
  EXPECT_TRUE(parser.lastStatementClosed());
}

TEST_F(ATPPDParserTest, ReportsErrorsWithAndWithoutALineNumber) {
  parser_.setLineNumber(42);
  parser_.reportErrorWithCode(2);
  parser_.reportMalformedLineErrorWithCode(5);
  parser_.reportErrorWithCode(9, 7);
  parser_.reportErrorWithCode(9, null);
  EXPECT_THAT(delegate_.errors, ElementsAre(Pair(2, null), Pair(5, 42), Pair(9, 7), Pair(9, null)));
  EXPECT_STREQ(PPDParserError::domain, "PPDParserErrorDomain");
}

TEST_F(ATPPDParserTest, AnErrorDescribesItself) {
  EXPECT_EQ(PPDParserError({6, 12}).description(), "PPDParserErrorDomain code 6 (Line Number: 12)");
  EXPECT_EQ(PPDParserError({1, null}).description(), "PPDParserErrorDomain code 1");
}

TEST_F(ATPPDParserTest, ADelegateNeedNotTakeErrors) {
  LinesOnlyDelegate delegate;
  parser_.setDelegate(&delegate);
  EXPECT_FALSE(parse("*Foo: x\n*End\n*End\n"));
  EXPECT_EQ(delegate.lines, 2);
  EXPECT_FALSE(parser_.parsePPDFileAtPath(null));
}

TEST_F(ATPPDParserTest, WorksWithoutADelegate) {
  parser_.setDelegate(nullptr);
  EXPECT_TRUE(parse("*Foo: x\n"));
  EXPECT_FALSE(parse("plain\n"));
}

TEST_F(ATPPDParserTest, HandsEveryLineToTheDelegateInFileOrder) {
  EXPECT_TRUE(
      parse("*PPD-Adobe: \"4.3\"\n*% comment\n\n*OpenGroup: G\n*OpenUI *A: PickOne\r\n*OrderDependency: 1 AnySetup *A\n"
            "*DefaultA: x\n*A x: \"1\n2\"\n*End\n*A y: \"\"\n*CloseUI: *A\n*CloseGroup: G\n*Foo: \"a\nb\"\n*End\n"
            "*Last: x"));
  EXPECT_THAT(delegate_.lines,
              ElementsAre(Pair("*PPD-Adobe: \"4.3\"\n", PPDLineTypeStatement), Pair("*% comment\n", PPDLineTypeComment),
                          Pair("\n", PPDLineTypeNewLine), Pair("*OpenGroup: G\n", PPDLineTypeOpenGroup),
                          Pair("*OpenUI *A: PickOne\r\n", PPDLineTypeOpenUI),
                          Pair("*OrderDependency: 1 AnySetup *A\n", PPDLineTypeOrderDependency),
                          Pair("*DefaultA: x\n", PPDLineTypeDefaultChoice), Pair("*A x: \"1\n", PPDLineTypeChoice),
                          Pair("2\"\n", PPDLineTypeChoiceContinuation), Pair("*End\n", PPDLineTypeChoiceEnd),
                          Pair("*A y: \"\"\n", PPDLineTypeChoice), Pair("*CloseUI: *A\n", PPDLineTypeCloseUI),
                          Pair("*CloseGroup: G\n", PPDLineTypeCloseGroup), Pair("*Foo: \"a\n", PPDLineTypeStatement),
                          Pair("b\"\n", PPDLineTypeContinuation), Pair("*End\n", PPDLineTypeEnd),
                          Pair("*Last: x", PPDLineTypeStatement)));
  EXPECT_THAT(delegate_.errors, IsEmpty());
  EXPECT_EQ(parser_.lineNumber(), 18);
}

TEST_F(ATPPDParserTest, TheFirstLineMayBeACommentAnEmptyLineOrAKeyword) {
  EXPECT_TRUE(parse("*% x\n"));
  EXPECT_TRUE(parse("\n*Foo: x\n"));
  EXPECT_TRUE(parse("*Foo: x\n"));
  EXPECT_THAT(delegate_.errors, IsEmpty());
}

TEST_F(ATPPDParserTest, AStatementWithoutAColonLeavesTheValueOpen) {
  EXPECT_TRUE(parse("*Foo\n*Bar: \"x\"\n*Baz: x\n"));
  EXPECT_THAT(delegate_.types(), ElementsAre(PPDLineTypeStatement, PPDLineTypeContinuation, PPDLineTypeStatement));
}

TEST_F(ATPPDParserTest, ALineOfSpacesBehindAStatementIsAContinuation) {
  EXPECT_TRUE(parse("*Foo: x\n   \n"));
  EXPECT_THAT(delegate_.types(), ElementsAre(PPDLineTypeStatement, PPDLineTypeContinuation));
}

TEST_F(ATPPDParserTest, CommentsAndEmptyLinesMayStandInsideAValueAndABlock) {
  EXPECT_TRUE(parse("*Foo: \"a\n*% x\n\nb\"\n*End\n*OpenUI *A\n*% x\n\n*A x: \"1\n*% x\n\n2\"\n*End\n*CloseUI: *A\n"));
  EXPECT_THAT(
      delegate_.types(),
      ElementsAre(PPDLineTypeStatement, PPDLineTypeComment, PPDLineTypeNewLine, PPDLineTypeContinuation, PPDLineTypeEnd,
                  PPDLineTypeOpenUI, PPDLineTypeComment, PPDLineTypeNewLine, PPDLineTypeChoice, PPDLineTypeComment,
                  PPDLineTypeNewLine, PPDLineTypeChoiceContinuation, PPDLineTypeChoiceEnd, PPDLineTypeCloseUI));
}

TEST_F(ATPPDParserTest, AnOpenValueStaysOpenOverABlock) {
  EXPECT_TRUE(parse("*Foo: \"a\n*OpenUI *A\n*DefaultA: x\n*CloseUI: *A\n*Bar: x\"\n*Baz: x\n"));
  EXPECT_THAT(delegate_.types(), ElementsAre(PPDLineTypeStatement, PPDLineTypeOpenUI, PPDLineTypeDefaultChoice,
                                             PPDLineTypeCloseUI, PPDLineTypeContinuation, PPDLineTypeStatement));
}

TEST_F(ATPPDParserTest, ACloseGroupLineInsideABlockIsAChoice) {
  EXPECT_TRUE(parse("*OpenGroup: G\n*OpenUI *A\n*CloseGroup: G\n"));
  EXPECT_THAT(delegate_.types(), ElementsAre(PPDLineTypeOpenGroup, PPDLineTypeOpenUI, PPDLineTypeChoice));
}

TEST_F(ATPPDParserTest, AnEndLineDirectlyBehindAChoiceIsAChoice) {
  EXPECT_TRUE(parse("*OpenUI *A\n*A x: \"\"\n*End\n"));
  EXPECT_THAT(delegate_.types(), ElementsAre(PPDLineTypeOpenUI, PPDLineTypeChoice, PPDLineTypeChoice));
}

namespace {

struct Malformed {
  const char* shows;
  const char* bytes;
  int code;
  std::int64_t lineNumber;
};

void PrintTo(const Malformed& malformed, std::ostream* stream) {
  *stream << malformed.shows;
}

const Malformed kMalformed[] = {
    {"PlainTextAtTheStart", "plain\n", 3, 1},
    {"SpacesAtTheStart", "   \n", 3, 1},
    {"SpaceBeforeOpenUIAtTheStart", " *OpenUI *A\n", 3, 1},
    {"PlainTextBehindCloseGroup", "*OpenGroup: G\n*CloseGroup: G\nplain\n", 3, 3},
    {"PlainTextBehindEnd", "*Foo: x\n*End\nplain\n", 3, 3},
    {"PlainTextBehindCloseUI", "*OpenUI *A\n*CloseUI: *A\nplain\n", 3, 3},
    {"PlainTextBehindOpenGroup", "*OpenGroup: G\nplain\n", 4, 2},
    {"PlainTextBehindOpenUI", "*OpenUI *A\nplain\n", 5, 2},
    {"PlainTextBehindOrderDependency", "*OpenUI *A\n*OrderDependency: 1\nplain\n", 5, 3},
    {"PlainTextBehindADefaultChoice", "*OpenUI *A\n*DefaultA: x\nplain\n", 5, 3},
    {"PlainTextBehindAChoicesEnd", "*OpenUI *A\n*A x: \"\n\"\n*End\nplain\n", 5, 5},
    {"EndAtTheStart", "*End\n", 6, 1},
    {"EndBehindCloseGroup", "*OpenGroup: G\n*CloseGroup: G\n*End\n", 6, 3},
    {"EndBehindEnd", "*Foo: x\n*End\n*End\n", 6, 3},
    {"EndBehindCloseUI", "*OpenUI *A\n*CloseUI: *A\n*End\n", 6, 3},
    {"EndBehindAnOpenStatement", "*Foo: \"a\n*End\n", 6, 2},
    {"EndBehindAnOpenContinuation", "*Foo: \"a\nb\n*End\n", 6, 3},
    {"CloseGroupAtTheStart", "*CloseGroup: G\n", 7, 1},
    {"CloseGroupBehindCloseGroup", "*OpenGroup: G\n*CloseGroup: G\n*CloseGroup: G\n", 7, 3},
    {"CommentsAndEmptyLinesCount", "*% x\n\n*Foo: x\n*End\n*End\n", 6, 5},
    {"PiecesCount", "*Foo: x\n*End\n\n\r\n\rplain\n", 3, 6},
};

class ATPPDParserMalformed : public testing::TestWithParam<Malformed> {};

}  // namespace

TEST_P(ATPPDParserMalformed, EndsTheParseWithItsErrorAndLineNumber) {
  RecordingDelegate delegate;
  ATPPDParser parser;
  parser.setDelegate(&delegate);
  const TemporaryFile file(std::string(GetParam().bytes) + "*Later: x\n" + "*End\n*End\n");
  EXPECT_FALSE(parser.parsePPDFileAtPath(file.path()));
  EXPECT_THAT(delegate.errors, ElementsAre(Pair(GetParam().code, GetParam().lineNumber)));
  EXPECT_EQ(delegate.lines.size(), static_cast<std::size_t>(GetParam().lineNumber - 1));
}

INSTANTIATE_TEST_SUITE_P(Lines, ATPPDParserMalformed, testing::ValuesIn(kMalformed),
                         [](const auto& line) { return line.param.shows; });

TEST_F(ATPPDParserTest, AMissingFileIsErrorOne) {
  const std::string path = testing::TempDir() + "no-such-directory/no-such-file.ppd";
  const TestLog log;
  EXPECT_FALSE(parser_.parsePPDFileAtPath(path));
  EXPECT_THAT(delegate_.errors, ElementsAre(Pair(1, null)));
  EXPECT_THAT(delegate_.lines, IsEmpty());
  log.expect("-[ATPPDParser parsePPDFileAtPath:]: Cannot find PPD at " + path + "\n");
}

TEST_F(ATPPDParserTest, AnAbsentPathIsErrorOne) {
  const TestLog log;
  EXPECT_FALSE(parser_.parsePPDFileAtPath(null));
  EXPECT_THAT(delegate_.errors, ElementsAre(Pair(1, null)));
  log.expect("-[ATPPDParser parsePPDFileAtPath:]: Cannot find PPD at (null)\n");
}

TEST_F(ATPPDParserTest, AnEmptyPathIsErrorOne) {
  EXPECT_FALSE(parser_.parsePPDFileAtPath(""));
  EXPECT_THAT(delegate_.errors, ElementsAre(Pair(1, null)));
}

TEST_F(ATPPDParserTest, ALinkWithoutATargetIsErrorOne) {
  const TemporaryFile file;
  const std::string link = file.path() + ".link";
  ASSERT_EQ(symlink((file.path() + ".missing").c_str(), link.c_str()), 0);
  EXPECT_FALSE(parser_.parsePPDFileAtPath(link));
  EXPECT_THAT(delegate_.errors, ElementsAre(Pair(1, null)));
  unlink(link.c_str());
}

TEST_F(ATPPDParserTest, ALinkToAFileIsFollowed) {
  const TemporaryFile file("*Foo: x\n");
  const std::string link = file.path() + ".link";
  ASSERT_EQ(symlink(file.path().c_str(), link.c_str()), 0);
  EXPECT_TRUE(parser_.parsePPDFileAtPath(link));
  EXPECT_THAT(delegate_.texts(), ElementsAre("*Foo: x\n"));
  unlink(link.c_str());
}

TEST_F(ATPPDParserTest, AMissingFileLeavesTheStateAsItWas) {
  parser_.setLineNumber(9);
  parser_.setLastLineType(PPDLineTypeChoice);
  parser_.setLastStatementClosed(false);
  EXPECT_FALSE(parser_.parsePPDFileAtPath(null));
  EXPECT_EQ(parser_.lineNumber(), 9);
  EXPECT_EQ(parser_.lastLineType(), PPDLineTypeChoice);
  EXPECT_FALSE(parser_.lastStatementClosed());
}

namespace {

// A path at which something exists that nobody can open as a file, the administrator included: a socket.
class Socket {
 public:
  Socket() : descriptor_(socket(AF_UNIX, SOCK_STREAM, 0)) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    unlink(file_.path().c_str());
    std::strncpy(address.sun_path, file_.path().c_str(), sizeof address.sun_path - 1);
    if (bind(descriptor_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) std::abort();
  }
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;
  ~Socket() { close(descriptor_); }
  const std::string& path() const { return file_.path(); }

 private:
  TemporaryFile file_;
  int descriptor_;
};

struct LogAtErrorDelegate : RecordingDelegate {
  const TestLog* log = nullptr;
  std::string messagesAtError;
  void didFailWithError(ATPPDParser& sender, const PPDParserError& error) override {
    RecordingDelegate::didFailWithError(sender, error);
    messagesAtError = log->text();
  }
};

}  // namespace

TEST_F(ATPPDParserTest, AFileThatCannotBeOpenedIsErrorTwo) {
  const Socket socket;
  const TestLog log;
  EXPECT_FALSE(parser_.parsePPDFileAtPath(socket.path()));
  EXPECT_THAT(delegate_.errors, ElementsAre(Pair(2, null)));
  EXPECT_THAT(delegate_.lines, IsEmpty());
  log.expect("-[ATPPDParser parsePPDFileAtPath:]: cupsFileOpen fails with PPD " + socket.path() + "\n");
}

TEST_F(ATPPDParserTest, TheStateIsResetBeforeTheFileIsOpened) {
  const Socket socket;
  parser_.setLineNumber(9);
  parser_.setLastLineType(PPDLineTypeChoice);
  parser_.setLastStatementClosed(false);
  EXPECT_FALSE(parser_.parsePPDFileAtPath(socket.path()));
  EXPECT_EQ(parser_.lineNumber(), 1);
  EXPECT_EQ(parser_.lastLineType(), PPDLineTypeInvalid);
  EXPECT_TRUE(parser_.lastStatementClosed());
}

TEST_F(ATPPDParserTest, ErrorsAreReportedBeforeTheyAreLogged) {
  const Socket socket;
  const TestLog log;
  LogAtErrorDelegate delegate;
  delegate.log = &log;
  parser_.setDelegate(&delegate);
  EXPECT_FALSE(parser_.parsePPDFileAtPath(null));
  EXPECT_EQ(delegate.messagesAtError, "");
  const std::string before = log.text();
  EXPECT_FALSE(parser_.parsePPDFileAtPath(socket.path()));
  EXPECT_EQ(delegate.messagesAtError, before);
  EXPECT_EQ(delegate.errors.size(), 2U);
}

TEST_F(ATPPDParserTest, EveryParseBeginsAnew) {
  EXPECT_FALSE(parse("*Foo: \"a\nplain\n*End\n"));
  EXPECT_TRUE(parse("*Foo: x\n*Bar: x\n"));
  EXPECT_EQ(parser_.lineNumber(), 3);
  EXPECT_EQ(delegate_.lines.back().second, PPDLineTypeStatement);
}

TEST_F(ATPPDParserTest, AnEmptyFileHasNoLines) {
  EXPECT_TRUE(parse(""));
  EXPECT_THAT(delegate_.lines, IsEmpty());
  EXPECT_EQ(parser_.lineNumber(), 1);
}

TEST_F(ATPPDParserTest, ADirectoryHasNoLines) {
  EXPECT_TRUE(parser_.parsePPDFileAtPath(testing::TempDir()));
  EXPECT_THAT(delegate_.lines, IsEmpty());
  EXPECT_THAT(delegate_.errors, IsEmpty());
}

TEST_F(ATPPDParserTest, EveryKindOfLineEndIsKept) {
  EXPECT_TRUE(parse("*A: 1\n*B: 2\r\n*C: 3\r*D: 4"));
  EXPECT_THAT(delegate_.texts(), ElementsAre("*A: 1\n", "*B: 2\r\n", "*C: 3\r", "*D: 4"));
}

TEST_F(ATPPDParserTest, ALineFeedBeforeACarriageReturnEndsALineByItself) {
  EXPECT_TRUE(parse("*A: 1\n\r*B: 2\r\r\n"));
  EXPECT_THAT(delegate_.texts(), ElementsAre("*A: 1\n", "\r", "*B: 2\r", "\r\n"));
}

namespace {

// A statement of this many bytes, line end left out.
std::string statement(std::size_t size) {
  return "*Foo: " + std::string(size - 6, 'x');
}

struct Pieces {
  std::size_t size;
  const char* lineEnd;
  TestSupport::Texts expected;
};

void PrintTo(const Pieces& pieces, std::ostream* stream) {
  *stream << pieces.size << " bytes and " << testing::PrintToString(pieces.lineEnd);
}

const Pieces kPieces[] = {
    {252, "\n", {statement(252) + "\n"}},
    {252, "\r\n", {statement(252) + "\r\n"}},
    {253, "\n", {statement(253) + "\n"}},
    {253, "\r\n", {statement(253) + "\r\n"}},  // the CR is the 254th byte and takes the LF along
    {253, "\r", {statement(253) + "\r"}},
    {254, "\n", {statement(254), "\n"}},
    {254, "\r\n", {statement(254), "\r\n"}},
    {254, "\r", {statement(254), "\r"}},
    {255, "\n", {statement(254), "x\n"}},
    {255, "\r\n", {statement(254), "x\r\n"}},
    {255, "\r", {statement(254), "x\r"}},
    {256, "\n", {statement(254), "xx\n"}},
    {256, "\r\n", {statement(254), "xx\r\n"}},
    {256, "\r", {statement(254), "xx\r"}},
    {257, "\n", {statement(254), "xxx\n"}},
    {257, "\r\n", {statement(254), "xxx\r\n"}},
    {257, "\r", {statement(254), "xxx\r"}},
    {508, "\n", {statement(254), std::string(254, 'x'), "\n"}},
    {600, "", {statement(254), std::string(254, 'x'), std::string(92, 'x')}},
};

class ATPPDParserPieces : public testing::TestWithParam<Pieces> {};

}  // namespace

TEST_P(ATPPDParserPieces, ComeAsTheReaderCutsThem) {
  RecordingDelegate delegate;
  ATPPDParser parser;
  parser.setDelegate(&delegate);
  const TemporaryFile file(statement(GetParam().size) + GetParam().lineEnd);
  EXPECT_TRUE(parser.parsePPDFileAtPath(file.path()));
  EXPECT_EQ(delegate.texts(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Lines, ATPPDParserPieces, testing::ValuesIn(kPieces));

TEST_F(ATPPDParserTest, ALineOf254BytesLeavesAnEmptyLine) {
  EXPECT_TRUE(parse(statement(254) + "\n*Bar: x\n"));
  EXPECT_THAT(delegate_.types(), ElementsAre(PPDLineTypeStatement, PPDLineTypeNewLine, PPDLineTypeStatement));
  EXPECT_EQ(parser_.lineNumber(), 4);
}

TEST_F(ATPPDParserTest, AFurtherPieceOfAStatementIsAContinuation) {
  EXPECT_TRUE(parse(statement(255) + "\n*Bar: x\n"));
  EXPECT_THAT(delegate_.types(), ElementsAre(PPDLineTypeStatement, PPDLineTypeContinuation, PPDLineTypeContinuation));
}

TEST_F(ATPPDParserTest, AFurtherPieceOfALongCommentIsTypedByItself) {
  EXPECT_FALSE(parse("*%" + std::string(300, 'x') + "\n"));
  EXPECT_THAT(delegate_.types(), ElementsAre(PPDLineTypeComment));
  EXPECT_THAT(delegate_.errors, ElementsAre(Pair(3, 2)));
}

TEST_F(ATPPDParserTest, AFurtherPieceMayBeAStatement) {
  EXPECT_TRUE(parse("*%" + std::string(252, 'x') + "*Foo: x\n"));
  EXPECT_THAT(delegate_.types(), ElementsAre(PPDLineTypeComment, PPDLineTypeStatement));
}

TEST_F(ATPPDParserTest, ACharacterThatIsCutByAPieceEndsReadingWithSuccess) {
  EXPECT_TRUE(parse("*First: x\n" + statement(253) + "\xC3\xA9\n*Last: x\n"));
  EXPECT_THAT(delegate_.texts(), ElementsAre("*First: x\n"));
  EXPECT_THAT(delegate_.errors, IsEmpty());
}

TEST_F(ATPPDParserTest, ACharacterThatEndsWithThePieceIsWhole) {
  EXPECT_TRUE(parse(statement(252) + "\xC3\xA9\n"));
  EXPECT_THAT(delegate_.texts(), ElementsAre(statement(252) + "\xC3\xA9", "\n"));
}

TEST_F(ATPPDParserTest, ALineThatIsNotUTF8EndsReadingWithSuccess) {
  EXPECT_TRUE(parse("*First: x\n*Second: caf\xE9\n*End\n*End\n"));
  EXPECT_THAT(delegate_.texts(), ElementsAre("*First: x\n"));
  EXPECT_THAT(delegate_.errors, IsEmpty());
  EXPECT_EQ(parser_.lineNumber(), 2);
}

TEST_F(ATPPDParserTest, TheFirstLineMayAlreadyEndReading) {
  EXPECT_TRUE(parse("\xFF\n*Foo: x\n"));
  EXPECT_THAT(delegate_.lines, IsEmpty());
}

TEST_F(ATPPDParserTest, ANulIsACharacterLikeAnyOther) {
  EXPECT_TRUE(parse("*Foo: a\0b\n*Bar: x\n"sv));
  EXPECT_THAT(delegate_.texts(), ElementsAre(std::string("*Foo: a\0b\n"sv), "*Bar: x\n"));
}

TEST_F(ATPPDParserTest, AByteOrderMarkMakesTheFirstLineMalformed) {
  EXPECT_FALSE(parse("\xEF\xBB\xBF*PPD-Adobe: \"4.3\"\n"));
  EXPECT_THAT(delegate_.errors, ElementsAre(Pair(3, 1)));
}

TEST_F(ATPPDParserTest, ManyLinesAreReadWhole) {
  std::string bytes;
  TestSupport::Texts expected;
  for (int number = 0; number < 5000; ++number) {
    expected.push_back("*Foo" + std::to_string(number) + ": \"" +
                       std::string(static_cast<std::size_t>(number % 200), 'x') + "\"\n");
    bytes += expected.back();
  }
  EXPECT_TRUE(parse(bytes));
  EXPECT_EQ(delegate_.texts(), expected);
}

namespace {

// What the CUPS file interface writes in its compressed form.
std::string gzipOf(const std::string& text) {
  const TemporaryFile file;
  cups_file_t* out = cupsFileOpen(file.path().c_str(), "w9");
  cupsFileWrite(out, text.data(), text.size());
  cupsFileClose(out);
  return file.bytes();
}

}  // namespace

TEST_F(ATPPDParserTest, GzipIsUnpacked) {
  const std::string packed = gzipOf("*Foo: x\n*Bar: y\r\n" + statement(255) + "\n");
  ASSERT_EQ(packed.substr(0, 2), "\x1F\x8B");
  EXPECT_TRUE(parse(packed));
  EXPECT_THAT(delegate_.texts(), ElementsAre("*Foo: x\n", "*Bar: y\r\n", statement(254), "x\n"));
}

TEST_F(ATPPDParserTest, DamagedGzipGivesTheLinesThatTheReaderMakesOfIt) {
  std::string text;
  TestSupport::Texts all;
  for (int number = 0; number < 2000; ++number) {
    all.push_back("*Foo" + std::to_string(number * 7919 % 10007) + ": x\n");
    text += all.back();
  }
  const std::string packed = gzipOf(text);
  for (const std::size_t size : {packed.size() / 2, packed.size() - 4, std::size_t{12}, std::size_t{3}}) {
    delegate_.lines.clear();
    EXPECT_TRUE(parse(packed.substr(0, size))) << size;
    const TestSupport::Texts read = delegate_.texts();
    ASSERT_LE(read.size(), all.size());
    for (std::size_t index = 0; index + 1 < read.size(); ++index) EXPECT_EQ(read[index], all[index]);
  }
  EXPECT_THAT(delegate_.errors, IsEmpty());
}

namespace {

struct CloseFile {
  void operator()(cups_file_t* file) const { cupsFileClose(file); }
};

}  // namespace

TEST_F(ATPPDParserTest, NewLineFromFileGivesLineAfterLine) {
  const TemporaryFile file("one\r\ntwo");
  const std::unique_ptr<cups_file_t, CloseFile> open(cupsFileOpen(file.path().c_str(), "r"));
  ASSERT_TRUE(open);
  const auto first = parser_.newLineFromFile(open.get());
  const auto second = parser_.newLineFromFile(open.get());
  ASSERT_TRUE(first && second);
  EXPECT_EQ(first->view(), "one\r\n");
  EXPECT_EQ(second->view(), "two");
  EXPECT_FALSE(parser_.newLineFromFile(open.get()));
}

TEST_F(ATPPDParserTest, NewLineFromFileGivesNothingForBytesThatAreNotUTF8) {
  const TemporaryFile file("\xC3\n");
  const std::unique_ptr<cups_file_t, CloseFile> open(cupsFileOpen(file.path().c_str(), "r"));
  ASSERT_TRUE(open);
  EXPECT_FALSE(parser_.newLineFromFile(open.get()));
}
