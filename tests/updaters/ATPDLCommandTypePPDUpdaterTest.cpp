// SPDX-License-Identifier: MIT
#include "updaters/ATPDLCommandTypePPDUpdater.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "base/ATException.h"
#include "readers/ATPPDDataReader.h"
#include "tests/support/TestLog.h"
#include "tests/updaters/TestDevice.h"
#include "tests/updaters/TestDocument.h"

namespace {

constexpr const char* kURI = "socket://192.0.2.10:9100";
constexpr const char* kFamilyMessage = "pinwax ==> ATAutoSetupTool == getDeviceFamilyName == Family name extracted ";
constexpr const char* kFamilySignature = "-[ATPDLCommandTypePPDUpdater getDeviceFamilyName:]";

using Commands = std::vector<std::pair<std::string, std::vector<std::string>>>;

const Commands kFirstSet = {
    {"initial-reset", {"pdl-flush-raster", "pdl-reset", "pdl-end-job-pjl"}},
    {"pjl-job-header",
     {"pdl-string-code-set", "pdl-job-name", "pdl-job-attr6-app-name", "pdl-job-attr11-system-version",
      "pdl-job-attr14-driver-version", "pdl-pjl-born-on-date"}},
    {"pcl-job-header",
     {"pdl-language-version", "pdl-pcl-media-source", "pdl-media-type", "velmor-pdl-media-type", "pdl-print-quality",
      "pdl-page-count", "pdl-color-mode", "pdl-pcl-color-space-mode", "pcl-cutter", "pcl-inkedarea", "pdl-media-size",
      "pdl-resolution", "velmor-pdl-paper-width-height"}},
    {"begin-page", {"pdl-max-raster-width", "pdl-raster-data-format-vorantis-rgb", "pdl-raster-cmd-start"}},
    {"end-page", {"pdl-raster-end", "pdl-form-feed"}},
    {"job-aborting", {"pdl-flush-raster", "pdl-cancel"}},
    {"job-final-reset", {"pdl-reset", "pdl-end-job", "pdl-pjl-end-job"}},
};

const Commands kSecondSet = {
    {"initial-reset", {"pdl-flush-raster", "pdl-form-feed", "pdl-reset", "pdl-end-job-pjl", "pdl-job"}},
    {"pjl-job-header",
     {"pdl-string-code-set",
      "pdl-set-jobname",
      "pdl-pjl-born-on-date",
      "pdl-job-attr1-user-name",
      "pdl-job-attr2-client-name",
      "pdl-job-attr3-domain-name",
      "pdl-job-attr4-timestamp",
      "pdl-job-attr5-uuid",
      "pdl-job-attr6-app-name",
      "pdl-job-attr8-account-id",
      "pdl-job-attr11-system-version",
      "pdl-job-attr14-driver-version",
      "pdl-driver-usage-metrics",
      "pdl-media-source",
      "pdl-paper-width-height",
      "pdl-set-printarea",
      "pdl-margin-layout",
      "pdl-set-margins-size",
      "pdl-set-margins",
      "pdl-set-borderless-method",
      "pdl-set-cutter",
      "pdl-set-y-cutter",
      "pdl-set-mediaid",
      "pdl-max-detail",
      "pdl-set-gloss-enahncer",
      "pdl-extrapasses",
      "pdl-render-mode",
      "pdl-color-space-mode",
      "pdl-rendering-intent",
      "pdl-lightness-adjustment",
      "pdl-red-adjustment",
      "pdl-green-adjustment",
      "pdl-blue-adjustment",
      "pdl-cropmarks"}},
    {"pcl-job-header", {"pdl-language-version", "pdl-print-quality", "pdl-resolution"}},
    {"begin-page", {"pdl-max-raster-width", "pdl-raster-data-format-tavik-rgb", "pdl-raster-cmd-start"}},
    {"end-page", {"pdl-raster-end", "pdl-form-feed"}},
    {"job-aborting", {"pdl-flush-raster", "pdl-cancel"}},
    {"job-final-reset", {"pdl-reset", "pdl-end-job", "pdl-pjl-end-job"}},
};

std::string block(const std::string& family, const Commands& set) {
  std::string text = "*QZVorantisFamily: \"" + family + "\"\n";
  for (const auto& [key, commands] : set) {
    text += "*QZPDLCommand " + key + ": \"";
    for (std::size_t each = 0; each < commands.size(); ++each) text += (each == 0 ? "" : ";;\n") + commands[each];
    text += "\"\n*End\n";
  }
  return text;
}

const std::string kFirstBlock = block("VR-K-410", kFirstSet);
const std::string kSecondBlock = block("VR-K-Q", kSecondSet);

// What the updater adds to a document for a printer with this URI or printer ID.
std::string added(const std::optional<std::string>& uri) {
  const std::string text = "*PPD-Adobe: \"4.3\"\n";
  const auto ppd = documentFromText(text);
  FakeReader reader;
  reader.uri = uri;
  EXPECT_TRUE(ATPDLCommandTypePPDUpdater().updatePPD(ppd.get(), &reader));
  const std::string result = textOf(*ppd);
  EXPECT_TRUE(result.starts_with(text));
  return result.substr(text.size());
}

std::string addedForFamily(const DeviceValue& familyName) {
  const FakeLibrary library(familyName);
  return added(kURI);
}

std::string familyIn(const DeviceValue& familyName) {
  const FakeLibrary library(familyName);
  return ATPDLCommandTypePPDUpdater().getDeviceFamilyName(kURI);
}

}  // namespace

TEST(ATPDLCommandTypePPDUpdater, FailsWithoutADocumentOrAReader) {
  FakeLibrary library("CID:QZVR2PCLS");
  const auto ppd = documentFromText("*PPD-Adobe: \"4.3\"\n");
  FakeReader reader;
  reader.uri = kURI;
  EXPECT_FALSE(ATPDLCommandTypePPDUpdater().updatePPD(nullptr, &reader));
  EXPECT_FALSE(ATPDLCommandTypePPDUpdater().updatePPD(ppd.get(), nullptr));
  EXPECT_FALSE(ATPDLCommandTypePPDUpdater().updatePPD(nullptr, nullptr));
  EXPECT_EQ(textOf(*ppd), "*PPD-Adobe: \"4.3\"\n");
  EXPECT_EQ(library.familyQuestions, 0);
}

TEST(ATPDLCommandTypePPDUpdater, WithoutAPrinterURIChangesNothingAndSucceeds) {
  FakeLibrary library("CID:QZVR2PCLS");
  EXPECT_EQ(added(std::nullopt), "");
  EXPECT_EQ(added(""), "");
  EXPECT_EQ(library.familyQuestions, 0);
}

TEST(ATPDLCommandTypePPDUpdater, TheFirstSetIsWrittenLineByLine) {
  EXPECT_EQ(addedForFamily("MFG:X;CID:QZVR2PCLS;MDL:Y").substr(0, 125),
            "*QZVorantisFamily: \"VR-K-410\"\n"
            "*QZPDLCommand initial-reset: \"pdl-flush-raster;;\n"
            "pdl-reset;;\n"
            "pdl-end-job-pjl\"\n"
            "*End\n"
            "*QZPDLComman");
}

TEST(ATPDLCommandTypePPDUpdater, TheSetsHaveTheirNumbersOfHeaderCommands) {
  EXPECT_EQ(kFirstSet[1].second.size(), 6U);
  EXPECT_EQ(kFirstSet[2].second.size(), 13U);
  EXPECT_EQ(kSecondSet[1].second.size(), 34U);
  EXPECT_EQ(kSecondSet[2].second.size(), 3U);
}

TEST(ATPDLCommandTypePPDUpdater, TwoFamiliesGetTheFirstSet) {
  EXPECT_EQ(addedForFamily("MFG:X;CID:QZVR2PCLS;MDL:Y"), kFirstBlock);
  EXPECT_EQ(addedForFamily("CID:QZVRPCLS"), kFirstBlock);
}

TEST(ATPDLCommandTypePPDUpdater, EveryOtherFamilyGetsTheSecondSet) {
  for (const char* name : {"CID:QZVRPSZ", "CID:QZVRPCLAT", "CID:Anything", "CID:", "CID:a:b", "MFG:X;MDL:Y", "X", ";",
                           "CID:qzvr2pcls", "CID:QZVR2PCLS2", "CID:QZVR2PCL", "cid:QZVR2PCLS", "CID;QZVR2PCLS"}) {
    EXPECT_EQ(addedForFamily(name), kSecondBlock) << name;
  }
}

TEST(ATPDLCommandTypePPDUpdater, APartNeedsOnlyContainTheKey) {
  EXPECT_EQ(addedForFamily("MFG:X;XCID:QZVR2PCLS"), kFirstBlock);
  EXPECT_EQ(familyIn("QZVR2PCLSCID:"), "");
}

TEST(ATPDLCommandTypePPDUpdater, ASpaceBehindTheColonBelongsToTheFamily) {
  EXPECT_EQ(familyIn("CID: QZVR2PCLS"), " QZVR2PCLS");
  EXPECT_EQ(addedForFamily("CID: QZVR2PCLS"), kSecondBlock);
  EXPECT_EQ(familyIn("CID:QZVR2PCLS ;x"), "QZVR2PCLS ");
}

TEST(ATPDLCommandTypePPDUpdater, APartWithAnotherColonIsSkipped) {
  EXPECT_EQ(familyIn("CID:a:b;CID:QZVRPCLS"), "QZVRPCLS");
  EXPECT_EQ(familyIn("x:CID:a;CID:QZVRPCLS"), "QZVRPCLS");
  EXPECT_EQ(familyIn("CID::QZVR2PCLS"), "");
}

TEST(ATPDLCommandTypePPDUpdater, TheFirstPartThatQualifiesCounts) {
  EXPECT_EQ(familyIn("CID:One;CID:Two"), "One");
  EXPECT_EQ(familyIn("CID:;CID:Two"), "");
}

TEST(ATPDLCommandTypePPDUpdater, WithoutAnIdentificationTheFamilyIsEmpty) {
  EXPECT_EQ(familyIn({}), "");
  EXPECT_EQ(familyIn(""), "");
  EXPECT_EQ(addedForFamily({}), kSecondBlock);
  EXPECT_EQ(addedForFamily(""), kSecondBlock);
}

TEST(ATPDLCommandTypePPDUpdater, AnIdentificationThatIsNoTextIsAProgrammingError) {
  EXPECT_THROW(familyIn(number(4711)), ATException);
  EXPECT_THROW(familyIn(listOf({"CID:QZVR2PCLS"})), ATException);
}

TEST(ATPDLCommandTypePPDUpdater, WithoutTheLibraryTheFamilyIsEmpty) {
  FakeLibrary library("CID:QZVR2PCLS");
  library.available = false;
  const TestLog log;
  EXPECT_EQ(added(kURI), kSecondBlock);
  EXPECT_EQ(library.specs.size() + library.uris.size(), 0U);
  EXPECT_EQ(library.familyQuestions, 0);
  EXPECT_EQ(log.messages(kFamilySignature), logged({"QZVorantisModel framework is not loaded"}));
}

TEST(ATPDLCommandTypePPDUpdater, AsksForTheDeviceWithItsURIAndNoModelName) {
  FakeLibrary library("CID:QZVR2PCLS");
  ATPDLCommandTypePPDUpdater().getDeviceFamilyName(kURI);
  ASSERT_EQ(library.specs.size(), 1U);
  EXPECT_EQ(library.specs[0].uri, kURI);
  EXPECT_EQ(library.specs[0].modelName, std::nullopt);
  EXPECT_TRUE(library.specs[0].skipReachabilityCheck);
  EXPECT_EQ(library.uris.size(), 0U);
  EXPECT_EQ(library.familyQuestions, 1);
  EXPECT_EQ(library.storeQuestions, 0);
}

TEST(ATPDLCommandTypePPDUpdater, GivesTheLibraryNoEmptyURI) {
  FakeLibrary library("CID:QZVR2PCLS");
  EXPECT_EQ(ATPDLCommandTypePPDUpdater().getDeviceFamilyName(""), "QZVR2PCLS");
  ASSERT_EQ(library.specs.size(), 1U);
  EXPECT_EQ(library.specs[0].uri, std::nullopt);
  EXPECT_TRUE(library.specs[0].skipReachabilityCheck);
}

TEST(ATPDLCommandTypePPDUpdater, AsksAnOlderLibraryByURI) {
  FakeLibrary library("CID:QZVR2PCLS");
  library.offersSpec = false;
  EXPECT_EQ(added(kURI), kFirstBlock);
  EXPECT_EQ(library.uris, std::vector<std::string>{kURI});
  EXPECT_EQ(library.specs.size(), 0U);
}

TEST(ATPDLCommandTypePPDUpdater, WithoutServiceInformationTheFamilyIsEmpty) {
  FakeLibrary library("CID:QZVR2PCLS");
  library.knowsDevice = false;
  EXPECT_EQ(added(kURI), kSecondBlock);
}

TEST(ATPDLCommandTypePPDUpdater, HandsAPrinterIDToTheLibraryAsTheURI) {
  FakeLibrary library("CID:QZVR2PCLS");
  const auto ppd = documentFromText("");
  const auto reader = ATPPDDataReader::initWithPrinterID("printer 7");
  EXPECT_TRUE(ATPDLCommandTypePPDUpdater().updatePPD(ppd.get(), reader.get()));
  ASSERT_EQ(library.specs.size(), 1U);
  EXPECT_EQ(library.specs[0].uri, "printer 7");
  EXPECT_EQ(textOf(*ppd), kFirstBlock);
}

TEST(ATPDLCommandTypePPDUpdater, AsksForNoData) {
  const FakeLibrary library("CID:QZVR2PCLS");
  const auto ppd = documentFromText("");
  FakeReader reader;
  reader.uri = kURI;
  ATPDLCommandTypePPDUpdater().updatePPD(ppd.get(), &reader);
  EXPECT_EQ(reader.keys, std::vector<std::string>());
}

TEST(ATPDLCommandTypePPDUpdater, KeepsEarlierStatementsOfTheSameNamesAndAddsTheBlockBehindTheLastAttribute) {
  const std::string before =
      "*PPD-Adobe: \"4.3\"\n"
      "*QZVorantisFamily: \"VR-K-Q\"\n"
      "*QZPDLCommand initial-reset: \"old;;\n"
      "older\"\n"
      "*End\n"
      "*ModelName: \"X\"\n";
  const std::string behind = "*% the options\n" + mediaTypes("*MediaType Plain/Plain: \"\"\n");
  const FakeLibrary library("CID:QZVR2PCLS");
  const auto ppd = documentFromText(before + behind);
  FakeReader reader;
  reader.uri = kURI;
  EXPECT_TRUE(ATPDLCommandTypePPDUpdater().updatePPD(ppd.get(), &reader));
  EXPECT_EQ(textOf(*ppd), before + kFirstBlock + behind);
}

TEST(ATPDLCommandTypePPDUpdater, RunTwiceWritesTheBlockTwice) {
  const FakeLibrary library("CID:QZVR2PCLS");
  const auto ppd = documentFromText("");
  FakeReader reader;
  reader.uri = kURI;
  ATPDLCommandTypePPDUpdater().updatePPD(ppd.get(), &reader);
  ATPDLCommandTypePPDUpdater().updatePPD(ppd.get(), &reader);
  EXPECT_EQ(textOf(*ppd), kFirstBlock + kFirstBlock);
}

TEST(ATPDLCommandTypePPDUpdater, TheOperationsAddTheirSets) {
  const auto first = documentFromText("");
  ATPDLCommandTypePPDUpdater().addPDLCommandsForQZVR2PCLS(*first);
  EXPECT_EQ(textOf(*first), kFirstBlock);
  const auto second = documentFromText("");
  ATPDLCommandTypePPDUpdater().addPDLCommandsForQZVR2PCLAZ(*second);
  EXPECT_EQ(textOf(*second), kSecondBlock);
}

TEST(ATPDLCommandTypePPDUpdater, TheAddedAttributesHaveNeitherSpecNorText) {
  const auto ppd = documentFromText("");
  ATPDLCommandTypePPDUpdater().addPDLCommandsForQZVR2PCLS(*ppd);
  EXPECT_EQ(valuesOf(*ppd, "QZVorantisFamily"), std::vector<std::string>{"\"VR-K-410\""});
  const auto endPage = ppd->attributeForName("QZPDLCommand end-page");
  ASSERT_NE(endPage, nullptr);
  EXPECT_EQ(endPage->spec(), std::nullopt);
  EXPECT_EQ(endPage->text(), std::nullopt);
}

TEST(ATPDLCommandTypePPDUpdater, CallsTheMostDerivedOperations) {
  struct Derived : ATPDLCommandTypePPDUpdater {
    std::string getDeviceFamilyName(const std::string& printerURI) const override {
      calls.push_back("family of " + printerURI);
      return family;
    }
    void addPDLCommandsForQZVR2PCLS(ATPPD& /*ppd*/) const override { calls.emplace_back("first"); }
    void addPDLCommandsForQZVR2PCLAZ(ATPPD& /*ppd*/) const override { calls.emplace_back("second"); }
    std::string family;
    mutable std::vector<std::string> calls;
  };
  const auto ppd = documentFromText("");
  FakeReader reader;
  reader.uri = "u";
  Derived updater;
  for (const char* family : {"QZVR2PCLS", "QZVRPCLS", "QZVRPSZ", "QZVRPCLAT", ""}) {
    updater.family = family;
    EXPECT_TRUE(updater.updatePPD(ppd.get(), &reader));
  }
  EXPECT_EQ(updater.calls, (std::vector<std::string>{"family of u", "first", "family of u", "first", "family of u",
                                                     "second", "family of u", "second", "family of u", "second"}));
}

TEST(ATPDLCommandTypePPDUpdater, LogsTheFamilyThatItFound) {
  const TestLog log;
  familyIn("MFG:X;CID:QZVRPCLS");
  familyIn("MFG:X");
  familyIn("");
  familyIn({});
  EXPECT_EQ(log.messages(kFamilySignature),
            logged({std::string(kFamilyMessage) + "QZVRPCLS", kFamilyMessage, kFamilyMessage, kFamilyMessage}));
}
