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
    const std::size_t start = Text::skipBlanks(line_, position_);
    if (!Text::startsWithIgnoringCase(line_.substr(start), token)) return false;
    position_ = start + token.size();
    return true;
  }

  /// What stands before the first stop character (ASCII), or before the end of the line: at least one character, or
  /// absent. Stops in front of the stop character.
  std::optional<std::string_view> readUpTo(char stop) { return readUpTo(stop, stop); }
  /// The same with two stop characters.
  std::optional<std::string_view> readUpTo(char stop, char otherStop);

  /// The same with white space and, in addition, one ASCII character as stop characters.
  std::optional<std::string_view> readUpToWhiteSpaceOr(char stop);

  /// The same with white space and line ends as the stop characters.
  std::optional<std::string_view> readUpToBlank();

  /// Moves to the next `stop` without skipping or reading anything, or to the end and returns false.
  bool skipTo(char stop);
  /// Moves behind a text that is a part of this very line (of its bytes); false when it is not.
  bool skipBehind(std::string_view part);
  /// Moves past the (ASCII) character that the scanner stands at.
  void skipCharacter() { ++position_; }

  bool isAtEnd() const { return position_ == line_.size(); }
  /// Bytes from the start of the line.
  std::size_t position() const { return position_; }
  std::string_view rest() const { return line_.substr(position_); }

 private:
  std::optional<std::string_view> readFromTo(std::size_t start, std::size_t end);

  std::string_view line_;
  std::size_t position_ = 0;
};
