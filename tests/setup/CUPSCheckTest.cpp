// SPDX-License-Identifier: MIT
#include "setup/CUPSCheck.h"

#include <cups/ppd.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <string>

#include "tests/support/TemporaryFolder.h"

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"  // to be strict for a while

namespace {

constexpr const char* kAttributes =
    "*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n*FileVersion: \"1\"\n*LanguageVersion: English\n"
    "*LanguageEncoding: ISOLatin1\n*PCFileName: \"Z.PPD\"\n*Product: \"(Z)\"\n*PSVersion: \"(3010.000) 0\"\n"
    "*ModelName: \"Z\"\n*ShortNickName: \"Z\"\n*NickName: \"Z\"\n*Manufacturer: \"V\"\n";

constexpr const char* kPage =
    "*OpenUI *PageSize/Size: PickOne\n*DefaultPageSize: A4\n*PageSize A4/A4: \"\"\n*CloseUI: *PageSize\n"
    "*DefaultImageableArea: A4\n*ImageableArea A4: \"0 0 595 842\"\n*DefaultPaperDimension: A4\n"
    "*PaperDimension A4: \"595 842\"\n";

std::string loadable() {
  return std::string(kAttributes) + kPage;
}

/// The process can open no more files while it lives.
class NoDescriptors {
 public:
  NoDescriptors() {
    getrlimit(RLIMIT_NOFILE, &before_);
    const int lowestFree = dup(STDIN_FILENO);
    close(lowestFree);
    const rlimit limit = {static_cast<rlim_t>(lowestFree), before_.rlim_max};
    setrlimit(RLIMIT_NOFILE, &limit);
  }
  NoDescriptors(const NoDescriptors&) = delete;
  NoDescriptors& operator=(const NoDescriptors&) = delete;
  ~NoDescriptors() { setrlimit(RLIMIT_NOFILE, &before_); }

 private:
  rlimit before_ = {};
};

int lowestFreeDescriptor() {
  const int descriptor = dup(STDIN_FILENO);
  close(descriptor);
  return descriptor;
}

std::string reasonFor(const std::string& content) {
  return CUPSCheck::whyRefused(content).value_or("none");
}

}  // namespace

TEST(CUPSCheck, HasNothingAgainstWhatCUPSLoads) {
  EXPECT_EQ(CUPSCheck::whyRefused(loadable()), std::nullopt);
}

TEST(CUPSCheck, LooksAtTheWholeOfALongPPD) {
  std::string text = loadable();
  while (text.size() < 1000000) text += "*QZFiller Name: \"a value of some length\"\n";
  EXPECT_EQ(CUPSCheck::whyRefused(text), std::nullopt);
  EXPECT_NE(CUPSCheck::whyRefused(text + "no statement\n"), std::nullopt);
}

TEST(CUPSCheck, TellsTheReasonAndTheLine) {
  EXPECT_THAT(reasonFor(std::string(kAttributes) + "no statement\n" + kPage),
              AllOf(EndsWith(" in line 13"), Not(StartsWith(" "))));
  EXPECT_THAT(reasonFor(loadable() + "no statement\n"), EndsWith(" in line 21"));
}

TEST(CUPSCheck, HoldsThePPDToTheLimitsOfCUPS) {
  const auto longest = [](const char* begin, std::size_t size, const char* end) {
    return CUPSCheck::whyRefused(loadable() + begin + std::string(size - std::string(begin).size(), 'x') + end);
  };
  EXPECT_EQ(longest("*", 41, ": \"\"\n"), std::nullopt);
  EXPECT_NE(longest("*", 42, ": \"\"\n"), std::nullopt);
  EXPECT_EQ(longest("*A: \"", 254, "\"\n"), std::nullopt);
  EXPECT_NE(longest("*A: \"", 255, "\"\n"), std::nullopt);
}

TEST(CUPSCheck, RefusesWhatIsNoPPD) {
  EXPECT_NE(CUPSCheck::whyRefused(""), std::nullopt);
  EXPECT_NE(CUPSCheck::whyRefused("\n"), std::nullopt);
  EXPECT_NE(CUPSCheck::whyRefused("*FormatVersion: \"4.3\"\n"), std::nullopt);
  EXPECT_NE(CUPSCheck::whyRefused(std::string(1, '\0')), std::nullopt);
  EXPECT_NE(CUPSCheck::whyRefused("\x1F\x8B"), std::nullopt);
}

TEST(CUPSCheck, IsNotStrict) {
  EXPECT_EQ(CUPSCheck::whyRefused(loadable() + "*Keyword\n"), std::nullopt);
  ppdSetConformance(PPD_CONFORM_STRICT);
  EXPECT_EQ(CUPSCheck::whyRefused(loadable() + "*Keyword\n"), std::nullopt);
  ppdSetConformance(PPD_CONFORM_RELAXED);
}

TEST(CUPSCheck, TakesTheLineEndsThatCUPSTakes) {
  std::string text = loadable();
  for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2) text.insert(at, "\r");
  EXPECT_EQ(CUPSCheck::whyRefused(text), std::nullopt);
}

TEST(CUPSCheck, LeavesNoDescriptorOpen) {
  const int before = lowestFreeDescriptor();
  CUPSCheck::whyRefused(loadable());
  CUPSCheck::whyRefused("");
  EXPECT_EQ(lowestFreeDescriptor(), before);
}

TEST(CUPSCheck, SaysThatItCouldNotLook) {
  std::string reason;
  {
    const NoDescriptors limit;  // no longer than needed: sanitizers look at memory through descriptors
    reason = reasonFor(loadable());
  }
  EXPECT_THAT(reason, HasSubstr("no memory to check it in"));
}

TEST(CUPSCheck, WritesNoFile) {
  const TemporaryFolder folder;
  const std::string before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());
  EXPECT_EQ(CUPSCheck::whyRefused(loadable()), std::nullopt);
  std::filesystem::current_path(before);
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

namespace {

const std::string kMedia =
    "*OpenUI *MediaType/Media: PickOne\n*DefaultMediaType: Plain\n*MediaType Plain/Plain: \"(1001)\"\n%s"
    "*CloseUI: *MediaType\n";

std::string withMedia(const std::string& choices, const std::string& statements = "") {
  std::string media = kMedia;
  return loadable() + media.replace(media.find("%s"), 2, choices) + statements;
}

std::string foundBetween(const std::string& base, const std::string& result) {
  return CUPSCheck::foreignStatement(base, result).value_or("none");
}

}  // namespace

TEST(CUPSCheck, FindsNothingForeignInTheMediaOfASetup) {
  EXPECT_EQ(foundBetween(withMedia(""), withMedia("")), "none");
  EXPECT_EQ(foundBetween(
                withMedia("*MediaType Custom1/Old: \"\"\n", "*QZMediaListVersion: 1\n"),
                withMedia("*MediaType Custom1/Canvas: \"(4711)\"\n*de.MediaType Custom1/Leinwand: \"\"\n",
                          "*QZMediaListVersion: 2\n*QZMediaTypeGroup CustomMedia-category/Custom Paper: "
                          "\"Custom1\"\n*End\n*QZValueAttributes MediaType.Custom1: \"a=b\"\n*cupsICCProfile "
                          ".Custom1./Canvas: \"/c.icc\"\n*de.cupsICCProfile .Custom1./Canvas: \"\"\n*QZVorantisFamily: "
                          "\"F\"\n*QZPDLCommand end-page: \"pdl\"\n*VorantisSetup: \"a\"\n")),
            "none");
}

TEST(CUPSCheck, FindsWhatIsNotOfMedia) {
  for (const std::string statement :
       {"*cupsFilter: \"application/vnd.cups-raster 0 evil\"\n",
        "*cupsFilter2: \"application/vnd.cups-raster application/octet-stream 0 evil\"\n",
        "*FoomaticRIPCommandLine: \"touch /tmp/owned\"\n", "*cupsPreFilter: \"application/pdf 0 evil\"\n",
        "*JCLBegin: \"evil\"\n", "*cupsCommands: \"evil\"\n", "*APAutoSetupTool: \"/tmp/evil\"\n",
        "*UIConstraints: *MediaType Plain *PageSize A4\n",
        "*OpenUI *Evil/Evil: PickOne\n*DefaultEvil: A\n*Evil A/A: \"\"\n*CloseUI: *Evil\n"}) {
    EXPECT_NE(foundBetween(withMedia(""), withMedia("", statement)), "none") << statement;
    EXPECT_NE(foundBetween(withMedia("", statement), withMedia("")), "none") << statement;
    EXPECT_EQ(foundBetween(withMedia("", statement), withMedia("", statement)), "none") << statement;
  }
  EXPECT_NE(foundBetween(withMedia(""), withMedia("*MediaType Other/Other: \"evil\"\n")), "none");
  EXPECT_NE(
      foundBetween(withMedia("*MediaType Other/Other: \"good\"\n"), withMedia("*MediaType Other/Other: \"evil\"\n")),
      "none");
}

TEST(CUPSCheck, TellsOfAResultThatCUPSDoesNotLoad) {
  EXPECT_THAT(foundBetween(loadable(), "no PPD\n"), HasSubstr(" in line 1"));
}
