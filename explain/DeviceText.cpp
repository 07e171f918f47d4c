// SPDX-License-Identifier: MIT
#include "explain/DeviceText.h"

#include <fmt/format.h>

#include "base/Text.h"
#include "explain/Wording.h"
#include "readers/MediaKeys.h"

namespace {

bool hasLineEnd(std::string_view text) {
  return text.find_first_of("\r\n") != std::string_view::npos;
}

bool hasQuoteThatCounts(std::string_view text, DeviceText::Place place) {
  const std::size_t from = place == DeviceText::Place::behindColon ? 0 : text.find(':');
  return from != std::string_view::npos && text.find('"', from) != std::string_view::npos;
}

}  // namespace

Report::OptionalText DeviceText::of(const DeviceValue& value) {
  return value.isAbsent() ? std::nullopt : Report::OptionalText(value.description());
}

Report::OptionalText DeviceText::of(const DeviceValue& record, const char* key) {
  return record.map() == nullptr ? std::nullopt : of(record.valueForKey(key));
}

Report::Medium DeviceText::mediumOf(const DeviceValue& record) {
  Report::Medium medium;
  medium.name = of(record, MediaKey::name);
  medium.ID = of(record, MediaKey::ID);
  medium.categoryName = of(record, MediaKey::categoryName);
  medium.categoryID = of(record, MediaKey::categoryID);
  medium.parentID = of(record, MediaKey::parentID);
  medium.gloss = of(record, MediaKey::defaultGloss);
  const auto profiles = record.map() == nullptr ? nullptr : record.valueForKey(MediaKey::profiles).list();
  medium.profiles = profiles == nullptr ? 0 : profiles->size();
  return medium;
}

bool DeviceText::isCustomChoice(std::string_view name) {
  static constexpr std::string_view kBeginning = "Custom";
  return name.starts_with(kBeginning) && name.size() > kBeginning.size() &&
         name.find_first_not_of("0123456789abcdef", kBeginning.size()) == std::string_view::npos;
}

// Letter case, and what is no letter, may differ.
bool DeviceText::isNearlyCustomCategory(std::string_view category) {
  std::string letters;
  for (const char character : category) {
    const char folded = Text::foldASCII(character);
    if (folded >= 'a' && folded <= 'z') letters += folded;
  }
  return letters == "custom" || letters == "qzextendedmedia";
}

std::vector<std::pair<const char*, std::string>> DeviceText::warningsOf(const char* what,
                                                                        const Report::OptionalText& text, Place place) {
  std::vector<std::pair<const char*, std::string>> warnings;
  if (text && hasLineEnd(*text)) {
    warnings.emplace_back(
        "device-line-end",
        fmt::format("The {} {} of the device carries a line end into the PPD; CUPS may refuse the whole "
                    "file for what follows it, or take it for a statement.",
                    what, Wording::quoted(text)));
  }
  if (text && hasQuoteThatCounts(*text, place)) {
    warnings.emplace_back(
        "device-quote",
        fmt::format("The {} {} of the device carries a quote into the PPD; it ends a value early, or opens "
                    "one that swallows the statements behind it.",
                    what, Wording::quoted(text)));
  }
  return warnings;
}

bool DeviceText::breaksPostScriptString(std::string_view text) {
  int open = 0;
  for (const char character : text) {
    if (character == '\\') return true;
    if (character == '(') ++open;
    if (character == ')' && --open < 0) return true;
  }
  return open != 0;
}
