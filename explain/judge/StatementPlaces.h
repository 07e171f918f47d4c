// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Where the statements of a PPD stand: for saying where somebody has to look.
struct StatementPlace {
  std::string keyword, spec;  ///< of OpenGroup and OpenUI, `spec` is the name of what they open
  std::size_t line = 0;       ///< of the file, counted from 1
  std::string group, option;  ///< inside which it stands; empty outside

  /// All statements of the text in their order; translations, and lines inside quoted values, are none.
  static std::vector<StatementPlace> in(std::string_view text);
};
