// SPDX-License-Identifier: MIT
#include "capture/MediaTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "library/Snapshot.h"

using snapshot::Snapshot;
using snapshot::Value;
using testing::HasSubstr;

namespace {

// The media of the snapshot that is made of the table, as the stored library reads it.
Value mediaOf(const std::string& table) {
  const Snapshot made = Snapshot::fromJSON(MediaTable::snapshotOf(table, "socket://a", "\"Z9\"").json);
  const Value store{*made.deviceFor("socket://a", "\"Z9\"")->dataStore};
  return *store.member("VMCustomMediaStorage")->member("MediaInfo");
}

std::string textOf(const Value& object, const char* key) {
  const Value* member = object.member(key);
  return member == nullptr ? "absent" : *member->string();
}

std::string errorOf(const std::string& table) {
  try {
    MediaTable::snapshotOf(table, "socket://a", std::nullopt);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "no error";
}

}  // namespace

TEST(MediaTable, MakesAMediumOfARow) {
  const Value media = mediaOf(
      "MediumID,Name,CategoryName,CategoryID,ParentID,DefaultGlossEnhancer\n"
      "4711,My Canvas,Roll,QZ_EXTENDED_MEDIA,12,FULLPAGE\n");
  const Value& medium = *media.member("4711");
  EXPECT_EQ(textOf(medium, "Name"), "My Canvas");
  EXPECT_EQ(textOf(medium, "MediumID"), "4711");
  EXPECT_EQ(textOf(medium, "CategoryName"), "Roll");
  EXPECT_EQ(textOf(medium, "CategoryID"), "QZ_EXTENDED_MEDIA");
  EXPECT_EQ(textOf(medium, "ParentID"), "12");
  EXPECT_EQ(textOf(*medium.member("PropertiesInfo"), "DefaultGlossEnhancer"), "FULLPAGE");
  EXPECT_TRUE(medium.member("ICCProfiles")->array()->empty());
}

TEST(MediaTable, FillsInTheCategoryOfACustomMedium) {
  const Value media = mediaOf("Name,MediumID,CategoryName\nA,1\nB,2,\n");
  for (const char* id : {"1", "2"}) {
    EXPECT_EQ(textOf(*media.member(id), "CategoryName"), "Custom");
    EXPECT_EQ(textOf(*media.member(id), "CategoryID"), "CUSTOM");
    EXPECT_EQ(textOf(*media.member(id), "ParentID"), "absent");
    EXPECT_EQ(media.member(id)->member("PropertiesInfo"), nullptr);
  }
}

TEST(MediaTable, AddsAProfileForEachRowOfAMedium) {
  const Value media = mediaOf(
      "Name,MediumID,ICCName,URL,GlossEnhancer,OutputMode\nA,1,One,/1.icc,OFF,Best\n,1,Two,/2.icc,,\nA,1,,,,\n");
  const auto& profiles = *media.member("1")->member("ICCProfiles")->array();
  ASSERT_EQ(profiles.size(), 2U);
  EXPECT_EQ(textOf(profiles[0], "ICCName"), "One");
  EXPECT_EQ(textOf(profiles[0], "URL"), "/1.icc");
  EXPECT_EQ(textOf(profiles[0], "GlossEnhancer"), "OFF");
  EXPECT_EQ(textOf(profiles[0], "OutputMode"), "Best");
  EXPECT_EQ(textOf(profiles[1], "URL"), "/2.icc");
  EXPECT_EQ(textOf(profiles[1], "OutputMode"), "absent");
}

TEST(MediaTable, KeepsTheOrderOfTheRows) {
  const Value media = mediaOf("Name,MediumID\nB,2\nA,1\nC,3\n");
  EXPECT_EQ((*media.object())[0].key, "2");
  EXPECT_EQ((*media.object())[2].key, "3");
}

TEST(MediaTable, ReadsWhatRFC4180Allows) {
  const Value media = mediaOf("\xEF\xBB\xBFName,MediumID\r\n\"24\"\" Canvas, \nheavy\",1\r\n\r\n Satin ,2");
  EXPECT_EQ(textOf(*media.member("1"), "Name"), "24\" Canvas, \nheavy");
  EXPECT_EQ(textOf(*media.member("2"), "Name"), " Satin ") << "blanks are a part of the field";
}

TEST(MediaTable, BearsWhatSpreadsheetsLeaveBehind) {
  const Value media = mediaOf("Name,MediumID,,\nA,1,,\n,,,\nB,2\n");
  EXPECT_EQ(media.object()->size(), 2U);
}

TEST(MediaTable, NamesTheDevice) {
  const std::string table = "Name,MediumID\nA,1\n";
  const Snapshot named = Snapshot::fromJSON(MediaTable::snapshotOf(table, "socket://a", "\"Z9\"").json);
  EXPECT_EQ(named.devices.at(0).uri, "socket://a");
  EXPECT_EQ(named.devices.at(0).modelName, "\"Z9\"");
  EXPECT_EQ(Snapshot::fromJSON(MediaTable::snapshotOf(table, "a", std::nullopt).json).devices.at(0).modelName, "");
}

TEST(MediaTable, RefusesAHeaderThatIsNotUnderstood) {
  EXPECT_EQ(errorOf(""), "the table is empty");
  EXPECT_THAT(errorOf("Name\nA\n"), HasSubstr("line 1 of the table: there is no column MediumID"));
  EXPECT_THAT(errorOf("MediumID\n1\n"), HasSubstr("there is no column Name"));
  EXPECT_THAT(errorOf("Name,MediumID,Name\n"), HasSubstr("two columns are named Name"));
  EXPECT_THAT(errorOf("name,MediumID\n"), HasSubstr("no column is named \"name\"; there are: Name, MediumID, "));
  EXPECT_THAT(errorOf("\n\nname,MediumID\n"), HasSubstr("line 3 of the table: no column"));
}

TEST(MediaTable, RefusesARowThatMakesNoMediumAndSaysWhich) {
  const std::string head = "Name,MediumID,ICCName,URL,ParentID\n";
  EXPECT_THAT(errorOf(head + "A,1\nB,\n"), HasSubstr("line 3 of the table: it has no MediumID"));
  EXPECT_THAT(errorOf(head + ",1\n"), HasSubstr("line 2 of the table: its medium has no Name"));
  EXPECT_THAT(errorOf(head + std::string("A\0,1\n", 5)), HasSubstr("it holds a zero byte"));
  EXPECT_THAT(errorOf("Name,MediumID,\nA,1,more\n"), HasSubstr("more fields than there are columns"));
  EXPECT_THAT(errorOf(head + "A,1,,,,more\n"), HasSubstr("more fields than there are columns"));
  EXPECT_THAT(errorOf(head + "A\xE9,1\n"), HasSubstr("it is not UTF-8"));
  EXPECT_THAT(errorOf(head + "A,1,,/p.icc\n"), HasSubstr("its profile has no ICCName"));
  EXPECT_THAT(errorOf(head + "A,1,P\n"), HasSubstr("its profile has no URL"));
  EXPECT_THAT(errorOf(head + "A,1,,,12\nB,1\n"), HasSubstr("Name is B, and was \"A\" for this medium before"));
  EXPECT_THAT(errorOf(head + "A,1,,,12\n,1,,,13\n"), HasSubstr("ParentID is 13, and was \"12\""));
}

TEST(MediaTable, RefusesQuotesInTheWrongPlace) {
  EXPECT_THAT(errorOf("Name,MediumID\n24\" Canvas,1\n"),
              HasSubstr("line 2 of the table: a quote stands inside a field"));
  EXPECT_THAT(errorOf("Name,MediumID\n\"Canvas,1\n"), HasSubstr("is not closed"));
}

TEST(MediaTable, ErrorsNameTheLineOfTheFile) {
  const std::string head = "Name,MediumID\r\n\r\n\"24\"\" Canvas,\nheavy\",1\r\n";
  EXPECT_THAT(errorOf(head + "A,\r\n"), HasSubstr("line 5 of the table: it has no MediumID"));
  EXPECT_THAT(errorOf(head + "\n\n,2\n"), HasSubstr("line 7 of the table: its medium has no Name"));
  EXPECT_THAT(errorOf(head + "\"B\nC\",2\nD\"E,3\n"), HasSubstr("line 7 of the table: a quote stands"));
  EXPECT_THAT(errorOf(head + "\"B\nC\nD,2\n"), HasSubstr("line 5 of the table: a quote"));
  EXPECT_THAT(errorOf("Name,MediumID\rA,1\rB,\r"), HasSubstr("line 3 of the table: it has no MediumID"));
}

TEST(MediaTable, TellsWhatSpreadsheetsInGermanWrite) {
  for (const char* table : {"Name;MediumID\nA;1\n", "\"Name\";\"MediumID\"\n\"24\"\" Canvas\";1\n"}) {
    EXPECT_THAT(errorOf(table), HasSubstr("line 1 of the table: the fields are separated by semicolons"));
  }
  EXPECT_EQ(mediaOf("Name,MediumID\nA;B,1\n").object()->size(), 1U);
}

TEST(MediaTable, TellsThatATableIsUTF16) {
  using namespace std::string_literals;
  for (const std::string& table : {"\xFF\xFEN\0a\0"s, "\xFE\xFF\0N\0a"s, "N\0a\0m\0e\0"s, "\0N\0a"s}) {
    EXPECT_EQ(errorOf(table), "the table is UTF-16; save it as CSV in UTF-8");
  }
}

TEST(MediaTable, ATableWithoutMediaIsAMistake) {
  for (const char* table : {"Name,MediumID\n", "Name,MediumID", "Name,MediumID\n,,\n\n"}) {
    EXPECT_THAT(errorOf(table), HasSubstr("the table has no media")) << table;
  }
}

TEST(MediaTable, WarnsOfIDsThatWereRounded) {
  const auto warningsOf = [](const std::string& ids) {
    return MediaTable::snapshotOf("Name,MediumID\n" + ids, "a", std::nullopt).warnings;
  };
  EXPECT_THAT(warningsOf("A,\"4,71E+03\"\nB,4.71E+03\nC,5E11\n"),
              testing::ElementsAre(HasSubstr("line 2 of the table: the MediumID 4,71E+03"), HasSubstr("line 3"),
                                   HasSubstr("line 4")));
  EXPECT_THAT(warningsOf("A,4711\nB,4E\nC,E5\nD,4711E\nE,A4E5\nF,\"4,7\"\n"), testing::IsEmpty());
}
