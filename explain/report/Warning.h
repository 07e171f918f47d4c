// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "explain/report/WarningCode.h"

/// Which medium is meant, as the device names it.
struct AboutMedium {
  std::optional<std::string> name, ID;
};

/// Something of a run that somebody should look at, as data; Sentences has its words.
struct Warning {
  /// A name or a number that belongs to it; what is absent is as if it were not there.
  struct Fact {
    using Value = std::variant<std::monostate, std::string, std::uint64_t>;

    Fact(const char* factName, std::string text) : name(factName), value(std::move(text)) {}
    Fact(const char* factName, std::string_view text) : name(factName), value(std::string(text)) {}
    Fact(const char* factName, const char* text) : name(factName), value(std::string(text)) {}
    Fact(const char* factName, const std::optional<std::string>& text) : name(factName) {
      if (text) value = *text;
    }
    Fact(const char* factName, std::unsigned_integral auto number) : name(factName), value(std::uint64_t{number}) {}

    const char* name;
    Value value;
  };

  WarningCode code;
  std::vector<Fact> facts = {};
  std::optional<AboutMedium> about = std::nullopt;    ///< absent: it is about no medium
  bool inInput = false;                               ///< the PPD had it before the run
  std::optional<WarningCode> because = std::nullopt;  ///< the cause, which is among the run's warnings, too

  /// The value of this name, or null.
  const Fact::Value* fact(std::string_view name) const;
};
