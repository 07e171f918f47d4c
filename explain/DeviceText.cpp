// SPDX-License-Identifier: MIT
#include "explain/DeviceText.h"

#include <fmt/format.h>

#include "explain/Wording.h"

namespace {

bool hasLineEnd(std::string_view text) {
  return text.find_first_of("\r\n") != std::string_view::npos;
}

bool hasQuoteThatCounts(std::string_view text, DeviceText::Place place) {
  const std::size_t from = place == DeviceText::Place::behindColon ? 0 : text.find(':');
  return from != std::string_view::npos && text.find('"', from) != std::string_view::npos;
}

}  // namespace

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
