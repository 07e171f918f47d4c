// SPDX-License-Identifier: MIT
#include "explain/judge/NearMisses.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <cstdlib>

namespace {

using Characters = std::u32string;

// A name that is much longer is compared no further.
constexpr std::size_t kLongest = 200;

// What looks like a letter of ASCII once letter case is folded (Unicode Technical Standard 39, Latin, Greek and
// Cyrillic).
constexpr std::array<std::pair<std::u32string_view, char32_t>, 19> kLookAlikes = {
    {{U"\u0430\u03B1", U'a'},
     {U"\u0432", U'b'},
     {U"\u0441\u03F2", U'c'},
     {U"\u0501", U'd'},
     {U"\u0435\u03B5", U'e'},
     {U"\u043D", U'h'},
     {U"1il|\u0456\u03B9\u0131\u04CF", U'l'},
     {U"\u0458", U'j'},
     {U"\u043A\u03BA", U'k'},
     {U"\u043C\u03BC", U'm'},
     {U"\u03B7", U'n'},
     {U"0\u043E\u03BF", U'o'},
     {U"\u0440\u03C1", U'p'},
     {U"\u0455", U's'},
     {U"\u0442\u03C4", U't'},
     {U"\u03BD", U'v'},
     {U"\u0445\u03C7", U'x'},
     {U"\u0443\u03C5", U'y'},
     {U"\u03B6", U'z'}}};

// Bytes that are no text stand for themselves.
Characters bytesOf(std::string_view text) {
  Characters characters;
  for (const char byte : text) {
    const auto code = static_cast<unsigned char>(byte);
    characters.push_back(code < 0x80 ? static_cast<char32_t>(std::tolower(code)) : char32_t{code});
  }
  return characters;
}

Characters mapped(std::string_view text, int options) {
  const auto all = static_cast<utf8proc_option_t>(options | UTF8PROC_STABLE | UTF8PROC_COMPOSE);
  utf8proc_uint8_t* result = nullptr;
  const auto size = utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                 static_cast<utf8proc_ssize_t>(text.size()), &result, all);
  Characters characters;
  if (size < 0) return bytesOf(text);
  for (utf8proc_ssize_t place = 0; place < size;) {
    utf8proc_int32_t character = 0;
    place += utf8proc_iterate(result + place, size - place, &character);
    characters.push_back(static_cast<char32_t>(character));
  }
  std::free(result);
  return characters;
}

Characters folded(std::string_view text) {
  return mapped(text, UTF8PROC_CASEFOLD);
}

Characters trimmed(Characters text) {
  const auto isBlank = [](char32_t character) { return character == U' ' || character == U'\t'; };
  while (!text.empty() && isBlank(text.back())) text.pop_back();
  text.erase(text.begin(), std::find_if_not(text.begin(), text.end(), isBlank));
  return text;
}

bool isInvisible(char32_t character) {
  return character == U'\u2800' || character == U'\u3164' || character == U'\u115F' || character == U'\u1160';
}

// Equal for two texts that look the same.
Characters skeleton(std::string_view text) {
  Characters characters = mapped(text, UTF8PROC_CASEFOLD | UTF8PROC_COMPAT | UTF8PROC_IGNORE | UTF8PROC_LUMP);
  std::erase_if(characters, isInvisible);
  for (char32_t& character : characters) {
    const auto found = std::find_if(kLookAlikes.begin(), kLookAlikes.end(), [character](const auto& alike) {
      return alike.first.find(character) != std::u32string_view::npos;
    });
    if (found != kLookAlikes.end()) character = found->second;
  }
  return characters;
}

Characters withoutDigits(Characters text) {
  std::erase_if(text, [](char32_t character) { return character >= U'0' && character <= U'9'; });
  return text;
}

// How many characters are other, missing, added, or exchanged with their neighbour (optimal string alignment).
std::size_t distance(const Characters& one, const Characters& other) {
  std::vector<std::vector<std::size_t>> best(one.size() + 1, std::vector<std::size_t>(other.size() + 1));
  for (std::size_t i = 0; i <= one.size(); ++i) {
    for (std::size_t j = 0; j <= other.size(); ++j) {
      if (i == 0 || j == 0) {
        best[i][j] = i + j;
        continue;
      }
      best[i][j] =
          std::min({best[i - 1][j] + 1, best[i][j - 1] + 1, best[i - 1][j - 1] + (one[i - 1] != other[j - 1])});
      const bool isExchanged = i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1];
      if (isExchanged) best[i][j] = std::min(best[i][j], best[i - 2][j - 2] + 1);
    }
  }
  return best[one.size()][other.size()];
}

bool hasTheSameCharacters(Characters one, Characters other) {
  std::sort(one.begin(), one.end());
  std::sort(other.begin(), other.end());
  return one == other;
}

// One character of four, three at most: no name becomes another word by that. Two characters may have changed places.
bool isNear(const Characters& one, const Characters& other) {
  const std::size_t shorter = std::min(one.size(), other.size());
  const std::size_t longer = std::max(one.size(), other.size());
  constexpr std::size_t kExchanged = 2;
  std::size_t bound = std::min<std::size_t>(shorter / 4, 3);
  if (bound > 0 && bound < kExchanged && longer <= kLongest && hasTheSameCharacters(one, other)) bound = kExchanged;
  if (longer > kLongest || longer - shorter > bound) return false;
  return distance(one, other) <= bound;
}

}  // namespace

NearMisses::Likeness NearMisses::likeness(std::string_view one, std::string_view other) {
  const Characters first = trimmed(folded(one));
  const Characters second = trimmed(folded(other));
  if (first.empty() || second.empty()) return Likeness::none;
  if (first == second) return Likeness::letterCase;
  if (withoutDigits(first) == withoutDigits(second) && first.size() == second.size()) return Likeness::none;
  if (skeleton(one) == skeleton(other)) return Likeness::looksTheSame;
  if (withoutDigits(first) == withoutDigits(second)) return Likeness::none;
  return isNear(first, second) ? Likeness::nearly : Likeness::none;
}

std::optional<NearMisses::Near> NearMisses::nearest(std::string_view wanted, const std::vector<std::string>& names) {
  Near best;
  std::size_t bestDistance = 0;
  for (std::size_t index = 0; index < names.size(); ++index) {
    if (names[index] == wanted) continue;
    const Likeness found = likeness(wanted, names[index]);
    if (found > best.likeness || found == Likeness::none) continue;
    const std::size_t characters = found == Likeness::nearly ? distance(folded(wanted), folded(names[index])) : 0;
    if (found == best.likeness && characters >= bestDistance) continue;
    best = {index, found};
    bestDistance = characters;
  }
  return best.likeness == Likeness::none ? std::nullopt : std::optional(best);
}

const char* NearMisses::nameOf(Likeness likeness) {
  static constexpr const char* kNames[] = {"letter-case", "looks-the-same", "nearly", "none"};
  return kNames[static_cast<int>(likeness)];
}
