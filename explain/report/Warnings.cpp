// SPDX-License-Identifier: MIT
#include "explain/report/Warnings.h"

#include <algorithm>

#include "explain/report/Sentences.h"

void Warnings::add(Warning warning) {
  if (said_.emplace(warning.code, Sentences::of(warning)).second) all_.push_back(std::move(warning));
}

void Warnings::sort() {
  std::stable_sort(all_.begin(), all_.end(),
                   [](const Warning& one, const Warning& other) { return one.code < other.code; });
}
