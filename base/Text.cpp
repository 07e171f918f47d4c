// SPDX-License-Identifier: MIT
#include "base/Text.h"

#include <utf8proc.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace Text {
namespace {

const utf8proc_uint8_t* unsignedBytes(std::string_view text, std::size_t position) {
  return reinterpret_cast<const utf8proc_uint8_t*>(text.data()) + position;
}

std::uint64_t wordAt(std::string_view text, std::size_t position) {
  std::uint64_t word;
  std::memcpy(&word, text.data() + position, sizeof word);
  return word;
}

// A position before which all is ASCII, and the text's size when everything is; several words at a time, since nearly
// all text is ASCII.
std::size_t skipASCII(std::string_view text) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080U;
  constexpr std::size_t kWord = sizeof kHighBits;
  std::size_t position = 0;
  for (; position + 4 * kWord <= text.size(); position += 4 * kWord) {
    const std::uint64_t all = wordAt(text, position) | wordAt(text, position + kWord) |
                              wordAt(text, position + 2 * kWord) | wordAt(text, position + 3 * kWord);
    if ((all & kHighBits) != 0) return position;
  }
  for (; position + kWord <= text.size(); position += kWord) {
    if ((wordAt(text, position) & kHighBits) != 0) return position;
  }
  const bool hasLastWord = text.size() >= kWord;  // it overlaps those before
  if (hasLastWord && (wordAt(text, text.size() - kWord) & kHighBits) == 0) return text.size();
  while (position < text.size() && static_cast<unsigned char>(text[position]) < 0x80) ++position;
  return position;
}

}  // namespace

bool isValidUTF8(std::string_view bytes) {
  std::size_t position = skipASCII(bytes);
  while (position < bytes.size()) {
    utf8proc_int32_t character;
    const auto rest = static_cast<utf8proc_ssize_t>(bytes.size() - position);
    const utf8proc_ssize_t size = utf8proc_iterate(unsignedBytes(bytes, position), rest, &character);
    if (size <= 0) return false;
    position += static_cast<std::size_t>(size);
  }
  return true;
}

std::optional<std::string> fromUTF8(std::string_view bytes) {
  if (!isValidUTF8(bytes)) return std::nullopt;
  return std::string(bytes);
}

bool isSpaceSeparator(char32_t character) {
  return utf8proc_category(static_cast<utf8proc_int32_t>(character)) == UTF8PROC_CATEGORY_ZS;
}

Character longCharacterAt(std::string_view text, std::size_t position) {
  utf8proc_int32_t character;
  const auto rest = static_cast<utf8proc_ssize_t>(text.size() - position);
  const utf8proc_ssize_t size = utf8proc_iterate(unsignedBytes(text, position), rest, &character);
  return {static_cast<char32_t>(character), static_cast<std::size_t>(std::max<utf8proc_ssize_t>(size, 1))};
}

Character characterBefore(std::string_view text, std::size_t end) {
  std::size_t start = end - 1;
  while (start > 0 && (static_cast<unsigned char>(text[start]) & 0xC0) == 0x80) --start;
  return characterAt(text, start);
}

std::string_view trim(std::string_view text, CharacterClass characterClass) {
  text.remove_prefix(skip(text, 0, characterClass));
  while (!text.empty()) {
    const Character last = characterBefore(text, text.size());
    if (!characterClass(last.value)) break;
    text.remove_suffix(last.size);
  }
  return text;
}

std::vector<std::string_view> split(std::string_view text, CharacterClass characterClass) {
  std::vector<std::string_view> parts;
  std::size_t start = 0;
  for (std::size_t position = 0; position < text.size();) {
    const Character character = characterAt(text, position);
    if (characterClass(character.value)) {
      parts.push_back(text.substr(start, position - start));
      start = position + character.size;
    }
    position += character.size;
  }
  parts.push_back(text.substr(start));
  return parts;
}

std::vector<std::string_view> split(std::string_view text, std::string_view separator) {
  std::vector<std::string_view> parts;
  std::size_t start = 0;
  for (std::size_t found; (found = text.find(separator, start)) != std::string_view::npos;) {
    parts.push_back(text.substr(start, found - start));
    start = found + separator.size();
  }
  parts.push_back(text.substr(start));
  return parts;
}

bool contains(std::string_view text, std::string_view part) {
  return !part.empty() && text.find(part) != std::string_view::npos;
}

}  // namespace Text
