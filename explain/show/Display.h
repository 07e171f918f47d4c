// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "explain/report/Report.h"
#include "explain/report/Verdict.h"
#include "explain/show/Phrase.h"

/// One form in which a report is shown; ReportWalk tells it what there is, in its order.
class Display {
 public:
  /// How many of a list there are before the rest is counted.
  struct Limits {
    std::size_t media = 0;
    std::size_t names = 0;
    std::size_t changes = 0;
    bool details = true;  ///< else the verdict and the warnings only
    bool moved = false;   ///< whether statements count that were removed and written again as they were
  };

  /// A medium at a glance, and what else there is to say of it.
  struct MediumRow {
    enum class Kind { custom, lost, factory };

    const Report::MediumOutcome& medium;
    Kind kind;
    Phrase state;  ///< goes on behind the medium's name: "is the choice Custom1"
    std::vector<std::pair<const char*, Phrase>> details;
  };

  Display() = default;
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;
  virtual ~Display() = default;

  virtual Limits limits() const = 0;

  /// The verdict comes first, fields behind it, and then the sections.
  virtual void verdict(Verdict::Colour colour, const std::string& outcome) = 0;
  virtual void field(const char* name, const Phrase& value) = 0;
  virtual void section(const std::string& title) = 0;
  virtual void endOfFields() = 0;

  virtual void paragraph(const Phrase& phrase) = 0;
  /// All warnings of one code; a consequence follows from the warnings before it.
  virtual void warnings(const WarningKind& kind, std::span<const Warning> warnings, bool isConsequence) = 0;
  /// The media as the device gave them.
  virtual void deviceMedia(std::span<const Report::Medium> media) = 0;
  virtual void beginMedia(std::size_t count) = 0;
  virtual void medium(const MediumRow& row) = 0;
  virtual void endMedia(std::size_t more) = 0;
  /// Names of one kind: "medium of an earlier setup removed".
  virtual void names(const char* title, std::span<const std::string> names, std::size_t more) = 0;
  virtual void beginChanges(std::size_t count) = 0;
  virtual void change(const Report::Change& change) = 0;
  /// `moved`: statements that were removed and written again as they were, and are not among the others.
  virtual void endChanges(std::size_t more, std::size_t moved) = 0;
};
