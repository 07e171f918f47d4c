// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <algorithm>
#include <limits>

#include "explain/report/Sentences.h"
#include "explain/report/Wording.h"
#include "explain/show/Display.h"
#include "explain/show/ReportWalk.h"
#include "explain/show/ReportWriters.h"
#include "explain/show/TextLayout.h"

namespace {

using ReportWriters::Detail;
using Colour = TextLayout::Colour;
using Wording::visible;

// Of a long list so many are shown, unless all are asked for.
constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();
constexpr Display::Limits kShort = {20, 20, 30, true, false};
constexpr std::size_t kShownInText = 2;  // of the warnings of a code
// A text of any length must not push the rest from the screen.
constexpr std::size_t kLongestShown = 300;

std::string shown(const std::optional<std::string>& text) {
  return text ? TextLayout::fitted(visible(*text), kLongestShown) : "-";
}

class TextDisplay : public Display {
 public:
  explicit TextDisplay(const ReportWriters::TextStyle& style)
      : layout_(std::clamp(style.width, TextLayout::kNarrowest, TextLayout::kWidest), style.colour),
        detail_(style.detail) {}

  std::string take() { return layout_.take(); }

  Limits limits() const override {
    if (detail_ == Detail::full) return {kAll, kAll, kAll, true, true};
    Limits limits = kShort;
    limits.details = detail_ == Detail::usual;
    return limits;
  }

  void verdict(Verdict::Colour colour, const std::string& outcome) override {
    const bool isBad = colour != Verdict::Colour::good && colour != Verdict::Colour::odd;
    const Colour shownIn = isBad ? Colour::red : colour == Verdict::Colour::good ? Colour::green : Colour::yellow;
    layout_.wrapped(layout_.inColour(shownIn, "Result") + "   ", std::string(9, ' '), outcome);
  }

  // The verdict's stand in a column; those of sections are paragraphs.
  void field(const char* name, const Phrase& value) override {
    if (!isInSection_) return layout_.field(name, plain(value));
    layout_.paragraph(fmt::format("{}: {}", name, plain(value)));
  }
  void endOfFields() override {}

  void section(const std::string& title) override {
    isInSection_ = true;
    layout_.heading(title);
  }
  void paragraph(const Phrase& phrase) override { layout_.paragraph(plain(phrase)); }

  void warnings(const WarningKind& kind, std::span<const Warning> warnings, bool isConsequence) override {
    const std::string indent = isConsequence ? "    " : "  ";
    if (detail_ == Detail::summary) {
      const char* under = isConsequence ? "  " : "";
      return layout_.line(
          fmt::format("{}{} {}: {}", under, warnings.size(), kind.name, Sentences::of(warnings.front())));
    }
    const bool isCut = detail_ == Detail::usual && warnings.size() > kShownInText + 1;
    const std::size_t count = isCut ? kShownInText : warnings.size();
    for (const Warning& each : warnings.first(count)) {
      layout_.wrapped(indent + layout_.inColour(Colour::yellow, isConsequence ? "·" : "!") + " ", indent + "  ",
                      fmt::format("{} [{}]", Sentences::marked(each), kind.name));
    }
    if (isCut) {
      layout_.line(fmt::format("  … and {} more [{}] (--warnings)", warnings.size() - count, kind.name));
    }
    if (detail_ != Detail::usual && !isConsequence) layout_.wrapped(indent + "  → ", indent + "    ", kind.remedy);
  }

  void deviceMedia(std::span<const Report::Medium> media) override {
    layout_.line(row("NAME", "ID", "CATEGORY", "PARENT", "PROFILES", "GLOSS"));
    const std::size_t count = std::min(media.size(), limits().media);
    for (const Report::Medium& medium : media.first(count)) {
      layout_.line(row(shown(medium.name), shown(medium.ID), shown(medium.categoryID), shown(medium.parentID),
                       std::to_string(medium.profiles), shown(medium.gloss)));
    }
    more(media.size() - count, " media");
  }

  void beginMedia(std::size_t /*count*/) override {}
  void medium(const MediumRow& row) override {
    static constexpr std::pair<Colour, const char*> kSigns[] = {{Colour::green, "+"}, {Colour::red, "!"}};
    const bool isFactory = row.kind == MediumRow::Kind::factory;
    const auto& [colour, sign] = kSigns[row.kind == MediumRow::Kind::lost];
    layout_.wrapped("  " + (isFactory ? " " : layout_.inColour(colour, sign)) + " ", "    ",
                    Wording::of(row.medium.device) + " " + plain(row.state));
    for (const auto& [name, value] : row.details) layout_.detail(name, plain(value));
  }
  void endMedia(std::size_t left) override { more(left, " media; --medium=NAME-OR-ID shows one"); }

  void names(const char* title, std::span<const std::string> names, std::size_t left) override {
    for (const std::string& name : names) layout_.paragraph(fmt::format("{}: {}", title, visible(name)));
    more(left, "");
  }

  void beginChanges(std::size_t /*count*/) override {}
  void change(const Report::Change& change) override {
    if (change.kind == Report::ChangeKind::moved) return lines('=', Colour::bold, change.after);
    lines('-', Colour::red, change.before);
    lines('+', Colour::green, change.after);
  }
  void endChanges(std::size_t left, std::size_t moved) override {
    more(left, "");
    if (moved == 0) return;
    layout_.line(Wording::counted(moved, "statement") + " removed and written again as before (--full)");
  }

 private:
  static std::string plain(const Phrase& phrase) {
    std::string text;
    for (const Phrase::Piece& piece : phrase.pieces()) text += piece.isName ? shown(piece.text) : *piece.text;
    return text;
  }

  // What the line is wider than the usual one goes to the name.
  std::string row(const std::string& name, const std::string& ID, const std::string& category,
                  const std::string& parent, const std::string& profiles, const std::string& gloss) const {
    const std::size_t nameWidth = layout_.width() - 60;
    return TextLayout::padded(name, std::max<std::size_t>(nameWidth, 8)) + " " + TextLayout::padded(ID, 10) + " " +
           TextLayout::padded(category, 17) + " " + TextLayout::padded(parent, 8) + " " +
           TextLayout::padded(profiles, 8) + " " + gloss;
  }

  void lines(char sign, Colour colour, std::string_view statement) {
    for (const std::string& each : Wording::visibleLines(statement)) {
      layout_.line(sign + std::string(" ") + each, colour);
    }
  }

  void more(std::size_t count, const char* of) {
    if (count > 0) layout_.line(fmt::format("… and {} more{} (--full)", count, of));
  }

  TextLayout layout_;
  Detail detail_;
  bool isInSection_ = false;
};

}  // namespace

std::string ReportWriters::text(const Report& report, const TextStyle& style) {
  TextDisplay display(style);
  ReportWalk::show(report, display);
  return display.take();
}
