// SPDX-License-Identifier: MIT
#include "explain/judge/CUPSLimits.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "explain/report/Sentences.h"

namespace {

constexpr std::string_view kProfile = "*cupsICCProfile ";

// Of the line that begins at `start`. Searching for each of the two line ends is many times faster than for both at
// once.
std::size_t endOfLine(std::string_view text, std::size_t start) {
  const std::string_view line = text.substr(start, text.find('\n', start) - start);
  return start + std::min(line.find('\r'), line.size());
}

// Of a profile statement.
std::string specOf(std::string_view line) {
  line.remove_prefix(kProfile.size());
  std::string_view spec = line.substr(0, line.find_first_of("/:"));
  while (spec.ends_with(' ') || spec.ends_with('\t')) spec.remove_suffix(1);
  return std::string(spec);
}

// Profiles are told apart by this number of their spec on macOS.
unsigned long profileNumber(std::string_view spec) {
  unsigned long number = 0;
  for (std::size_t index = 0; index < spec.size(); ++index) {
    number += (index + 1) * static_cast<unsigned char>(spec[index]);
  }
  return number;
}

class Checker {
 public:
  std::vector<Warning> check(std::string_view text) {
    for (std::size_t start = 0; start < text.size();) {
      const std::size_t end = endOfLine(text, start);
      checkLine(text.substr(start, end - start));
      start = end + 1;
    }
    if (inQuotes_) {
      warnOfSwallowed();
      warn(WarningCode::unclosedQuote, {{"statement", opening_}});
    }
    return std::move(warnings_);
  }

 private:
  void checkLine(std::string_view line) {
    if (line.find('\0') != std::string_view::npos) {
      warn(WarningCode::zeroByte, {{"statement", line}});
    }
    if (line.starts_with("*%APLWORKSET START")) {
      warn(WarningCode::aplworkset);
    }
    if (inQuotes_) {
      if (line.starts_with('*') && !line.starts_with("*%") && !line.starts_with("*End")) swallowed_.push_back(line);
      follow(line);
      if (!inQuotes_) warnOfSwallowed();
    } else if (line.starts_with('*') && !line.starts_with("*%")) {
      opening_ = line;
      if (line.starts_with(kProfile)) checkProfile(specOf(line));
      follow(line.substr(std::min(line.find(':'), line.size())));  // in front of the colon, quotes do not count
    }
  }

  void follow(std::string_view line) {
    if (std::count(line.begin(), line.end(), '"') % 2 != 0) inQuotes_ = !inQuotes_;
  }

  void warnOfSwallowed() {
    if (swallowed_.empty()) return;
    warn(WarningCode::swallowed, {{"statement", opening_},
                                  {"count", swallowed_.size()},
                                  {"from", swallowed_.front()},
                                  {"to", swallowed_.back()}});
    swallowed_.clear();
  }

  void checkProfile(const std::string& spec) {
    const auto [found, isNew] = profiles_.emplace(profileNumber(spec), spec);
    if (isNew || found->second == spec) return;
    warn(WarningCode::profileCollision, {{"first", found->second}, {"second", spec}});
  }

  void warn(WarningCode code, std::vector<Warning::Fact> facts = {}) { warnings_.push_back({code, std::move(facts)}); }

  std::vector<Warning> warnings_;
  std::map<unsigned long, std::string> profiles_;
  bool inQuotes_ = false;
  std::string_view opening_;                 // the statement whose quote is open
  std::vector<std::string_view> swallowed_;  // statements inside that quote
};

}  // namespace

std::vector<Warning> CUPSLimits::brokenIn(std::string_view text) {
  return Checker().check(text);
}

std::vector<Warning> CUPSLimits::brokenInResult(std::string_view input, std::string_view result) {
  std::set<std::pair<WarningCode, std::string>> before;
  for (const Warning& warning : brokenIn(input)) before.emplace(warning.code, Sentences::of(warning));
  std::vector<Warning> broken = brokenIn(result);
  for (Warning& warning : broken) warning.inInput = before.count({warning.code, Sentences::of(warning)}) != 0;
  return broken;
}

void CUPSLimits::judge(const Evidence& evidence, Warnings& warnings) {
  if (evidence.report.succeeded()) {
    for (Warning& warning : brokenInResult(evidence.input.text(), evidence.result)) warnings.add(std::move(warning));
    return;
  }
  for (Warning& warning : brokenIn(evidence.input.text())) {
    warning.inInput = true;
    warnings.add(std::move(warning));
  }
}
