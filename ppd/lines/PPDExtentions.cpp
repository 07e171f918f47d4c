// SPDX-License-Identifier: MIT
#include "ppd/lines/PPDExtentions.h"

#include <algorithm>

#include "base/ATLog.h"
#include "base/Text.h"
#include "ppd/lines/TokenScanner.h"

namespace PPDExtentions {
namespace {

constexpr std::size_t kLongestLine = 255;
constexpr std::size_t kLongestText = 80;
constexpr std::size_t kLongestName = 40;

bool isLengthFrom1To(std::size_t limit, std::string_view string) {
  return !string.empty() && string.size() <= limit;
}

bool isAllowedTextUnit(char32_t unit) {
  return unit >= 32 && unit <= 255 && unit != '"' && unit != ':' && unit != '<' && unit != '>';
}

void logInvalidText([[maybe_unused]] std::string_view string) {
  ATLog("-[PPDExtentions isValidPPDText]", "The text: \"{}\" is not valid PPD text.", string);
}

}  // namespace

bool hasAsteriskPrefix(std::string_view string) {
  return string.starts_with('*');
}

bool isPPDComment(std::string_view string) {
  return string.starts_with("*%");
}

bool isNewLine(std::string_view string) {
  return Text::skip(string, 0, Text::isLineEnd) == string.size();
}

bool isPPDStatementsNamed(std::string_view string, std::string_view name) {
  TokenScanner scanner(string);
  return scanner.scan("*") && scanner.scan(name) && scanner.scan(":");
}

bool isOpenGroupPPDStatement(std::string_view string) {
  return isPPDStatementsNamed(string, "OpenGroup");
}

bool isCloseGroupPPDStatement(std::string_view string) {
  return isPPDStatementsNamed(string, "CloseGroup");
}

bool isCloseUIPPDStatement(std::string_view string) {
  return isPPDStatementsNamed(string, "CloseUI");
}

bool isOrderDependencyPPDStatement(std::string_view string) {
  return isPPDStatementsNamed(string, "OrderDependency");
}

bool isOpenUIPPDStatement(std::string_view string) {
  TokenScanner scanner(string);
  return scanner.scan("*") && scanner.scan("OpenUI");
}

bool isDefaultChoicePPDStatement(std::string_view string) {
  return string.starts_with("*Default");
}

bool isEndStatementPPDStatement(std::string_view string) {
  return string.starts_with("*End");
}

bool isPPDStatementClosed(std::string_view string) {
  const std::size_t colon = string.find(':');
  if (colon == std::string_view::npos) return false;
  const std::size_t opening = string.find('"', colon + 1);
  if (opening == std::string_view::npos) return true;
  return string.find('"', opening + 1) != std::string_view::npos;
}

bool isPPDLineTerminatedByDoubleQuoteCharacter(std::string_view string) {
  return Text::trim(string, Text::isBlank).ends_with('"');
}

std::string emptyQuotedValue() {
  return "\"\"";
}

std::optional<std::string_view> quotedValueContent(std::string_view string) {
  const std::size_t first = string.find('"');
  const std::size_t last = string.rfind('"');
  if (first == last) return std::nullopt;
  return string.substr(first + 1, last - first - 1);
}

bool isValidPPDLineLength(std::string_view string) {
  return isLengthFrom1To(kLongestLine, string);
}

bool isValidPPDTextLength(std::string_view string) {
  return isLengthFrom1To(kLongestText, string);
}

bool isValidPPDNameLength(std::string_view string) {
  return isLengthFrom1To(kLongestName, string);
}

bool isValidPPDKeyword(std::string_view string) {
  return std::all_of(string.begin(), string.end(), [](char character) {
    return character >= '!' && character <= '~' && character != '/' && character != ':';
  });
}

bool isValidPPDText(std::string_view string) {
  bool valid = true;
  for (std::size_t position = 0; position < string.size();) {
    const Text::Character character = Text::characterAt(string, position);
    position += character.size;
    if (isAllowedTextUnit(character.value)) continue;
    valid = false;
    logInvalidText(string);
    if (character.value > 0xFFFF) logInvalidText(string);  // two UTF-16 code units, two messages
  }
  return valid;
}

}  // namespace PPDExtentions
