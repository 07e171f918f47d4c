// SPDX-License-Identifier: MIT
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <iterator>

#include "base/Text.h"
#include "explain/ReportWriters.h"
#include "explain/Verdict.h"
#include "explain/Wording.h"

namespace {

using OptionalText = Report::OptionalText;
using Wording::visible;

constexpr std::size_t kWidth = 80;
constexpr std::size_t kNameWidth = 45;
constexpr std::size_t kShownChanges = 30;  // of each updater, unless all are asked for

std::size_t widthOf(std::string_view text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char byte) { return (byte & 0xC0) != 0x80; }));
}

// The first characters that fit, with an ellipsis for what does not.
std::string fitted(const std::string& text, std::size_t width) {
  if (widthOf(text) <= width) return text;
  std::size_t end = 0;
  for (std::size_t taken = 0; taken + 1 < width; ++taken) end += Text::characterAt(text, end).size;
  return text.substr(0, end) + "…";
}

std::string padded(const std::string& text, std::size_t width) {
  const std::string cut = fitted(text, width);
  return cut + std::string(width - widthOf(cut), ' ');
}

std::string shown(const OptionalText& text) {
  return text ? visible(*text) : "-";
}

class Writer {
 public:
  explicit Writer(const ReportWriters::TextStyle& style) : style_(style) {}

  std::string write(const Report& report) {
    head(report);
    if (report.parse) parse(*report.parse);
    if (!report.updaters.empty()) updaters(report);
    if (report.device) device(*report.device);
    if (!report.device && report.arguments.printerID && !report.updaters.empty()) {
      heading("The device-model library was not asked");
      line("A printer that is known by its ID only has no media for the updaters.");
    }
    for (const Report::Updater& updater : report.updaters) media(updater);
    for (const Report::Updater& updater : report.updaters) cleanup(updater);
    for (const Report::Updater& updater : report.updaters) changes(updater);
    warnings(report);
    return std::move(text_);
  }

 private:
  static constexpr const char* kBold = "1";
  static constexpr const char* kGreen = "32";
  static constexpr const char* kRed = "31";
  static constexpr const char* kYellow = "33";

  static const char* colourOf(Verdict::Colour colour) {
    if (colour == Verdict::Colour::bad) return kRed;
    return colour == Verdict::Colour::good ? kGreen : kYellow;
  }

  void head(const Report& report) {
    field("Result", coloured(Verdict::outcome(report), colourOf(Verdict::colourOf(report))));
    if (!report.succeeded()) field("", visible(report.failure));
    if (const std::string media = Verdict::media(report); !media.empty()) field("Media", media);
    if (const std::string warnings = Verdict::warnings(report); !warnings.empty()) field("Warnings", warnings);
    field("Device URI", shown(report.arguments.deviceURI));
    field("PPD", shown(report.arguments.PPDPath));
    if (report.arguments.printerID) field("Printer ID", shown(report.arguments.printerID));
  }

  void parse(const Report::Parse& parse) {
    heading("Reading the PPD");
    if (parse.failure) {
      const Report::ParseFailure& failure = *parse.failure;
      if (failure.lineNumber) line(fmt::format("Line {} is malformed (error {}):", *failure.lineNumber, failure.code));
      if (failure.line) line("  " + fitted(visible(*failure.line), kWidth - 4));
      line("Expected: " + failure.expected);
      return;
    }
    line(fmt::format("{} lines, {} statements, {} groups, {} options", parse.lines, parse.statements, parse.groups,
                     parse.options));
    paragraph("Model name: " + shown(parse.modelName));
    paragraph("Languages: " +
              (parse.languages.empty() ? "none" : visible(fmt::format("{}", fmt::join(parse.languages, " ")))));
  }

  void updaters(const Report& report) {
    heading("Updaters that the PPD names");
    for (const Report::Updater& updater : report.updaters) {
      line(padded(visible(updater.name), 38) + " " + outcomeOf(updater));
      if (!updater.error.empty()) paragraph("  " + visible(updater.error));
    }
  }

  std::string outcomeOf(const Report::Updater& updater) const {
    if (!updater.known) return coloured("unknown, skipped", kYellow);
    switch (updater.outcome) {
      case Report::UpdaterOutcome::succeeded:
        return fmt::format("{}, {} changes", coloured("done", kGreen), updater.changes.size());
      case Report::UpdaterOutcome::failed:
        return coloured("cannot update the PPD", kRed);
      case Report::UpdaterOutcome::threw:
        return coloured("ended by an error", kRed);
      default:
        return "not reached";
    }
  }

  void device(const Report::DeviceAnswer& device) {
    heading("What the device-model library answered");
    if (!device.libraryAvailable) line("The library is not there.");
    if (device.familyCode)
      paragraph("Family: " + (device.familyCode->empty() ? "unknown" : visible(*device.familyCode)));
    if (!device.media) return;
    paragraph("Media list version: " + shown(device.listVersion));
    if (device.media->empty()) {
      return line(device.listVersion ? "The device has no media." : "The library knows of no media of such a device.");
    }
    line(row("NAME", "ID", "CATEGORY", "PARENT", "PROFILES", "GLOSS"));
    for (const Report::Medium& medium : *device.media) {
      line(row(shown(medium.name), shown(medium.ID), shown(medium.categoryID), shown(medium.parentID),
               std::to_string(medium.profiles), shown(medium.gloss)));
    }
  }

  static std::string row(const std::string& name, const std::string& ID, const std::string& category,
                         const std::string& parent, const std::string& profiles, const std::string& gloss) {
    return padded(name, 20) + " " + padded(ID, 10) + " " + padded(category, 17) + " " + padded(parent, 8) + " " +
           padded(profiles, 8) + " " + fitted(gloss, 9);
  }

  void media(const Report::Updater& updater) {
    if (updater.media.empty()) return;
    heading("What became of each medium: " + updater.name);
    for (const Report::MediumOutcome& medium : updater.media) outcome(medium);
  }

  void outcome(const Report::MediumOutcome& medium) {
    const std::string name = fmt::format("{} ({})", shown(medium.device.name), shown(medium.device.ID));
    if (medium.device.custom) {
      line(medium.added
               ? coloured("+", kGreen) + " " + fitted(name, kNameWidth) + " is the choice " + *medium.choiceName
               : coloured("!", kRed) + " " + fitted(name, kNameWidth) + " is left out");
      if (!medium.added) detail("why", medium.notAdded);
    } else {
      paragraph("  " + fitted(name, kNameWidth) + choiceOf(medium));
    }
    if (medium.choiceCode) detail("code", visible(*medium.choiceCode));
    if (medium.inherited) {
      detail("properties", fmt::format("{}, from {}", visible(*medium.inherited), shown(medium.parent)));
    } else if (medium.parent) {
      detail("properties", fmt::format("none: {} has none", shown(medium.parent)));
    }
    for (const Report::Profile& each : medium.profiles) profile(each);
    if (medium.profilesFailure) detail("profiles", "ended by an error: " + visible(*medium.profilesFailure));
    if (medium.device.gloss || medium.glossBefore != medium.glossAfter) {
      detail("gloss", fmt::format("device {}: {} before, {} after", shown(medium.device.gloss),
                                  shown(medium.glossBefore), shown(medium.glossAfter)));
    }
  }

  // Of a factory medium.
  static std::string choiceOf(const Report::MediumOutcome& medium) {
    if (medium.choiceName) return " is the choice " + visible(*medium.choiceName);
    return medium.lookedUp ? " has no choice" : " needs nothing";
  }

  void profile(const Report::Profile& profile) {
    switch (profile.outcome) {
      case Report::ProfileOutcome::added:
        return detail("profile",
                      fmt::format("{} added: {}, {}", shown(profile.spec), shown(profile.name), shown(profile.path)));
      case Report::ProfileOutcome::rewritten:
        return detail("profile", fmt::format("{} rewritten: {}, {}", shown(profile.spec), shown(profile.name),
                                             shown(profile.path)));
      default:
        return detail("profile",
                      fmt::format("{} {}: {}", shown(profile.name), coloured("skipped", kYellow), profile.reason));
    }
  }

  void cleanup(const Report::Updater& updater) {
    if (updater.removedMedia.empty() && updater.restoredProfiles.empty()) return;
    heading("Cleaned up and restored: " + updater.name);
    for (const std::string& name : updater.removedMedia)
      paragraph("- medium " + visible(name) + " of an earlier setup");
    for (const std::string& spec : updater.restoredProfiles) paragraph("  factory profile " + visible(spec));
  }

  void changes(const Report::Updater& updater) {
    if (updater.changes.empty()) return;
    heading("Changes of the PPD: " + updater.name);
    std::size_t shownOnes = 0;
    std::size_t moved = 0;
    std::size_t more = 0;
    for (const Report::Change& change : updater.changes) {
      if (change.kind == Report::ChangeKind::moved && !style_.full) {
        ++moved;
      } else if (shownOnes == kShownChanges && !style_.full) {
        ++more;
      } else {
        ++shownOnes;
        show(change);
      }
    }
    if (more > 0) line(fmt::format("… and {} more (--full)", more));
    if (moved > 0) line(fmt::format("{} statements were removed and written again as they were (--full)", moved));
  }

  void show(const Report::Change& change) {
    if (change.kind == Report::ChangeKind::moved) return lines('=', kBold, change.after);
    lines('-', kRed, change.before);
    lines('+', kGreen, change.after);
  }

  void lines(char sign, const char* colour, std::string_view statement) {
    for (const std::string& each : Wording::visibleLines(statement)) {
      line(coloured(fitted(sign + std::string(" ") + each, kWidth - 2), colour));
    }
  }

  void warnings(const Report& report) {
    if (report.warnings.empty()) return;
    heading("Warnings");
    for (const Report::Warning& warning : report.warnings) {
      wrapped(coloured("! ", kYellow), "    ",
              fmt::format("{}{} [{}]", warning.inInput ? Wording::inInput : "", warning.text, warning.code));
    }
  }

  void heading(const std::string& title) { text_ += "\n" + coloured(fitted(title, kWidth), kBold) + "\n"; }
  // What is known to fit into a line, and what may not.
  void line(const std::string& content) { text_ += "  " + content + "\n"; }
  void paragraph(const std::string& content) { wrapped("", "    ", content); }
  void field(const std::string& name, const std::string& value) {
    wrapped(padded(name, 10) + " ", std::string(11, ' '), value, "");
  }
  void detail(const std::string& name, const std::string& value) {
    wrapped("    " + padded(name, 10) + " ", std::string(17, ' '), value);
  }

  // The content behind the prefix, further lines behind the indent, broken between words where possible.
  void wrapped(const std::string& prefix, const std::string& indent, const std::string& content,
               const std::string& margin = "  ") {
    const std::size_t width = kWidth - indent.size();
    std::string rest = content;
    std::string lead = margin + prefix;
    do {
      std::size_t end = 0;
      std::size_t lastBlank = 0;
      for (std::size_t taken = 0; taken < width && end < rest.size(); ++taken) {
        if (rest[end] == ' ') lastBlank = end;
        end += Text::characterAt(rest, end).size;
      }
      if (end < rest.size() && lastBlank > 0) end = lastBlank;
      text_ += lead + rest.substr(0, end) + "\n";
      rest.erase(0, rest.compare(end, 1, " ") == 0 ? end + 1 : end);
      lead = indent;
    } while (!rest.empty());
  }

  std::string coloured(const std::string& text, const char* colour) const {
    return style_.colour ? fmt::format("\x1b[{}m{}\x1b[0m", colour, text) : text;
  }

  const ReportWriters::TextStyle& style_;
  std::string text_;
};

}  // namespace

std::string ReportWriters::text(const Report& report, const TextStyle& style) {
  return Writer(style).write(report);
}
