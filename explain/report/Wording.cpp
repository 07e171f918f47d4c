// SPDX-License-Identifier: MIT
#include "explain/report/Wording.h"

#include <fmt/format.h>
#include <utf8proc.h>

#include <algorithm>

#include "base/Text.h"
#include "ppd/lines/PPDParserError.h"

namespace {

// Fillers, a Braille pattern without dots, and what only changes its neighbours: letters, symbols and marks to Unicode
// that nobody sees (Unicode 15, Default_Ignorable_Code_Point).
bool isBlankThoughALetter(char32_t character) {
  constexpr std::u32string_view kSingle = U"\u034F\u115F\u1160\u17B4\u17B5\u2800\u3164\uFFA0";
  const bool isVariationSelector = (character >= 0xFE00 && character <= 0xFE0F) ||
                                   (character >= 0x180B && character <= 0x180F) ||
                                   (character >= 0xE0100 && character <= 0xE01EF);
  return isVariationSelector || kSingle.find(character) != std::u32string_view::npos;
}

// Whether a character must not reach a terminal, a page or a log as it is: a control character, one that changes the
// direction of the text or cannot be seen, a line or paragraph separator, or one that Unicode does not know.
bool isUnsafe(char32_t character) {
  if (isBlankThoughALetter(character)) return true;
  switch (utf8proc_category(static_cast<utf8proc_int32_t>(character))) {
    case UTF8PROC_CATEGORY_CC:
    case UTF8PROC_CATEGORY_CF:
    case UTF8PROC_CATEGORY_ZS:  // but for the blank, they look like one
      return character != ' ';
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP:
    case UTF8PROC_CATEGORY_CN:
    case UTF8PROC_CATEGORY_CO:
      return true;
    default:
      return false;
  }
}

std::string escaped(char32_t character) {
  switch (character) {
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      break;
  }
  const auto number = static_cast<std::uint32_t>(character);
  if (number < 0x80) return fmt::format("\\x{:02x}", number);
  return number <= 0xFFFF ? fmt::format("\\u{:04x}", number) : fmt::format("\\U{:08x}", number);
}

// Each byte that is no visible ASCII character or blank, by its number.
std::string visibleBytes(std::string_view bytes) {
  std::string visible;
  for (const char byte : bytes) {
    const auto number = static_cast<unsigned char>(byte);
    if (number < 0x80) {
      visible += isUnsafe(number) ? escaped(number) : std::string(1, byte);
    } else {
      visible += fmt::format("\\x{:02x}", number);
    }
  }
  return visible;
}

}  // namespace

std::string Wording::visible(std::string_view text) {
  const auto isPlain = [](char character) { return character == ' ' || Text::isPrintableASCII(character); };
  if (std::all_of(text.begin(), text.end(), isPlain)) return std::string(text);
  if (!Text::isValidUTF8(text)) return visibleBytes(text);
  std::string visible;
  for (std::size_t position = 0; position < text.size();) {
    const Text::Character character = Text::characterAt(text, position);
    if (Text::isPrintableASCII(text[position]) || !isUnsafe(character.value)) {
      visible += text.substr(position, character.size);
    } else {
      visible += escaped(character.value);
    }
    position += character.size;
  }
  return visible;
}

std::string Wording::cutTo(std::size_t size, std::string_view text) {
  std::size_t end = std::min(size, text.size());
  while (end > 0 && end < text.size() && (text[end] & 0xC0) == 0x80) --end;  // in front of a whole character
  return std::string(text.substr(0, end));
}

std::string Wording::counted(std::size_t count, std::string_view what) {
  return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

std::string Wording::quoted(const std::optional<std::string>& name) {
  return name ? "\"" + visible(*name) + "\"" : "without a name";
}

std::string Wording::of(const AboutMedium& medium) {
  return fmt::format("{} ({})", quoted(medium.name), medium.ID ? visible(*medium.ID) : "no ID");
}

std::string Wording::of(const Report::Medium& medium) {
  return of(AboutMedium{medium.name, medium.ID});
}

std::vector<std::string> Wording::visibleLines(std::string_view statement) {
  std::vector<std::string> lines;
  for (std::size_t start = 0; start < statement.size();) {
    const std::size_t end = std::min(statement.find_first_of("\r\n", start), statement.size());
    lines.push_back(visible(statement.substr(start, end - start)));
    start = end + (statement.substr(end).starts_with("\r\n") ? 2 : 1);
  }
  return lines;
}

std::string Wording::of(MediumProblem problem) {
  switch (problem) {
    case MediumProblem::noName:
      return "the device gives no name for it";
    case MediumProblem::noID:
      return "the device gives no ID for it";
    case MediumProblem::noCode:
      return "the updater has no code for it";
    case MediumProblem::noChoiceName:
      return "its choice has no name";
    case MediumProblem::lineTooLong:
      return "its choice statement would be longer than 255 bytes";
    default:
      return "";
  }
}

std::string Wording::of(ProfileProblem problem, const std::optional<std::string>& url) {
  static constexpr const char* kCharacters =
      "holds a character that a statement cannot: a quote, a colon, < or >, a control character, or one beyond Latin-1";
  switch (problem) {
    case ProfileProblem::noName:
      return "it has no name";
    case ProfileProblem::emptyName:
      return "its name is empty";
    case ProfileProblem::nameTooLong:
      return "its name is longer than 80 bytes";
    case ProfileProblem::charactersOfName:
      return fmt::format("its name {}", kCharacters);
    case ProfileProblem::noPath:
      return url ? fmt::format("its URL has no path by RFC 3986: {}", visible(*url)) : "it has no URL";
    case ProfileProblem::charactersOfPath:
      return fmt::format("its path {}", kCharacters);
    case ProfileProblem::specTooLong:
      return "the spec is longer than 40 bytes";
    case ProfileProblem::lineTooLong:
      return "a statement would be longer than 255 bytes";
    case ProfileProblem::noStatement:
      return "the PPD has no statement of this spec to set";
    default:
      return "";
  }
}

std::string Wording::expectedAtError(int code) {
  switch (code) {
    case PPDParserErrorFileNotFound:
      return "an existing file";
    case PPDParserErrorFileNotOpened:
      return "a file that can be opened";
    case PPDParserErrorStatementExpected:
      return "a statement, which begins with \"*\" in the first column";
    case PPDParserErrorGroupContentExpected:
      return "a statement or an option behind *OpenGroup";
    case PPDParserErrorUIContentExpected:
      return "a default, a choice or *CloseUI inside the option";
    case PPDParserErrorUnexpectedEnd:
      return "the closing quote of the value, or another statement, before *End";
    case PPDParserErrorUnexpectedCloseGroup:
      return "an open group before *CloseGroup";
    default:
      return "";
  }
}
