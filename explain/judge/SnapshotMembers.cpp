// SPDX-License-Identifier: MIT
#include "explain/judge/SnapshotMembers.h"

#include <algorithm>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>

#include "explain/judge/NearMisses.h"
#include "explain/watch/InputLines.h"

namespace {

using SnapshotJSON = nlohmann::ordered_json;
using MemberNames = std::vector<std::string>;

// Whether a device of the snapshot answers for this URI or model name; one that gives none answers for all.
bool answers(const SnapshotJSON& device, const char* member, const Report::OptionalText& asked) {
  const auto found = device.find(member);
  return found == device.end() || found->is_null() || *found == asked.value_or("");
}

class Finder {
 public:
  void look(const SnapshotJSON& snapshot, const Report::Question& question) {
    compare(snapshot, ofSnapshot_, "");
    const SnapshotJSON* devices = inside(snapshot, "devices");
    if (devices == nullptr || !devices->is_array()) return;
    for (const SnapshotJSON& device : *devices) {
      if (!device.is_object()) continue;
      if (!answers(device, "uri", question.deviceURI) || !answers(device, "modelName", question.modelName)) continue;
      return lookAtDevice(device);
    }
  }

  std::vector<SnapshotMembers::Unread> take() { return std::move(found_); }

 private:
  static const SnapshotJSON* inside(const SnapshotJSON& object, const char* member) {
    if (!object.is_object()) return nullptr;
    const auto found = object.find(member);
    return found == object.end() ? nullptr : &*found;
  }

  void lookAtDevice(const SnapshotJSON& device) {
    compare(device, ofDevice_, "the device");
    const SnapshotJSON* store = inside(device, "dataStore");
    if (store == nullptr) return;
    compare(*store, ofStore_, "dataStore");
    const SnapshotJSON* storage = inside(*store, ofStore_.front().c_str());
    if (storage == nullptr) return;
    compare(*storage, ofStorage_, ofStore_.front());
    const SnapshotJSON* media = inside(*storage, "MediaInfo");
    if (media == nullptr || !media->is_object()) return;
    for (const auto& [key, medium] : media->items()) lookAtMedium(medium, "MediaInfo/" + key);
  }

  void lookAtMedium(const SnapshotJSON& medium, const std::string& place) {
    compare(medium, ofMedium_, place);
    if (const SnapshotJSON* properties = inside(medium, "PropertiesInfo")) {
      compare(*properties, ofProperties_, place + "/PropertiesInfo");
    }
    const SnapshotJSON* profiles = inside(medium, "ICCProfiles");
    if (profiles == nullptr || !profiles->is_array()) return;
    for (const SnapshotJSON& profile : *profiles) compare(profile, ofProfile_, place + "/ICCProfiles");
  }

  void compare(const SnapshotJSON& object, const MemberNames& known, const std::string& place) {
    if (!object.is_object()) return;
    for (const auto& [member, value] : object.items()) {
      if (std::find(known.begin(), known.end(), member) != known.end()) continue;
      const auto near = NearMisses::nearest(member, known);
      if (!near || object.contains(known[near->index])) continue;
      if (!told_.emplace(member, known[near->index]).second) continue;
      found_.push_back({member, place, known[near->index]});
    }
  }

  // The members that the tool asks for, at each level (docs/device-snapshot.md).
  const MemberNames ofSnapshot_ = {"format", "formatVersion", "offersServiceInfoWithSpec", "devices"};
  const MemberNames ofDevice_ = {"uri", "modelName", "deviceFamilyName", "dataStore"};
  const MemberNames ofStore_ = {"VMCustomMediaStorage"};
  const MemberNames ofStorage_ = {"MediumListVersion", "MediaInfo"};
  const MemberNames ofMedium_ = {"Name",        "MediumID", "CategoryName",  "CategoryID",
                                 "ICCProfiles", "ParentID", "PropertiesInfo"};
  const MemberNames ofProperties_ = {"DefaultGlossEnhancer"};
  const MemberNames ofProfile_ = {"URL", "ICCName", "GlossEnhancer", "OutputMode"};

  std::vector<SnapshotMembers::Unread> found_;
  std::set<std::pair<std::string, std::string>> told_;
};

}  // namespace

std::vector<SnapshotMembers::Unread> SnapshotMembers::unreadIn(const std::string& text,
                                                               const Report::Question& question) {
  const SnapshotJSON snapshot = SnapshotJSON::parse(text, nullptr, false);
  Finder finder;
  if (snapshot.is_object()) finder.look(snapshot, question);
  return finder.take();
}

std::vector<SnapshotMembers::Unread> SnapshotMembers::unread(const Report::Question& question) {
  const char* path = std::getenv("QZVORANTISMODEL_SNAPSHOT");
  if (path == nullptr || *path == '\0') return {};
  return unreadIn(std::string(InputLines::ofFile(path).bytes()), question);
}
