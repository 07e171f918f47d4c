// SPDX-License-Identifier: MIT
#include "explain/judge/SnapshotHint.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/TemporaryFolder.h"

using testing::HasSubstr;
using testing::Not;

namespace {

constexpr const char* kVariable = "QZVORANTISMODEL_SNAPSHOT";
const Report::Question kQuestion = {"socket://192.0.2.10:9100", "\"Z9\""};

std::optional<SnapshotHint> hintOf(const std::string& content) {
  const TemporaryFolder folder;
  setenv(kVariable, folder.file("snapshot.json", content).c_str(), 1);
  const auto hint = snapshotHintFor(kQuestion);
  unsetenv(kVariable);
  return hint;
}

std::string snapshotOf(const std::string& devices) {
  return R"({"format": "vorantis-device-snapshot", "formatVersion": 1, "devices": [)" + devices + "]}";
}

}  // namespace

TEST(SnapshotHint, SaysThatNoSnapshotIsNamed) {
  unsetenv(kVariable);
  EXPECT_THAT(snapshotHintFor(kQuestion)->text, HasSubstr("names no snapshot"));
  setenv(kVariable, "", 1);
  EXPECT_THAT(snapshotHintFor(kQuestion)->text, HasSubstr("names no snapshot"));
  unsetenv(kVariable);
}

TEST(SnapshotHint, NamesTheNearestDevice) {
  const auto hint = hintOf(snapshotOf(R"({"uri": "lpd://somewhere", "modelName": "\"Z6\""},
                                         {"uri": "socket://192.0.2.11:9100", "modelName": "\"Z9\""}, {"uri": "usb://x"})"));
  ASSERT_TRUE(hint);
  EXPECT_THAT(hint->text, HasSubstr("nearest of the 3"));
  EXPECT_THAT(hint->text, HasSubstr("the URI socket://192.0.2.11:9100 and the model name \"Z9\""));
  EXPECT_THAT(hint->text, Not(HasSubstr("lacks")));
  EXPECT_FALSE(hint->isDeviceWithoutMedia);
}

TEST(SnapshotHint, SaysThatTheQuotesOfTheModelNameAreMissing) {
  EXPECT_THAT(hintOf(snapshotOf(R"({"modelName": "Z9"}, {"modelName": "\"Y9\"", "uri": "x"})"))->text,
              HasSubstr("the URI any and the model name Z9. There the model name lacks the double quotes"));
  EXPECT_THAT(hintOf(snapshotOf(R"({"modelName": ""})"))->text, HasSubstr("the model name empty"));
}

TEST(SnapshotHint, TellsADeviceWithoutMediaFromOneThatIsNotThere) {
  EXPECT_TRUE(hintOf(snapshotOf("{}"))->isDeviceWithoutMedia);
  EXPECT_THAT(hintOf(snapshotOf("{}"))->text, HasSubstr("has this device, without a data store"));
  EXPECT_THAT(hintOf(snapshotOf(R"({"dataStore": {}})"))->text, HasSubstr("without custom media in its data store"));
  EXPECT_THAT(hintOf(snapshotOf(""))->text, HasSubstr("has no devices"));
}

TEST(SnapshotHint, SaysThatALaterDeviceIsHidden) {
  EXPECT_THAT(hintOf(snapshotOf(R"({"uri": "socket://192.0.2.10:9100"}, {"dataStore": {}})"))->text,
              HasSubstr("without a data store. A later one of its devices would do"));
  EXPECT_THAT(hintOf(snapshotOf(R"({}, {"uri": "other", "dataStore": {}})"))->text, Not(HasSubstr("A later one")));
}

TEST(SnapshotHint, LeavesASnapshotThatCannotBeReadToTheLibrary) {
  EXPECT_FALSE(hintOf("{"));
}
