// SPDX-License-Identifier: MIT
#include "explain/judge/SnapshotMembers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/TemporaryFolder.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const Report::Question kQuestion{"socket://here", "Z9"};

std::vector<std::string> unread(const std::string& text) {
  std::vector<std::string> found;
  for (const auto& each : SnapshotMembers::unreadIn(text, kQuestion)) {
    found.push_back(each.place + ": " + each.member + " for " + each.meant);
  }
  return found;
}

std::string snapshot(const std::string& device) {
  return R"({"format": "vorantis-device-snapshot", "formatVersion": 1, "devices": [{"uri": "socket://other", "modelNam": "x"},
      "no device", )" +
         device + "]}";
}

std::string withMedium(const std::string& members) {
  return snapshot(R"({"dataStore": {"VMCustomMediaStorage": {"MediaInfo": {"a": {)" + members + "}}}}}");
}

}  // namespace

TEST(SnapshotMembers, WhatIsReadOrUnlikeIsNotTold) {
  EXPECT_THAT(unread(withMedium(R"("Name": "A", "MediumID": "1", "Thickness": 3, "ICCProfiles": [{"URL": "/a"}])")),
              IsEmpty());
  EXPECT_THAT(unread(withMedium(R"("ParentID": "1", "ParentId": "2")")), IsEmpty()) << "the right one is there, too";
}

TEST(SnapshotMembers, MembersLikeThoseThatAreRead) {
  EXPECT_THAT(
      unread(withMedium(R"("ParentId": "1", "ICCProfile": [], "PropertiesInfo": {"DefaultGlosEnhancer": "OFF"})")),
      ElementsAre("MediaInfo/a: ParentId for ParentID", "MediaInfo/a: ICCProfile for ICCProfiles",
                  "MediaInfo/a/PropertiesInfo: DefaultGlosEnhancer for DefaultGlossEnhancer"));
  EXPECT_THAT(unread(withMedium(R"("ICCProfiles": [{"ICCname": "a"}, {"ICCname": "b"}, 1])")),
              ElementsAre("MediaInfo/a/ICCProfiles: ICCname for ICCName"));
  EXPECT_THAT(unread(snapshot(R"({"dataStore": {"VMCustomMediaStorage": {"MediaInfos": {}}}})")),
              ElementsAre("VMCustomMediaStorage: MediaInfos for MediaInfo"));
  EXPECT_THAT(unread(snapshot(R"({"dataStore": {"VMCustomMediaStorages": {}}})")),
              ElementsAre("dataStore: VMCustomMediaStorages for VMCustomMediaStorage"));
  EXPECT_THAT(unread(snapshot(R"({"uri": "socket://here", "modelName": "Z9", "datastore": {}})")),
              ElementsAre("the device: datastore for dataStore"));
}

TEST(SnapshotMembers, OnlyOfTheDeviceThatAnswers) {
  EXPECT_THAT(unread(snapshot(R"({"uri": "socket://there", "datastore": {}})")), IsEmpty());
  EXPECT_THAT(unread(snapshot(R"({"modelName": "Z8", "datastore": {}}, {"uri": null, "datastore": {}})")),
              ElementsAre("the device: datastore for dataStore"));
}

TEST(SnapshotMembers, WhatIsNoSnapshot) {
  for (const char* text : {"", "{", "[]", "{}", R"({"devices": 1})", R"({"devices": [{"dataStore": 1}]})",
                           R"({"devices": [{"dataStore": {"VMCustomMediaStorage": {"MediaInfo": []}}}]})"}) {
    EXPECT_THAT(unread(text), IsEmpty()) << text;
  }
}

TEST(SnapshotMembers, OfTheFileThatTheEnvironmentNames) {
  const TemporaryFolder folder;
  setenv("QZVORANTISMODEL_SNAPSHOT", folder.file("a.json", snapshot(R"({"datastore": {}})")).c_str(), 1);
  EXPECT_EQ(SnapshotMembers::unread(kQuestion).size(), 1U);
  unsetenv("QZVORANTISMODEL_SNAPSHOT");
  EXPECT_THAT(SnapshotMembers::unread(kQuestion), IsEmpty());
}
