// SPDX-License-Identifier: MIT
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "explain/report/Sentences.h"
#include "explain/report/Verdict.h"
#include "explain/report/Wording.h"
#include "explain/show/ReportWriters.h"
#include "explain/show/TextLayout.h"

namespace {

using OptionalText = Report::OptionalText;
using ReportWriters::Detail;
using Colour = TextLayout::Colour;
using Wording::visible;

// Of a long list so many are shown, unless all are asked for.
constexpr std::size_t kShownMedia = 20;
constexpr std::size_t kShownStatements = 30;
constexpr std::size_t kShownInText = 2;

// A text of any length must not push the rest from the screen.
constexpr std::size_t kLongestShown = 300;

std::string shown(const OptionalText& text) {
  return text ? TextLayout::fitted(visible(*text), kLongestShown) : "-";
}

class TextWriter {
 public:
  explicit TextWriter(const ReportWriters::TextStyle& style)
      : layout_(std::clamp(style.width, TextLayout::kNarrowest, TextLayout::kWidest), style.colour),
        detail_(style.detail) {}

  std::string write(const Report& report) {
    verdict(report);
    warnings(report);
    if (detail_ == Detail::usual || detail_ == Detail::full) details(report);
    return layout_.take();
  }

 private:
  void details(const Report& report) {
    if (report.parse) parse(*report.parse);
    if (!report.updaters.empty()) updaters(report);
    if (report.device) device(*report.device);
    for (const Report::Updater& updater : report.updaters) media(updater);
    for (const Report::Updater& updater : report.updaters) cleanup(updater);
    for (const Report::Updater& updater : report.updaters) changes(updater);
  }

  void verdict(const Report& report) {
    static constexpr Colour kColours[] = {Colour::green, Colour::yellow, Colour::red, Colour::red};
    const Colour colour = kColours[static_cast<int>(Verdict::colourOf(report))];
    layout_.wrapped(layout_.inColour(colour, "Result") + "   ", std::string(9, ' '),
                    Verdict::outcome(report) + (report.succeeded() ? "" : ": " + visible(report.failure)));
    if (const std::string media = Verdict::media(report); !media.empty()) layout_.field("Media", media);
    if (const std::string warnings = Verdict::warnings(report); !warnings.empty()) layout_.field("Warnings", warnings);
    const auto& arguments = report.arguments;
    layout_.field("Device", shown(arguments.deviceURI) +
                                (arguments.printerID ? ", printer ID " + visible(*arguments.printerID) : ""));
    layout_.field("PPD", shown(arguments.PPDPath));
  }

  // Warnings stand in the order of their codes.
  void warnings(const Report& report) {
    if (report.warnings.empty()) return;
    layout_.heading("Warnings");
    const auto counts = Verdict::warningCounts(report);
    auto next = report.warnings.begin();
    for (const auto& [code, count] : counts) {
      if (detail_ == Detail::summary) {
        layout_.line(fmt::format("{} {}: {}", count, nameOf(code), Sentences::of(*next)));
        next += static_cast<std::ptrdiff_t>(count);
        continue;
      }
      for (std::size_t index = 0; index < count; ++index, ++next) {
        if (index < shownOfACode(count)) warning(*next);
      }
      const std::size_t more = count - std::min(count, shownOfACode(count));
      if (more > 0) layout_.line(fmt::format("  … and {} more [{}] (--warnings)", more, nameOf(code)));
    }
  }

  std::size_t shownOfACode(std::size_t count) const {
    return detail_ == Detail::usual && count > kShownInText + 1 ? kShownInText : count;
  }

  void warning(const Warning& warning) {
    const std::string text = fmt::format("{} [{}]", Sentences::marked(warning), nameOf(warning.code));
    layout_.wrapped("  " + layout_.inColour(Colour::yellow, "!") + " ", "    ", text);
  }

  void parse(const Report::Parse& parse) {
    layout_.heading("Reading the PPD");
    if (parse.failure) return failure(*parse.failure);
    layout_.line(fmt::format("{}, {}, {}, {}", Wording::counted(parse.lines, "line"),
                             Wording::counted(parse.statements, "statement"), Wording::counted(parse.groups, "group"),
                             Wording::counted(parse.options, "option")));
    layout_.paragraph("Model name: " + shown(parse.modelName));
    layout_.paragraph("Languages: " +
                      (parse.languages.empty() ? "none" : visible(fmt::format("{}", fmt::join(parse.languages, " ")))));
  }

  void failure(const Report::ParseFailure& failure) {
    if (failure.lineNumber) {
      layout_.line(fmt::format("Line {} is malformed (error {}):", *failure.lineNumber, failure.code));
    }
    if (failure.line) layout_.line("  " + visible(*failure.line));
    layout_.paragraph("Expected: " + failure.expected);
  }

  void updaters(const Report& report) {
    layout_.heading("Updaters that the PPD names");
    for (const Report::Updater& updater : report.updaters) {
      layout_.paragraph(TextLayout::padded(visible(updater.name), 38) + " " + outcomeOf(updater));
      if (!updater.error.empty()) layout_.paragraph("  " + visible(updater.error));
    }
  }

  std::string outcomeOf(const Report::Updater& updater) const {
    if (!updater.known) return "unknown, skipped";
    switch (updater.outcome) {
      case Report::UpdaterOutcome::succeeded:
        return fmt::format("done, {} changes", updater.realChanges());
      case Report::UpdaterOutcome::failed:
        return "cannot update the PPD";
      case Report::UpdaterOutcome::threw:
        return "ended by an error";
      default:
        return "not reached";
    }
  }

  void device(const Report::DeviceAnswer& device) {
    layout_.heading("What the device-model library answered");
    if (!device.libraryAvailable) layout_.line("The library is not there.");
    if (device.question) {
      layout_.paragraph(fmt::format("Asked for: URI {}, model name {}", shown(device.question->deviceURI),
                                    shown(device.question->modelName)));
    }
    if (device.familyCode)
      layout_.paragraph("Family: " + (device.familyCode->empty() ? "unknown" : visible(*device.familyCode)));
    if (!device.media) return;
    layout_.paragraph("Media list version: " + shown(device.listVersion));
    if (device.media->empty()) {
      return layout_.line(device.itemFound ? "The device has no media."
                                           : "The library knows of no media of such a device.");
    }
    layout_.line(row("NAME", "ID", "CATEGORY", "PARENT", "PROFILES", "GLOSS"));
    const std::size_t shownOnes = shownOf(device.media->size(), kShownMedia);
    for (std::size_t index = 0; index < shownOnes; ++index) layout_.line(row((*device.media)[index]));
    more(device.media->size() - shownOnes, "media");
  }

  std::string row(const Report::Medium& medium) const {
    return row(shown(medium.name), shown(medium.ID), shown(medium.categoryID), shown(medium.parentID),
               std::to_string(medium.profiles), shown(medium.gloss));
  }

  // What the line is wider than the usual one goes to the name.
  std::string row(const std::string& name, const std::string& ID, const std::string& category,
                  const std::string& parent, const std::string& profiles, const std::string& gloss) const {
    const std::size_t nameWidth = layout_.width() - 60;
    return TextLayout::padded(name, std::max<std::size_t>(nameWidth, 8)) + " " + TextLayout::padded(ID, 10) + " " +
           TextLayout::padded(category, 17) + " " + TextLayout::padded(parent, 8) + " " +
           TextLayout::padded(profiles, 8) + " " + gloss;
  }

  void media(const Report::Updater& updater) {
    if (updater.media.empty()) return;
    layout_.heading("What became of each medium: " + visible(updater.name));
    const std::size_t shownOnes = shownOf(updater.media.size(), kShownMedia);
    for (std::size_t index = 0; index < shownOnes; ++index) outcome(updater.media[index]);
    more(updater.media.size() - shownOnes, "media; --medium=NAME-OR-ID shows one");
  }

  void outcome(const Report::MediumOutcome& medium) {
    const std::string name = Wording::of(medium.device);
    if (medium.added) {
      layout_.wrapped("  " + layout_.inColour(Colour::green, "+") + " ", "    ",
                      name + " is the choice " + visible(*medium.choiceName));
    } else if (medium.device.custom) {
      layout_.wrapped("  " + layout_.inColour(Colour::red, "!") + " ", "    ", name + " is left out");
      layout_.detail("why", visible(medium.notAdded));
    } else {
      layout_.wrapped("    ", "    ", name + choiceOf(medium));
    }
    inside(medium);
  }

  // Of a factory medium.
  static std::string choiceOf(const Report::MediumOutcome& medium) {
    if (medium.choiceName) return " is the choice " + visible(*medium.choiceName);
    return medium.lookedUp ? " has no choice" : " needs nothing";
  }

  void inside(const Report::MediumOutcome& medium) {
    if (medium.choiceCode) layout_.detail("code", visible(*medium.choiceCode));
    if (medium.inherited) {
      layout_.detail("properties", fmt::format("{}, from {}", visible(*medium.inherited), shown(medium.parent)));
    } else if (medium.parent) {
      layout_.detail("properties", fmt::format("none: {} has none", shown(medium.parent)));
    }
    for (const Report::Profile& each : medium.profiles) profile(each);
    if (medium.profilesFailure) layout_.detail("profiles", "ended by an error: " + visible(*medium.profilesFailure));
    if (medium.device.gloss || medium.glossBefore != medium.glossAfter) {
      layout_.detail("gloss", fmt::format("device {}: {} before, {} after", shown(medium.device.gloss),
                                          shown(medium.glossBefore), shown(medium.glossAfter)));
    }
  }

  void profile(const Report::Profile& profile) {
    if (profile.outcome == Report::ProfileOutcome::skipped) {
      return layout_.detail("profile", fmt::format("{} left out: {}", shown(profile.name), profile.reason));
    }
    const char* outcome = profile.outcome == Report::ProfileOutcome::added ? "added" : "rewritten";
    layout_.detail("profile", fmt::format("{} {}: {}, {}", shown(profile.spec), outcome, shown(profile.name),
                                          shown(profile.path)));
  }

  void cleanup(const Report::Updater& updater) {
    if (updater.removedMedia.empty() && updater.replacedMedia.empty() && updater.restoredProfiles.empty()) return;
    layout_.heading("Cleaned up and restored: " + visible(updater.name));
    names("medium {} of an earlier setup removed", updater.removedMedia);
    names("medium {} of an earlier updater of this run removed", updater.replacedMedia);
    names("factory profile {} restored", updater.restoredProfiles);
  }

  void names(const char* sentence, const std::vector<std::string>& names) {
    const std::size_t shownOnes = shownOf(names.size(), kShownMedia);
    for (std::size_t index = 0; index < shownOnes; ++index) {
      layout_.paragraph(fmt::format(fmt::runtime(sentence), visible(names[index])));
    }
    more(names.size() - shownOnes, "");
  }

  void changes(const Report::Updater& updater) {
    if (updater.changes.empty()) return;
    layout_.heading("Changes of the PPD: " + visible(updater.name));
    std::size_t shownOnes = 0;
    std::size_t moved = 0;
    std::size_t left = 0;
    for (const Report::Change& change : updater.changes) {
      if (change.kind == Report::ChangeKind::moved && detail_ != Detail::full) {
        ++moved;
      } else if (shownOnes == kShownStatements && detail_ != Detail::full) {
        ++left;
      } else {
        ++shownOnes;
        show(change);
      }
    }
    more(left, "");
    if (moved > 0) {
      layout_.line(fmt::format("{} statements were removed and written again as they were (--full)", moved));
    }
  }

  void show(const Report::Change& change) {
    if (change.kind == Report::ChangeKind::moved) return lines('=', Colour::bold, change.after);
    lines('-', Colour::red, change.before);
    lines('+', Colour::green, change.after);
  }

  void lines(char sign, Colour colour, std::string_view statement) {
    for (const std::string& each : Wording::visibleLines(statement)) {
      layout_.line(sign + std::string(" ") + each, colour);
    }
  }

  std::size_t shownOf(std::size_t count, std::size_t limit) const {
    return detail_ == Detail::full ? count : std::min(count, limit);
  }

  void more(std::size_t count, const std::string& of) {
    if (count > 0) layout_.line(fmt::format("… and {} more{}{} (--full)", count, of.empty() ? "" : " ", of));
  }

  TextLayout layout_;
  Detail detail_;
};

}  // namespace

std::string ReportWriters::text(const Report& report, const TextStyle& style) {
  return TextWriter(style).write(report);
}
