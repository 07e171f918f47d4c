// SPDX-License-Identifier: MIT
#include "explain/report/GroupedLines.h"

#include <fmt/format.h>

#include <map>
#include <set>

#include "explain/report/Sentences.h"

std::vector<std::string> GroupedLines::of(const std::vector<Warning>& warnings) {
  std::map<WarningCode, std::size_t> counts;
  for (const Warning& warning : warnings) ++counts[warning.code];
  std::vector<std::string> lines;
  std::set<WarningCode> cut;
  for (const Warning& warning : warnings) {
    const std::size_t count = counts[warning.code];
    if (count > kFew && !cut.insert(warning.code).second) continue;
    const std::string more = count > kFew ? fmt::format(" (and {} more)", count - 1) : "";
    lines.push_back(fmt::format("{}{} [{}]", Sentences::of(warning), more, nameOf(warning.code)));
  }
  return lines;
}
