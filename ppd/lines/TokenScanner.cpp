// SPDX-License-Identifier: MIT
#include "ppd/lines/TokenScanner.h"

#include <algorithm>
#include <functional>

std::optional<std::string_view> TokenScanner::readFromTo(std::size_t start, std::size_t end) {
  if (start == end) return std::nullopt;
  position_ = end;
  return line_.substr(start, end - start);
}

std::optional<std::string_view> TokenScanner::readUpTo(char stop, char otherStop) {
  const std::size_t start = Text::skipBlanks(line_, position_);
  std::size_t end = start;
  while (end < line_.size() && line_[end] != stop && line_[end] != otherStop) ++end;
  return readFromTo(start, end);
}

std::optional<std::string_view> TokenScanner::readUpToWhiteSpaceOr(char stop) {
  const std::size_t start = Text::skipBlanks(line_, position_);
  const std::string_view line = line_;
  std::size_t end = start;
  while (end < line.size()) {
    while (end < line.size() && line[end] != stop && Text::isPrintableASCII(line[end])) ++end;
    if (end == line.size() || line[end] == stop) break;
    const Text::Character character = Text::characterAt(line, end);
    if (Text::isWhiteSpace(character.value)) break;
    end += character.size;
  }
  return readFromTo(start, end);
}

bool TokenScanner::skipBehind(std::string_view part) {
  const std::less_equal<const char*> isUpTo;
  const char* const end = part.data() + part.size();
  if (!isUpTo(line_.data(), part.data()) || !isUpTo(end, line_.data() + line_.size())) return false;
  position_ = static_cast<std::size_t>(end - line_.data());
  return true;
}

bool TokenScanner::skipTo(char stop) {
  position_ = std::min(line_.find(stop, position_), line_.size());
  return !isAtEnd();
}

std::optional<std::string_view> TokenScanner::readUpToBlank() {
  const std::size_t start = Text::skipBlanks(line_, position_);
  std::size_t end = start;
  while (end < line_.size() && !Text::isBlank(Text::characterAt(line_, end).value)) {
    end += Text::characterAt(line_, end).size;
  }
  return readFromTo(start, end);
}
