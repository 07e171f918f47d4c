// SPDX-License-Identifier: MIT
#include "explain/watch/ParsedPPD.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/support/TemporaryFolder.h"

using testing::HasSubstr;

namespace {

std::string problemOf(const std::string& bytes) {
  const TemporaryFolder folder;
  const InputLines lines = InputLines::ofFile(folder.file("base.ppd", bytes));
  return ParsedPPD(lines).problem().value_or("none");
}

const std::string kOption = "*OpenUI *A/A: PickOne\n*DefaultA: B\n*A B/B: \"code\"\n*CloseUI: *A\n";
const std::string kGroup = "*OpenGroup: G/G\n" + kOption + "*CloseGroup: G\n";

}  // namespace

TEST(ParsedPPD, HasTheToolsDocument) {
  const TemporaryFolder folder;
  const InputLines lines = InputLines::ofFile(folder.file("base.ppd", "*ModelName: \"Z9\"\n" + kGroup));
  const ParsedPPD ppd(lines);
  EXPECT_EQ(ppd.document().attributeForName("ModelName")->value(), "\"Z9\"");
  EXPECT_NE(ppd.document().optionForName("A"), nullptr);
  EXPECT_EQ(ppd.problem(), std::nullopt);
}

TEST(ParsedPPD, AWholePPDHasNoProblem) {
  for (const std::string& text : {std::string(), kOption, kGroup, kGroup + "*A: \"b\"", kGroup + "*A: \"b\n\"\n*End\n",
                                  kGroup + "*% a comment", std::string("*A: b\n"), kGroup + "*A: \"b\"\n\n"}) {
    EXPECT_EQ(problemOf(text), "none") << text;
  }
}

// Every way to cut this one off leaves a line that is malformed or open, or whole statements in front of a group.
TEST(ParsedPPD, FindsWhereAPPDWasCutOff) {
  for (std::size_t size = kGroup.find('\n') + 1; size < kGroup.size() - 1; ++size) {
    if (kGroup.substr(0, size).ends_with("*CloseGroup:") || kGroup.substr(0, size).ends_with("*CloseGroup: ")) continue;
    EXPECT_NE(problemOf(kGroup.substr(0, size)), "none") << kGroup.substr(0, size);
  }
  EXPECT_EQ(problemOf("*A: \"open"), "it ends inside a statement");
  EXPECT_EQ(problemOf("*A: \"open\nand on"), "it ends inside a statement");
  EXPECT_EQ(problemOf("*A"), "it ends inside a statement");
  EXPECT_EQ(problemOf("*OpenUI *A/A: PickOne\n*A B/B: \"\"\n"), "it ends inside an option");
  EXPECT_EQ(problemOf("*OpenGroup: G\n*OpenUI *A/A: PickOne\n*CloseUI: *A\n"), "it ends inside a group");
}

TEST(ParsedPPD, TellsWhereReadingEnded) {
  EXPECT_EQ(problemOf("*A: b\n*B: \xE9\n"), "line 2 is not UTF-8");
  EXPECT_THAT(problemOf("*A: b\nno statement\n*C: d\n" + kGroup + "none\n"),
              HasSubstr("line 10 is malformed; expected: "));
  std::string gzip("\x1F\x8B\x08\0\0\0\0\0\0\x03\x01\x06\0\xF9\xFF*A: 1\n\x83\x46\x35\xF3\x06\0\0\0", 29);
  EXPECT_EQ(problemOf(gzip), "none");
  gzip[19] = '2';
  EXPECT_EQ(problemOf(gzip), "the gzip file is damaged or cut off");
  EXPECT_EQ(problemOf(gzip.substr(0, 20)), "the gzip file is damaged or cut off");
}
