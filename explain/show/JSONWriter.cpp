// SPDX-License-Identifier: MIT
#include "explain/show/JSONWriter.h"

#include <fmt/format.h>

#include <iterator>
#include <utility>

#include "base/Text.h"
#include "explain/report/Wording.h"

namespace {

bool isPlain(char character) {
  return character >= ' ' && character <= '~' && character != '"' && character != '\\';
}

}  // namespace

void JSONWriter::value(std::string_view text) {
  next();
  valid(text);
}

void JSONWriter::member(std::string_view name, std::string_view text) {
  key(name);
  valid(text);
}

void JSONWriter::member(std::string_view name, const std::optional<std::string>& text) {
  key(name);
  if (text) {
    valid(*text);
  } else {
    json_ += "null";
  }
}

std::string JSONWriter::take() {
  return std::move(json_) + "\n";
}

void JSONWriter::open(char bracket) {
  if (depth_ > 0) next();
  json_ += bracket;
  ++depth_;
  isFirst_ = true;
}

void JSONWriter::openMember(std::string_view name, char bracket) {
  key(name);
  json_ += bracket;
  ++depth_;
  isFirst_ = true;
}

void JSONWriter::close(char bracket) {
  --depth_;
  if (!isFirst_) json_.append(1, '\n').append(depth_, ' ');
  json_ += bracket;
  isFirst_ = false;
}

void JSONWriter::next() {
  if (!isFirst_) json_ += ',';
  json_.append(1, '\n').append(depth_, ' ');
  isFirst_ = false;
}

void JSONWriter::key(std::string_view name) {
  next();
  valid(name);
  json_ += ": ";
}

void JSONWriter::raw(std::string_view name, std::string_view token) {
  key(name);
  json_ += token;
}

// To look for bytes that are no text is quick where all are ASCII.
void JSONWriter::valid(std::string_view text) {
  if (Text::isValidUTF8(text)) return quoted(text);
  quoted(Wording::visible(text));
}

void JSONWriter::quoted(std::string_view text) {
  json_ += '"';
  for (std::size_t start = 0; start < text.size();) {
    std::size_t end = start;
    while (end < text.size() && isPlain(text[end])) ++end;
    json_.append(text, start, end - start);
    start = end;
    if (start == text.size()) break;
    const Text::Character character = Text::characterAt(text, start);
    escaped(character.value);
    start += character.size;
  }
  json_ += '"';
}

void JSONWriter::escaped(char32_t character) {
  const auto number = static_cast<std::uint32_t>(character);
  if (character == '"' || character == '\\') {
    json_.append(1, '\\').append(1, static_cast<char>(character));
  } else if (character == '\n') {
    json_ += "\\n";
  } else if (number <= 0xFFFF) {
    fmt::format_to(std::back_inserter(json_), "\\u{:04x}", number);
  } else {
    const std::uint32_t rest = number - 0x10000;
    fmt::format_to(std::back_inserter(json_), "\\u{:04x}\\u{:04x}", 0xD800 + (rest >> 10), 0xDC00 + (rest & 0x3FF));
  }
}
