// SPDX-License-Identifier: MIT
#include "ppd/TokenScanner.h"

#include <algorithm>

template <class IsStop>
std::optional<std::string_view> TokenScanner::readUntil(IsStop isStop) {
  const std::size_t start = Text::skip(line_, position_, Text::isBlank);
  std::size_t end = start;
  while (end < line_.size()) {
    const Text::Character character = Text::characterAt(line_, end);
    if (isStop(character.value)) break;
    end += character.size;
  }
  if (start == end) return std::nullopt;
  position_ = end;
  return line_.substr(start, end - start);
}

std::optional<std::string_view> TokenScanner::readUpTo(std::string_view stops) {
  const std::size_t start = Text::skip(line_, position_, Text::isBlank);
  const std::size_t end = std::min(line_.find_first_of(stops, start), line_.size());
  if (start == end) return std::nullopt;
  position_ = end;
  return line_.substr(start, end - start);
}

std::optional<std::string_view> TokenScanner::readUpToWhiteSpaceOr(std::string_view stops) {
  return readUntil([stops](char32_t character) {
    return Text::isWhiteSpace(character) ||
           (character < 0x80 && stops.find(static_cast<char>(character)) != stops.npos);
  });
}

bool TokenScanner::skipTo(char stop) {
  position_ = std::min(line_.find(stop, position_), line_.size());
  return !isAtEnd();
}

std::optional<std::string_view> TokenScanner::readUpToBlank() {
  return readUntil(Text::isBlank);
}
