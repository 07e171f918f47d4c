// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "library/Snapshot.h"

using snapshot::Error;
using snapshot::parseJSON;
using snapshot::Value;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace {

template <class Type>
Type parsed(std::string_view text) {
  const Value value = parseJSON(text);
  const Type* content = std::get_if<Type>(&value.value);
  if (content == nullptr) {
    ADD_FAILURE() << text << " is of another type";
    return {};
  }
  return *content;
}

std::vector<std::string> keysOf(const Value& value) {
  std::vector<std::string> keys;
  for (const auto& [key, member] : *value.object()) keys.push_back(key);
  return keys;
}

std::int64_t integerMember(const Value& value, std::string_view name) {
  const Value* member = value.member(name);
  const auto* number = member == nullptr ? nullptr : std::get_if<std::int64_t>(&member->value);
  return number == nullptr ? -1 : *number;
}

std::string errorOf(std::string_view text) {
  try {
    parseJSON(text);
  } catch (const Error& error) {
    return error.what();
  }
  ADD_FAILURE() << text << " was accepted";
  return {};
}

void expectErrorsWithTheLine(const std::vector<std::string>& texts) {
  for (const std::string& text : texts) {
    SCOPED_TRACE(testing::PrintToString(text));
    EXPECT_THAT(errorOf(text), HasSubstr("line 1: "));
    EXPECT_THAT(errorOf("\n" + text), HasSubstr("line 2: "));
    EXPECT_THAT(errorOf("\n\n" + text), HasSubstr("line 3: "));
  }
}

std::string nested(std::size_t levels, const std::string& open, const std::string& close, const std::string& inside) {
  std::string text;
  for (std::size_t level = 0; level < levels; ++level) text += open;
  text += inside;
  for (std::size_t level = 0; level < levels; ++level) text += close;
  return text;
}

}  // namespace

TEST(SnapshotJSON, StringsBooleansListsAndObjects) {
  EXPECT_EQ(parsed<std::string>("\"a b\""), "a b");
  EXPECT_EQ(parsed<std::string>("\"\""), "");
  EXPECT_TRUE(parsed<bool>("true"));
  EXPECT_FALSE(parsed<bool>("false"));
  EXPECT_THAT(parsed<Value::Array>("[]"), IsEmpty());
  EXPECT_THAT(parsed<Value::Array>("[1, \"a\", [2]]"), SizeIs(3));
  EXPECT_THAT(parsed<Value::Object>("{}"), IsEmpty());
}

TEST(SnapshotJSON, WhiteSpaceAroundTokensIsSkipped) {
  EXPECT_THAT(parsed<Value::Array>(" \t\r\n[ 1 , 2 ]\n"), SizeIs(2));
}

TEST(SnapshotJSON, IntegersUpToTheSignedLimitsAreSigned) {
  EXPECT_EQ(parsed<std::int64_t>("0"), 0);
  EXPECT_EQ(parsed<std::int64_t>("-0"), 0);
  EXPECT_EQ(parsed<std::int64_t>("17"), 17);
  EXPECT_EQ(parsed<std::int64_t>("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(parsed<std::int64_t>("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
}

TEST(SnapshotJSON, IntegersAboveTheSignedLimitAreUnsigned) {
  EXPECT_EQ(parsed<std::uint64_t>("9223372036854775808"), 9223372036854775808U);
  EXPECT_EQ(parsed<std::uint64_t>("18446744073709551615"), std::numeric_limits<std::uint64_t>::max());
}

TEST(SnapshotJSON, IntegersThatFitNoIntegerAreReal) {
  EXPECT_DOUBLE_EQ(parsed<double>("18446744073709551616"), 18446744073709551616.0);
  EXPECT_DOUBLE_EQ(parsed<double>("-9223372036854775809"), -9223372036854775809.0);
}

TEST(SnapshotJSON, FractionsAndExponentsAreReal) {
  EXPECT_DOUBLE_EQ(parsed<double>("2.5"), 2.5);
  EXPECT_DOUBLE_EQ(parsed<double>("1.0"), 1.0);
  EXPECT_DOUBLE_EQ(parsed<double>("1e2"), 100.0);
  EXPECT_DOUBLE_EQ(parsed<double>("-1.5E-2"), -0.015);
}

TEST(SnapshotJSON, EscapesAreDecoded) {
  EXPECT_EQ(parsed<std::string>(R"("\"\\\/\b\f\n\r\t")"), "\"\\/\b\f\n\r\t");
  EXPECT_EQ(parsed<std::string>(R"("\u00e9")"), "\u00e9");
  EXPECT_EQ(parsed<std::string>(R"("\uD83D\uDE00")"), "\U0001F600");
  EXPECT_EQ(parsed<std::string>(R"("a\u0000b")"), std::string("a\0b", 3));
}

TEST(SnapshotJSON, CharactersStandAsTheyAre) {
  EXPECT_EQ(parsed<std::string>("\"\u00e9\u2028\U0001F600\U0010FFFF\""), "\u00e9\u2028\U0001F600\U0010FFFF");
}

TEST(SnapshotJSON, ObjectsKeepTheOrderOfTheText) {
  EXPECT_THAT(keysOf(parseJSON(R"({"b": 1, "a": 2, "": 3, "c": 4})")), ElementsAre("b", "a", "", "c"));
}

TEST(SnapshotJSON, LastValueOfARepeatedKeyCountsAtTheFirstOnesPlace) {
  const Value value = parseJSON(R"({"a": 1, "b": 2, "a": 3, "c": 4, "a": 5})");
  EXPECT_THAT(keysOf(value), ElementsAre("a", "b", "c"));
  EXPECT_EQ(integerMember(value, "a"), 5);
}

TEST(SnapshotJSON, KeysThatAreEscapedDifferentlyAreTheSame) {
  const Value value = parseJSON(R"({"a": 1, "\u0061": 2})");
  EXPECT_THAT(keysOf(value), ElementsAre("a"));
  EXPECT_EQ(integerMember(value, "a"), 2);
}

TEST(SnapshotJSON, RepeatedKeysOfDifferentObjectsAreIndependent) {
  const Value value = parseJSON(R"({"a": {"a": 1, "b": {"a": 2}}, "b": 3})");
  EXPECT_THAT(keysOf(value), ElementsAre("a", "b"));
  EXPECT_EQ(integerMember(*value.member("a"), "a"), 1);
  EXPECT_EQ(integerMember(*value.member("a")->member("b"), "a"), 2);
}

TEST(SnapshotJSON, NullMembersAreLeftOut) {
  EXPECT_THAT(keysOf(parseJSON(R"({"a": null, "b": 1, "c": null})")), ElementsAre("b"));
}

TEST(SnapshotJSON, NullAsTheLastValueOfARepeatedKeyTakesItOut) {
  EXPECT_THAT(keysOf(parseJSON(R"({"a": 1, "b": 2, "a": null})")), ElementsAre("b"));
}

TEST(SnapshotJSON, ValueAfterANullOfTheSameKeyTakesTheNullsPlace) {
  const Value value = parseJSON(R"({"a": null, "b": 2, "a": 3})");
  EXPECT_THAT(keysOf(value), ElementsAre("a", "b"));
  EXPECT_EQ(integerMember(value, "a"), 3);
}

TEST(SnapshotJSON, RepeatedKeysOfManyMembersKeepTheirPlaces) {
  const Value value = parseJSON(
      R"({"c": 0, "a": 1, "b": null, "a": 2, "d": null, "c": null, "b": 3, "c": 4, "a": null, "e": 5, "e": [6, 7]})");
  EXPECT_THAT(keysOf(value), ElementsAre("c", "b", "e"));
  EXPECT_EQ(integerMember(value, "c"), 4);
  EXPECT_EQ(integerMember(value, "b"), 3);
  EXPECT_THAT(*value.member("e")->array(), SizeIs(2));
}

TEST(SnapshotJSON, NullElementsAreLeftOut) {
  EXPECT_THAT(parsed<Value::Array>("[null, 1, null, 2]"), SizeIs(2));
}

TEST(SnapshotJSON, MemberOfWhatIsNoObjectIsNull) {
  EXPECT_EQ(parseJSON("[1]").member("a"), nullptr);
  EXPECT_EQ(parseJSON("\"a\"").member("a"), nullptr);
  EXPECT_EQ(parseJSON("{}").member("a"), nullptr);
}

TEST(SnapshotJSON, SixtyFourLevelsAreRead) {
  EXPECT_THAT(parsed<Value::Array>(nested(64, "[", "]", "1")), SizeIs(1));
  EXPECT_THAT(parsed<Value::Object>(nested(64, "{\"a\":", "}", "1")), SizeIs(1));
  EXPECT_THAT(parsed<Value::Array>(nested(32, "[{\"a\":", "}]", "1")), SizeIs(1));
}

TEST(SnapshotJSON, SixtyFiveLevelsAreAnError) {
  EXPECT_THAT(errorOf(nested(65, "[", "]", "")), HasSubstr("64 levels"));
  EXPECT_THAT(errorOf(nested(65, "{\"a\":", "}", "1")), HasSubstr("64 levels"));
  EXPECT_THAT(errorOf("[" + nested(32, "{\"a\":[", "]}", "1") + "]"), HasSubstr("64 levels"));
}

TEST(SnapshotJSON, TheLineOfDeepNestingIsTold) {
  const std::string deep = nested(64, "[\n", "]", "\"[\\\"\", {\"]\": 1}");
  EXPECT_THAT(errorOf(deep), HasSubstr("line 65: nested deeper than 64 levels"));
  EXPECT_THAT(errorOf("[{}, [1],\n" + deep + "]"), HasSubstr("line 65: nested deeper than 64 levels"));
}

TEST(SnapshotJSON, AnErrorInsideDeepNestingIsNotItsDepth) {
  EXPECT_THAT(errorOf(nested(64, "[", "]", "nul")), Not(HasSubstr("64 levels")));
}

TEST(SnapshotJSON, EndlessNestingIsAnError) {
  EXPECT_THAT(errorOf(std::string(1000000, '[')), HasSubstr("64 levels"));
}

TEST(SnapshotJSON, BracketsInStringsAreNoNesting) {
  const std::string brackets(70, '[');
  EXPECT_EQ(parsed<std::string>('"' + brackets + '"'), brackets);
  EXPECT_THAT(parsed<Value::Object>("{\"" + std::string(70, '{') + "\": \"\\\"" + brackets + "\"}"), SizeIs(1));
}

TEST(SnapshotJSON, ListsSideBySideAreNotNested) {
  std::string text = "[[]";
  for (int count = 0; count < 100; ++count) text += ",[{}]";
  EXPECT_THAT(parsed<Value::Array>(text + "]"), SizeIs(101));
}

TEST(SnapshotJSON, ManyKeysAreReadInOneGo) {
  std::string text = "{\"first\": 0";
  for (int count = 0; count < 20000; ++count) text += ",\"" + std::to_string(count) + "\": 1";
  EXPECT_THAT(parsed<Value::Object>(text + "}"), SizeIs(20001));
}

TEST(SnapshotJSON, MalformedStructureIsAnErrorWithTheLine) {
  expectErrorsWithTheLine({"",         " ",        "nul",          "nulL",       "True",
                           "[1,]",     "[,1]",     "[1 2]",        "[1",         "]",
                           "{",        "}",        R"({"a": 1,})", R"({"a" 1})", R"({"a": 1 "b": 2})",
                           R"({"a"})", "{a: 1}",   "{1: 1}",       "{'a': 1}",   "{} x",
                           "{}{}",     "[1]]",     "/* c */ 1",    "1 // c",     "\f1",
                           "\u00a01",  "undefined"});
}

TEST(SnapshotJSON, MalformedNumberIsAnErrorWithTheLine) {
  expectErrorsWithTheLine(
      {"01", "-01", "+1", "1.", ".5", "-", "1e", "1e+", "0x1", "NaN", "Infinity", "1e999", "-1e999", "1,5"});
}

TEST(SnapshotJSON, MalformedStringIsAnErrorWithTheLine) {
  expectErrorsWithTheLine({"\"a", "\"a\\\"", R"("\x")", R"("\u12G4")", R"("\u12")", "\"a\tb\"", "\"\x01\"", "'a'"});
}

TEST(SnapshotJSON, LoneSurrogateIsAnErrorWithTheLine) {
  expectErrorsWithTheLine({R"("\uD83D")", R"("\uDE00")", R"("\uD83Dx")", R"("\uD83D\u0041")", R"("\uDE00\uD83D")",
                           R"("\uD83D\uD83D")", R"({"\uD83D": 1})"});
}

TEST(SnapshotJSON, TextThatIsNotUTF8IsAnErrorWithTheLine) {
  expectErrorsWithTheLine({"\"\xFF\"", "\"a\x80\"", "\"\xC0\xAF\"", "\"\xED\xA0\x80\"", "\"\xF4\x90\x80\x80\"",
                           "\"\xE2\x82\"", "\xFF", "{\"\xFF\": 1}"});
}

TEST(SnapshotJSON, ErrorQuotesNoByteThatIsNotUTF8) {
  EXPECT_THAT(errorOf("\"canv\xE4s\""), AllOf(HasSubstr("canv?"), Not(HasSubstr("\xE4"))));
  EXPECT_THAT(errorOf("\"canv\x80s\""), AllOf(HasSubstr("canv?"), Not(HasSubstr("\x80"))));
}

TEST(SnapshotJSON, ZeroByteIsAnErrorWithTheLine) {
  expectErrorsWithTheLine({std::string("\0", 1), std::string("\"a\0b\"", 5), std::string("[1,\0 2]", 7),
                           std::string("{}\0", 3), std::string("{}\0 x", 5)});
}

TEST(SnapshotJSON, TooDeepNestingIsAnErrorWithTheLine) {
  expectErrorsWithTheLine({nested(65, "[", "]", "")});
}

TEST(SnapshotJSON, NullAloneIsAnError) {
  EXPECT_EQ(errorOf("null"), "line 1: a value is expected");
  EXPECT_EQ(errorOf("\nnull"), "line 1: a value is expected");
}

TEST(SnapshotJSON, ErrorSaysWhatTheParserWouldNotNotice) {
  EXPECT_EQ(errorOf(std::string("{\n\0", 3)), "line 2: a zero byte");
  EXPECT_EQ(errorOf(nested(65, "[", "]", "")), "line 1: nested deeper than 64 levels");
}

TEST(SnapshotJSON, ErrorNamesTheLineOfTheMistake) {
  EXPECT_THAT(errorOf("{\n\"a\": 1,\n\"b\": oops,\n\"c\": 2\n}"), HasSubstr("line 3: "));
  EXPECT_THAT(errorOf("{\n\"a\": 01\n}\n"), HasSubstr("line 2: "));
}

TEST(SnapshotJSON, ErrorNamesTheLineThatAnOpenStringStandsOn) {
  EXPECT_THAT(errorOf("{\n\"a\": \"open\n}\n"), HasSubstr("line 2: "));
}

TEST(SnapshotJSON, OneValueMoreThanTheLimitIsAnError) {
  EXPECT_EQ(snapshot::parseJSON(R"([1, [], {"a": null}])", 5).array()->size(), 3U);
  try {
    snapshot::parseJSON(R"([1, [], {"a": null}])", 4);
    FAIL() << "accepted";
  } catch (const Error& error) {
    EXPECT_STREQ(error.what(), "more than 4 values");
  }
}
