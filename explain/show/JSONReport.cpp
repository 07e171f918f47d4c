// SPDX-License-Identifier: MIT
#include <algorithm>

#include "explain/report/Sentences.h"
#include "explain/report/Verdict.h"
#include "explain/report/Wording.h"
#include "explain/show/JSONWriter.h"
#include "explain/show/ReportWriters.h"

namespace {

constexpr int kSchemaVersion = 3;

using Names = std::vector<std::string>;

// The members of a report and of what is in it.
class JSONReport {
 public:
  explicit JSONReport(bool full) : full_(full) {}

  std::string of(const Report& report) {
    json_.beginObject();
    json_.member("schema", "vorantis-autosetup-explain");
    json_.member("schemaVersion", kSchemaVersion);
    json_.member("succeeded", report.succeeded());
    json_.member("failure", report.failure);
    write(report.arguments);
    verdict(report);
    member("parse", report.parse);
    member("device", report.device);
    list("updaters", report.updaters);
    member("CUPS", report.cups);
    member("CUPSBefore", report.cupsBefore);
    list("warnings", report.warnings);
    json_.endObject();
    return json_.take();
  }

 private:
  template <class Element>
  void list(const char* name, const std::vector<Element>& elements) {
    json_.beginList(name);
    for (const Element& element : elements) {
      json_.beginObject();
      members(element);
      json_.endObject();
    }
    json_.endList();
  }

  // Null when it is absent.
  template <class Part>
  void member(const char* name, const std::optional<Part>& part) {
    if (!part) return json_.member(name, std::nullopt);
    json_.beginObject(name);
    members(*part);
    json_.endObject();
  }

  void list(const char* name, const Names& texts) {
    json_.beginList(name);
    for (const std::string& text : texts) json_.value(text);
    json_.endList();
  }

  // Options and choices, or languages and names.
  void pairs(const char* name, const std::vector<std::pair<std::string, std::string>>& pairs) {
    json_.beginObject(name);
    for (const auto& [key, value] : pairs) json_.member(key, value);
    json_.endObject();
  }

  void write(const Report::Arguments& arguments) {
    json_.beginObject("arguments");
    json_.member("deviceURI", arguments.deviceURI);
    json_.member("PPDPath", arguments.PPDPath);
    json_.member("printerID", arguments.printerID);
    json_.endObject();
  }

  void verdict(const Report& report) {
    json_.beginObject("verdict");
    json_.member("colour", Verdict::nameOf(Verdict::colourOf(report)));
    json_.member("outcome", Verdict::outcome(report));
    member("media", Verdict::mediaCounts(report));
    json_.beginObject("warnings");
    for (const auto& [code, count] : Verdict::warningCounts(report)) json_.member(nameOf(code), count);
    json_.endObject();
    json_.endObject();
  }

  void members(const Verdict::MediaCounts& counts) {
    json_.member("onDevice", counts.onDevice);
    json_.member("custom", counts.custom);
    json_.member("added", counts.added);
    json_.member("lost", counts.lost);
  }

  void members(const Report::Parse& parse) {
    json_.member("lines", parse.lines);
    json_.member("statements", parse.statements);
    json_.member("groups", parse.groups);
    json_.member("options", parse.options);
    list("languages", parse.languages);
    json_.member("modelName", parse.modelName);
    member("failure", parse.failure);
  }

  void members(const Report::ParseFailure& failure) {
    json_.member("code", failure.code);
    json_.member("expected", failure.expected);
    failure.lineNumber ? json_.member("lineNumber", *failure.lineNumber) : json_.member("lineNumber", std::nullopt);
    json_.member("line", failure.line ? std::optional(Wording::visible(*failure.line)) : std::nullopt);
  }

  void members(const Report::DeviceAnswer& device) {
    json_.member("libraryAvailable", device.libraryAvailable);
    json_.member("storeFound", device.storeFound);
    json_.member("customMediaFound", device.itemFound);
    json_.member("mediaListVersion", device.listVersion);
    json_.member("familyCode", device.familyCode);
    member("question", device.question);
    device.media ? list("media", *device.media) : json_.member("media", std::nullopt);
  }

  void members(const Report::Question& question) {
    json_.member("deviceURI", question.deviceURI);
    json_.member("modelName", question.modelName);
  }

  void members(const Report::CUPS& cups) {
    json_.member("opens", cups.opens);
    member("refusal", cups.refusal);
    member("strictRefusal", cups.strictRefusal);
  }

  void members(const Report::Refusal& refusal) {
    json_.member("line", refusal.line);
    json_.member("words", refusal.words);
    json_.member("statement", Wording::visible(refusal.statement));
  }

  void members(const Report::Medium& medium) {
    json_.member("name", medium.name);
    json_.member("ID", medium.ID);
    json_.member("categoryName", medium.categoryName);
    json_.member("categoryID", medium.categoryID);
    json_.member("parentID", medium.parentID);
    json_.member("defaultGlossEnhancer", medium.gloss);
    json_.member("custom", medium.custom);
    json_.member("profiles", medium.profiles);
  }

  void members(const Lost& lost) {
    json_.member("code", nameOf(lost.because));
    for (const auto& [name, text] : {std::pair("what", &lost.what), {"where", &lost.where}, {"choice", &lost.choice}}) {
      if (!text->empty()) json_.member(name, *text);
    }
  }

  void members(const Report::Profile& profile) {
    static constexpr const char* kOutcomes[] = {"added", "rewritten", "skipped"};
    json_.member("name", profile.name);
    json_.member("spec", profile.spec);
    json_.member("URL", profile.url);
    json_.member("path", profile.path);
    json_.member("outcome", kOutcomes[static_cast<int>(profile.outcome)]);
    json_.member("reason", profile.reason);
    pairs("selectedBy", profile.selectedBy);
    member("lostBecause", profile.lost);
  }

  void members(const Report::MediumOutcome& medium) {
    json_.beginObject("device");
    members(medium.device);
    json_.endObject();
    json_.member("choiceName", medium.choiceName);
    json_.member("choiceCode", medium.choiceCode);
    json_.member("added", medium.added);
    json_.member("written", medium.written);
    pairs("shown", medium.shown);
    list("lostBecause", medium.lost);
    json_.member("notAdded", medium.notAdded);
    json_.member("parent", medium.parent);
    json_.member("inheritedProperties", medium.inherited);
    json_.member("properties", medium.properties);
    list("profiles", medium.profiles);
    json_.member("profilesFailure", medium.profilesFailure);
    json_.member("glossBefore", medium.glossBefore);
    json_.member("glossAfter", medium.glossAfter);
  }

  void members(const Report::Change& change) {
    static constexpr const char* kKinds[] = {"added", "removed", "changed", "moved"};
    json_.member("kind", kKinds[static_cast<int>(change.kind)]);
    json_.member("before", change.before);
    json_.member("after", change.after);
  }

  void members(const Report::Updater& updater) {
    static constexpr const char* kOutcomes[] = {"notRun", "succeeded", "failed", "threw"};
    json_.member("name", updater.name);
    json_.member("known", updater.known);
    json_.member("outcome", kOutcomes[static_cast<int>(updater.outcome)]);
    json_.member("error", updater.error);
    list("removedMedia", updater.removedMedia);
    list("replacedMedia", updater.replacedMedia);
    list("restoredProfiles", updater.restoredProfiles);
    list("media", updater.media);
    json_.member("changeCount", updater.changes.size());
    json_.beginList("changes");
    const std::size_t shown = full_ ? updater.changes.size() : ReportWriters::kShownChanges;
    for (std::size_t index = 0; index < std::min(shown, updater.changes.size()); ++index) {
      json_.beginObject();
      members(updater.changes[index]);
      json_.endObject();
    }
    json_.endList();
  }

  void members(const Warning& warning) {
    json_.member("code", nameOf(warning.code));
    json_.member("text", Sentences::of(warning));
    json_.member("remedy", kindOf(warning.code).remedy);
    facts(warning);
    json_.member("because", warning.because ? std::optional<std::string>(nameOf(*warning.because)) : std::nullopt);
    json_.member("inInput", warning.inInput);
    member("medium", warning.about);
  }

  void members(const AboutMedium& medium) {
    json_.member("name", medium.name);
    json_.member("ID", medium.ID);
  }

  void facts(const Warning& warning) {
    json_.beginObject("facts");
    for (const Warning::Fact& fact : warning.facts) {
      if (const auto* text = std::get_if<std::string>(&fact.value)) json_.member(fact.name, *text);
      if (const auto* number = std::get_if<std::uint64_t>(&fact.value)) json_.member(fact.name, *number);
    }
    json_.endObject();
  }

  JSONWriter json_;
  const bool full_;
};

}  // namespace

std::string ReportWriters::json(const Report& report, bool full) {
  return JSONReport(full).of(report);
}
