// SPDX-License-Identifier: MIT
#include "explain/show/ReportWalk.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "explain/report/Wording.h"
#include "explain/show/MediaWalk.h"

namespace {

using Wording::visible;

class Walk {
 public:
  Walk(const Report& report, Display& display) : report_(report), display_(display), limits_(display.limits()) {}

  void show() {
    verdict();
    warnings();
    if (!limits_.details) return;
    if (report_.parse) parse(*report_.parse);
    if (!report_.updaters.empty()) updaters();
    if (report_.device) device(*report_.device);
    for (const Report::Updater& updater : report_.updaters) {
      MediaWalk::show(updater, display_);
      cleanup(updater);
      changes(updater);
    }
  }

 private:
  void verdict() {
    display_.verdict(Verdict::colourOf(report_),
                     Verdict::outcome(report_) + (report_.succeeded() ? "" : ": " + visible(report_.failure)));
    if (const std::string media = Verdict::media(report_); !media.empty()) display_.field("Media", media);
    if (const std::string warnings = Verdict::warnings(report_); !warnings.empty()) {
      display_.field("Warnings", warnings);
    }
    const Report::Arguments& arguments = report_.arguments;
    Phrase device = Phrase().name(arguments.deviceURI);
    if (arguments.printerID) device.say(", printer ID ").name(arguments.printerID);
    display_.field("Device", device);
    display_.field("PPD", Phrase().name(arguments.PPDPath));
    display_.endOfFields();
  }

  // Those of one code stand together.
  void warnings() {
    if (report_.warnings.empty()) return;
    display_.section("Warnings");
    const std::span<const Warning> all = report_.warnings;
    for (std::size_t start = 0; start < all.size();) {
      std::size_t end = start;
      while (end < all.size() && all[end].code == all[start].code) ++end;
      const Warning& first = all[start];
      display_.warnings(kindOf(first.code), all.subspan(start, end - start), first.because.has_value());
      start = end;
    }
  }

  void parse(const Report::Parse& parse) {
    display_.section("Reading the PPD");
    if (parse.failure) return failure(*parse.failure);
    display_.field("Read",
                   fmt::format("{}, {}, {}, {}", Wording::counted(parse.lines, "line"),
                               Wording::counted(parse.statements, "statement"), Wording::counted(parse.groups, "group"),
                               Wording::counted(parse.options, "option")));
    display_.field("Model name", Phrase().name(parse.modelName));
    display_.field("Languages",
                   parse.languages.empty() ? "none" : visible(fmt::format("{}", fmt::join(parse.languages, " "))));
    display_.endOfFields();
  }

  void failure(const Report::ParseFailure& failure) {
    if (failure.lineNumber) {
      display_.field("Malformed", fmt::format("Line {} is malformed (error {}):", *failure.lineNumber, failure.code));
    }
    if (failure.line) display_.field("Line", Phrase().name(failure.line));
    display_.field("Expected", failure.expected);
    display_.endOfFields();
  }

  void updaters() {
    display_.section("Updaters that the PPD names");
    for (const Report::Updater& updater : report_.updaters) {
      display_.paragraph(outcomeOf(updater, Phrase().name(updater.name).say(": ")));
    }
  }

  static Phrase outcomeOf(const Report::Updater& updater, Phrase phrase) {
    if (!updater.known) return phrase.say("unknown, skipped", Tone::odd);
    switch (updater.outcome) {
      case Report::UpdaterOutcome::succeeded:
        return phrase.say("done", Tone::good).say(fmt::format(", {} changes", updater.realChanges()));
      case Report::UpdaterOutcome::failed:
        return phrase.say("cannot update the PPD", Tone::bad);
      case Report::UpdaterOutcome::threw:
        return phrase.say("ended by an error: " + visible(updater.error), Tone::bad);
      default:
        return phrase.say("not reached");
    }
  }

  void device(const Report::DeviceAnswer& device) {
    display_.section("What the device-model library answered");
    if (!device.libraryAvailable) display_.field("Library", Phrase().say("The library is not there.", Tone::bad));
    if (device.question) {
      display_.field(
          "Asked for",
          Phrase("URI ").name(device.question->deviceURI).say(", model name ").name(device.question->modelName));
    }
    if (device.familyCode) {
      display_.field("Family", device.familyCode->empty() ? Phrase("unknown") : Phrase().name(device.familyCode));
    }
    if (device.media) display_.field("Media list version", Phrase().name(device.listVersion));
    display_.endOfFields();
    if (!device.media) return;
    if (!device.media->empty()) return display_.deviceMedia(*device.media);
    display_.paragraph(device.itemFound ? "The device has no media."
                                        : "The library knows of no media of such a device.");
  }

  void cleanup(const Report::Updater& updater) {
    if (updater.removedMedia.empty() && updater.replacedMedia.empty() && updater.restoredProfiles.empty()) return;
    display_.section("Cleaned up and restored: " + visible(updater.name));
    names("Media of an earlier setup removed", updater.removedMedia);
    names("Media of an earlier updater of this run removed", updater.replacedMedia);
    names("Factory profiles restored", updater.restoredProfiles);
  }

  void names(const char* title, std::span<const std::string> names) {
    if (names.empty()) return;
    const std::size_t shown = std::min(names.size(), limits_.names);
    display_.names(title, names.first(shown), names.size() - shown);
  }

  void changes(const Report::Updater& updater) {
    if (updater.changes.empty()) return;
    display_.section("Changes of the PPD: " + visible(updater.name));
    const std::size_t count = limits_.moved ? updater.changes.size() : updater.realChanges();
    display_.beginChanges(count);
    std::size_t shown = 0;
    for (const Report::Change& change : updater.changes) {
      if (change.kind == Report::ChangeKind::moved && !limits_.moved) continue;
      if (shown == limits_.changes) break;
      ++shown;
      display_.change(change);
    }
    display_.endChanges(count - shown, updater.changes.size() - count);
  }

  const Report& report_;
  Display& display_;
  const Display::Limits limits_;
};

}  // namespace

void ReportWalk::show(const Report& report, Display& display) {
  Walk(report, display).show();
}
