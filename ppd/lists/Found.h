// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "ppd/lists/ShorterFirst.h"

/// Remembers what walks found by name, nothing included, as long as what they walk through does not grow. For objects
/// that keep their names and are never removed: options and groups, which every medium is looked for in.
template <class Object>
class Found {
 public:
  /// What was found under the name; `walk`, which gives an object or null, is called when that is not known. `state`
  /// is a number that changes when what is walked through grows.
  template <class Walk>
  const std::shared_ptr<Object>& find(std::string_view name, std::size_t state, const Walk& walk) {
    if (state != state_) byName_.clear();
    state_ = state;
    const auto known = byName_.find(name);
    if (known != byName_.end()) return known->second;
    return byName_.emplace(name, walk()).first->second;
  }

 private:
  std::map<std::string, std::shared_ptr<Object>, ShorterFirst> byName_;
  std::size_t state_ = 0;
};
