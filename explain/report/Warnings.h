// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "explain/report/Warning.h"

/// Collects the warnings of a run, each once.
class Warnings {
 public:
  /// Adds to `all` (not owned).
  explicit Warnings(std::vector<Warning>& all) : all_(all) {}

  /// Nothing when the same was said before.
  void add(Warning warning);
  void add(WarningCode code, std::vector<Warning::Fact> facts = {}, std::optional<AboutMedium> about = std::nullopt) {
    add({code, std::move(facts), std::move(about)});
  }

  /// The gravest first, and behind them what follows from them (Causes); those of one code stay in their order.
  void sort();

 private:
  std::vector<Warning>& all_;
  std::set<std::pair<WarningCode, std::string>> said_;
};
