// SPDX-License-Identifier: MIT
//
// What a run tells its observer, and when.
#include "driver/RunObserver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "base/ATException.h"
#include "driver/ATAutoSetupTool.h"
#include "readers/ATDeviceDataReader.h"
#include "tests/readers/FakeDeviceModelLibrary.h"
#include "tests/support/TemporaryFolder.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

const std::string kHead = "*PPD-Adobe: \"4.3\"\n";
const std::string kVersion = "*QZMediaListVersion: MEDIUM_LIST_VERSION_UNKNOWN\n";

std::string updaters(const std::string& names) {
  return "*QZPPDUpdaters: \"" + names + "\"\n";
}

// Records what it is told, with the document as it stands then.
class RecordingRunObserver : public RunObserver, public UpdateObserver {
 public:
  std::vector<std::string> events;
  std::vector<std::string> documents;  // at each event of the run
  std::size_t written = 0;             // the bytes that were written before the last event
  const ATMemoryOutput* output = nullptr;

  UpdateObserver& ofUpdates() override { return *this; }
  void didParse(const ATPPD& ppd) override { add("parsed", ppd); }
  void willUpdate(const ATPPD& ppd) override { add("updating", ppd); }
  void didUpdate(const ATPPD& ppd, UpdateResult result) override {
    add(result == UpdateResult::succeeded ? "updated" : "failed", ppd);
  }

  void didNameUpdater(std::string_view name, UpdaterKind kind) override {
    events.push_back((kind == UpdaterKind::known ? "known " : "unknown ") + std::string(name));
  }
  void didReadMedia(const DeviceValue& /*mediaList*/) override { events.emplace_back("media"); }
  void didReadFamily(const std::optional<std::string>& /*familyCode*/) override { events.emplace_back("family"); }

 private:
  void add(const char* event, const ATPPD& ppd) {
    events.emplace_back(event);
    std::string text;
    for (const StatementString& string : ppd.strings()) text += string.view();
    documents.push_back(text);
    written = output->bytes().size();
  }
};

class RunObserverTest : public testing::Test {
 protected:
  RunObserverTest() : original_(ATDeviceDataReader::implementations()) {
    registerReaderImplementations();
    observer_.output = &output_;
  }
  ~RunObserverTest() override { ATDeviceDataReader::implementations() = original_; }

  std::unique_ptr<ATAutoSetupTool> tool(const std::string& contents, const char* uri = "socket://a") {
    path_ = folder_.file("input.ppd", contents);
    const std::array<const char*, 3> arguments = {"tool", uri, path_.c_str()};
    return ATAutoSetupTool::initWithArgc(3, arguments.data());
  }
  bool run(const std::string& contents, const char* uri = "socket://a") {
    const auto observed = tool(contents, uri);
    observed->setObserver(observer_);
    return observed->run(output_);
  }

  FakeDeviceModelLibrary library_;
  ATMemoryOutput output_;
  RecordingRunObserver observer_;

 private:
  TemporaryFolder folder_;
  std::string path_;
  ATDeviceDataReader::Implementations original_;
};

}  // namespace

TEST_F(RunObserverTest, HearsOfParsingAloneWithoutUpdaters) {
  EXPECT_TRUE(run(kHead));
  EXPECT_THAT(observer_.events, ElementsAre("parsed"));
  EXPECT_THAT(observer_.documents, ElementsAre(kHead));
  EXPECT_EQ(output_.bytes(), kHead);
}

TEST_F(RunObserverTest, HearsNothingOfAPPDThatCannotBeRead) {
  EXPECT_FALSE(run(kHead + "*End\n*End\n"));
  EXPECT_FALSE(run("text\n"));
  EXPECT_THAT(observer_.events, IsEmpty());
}

TEST_F(RunObserverTest, HearsTheNamesBehindParsingAndEachUpdaterAroundItsWork) {
  const std::string text = kHead + updaters("ATMediaTypePSPPDUpdater Other ATPDLCommandTypePPDUpdater");
  EXPECT_TRUE(run(text));
  EXPECT_THAT(observer_.events, ElementsAre("parsed", "known ATMediaTypePSPPDUpdater", "unknown Other",
                                            "known ATPDLCommandTypePPDUpdater", "updating", "media", "updated",
                                            "updating", "family", "updated"));
}

TEST_F(RunObserverTest, HearsOfUnknownNamesWithoutAnUpdate) {
  EXPECT_TRUE(run(updaters("Other")));
  EXPECT_THAT(observer_.events, ElementsAre("parsed", "unknown Other"));
}

TEST_F(RunObserverTest, IsGivenTheDocumentAsItIsBeforeAndBehindEachUpdater) {
  const std::string text = kHead + updaters("ATMediaTypePSPPDUpdater ATMediaTypePCL3PPDUpdater");
  EXPECT_TRUE(run(text + "*QZMediaListVersion: 3\n"));
  EXPECT_THAT(observer_.documents, ElementsAre(text + "*QZMediaListVersion: 3\n", text + "*QZMediaListVersion: 3\n",
                                               text + kVersion, text + kVersion, text + kVersion));
}

TEST_F(RunObserverTest, HearsEverythingBeforeAByteIsWritten) {
  EXPECT_TRUE(run(kHead + updaters("ATMediaTypePSPPDUpdater")));
  EXPECT_EQ(observer_.written, 0U);
  EXPECT_EQ(output_.bytes(), observer_.documents.back());
}

TEST_F(RunObserverTest, HearsThatAnUpdaterFailedAndNothingOfThoseBehindIt) {
  EXPECT_FALSE(run(updaters("ATPDLCommandTypePPDUpdater ATMediaTypePSPPDUpdater"), ""));
  EXPECT_THAT(observer_.events, ElementsAre("parsed", "known ATPDLCommandTypePPDUpdater",
                                            "known ATMediaTypePSPPDUpdater", "updating", "failed"));
  EXPECT_EQ(output_.bytes(), "");
}

TEST_F(RunObserverTest, HearsNoEndOfAnUpdaterThatThrows) {
  library_.failsAt = "deviceFamilyName";
  EXPECT_THROW(run(updaters("ATMediaTypePSPPDUpdater ATPDLCommandTypePPDUpdater")), ATException);
  EXPECT_THAT(observer_.events,
              ElementsAre("parsed", "known ATMediaTypePSPPDUpdater", "known ATPDLCommandTypePPDUpdater", "updating",
                          "media", "updated", "updating"));
}

TEST_F(RunObserverTest, ChangesNothing) {
  const std::string text = kHead + updaters("ATPDLCommandTypePPDUpdater ATMediaTypePSPPDUpdater");
  EXPECT_TRUE(run(text));
  ATMemoryOutput unobserved;
  EXPECT_TRUE(tool(text)->run(unobserved));
  EXPECT_EQ(output_.bytes(), unobserved.bytes());
}

TEST_F(RunObserverTest, NobodyIsOneForTheProcessAndHasNobodyForUpdates) {
  RunObserver& none = RunObserver::none();
  EXPECT_EQ(&none, &RunObserver::none());
  EXPECT_EQ(&none.ofUpdates(), &UpdateObserver::none());
  const auto observed = tool(kHead + updaters("ATMediaTypePSPPDUpdater"));
  observed->setObserver(none);
  EXPECT_TRUE(observed->run(output_));
  EXPECT_EQ(output_.bytes(), kHead + updaters("ATMediaTypePSPPDUpdater") + kVersion);
  EXPECT_THAT(observer_.events, SizeIs(0));
}
