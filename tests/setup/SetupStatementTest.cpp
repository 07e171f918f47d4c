// SPDX-License-Identifier: MIT
#include "setup/SetupStatement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "setup/CUPSCheck.h"
#include "setup/SetupDigest.h"

namespace {

// What CUPS needs of a PPD to load it.
const std::string kPPD = "*PPD-Adobe: \"4.3\"\n*ModelName: \"Z9\"\n*DefaultPageSize: A4\n";
const std::string kSources(64, 'a');

}  // namespace

TEST(SetupStatement, StandsBehindTheFirstLine) {
  const std::string ppd = SetupStatement::addedTo(kPPD, "vorantis-autosetup:plotter1/z6.ppd", kSources);
  EXPECT_EQ(ppd, "*PPD-Adobe: \"4.3\"\n*VorantisSetup: \"plotter1/z6.ppd\n" + kSources + " " +
                     SetupDigest::ofResult(kPPD) + " " AT_VERSION "\"\n*End\n" + kPPD.substr(18));
  EXPECT_EQ(SetupStatement::removedFrom(ppd), kPPD);
}

TEST(SetupStatement, IsReadAsItWasWritten) {
  for (const std::string name : {"plotter1/z6.ppd", " two  words /z 6.ppd.gz", "%22\xC3\xA4/z6.ppd"}) {
    const auto statement = SetupStatement::of(SetupStatement::addedTo(kPPD, name, kSources));
    ASSERT_TRUE(statement);
    EXPECT_EQ(statement->source, name);
    EXPECT_EQ(statement->sources, kSources);
    EXPECT_EQ(statement->result, SetupDigest::ofResult(kPPD));
    EXPECT_EQ(statement->version, AT_VERSION);
  }
}

TEST(SetupStatement, TakesThePlaceOfAnEarlierOne) {
  const std::string once = SetupStatement::addedTo(kPPD, "a/z6.ppd", kSources);
  const std::string twice = SetupStatement::addedTo(once, "b/z6.ppd", std::string(64, 'b'));
  EXPECT_EQ(SetupStatement::of(twice)->source, "b/z6.ppd");
  EXPECT_EQ(SetupStatement::removedFrom(twice), kPPD);
  EXPECT_EQ(SetupStatement::of(twice)->result, SetupStatement::of(once)->result);
}

TEST(SetupStatement, TheLongestNameStillFitsCUPS) {
  const std::string name = "vorantis-autosetup:" + std::string(232, 'n') + "/z.p";
  ASSERT_EQ(name.size(), 255U);
  const std::string ppd = SetupStatement::addedTo(kPPD, name, kSources);
  EXPECT_EQ(CUPSCheck::whyRefused(ppd), std::nullopt);
  EXPECT_EQ(SetupStatement::of(ppd)->source, name.substr(19));
}

TEST(SetupStatement, KeepsLineEnds) {
  const std::string ppd = "*PPD-Adobe: \"4.3\"\r\n*ModelName: \"Z9\"\r\n";
  const std::string added = SetupStatement::addedTo(ppd, "a/z6.ppd", kSources);
  EXPECT_EQ(SetupStatement::removedFrom(added), ppd);
  EXPECT_TRUE(SetupStatement::of(added));
}

TEST(SetupStatement, NothingElseIsTakenForIt) {
  const std::string added = SetupStatement::addedTo(kPPD, "a/z6.ppd", kSources);
  const std::string statement = added.substr(18, added.size() - kPPD.size());
  ASSERT_TRUE(SetupStatement::of("*PPD-Adobe: \"4.3\"\n" + statement));
  for (const std::string& ppd :
       {std::string(), std::string("*PPD-Adobe: \"4.3\""), kPPD, kPPD + statement, statement,
        "*PPD-Adobe: \"4.3\"\n" + statement.substr(0, statement.find('\n')),
        "*PPD-Adobe: \"4.3\"\n" + statement.substr(0, statement.find("*End")),
        std::string("*PPD-Adobe: \"4.3\"\n*VorantisSetup: \"a/z6.ppd\nx y 1.0.0\"\n*End\n"),
        "*PPD-Adobe: \"4.3\"\n*VorantisSetup: \"a/z6.ppd\n" + kSources + " " + kSources + " \"\n*End\n",
        "*PPD-Adobe: \"4.3\"\n*VorantisSetup: \"a/z6.ppd\n" + kSources + " " + kSources + " 1.0.0\n*End\n"}) {
    EXPECT_FALSE(SetupStatement::of(ppd)) << ppd;
  }
}
