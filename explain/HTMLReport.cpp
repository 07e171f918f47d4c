// SPDX-License-Identifier: MIT
#include <fmt/format.h>
#include <fmt/ranges.h>

#include "explain/ReportWriters.h"
#include "explain/Verdict.h"
#include "explain/Wording.h"

namespace {

using OptionalText = Report::OptionalText;

constexpr const char* kHead = R"(<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8"><title>Vorantis autosetup: a run explained</title>
<meta name="viewport" content="width=device-width">
<style>
body { font: 15px/1.45 system-ui, sans-serif; max-width: 62rem; margin: 2rem auto; padding: 0 1rem; color: #1b1f24; }
h1 { font-size: 1.4rem; } h2 { font-size: 1.1rem; margin-top: 2rem; border-bottom: 1px solid #d0d7de; }
h3 { font-size: 1rem; margin-bottom: .2rem; }
table { border-collapse: collapse; } td, th { padding: .15rem .8rem .15rem 0; text-align: left; vertical-align: top; }
th { font-weight: 600; color: #57606a; }
code, pre { font: 13px/1.4 ui-monospace, monospace; overflow-wrap: anywhere; }
pre { background: #f6f8fa; padding: .6rem; white-space: pre-wrap; }
ins, del { text-decoration: none; display: block; min-height: 1.4em; }
ins { background: #dafbe1; } del { background: #ffebe9; }
.good { color: #116329; } .bad { color: #a40e26; } .odd, .warning { color: #7d4e00; }
</style></head><body>
)";

std::string escaped(std::string_view text) {
  std::string html;
  for (const char character : Wording::visible(text)) {
    switch (character) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '"':
        html += "&quot;";
        break;
      default:
        html += character;
    }
  }
  return html;
}

std::string code(const OptionalText& text) {
  return text ? "<code>" + escaped(*text) + "</code>" : "–";
}

std::string span(const char* type, const std::string& text) {
  return fmt::format("<span class=\"{}\">{}</span>", type, text);
}

class Page {
 public:
  std::string write(const Report& report) {
    html_ = kHead;
    head(report);
    if (report.parse) parse(*report.parse);
    warnings(report);
    if (!report.updaters.empty()) updaters(report);
    if (report.device && report.device->familyCode) heading("Family: " + code(report.device->familyCode));
    if (report.device && !report.device->libraryAvailable) {
      heading("The device-model library is not there");
    } else if (report.device && report.device->media) {
      media(*report.device);
    }
    for (const Report::Updater& updater : report.updaters) {
      outcomes(updater);
      cleanup(updater);
      changes(updater);
    }
    return html_ + "</body></html>\n";
  }

 private:
  static const char* classOf(Verdict::Colour colour) {
    if (colour == Verdict::Colour::bad) return "bad";
    return colour == Verdict::Colour::good ? "good" : "odd";
  }

  void head(const Report& report) {
    html_ += "<h1>A run of Vorantis autosetup</h1>\n<table>\n";
    const std::string reason = report.succeeded() ? "" : ": " + escaped(report.failure);
    row("Result", span(classOf(Verdict::colourOf(report)), Verdict::outcome(report) + reason));
    if (const std::string media = Verdict::media(report); !media.empty()) row("Media", escaped(media));
    if (const std::string warnings = Verdict::warnings(report); !warnings.empty()) row("Warnings", escaped(warnings));
    row("Device URI", code(report.arguments.deviceURI));
    row("PPD", code(report.arguments.PPDPath));
    if (report.arguments.printerID) row("Printer ID", code(report.arguments.printerID));
    html_ += "</table>\n";
  }

  void parse(const Report::Parse& parse) {
    heading("Reading the PPD");
    html_ += "<table>\n";
    if (parse.failure) {
      if (parse.failure->lineNumber) row("Malformed line", std::to_string(*parse.failure->lineNumber));
      row("Line", code(parse.failure->line));
      row("Expected", escaped(parse.failure->expected));
    } else {
      row("Read", fmt::format("{} lines, {} statements, {} groups, {} options", parse.lines, parse.statements,
                              parse.groups, parse.options));
      row("Model name", code(parse.modelName));
      row("Languages", escaped(fmt::format("{}", fmt::join(parse.languages, " "))));
    }
    html_ += "</table>\n";
  }

  void warnings(const Report& report) {
    if (report.warnings.empty()) return;
    heading("Warnings");
    html_ += "<ul>\n";
    for (const Report::Warning& warning : report.warnings) {
      html_ += fmt::format("<li class=\"warning\">{}{} <code>{}</code></li>\n", warning.inInput ? Wording::inInput : "",
                           escaped(warning.text), warning.code);
    }
    html_ += "</ul>\n";
  }

  void updaters(const Report& report) {
    heading("Updaters that the PPD names");
    html_ += "<table>\n";
    for (const Report::Updater& updater : report.updaters) row(escaped(updater.name), outcomeOf(updater));
    html_ += "</table>\n";
  }

  static std::string outcomeOf(const Report::Updater& updater) {
    if (!updater.known) return span("warning", "unknown, skipped");
    switch (updater.outcome) {
      case Report::UpdaterOutcome::succeeded:
        return fmt::format("{}, {} changes", span("good", "done"), updater.changes.size());
      case Report::UpdaterOutcome::failed:
        return span("bad", "cannot update the PPD");
      case Report::UpdaterOutcome::threw:
        return span("bad", "ended by an error: " + escaped(updater.error));
      default:
        return "not reached";
    }
  }

  void media(const Report::DeviceAnswer& device) {
    heading("What the device-model library answered");
    html_ += "<p>Media list version " + code(device.listVersion) + "</p>\n<table>\n<tr>";
    for (const char* title : {"Name", "ID", "Category", "Parent", "Profiles", "Gloss"}) {
      html_ += fmt::format("<th>{}</th>", title);
    }
    html_ += "</tr>\n";
    for (const Report::Medium& medium : *device.media) {
      html_ += fmt::format("<tr><td>{}</td><td>{}</td><td>{}</td><td>{}</td><td>{}</td><td>{}</td></tr>\n",
                           code(medium.name), code(medium.ID), code(medium.categoryID), code(medium.parentID),
                           medium.profiles, code(medium.gloss));
    }
    html_ += "</table>\n";
  }

  void outcomes(const Report::Updater& updater) {
    if (updater.media.empty()) return;
    heading("What became of each medium: " + escaped(updater.name));
    for (const Report::MediumOutcome& medium : updater.media) outcome(medium);
  }

  void outcome(const Report::MediumOutcome& medium) {
    html_ += fmt::format("<h3>{} ({})</h3>\n<table>\n", escaped(medium.device.name.value_or("–")),
                         escaped(medium.device.ID.value_or("–")));
    if (!medium.notAdded.empty()) row("Left out", span("bad", escaped(medium.notAdded)));
    if (medium.choiceName) row(medium.added ? "New choice" : "Choice", code(medium.choiceName));
    if (medium.choiceCode) row("Code", code(medium.choiceCode));
    if (medium.parent) row("Properties", code(medium.inherited) + " from " + code(medium.parent));
    for (const Report::Profile& each : medium.profiles) row("Profile", profile(each));
    if (medium.profilesFailure) row("Profiles", span("bad", "ended by an error: " + escaped(*medium.profilesFailure)));
    if (medium.glossAfter) row("Gloss", code(medium.glossBefore) + " → " + code(medium.glossAfter));
    html_ += "</table>\n";
  }

  static std::string profile(const Report::Profile& profile) {
    if (profile.outcome == Report::ProfileOutcome::skipped) {
      return code(profile.name) + " " + span("warning", "skipped: " + escaped(profile.reason));
    }
    return fmt::format("{} {}: {}, {}", code(profile.spec),
                       profile.outcome == Report::ProfileOutcome::added ? "added" : "rewritten", code(profile.name),
                       code(profile.path));
  }

  void cleanup(const Report::Updater& updater) {
    if (updater.removedMedia.empty() && updater.restoredProfiles.empty()) return;
    heading("Cleaned up and restored: " + escaped(updater.name));
    html_ += "<ul>\n";
    for (const std::string& name : updater.removedMedia)
      html_ += "<li>medium " + code(name) + " of an earlier setup</li>\n";
    for (const std::string& spec : updater.restoredProfiles) html_ += "<li>factory profile " + code(spec) + "</li>\n";
    html_ += "</ul>\n";
  }

  void changes(const Report::Updater& updater) {
    if (updater.changes.empty()) return;
    heading("Changes of the PPD: " + escaped(updater.name));
    html_ += "<pre>";
    for (const Report::Change& change : updater.changes) {
      if (change.kind == Report::ChangeKind::moved) continue;
      for (const std::string& line : Wording::visibleLines(change.before)) html_ += "<del>" + escaped(line) + "</del>";
      for (const std::string& line : Wording::visibleLines(change.after)) html_ += "<ins>" + escaped(line) + "</ins>";
    }
    html_ += "</pre>\n";
  }

  void heading(const std::string& title) { html_ += "<h2>" + title + "</h2>\n"; }
  void row(const std::string& name, const std::string& value) {
    html_ += "<tr><th>" + name + "</th><td>" + value + "</td></tr>\n";
  }

  std::string html_;
};

}  // namespace

std::string ReportWriters::html(const Report& report) {
  return Page().write(report);
}
