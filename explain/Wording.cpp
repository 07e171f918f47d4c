// SPDX-License-Identifier: MIT
#include "explain/Wording.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/Text.h"
#include "ppd/lines/PPDParserError.h"

namespace {

bool isControl(char32_t character) {
  return character < 0x20 || (character >= 0x7F && character < 0xA0) || Text::isLineEnd(character);
}

void appendByte(std::string& text, char byte) {
  if (byte == '\n') {
    text += "\\n";
  } else if (byte == '\r') {
    text += "\\r";
  } else if (byte == '\t') {
    text += "\\t";
  } else {
    text += fmt::format("\\x{:02x}", static_cast<unsigned char>(byte));
  }
}

}  // namespace

std::string Wording::visible(std::string_view text) {
  const bool isText = Text::isValidUTF8(text);
  std::string visible;
  for (std::size_t position = 0; position < text.size();) {
    const Text::Character character =
        isText ? Text::characterAt(text, position) : Text::Character{static_cast<unsigned char>(text[position]), 1};
    const std::string_view bytes = text.substr(position, character.size);
    position += character.size;
    if (isControl(character.value) || (!isText && character.value >= 0x80)) {
      for (const char byte : bytes) appendByte(visible, byte);
    } else {
      visible += bytes;
    }
  }
  return visible;
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
