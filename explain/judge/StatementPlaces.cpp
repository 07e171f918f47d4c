// SPDX-License-Identifier: MIT
#include "explain/judge/StatementPlaces.h"

#include <algorithm>

namespace {

// The word in front of the first of the ends, without blanks around it; `text` goes on behind it.
std::string_view nextWord(std::string_view& text, std::string_view ends) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  std::string_view word = text.substr(0, text.find_first_of(ends));
  text.remove_prefix(word.size());
  while (word.ends_with(' ') || word.ends_with('\t')) word.remove_suffix(1);
  return word;
}

class Scanner {
 public:
  std::vector<StatementPlace> scan(std::string_view text) {
    for (std::size_t start = 0; start < text.size();) {
      const std::size_t end = std::min(text.find_first_of("\r\n", start), text.size());
      ++line_;
      look(text.substr(start, end - start));
      start = end + (text.substr(end, 2) == "\r\n" ? 2 : 1);
    }
    return std::move(places_);
  }

 private:
  void look(std::string_view line) {
    const bool isInValue = inValue_;
    if (!isInValue && (!line.starts_with('*') || line.starts_with("*%"))) return;
    const std::string_view value = isInValue ? line : line.substr(std::min(line.find(':'), line.size()));
    if (std::count(value.begin(), value.end(), '"') % 2 != 0) inValue_ = !inValue_;
    if (!isInValue) noteStatement(line.substr(1));
  }

  void noteStatement(std::string_view line) {
    StatementPlace place;
    place.keyword = nextWord(line, " \t:");
    place.line = line_;
    place.group = group_;
    place.option = option_;
    const bool opens = place.keyword == "OpenGroup" || place.keyword == "OpenUI";
    if (opens && line.starts_with(':')) line.remove_prefix(1);
    if (!line.starts_with(':')) place.spec = nextWord(line, "/:");
    if (opens && place.spec.starts_with('*')) place.spec.erase(0, 1);
    follow(place);
    places_.push_back(std::move(place));
  }

  void follow(const StatementPlace& place) {
    if (place.keyword == "OpenGroup") group_ = place.spec;
    if (place.keyword == "CloseGroup") group_.clear();
    if (place.keyword == "OpenUI") option_ = place.spec;
    if (place.keyword == "CloseUI" || place.keyword == "CloseGroup") option_.clear();
  }

  std::vector<StatementPlace> places_;
  std::size_t line_ = 0;
  std::string group_, option_;
  bool inValue_ = false;
};

}  // namespace

std::vector<StatementPlace> StatementPlace::in(std::string_view text) {
  return Scanner().scan(text);
}
