// SPDX-License-Identifier: MIT
//
// What the updaters say of a value that is not of the type that they need: the reason is all that the log has of it.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "base/ATException.h"
#include "tests/updaters/TestDevice.h"
#include "tests/updaters/TestDocument.h"
#include "updaters/ATMediaTypePCL3Qualifier1PPDUpdater.h"
#include "updaters/ATPDLCommandTypePPDUpdater.h"

namespace {

using Updater = ATMediaTypePCL3Qualifier1PPDUpdater;

std::string reasonOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const ATException& exception) {
    return exception.reason();
  }
  return "nothing was thrown";
}

const std::string kDocument = mediaTypes("*MediaType Plain/Plain: \"12\"\n") + fullGlossOption("off-ge");

// The reason for which a medium ends the run.
std::string reasonFor(const DeviceValue& record) {
  const auto ppd = documentFromText(kDocument);
  return reasonOf([&] { Updater().updatePPD(ppd.get(), std::make_unique<FakeReader>(mediaList({record})).get()); });
}

std::string wrongType(const std::string& use) {
  return "value of the wrong type: " + use;
}

}  // namespace

TEST(WrongTypes, InAMedium) {
  EXPECT_EQ(reasonFor("text"), wrongType("no map to look \"CategoryID\" up in"));
  EXPECT_EQ(reasonFor(mapOf({{"CategoryID", "CUSTOM"}, {"MediaName", number(5)}, {"ID", "1"}})),
            wrongType("media name"));
  EXPECT_EQ(reasonFor(mapOf({{"CategoryID", "FACTORY"}, {"ID", number(12)}, {"DefaultGlossEnhancer", "OFF"}})),
            wrongType("media ID to search for"));
  EXPECT_EQ(reasonFor(mapOf({{"CategoryID", "FACTORY"}, {"DefaultGlossEnhancer", number(1)}})),
            wrongType("default gloss enhancer"));
}

TEST(WrongTypes, OfTheVersion) {
  const auto ppd = documentFromText(kDocument);
  const FakeReader reader(mediaList({}, number(17)));
  EXPECT_EQ(reasonOf([&] { Updater().updatePPD(ppd.get(), &reader); }), wrongType("media list version"));
}

TEST(WrongTypes, OfChoiceNames) {
  const auto ppd = documentFromText(kDocument);
  const auto record = mapOf({{"PPDName", number(1)}, {"MediaName", "Canvas"}, {"ID", "1"}});
  EXPECT_EQ(reasonOf([&] { Updater().addMediaWithData(record, *ppd); }), wrongType("choice name"));
  EXPECT_EQ(reasonOf([&] { Updater().addAttributesForMediaWithData(record, *ppd); }), wrongType("choice name"));
  EXPECT_EQ(reasonOf([&] { Updater().addPPDNameForMediaWithIndex(1, "text"); }),
            wrongType("a media record that is no map"));
}

TEST(WrongTypes, InProfiles) {
  const auto ppd = documentFromText(
      "*cupsICCQualifier1: \"QZGlossEnhancerSimplified\"\n"
      "*cupsICCQualifier3: \"OutputMode\"\n");
  const auto added = [&](const DeviceValue& name, const DeviceValue& url) {
    const auto record = mediumWithProfiles("Custom1", listOf({profile(name, url)}));
    return reasonOf([&] { ATMediaTypePCL3PPDUpdater().addICCProfileForMediaWithData(record, *ppd); });
  };
  EXPECT_EQ(added(number(1), "/c.icc"), wrongType("profile name"));
  EXPECT_EQ(added("Canvas", number(1)), wrongType("profile URL"));
  const auto withoutGloss = mediumWithProfiles("Custom1", listOf({profile("Canvas", "/c.icc")}));
  EXPECT_EQ(reasonOf([&] { Updater().adjustedMediaData(withoutGloss, *ppd); }),
            "value is absent: gloss value of a profile entry");
  const auto withNumber = mapOf({{"PPDName", number(1)}, {"ICCProfiles", listOf({})}});
  EXPECT_EQ(reasonOf([&] { Updater().adjustedMediaData(withNumber, *ppd); }), wrongType("media qualifier"));
}

TEST(WrongTypes, OfAFactoryProfilesSpec) {
  EXPECT_EQ(
      reasonOf([] { Updater().twoComponentICCProfileSpecFor3ComponentSpec("Plain"); }),
      "-[ATMediaTypePCL3Qualifier3PPDUpdater twoComponentICCProfileSpecFor3ComponentSpec:]: position out of range");
}

TEST(WrongTypes, OfTheFamilyName) {
  const FakeLibrary library(number(1));
  const auto ppd = documentFromText(kDocument);
  FakeReader reader;
  reader.uri = "socket://a";
  EXPECT_EQ(reasonOf([&] { ATPDLCommandTypePPDUpdater().updatePPD(ppd.get(), &reader); }),
            wrongType("device family name"));
}
