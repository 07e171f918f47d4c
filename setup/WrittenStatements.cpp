// SPDX-License-Identifier: MIT
#include "setup/WrittenStatements.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/Text.h"
#include "setup/WrittenKinds.h"
#include "updaters/PPDKeywords.h"

namespace {

constexpr std::size_t kLongestLine = 255;  // that libcups reads
constexpr std::string_view kEnd = "*End\n";

bool isControl(char character) {
  return (static_cast<unsigned char>(character) < ' ' && character != '\t') || character == '\x7F';
}

// Whether libcups takes the line for one statement, and neither for two nor for the beginning of one: its quotes, of
// which those behind the first colon count, are closed, and it holds nothing that ends a line.
bool isOneLine(std::string_view line) {
  const auto behindColon = line.substr(std::min(line.find(':'), line.size()));
  const auto quotes = std::count(behindColon.begin(), behindColon.end(), '"');
  return line.size() <= kLongestLine && line.starts_with('*') && (quotes == 0 || quotes == 2) &&
         std::none_of(line.begin(), line.end(), isControl);
}

// The same of a statement that may have several lines: the value is open until the last, and no other line begins like
// a statement but for the *End behind it.
bool isOneStatement(std::string_view text) {
  if (!text.ends_with('\n')) return false;
  if (text.ends_with(kEnd)) text.remove_suffix(kEnd.size());
  while (text.ends_with('\n')) text.remove_suffix(1);
  std::string joined;
  for (const std::string_view line : Text::split(text, "\n")) {
    if (line.size() > kLongestLine || (!joined.empty() && line.starts_with('*'))) return false;
    joined += line;
  }
  const auto quotes = std::count(joined.begin(), joined.end(), '"');
  const bool isClosed = joined.ends_with('"') || text.find('\n') == std::string_view::npos;
  return joined.starts_with('*') && (quotes == 0 || quotes == 2) && isClosed &&
         std::none_of(joined.begin(), joined.end(), isControl);
}

// The name without the language in front, and the language.
std::pair<std::string_view, std::string_view> split(std::string_view name) {
  const std::size_t dot = name.find('.');
  if (dot == std::string_view::npos) return {"", name};
  return {name.substr(0, dot), name.substr(dot + 1)};
}

std::string_view nameIn(std::string_view text) {
  return Text::orNull(ATPPDAttribute::nameFromAttributeString(text.substr(0, text.find('\n'))));
}

}  // namespace

WrittenStatements::WrittenStatements(const ATPPD& base, const Report& report) {
  languages_ = {"en"};
  if (const auto* languages = base.supportedLocalizations()) languages_.insert(languages->begin(), languages->end());
  for (const char* name : {PPDKeyword::profile, PPDKeyword::factoryProfile}) {
    for (const auto& profile : base.attributesForName(name)) specs_.emplace(Text::orNull(profile->spec()));
  }
  for (const auto& properties : base.attributesForName(PPDKeyword::mediaProperties)) {
    properties_.emplace(Text::orNull(properties->spec()));
  }
  for (const Report::Updater& updater : report.updaters) {
    specs_.insert(updater.restoredProfiles.begin(), updater.restoredProfiles.end());
    for (const Report::MediumOutcome& medium : updater.media) {
      for (const Report::Profile& profile : medium.profiles) {
        if (profile.outcome != Report::ProfileOutcome::skipped && profile.spec) specs_.insert(*profile.spec);
      }
      if (!medium.added || !medium.choiceName) continue;
      choices_.insert(*medium.choiceName);
      properties_.insert(std::string(PPDKeyword::mediaOption) + "." + *medium.choiceName);
    }
  }
}

bool WrittenStatements::mayBe(std::string_view place, std::string_view text) const {
  if (text == "\n") return true;  // behind *End
  if (place.empty()) return isAttribute(text);
  const bool isInMediaOption = Text::contains(place, "*OpenUI") && Text::contains(place, PPDKeyword::mediaOption);
  return isInMediaOption && text.ends_with('\n') && isChoice(text.substr(0, text.size() - 1));
}

// `*MediaType Custom1/text: "code"`, or `*de.MediaType Custom1/text: ""`.
bool WrittenStatements::isChoice(std::string_view line) const {
  const auto [language, name] = split(nameIn(line));
  if (!isOneLine(line) || name != PPDKeyword::mediaOption || (!language.empty() && !isLanguage(language))) return false;
  const std::string_view choice = line.substr(std::min(line.find(' ') + 1, line.size()));
  return choices_.count(choice.substr(0, choice.find('/'))) != 0;
}

bool WrittenStatements::isAttribute(std::string_view text) const {
  const std::string_view whole = nameIn(text);
  if (!WrittenKinds::isWritten(whole) || !isOneStatement(text)) return false;
  const auto [language, name] = split(whole);
  if (!language.empty() && (!isLanguage(language) || name != PPDKeyword::profile)) return false;
  const auto statement = ATPPDAttribute::attributeWithString(text.substr(0, text.find('\n') + 1));
  const auto spec = Text::orNull(statement->spec());
  if (name == PPDKeyword::profile) return isOneLine(text.substr(0, text.size() - 1)) && specs_.count(spec) != 0;
  if (name == PPDKeyword::mediaProperties) return properties_.count(spec) != 0;
  if (name == PPDKeyword::mediaListVersion) return isOneLine(text.substr(0, text.size() - 1));
  return true;  // of no text of the device
}

bool WrittenStatements::mayGo(std::string_view text) const {
  const std::string_view name = nameIn(text);
  return WrittenKinds::isWritten(name) || name == PPDKeyword::mediaOption;
}
