// SPDX-License-Identifier: MIT
#include "explain/report/Sentences.h"

#include <charconv>
#include <optional>
#include <string_view>

#include "explain/report/SentenceTable.h"
#include "explain/report/Wording.h"

namespace {

// What stands between two braces.
struct Slot {
  std::string_view name;
  std::string_view limit;  // bytes; empty: none
  std::string_view noun;   // what is counted; empty: nothing
};

Slot slotOf(std::string_view inBraces) {
  const std::size_t end = std::min(inBraces.find_first_of(": "), inBraces.size());
  Slot slot{inBraces.substr(0, end), "", ""};
  if (end == inBraces.size()) return slot;
  (inBraces[end] == ':' ? slot.limit : slot.noun) = inBraces.substr(end + 1);
  return slot;
}

std::string shown(const std::string& text, std::string_view limit) {
  std::size_t longest = text.size();
  std::from_chars(limit.data(), limit.data() + limit.size(), longest);
  return Wording::visible(Wording::cutTo(longest, text)) + (text.size() > longest ? "…" : "");
}

// Absent when the warning has no such fact.
std::optional<std::string> filledIn(const Slot& slot, const Warning& warning) {
  if (slot.name == "medium") return warning.about ? std::optional(Wording::of(*warning.about)) : std::nullopt;
  const Warning::Fact::Value* value = warning.fact(slot.name);
  if (value == nullptr) return std::nullopt;
  if (const auto* text = std::get_if<std::string>(value)) return shown(*text, slot.limit);
  const auto* const given = std::get_if<std::uint64_t>(value);
  if (given == nullptr) return std::nullopt;
  const auto number = static_cast<std::size_t>(*given);
  return slot.noun.empty() ? std::to_string(number) : Wording::counted(number, slot.noun);
}

std::optional<std::string> filledIn(std::string_view pattern, const Warning& warning) {
  std::string sentence;
  for (std::size_t open; (open = pattern.find('{')) != std::string_view::npos;) {
    const std::size_t close = pattern.find('}', open);
    const auto part = filledIn(slotOf(pattern.substr(open + 1, close - open - 1)), warning);
    if (!part) return std::nullopt;
    sentence.append(pattern.substr(0, open)).append(*part);
    pattern.remove_prefix(close + 1);
  }
  return sentence.append(pattern);
}

}  // namespace

const Warning::Fact::Value* Warning::fact(std::string_view name) const {
  for (const Fact& each : facts) {
    if (each.name == name && each.value.index() != 0) return &each.value;
  }
  return nullptr;
}

std::string Sentences::of(const Warning& warning) {
  for (const SentencePattern& pattern : kSentencePatterns) {
    if (pattern.code != warning.code) continue;
    if (auto sentence = filledIn(pattern.text, warning)) return std::move(*sentence);
  }
  return kindOf(warning.code).title;
}

std::string Sentences::marked(const Warning& warning) {
  return (warning.inInput ? "In the PPD already: " : "") + of(warning);
}
