// SPDX-License-Identifier: MIT
#include "explain/show/JSONWriter.h"

#include <gtest/gtest.h>

#include "library/Snapshot.h"

TEST(JSONWriter, WritesMembersOfEveryKind) {
  JSONWriter json;
  json.beginObject();
  json.member("text", "a");
  json.member("string", std::string("b"));
  json.member("absent", std::optional<std::string>());
  json.member("there", std::optional<std::string>("c"));
  json.member("null", std::nullopt);
  json.member("yes", true);
  json.member("no", false);
  json.member("number", std::size_t{12});
  json.member("negative", -3);
  json.endObject();
  EXPECT_EQ(json.take(),
            "{\n \"text\": \"a\",\n \"string\": \"b\",\n \"absent\": null,\n \"there\": \"c\",\n \"null\": null,\n"
            " \"yes\": true,\n \"no\": false,\n \"number\": 12,\n \"negative\": -3\n}\n");
}

TEST(JSONWriter, IndentsWhatIsNestedAndLeavesEmptyOnesInALine) {
  JSONWriter json;
  json.beginObject();
  json.beginList("list");
  json.value("a");
  json.beginObject();
  json.endObject();
  json.beginList();
  json.endList();
  json.endList();
  json.beginObject("object");
  json.member("b", 1);
  json.endObject();
  json.endObject();
  EXPECT_EQ(json.take(), "{\n \"list\": [\n  \"a\",\n  {},\n  []\n ],\n \"object\": {\n  \"b\": 1\n }\n}\n");
}

TEST(JSONWriter, EscapesWhatIsNoPrintableASCII) {
  JSONWriter json;
  json.beginList();
  json.value("\"\\/\n\t\x7f\u00E9\uFFFD\U0001F5A8 <&>");
  json.endList();
  EXPECT_EQ(json.take(), "[\n \"\\\"\\\\/\\n\\u0009\\u007f\\u00e9\\ufffd\\ud83d\\udda8 <&>\"\n]\n");
}

TEST(JSONWriter, BytesThatAreNoTextAreMadeVisible) {
  JSONWriter json;
  json.beginObject();
  json.member("\xE9", std::string("a\xE9\n\"\0", 5));
  json.endObject();
  const std::string text = json.take();
  const auto value = snapshot::parseJSON(text);
  ASSERT_NE(value.object(), nullptr);
  EXPECT_EQ(*value.object()->at(0).value.string(), "a\\xe9\\n\"\\x00");
}
