// SPDX-License-Identifier: MIT
#include "setup/CarriedDefaults.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>

#include "base/Text.h"
#include "updaters/PPDKeywords.h"

namespace {

constexpr std::string_view kDefault = "*Default";

// A statement of one line: up to the colon and what stands behind it.
struct Line {
  std::string_view text, key, value;
};

bool isBlankOrLineEnd(char32_t character) {
  return Text::isBlank(character) || character == '\r' || character == '\n';
}

// With its line end.
Line statementAt(std::string_view text, std::size_t start) {
  std::size_t end = std::min(text.find_first_of("\r\n", start), text.size());
  end = std::min(end + (text.substr(end, 2) == "\r\n" ? 2 : 1), text.size());
  const std::string_view line = text.substr(start, end - start);
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos) return {line, Text::trim(line, isBlankOrLineEnd), ""};
  return {line, line.substr(0, colon), Text::trim(line.substr(colon + 1), isBlankOrLineEnd)};
}

// Every statement "*option choice" of the PPD, and its defaults by their keyword.
struct Statements {
  std::set<std::string, std::less<>> choices;
  std::map<std::string, std::string, std::less<>> defaults;

  explicit Statements(std::string_view ppd) {
    for (std::size_t start = 0; start < ppd.size();) {
      const Line line = statementAt(ppd, start);
      start += line.text.size();
      if (line.key.starts_with(kDefault)) defaults.emplace(line.key, line.value);
      if (line.key.starts_with('*')) choices.emplace(line.key.substr(0, line.key.find('/')));
    }
  }
};

bool offers(const Statements& ppd, std::string_view option, std::string_view choice) {
  return choice.starts_with("Custom.") || ppd.choices.count(fmt::format("*{} {}", option, choice)) > 0;
}

}  // namespace

CarriedDefaults CarriedDefaults::from(std::string_view old, const std::string& fresh, const std::string& medium) {
  CarriedDefaults result;
  Statements had(old);
  const Statements has(fresh);
  had.defaults[fmt::format("{}{}", kDefault, PPDKeyword::mediaOption)] = medium;
  for (std::size_t start = 0; start < fresh.size();) {
    const Line line = statementAt(fresh, start);
    start += line.text.size();
    const auto found = line.key.starts_with(kDefault) ? had.defaults.find(line.key) : had.defaults.end();
    const bool isSame = found == had.defaults.end() || found->second.empty() || found->second == line.value;
    const std::string_view option = line.key.substr(std::min(kDefault.size(), line.key.size()));
    const bool isCarried = !isSame && offers(has, option, found->second);
    result.ppd += isCarried ? fmt::format("{}: {}\n", line.key, found->second) : std::string(line.text);
    if (isSame || isCarried || !offers(has, option, line.value)) continue;
    result.lost.push_back(
        fmt::format("the default {} was {}, which is gone; now it is {}", option, found->second, line.value));
  }
  return result;
}
