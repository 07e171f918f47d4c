// SPDX-License-Identifier: MIT
#include "updaters/ATMediaTypePSPPDUpdater.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/updaters/TestDevice.h"
#include "tests/updaters/TestDocument.h"

namespace {

const std::string kPlain = "*MediaType Plain/Plain: \"/QZDict /ProcSet findresource /SetMediaId get (12) exch exec\"\n";

std::string updated(const std::string& text, const DeviceValue& data) {
  const auto ppd = documentFromText(text);
  const FakeReader reader(data);
  EXPECT_TRUE(ATMediaTypePSPPDUpdater().updatePPD(ppd.get(), &reader));
  return textOf(*ppd);
}

}  // namespace

TEST(ATMediaTypePSPPDUpdater, TheCodeHoldsTheIDAndNotTheName) {
  EXPECT_EQ(ATMediaTypePSPPDUpdater().mediaTypeChoiceCodeWithName("Custom1", "4711"),
            "/QZDict /ProcSet findresource /SetMediaId get (4711) exch exec");
  EXPECT_EQ(ATMediaTypePSPPDUpdater().mediaTypeChoiceCodeWithName("", "4711"),
            "/QZDict /ProcSet findresource /SetMediaId get (4711) exch exec");
}

TEST(ATMediaTypePSPPDUpdater, TheIDIsInsertedAsItStands) {
  EXPECT_EQ(ATMediaTypePSPPDUpdater().mediaTypeChoiceCodeWithName("Custom1", "a(b)\\c %@"),
            "/QZDict /ProcSet findresource /SetMediaId get (a(b)\\c %@) exch exec");
}

TEST(ATMediaTypePSPPDUpdater, AnIDThatIsNoTextIsFormatted) {
  const ATMediaTypePSPPDUpdater updater;
  EXPECT_EQ(updater.mediaTypeChoiceCodeWithName("Custom1", number(4711)),
            "/QZDict /ProcSet findresource /SetMediaId get (4711) exch exec");
  EXPECT_EQ(updater.mediaTypeChoiceCodeWithName("Custom1", {}),
            "/QZDict /ProcSet findresource /SetMediaId get ((null)) exch exec");
}

TEST(ATMediaTypePSPPDUpdater, CustomMediaGetCodesThatDifferOnlyInTheID) {
  EXPECT_EQ(updated("*PPD-Adobe: \"4.3\"\n" + mediaTypes(kPlain),
                    mediaList({customMedium("Canvas", "4711"), customMedium("Linen", "4712")})),
            "*PPD-Adobe: \"4.3\"\n"
            "*QZMediaTypeGroup CustomMedia-category/Custom Paper: \"Custom1,\n"
            "Custom2\"\n"
            "*End\n"
            "\n"
            "*QZMediaListVersion: 17\n" +
                mediaTypes(kPlain + "*MediaType Custom1/Canvas: "
                                    "\"/QZDict /ProcSet findresource /SetMediaId get (4711) exch exec\"\n"
                                    "*MediaType Custom2/Linen: "
                                    "\"/QZDict /ProcSet findresource /SetMediaId get (4712) exch exec\"\n"));
}

TEST(ATMediaTypePSPPDUpdater, TheChoiceIsFoundAgainByTheIDInItsCode) {
  const auto ppd = documentFromText(mediaTypes(kPlain));
  const ATMediaTypePSPPDUpdater updater;
  const DeviceValue record = mapOf({{"PPDName", "Custom1"}, {"ID", "4711"}, {"MediaName", "Canvas"}});
  ASSERT_TRUE(updater.addMediaWithData(record, *ppd));
  EXPECT_EQ(updater.ppdNameForMediaWithID("4711", *ppd).description(), "Custom1");
}

TEST(ATMediaTypePSPPDUpdater, WithoutCustomMediaOnlyCleanupGlossAndVersionChangeThePPD) {
  const std::string gloss = fullGlossOption("whole-page-ge");
  EXPECT_EQ(updated("*PPD-Adobe: \"4.3\"\n"
                    "*QZValueAttributes MediaType.Plain: \"glossy=YES;defaultGE='x'\"\n"
                    "*QZValueAttributes MediaType.Matte: \"defaultGE='x'\"\n"
                    "*QZMediaListVersion: 3\n" +
                        mediaTypes(kPlain) + gloss,
                    mediaList({mapOf({{"MediaName", "Plain"}, {"ID", "12"}, {"DefaultGlossEnhancer", "OFF"}})})),
            "*PPD-Adobe: \"4.3\"\n"
            "*QZValueAttributes MediaType.Plain: \"glossy=YES;defaultGE='off-ge'\"\n"
            "*QZValueAttributes MediaType.Matte: \"defaultGE='off-ge'\"\n"
            "*QZMediaListVersion: 17\n" +
                mediaTypes(kPlain) + gloss);
}

TEST(ATMediaTypePSPPDUpdater, ManagesNoProfiles) {
  const std::string text =
      "*QZcupsICCProfile .Plain./P: \"Factory;;/factory.icc\"\n"
      "*cupsICCProfile .Plain./P: \"/p.icc\"\n"
      "*cupsICCProfile .Custom1./C: \"/c.icc\"\n"
      "*QZMediaTypeGroup CustomMedia-category/Custom Paper: \"Custom1\"\n";
  const DeviceValue profiles = listOf({profile("New", "file:///new.icc")});
  const DeviceValue custom = customMedium("Canvas", "4711");
  custom.map()->set("ICCProfiles", profiles);
  EXPECT_EQ(updated(text + mediaTypes(kPlain), mediaList({mapOf({{"ID", "12"}, {"ICCProfiles", profiles}}), custom})),
            "*QZcupsICCProfile .Plain./P: \"Factory;;/factory.icc\"\n"
            "*cupsICCProfile .Plain./P: \"/p.icc\"\n"
            "*cupsICCProfile .Custom1./C: \"/c.icc\"\n"
            "*QZMediaTypeGroup CustomMedia-category/Custom Paper: \"Custom1\"\n"
            "*End\n"
            "\n"
            "*QZMediaListVersion: 17\n" +
                mediaTypes(kPlain + "*MediaType Custom1/Canvas: "
                                    "\"/QZDict /ProcSet findresource /SetMediaId get (4711) exch exec\"\n"));
}
