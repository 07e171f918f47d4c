// SPDX-License-Identifier: MIT
#include "readers/DeviceValue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "base/ATException.h"
#include "tests/readers/FakeDeviceModelLibrary.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr std::uint64_t kAboveSigned = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) + 1;

// One value of every type but string and absent.
std::vector<DeviceValue> valuesThatAreNoText() {
  return {std::int64_t{1}, kAboveSigned, 1.5, true, listOf({"a"}), mapOf({{"a", "b"}})};
}

}  // namespace

TEST(DeviceValue, IsAbsentByDefault) {
  EXPECT_TRUE(DeviceValue().isAbsent());
  EXPECT_TRUE(DeviceValue(std::optional<std::string>()).isAbsent());
}

TEST(DeviceValue, EmptyAndFalseValuesArePresent) {
  EXPECT_FALSE(DeviceValue("").isAbsent());
  EXPECT_FALSE(DeviceValue(false).isAbsent());
  EXPECT_FALSE(DeviceValue(std::int64_t{0}).isAbsent());
  EXPECT_FALSE(listOf({}).isAbsent());
  EXPECT_FALSE(mapOf({}).isAbsent());
}

TEST(DeviceValue, OptionalTextIsThatText) {
  ASSERT_NE(DeviceValue(std::optional<std::string>("a")).text(), nullptr);
  EXPECT_EQ(*DeviceValue(std::optional<std::string>("a")).text(), "a");
}

TEST(DeviceValue, TextListAndMapAreNullForOtherTypes) {
  EXPECT_EQ(DeviceValue("a").list(), nullptr);
  EXPECT_EQ(DeviceValue("a").map(), nullptr);
  EXPECT_EQ(listOf({}).text(), nullptr);
  EXPECT_EQ(listOf({}).map(), nullptr);
  EXPECT_EQ(mapOf({}).list(), nullptr);
  EXPECT_EQ(DeviceValue().text(), nullptr);
  EXPECT_EQ(DeviceValue().list(), nullptr);
  EXPECT_EQ(DeviceValue().map(), nullptr);
}

TEST(DeviceValue, EqualsAStringWithTheSameBytes) {
  EXPECT_TRUE(DeviceValue("a").equals("a"));
  EXPECT_FALSE(DeviceValue("a").equals("A"));
  EXPECT_TRUE(DeviceValue("").equals(""));
  EXPECT_FALSE(DeviceValue("\u00e9").equals("e\u0301"));
}

TEST(DeviceValue, ValueOfAnotherTypeEqualsNoString) {
  EXPECT_FALSE(DeviceValue(std::int64_t{1}).equals("1"));
  EXPECT_FALSE(DeviceValue(true).equals("1"));
  EXPECT_FALSE(DeviceValue(1.5).equals("1.5"));
  EXPECT_FALSE(DeviceValue().equals(""));
  EXPECT_FALSE(DeviceValue().equals("(null)"));
  EXPECT_FALSE(listOf({}).equals("()"));
}

TEST(DeviceValue, TextForGivesTheStringOrAbsent) {
  EXPECT_EQ(DeviceValue("a").textFor("name"), "a");
  EXPECT_EQ(DeviceValue("").textFor("name"), "");
  EXPECT_EQ(DeviceValue().textFor("name"), std::nullopt);
}

TEST(DeviceValue, TextForRefusesEveryOtherTypeAndSaysWhatItWasFor) {
  for (const DeviceValue& value : valuesThatAreNoText()) {
    try {
      value.textFor("media name");
      ADD_FAILURE() << value.description() << " was taken as text";
    } catch (const ATException& exception) {
      EXPECT_EQ(exception.reason(), "value of the wrong type: media name");
    }
  }
}

TEST(DeviceValue, ValueForKeyFindsTheMember) {
  const DeviceValue map = mapOf({{"Name", "a"}, {"name", "b"}, {"", "c"}});
  EXPECT_TRUE(map.valueForKey("Name").equals("a"));
  EXPECT_TRUE(map.valueForKey("name").equals("b"));
  EXPECT_TRUE(map.valueForKey("").equals("c"));
  EXPECT_TRUE(map.valueForKey("NAME").isAbsent());
}

TEST(DeviceValue, AbsentValueHasNoKeys) {
  EXPECT_TRUE(DeviceValue().valueForKey("a").isAbsent());
}

TEST(DeviceValue, AskingAnythingButAMapForAKeyThrows) {
  EXPECT_THROW(DeviceValue("a").valueForKey("a"), ATException);
  EXPECT_THROW(DeviceValue("").valueForKey("a"), ATException);
  EXPECT_THROW(DeviceValue(std::int64_t{1}).valueForKey("a"), ATException);
  EXPECT_THROW(DeviceValue(kAboveSigned).valueForKey("a"), ATException);
  EXPECT_THROW(DeviceValue(1.5).valueForKey("a"), ATException);
  EXPECT_THROW(DeviceValue(false).valueForKey("a"), ATException);
  EXPECT_THROW(listOf({}).valueForKey("a"), ATException);
  try {
    DeviceValue("a").valueForKey("Name");
  } catch (const ATException& exception) {
    EXPECT_EQ(exception.reason(), "value of the wrong type: no map to look \"Name\" up in");
  }
}

TEST(DeviceValue, IntegersPrintInDecimal) {
  EXPECT_EQ(DeviceValue(std::int64_t{0}).description(), "0");
  EXPECT_EQ(DeviceValue(std::numeric_limits<std::int64_t>::min()).description(), "-9223372036854775808");
  EXPECT_EQ(DeviceValue(std::numeric_limits<std::int64_t>::max()).description(), "9223372036854775807");
  EXPECT_EQ(DeviceValue(kAboveSigned).description(), "9223372036854775808");
  EXPECT_EQ(DeviceValue(std::numeric_limits<std::uint64_t>::max()).description(), "18446744073709551615");
}

TEST(DeviceValue, RealNumbersPrintShortAndExact) {
  EXPECT_EQ(DeviceValue(2.5).description(), "2.5");
  EXPECT_EQ(DeviceValue(0.1).description(), "0.1");
  EXPECT_EQ(DeviceValue(-0.25).description(), "-0.25");
}

TEST(DeviceValue, BooleansPrintAsOneAndZero) {
  EXPECT_EQ(DeviceValue(true).description(), "1");
  EXPECT_EQ(DeviceValue(false).description(), "0");
}

TEST(DeviceValue, StringsPrintAsTheyStandAndAbsentAsNull) {
  EXPECT_EQ(DeviceValue(" a\"\n").description(), " a\"\n");
  EXPECT_EQ(DeviceValue("").description(), "");
  EXPECT_EQ(DeviceValue().description(), "(null)");
}

TEST(DeviceValue, ListsAndMapsPrintWithTheirContentInOrder) {
  EXPECT_EQ(listOf({}).description(), "()");
  EXPECT_EQ(listOf({"a", std::int64_t{1}, listOf({true})}).description(), "(a, 1, (1))");
  EXPECT_EQ(mapOf({}).description(), "{}");
  EXPECT_EQ(mapOf({{"b", "c"}, {"a", listOf({"d", "e"})}}).description(), "{b = c; a = (d, e); }");
}

TEST(DeviceValue, ListThatBeginsWithAnEmptyStringShowsAllElements) {
  EXPECT_EQ(listOf({"", "a"}).description(), "(, a)");
}

TEST(DeviceValue, CopiesShareListsAndMaps) {
  const DeviceValue map = mapOf({{"a", "b"}});
  const DeviceValue copy = map;
  copy.map()->set("a", "c");
  EXPECT_TRUE(map.valueForKey("a").equals("c"));

  const DeviceValue list = listOf({"a"});
  const DeviceValue other = list;
  other.list()->push_back("b");
  EXPECT_EQ(list.list()->size(), 2U);
}

TEST(DeviceValue, CopiesDoNotShareStrings) {
  DeviceValue value = "a";
  const DeviceValue copy = value;
  value = "b";
  EXPECT_TRUE(copy.equals("a"));
}

TEST(DeviceMap, KeepsTheOrderOfInsertion) {
  EXPECT_THAT(keysOf(mapOf({{"b", "1"}, {"a", "2"}, {"c", "3"}})), ElementsAre("b", "a", "c"));
}

TEST(DeviceMap, AddPutsAKeyAtTheEnd) {
  DeviceMap map;
  map.add("b", "1");
  map.add("a", "2");
  EXPECT_EQ(map.size(), 2U);
  EXPECT_EQ(map.entries()[1].first, "a");
  EXPECT_TRUE(map.get("a").equals("2"));
}

TEST(DeviceMap, SetReplacesInPlace) {
  const DeviceValue value = mapOf({{"a", "1"}, {"b", "2"}});
  value.map()->set("a", "3");
  EXPECT_THAT(keysOf(value), ElementsAre("a", "b"));
  EXPECT_TRUE(value.valueForKey("a").equals("3"));
}

TEST(DeviceMap, SetToAbsentTakesTheKeyOut) {
  const DeviceValue value = mapOf({{"a", "1"}, {"b", "2"}});
  value.map()->set("a", {});
  value.map()->set("c", {});
  EXPECT_THAT(keysOf(value), ElementsAre("b"));
}

TEST(DeviceMap, GetOfAnUnknownKeyIsAbsent) {
  EXPECT_TRUE(DeviceMap().get("a").isAbsent());
}

TEST(DeviceValue, OfAnotherKindIsCarriedAlong) {
  const DeviceValue date = DeviceValue::ofOtherKind("2026-01-02");
  EXPECT_FALSE(date.isAbsent());
  EXPECT_EQ(date.description(), "2026-01-02");
  EXPECT_FALSE(date.equals("2026-01-02"));
  EXPECT_EQ(date.text(), nullptr);
  EXPECT_EQ(date.list(), nullptr);
  EXPECT_EQ(date.map(), nullptr);
  EXPECT_THROW(date.textFor("a test"), ATException);
  EXPECT_THROW(date.valueForKey("a key"), ATException);
}

TEST(DeviceMap, AKeyThatIsNoTextKeepsItsPlaceAndIsNotFound) {
  DeviceMap map;
  map.add("first", "1");
  map.addOtherKey("Name", "2");
  map.add("Name", "3");
  EXPECT_EQ(DeviceValue(std::make_shared<DeviceMap>(map)).description(), "{first = 1; Name = 2; Name = 3; }");
  EXPECT_EQ(map.get("Name").description(), "3");
  map.set("first", DeviceValue());
  EXPECT_TRUE(map.isOtherKey(0));
  EXPECT_EQ(map.get("Name").description(), "3");
  map.set("Name", "4");
  EXPECT_EQ(map.entries()[0].second.description(), "2");
  EXPECT_EQ(map.entries()[1].second.description(), "4");
  map.set("Name", DeviceValue());
  EXPECT_TRUE(map.isOtherKey(0));
  EXPECT_EQ(map.size(), 1U);
}
