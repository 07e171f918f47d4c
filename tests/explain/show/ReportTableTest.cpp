// SPDX-License-Identifier: MIT
#include "explain/show/ReportTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

std::string report(const std::string& colour, int lost, const std::string& because = "null") {
  return R"({"arguments": {"deviceURI": "socket://)" + colour + R"(", "PPDPath": "a,b.ppd"}, "verdict": {"colour": ")" +
         colour + R"(", "media": {"onDevice": 3, "lost": )" + std::to_string(lost) +
         R"(}, "warnings": {"no-device": 2, "medium-twice": 1}}, "updaters": [{"media": [{"lostBecause": [{"code": "no-choice"}],
         "profiles": [{"lostBecause": )" +
         because + R"(}]}]}]})";
}

std::vector<std::string> files(const ReportTable& table) {
  std::vector<std::string> names;
  for (const ReportTable::Row& row : table.rows()) names.push_back(row.file);
  return names;
}

}  // namespace

TEST(ReportTable, TheWorstComesFirst) {
  const TemporaryFolder folder;
  folder.file("a.json", report("good", 0));
  folder.file("b.json", report("odd", 1));
  folder.file("c.json", report("odd", 2));
  folder.file("d.json", report("refused", 0));
  folder.file("e.json", report("bad", 0));
  folder.file("f.json", "no report");
  folder.file("g.json", "{}");
  folder.file("h.txt", report("bad", 0));
  const ReportTable table = ReportTable::ofFolder(folder.path());
  EXPECT_THAT(files(table), ElementsAre("f.json", "g.json", "e.json", "d.json", "c.json", "b.json", "a.json"));
  EXPECT_EQ(table.rows()[1].colour, "unreadable");
  EXPECT_TRUE(table.rows()[1].device.empty());
}

TEST(ReportTable, EachRowSaysWhatWasLostAndWhy) {
  const TemporaryFolder folder;
  folder.file("one.json", report("odd", 1, R"({"code": "profile-behind"})"));
  const ReportTable table = ReportTable::ofFolder(folder.path());
  ASSERT_EQ(table.rows().size(), 1U);
  EXPECT_EQ(table.rows()[0].reasons, "1 no-choice, 1 profile-behind");
  EXPECT_EQ(table.rows()[0].warnings, "1 medium-twice, 2 no-device");
  EXPECT_EQ(table.text(),
            "1 report\nodd        one.json: socket://odd\n           1 of 3 media lost something: 1 no-choice, 1 "
            "profile-behind\n           1 medium-twice, 2 no-device\n");
  EXPECT_EQ(table.csv(),
            "verdict,report,device,PPD,media,lost,why,warnings\r\nodd,one.json,socket://odd,\"a,b.ppd\",3,1,\"1 "
            "no-choice, 1 profile-behind\",\"1 medium-twice, 2 no-device\"\r\n");
  EXPECT_THAT(table.html(), HasSubstr("<td class=\"odd\">odd</td><td>one.json</td>"));
}

TEST(ReportTable, WithoutReports) {
  EXPECT_EQ(ReportTable::ofFolder("/no/such/folder").text(), "0 reports\n");
  const TemporaryFolder folder;
  folder.file("a\"b<.json", "");
  const ReportTable table = ReportTable::ofFolder(folder.path());
  EXPECT_THAT(table.text(), HasSubstr("unreadable a\"b<.json: no device"));
  EXPECT_THAT(table.csv(), HasSubstr("unreadable,\"a\"\"b<.json\",,"));
  EXPECT_THAT(table.html(), HasSubstr("a&quot;b&lt;.json"));
  EXPECT_THAT(table.html(), HasSubstr("class=\"bad\""));
}
