// SPDX-License-Identifier: MIT
#include "explain/report/Words.h"

#include <cctype>

namespace {

bool isWordCharacter(char character) {
  return std::isalnum(static_cast<unsigned char>(character)) != 0;
}

}  // namespace

bool holdsWord(std::string_view text, std::string_view word) {
  if (word.empty()) return false;
  for (auto found = text.find(word); found != std::string_view::npos; found = text.find(word, found + 1)) {
    const std::size_t end = found + word.size();
    const bool wordBefore = found > 0 && isWordCharacter(text[found - 1]) && isWordCharacter(word.front());
    const bool wordBehind = end < text.size() && isWordCharacter(text[end]) && isWordCharacter(word.back());
    if (!wordBefore && !wordBehind) return true;
  }
  return false;
}
