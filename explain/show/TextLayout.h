// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

/// Lines of text for a terminal or a file: of one width, in columns, wrapped between words, coloured or not. All
/// content must be visible text (Wording::visible).
class TextLayout {
 public:
  enum class Colour { bold = 1, red = 31, green = 32, yellow = 33 };

  static constexpr std::size_t kNarrowest = 60;
  static constexpr std::size_t kWidest = 200;
  static constexpr std::size_t kUsual = 80;

  /// `width`: columns of a line; `coloured`: with the escapes of ANSI terminals.
  TextLayout(std::size_t width, bool coloured) : width_(width), coloured_(coloured) {}

  std::size_t width() const { return width_; }
  std::string take() { return std::move(text_); }

  /// The text in a colour, when there are any.
  std::string inColour(Colour colour, const std::string& text) const;

  void heading(const std::string& title);
  /// An indented line; what does not fit ends with an ellipsis.
  void line(const std::string& content);
  /// The same in a colour.
  void line(const std::string& content, Colour colour);
  /// Indented, with as many lines as it needs.
  void paragraph(const std::string& content);
  /// A name in a column of its own at the left edge, and its value.
  void field(const std::string& name, const std::string& value);
  /// The same deep inside.
  void detail(const std::string& name, const std::string& value);
  /// The content behind the prefix, further lines behind the indent. The prefix may hold colours, and is as wide as the
  /// indent at most.
  void wrapped(const std::string& prefix, const std::string& indent, const std::string& content);

  /// How many columns of a terminal the text takes.
  static std::size_t widthOf(std::string_view text);
  /// The first characters that fit, with an ellipsis for what does not.
  static std::string fitted(const std::string& text, std::size_t width);
  /// The same, filled up with blanks.
  static std::string padded(const std::string& text, std::size_t width);

 private:
  std::size_t width_;
  bool coloured_;
  std::string text_;
};
