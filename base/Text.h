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

/// TAB and the Unicode space separators (category Zs).
bool isWhiteSpace(char32_t character);

/// U+000A to U+000D, U+0085, U+2028 and U+2029.
bool isLineEnd(char32_t character);

/// One character of a text and the number of bytes that it takes.
struct Character {
  char32_t value;
  std::size_t size;
};

/// The character that begins at `position`, which must be below the text's size and at a character's start.
Character characterAt(std::string_view text, std::size_t position);

/// The character that ends just before `end`, which must be above 0.
Character characterBefore(std::string_view text, std::size_t end);

/// What a set of characters takes in, as a predicate: `isWhiteSpace`, `isLineEnd`, or both together.
using CharacterClass = bool (*)(char32_t);

/// White space and line ends: what a token scan skips before each token.
bool isBlank(char32_t character);

/// The position, from `position` on, of the first character outside the class, or the text's size.
std::size_t skip(std::string_view text, std::size_t position, CharacterClass characterClass);

/// The text without the characters of the class at both ends; a part of the same storage.
std::string_view trim(std::string_view text, CharacterClass characterClass);

/// The parts between every single character of the class: two in a row give an empty part, which is kept.
std::vector<std::string_view> split(std::string_view text, CharacterClass characterClass);

/// The parts between the occurrences of `separator`, which must not be empty; empty parts are kept.
std::vector<std::string_view> split(std::string_view text, std::string_view separator);

/// Whether `text` contains `part`. The empty string is contained in nothing.
bool contains(std::string_view text, std::string_view part);

/// Equality that folds the ASCII letters, and only those.
bool equalsIgnoringCase(std::string_view one, std::string_view other);

/// The text, or "(null)" for an absent one: the form in which an absent value is printed everywhere.
std::string_view orNull(const std::optional<std::string>& text);

}  // namespace Text
