// SPDX-License-Identifier: MIT
#include "explain/judge/CUPSLimits.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "explain/report/Sentences.h"

namespace {

constexpr std::size_t kLongestLine = 255;
constexpr std::size_t kLongestKeyword = 40;
constexpr std::size_t kLongestText = 80;

// Of the line that begins at `start`. Searching for each of the two line ends is many times faster than for both at
// once.
std::size_t endOfLine(std::string_view text, std::size_t start) {
  const std::string_view line = text.substr(start, text.find('\n', start) - start);
  return start + std::min(line.find('\r'), line.size());
}

// One statement line, taken apart as libcups does: keyword, option keyword, text.
struct Parts {
  std::string_view keyword, option, text;
};

Parts partsOf(std::string_view line) {
  Parts parts;
  line.remove_prefix(1);
  const auto keywordEnd = static_cast<std::size_t>(
      std::find_if(line.begin(), line.end(), [](char each) { return each == ' ' || each == '\t' || each == ':'; }) -
      line.begin());
  parts.keyword = line.substr(0, keywordEnd);
  line.remove_prefix(keywordEnd);
  line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
  if (line.starts_with(':')) return parts;
  const auto optionEnd = static_cast<std::size_t>(
      std::find_if(line.begin(), line.end(), [](char each) { return each == '/' || each == ':'; }) - line.begin());
  parts.option = line.substr(0, optionEnd);
  while (parts.option.ends_with(' ') || parts.option.ends_with('\t')) parts.option.remove_suffix(1);
  line.remove_prefix(optionEnd);
  if (line.starts_with('/')) parts.text = line.substr(1, std::min(line.find(':'), line.size()) - 1);
  return parts;
}

// Printable ASCII characters, and blanks too.
bool isPrintable(std::string_view keyword) {
  return std::all_of(keyword.begin(), keyword.end(),
                     [](char character) { return character >= ' ' && character <= '~'; });
}

// What CUPS refuses in the text of a statement; the zero byte ends its line.
bool hasControlCharacter(std::string_view text) {
  return std::any_of(text.begin(), text.end(),
                     [](char character) { return character > 0 && character < ' ' && character != '\t'; });
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
    if (text.starts_with("\xEF\xBB\xBF")) warn(WarningCode::byteOrderMark);
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
    if (line.size() > kLongestLine) {
      warn(WarningCode::lineTooLong, {{"bytes", line.size()}, {"statement", line}});
    }
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
    } else if (line.starts_with("*%") || line.find_first_not_of(" \t") == std::string_view::npos) {
      return;
    } else if (!line.starts_with('*')) {
      warn(WarningCode::strayLine, {{"statement", line}});
    } else {
      opening_ = line;
      checkStatement(partsOf(line), line);
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

  void checkStatement(const Parts& parts, std::string_view line) {
    for (const auto& [what, keyword] :
         {std::pair("a main keyword", parts.keyword), {"an option keyword", parts.option}}) {
      if (keyword.size() > kLongestKeyword) {
        warn(WarningCode::keywordTooLong, {{"what", what}, {"bytes", keyword.size()}, {"statement", line}});
      } else if (!isPrintable(keyword)) {
        warn(WarningCode::keywordCharacters, {{"what", what}, {"statement", line}});
      } else if (keyword.find(' ') != std::string_view::npos) {
        warn(WarningCode::keywordCharacters, {{"what", what}, {"blank", line}});
      }
    }
    checkText(parts, line);
    if (parts.keyword == "cupsICCProfile") checkProfile(std::string(parts.option));
  }

  void checkText(const Parts& parts, std::string_view line) {
    if (hasControlCharacter(parts.text)) {
      warn(WarningCode::textCharacters, {{"statement", line}});
    }
    if (parts.text.size() > kLongestText) {
      warn(WarningCode::textTooLong, {{"bytes", parts.text.size()}, {"statement", line}});
    }
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
