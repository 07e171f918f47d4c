// SPDX-License-Identifier: MIT
#include "explain/report/Warnings.h"

#include <algorithm>
#include <map>
#include <tuple>

#include "explain/report/Causes.h"
#include "explain/report/Sentences.h"

void Warnings::add(Warning warning) {
  if (said_.emplace(warning.code, Sentences::of(warning)).second) all_.push_back(std::move(warning));
}

void Warnings::sort() {
  std::set<WarningCode> codes;
  for (const Warning& warning : all_) codes.insert(warning.code);
  std::map<WarningCode, WarningCode> gravest;  // of a cause and what follows from it
  for (Warning& warning : all_) {
    warning.because = Causes::of(warning.code, codes);
    const auto group = gravest.emplace(warning.because.value_or(warning.code), warning.code).first;
    group->second = std::min(group->second, warning.code);
  }
  const auto place = [&gravest](const Warning& warning) {
    const WarningCode cause = warning.because.value_or(warning.code);
    return std::tuple(gravest.at(cause), cause, warning.because.has_value(), warning.code);
  };
  std::stable_sort(all_.begin(), all_.end(),
                   [&place](const Warning& one, const Warning& other) { return place(one) < place(other); });
}
