// SPDX-License-Identifier: MIT
#include "explain/compare/EarlierMedia.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::string ppd(const std::string& choice, const std::string& name) {
  return "*PPD-Adobe: \"4.3\"\n*QZMediaTypeGroup CustomMedia-category/Custom Paper: \"" + choice +
         "\"\n*End\n*OpenGroup: QZImagingOptions/Imaging\n*OpenUI *MediaType/Media: PickOne\n*DefaultMediaType: " +
         choice + "\n*MediaType " + choice + "/" + name + ": \"<</MediaType(" + choice +
         ")/QZMediaID(4711)>>setpagedevice\"\n*CloseUI: *MediaType\n*CloseGroup: QZImagingOptions\n";
}

std::string report(const std::string& choice, const std::string& name, const std::string& path) {
  return R"({"schema": "vorantis-autosetup-explain", "updaters": [{"media": []}, {"media": [
      {"device": {"name": ")" +
         name + R"(", "ID": "4711", "custom": true}, "choiceName": ")" + choice + R"(",
       "properties": "", "profiles": [{"spec": ".)" +
         choice + R"(.", "name": "P", "path": ")" + path +
         R"(", "outcome": "added"}, {"spec": null, "outcome": "skipped"}]},
      {"device": {"name": "Left out", "ID": "4712", "custom": true}, "choiceName": null, "profiles": []}]}]})";
}

std::vector<std::string> kinds(const std::string& earlier, const std::string& nowReport, const std::string& nowPPD) {
  const TemporaryFolder folder;
  const auto run = [](const std::string& /*snapshot*/) { return std::optional(ppd("Custom3", "Of a snapshot")); };
  std::vector<std::string> kinds;
  for (const MediaChange& change : EarlierMedia::changesSince(folder.file("old", earlier), nowReport, nowPPD, run)) {
    kinds.emplace_back(change.kindName());
  }
  return kinds;
}

}  // namespace

TEST(EarlierMedia, SinceAPPD) {
  EXPECT_THAT(kinds(ppd("Custom1", "A"), "", ppd("Custom1", "A")), IsEmpty());
  EXPECT_THAT(kinds(ppd("Custom1", "A"), "", ppd("Custom2", "B")), ElementsAre("renamed", "renumbered"));
}

TEST(EarlierMedia, SinceAReport) {
  const std::string now = report("Custom1", "A", "/p");
  EXPECT_THAT(kinds(now, now, ""), IsEmpty());
  EXPECT_THAT(kinds(report("Custom2", "A", "/p"), now, ""), ElementsAre("renumbered"));
  EXPECT_THAT(kinds(report("Custom1", "A", "/q"), now, ""), ElementsAre("profiles"));
  EXPECT_THAT(kinds(R"({"schema": "vorantis-autosetup-explain", "updaters": []})", now, ""), ElementsAre("added"));
}

TEST(EarlierMedia, SinceASnapshot) {
  EXPECT_THAT(kinds(R"( {"format": "vorantis-device-snapshot"})", "", ppd("Custom3", "Now")), ElementsAre("renamed"));
  const TemporaryFolder folder;
  const std::string path = folder.file("old", R"({"format": "vorantis-device-snapshot"})");
  const auto fails = [](const std::string& /*snapshot*/) { return std::optional<std::string>(); };
  EXPECT_THROW(EarlierMedia::changesSince(path, "", "", fails), EarlierMedia::Error);
}

TEST(EarlierMedia, WhatCannotBeComparedWith) {
  EXPECT_THROW(kinds("", "", ""), EarlierMedia::Error);
  EXPECT_THROW(kinds("{", "", ""), EarlierMedia::Error);
  EXPECT_THROW(kinds(R"({"schema": "other"})", "", ""), EarlierMedia::Error);
  EXPECT_THROW(kinds(R"({"schema": "vorantis-autosetup-explain"})", "", ""), EarlierMedia::Error);
  EXPECT_THROW(EarlierMedia::changesSince("/no/such/file", "", "", nullptr), EarlierMedia::Error);
}
