// SPDX-License-Identifier: MIT
#include "updaters/ATPPDUpdatersFactory.h"

#include <gtest/gtest.h>

#include <string>
#include <typeindex>
#include <vector>

#include "tests/updaters/TestDocument.h"
#include "updaters/ATGlossyProfilePCL3PPDUpdater.h"
#include "updaters/ATMediaTypePCL3PPDUpdater.h"
#include "updaters/ATMediaTypePCL3Qualifier1PPDUpdater.h"
#include "updaters/ATMediaTypePCL3Qualifier3PPDUpdater.h"
#include "updaters/ATMediaTypePPDUpdater.h"
#include "updaters/ATMediaTypePSPPDUpdater.h"
#include "updaters/ATPDLCommandTypePPDUpdater.h"

namespace {

using Classes = std::vector<std::type_index>;

const std::type_index kBase = typeid(ATMediaTypePPDUpdater);
const std::type_index kPostScript = typeid(ATMediaTypePSPPDUpdater);
const std::type_index kPCL3 = typeid(ATMediaTypePCL3PPDUpdater);
const std::type_index kQualifier3 = typeid(ATMediaTypePCL3Qualifier3PPDUpdater);
const std::type_index kQualifier1 = typeid(ATMediaTypePCL3Qualifier1PPDUpdater);
const std::type_index kGlossy = typeid(ATGlossyProfilePCL3PPDUpdater);
const std::type_index kPDL = typeid(ATPDLCommandTypePPDUpdater);

Classes classesIn(const std::string& document) {
  Classes classes;
  const auto ppd = documentFromText(document);
  for (const auto& updater : ATPPDUpdatersFactory::defaultFactory().updatersForPPD(*ppd)) {
    const IATPPDUpdater& each = *updater;
    classes.emplace_back(typeid(each));
  }
  return classes;
}

// The classes for a value of the statement.
Classes classesFor(const std::string& value) {
  return classesIn("*PPD-Adobe: \"4.3\"\n*QZPPDUpdaters: " + value + "\n");
}

}  // namespace

TEST(ATPPDUpdatersFactory, DefaultFactoryIsOneForTheProcess) {
  EXPECT_EQ(&ATPPDUpdatersFactory::defaultFactory(), &ATPPDUpdatersFactory::defaultFactory());
}

TEST(ATPPDUpdatersFactory, BuildsTheClassOfEachKnownName) {
  EXPECT_EQ(classesFor("\"ATMediaTypePPDUpdater\""), Classes{kBase});
  EXPECT_EQ(classesFor("\"ATMediaTypePSPPDUpdater\""), Classes{kPostScript});
  EXPECT_EQ(classesFor("\"ATMediaTypePCL3PPDUpdater\""), Classes{kPCL3});
  EXPECT_EQ(classesFor("\"ATMediaTypePCL3Qualifier3PPDUpdater\""), Classes{kQualifier3});
  EXPECT_EQ(classesFor("\"ATMediaTypePCL3Qualifier1PPDUpdater\""), Classes{kQualifier1});
  EXPECT_EQ(classesFor("\"ATGlossyProfilePCL3PPDUpdater\""), Classes{kGlossy});
  EXPECT_EQ(classesFor("\"ATPDLCommandTypePPDUpdater\""), Classes{kPDL});
}

TEST(ATPPDUpdatersFactory, KeepsTheOrderOfTheNames) {
  EXPECT_EQ(classesFor("\"ATPDLCommandTypePPDUpdater ATMediaTypePSPPDUpdater ATMediaTypePPDUpdater\""),
            (Classes{kPDL, kPostScript, kBase}));
}

TEST(ATPPDUpdatersFactory, WithoutTheStatementThereAreNone) {
  EXPECT_EQ(classesIn("*PPD-Adobe: \"4.3\"\n"), Classes());
  EXPECT_EQ(classesIn(""), Classes());
}

TEST(ATPPDUpdatersFactory, SkipsEmptyComponents) {
  EXPECT_EQ(classesFor("\"ATMediaTypePCL3PPDUpdater  ATPDLCommandTypePPDUpdater\""), (Classes{kPCL3, kPDL}));
  EXPECT_EQ(classesFor("\"  ATMediaTypePCL3PPDUpdater\tATPDLCommandTypePPDUpdater \""), (Classes{kPCL3, kPDL}));
  EXPECT_EQ(classesFor("\" \""), Classes());
  EXPECT_EQ(classesFor("\"\""), Classes());
}

TEST(ATPPDUpdatersFactory, SplitsAtEveryWhiteSpaceCharacter) {
  for (const char* space :
       {" ", "\t", "\u00A0", "\u1680", "\u2000", "\u2003", "\u200A", "\u202F", "\u205F", "\u3000"}) {
    EXPECT_EQ(classesFor(std::string("\"ATMediaTypePSPPDUpdater") + space + "ATPDLCommandTypePPDUpdater\""),
              (Classes{kPostScript, kPDL}))
        << '"' << space << '"';
  }
}

TEST(ATPPDUpdatersFactory, DoesNotSplitAtWhatIsNoWhiteSpace) {
  for (const char* other : {"\u200B", "\u2028", "\u0085", "\f", "\v", ",", ";", "\uFEFF"}) {
    EXPECT_EQ(classesFor(std::string("\"ATMediaTypePSPPDUpdater") + other + "ATPDLCommandTypePPDUpdater\""), Classes())
        << '"' << other << '"';
  }
}

TEST(ATPPDUpdatersFactory, AnUnquotedValueNamesNone) {
  EXPECT_EQ(classesFor("ATPDLCommandTypePPDUpdater"), Classes());
  EXPECT_EQ(classesFor("\"ATPDLCommandTypePPDUpdater"), Classes());
  EXPECT_EQ(classesFor("ATPDLCommandTypePPDUpdater\""), Classes());
}

TEST(ATPPDUpdatersFactory, TakesWhatStandsBetweenTheFirstAndTheLastQuote) {
  EXPECT_EQ(classesFor("x \"ATPDLCommandTypePPDUpdater\" ATMediaTypePPDUpdater"), Classes{kPDL});
  EXPECT_EQ(classesFor("\"ATPDLCommandTypePPDUpdater \" ATMediaTypePPDUpdater \" ATMediaTypePSPPDUpdater\""),
            (Classes{kPDL, kBase, kPostScript}));
}

TEST(ATPPDUpdatersFactory, SkipsUnknownNames) {
  EXPECT_EQ(classesFor("\"Unknown ATPDLCommandTypePPDUpdater ATPPDUpdater IATPPDUpdater ATMediaTypePSPPDUpdater\""),
            (Classes{kPDL, kPostScript}));
}

TEST(ATPPDUpdatersFactory, NamesMatchExactly) {
  EXPECT_EQ(classesFor("\"atpdlcommandtypeppdupdater ATPDLCommandTypePPDUPDATER ATPDLCommandTypePPDUpdate "
                       "ATPDLCommandTypePPDUpdater2 xATPDLCommandTypePPDUpdater\""),
            Classes());
}

TEST(ATPPDUpdatersFactory, ALineEndJoinsTheNamesOnBothItsSides) {
  EXPECT_EQ(classesFor("\"ATMediaTypePPDUpdater ATMediaTypePSPPDUpdater\n"
                       "ATPDLCommandTypePPDUpdater ATMediaTypePCL3PPDUpdater\"\n*End"),
            (Classes{kBase, kPCL3}));
}

TEST(ATPPDUpdatersFactory, WhiteSpaceBehindALineEndSavesTheNameThere) {
  EXPECT_EQ(classesFor("\"ATMediaTypePSPPDUpdater\n ATPDLCommandTypePPDUpdater\"\n*End"), Classes{kPDL});
}

TEST(ATPPDUpdatersFactory, WhiteSpaceAtTheEndOfTheFirstLineIsNoPartOfTheValue) {
  EXPECT_EQ(classesFor("\"ATMediaTypePSPPDUpdater \nATPDLCommandTypePPDUpdater\"\n*End"), Classes());
}

TEST(ATPPDUpdatersFactory, OnlyTheFirstStatementCounts) {
  EXPECT_EQ(classesFor("\"ATPDLCommandTypePPDUpdater\"\n*QZPPDUpdaters: \"ATMediaTypePSPPDUpdater\""), Classes{kPDL});
  EXPECT_EQ(classesFor("unquoted\n*QZPPDUpdaters: \"ATMediaTypePSPPDUpdater\""), Classes());
}

TEST(ATPPDUpdatersFactory, TheStatementMayHaveASpec) {
  EXPECT_EQ(classesIn("*QZPPDUpdaters Any/Text: \"ATPDLCommandTypePPDUpdater\"\n"), Classes{kPDL});
}

TEST(ATPPDUpdatersFactory, AStatementInAGroupDoesNotCount) {
  EXPECT_EQ(classesIn("*OpenGroup: A/A\n*QZPPDUpdaters: \"ATPDLCommandTypePPDUpdater\"\n*CloseGroup: A/A\n"),
            Classes());
}

TEST(ATPPDUpdatersFactory, AStatementWithoutAValueNamesNone) {
  EXPECT_EQ(classesIn("*QZPPDUpdaters x/y\n"), Classes());
}

TEST(ATPPDUpdatersFactory, ANameListedTwiceGivesTwoObjects) {
  const auto ppd = documentFromText(
      "*QZPPDUpdaters: \"ATPDLCommandTypePPDUpdater ATMediaTypePPDUpdater ATPDLCommandTypePPDUpdater\"\n");
  const auto updaters = ATPPDUpdatersFactory::defaultFactory().updatersForPPD(*ppd);
  ASSERT_EQ(updaters.size(), 3U);
  EXPECT_NE(dynamic_cast<ATPDLCommandTypePPDUpdater*>(updaters[0].get()), nullptr);
  EXPECT_NE(dynamic_cast<ATPDLCommandTypePPDUpdater*>(updaters[2].get()), nullptr);
  EXPECT_NE(updaters[0].get(), updaters[2].get());
}

TEST(ATPPDUpdatersFactory, EveryRequestGivesNewObjects) {
  const auto ppd = documentFromText("*QZPPDUpdaters: \"ATPDLCommandTypePPDUpdater\"\n");
  const auto first = ATPPDUpdatersFactory::defaultFactory().updatersForPPD(*ppd);
  const auto second = ATPPDUpdatersFactory::defaultFactory().updatersForPPD(*ppd);
  ASSERT_EQ(first.size(), 1U);
  ASSERT_EQ(second.size(), 1U);
  EXPECT_NE(first[0].get(), second[0].get());
}

TEST(ATPPDUpdatersFactory, LeavesTheDocumentAsItIs) {
  const std::string text = "*QZPPDUpdaters :  \"ATPDLCommandTypePPDUpdater\" \r\n";
  const auto ppd = documentFromText(text);
  ATPPDUpdatersFactory::defaultFactory().updatersForPPD(*ppd);
  EXPECT_EQ(textOf(*ppd), text);
}

TEST(ATPPDUpdatersFactory, EveryUpdaterFailsWithoutADocumentOrAReader) {
  const auto ppd = documentFromText(
      "*QZPPDUpdaters: \"ATMediaTypePPDUpdater ATMediaTypePSPPDUpdater ATMediaTypePCL3PPDUpdater "
      "ATMediaTypePCL3Qualifier3PPDUpdater ATMediaTypePCL3Qualifier1PPDUpdater ATGlossyProfilePCL3PPDUpdater "
      "ATPDLCommandTypePPDUpdater\"\n");
  const auto updaters = ATPPDUpdatersFactory::defaultFactory().updatersForPPD(*ppd);
  ASSERT_EQ(updaters.size(), 7U);
  for (const auto& updater : updaters) {
    EXPECT_FALSE(updater->updatePPD(ppd.get(), nullptr));
    EXPECT_FALSE(updater->updatePPD(nullptr, nullptr));
  }
}
