// SPDX-License-Identifier: MIT
#include <algorithm>
#include <nlohmann/json.hpp>

#include "explain/report/Sentences.h"
#include "explain/report/Verdict.h"
#include "explain/report/Wording.h"
#include "explain/show/ReportWriters.h"

namespace {

using JSON = nlohmann::ordered_json;

constexpr int kSchemaVersion = 3;

JSON of(const Report::OptionalText& text) {
  return text ? JSON(*text) : JSON(nullptr);
}

JSON of(const Report::Arguments& arguments) {
  return {{"deviceURI", of(arguments.deviceURI)},
          {"PPDPath", of(arguments.PPDPath)},
          {"printerID", of(arguments.printerID)}};
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
JSON of(const Lost& lost);
JSON of(const Warning& warning);

template <class Element>
JSON ofAll(const std::vector<Element>& elements) {
  JSON array = JSON::array();
  for (const Element& element : elements) array.push_back(of(element));
  return array;
}

JSON of(const Report::DeviceAnswer& device) {
  JSON json = {{"libraryAvailable", device.libraryAvailable},
               {"storeFound", device.storeFound},
               {"customMediaFound", device.itemFound},
               {"mediaListVersion", of(device.listVersion)},
               {"familyCode", of(device.familyCode)}};
  json["question"] = nullptr;
  if (device.question) {
    json["question"] = {{"deviceURI", of(device.question->deviceURI)}, {"modelName", of(device.question->modelName)}};
  }
  json["media"] = device.media ? ofAll(*device.media) : JSON(nullptr);
  return json;
}

JSON of(const Lost& lost) {
  JSON json = {{"code", nameOf(lost.because)}};
  for (const auto& [name, text] : {std::pair("what", &lost.what), {"where", &lost.where}, {"choice", &lost.choice}}) {
    if (!text->empty()) json[name] = *text;
  }
  return json;
}

JSON of(const std::vector<std::pair<std::string, std::string>>& pairs) {
  JSON json = JSON::object();
  for (const auto& [name, text] : pairs) json[name] = text;
  return json;
}

JSON of(const Report::Profile& profile) {
  static constexpr const char* kOutcomes[] = {"added", "rewritten", "skipped"};
  return {{"name", of(profile.name)},
          {"spec", of(profile.spec)},
          {"URL", of(profile.url)},
          {"path", of(profile.path)},
          {"outcome", kOutcomes[static_cast<int>(profile.outcome)]},
          {"reason", profile.reason},
          {"selectedBy", of(profile.selectedBy)},
          {"lostBecause", profile.lost ? of(*profile.lost) : JSON(nullptr)}};
}

JSON of(const Report::MediumOutcome& medium) {
  return {{"device", of(medium.device)},
          {"choiceName", of(medium.choiceName)},
          {"choiceCode", of(medium.choiceCode)},
          {"added", medium.added},
          {"written", medium.written},
          {"shown", of(medium.shown)},
          {"lostBecause", ofAll(medium.lost)},
          {"notAdded", medium.notAdded},
          {"parent", of(medium.parent)},
          {"inheritedProperties", of(medium.inherited)},
          {"properties", medium.properties},
          {"profiles", ofAll(medium.profiles)},
          {"profilesFailure", of(medium.profilesFailure)},
          {"glossBefore", of(medium.glossBefore)},
          {"glossAfter", of(medium.glossAfter)}};
}

JSON of(const Report::Change& change) {
  static constexpr const char* kKinds[] = {"added", "removed", "changed", "moved"};
  return {{"kind", kKinds[static_cast<int>(change.kind)]}, {"before", change.before}, {"after", change.after}};
}

JSON of(const Report::Updater& updater, bool full) {
  static constexpr const char* kOutcomes[] = {"notRun", "succeeded", "failed", "threw"};
  JSON json = {{"name", updater.name},
               {"known", updater.known},
               {"outcome", kOutcomes[static_cast<int>(updater.outcome)]},
               {"error", updater.error},
               {"removedMedia", updater.removedMedia},
               {"replacedMedia", updater.replacedMedia},
               {"restoredProfiles", updater.restoredProfiles},
               {"media", ofAll(updater.media)},
               {"changeCount", updater.changes.size()},
               {"changes", JSON::array()}};
  const std::size_t shown =
      full ? updater.changes.size() : std::min(updater.changes.size(), ReportWriters::kShownChanges);
  for (std::size_t index = 0; index < shown; ++index) json["changes"].push_back(of(updater.changes[index]));
  return json;
}

JSON of(const Warning& warning) {
  JSON json = {{"code", nameOf(warning.code)},
               {"text", Sentences::of(warning)},
               {"inInput", warning.inInput},
               {"medium", nullptr}};
  if (warning.about) json["medium"] = {{"name", of(warning.about->name)}, {"ID", of(warning.about->ID)}};
  return json;
}

JSON of(const std::optional<Report::Refusal>& refusal) {
  if (!refusal) return nullptr;
  return {{"line", refusal->line}, {"words", refusal->words}, {"statement", Wording::visible(refusal->statement)}};
}

JSON of(const std::optional<Report::CUPS>& cups) {
  if (!cups) return nullptr;
  return {{"opens", cups->opens}, {"refusal", of(cups->refusal)}, {"strictRefusal", of(cups->strictRefusal)}};
}

JSON verdictOf(const Report& report) {
  JSON json = {{"colour", Verdict::nameOf(Verdict::colourOf(report))},
               {"outcome", Verdict::outcome(report)},
               {"media", nullptr},
               {"warnings", JSON::object()}};
  if (const auto counts = Verdict::mediaCounts(report)) {
    json["media"] = {
        {"onDevice", counts->onDevice}, {"custom", counts->custom}, {"added", counts->added}, {"lost", counts->lost}};
  }
  for (const auto& [code, count] : Verdict::warningCounts(report)) json["warnings"][nameOf(code)] = count;
  return json;
}

}  // namespace

std::string ReportWriters::json(const Report& report, bool full) {
  JSON json = {{"schema", "vorantis-autosetup-explain"}, {"schemaVersion", kSchemaVersion},
               {"succeeded", report.succeeded()},        {"failure", report.failure},
               {"verdict", verdictOf(report)},           {"arguments", of(report.arguments)}};
  json["parse"] = report.parse ? of(*report.parse) : JSON(nullptr);
  json["device"] = report.device ? of(*report.device) : JSON(nullptr);
  json["updaters"] = JSON::array();
  for (const Report::Updater& updater : report.updaters) json["updaters"].push_back(of(updater, full));
  json["CUPS"] = of(report.cups);
  json["CUPSBefore"] = of(report.cupsBefore);
  json["warnings"] = ofAll(report.warnings);
  return json.dump(1, ' ', true, JSON::error_handler_t::replace) + "\n";
}
