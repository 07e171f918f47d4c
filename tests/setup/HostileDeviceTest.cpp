// SPDX-License-Identifier: MIT
//
// Devices whose every text tries to become a statement: none may reach the scheduler.

#include <cups/ppd.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "explain/ExplainedRun.h"
#include "explain/watch/MemoryFile.h"
#include "library/Snapshot.h"
#include "setup/SetupFolder.h"
#include "setup/StrictSetup.h"
#include "tests/support/SnapshotDeviceModelLibrary.h"
#include "tests/support/TemporaryFolder.h"

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"  // what the scheduler asks is what is asked here

namespace {

using JSON = nlohmann::ordered_json;
using Names = std::multiset<std::string>;

constexpr const char* kURI = "socket://192.0.2.10:9100";
const std::string kFilter = "*cupsFilter2: \"application/vnd.cups-raster application/octet-stream 0 /tmp/evil\"";
const std::string kCommand = "*FoomaticRIPCommandLine: \"touch /tmp/owned\"";

// Texts that break out of a statement, or try to: with each end of a line that anybody knows, each way to close what is
// open, long ones, and those that look like what a setup itself writes.
std::vector<std::string> hostileTexts() {
  std::vector<std::string> texts;
  for (const std::string lineEnd :
       {"\n", "\r", "\r\n", "\n\n", "\n\r", "\v", "\f", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"}) {
    for (const char* closing : {"Canvas", "Canvas: \"\""}) texts.push_back(closing + lineEnd + kFilter + lineEnd);
    texts.push_back("Canvas: \"" + lineEnd + kCommand + lineEnd);
  }
  for (const std::string& statement : {kFilter, kCommand}) {
    texts.push_back(statement);
    texts.push_back("\n" + statement);
    texts.push_back("Canvas/x: \"\"\n*End\n" + statement + "\n*End");
    texts.push_back("Canvas: \"\n" + statement + "\n*% ");
    texts.push_back("Canvas\"\n*CloseUI: *MediaType\n*CloseGroup: QZImagingOptions\n" + statement);
    texts.push_back("Canvas: \"\"\n*CloseUI: *MediaType\n*CloseGroup: QZImagingOptions\n" + statement +
                    "\n*OpenGroup: QZImagingOptions/I\n*OpenUI *MediaType/M: PickOne\n*MediaType Custom1/C");
    texts.push_back("Canvas<0A>" + statement);
    texts.push_back("Canvas\\n" + statement);
    texts.push_back("Canvas%0A" + statement);
    texts.push_back(std::string("Canvas\0\n", 8) + statement);
    for (const std::size_t size : {200U, 230U, 254U, 508U}) {
      texts.push_back(std::string(size, 'x') + statement);
    }
    texts.push_back("Canvas: \"x\"\n*MediaType Custom1/" + std::string(40, 'y') + ": \"\"\n" + statement);
    texts.push_back("Canvas: \"\n*VorantisSetup: \"a\n" + statement + "\n*End");
    texts.push_back("17\n*QZMediaListVersion: \"1\"\n" + statement);
    texts.push_back("Custom1/A: \"/a.icc\"\n*de." + statement.substr(1));
    texts.push_back("4711) exch exec\"\n" + statement + "\n*% (");
    texts.push_back("/C.icc\"\n" + statement);
    texts.push_back("file:///c%22%0A*cupsFilter2:%20%22evil.icc");
    texts.push_back("file:///c.icc\n" + statement);
    texts.push_back("\xE2\x80\xAE" + statement + "\n\x1B[2J");
  }
  for (const char* text : {"\"",
                           "\"\"",
                           ": \"",
                           "a: \"b",
                           "*End",
                           "\n*End\n",
                           "\n*CloseUI: *MediaType",
                           "\n*%",
                           "\n",
                           "\r",
                           ":",
                           "/",
                           "<",
                           "<0a>",
                           "*",
                           "\n*Include: \"/etc/passwd\"",
                           "\n*JCLBegin: \"x\"",
                           "\n*cupsPreFilter: \"a 0 b\"",
                           "\n*APAutoSetupTool: \"/tmp/evil\"",
                           "\n*OpenUI *X/X: PickOne\n*DefaultX: Y\n*X Y/Y: \"\"\n*CloseUI: *X",
                           "\n*UIConstraints: *MediaType Plain *PageSize A4",
                           "\n*DefaultMediaType: Custom1",
                           "\n*QZPPDUpdaters: \"A\"",
                           "\n*cupsICCProfile .Plain./P: \"/evil.icc\""}) {
    texts.push_back("Canvas" + std::string(text));
    texts.emplace_back(text);
  }
  return texts;
}

constexpr std::array<const char*, 13> kFields = {"Name",    "MediumID",   "CategoryName", "CategoryID", "ParentID",
                                                 "gloss",   "version",    "ICCName",      "URL",        "path",
                                                 "profile", "OutputMode", "family"};

// A device with a hostile text in one of its fields.
std::string deviceWith(const std::string& field, const std::string& text) {
  JSON profile = {{"URL", "file:///c.icc"}, {"ICCName", "P"}, {"GlossEnhancer", "OFF"}, {"OutputMode", "Best"}};
  JSON medium = {{"Name", "Canvas"},    {"MediumID", "4711"},
                 {"CategoryName", "C"}, {"CategoryID", "CUSTOM"},
                 {"ParentID", "1001"},  {"PropertiesInfo", {{"DefaultGlossEnhancer", "FULLPAGE"}}}};
  JSON version = "17";
  JSON family = "CID:QZVR2PCLS;";
  if (medium.contains(field)) medium[field] = text;
  if (profile.contains(field)) profile[field] = text;
  if (field == "gloss") medium["PropertiesInfo"]["DefaultGlossEnhancer"] = text;
  if (field == "path") profile["URL"] = "file:///" + text;
  if (field == "profile") profile["GlossEnhancer"] = text;
  if (field == "version") version = text;
  if (field == "family") family = "CID:" + text;
  medium["ICCProfiles"] = JSON::array({profile});
  const JSON device = {
      {"deviceFamilyName", family},
      {"dataStore", {{"VMCustomMediaStorage", {{"MediumListVersion", version}, {"MediaInfo", {{"4711", medium}}}}}}}};
  const JSON snapshot = {
      {"format", "vorantis-device-snapshot"}, {"formatVersion", 1}, {"devices", JSON::array({device})}};
  return snapshot.dump();
}

std::string basePPD(const std::string& updaters) {
  return "*PPD-Adobe: \"4.3\"\n*ModelName: \"Z9\"\n*cupsLanguages: \"de fr\"\n"
         "*cupsFilter2: \"application/vnd.cups-raster application/octet-stream 0 good\"\n*QZPPDUpdaters: \"" +
         updaters +
         "\"\n*cupsICCQualifier1: QZGlossEnhancerSimplified\n*cupsICCQualifier3: \"OutputMode\"\n"
         "*QZValueAttributes MediaType.Plain: \"GESupport=YES;defaultGE='False'\"\n"
         "*OpenGroup: QZImagingOptions/Imaging Options\n*OpenUI *MediaType/Media Type: PickOne\n"
         "*DefaultMediaType: Plain\n*MediaType Plain/Plain: \"(1001)\"\n*CloseUI: *MediaType\n"
         "*OpenUI *OutputMode/Quality: PickOne\n*DefaultOutputMode: Best\n*OutputMode Best/Best: \"\"\n*CloseUI: "
         "*OutputMode\n"
         "*OpenUI *QZGlossEnhancerSimplified/Gloss: PickOne\n*DefaultQZGlossEnhancerSimplified: False\n"
         "*QZGlossEnhancerSimplified False/Off: \"\"\n*CloseUI: *QZGlossEnhancerSimplified\n*CloseGroup: "
         "QZImagingOptions\n";
}

bool isOfMedia(const std::string& name) {
  static const std::set<std::string> kNames = {"QZMediaTypeGroup", "QZMediaListVersion", "QZValueAttributes",
                                               "cupsICCProfile",   "QZVorantisFamily",   "QZPDLCommand",
                                               "VorantisSetup"};
  return kNames.count(name) != 0 || name.ends_with(".MediaType") || name.ends_with(".cupsICCProfile");
}

// The statements, filters, options and choices that libcups knows of the PPD, but for those of media; "refused" when it
// does not load it.
Names knownToCUPS(const std::string& text) {
  MemoryFile file;
  EXPECT_TRUE(file.append(text));
  const std::unique_ptr<ppd_file_t, void (*)(ppd_file_t*)> ppd(ppdOpenFile(file.path().c_str()), ppdClose);
  if (ppd == nullptr) return {"refused"};
  Names names;
  for (int index = 0; index < ppd->num_attrs; ++index) {
    const ppd_attr_t& attribute = *ppd->attrs[index];
    if (isOfMedia(attribute.name)) continue;
    names.insert(std::string(attribute.name) + ": " + (attribute.value == nullptr ? "" : attribute.value));
  }
  for (int index = 0; index < ppd->num_filters; ++index) names.insert(ppd->filters[index]);
  for (int group = 0; group < ppd->num_groups; ++group) {
    for (int index = 0; index < ppd->groups[group].num_options; ++index) {
      const ppd_option_t& option = ppd->groups[group].options[index];
      names.insert(option.keyword);
      for (int choice = 0; choice < option.num_choices; ++choice) {
        const std::string name = option.choices[choice].choice;
        if (!name.starts_with("Custom")) names.insert(std::string(option.keyword) + " " + name);
      }
    }
  }
  return names;
}

constexpr const char* kThorough = "ATMediaTypePCL3Qualifier1PPDUpdater";

bool isEssential(const std::string& field) {
  return field == "Name" || field == "MediumID" || field == "version" || field == "path" || field == "ICCName";
}

struct Counts {
  std::size_t tried = 0, refused = 0, hostileToTheTool = 0;
};

class HostileDeviceTest : public testing::TestWithParam<const char*> {
 protected:
  ~HostileDeviceTest() override {
    DeviceModelLibrary::setDefaultLibrary(nullptr);
    unsetenv("QZVORANTISMODEL_SNAPSHOT");
  }

  void attempt(const std::string& field, const std::string& text, const std::string& base, Counts& counts) const {
    const std::string snapshotText = deviceWith(field, text);
    const std::string path = folder_.file("z9.ppd", base);
    const std::string snapshotPath = folder_.file("p.json", snapshotText);
    SnapshotDeviceModelLibrary library(snapshot::Snapshot::fromJSON(snapshotText));
    DeviceModelLibrary::setDefaultLibrary(&library);
    const StrictSetup::Result result = StrictSetup::run({"vorantis-autosetup:p/z9.ppd",
                                                         snapshotPath,
                                                         path,
                                                         kURI,
                                                         {},
                                                         "",
                                                         std::make_shared<InputFile>(snapshotPath),
                                                         std::make_shared<InputFile>(path)});
    ++counts.tried;
    if (!result.failure.empty()) ++counts.refused;
    EXPECT_EQ(result.failure.empty(), !result.ppd.empty());
    if (result.failure.empty()) {
      EXPECT_EQ(knownToCUPS(result.ppd), knownToCUPS(base));
    }
    const ExplainedRun run = ExplainedRun::of({kURI, path, std::nullopt});
    if (!run.result.empty() && knownToCUPS(run.result) != knownToCUPS(base)) ++counts.hostileToTheTool;
  }

  TemporaryFolder folder_;
};

}  // namespace

TEST_P(HostileDeviceTest, GetsNoStatementIntoAResult) {
  const std::string base = basePPD(GetParam());
  ASSERT_EQ(knownToCUPS(base).count("refused"), 0U);
  Counts counts;
  const std::vector<std::string> texts = hostileTexts();
  // Each attempt is a setup, so each text is tried in a part of the fields, and each field with a part of the texts: a
  // third with the updater that uses all fields, less elsewhere.
  const bool isThorough = std::string(GetParam()) == kThorough;
  for (std::size_t index = 0; index < texts.size(); ++index) {
    for (std::size_t field = 0; field < kFields.size(); ++field) {
      if ((index + field) % (isThorough ? 3 : 5) != 0 || !(isThorough || isEssential(kFields[field]))) continue;
      SCOPED_TRACE(std::string(kFields[field]) + ": " + testing::PrintToString(texts[index]));
      attempt(kFields[field], texts[index], base, counts);
    }
  }
  // Else the texts would show nothing: the tool, which writes what its rules say, lets these through.
  EXPECT_GT(counts.hostileToTheTool, 10U);
  EXPECT_GE(counts.refused, counts.hostileToTheTool);
  EXPECT_LT(counts.refused, counts.tried) << "a text that breaks nothing is set up";
}

INSTANTIATE_TEST_SUITE_P(Updaters, HostileDeviceTest,
                         testing::Values(kThorough, "ATMediaTypePSPPDUpdater", "ATMediaTypePCL3PPDUpdater",
                                         "ATMediaTypePCL3Qualifier3PPDUpdater", "ATGlossyProfilePCL3PPDUpdater",
                                         "ATPDLCommandTypePPDUpdater ATMediaTypePSPPDUpdater"));

TEST(HostileDevice, HasManyTexts) {
  EXPECT_GT(hostileTexts().size(), 60U);
}
