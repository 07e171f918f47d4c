// SPDX-License-Identifier: MIT
#include "ppd/lines/PPDExtentions.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

#include "tests/ppd/TestSupport.h"

using namespace PPDExtentions;  // NOLINT(google-build-using-namespace): the operations are this file's subject

TEST(PPDExtentions, AsteriskPrefixIsExact) {
  EXPECT_TRUE(hasAsteriskPrefix("*Foo"));
  EXPECT_TRUE(hasAsteriskPrefix("*"));
  EXPECT_FALSE(hasAsteriskPrefix(" *Foo"));
  EXPECT_FALSE(hasAsteriskPrefix("Foo*"));
  EXPECT_FALSE(hasAsteriskPrefix(""));
}

TEST(PPDExtentions, CommentBeginsWithAsteriskAndPercent) {
  EXPECT_TRUE(isPPDComment("*% a comment\n"));
  EXPECT_TRUE(isPPDComment("*%"));
  EXPECT_FALSE(isPPDComment(" *% a comment"));
  EXPECT_FALSE(isPPDComment("* % a comment"));
  EXPECT_FALSE(isPPDComment("%"));
}

TEST(PPDExtentions, NewLineHoldsLineEndsOnly) {
  for (const char* line : {"", "\n", "\r", "\r\n", "\v", "\f", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9", "\n\n\r"}) {
    EXPECT_TRUE(isNewLine(line)) << testing::PrintToString(line);
  }
  for (const char* line : {" ", "   \n", "\t\r\n", "\n \n", "x\n", "\n\xC2\xA0"}) {
    EXPECT_FALSE(isNewLine(line)) << testing::PrintToString(line);
  }
}

TEST(PPDExtentions, NamedStatementIsATokenScanWithAColon) {
  EXPECT_TRUE(isPPDStatementsNamed("*Foo: x", "Foo"));
  EXPECT_TRUE(isPPDStatementsNamed("*foo:", "FOO"));
  EXPECT_TRUE(isPPDStatementsNamed(" * Foo\t: x", "Foo"));
  EXPECT_TRUE(isPPDStatementsNamed("*Foo\n:", "Foo"));
  EXPECT_FALSE(isPPDStatementsNamed("*Foo", "Foo"));
  EXPECT_FALSE(isPPDStatementsNamed("*Foo Bar: x", "Foo"));
  EXPECT_FALSE(isPPDStatementsNamed("*Fooo: x", "Foo"));
  EXPECT_FALSE(isPPDStatementsNamed("Foo: x", "Foo"));
  EXPECT_FALSE(isPPDStatementsNamed("x*Foo: x", "Foo"));
}

TEST(PPDExtentions, NamedLinePredicatesNeedTheirKeywordAndAColon) {
  EXPECT_TRUE(isOpenGroupPPDStatement("*OpenGroup: General\n"));
  EXPECT_TRUE(isOpenGroupPPDStatement(" *OPENGROUP : General\n"));
  EXPECT_FALSE(isOpenGroupPPDStatement("*OpenGroup General\n"));
  EXPECT_FALSE(isOpenGroupPPDStatement("*OpenSubGroup: General\n"));

  EXPECT_TRUE(isCloseGroupPPDStatement("*CloseGroup: General\n"));
  EXPECT_TRUE(isCloseGroupPPDStatement("\t*closegroup:"));
  EXPECT_FALSE(isCloseGroupPPDStatement("*CloseGroup\n"));
  EXPECT_FALSE(isCloseGroupPPDStatement("*OpenGroup: General\n"));

  EXPECT_TRUE(isCloseUIPPDStatement("*CloseUI: *PageSize\n"));
  EXPECT_TRUE(isCloseUIPPDStatement(" *closeUI :"));
  EXPECT_FALSE(isCloseUIPPDStatement("*CloseUI *PageSize\n"));
  EXPECT_FALSE(isCloseUIPPDStatement("*JCLCloseUI: *PageSize\n"));

  EXPECT_TRUE(isOrderDependencyPPDStatement("*OrderDependency: 10 AnySetup *PageSize\n"));
  EXPECT_TRUE(isOrderDependencyPPDStatement("*orderdependency:"));
  EXPECT_FALSE(isOrderDependencyPPDStatement("*OrderDependency 10\n"));
  EXPECT_FALSE(isOrderDependencyPPDStatement("*NonUIOrderDependency: 10\n"));
}

TEST(PPDExtentions, OpenUINeedsNoColon) {
  EXPECT_TRUE(isOpenUIPPDStatement("*OpenUI *PageSize/Size: PickOne\n"));
  EXPECT_TRUE(isOpenUIPPDStatement("*OpenUI"));
  EXPECT_TRUE(isOpenUIPPDStatement("*OpenUIExtra: x"));
  EXPECT_TRUE(isOpenUIPPDStatement(" * openui *PageSize"));
  EXPECT_FALSE(isOpenUIPPDStatement("*JCLOpenUI *PageSize: PickOne\n"));
  EXPECT_FALSE(isOpenUIPPDStatement("OpenUI *PageSize"));
}

TEST(PPDExtentions, DefaultChoiceIsAPrefix) {
  EXPECT_TRUE(isDefaultChoicePPDStatement("*DefaultPageSize: A4\n"));
  EXPECT_TRUE(isDefaultChoicePPDStatement("*Default"));
  EXPECT_FALSE(isDefaultChoicePPDStatement("*defaultPageSize: A4\n"));
  EXPECT_FALSE(isDefaultChoicePPDStatement(" *DefaultPageSize: A4\n"));
  EXPECT_FALSE(isDefaultChoicePPDStatement("* DefaultPageSize: A4\n"));
}

TEST(PPDExtentions, EndStatementIsAPrefix) {
  EXPECT_TRUE(isEndStatementPPDStatement("*End\n"));
  EXPECT_TRUE(isEndStatementPPDStatement("*EndOfFile: x\n"));
  EXPECT_FALSE(isEndStatementPPDStatement("*end\n"));
  EXPECT_FALSE(isEndStatementPPDStatement(" *End\n"));
}

TEST(PPDExtentions, StatementIsClosedWithoutAQuoteOrWithTwo) {
  EXPECT_TRUE(isPPDStatementClosed("*Foo: Bar\n"));
  EXPECT_TRUE(isPPDStatementClosed("*Foo:"));
  EXPECT_TRUE(isPPDStatementClosed("*Foo: \"a\"\n"));
  EXPECT_TRUE(isPPDStatementClosed("*Foo: \"\"\n"));
  EXPECT_TRUE(isPPDStatementClosed("*Foo: \"a\" \"b\n"));
  EXPECT_FALSE(isPPDStatementClosed("*Foo: \"a\n"));
  EXPECT_FALSE(isPPDStatementClosed("*Foo: \""));
}

TEST(PPDExtentions, StatementWithoutAColonIsNotClosed) {
  EXPECT_FALSE(isPPDStatementClosed("*Foo\n"));
  EXPECT_FALSE(isPPDStatementClosed("*Foo \"a\"\n"));
  EXPECT_FALSE(isPPDStatementClosed(""));
}

TEST(PPDExtentions, QuotesBeforeTheColonDoNotCount) {
  EXPECT_FALSE(isPPDStatementClosed("*Foo \"a\": \"b\n"));
  EXPECT_TRUE(isPPDStatementClosed("*Foo \"a: b\n"));
}

TEST(PPDExtentions, LineIsTerminatedByAQuoteWhateverBlanksFollow) {
  EXPECT_TRUE(isPPDLineTerminatedByDoubleQuoteCharacter("abc\"\n"));
  EXPECT_TRUE(isPPDLineTerminatedByDoubleQuoteCharacter("\" \t\r\n"));
  EXPECT_TRUE(isPPDLineTerminatedByDoubleQuoteCharacter("abc\"\xC2\xA0"));
  EXPECT_FALSE(isPPDLineTerminatedByDoubleQuoteCharacter("\"abc\n"));
  EXPECT_FALSE(isPPDLineTerminatedByDoubleQuoteCharacter("abc\"x\n"));
  EXPECT_FALSE(isPPDLineTerminatedByDoubleQuoteCharacter(" \n"));
  EXPECT_FALSE(isPPDLineTerminatedByDoubleQuoteCharacter(""));
}

TEST(PPDExtentions, EmptyQuotedValueIsTwoQuotes) {
  EXPECT_EQ(emptyQuotedValue(), "\"\"");
}

TEST(PPDExtentions, QuotedValueContentReachesFromTheFirstToTheLastQuote) {
  EXPECT_EQ(quotedValueContent("\"abc\""), "abc");
  EXPECT_EQ(quotedValueContent("\"one\" \"two\""), "one\" \"two");
  EXPECT_EQ(quotedValueContent("before \" a\r\nb \" after"), " a\r\nb ");
  EXPECT_EQ(quotedValueContent("\"a\"b\"c\""), "a\"b\"c");
}

TEST(PPDExtentions, QuotedValueContentOfTwoAdjacentQuotesIsEmpty) {
  EXPECT_EQ(quotedValueContent("\"\""), "");
}

TEST(PPDExtentions, QuotedValueContentNeedsTwoQuotes) {
  EXPECT_EQ(quotedValueContent("abc"), std::nullopt);
  EXPECT_EQ(quotedValueContent("\"abc"), std::nullopt);
  EXPECT_EQ(quotedValueContent("\""), std::nullopt);
  EXPECT_EQ(quotedValueContent(""), std::nullopt);
}

namespace {

std::string copies(std::size_t count, std::string_view text) {
  std::string all;
  for (; count > 0; --count) all += text;
  return all;
}

void expectLimit(bool (*rule)(std::string_view), std::size_t limit) {
  EXPECT_FALSE(rule(""));
  EXPECT_TRUE(rule("x"));
  EXPECT_TRUE(rule(copies(limit, "x")));
  EXPECT_FALSE(rule(copies(limit + 1, "x")));
  EXPECT_TRUE(rule(copies(limit - 1, "x") + "\n"));
  EXPECT_FALSE(rule(copies(limit, "x") + "\n"));
  EXPECT_TRUE(rule(copies(limit / 2, "\xC3\xA9")));
  EXPECT_FALSE(rule(copies(limit / 2 + 1, "\xC3\xA9")));
}

}  // namespace

TEST(PPDExtentions, LineLengthIsOneTo255Bytes) {
  expectLimit(isValidPPDLineLength, 255);
  EXPECT_FALSE(isValidPPDLineLength(copies(128, "\xC3\xA9")));
}

TEST(PPDExtentions, TextLengthIsOneTo80Bytes) {
  expectLimit(isValidPPDTextLength, 80);
}

TEST(PPDExtentions, NameLengthIsOneTo40Bytes) {
  expectLimit(isValidPPDNameLength, 40);
}

TEST(PPDExtentions, KeywordTakesPrintableASCIIWithoutSlashAndColon) {
  for (int byte = 0; byte < 128; ++byte) {
    const std::string text = std::string("a") + static_cast<char>(byte);
    EXPECT_EQ(isValidPPDKeyword(text), byte >= 33 && byte <= 126 && byte != '/' && byte != ':') << byte;
  }
  EXPECT_TRUE(isValidPPDKeyword("*RGB.Plain"));
  EXPECT_FALSE(isValidPPDKeyword("Plain Paper"));
  EXPECT_FALSE(isValidPPDKeyword("\xC3\xA9"));
}

TEST(PPDExtentions, EmptyKeywordAndEmptyTextAreValid) {
  const TestLog log;
  EXPECT_TRUE(isValidPPDKeyword(""));
  EXPECT_TRUE(isValidPPDText(""));
  log.expect("");
}

TEST(PPDExtentions, KeywordIsCheckedWithoutAMessage) {
  const TestLog log;
  EXPECT_FALSE(isValidPPDKeyword("a b"));
  log.expect("");
}

TEST(PPDExtentions, TextTakesSpaceToTheLastLatin1CharacterWithoutFourOfThem) {
  for (int character = 0; character <= 0x7F; ++character) {
    const std::string text(1, static_cast<char>(character));
    const bool valid = character >= 32 && text.find_first_of("\":<>") == std::string::npos;
    EXPECT_EQ(isValidPPDText(text), valid) << character;
  }
  EXPECT_TRUE(isValidPPDText("\xC2\x80"));             // U+0080
  EXPECT_TRUE(isValidPPDText("Papier glac\xC3\xA9"));  // U+00E9
  EXPECT_TRUE(isValidPPDText("\xC3\xBF"));             // U+00FF
  EXPECT_FALSE(isValidPPDText("\xC4\x80"));            // U+0100
  EXPECT_FALSE(isValidPPDText("\xE2\x82\xAC"));        // Euro sign
  EXPECT_FALSE(isValidPPDText("a\tb"));
  EXPECT_FALSE(isValidPPDText("a:b"));
  EXPECT_FALSE(isValidPPDText("a\n"));
  EXPECT_TRUE(isValidPPDText("a/b;c,d"));
}

TEST(PPDExtentions, EveryBadUnitOfATextIsLogged) {
  const std::string message = "-[PPDExtentions isValidPPDText]: The text: \"a:b<c>\" is not valid PPD text.\n";
  const TestLog log;
  EXPECT_FALSE(isValidPPDText("a:b<c>"));
  log.expect(message + message + message);
}

TEST(PPDExtentions, BothHalvesOfASurrogatePairAreLogged) {
  const std::string message =
      "-[PPDExtentions isValidPPDText]: The text: \"\xF0\x9F\x98\x80\" is not valid PPD text.\n";
  const TestLog log;
  EXPECT_FALSE(isValidPPDText("\xF0\x9F\x98\x80"));
  log.expect(message + message);
}
