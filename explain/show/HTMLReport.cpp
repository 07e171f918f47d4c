// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <algorithm>
#include <limits>

#include "explain/report/Sentences.h"
#include "explain/report/Wording.h"
#include "explain/show/Display.h"
#include "explain/show/HTMLPage.h"
#include "explain/show/ReportWalk.h"
#include "explain/show/ReportWriters.h"

namespace {

constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();
constexpr std::size_t kShownInAFold = 100;  // of the warnings of a code
constexpr std::size_t kOpenFold = 3;        // a fold of so many stands open

std::string toneClass(Tone tone) {
  static constexpr const char* kNames[] = {"", "good", "odd", "bad"};
  return kNames[static_cast<int>(tone)];
}

std::string content(const Phrase& phrase) {
  std::string html;
  for (const Phrase::Piece& piece : phrase.pieces()) {
    if (piece.isName) {
      html += piece.text ? HTMLPage::code(*piece.text) : "–";
    } else {
      const std::string words = HTMLPage::escaped(*piece.text);
      html += piece.tone == Tone::plain ? words : HTMLPage::span(toneClass(piece.tone).c_str(), words);
    }
  }
  return html;
}

class HTMLDisplay : public Display {
 public:
  HTMLDisplay(const Report& report, bool full) : page_(titleOf(report)), full_(full) {}

  std::string take() { return page_.take(); }

  Limits limits() const override {
    return {kNoLimit, kNoLimit, full_ ? kNoLimit : ReportWriters::kShownChanges, true, false};
  }

  void verdict(Verdict::Colour colour, const std::string& outcome) override {
    page_.badge(Verdict::nameOf(colour), outcome);
  }

  // The first of several opens their table.
  void field(const char* name, const Phrase& value) override {
    if (!isInTable_) page_.beginTable();
    isInTable_ = true;
    page_.row(name, content(value));
  }
  void endOfFields() override {
    if (isInTable_) page_.endTable();
    isInTable_ = false;
  }
  void section(const std::string& title) override { page_.section(title); }
  void paragraph(const Phrase& phrase) override { page_.paragraph(content(phrase)); }

  void warnings(const WarningKind& kind, std::span<const Warning> warnings, bool isConsequence) override {
    if (!gravest_) gravest_ = kind.gravity;
    const bool isOpen = kind.gravity == *gravest_ || warnings.size() <= kOpenFold;
    page_.beginFold(fmt::format("<strong>{}</strong> {} {}", HTMLPage::escaped(kind.title), HTMLPage::code(kind.name),
                                warnings.size()),
                    isOpen, isConsequence ? "consequence" : "");
    page_.beginList();
    const std::size_t shown = full_ ? warnings.size() : std::min(warnings.size(), kShownInAFold);
    for (const Warning& each : warnings.first(shown)) page_.item(HTMLPage::escaped(Sentences::marked(each)));
    page_.endList();
    more(warnings.size() - shown);
    page_.note(std::string("→ ") + kind.remedy);
    page_.endFold();
  }

  void deviceMedia(std::span<const Report::Medium> /*media*/) override {}  // they stand with what became of them

  void beginMedia(std::size_t count) override { page_.beginMedia(count); }
  void medium(const MediumRow& row) override {
    const Report::MediumOutcome& medium = row.medium;
    static constexpr const char* kKinds[] = {"custom", "lost", "factory"};
    static constexpr const char* kWords[] = {"custom", "lost something", "of the factory"};
    const auto kind = static_cast<std::size_t>(row.kind);
    const auto profiles = std::count_if(medium.profiles.begin(), medium.profiles.end(), [](const auto& profile) {
      return profile.outcome != Report::ProfileOutcome::skipped;
    });
    page_.beginMedium(kKinds[kind], HTMLPage::escaped(medium.device.name.value_or("–")),
                      {cell(medium.device.ID), medium.choiceName ? cell(medium.choiceName) : content(row.state),
                       cell(medium.device.parentID),
                       fmt::format("{} of {}", profiles, std::max(medium.profiles.size(), medium.device.profiles)),
                       cell(medium.device.gloss), kWords[kind]});
    for (const auto& [name, value] : row.details) page_.row(name, content(value));
    if (medium.device.categoryID) page_.row("category", cell(medium.device.categoryID));
    page_.endMedium();
  }
  void endMedia(std::size_t /*more*/) override { page_.endMedia(); }

  void names(const char* title, std::span<const std::string> names, std::size_t /*more*/) override {
    page_.beginFold(fmt::format("{} ({})", title, names.size()), names.size() <= 10);
    page_.beginList();
    for (const std::string& name : names) page_.item(HTMLPage::code(name));
    page_.endList();
    page_.endFold();
  }

  void beginChanges(std::size_t count) override {
    if (count == 0) return;
    page_.beginFold(Wording::counted(count, "statement"), count <= 30);
    page_.beginChanges();
    hasChanges_ = true;
  }
  void change(const Report::Change& change) override {
    for (const std::string& line : Wording::visibleLines(change.before)) page_.removed(line);
    for (const std::string& line : Wording::visibleLines(change.after)) page_.added(line);
  }
  void endChanges(std::size_t left, std::size_t moved) override {
    if (hasChanges_) {
      page_.endChanges();
      more(left);
      page_.endFold();
    }
    hasChanges_ = false;
    if (moved > 0) page_.note(Wording::counted(moved, "statement") + " removed and written again as before.");
  }

 private:
  static std::string titleOf(const Report& report) {
    const std::string& path = report.arguments.PPDPath.value_or("");
    const std::string file = path.substr(path.rfind('/') + 1);
    if (!report.arguments.deviceURI || file.empty()) return "A run of Vorantis autosetup";
    return fmt::format("{} for {}", file, *report.arguments.deviceURI);
  }

  static std::string cell(const std::optional<std::string>& text) { return text ? HTMLPage::code(*text) : "–"; }

  void more(std::size_t count) {
    if (count > 0) page_.note(fmt::format("… and {} more (--full)", count));
  }

  HTMLPage page_;
  bool full_;
  bool isInTable_ = false;
  bool hasChanges_ = false;
  std::optional<Gravity> gravest_;
};

}  // namespace

std::string ReportWriters::html(const Report& report, bool full) {
  HTMLDisplay display(report, full);
  ReportWalk::show(report, display);
  return display.take();
}
