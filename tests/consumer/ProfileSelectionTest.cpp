// SPDX-License-Identifier: MIT
//
// Asks a real consumer: libcups opens an example before and after its setup, options are marked, and the profile is
// chosen as CUPS documents it: each part of a spec is empty or equals the marked choice of the option that
// cupsICCQualifier1 to 3 name, and the first statement that matches counts.

#include <cups/ppd.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/Text.h"
#include "driver/ATAutoSetupTool.h"
#include "library/Snapshot.h"
#include "readers/ATDeviceDataReader.h"
#include "tests/support/SnapshotDeviceModelLibrary.h"
#include "tests/support/TemporaryFolder.h"

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"  // libcups' PPD interface is what the consumers use

namespace {

using Marks = std::map<std::string, std::string>;

struct ClosePPD {
  void operator()(ppd_file_t* ppd) const { ppdClose(ppd); }
};
using PPD = std::unique_ptr<ppd_file_t, ClosePPD>;

PPD opened(const std::string& path) {
  PPD ppd(ppdOpenFile(path.c_str()));
  EXPECT_NE(ppd, nullptr) << path;
  return ppd;
}

std::string qualifier(ppd_file_t* ppd, const char* keyword, const char* usual) {
  const ppd_attr_t* attribute = ppdFindAttr(ppd, keyword, nullptr);
  return attribute != nullptr && attribute->value != nullptr ? attribute->value : usual;
}

// The file of the profile that is chosen for the marked options, or "none".
std::string chosenProfile(ppd_file_t* ppd, const Marks& marks) {
  ppdMarkDefaults(ppd);
  for (const auto& [option, choice] : marks) {
    EXPECT_NE(ppdFindChoice(ppdFindOption(ppd, option.c_str()), choice.c_str()), nullptr) << option << " " << choice;
    ppdMarkOption(ppd, option.c_str(), choice.c_str());
  }
  const std::array<std::string, 3> options = {qualifier(ppd, "cupsICCQualifier1", "ColorModel"),
                                              qualifier(ppd, "cupsICCQualifier2", "MediaType"),
                                              qualifier(ppd, "cupsICCQualifier3", "Resolution")};
  for (auto* profile = ppdFindAttr(ppd, "cupsICCProfile", nullptr); profile != nullptr;
       profile = ppdFindNextAttr(ppd, "cupsICCProfile", nullptr)) {
    const auto parts = Text::split(std::string_view(profile->spec), ".");
    bool matches = parts.size() == 3;
    for (std::size_t index = 0; matches && index < 3; ++index) {
      const ppd_choice_t* marked = ppdFindMarkedChoice(ppd, options[index].c_str());
      matches = parts[index].empty() || (marked != nullptr && parts[index] == marked->choice);
    }
    if (matches) return profile->value;
  }
  return "none";
}

// The document after the setup of the example in the folder.
PPD setUp(const std::string& folder) {
  registerReaderImplementations();
  SnapshotDeviceModelLibrary library(snapshot::Snapshot::fromFile(folder + "/snapshot.json"));
  DeviceModelLibrary::setDefaultLibrary(&library);
  const std::string input = folder + "/input.ppd";
  const std::array<const char*, 3> arguments = {"tool", "socket://192.0.2.10:9100", input.c_str()};
  ATMemoryOutput output;
  EXPECT_TRUE(ATAutoSetupTool::initWithArgc(3, arguments.data())->run(output));
  DeviceModelLibrary::setDefaultLibrary(nullptr);
  const TemporaryFolder temporary;
  return opened(temporary.file("output.ppd", output.bytes()));
}

struct Selection {
  Marks marks;
  const char* before;  // null: the choice is not there yet
  const char* after;
};

#define FACTORY "/Library/Printers/Vorantis/Profiles/"
#define DEVICE "/Library/ColorSync/Profiles/Custom/"

void expectSelections(const std::string& example, const std::vector<Selection>& selections) {
  const std::string folder = std::string(AT_EXAMPLES_DIR) + "/" + example;
  const PPD before = opened(folder + "/input.ppd");
  const PPD after = setUp(folder);
  for (const auto& [marks, fileBefore, fileAfter] : selections) {
    std::string what = example;
    for (const auto& [option, choice] : marks) what += " " + option + "=" + choice;
    SCOPED_TRACE(what);
    if (fileBefore != nullptr) {
      EXPECT_EQ(chosenProfile(before.get(), marks), fileBefore);
    }
    EXPECT_EQ(chosenProfile(after.get(), marks), fileAfter);
  }
}

TEST(ProfileSelection, GeneralSpecs) {
  expectSelections("pcl3", {
                               {{{"MediaType", "Plain"}}, FACTORY "plain.icc", DEVICE "plain-calibrated.icc"},
                               {{{"MediaType", "Glossy"}}, FACTORY "glossy.icc", FACTORY "glossy.icc"},
                               {{{"MediaType", "Custom1"}}, nullptr, DEVICE "canvas satin.icc"},
                               {{{"MediaType", "Custom2"}}, nullptr, DEVICE "proof.icc"},
                           });
}

TEST(ProfileSelection, ThirdQualifier) {
  const auto media = [](const char* name, const char* quality) {
    return Marks{{"MediaType", name}, {"Quality", quality}};
  };
  expectSelections("qualifier3", {
                                     {media("Plain", "Fast"), FACTORY "plain-fast.icc", DEVICE "plain-calibrated.icc"},
                                     {media("Plain", "Best"), FACTORY "plain-best.icc", DEVICE "plain-calibrated.icc"},
                                     {media("Glossy", "Fast"), FACTORY "glossy-fast.icc", FACTORY "glossy-fast.icc"},
                                     {media("Glossy", "Best"), FACTORY "glossy-best.icc", FACTORY "glossy-best.icc"},
                                     {media("Custom1", "Fast"), nullptr, DEVICE "canvas.icc"},
                                     {media("Custom1", "Best"), nullptr, DEVICE "canvas.icc"},
                                 });
}

TEST(ProfileSelection, FirstAndThirdQualifier) {
  const auto media = [](const char* name, const char* gloss, const char* mode) {
    return Marks{{"MediaType", name}, {"QZGlossEnhancerSimplified", gloss}, {"OutputMode", mode}};
  };
  expectSelections(
      "qualifier1",
      {
          {media("Plain", "False", "Best"), FACTORY "plain-best.icc", FACTORY "plain-best.icc"},
          {media("Plain", "True", "Normal"), FACTORY "plain-normal-ge.icc", FACTORY "plain-normal-ge.icc"},
          {media("Glossy", "False", "Best"), FACTORY "glossy-best.icc", DEVICE "glossy-calibrated.icc"},
          {media("Glossy", "True", "Best"), FACTORY "glossy-best-ge.icc", FACTORY "glossy-best-ge.icc"},
          {media("Glossy", "True", "Normal"), FACTORY "glossy-normal-ge.icc", FACTORY "glossy-normal-ge.icc"},
          // The device has one profile, for the best mode; only those of the opposite gloss setting are completed.
          {media("Glossy", "False", "Normal"), FACTORY "glossy-normal.icc", "none"},
          {media("Custom1", "False", "Best"), nullptr, DEVICE "canvas.icc"},
          {media("Custom1", "True", "Best"), nullptr, DEVICE "canvas-ge.icc"},
          {media("Custom1", "True", "Normal"), nullptr, "none"},
      });
}

TEST(ProfileSelection, GlossSettingOfGlossyMedia) {
  const auto media = [](const char* name, const char* gloss) {
    return Marks{{"MediaType", name}, {"QZGlossEnhancer", gloss}};
  };
  expectSelections(
      "glossy",
      {
          {media("Plain", "off-ge"), FACTORY "plain.icc", FACTORY "plain.icc"},
          {media("Plain", "whole-page-ge"), FACTORY "plain.icc", FACTORY "plain.icc"},
          {media("Glossy", "off-ge"), FACTORY "glossy-off-ge.icc", DEVICE "glossy-calibrated.icc"},
          {media("Glossy", "economode-ge"), FACTORY "glossy-economode-ge.icc", FACTORY "glossy-economode-ge.icc"},
          {media("Glossy", "whole-page-ge"), FACTORY "glossy-whole-page-ge.icc", FACTORY "glossy-whole-page-ge.icc"},
          {media("Custom1", "off-ge"), nullptr, DEVICE "canvas.icc"},
          {media("Custom1", "economode-ge"), nullptr, DEVICE "canvas-ge.icc"},
          {media("Custom1", "whole-page-ge"), nullptr, DEVICE "canvas-ge.icc"},
          {media("Custom2", "off-ge"), nullptr, DEVICE "proof.icc"},
          {media("Custom2", "whole-page-ge"), nullptr, DEVICE "proof.icc"},
      });
}

}  // namespace
