// SPDX-License-Identifier: MIT
#include "explain/show/TextLayout.h"

#include <fmt/format.h>
#include <utf8proc.h>

#include <algorithm>

#include "base/Text.h"

namespace {

constexpr std::string_view kMargin = "  ";

// Of a terminal: Chinese, Japanese and Korean characters, and many pictures, take two.
std::size_t columnsOf(char32_t character) {
  return static_cast<std::size_t>(std::max(utf8proc_charwidth(static_cast<utf8proc_int32_t>(character)), 0));
}

// Where a line of at most `width` characters ends: between words when it can.
std::size_t endOfLine(std::string_view text, std::size_t width) {
  std::size_t end = 0;
  std::size_t lastBlank = 0;
  for (std::size_t taken = 0; end < text.size();) {
    const Text::Character character = Text::characterAt(text, end);
    taken += columnsOf(character.value);
    if (taken > width) break;
    if (character.value == ' ') lastBlank = end;
    end += character.size;
  }
  if (end < text.size() && text[end] == ' ') return end;
  return end < text.size() && lastBlank > 0 ? lastBlank : end;
}

}  // namespace

std::size_t TextLayout::widthOf(std::string_view text) {
  std::size_t width = 0;
  for (std::size_t position = 0; position < text.size();) {
    const Text::Character character = Text::characterAt(text, position);
    width += columnsOf(character.value);
    position += character.size;
  }
  return width;
}

std::string TextLayout::fitted(const std::string& text, std::size_t width) {
  if (widthOf(text) <= width) return text;
  std::size_t end = 0;
  for (std::size_t taken = 0;;) {
    const Text::Character character = Text::characterAt(text, end);
    taken += columnsOf(character.value);
    if (taken + 1 > width) return text.substr(0, end) + "…";
    end += character.size;
  }
}

std::string TextLayout::padded(const std::string& text, std::size_t width) {
  const std::string cut = fitted(text, width);
  return cut + std::string(width - widthOf(cut), ' ');
}

std::string TextLayout::inColour(Colour colour, const std::string& text) const {
  return coloured_ ? fmt::format("\x1b[{}m{}\x1b[0m", static_cast<int>(colour), text) : text;
}

void TextLayout::heading(const std::string& title) {
  text_ += "\n" + inColour(Colour::bold, fitted(title, width_)) + "\n";
}

void TextLayout::line(const std::string& content) {
  text_ += std::string(kMargin) + fitted(content, width_ - kMargin.size()) + "\n";
}

void TextLayout::line(const std::string& content, Colour colour) {
  text_ += std::string(kMargin) + inColour(colour, fitted(content, width_ - kMargin.size())) + "\n";
}

void TextLayout::paragraph(const std::string& content) {
  wrapped(std::string(kMargin), "    ", content);
}

void TextLayout::field(const std::string& name, const std::string& value) {
  wrapped(padded(name, 8) + " ", std::string(9, ' '), value);
}

void TextLayout::detail(const std::string& name, const std::string& value) {
  wrapped("      " + padded(name, 10) + " ", std::string(17, ' '), value);
}

void TextLayout::wrapped(const std::string& prefix, const std::string& indent, const std::string& content) {
  std::string_view rest = content;
  std::string lead = prefix;
  do {
    const std::size_t end = endOfLine(rest, width_ - indent.size());
    text_ += lead + std::string(rest.substr(0, end)) + "\n";
    rest.remove_prefix(end);
    if (rest.starts_with(' ')) rest.remove_prefix(1);
    lead = indent;
  } while (!rest.empty());
}
