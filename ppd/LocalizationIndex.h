// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "ppd/ATPPDAttribute.h"
#include "ppd/NameIndex.h"

/// Finds, in a list that is only appended to, the attributes named "L.name" for one name and any supported language L,
/// by their spec.
class LocalizationIndex {
 public:
  LocalizationIndex(std::string_view name, const std::vector<std::string>& languages)
      : ending_(std::string(".").append(name)), languages_(languages.begin(), languages.end()) {}

  void add(const ATPPDAttribute& attribute, std::uint32_t position) {
    if (!isLocalization(attribute)) return;
    all_.insert(position);
    if (attribute.spec()) bySpec_.add(*attribute.spec(), position);
  }

  void remove(const ATPPDAttribute& attribute, std::uint32_t position) {
    if (!isLocalization(attribute)) return;
    all_.erase(position);
    if (attribute.spec()) bySpec_.remove(*attribute.spec(), position);
  }

  /// The positions in list order; an absent spec finds all.
  const NameIndex::Positions& find(const std::optional<std::string>& spec) const {
    return spec ? bySpec_.find(*spec) : all_;
  }

 private:
  bool isLocalization(const ATPPDAttribute& attribute) const {
    const auto& name = attribute.name();
    return name && name->ends_with(ending_) && languages_.count(name->substr(0, name->size() - ending_.size())) != 0;
  }

  std::string ending_;
  std::unordered_set<std::string> languages_;
  NameIndex::Positions all_;
  NameIndex bySpec_;
};
