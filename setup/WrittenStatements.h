// SPDX-License-Identifier: MIT
#pragma once

#include <set>
#include <string>
#include <string_view>

#include "explain/report/Report.h"
#include "ppd/document/ATPPD.h"

/// The statements that the updaters of a run may have written into a PPD, judged by their text alone.
class WrittenStatements {
 public:
  /// `base`: the PPD before the run; `report`: which media the run added, and which profiles it wrote.
  WrittenStatements(const ATPPD& base, const Report& report);

  /// Whether a statement, with all of its lines, is one. `place`: the opening lines of the group and option that it
  /// stands in, empty at the top.
  bool mayBe(std::string_view place, std::string_view text) const;

  /// Whether a statement of the base PPD may be missing, since updaters remove such ones.
  bool mayGo(std::string_view text) const;

 private:
  bool isChoice(std::string_view line) const;
  bool isAttribute(std::string_view text) const;
  bool isLanguage(std::string_view language) const { return languages_.count(std::string(language)) != 0; }

  std::set<std::string, std::less<>> choices_;     // of custom media that the run added
  std::set<std::string, std::less<>> specs_;       // of profiles
  std::set<std::string, std::less<>> properties_;  // specs of properties
  std::set<std::string, std::less<>> languages_;
};
