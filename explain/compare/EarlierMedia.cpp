// SPDX-License-Identifier: MIT
#include "explain/compare/EarlierMedia.h"

#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "base/Text.h"
#include "explain/watch/InputLines.h"

namespace {

using JSON = nlohmann::json;

std::string textOf(const JSON& object, const char* name) {
  const auto found = object.find(name);
  return found != object.end() && found->is_string() ? found->get<std::string>() : "";
}

// As PPDMedia has them: without the choice, which stands in the middle of the spec.
std::vector<std::string> profilesOf(const JSON& medium) {
  std::vector<std::string> profiles;
  for (const JSON& profile : medium.at("profiles")) {
    const std::string spec = textOf(profile, "spec");
    const auto parts = Text::split(spec, std::string_view("."));
    if (textOf(profile, "outcome") == "skipped" || parts.size() != 3) continue;
    profiles.push_back(
        fmt::format("{}..{} {} {}", parts[0], parts[2], textOf(profile, "name"), textOf(profile, "path")));
  }
  std::sort(profiles.begin(), profiles.end());
  return profiles;
}

PPDMedia::Medium mediumOf(const JSON& json) {
  const JSON& device = json.at("device");
  PPDMedia::Medium medium;
  medium.choice = textOf(json, "choiceName");
  medium.name = textOf(device, "name");
  medium.ID = textOf(device, "ID");
  medium.isCustom = device.at("custom").get<bool>();
  medium.key = (medium.isCustom ? "custom " : "factory ") + medium.ID;
  medium.properties = textOf(json, "properties");
  medium.profiles = profilesOf(json);
  return medium;
}

// The last updater that worked on media left what is there.
PPDMedia mediaOf(const JSON& report) {
  PPDMedia media;
  for (const JSON& updater : report.at("updaters")) {
    if (updater.at("media").empty()) continue;
    media.media.clear();
    for (const JSON& medium : updater.at("media")) {
      if (!textOf(medium, "choiceName").empty()) media.media.push_back(mediumOf(medium));
    }
  }
  return media;
}

bool looksLikeJSON(std::string_view text) {
  const std::size_t start = text.find_first_not_of(" \t\r\n");
  return start != std::string_view::npos && text[start] == '{';
}

}  // namespace

PPDMedia EarlierMedia::ofReport(const std::string& json) {
  const JSON report = JSON::parse(json, nullptr, false);
  if (!report.is_object() || textOf(report, "schema") != "vorantis-autosetup-explain") {
    throw Error("it is neither a PPD, nor a device snapshot, nor a report as JSON");
  }
  try {
    return mediaOf(report);
  } catch (const JSON::exception&) {
    throw Error("the report lacks what belongs to one of its kind");
  }
}

std::vector<MediaChange> EarlierMedia::changesSince(
    const std::string& path, const std::string& report, const std::string& result,
    const std::function<std::optional<std::string>(const std::string&)>& run) {
  const InputLines file = InputLines::ofFile(path);
  const std::string text(file.bytes());
  if (text.empty()) throw Error("it cannot be read, or is empty");
  if (!looksLikeJSON(text)) return MediaChange::between(PPDMedia::ofText(text), PPDMedia::ofText(result));
  const JSON json = JSON::parse(text, nullptr, false);
  if (!json.is_object() || textOf(json, "format") != "vorantis-device-snapshot") {
    return MediaChange::between(ofReport(text), ofReport(report));
  }
  const auto earlier = run(path);
  if (!earlier) throw Error("a run with this snapshot fails");
  return MediaChange::between(PPDMedia::ofText(*earlier), PPDMedia::ofText(result));
}
