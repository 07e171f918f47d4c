// SPDX-License-Identifier: MIT
#include <nlohmann/json.hpp>

#include "explain/ReportWriters.h"
#include "explain/Wording.h"

namespace {

using JSON = nlohmann::ordered_json;

constexpr int kSchemaVersion = 1;

JSON of(const Report::OptionalText& text) {
  return text ? JSON(*text) : JSON(nullptr);
}

JSON of(const Report::Parse& parse) {
  JSON json = {{"lines", parse.lines},     {"statements", parse.statements}, {"groups", parse.groups},
               {"options", parse.options}, {"languages", parse.languages},   {"modelName", of(parse.modelName)},
               {"failure", JSON(nullptr)}};
  if (parse.failure) {
    const Report::ParseFailure& failure = *parse.failure;
    json["failure"] = {{"code", failure.code}, {"expected", failure.expected}};
    json["failure"]["lineNumber"] = failure.lineNumber ? JSON(*failure.lineNumber) : JSON(nullptr);
    // A line that is no text is given with its bytes made visible.
    json["failure"]["line"] = failure.line ? JSON(Wording::visible(*failure.line)) : JSON(nullptr);
  }
  return json;
}

JSON of(const Report::Medium& medium) {
  return {{"name", of(medium.name)},
          {"ID", of(medium.ID)},
          {"categoryName", of(medium.categoryName)},
          {"categoryID", of(medium.categoryID)},
          {"parentID", of(medium.parentID)},
          {"defaultGlossEnhancer", of(medium.gloss)},
          {"custom", medium.custom},
          {"profiles", medium.profiles}};
}

JSON of(const Report::Profile& profile);
JSON of(const Report::MediumOutcome& medium);
JSON of(const Report::Change& change);
JSON of(const Report::Updater& updater);
JSON of(const Report::Warning& warning);

template <class Element>
JSON ofAll(const std::vector<Element>& elements) {
  JSON array = JSON::array();
  for (const Element& element : elements) array.push_back(of(element));
  return array;
}

JSON of(const Report::DeviceAnswer& device) {
  JSON json = {{"libraryAvailable", device.libraryAvailable},
               {"mediaListVersion", of(device.listVersion)},
               {"familyCode", of(device.familyCode)}};
  json["media"] = device.media ? ofAll(*device.media) : JSON(nullptr);
  return json;
}

JSON of(const Report::Profile& profile) {
  static constexpr const char* kOutcomes[] = {"added", "rewritten", "skipped"};
  return {{"name", of(profile.name)},
          {"spec", of(profile.spec)},
          {"path", of(profile.path)},
          {"outcome", kOutcomes[static_cast<int>(profile.outcome)]},
          {"reason", profile.reason}};
}

JSON of(const Report::MediumOutcome& medium) {
  return {{"device", of(medium.device)},
          {"choiceName", of(medium.choiceName)},
          {"choiceCode", of(medium.choiceCode)},
          {"added", medium.added},
          {"notAdded", medium.notAdded},
          {"parent", of(medium.parent)},
          {"inheritedProperties", of(medium.inherited)},
          {"profiles", ofAll(medium.profiles)},
          {"profilesFailure", of(medium.profilesFailure)},
          {"glossBefore", of(medium.glossBefore)},
          {"glossAfter", of(medium.glossAfter)}};
}

JSON of(const Report::Change& change) {
  static constexpr const char* kKinds[] = {"added", "removed", "changed", "moved"};
  return {{"kind", kKinds[static_cast<int>(change.kind)]}, {"before", change.before}, {"after", change.after}};
}

JSON of(const Report::Updater& updater) {
  static constexpr const char* kOutcomes[] = {"notRun", "succeeded", "failed", "threw"};
  return {{"name", updater.name},
          {"known", updater.known},
          {"outcome", kOutcomes[static_cast<int>(updater.outcome)]},
          {"error", updater.error},
          {"removedMedia", updater.removedMedia},
          {"restoredProfiles", updater.restoredProfiles},
          {"media", ofAll(updater.media)},
          {"changes", ofAll(updater.changes)}};
}

JSON of(const Report::Warning& warning) {
  return {{"code", warning.code}, {"text", warning.text}, {"inInput", warning.inInput}};
}

}  // namespace

std::string ReportWriters::json(const Report& report) {
  JSON json = {{"schema", "vorantis-autosetup-explain"},
               {"schemaVersion", kSchemaVersion},
               {"succeeded", report.succeeded()},
               {"failure", report.failure}};
  json["arguments"] = {{"deviceURI", of(report.arguments.deviceURI)},
                       {"PPDPath", of(report.arguments.PPDPath)},
                       {"printerID", of(report.arguments.printerID)}};
  json["parse"] = report.parse ? of(*report.parse) : JSON(nullptr);
  json["device"] = report.device ? of(*report.device) : JSON(nullptr);
  json["updaters"] = ofAll(report.updaters);
  json["warnings"] = ofAll(report.warnings);
  return json.dump(2, ' ', false, JSON::error_handler_t::replace) + "\n";
}
