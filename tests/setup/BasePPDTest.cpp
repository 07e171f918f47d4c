// SPDX-License-Identifier: MIT
#include "setup/BasePPD.h"

#include <cups/file.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "explain/ExplainedRun.h"
#include "tests/support/TemporaryFolder.h"

namespace {

constexpr const char* kName = "z9.ppd";

std::optional<BasePPD> look(std::string_view contents) {
  const TemporaryFolder folder;
  return BasePPD::ofFile(folder.file(kName, contents));
}

std::string modelNameIn(std::string_view contents) {
  return look(contents)->modelName;
}

bool namesUpdaters(const std::string& value) {
  return look("*QZPPDUpdaters: " + value + "\n")->namesUpdaters;
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

void expectWhole(const std::optional<BasePPD>& ppd) {
  ASSERT_TRUE(ppd);
  EXPECT_EQ(ppd->modelName, "\"Vorantis Z9 44in\"");
  EXPECT_EQ(ppd->manufacturer, "Vorantis");
  EXPECT_EQ(ppd->deviceID, "MFG:Vorantis;MDL:Z9;");
  EXPECT_TRUE(ppd->namesUpdaters);
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

TEST(BasePPD, IsAbsentOnlyWhenItCannotBeOpened) {
  const TemporaryFolder folder;
  EXPECT_FALSE(BasePPD::ofFile(folder.path("not-there.ppd")));
  EXPECT_FALSE(BasePPD::ofFile(folder.path("not/there.ppd")));
  EXPECT_FALSE(BasePPD::ofFile(""));
  EXPECT_TRUE(look(""));
}

TEST(BasePPD, AnEmptyFileAndADirectoryTellNothing) {
  const TemporaryFolder folder;
  for (const auto& ppd : {look(""), look("\n\n"), BasePPD::ofFile(folder.path())}) {
    ASSERT_TRUE(ppd);
    EXPECT_EQ(ppd->modelName, "");
    EXPECT_EQ(ppd->manufacturer, "");
    EXPECT_EQ(ppd->deviceID, "");
    EXPECT_FALSE(ppd->namesUpdaters);
  }
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

TEST(BasePPD, TakesOfADamagedGzipWhatItGives) {
  const TemporaryFolder folder;
  const std::string whole = contentsOfFile(packed(folder, std::string(kWhole)));
  const auto cut = BasePPD::ofFile(folder.file("cut.ppd.gz", whole.substr(0, 10)));
  ASSERT_TRUE(cut);
  EXPECT_EQ(cut->modelName, "");
  EXPECT_FALSE(cut->namesUpdaters);
}

TEST(BasePPD, TheFirstStatementOfAKeywordCounts) {
  const auto ppd = look(
      "*ModelName: \"A\"\n*ModelName: \"B\"\n*QZPPDUpdaters: \"\"\n*QZPPDUpdaters: \"A\"\n*Manufacturer: \"M\"\n"
      "*Manufacturer: \"N\"\n*1284DeviceID: \"\"\n*1284DeviceID: \"MDL:B;\"\n");
  EXPECT_EQ(ppd->modelName, "\"A\"");
  EXPECT_FALSE(ppd->namesUpdaters);
  EXPECT_EQ(ppd->manufacturer, "M");
  EXPECT_EQ(ppd->deviceID, "");
}

TEST(BasePPD, BlanksAndTabsMayStandAroundTheColon) {
  EXPECT_EQ(modelNameIn("*ModelName:\"Z9\"\n"), "\"Z9\"");
  EXPECT_EQ(modelNameIn("*ModelName : \"Z9\" \n"), "\"Z9\"");
  EXPECT_EQ(modelNameIn("*ModelName \t :\t\t\"Z9\"\t \r\n"), "\"Z9\"");
  EXPECT_EQ(modelNameIn("*ModelName: \" Z9 \"\n"), "\" Z9 \"");
}

TEST(BasePPD, OnlyTheWholeKeywordBehindTheAsteriskCounts) {
  for (const char* line : {"*ModelNames: \"Z9\"", "*ModelNam: \"Z9\"", "ModelName: \"Z9\"", " *ModelName: \"Z9\"",
                           "*modelname: \"Z9\"", "**ModelName: \"Z9\"", "*%ModelName: \"Z9\"", "*% *ModelName: \"Z9\"",
                           "*de.ModelName: \"Z9\"", "*ModelName/Name: \"Z9\"", ":", "*:"}) {
    SCOPED_TRACE(line);
    EXPECT_EQ(modelNameIn(line), "");
    EXPECT_EQ(modelNameIn(std::string(line) + "\n*ModelName: \"Z6\"\n"), "\"Z6\"");
  }
}

TEST(BasePPD, TheKeywordsThatBeginLongerOnesAreNotTakenForThem) {
  const auto ppd =
      look("*QZPPDUpdatersVersion: \"2\"\n*ManufacturerID: \"7\"\n*1284DeviceIDs: \"x\"\n*ModelNameShort: \"Z\"\n");
  EXPECT_FALSE(ppd->namesUpdaters);
  EXPECT_EQ(ppd->manufacturer, "");
  EXPECT_EQ(ppd->deviceID, "");
  EXPECT_EQ(ppd->modelName, "");
}

TEST(BasePPD, TheModelNameStaysAsItStands) {
  EXPECT_EQ(modelNameIn("*ModelName: Z9\n"), "Z9");
  EXPECT_EQ(modelNameIn("*ModelName: \"Z9: 44in\"\n"), "\"Z9: 44in\"");
  EXPECT_EQ(modelNameIn("*ModelName: \"\"\n"), "\"\"");
  EXPECT_EQ(modelNameIn("*ModelName:\n"), "");
  EXPECT_EQ(modelNameIn("*ModelName: \"Gl\xC3\xA4nzend\"\n"), "\"Gl\xC3\xA4nzend\"");
  EXPECT_EQ(modelNameIn("*ModelName: \"\xE9\xA8\xA8\"\n"), "\"\xE9\xA8\xA8\"");
}

TEST(BasePPD, ZeroBytesAreBytesLikeOthers) {
  using namespace std::string_view_literals;
  EXPECT_EQ(modelNameIn("*A: \"\0\"\n*ModelName: \"Z\0009\"\n"sv), "\"Z\0009\""sv);
}

TEST(BasePPD, StatementsInsideAValueOfSeveralLinesAreNone) {
  EXPECT_EQ(modelNameIn("*JCLBegin: \"first\n*ModelName: \"\n*End\n*ModelName: \"Z9\"\n"), "\"Z9\"");
  EXPECT_EQ(modelNameIn("*JCLBegin: \"\n*ModelName: inner\nlast\"\n*End\n*ModelName: \"Z9\"\n"), "\"Z9\"");
  EXPECT_EQ(modelNameIn("*JCLBegin: \"\r*ModelName: inner\rlast\" \r*End\r*ModelName: \"Z9\"\r"), "\"Z9\"");
  EXPECT_EQ(modelNameIn("*JCLBegin: \"one line\"\n*ModelName: \"Z9\"\n"), "\"Z9\"");
  EXPECT_EQ(modelNameIn("*% A quote \" in a comment\n*ModelName: \"Z9\"\n"), "\"Z9\"");
}

TEST(BasePPD, StatementsInGroupsAndOptionsAreNotTheDocuments) {
  EXPECT_EQ(modelNameIn("*OpenGroup: A/A\n*ModelName: \"in it\"\n*CloseGroup: A\n*ModelName: \"Z9\"\n"), "\"Z9\"");
  EXPECT_EQ(modelNameIn("*OpenGroup: A\n*OpenUI *B: PickOne\n*CloseUI: *B\n*ModelName: \"in it\"\n*CloseGroup: A\n"
                        "*ModelName: \"Z9\"\n"),
            "\"Z9\"");
  EXPECT_EQ(modelNameIn("*OpenUI *ModelName/Model: PickOne\n*ModelName: \"in it\"\n*CloseUI: *ModelName\n"
                        "*ModelName: \"Z9\"\n"),
            "\"Z9\"");
  EXPECT_EQ(modelNameIn("*OpenGroup: A\n*ModelName: \"in it\"\n"), "");
}

TEST(BasePPD, WhatStandsBehindGroupsIsFound) {
  const std::string group = "*OpenGroup: A/A\n*OpenUI *B/B: PickOne\n*B C/C: \"\"\n*CloseUI: *B\n*CloseGroup: A\n";
  expectWhole(look(group + std::string(kWhole)));
}

TEST(BasePPD, NamesUpdatersWhenAnythingStandsBetweenQuotes) {
  EXPECT_TRUE(namesUpdaters("\"A\""));
  EXPECT_TRUE(namesUpdaters("\" A B \""));
  EXPECT_TRUE(namesUpdaters("\"A\" and more"));
  EXPECT_TRUE(namesUpdaters("names: \"A\""));
  EXPECT_FALSE(namesUpdaters("A"));
  EXPECT_FALSE(namesUpdaters("\"\""));
  EXPECT_FALSE(namesUpdaters("\" \t \""));
  EXPECT_FALSE(namesUpdaters("\""));
  EXPECT_FALSE(namesUpdaters(""));
  EXPECT_FALSE(look("*ModelName: \"Z9\"\n")->namesUpdaters);
}

TEST(BasePPD, TheManufacturerAndTheDeviceIDLoseTheirQuotesOnly) {
  const auto ppd = look("*Manufacturer: \"Vorantis \"\n*1284DeviceID: MFG:V;\n");
  EXPECT_EQ(ppd->manufacturer, "Vorantis ");
  EXPECT_EQ(ppd->deviceID, "MFG:V;");
  EXPECT_EQ(look("*Manufacturer: \"\n")->manufacturer, "\"");
  EXPECT_EQ(look("*Manufacturer: \"V\n")->manufacturer, "\"V");
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

// The line reader of CUPS has blocks; a line lies across the border of two, with any line end.
TEST(BasePPD, LinesAcrossTheBordersOfBlocksAreWhole) {
  constexpr std::size_t kBlock = 4096;
  for (const std::string_view lineEnd : {"\n", "\r", "\r\n"}) {
    for (std::size_t before = kBlock - 40; before <= kBlock + 2; ++before) {
      std::string text;
      while (text.size() + 100 < before) text.append("*%").append(lineEnd);
      text += "*%";
      text.append(before - text.size() - lineEnd.size(), '.').append(lineEnd);
      ASSERT_EQ(text.size(), before);
      expectWhole(look(text + replacedLineEnds(kWhole, lineEnd)));
    }
  }
}

TEST(BasePPD, ALongLineIsReadInTheSamePartsAsByTheTool) {
  EXPECT_EQ(modelNameIn("*% " + std::string(300000, '.') + "\n*ModelName: \"Z9\"\n"), "\"Z9\"");
  EXPECT_EQ(modelNameIn("*%" + std::string(251, '.') + "*ModelName: \"Z9\"\n"), "");
  EXPECT_EQ(modelNameIn("*%" + std::string(252, '.') + "*ModelName: \"Z9\"\n"), "\"Z9\"");
  EXPECT_EQ(modelNameIn("*%" + std::string(253, '.') + "*ModelName: \"Z9\"\n"), "");
}

// Once the model and the updaters are known, the options of the printer, which are nearly all of the file, are not
// read.
TEST(BasePPD, ReadsNoFurtherThanTheFirstGroupBehindWhatItNeeds) {
  const std::string head = "*ModelName: \"Z9\"\n*QZPPDUpdaters: \"A\"\n";
  const std::string tail = "*Manufacturer: \"V\"\n*1284DeviceID: \"MDL:Z9;\"\n";
  for (const std::string group : {"*OpenGroup: A\n*CloseGroup: A\n", "*OpenUI *B: PickOne\n*CloseUI: *B\n"}) {
    EXPECT_EQ(look(head + tail + group)->deviceID, "MDL:Z9;");
    EXPECT_EQ(look(head + group + tail)->deviceID, "");
    EXPECT_EQ(look(head + group + tail)->manufacturer, "");
    expectWhole(look(group + std::string(kWhole)));
  }
}

// What the tool's own parser takes for the model name and whether it finds updaters named.
TEST(BasePPD, AgreesWithTheTool) {
  const TemporaryFolder folder;
  for (const char* lines : {
           "*ModelName: \"Z9\"\n*QZPPDUpdaters: \"A\"\n",
           "*ModelName : \"Z9\"\r*QZPPDUpdaters\t:\"A\"\r",
           "*ModelName: Z9\r\n*QZPPDUpdaters: A\r\n",
           "*ModelName: \"Z9\" \n*QZPPDUpdaters: \"A\" more\n",
           "*ModelName:\"\"\n*QZPPDUpdaters: \"\"\n",
           "*ModelName: \"Z9\"\n*QZPPDUpdaters: \" \"\n",
           "*ModelNames: \"Z6\"\n*ModelName: \"Z9\"\n*QZPPDUpdatersVersion: \"A\"\n",
           "*A: \"one\n*ModelName: \"\n*End\n*ModelName: \"Z9\"\n",
           "*A: \"one\n*ModelName: two\n*QZPPDUpdaters: three\"\n*ModelName: \"Z9\"\n",
           "*A\n*ModelName: \"Z6\"\n*ModelName: \"Z9\"\n",
           "*A: \"\n\n*% comment\"\n*ModelName: \"Z6\"\n*ModelName: \"Z9\"\n",
           "*A: \"\"\n*End\n*ModelName: \"Z9\"\n",
           "*A: \"open\n*OpenGroup: B\n*ModelName: \"Z6\"\n*CloseGroup: B\n*ModelName: \"Z9\"\n",
           "*OpenGroup: B\n*QZPPDUpdaters: \"A\"\n*CloseGroup: B\n*ModelName: \"Z9\"\n",
           "*OpenUI *B: PickOne\n*ModelName: \"Z6\"\n*B C: \"\n*ModelName\n\"\n*CloseUI: *B\n*ModelName: \"Z9\"\n",
           "*ModelName: \"Z9\"\n*ModelName: \"Z6\"\n*QZPPDUpdaters: \"\"\n*QZPPDUpdaters: \"A\"\n",
       }) {
    SCOPED_TRACE(lines);
    const std::string path = folder.file(kName, lines);
    const auto ppd = BasePPD::ofFile(path);
    const Report report = ExplainedRun::of({"socket://192.0.2.10:9100", path, std::nullopt}).report;
    ASSERT_TRUE(report.parse);
    EXPECT_FALSE(report.parse->failure);
    EXPECT_EQ(ppd->modelName, report.parse->modelName.value_or(""));
    EXPECT_EQ(ppd->namesUpdaters, !report.updaters.empty());
  }
}
