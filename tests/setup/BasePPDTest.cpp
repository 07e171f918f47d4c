// SPDX-License-Identifier: MIT
#include "setup/BasePPD.h"

#include <cups/file.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <string_view>

#include "tests/support/TemporaryFolder.h"

using testing::StartsWith;

namespace {

constexpr const char* kName = "z9.ppd";

BasePPD look(std::string_view contents) {
  const TemporaryFolder folder;
  return BasePPD::ofFile(folder.file(kName, contents));
}

std::string modelNameIn(std::string_view contents) {
  return look(contents).modelName;
}

bool namesUpdaters(const std::string& value) {
  return look("*QZPPDUpdaters: " + value + "\n").namesUpdaters;
}

std::string makeOf(const std::string& manufacturer, const std::string& modelName) {
  return BasePPD{modelName, manufacturer, "", true}.make();
}

// Writes the file with gzip.
std::string packed(const TemporaryFolder& folder, const std::string& contents) {
  const std::string path = folder.path("z9.ppd.gz");
  cups_file_t* const file = cupsFileOpen(path.c_str(), "w9");
  EXPECT_EQ(cupsFileWrite(file, contents.data(), contents.size()), static_cast<ssize_t>(contents.size()));
  EXPECT_EQ(cupsFileClose(file), 0);
  return path;
}

constexpr std::string_view kWhole =
    "*PPD-Adobe: \"4.3\"\n*Manufacturer: \"Vorantis\"\n*ModelName: \"Vorantis Z9 44in\"\n"
    "*1284DeviceID: \"MFG:Vorantis;MDL:Z9;\"\n*QZPPDUpdaters: \"ATMediaTypePSPPDUpdater\"\n";

void expectWhole(const BasePPD& ppd) {
  EXPECT_EQ(ppd.modelName, "\"Vorantis Z9 44in\"");
  EXPECT_EQ(ppd.manufacturer, "Vorantis");
  EXPECT_EQ(ppd.deviceID, "MFG:Vorantis;MDL:Z9;");
  EXPECT_TRUE(ppd.namesUpdaters);
}

std::string replacedLineEnds(std::string_view text, std::string_view lineEnd) {
  std::string replaced;
  for (const char character : text) character == '\n' ? replaced.append(lineEnd) : replaced.append(1, character);
  return replaced;
}

}  // namespace

TEST(BasePPD, TellsWhatAListNeeds) {
  expectWhole(look(kWhole));
}

TEST(BasePPD, LinesEndWithWhatCUPSTakesForALineEnd) {
  for (const std::string_view lineEnd : {"\n", "\r", "\r\n", "\n\n", "\n\r", "\r\r\n"}) {
    SCOPED_TRACE(testing::PrintToString(lineEnd));
    expectWhole(look(replacedLineEnds(kWhole, lineEnd)));
  }
  expectWhole(look("*PPD-Adobe: \"4.3\"\r*Product: \"(Z9)\"\n" + std::string(kWhole)));
}

TEST(BasePPD, TheLastLineNeedsNoEnd) {
  expectWhole(look(kWhole.substr(0, kWhole.size() - 1)));
}

TEST(BasePPD, LooksIntoGzip) {
  const TemporaryFolder folder;
  expectWhole(BasePPD::ofFile(packed(folder, std::string(kWhole))));
  expectWhole(BasePPD::ofFile(packed(folder, replacedLineEnds(kWhole, "\r"))));
}

TEST(BasePPD, TheFirstStatementOfAKeywordCounts) {
  const auto ppd = look(
      "*ModelName: \"A\"\n*ModelName: \"B\"\n*QZPPDUpdaters: \"\"\n*QZPPDUpdaters: \"A\"\n*Manufacturer: \"M\"\n"
      "*Manufacturer: \"N\"\n*1284DeviceID: \"\"\n*1284DeviceID: \"MDL:B;\"\n");
  EXPECT_EQ(ppd.modelName, "\"A\"");
  EXPECT_FALSE(ppd.namesUpdaters);
  EXPECT_EQ(ppd.manufacturer, "M");
  EXPECT_EQ(ppd.deviceID, "");
}

TEST(BasePPD, BlanksAndTabsMayStandAroundTheColon) {
  EXPECT_EQ(modelNameIn("*ModelName:\"Z9\"\n"), "\"Z9\"");
  EXPECT_EQ(modelNameIn("*ModelName : \"Z9\" \n"), "\"Z9\"");
  EXPECT_EQ(modelNameIn("*ModelName \t :\t\t\"Z9\"\t \r\n"), "\"Z9\"");
  EXPECT_EQ(modelNameIn("*ModelName: \" Z9 \"\n"), "\" Z9 \"");
}

TEST(BasePPD, TheKeywordsThatBeginLongerOnesAreNotTakenForThem) {
  const auto ppd =
      look("*QZPPDUpdatersVersion: \"2\"\n*ManufacturerID: \"7\"\n*1284DeviceIDs: \"x\"\n*ModelNameShort: \"Z\"\n");
  EXPECT_FALSE(ppd.namesUpdaters);
  EXPECT_EQ(ppd.manufacturer, "");
  EXPECT_EQ(ppd.deviceID, "");
  EXPECT_EQ(ppd.modelName, "");
}

TEST(BasePPD, ZeroBytesAreBytesLikeOthers) {
  using namespace std::string_view_literals;
  EXPECT_EQ(modelNameIn("*A: \"\0\"\n*ModelName: \"Z\0009\"\n"sv), "\"Z\0009\""sv);
}

TEST(BasePPD, WhatStandsBehindGroupsIsFound) {
  const std::string group = "*OpenGroup: A/A\n*OpenUI *B/B: PickOne\n*B C/C: \"\"\n*CloseUI: *B\n*CloseGroup: A\n";
  expectWhole(look(group + std::string(kWhole)));
}

TEST(BasePPD, TheModelIsTheNameWithoutItsQuotes) {
  EXPECT_EQ((BasePPD{"\"Vorantis Z9\"", "", "", true}.model()), "Vorantis Z9");
  EXPECT_EQ((BasePPD{"Vorantis Z9", "", "", true}.model()), "Vorantis Z9");
  EXPECT_EQ((BasePPD{"\"", "", "", true}.model()), "\"");
  EXPECT_EQ((BasePPD{"\"\"", "", "", true}.model()), "");
  EXPECT_EQ((BasePPD{"", "", "", true}.model()), "");
}

TEST(BasePPD, TheMakeIsTheManufacturerOrTheModelsFirstWord) {
  EXPECT_EQ(makeOf("Velmor", "\"Vorantis Z9\""), "Velmor");
  EXPECT_EQ(makeOf("", "\"Vorantis Z9 44in\""), "Vorantis");
  EXPECT_EQ(makeOf("", "Z9"), "Z9");
  EXPECT_EQ(makeOf("", "\"  Vorantis Z9\""), "Vorantis");
  EXPECT_EQ(makeOf("", "\"Vorantis\tZ9\""), "Vorantis");
  EXPECT_EQ(makeOf("", "\"\""), "");
  EXPECT_EQ(makeOf("", "\"  \""), "");
}

TEST(BasePPD, TheModelNameStaysAsItStands) {
  EXPECT_EQ(modelNameIn("*ModelName: Z9\n"), "Z9");
  EXPECT_EQ(modelNameIn("*ModelName: \"Z9: 44in\"\n"), "\"Z9: 44in\"");
  EXPECT_EQ(modelNameIn("*ModelName: \"\"\n"), "\"\"");
  EXPECT_EQ(modelNameIn("*ModelName:\n"), "");
  EXPECT_EQ(modelNameIn("*ModelName: \"Gl\xC3\xA4nzend\"\n"), "\"Gl\xC3\xA4nzend\"");
}

TEST(BasePPD, OnlyStatementsAtTheTopAreTheDocuments) {
  EXPECT_EQ(modelNameIn("*OpenGroup: A/A\n*ModelName: \"in it\"\n*CloseGroup: A\n*ModelName: \"Z9\"\n"), "\"Z9\"");
  EXPECT_EQ(modelNameIn("*opengroup: A/A\n*ModelName: \"in it\"\n*closegroup: A\n*ModelName: \"Z9\"\n"), "\"Z9\"");
  EXPECT_EQ(modelNameIn("*JCLBegin: \"first\n*ModelName: x\n\"\n*End\n*ModelName: \"Z9\"\n"), "\"Z9\"");
}

TEST(BasePPD, NamesUpdatersWhenAnythingStandsBetweenQuotes) {
  EXPECT_TRUE(namesUpdaters("\"A\""));
  EXPECT_TRUE(namesUpdaters("\" A B \""));
  EXPECT_TRUE(namesUpdaters("\"A\" and more"));
  EXPECT_FALSE(namesUpdaters("A"));
  EXPECT_FALSE(namesUpdaters("\"\""));
  EXPECT_FALSE(namesUpdaters("\" \t \""));
  EXPECT_FALSE(namesUpdaters(""));
  EXPECT_FALSE(look("*ModelName: \"Z9\"\n").namesUpdaters);
}

TEST(BasePPD, TheManufacturerAndTheDeviceIDLoseTheirQuotesOnly) {
  const auto ppd = look("*Manufacturer: \"Vorantis \"\n*1284DeviceID: MFG:V;\n");
  EXPECT_EQ(ppd.manufacturer, "Vorantis ");
  EXPECT_EQ(ppd.deviceID, "MFG:V;");
}

TEST(BasePPD, TellsWhyAFileCannotBeUsed) {
  const TemporaryFolder folder;
  const auto reasonFor = [](const std::string& path) -> std::string {
    try {
      BasePPD::ofFile(path);
      return "none";
    } catch (const std::runtime_error& error) {
      return error.what();
    }
  };
  EXPECT_EQ(reasonFor(folder.path("not-there.ppd")), "No such file or directory");
  EXPECT_EQ(reasonFor(folder.path()), "it is no file");
  EXPECT_EQ(reasonFor(folder.file("empty.ppd", "")), "none");
  EXPECT_EQ(reasonFor(folder.file("latin1.ppd", std::string(kWhole) + "*NickName: \"\xE9\"\n")), "line 6 is not UTF-8");
  EXPECT_THAT(reasonFor(folder.file("malformed.ppd", std::string(kWhole) + "no statement\n*A: b\n*End\n*End\n")),
              StartsWith("line 8 is malformed"));
  EXPECT_EQ(reasonFor(folder.file("cut.ppd", std::string(kWhole) + "*JCLBegin: \"open\n")),
            "it ends inside a statement");
  const std::string whole = contentsOfFile(packed(folder, std::string(kWhole)));
  EXPECT_EQ(reasonFor(folder.file("cut.ppd.gz", whole.substr(0, whole.size() - 9))),
            "the gzip file is damaged or cut off");
  std::string damaged = whole;
  damaged[damaged.size() - 6] ^= 1;  // in the checksum
  EXPECT_EQ(reasonFor(folder.file("damaged.ppd.gz", damaged)), "the gzip file is damaged or cut off");
}
