// SPDX-License-Identifier: MIT
#include "explain/compare/PPDMedia.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>

#include "base/Format.h"
#include "base/Text.h"
#include "ppd/lines/ATPPDParser.h"
#include "updaters/PPDKeywords.h"

namespace {

constexpr std::size_t kLongestPiece = 254;  // what CUPS' line reader gives at a time

struct Reading : IATPPDParserDelegate {
  ATPPD ppd;

  void didRecognizeString(ATPPDParser& /*parser*/, const StatementString& string, PPDLineType type) override {
    ppd.addString(string, type);
  }
  void didFailWithError(ATPPDParser& /*parser*/, const PPDParserError& /*error*/) override {}
};

std::size_t endOfPiece(std::string_view text, std::size_t start) {
  const std::size_t lineEnd = text.find_first_of("\r\n", start);
  if (lineEnd == std::string_view::npos || lineEnd - start >= kLongestPiece) {
    return std::min(start + kLongestPiece, text.size());
  }
  return lineEnd + (text.substr(lineEnd, 2) == "\r\n" ? 2 : 1);
}

// The choices that updaters list as added by them.
std::set<std::string, std::less<>> addedChoices(const ATPPD& ppd) {
  std::set<std::string, std::less<>> names;
  for (const auto& group : ppd.attributesForName(PPDKeyword::addedMedia)) {
    const std::string value(Text::orNull(group->value()));
    constexpr auto isBetween = [](char32_t character) {
      return Text::contains("\",\r\n", std::string(1, static_cast<char>(character)));
    };
    for (const std::string_view name : Text::split(value, isBetween)) {
      if (!name.empty()) names.emplace(name);
    }
  }
  return names;
}

// What stands between the two in a code, up to the last closing one.
std::string between(std::string_view code, std::string_view opening, std::string_view closing) {
  const std::size_t start = code.find(opening);
  const std::size_t end = code.rfind(closing);
  if (start == std::string_view::npos || end == std::string_view::npos || end < start + opening.size()) return "";
  return std::string(code.substr(start + opening.size(), end - start - opening.size()));
}

// The codes that updaters write for PCL3 and PostScript queues.
std::string IDOf(std::string_view code) {
  const std::string ofPCL3 = between(code, "/QZMediaID(", ")>>");
  return ofPCL3.empty() ? between(code, "/SetMediaId get (", ") exch exec") : ofPCL3;
}

// A custom medium is known by its code without the choice's number, any other by its choice.
std::string keyOf(const PPDMedia::Medium& medium, std::string code) {
  if (!medium.isCustom) return "factory " + medium.choice;
  const std::string named = "(" + medium.choice + ")";
  if (const std::size_t place = code.find(named); place != std::string::npos) code.erase(place, named.size());
  return "custom " + code;
}

// The text of a choice, or of its translation: what stands between the slash and the colon.
std::string textOf(const ATPPDChoice& choice) {
  const auto lines = choice.strings();
  if (lines.empty()) return "";
  const std::string_view line = lines.front();
  const std::size_t colon = line.find(':');
  const std::size_t slash = line.substr(0, colon).find('/');
  return slash == std::string_view::npos ? "" : std::string(line.substr(slash + 1, colon - slash - 1));
}

// The profiles by the choice that their specs name.
std::multimap<std::string, std::string, std::less<>> profilesByChoice(const ATPPD& ppd) {
  std::multimap<std::string, std::string, std::less<>> profiles;
  for (const auto& attribute : ppd.attributesForName(PPDKeyword::profile)) {
    const std::string spec(Text::orNull(attribute->spec()));
    const auto parts = Text::split(spec, std::string_view("."));
    if (parts.size() != 3) continue;
    profiles.emplace(parts[1], fmt::format("{}..{} {} {}", parts[0], parts[2], Text::orNull(attribute->text()),
                                           Text::orNull(attribute->value())));
  }
  return profiles;
}

std::string propertiesOf(const std::string& choice, const ATPPD& ppd) {
  const auto found =
      ppd.attributeForName(PPDKeyword::mediaProperties, fmt::format("{}.{}", PPDKeyword::mediaOption, choice));
  return found == nullptr ? "" : std::string(Text::orNull(found->value()));
}

}  // namespace

std::string PPDMedia::Medium::label() const {
  const std::string& shown = name.empty() ? choice : name;
  return ID.empty() ? shown : fmt::format("{} (ID {})", shown, ID);
}

std::string PPDMedia::Medium::IPPName() const {
  constexpr auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
  std::string IPP;
  for (std::size_t index = 0; index < choice.size(); ++index) {
    const bool beginsNumber = index > 0 && isDigit(choice[index]) && !isDigit(choice[index - 1]);
    if (beginsNumber) IPP += '-';
    IPP += Text::foldASCII(choice[index]);
  }
  return IPP;
}

PPDMedia PPDMedia::of(const ATPPD& ppd) {
  PPDMedia result;
  const auto option = ppd.optionForName(PPDKeyword::mediaOption);
  if (option == nullptr) return result;
  result.defaultChoice = option->defaultValue().value_or("");
  const auto added = addedChoices(ppd);
  const auto profiles = profilesByChoice(ppd);
  std::map<std::string, std::size_t> places;  // the lines behind a choice's own are its translations
  for (const auto& choice : option->choices()) {
    const std::string name(Text::orNull(choice->name()));
    const auto [place, isNew] = places.emplace(name, result.media.size());
    if (!isNew) {
      Medium& known = result.media[place->second];
      if (known.name.empty()) known.name = textOf(*choice);
      continue;
    }
    const std::string code(choice->code().value_or(""));
    Medium medium{name, textOf(*choice), "", "", propertiesOf(name, ppd), {}, added.count(name) > 0};
    medium.ID = medium.isCustom ? IDOf(code) : "";
    medium.key = keyOf(medium, code);
    const auto [first, last] = profiles.equal_range(name);
    for (auto each = first; each != last; ++each) medium.profiles.push_back(each->second);
    std::sort(medium.profiles.begin(), medium.profiles.end());
    result.media.push_back(std::move(medium));
  }
  return result;
}

PPDMedia PPDMedia::ofText(std::string_view text) {
  Reading reading;
  ATPPDParser parser;
  parser.setLineNumber(1);
  parser.setDelegate(&reading);
  for (std::size_t start = 0, end = 0; start < text.size(); start = end) {
    end = endOfPiece(text, start);
    const std::string_view piece = text.substr(start, end - start);
    if (!Text::isValidUTF8(piece) || !parser.recognizeString(piece)) break;
  }
  return of(reading.ppd);
}

const PPDMedia::Medium* PPDMedia::withChoice(std::string_view choice) const {
  const auto found =
      std::find_if(media.begin(), media.end(), [=](const Medium& each) { return each.choice == choice; });
  return found == media.end() ? nullptr : &*found;
}

const PPDMedia::Medium* PPDMedia::withKey(std::string_view key, std::string_view name) const {
  const Medium* found = nullptr;
  for (const Medium& medium : media) {
    if (medium.key != key) continue;
    if (found == nullptr || (medium.name == name && found->name != name)) found = &medium;
  }
  return found;
}
