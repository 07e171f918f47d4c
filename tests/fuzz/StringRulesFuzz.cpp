// SPDX-License-Identifier: MIT
//
// Every rule on single strings, compared with a plain restatement that works on a list of characters.

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "base/Text.h"
#include "ppd/lines/PPDExtentions.h"
#include "tests/fuzz/Check.h"

namespace {

using Characters = std::vector<char32_t>;

Characters charactersOf(std::string_view text) {
  Characters characters;
  for (std::size_t position = 0; position < text.size();) {
    const auto lead = static_cast<unsigned char>(text[position]);
    const std::size_t size = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t character = size == 1 ? lead : lead & (0xFFU >> (size + 1));
    for (std::size_t index = 1; index < size; ++index) {
      character = (character << 6U) | (static_cast<unsigned char>(text[position + index]) & 0x3FU);
    }
    characters.push_back(character);
    position += size;
  }
  return characters;
}

bool isIn(char32_t character, const Characters& set) {
  return std::find(set.begin(), set.end(), character) != set.end();
}

const Characters kLineEnds = {0x0A, 0x0B, 0x0C, 0x0D, 0x85, 0x2028, 0x2029};
const Characters kWhiteSpace = {0x09,   0x20,   0xA0,   0x1680, 0x2000, 0x2001, 0x2002, 0x2003, 0x2004,
                                0x2005, 0x2006, 0x2007, 0x2008, 0x2009, 0x200A, 0x202F, 0x205F, 0x3000};

bool isBlank(char32_t character) {
  return isIn(character, kLineEnds) || isIn(character, kWhiteSpace);
}

bool scans(const Characters& line, const std::vector<std::string>& tokens) {
  std::size_t at = 0;
  for (const std::string& token : tokens) {
    while (at < line.size() && isBlank(line[at])) ++at;
    for (const char letter : token) {
      if (at == line.size() || line[at] > 0x7F) return false;
      if (std::tolower(static_cast<int>(line[at])) != std::tolower(static_cast<unsigned char>(letter))) return false;
      ++at;
    }
  }
  return true;
}

bool isClosed(const Characters& line) {
  auto at = std::find(line.begin(), line.end(), U':');
  if (at == line.end()) return false;
  at = std::find(at + 1, line.end(), U'"');
  if (at == line.end()) return true;
  return std::find(at + 1, line.end(), U'"') != line.end();
}

bool endsWithQuote(Characters line) {
  while (!line.empty() && isBlank(line.back())) line.pop_back();
  return !line.empty() && line.back() == U'"';
}

bool isValidText(const Characters& text) {
  return std::all_of(text.begin(), text.end(), [](char32_t character) {
    return character >= 32 && character <= 255 && !isIn(character, {U'"', U':', U'<', U'>'});
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  if (!Text::isValidUTF8(text)) return 0;
  const Characters characters = charactersOf(text);
  using namespace PPDExtentions;
  CHECK(isNewLine(text) ==
        std::all_of(characters.begin(), characters.end(), [](char32_t c) { return isIn(c, kLineEnds); }));
  CHECK(isOpenGroupPPDStatement(text) == scans(characters, {"*", "OpenGroup", ":"}));
  CHECK(isCloseGroupPPDStatement(text) == scans(characters, {"*", "CloseGroup", ":"}));
  CHECK(isOpenUIPPDStatement(text) == scans(characters, {"*", "OpenUI"}));
  CHECK(isCloseUIPPDStatement(text) == scans(characters, {"*", "CloseUI", ":"}));
  CHECK(isOrderDependencyPPDStatement(text) == scans(characters, {"*", "OrderDependency", ":"}));
  CHECK(isPPDStatementClosed(text) == isClosed(characters));
  CHECK(isPPDLineTerminatedByDoubleQuoteCharacter(text) == endsWithQuote(characters));
  CHECK(isValidPPDText(text) == isValidText(characters));
  CHECK(isValidPPDLineLength(text) == (size >= 1 && size <= 255));
  CHECK(isValidPPDTextLength(text) == (size >= 1 && size <= 80));
  CHECK(isValidPPDNameLength(text) == (size >= 1 && size <= 40));
  const auto quotes = std::count(text.begin(), text.end(), '"');
  const auto content = quotedValueContent(text);
  CHECK(content.has_value() == (quotes >= 2));
  if (content) CHECK(std::count(content->begin(), content->end(), '"') == quotes - 2);
  return 0;
}
