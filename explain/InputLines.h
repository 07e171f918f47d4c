// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// The pieces of a file as the CUPS line reader gives them to the parser, whatever they hold: for what the parser does
/// not hand on, which is the line that it rejects and the bytes at which it stops reading.
class InputLines {
 public:
  /// No pieces when the file cannot be opened.
  static InputLines ofFile(const std::string& path);
  explicit InputLines(std::vector<std::string> pieces) : pieces_(std::move(pieces)) {}

  /// The piece of this number, counted from 1, without its line end; absent beyond the last.
  std::optional<std::string> line(std::size_t number) const;

  /// The number of the first piece that is not UTF-8, at which reading ends; absent when all are.
  std::optional<std::size_t> firstThatIsNotUTF8() const;

  /// The numbers of the pieces that end without a line end though another one follows: lines that the reader split.
  std::vector<std::size_t> split() const;

  /// The text up to where reading ends.
  std::string text() const;

 private:
  std::vector<std::string> pieces_;
};
