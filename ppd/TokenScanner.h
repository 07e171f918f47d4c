// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "base/Text.h"

/// Reads a line as a sequence of tokens: white space and line ends are skipped before each one, and a token that
/// is given is compared without regard to letter case. The line must outlive the scanner and its results.
class TokenScanner {
 public:
  explicit TokenScanner(std::string_view line) : line_(line) {}

  /// Moves past `token` when it comes next; otherwise stays where it is and returns false.
  bool scan(std::string_view token) {
    const std::size_t start = Text::skip(line_, position_, Text::isBlank);
    if (!Text::startsWithIgnoringCase(line_.substr(start), token)) return false;
    position_ = start + token.size();
    return true;
  }

  /// What stands before the first of the stop characters (ASCII), or before the end of the line: at least one
  /// character, or absent. Stops in front of the stop character.
  std::optional<std::string_view> readUpTo(std::string_view stops);

  /// The same with white space and, in addition, the ASCII characters of `stops` as stop characters.
  std::optional<std::string_view> readUpToWhiteSpaceOr(std::string_view stops);

  /// The same with white space and line ends as the stop characters.
  std::optional<std::string_view> readUpToBlank();

  /// Moves to the next `stop` without skipping or reading anything, or to the end and returns false.
  bool skipTo(char stop);
  /// Moves past the (ASCII) character that the scanner stands at.
  void skipCharacter() { ++position_; }

  bool isAtEnd() const { return position_ == line_.size(); }
  /// Bytes from the start of the line.
  std::size_t position() const { return position_; }
  std::string_view rest() const { return line_.substr(position_); }

 private:
  template <class IsStop>
  std::optional<std::string_view> readUntil(IsStop isStop);

  std::string_view line_;
  std::size_t position_ = 0;
};
