// SPDX-License-Identifier: MIT
#include <fmt/format.h>
#include <fmt/ranges.h>

#include "explain/report/Sentences.h"
#include "explain/report/Verdict.h"
#include "explain/report/Wording.h"
#include "explain/show/HTMLPage.h"
#include "explain/show/ReportWriters.h"

namespace {

using OptionalText = Report::OptionalText;

// Of many warnings of one code.
constexpr std::size_t kShownInAFold = 100;

std::string code(const OptionalText& text) {
  return text ? HTMLPage::code(*text) : "–";
}

class HTMLWriter {
 public:
  explicit HTMLWriter(bool full) : full_(full) {}

  std::string write(const Report& report) {
    verdict(report);
    page_.contents();
    warnings(report);
    if (report.parse) parse(*report.parse);
    if (!report.updaters.empty()) updaters(report);
    if (report.device) device(*report.device);
    for (const Report::Updater& updater : report.updaters) {
      media(updater);
      cleanup(updater);
      changes(updater);
    }
    return page_.take();
  }

 private:
  void verdict(const Report& report) {
    page_.beginTable();
    const std::string reason = report.succeeded() ? "" : ": " + HTMLPage::escaped(report.failure);
    page_.row("Result", HTMLPage::span(Verdict::nameOf(Verdict::colourOf(report)), Verdict::outcome(report) + reason));
    if (const std::string media = Verdict::media(report); !media.empty()) page_.row("Media", media);
    if (const std::string warnings = Verdict::warnings(report); !warnings.empty()) page_.row("Warnings", warnings);
    page_.row("Device", code(report.arguments.deviceURI));
    if (report.arguments.printerID) page_.row("Printer ID", code(report.arguments.printerID));
    page_.row("PPD", code(report.arguments.PPDPath));
    page_.endTable();
  }

  // One fold for each code; a fold of a few stands open.
  void warnings(const Report& report) {
    if (report.warnings.empty()) return;
    page_.section("Warnings");
    auto next = report.warnings.begin();
    for (const auto& [warningCode, count] : Verdict::warningCounts(report)) {
      page_.beginFold(fmt::format("{} {}", HTMLPage::code(nameOf(warningCode)), count), count <= 3);
      page_.beginList();
      for (std::size_t index = 0; index < count; ++index, ++next) {
        if (index >= kShownInAFold && !full_) continue;
        page_.item(HTMLPage::escaped(Sentences::marked(*next)));
      }
      page_.endList();
      if (count > kShownInAFold && !full_) page_.note(fmt::format("… and {} more (--full)", count - kShownInAFold));
      page_.endFold();
    }
  }

  void parse(const Report::Parse& parse) {
    page_.section("Reading the PPD");
    page_.beginTable();
    if (parse.failure) {
      if (parse.failure->lineNumber) page_.row("Malformed line", std::to_string(*parse.failure->lineNumber));
      page_.row("Line", code(parse.failure->line));
      page_.row("Expected", HTMLPage::escaped(parse.failure->expected));
    } else {
      page_.row("Read",
                fmt::format("{}, {}, {}, {}", Wording::counted(parse.lines, "line"),
                            Wording::counted(parse.statements, "statement"), Wording::counted(parse.groups, "group"),
                            Wording::counted(parse.options, "option")));
      page_.row("Model name", code(parse.modelName));
      page_.row("Languages", HTMLPage::escaped(fmt::format("{}", fmt::join(parse.languages, " "))));
    }
    page_.endTable();
  }

  void updaters(const Report& report) {
    page_.section("Updaters that the PPD names");
    page_.beginTable();
    for (const Report::Updater& updater : report.updaters) page_.row(updater.name, outcomeOf(updater));
    page_.endTable();
  }

  static std::string outcomeOf(const Report::Updater& updater) {
    if (!updater.known) return HTMLPage::span("odd", "unknown, skipped");
    switch (updater.outcome) {
      case Report::UpdaterOutcome::succeeded:
        return fmt::format("{}, {} changes", HTMLPage::span("good", "done"), updater.realChanges());
      case Report::UpdaterOutcome::failed:
        return HTMLPage::span("bad", "cannot update the PPD");
      case Report::UpdaterOutcome::threw:
        return HTMLPage::span("bad", "ended by an error: " + HTMLPage::escaped(updater.error));
      default:
        return "not reached";
    }
  }

  void device(const Report::DeviceAnswer& device) {
    page_.section("What the device-model library answered");
    page_.beginTable();
    if (!device.libraryAvailable) page_.row("Library", HTMLPage::span("bad", "not there"));
    if (device.question) {
      page_.row("Asked for URI", code(device.question->deviceURI));
      page_.row("and model name", code(device.question->modelName));
    }
    if (device.familyCode) page_.row("Family", code(device.familyCode));
    if (device.media) page_.row("Media list version", code(device.listVersion));
    page_.endTable();
  }

  void media(const Report::Updater& updater) {
    if (updater.media.empty()) return;
    page_.section("What became of each medium: " + updater.name);
    page_.filterBox();
    for (const Report::MediumOutcome& each : updater.media) medium(each);
  }

  void medium(const Report::MediumOutcome& medium) {
    const Report::Medium& device = medium.device;
    page_.beginFold(HTMLPage::escaped(device.name.value_or("–")) + " " + code(device.ID) + " " + stateOf(medium), false,
                    "medium");
    page_.beginTable();
    if (!medium.notAdded.empty()) page_.row("Left out", HTMLPage::span("bad", HTMLPage::escaped(medium.notAdded)));
    if (medium.choiceName) page_.row(medium.added ? "New choice" : "Choice", code(medium.choiceName));
    if (medium.choiceCode) page_.row("Code", code(medium.choiceCode));
    if (device.categoryID) page_.row("Category", code(device.categoryID));
    if (medium.parent) page_.row("Properties", code(medium.inherited) + " from " + code(medium.parent));
    for (const Report::Profile& each : medium.profiles) page_.row("Profile", profile(each));
    if (medium.profilesFailure) {
      page_.row("Profiles", HTMLPage::span("bad", "ended by an error: " + HTMLPage::escaped(*medium.profilesFailure)));
    }
    if (medium.glossAfter) page_.row("Gloss", code(medium.glossBefore) + " → " + code(medium.glossAfter));
    page_.endTable();
    page_.endFold();
  }

  static std::string stateOf(const Report::MediumOutcome& medium) {
    if (medium.added) return HTMLPage::span("good", HTMLPage::escaped(*medium.choiceName));
    if (medium.device.custom) return HTMLPage::span("bad", "left out");
    return medium.choiceName ? HTMLPage::escaped(*medium.choiceName) : "";
  }

  static std::string profile(const Report::Profile& profile) {
    if (profile.outcome == Report::ProfileOutcome::skipped) {
      return code(profile.name) + " " + HTMLPage::span("odd", "left out: " + HTMLPage::escaped(profile.reason));
    }
    return fmt::format("{} {}: {}, {}", code(profile.spec),
                       profile.outcome == Report::ProfileOutcome::added ? "added" : "rewritten", code(profile.name),
                       code(profile.path));
  }

  void cleanup(const Report::Updater& updater) {
    if (updater.removedMedia.empty() && updater.replacedMedia.empty() && updater.restoredProfiles.empty()) return;
    page_.section("Cleaned up and restored: " + updater.name);
    names("Media of an earlier setup removed", updater.removedMedia);
    names("Media of an earlier updater of this run removed", updater.replacedMedia);
    names("Factory profiles restored", updater.restoredProfiles);
  }

  void names(const char* title, const std::vector<std::string>& names) {
    if (names.empty()) return;
    page_.beginFold(fmt::format("{} ({})", title, names.size()), names.size() <= 10);
    page_.beginList();
    for (const std::string& name : names) page_.item(code(name));
    page_.endList();
    page_.endFold();
  }

  void changes(const Report::Updater& updater) {
    if (updater.changes.empty()) return;
    const std::size_t real = updater.realChanges();
    page_.section("Changes of the PPD: " + updater.name);
    page_.note(
        fmt::format("{} statements were removed and written again as they were.", updater.changes.size() - real));
    if (real == 0) return;
    page_.beginFold(fmt::format("{} statements", real), real <= 30);
    page_.beginChanges();
    std::size_t shown = 0;
    for (const Report::Change& change : updater.changes) {
      if (change.kind == Report::ChangeKind::moved) continue;
      if (shown++ >= ReportWriters::kShownChanges && !full_) continue;
      for (const std::string& line : Wording::visibleLines(change.before)) page_.removed(line);
      for (const std::string& line : Wording::visibleLines(change.after)) page_.added(line);
    }
    page_.endChanges();
    if (shown > ReportWriters::kShownChanges && !full_) {
      page_.note(fmt::format("… and {} more (--full)", shown - ReportWriters::kShownChanges));
    }
    page_.endFold();
  }

  HTMLPage page_{"A run of Vorantis autosetup"};
  bool full_;
};

}  // namespace

std::string ReportWriters::html(const Report& report, bool full) {
  return HTMLWriter(full).write(report);
}
