// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Text in this system is UTF-8 and always valid once it is inside; the command line, the file reader and the
/// device-model library are the doors, and each of them asks `isValidUTF8` first. The character classes that
/// every rule of the system uses are here and nowhere else.
namespace Text {

/// Whether the bytes are well-formed UTF-8: no surrogates, no overlong forms, nothing above U+10FFFF
/// (Unicode 15, section 3.9, table 3-7).
bool isValidUTF8(std::string_view bytes);

/// The string, or absent when the bytes are not valid UTF-8.
std::optional<std::string> fromUTF8(std::string_view bytes);

/// Whether the character is a Unicode space separator (category Zs).
bool isSpaceSeparator(char32_t character);

/// TAB and the Unicode space separators (category Zs).
inline bool isWhiteSpace(char32_t character) {
  return character < 0x80 ? character == ' ' || character == '\t' : isSpaceSeparator(character);
}

/// U+000A to U+000D, U+0085, U+2028 and U+2029.
inline bool isLineEnd(char32_t character) {
  return (character >= 0x0A && character <= 0x0D) || character == 0x85 || character == 0x2028 || character == 0x2029;
}

/// White space and line ends: what a token scan skips before each token.
inline bool isBlank(char32_t character) {
  return isWhiteSpace(character) || isLineEnd(character);
}

/// One character of a text and the number of bytes that it takes.
struct Character {
  char32_t value;
  std::size_t size;
};

/// The character, of more than one byte, that begins at `position`.
Character longCharacterAt(std::string_view text, std::size_t position);

/// The character that begins at `position`, which must be below the text's size and at a character's start.
inline Character characterAt(std::string_view text, std::size_t position) {
  const auto first = static_cast<unsigned char>(text[position]);
  return first < 0x80 ? Character{first, 1} : longCharacterAt(text, position);
}

/// The character that ends just before `end`, which must be above 0.
Character characterBefore(std::string_view text, std::size_t end);

/// What a set of characters takes in: `isWhiteSpace`, `isLineEnd`, or both together.
using CharacterClass = bool (*)(char32_t);

/// The position, from `position` on, of the first character outside the class, or the text's size.
inline std::size_t skip(std::string_view text, std::size_t position, CharacterClass characterClass) {
  while (position < text.size()) {
    const Character character = characterAt(text, position);
    if (!characterClass(character.value)) break;
    position += character.size;
  }
  return position;
}

/// Whether the byte is a visible ASCII character, as nearly all are: neither white space nor a control character.
constexpr bool isPrintableASCII(char byte) {
  return static_cast<unsigned char>(byte - '!') <= '~' - '!';
}

/// The position, from `position` on, of the first character that is neither white space nor a line end, or the text's
/// size. Nearly always it is `position`.
inline std::size_t skipBlanks(std::string_view text, std::size_t position) {
  const bool isPrintable = position < text.size() && isPrintableASCII(text[position]);
  return isPrintable ? position : skip(text, position, isBlank);
}

/// The text without the characters of the class at both ends; a part of the same storage.
std::string_view trim(std::string_view text, CharacterClass characterClass);

/// The parts between every single character of the class: two in a row give an empty part, which is kept.
std::vector<std::string_view> split(std::string_view text, CharacterClass characterClass);

/// The parts between the occurrences of `separator`, which must not be empty; empty parts are kept.
std::vector<std::string_view> split(std::string_view text, std::string_view separator);

/// Whether `text` contains `part`. The empty string is contained in nothing.
bool contains(std::string_view text, std::string_view part);

/// The letter in lower case when it is an ASCII one.
constexpr char foldASCII(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// Whether `text` begins with `prefix`, where the ASCII letters, and only those, are folded.
inline bool startsWithIgnoringCase(std::string_view text, std::string_view prefix) {
  if (text.size() < prefix.size()) return false;
  for (std::size_t index = 0; index < prefix.size(); ++index) {
    if (text[index] != prefix[index] && foldASCII(text[index]) != foldASCII(prefix[index])) return false;
  }
  return true;
}

/// The text, or "(null)" for an absent one: the form in which an absent value is printed everywhere.
inline std::string_view orNull(std::optional<std::string_view> text) {
  return text.value_or("(null)");
}

}  // namespace Text
