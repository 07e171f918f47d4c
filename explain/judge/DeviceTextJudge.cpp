// SPDX-License-Identifier: MIT
#include "explain/judge/DeviceTextJudge.h"

namespace {

using DeviceTextJudge::Place;

bool hasLineEnd(std::string_view text) {
  return text.find_first_of("\r\n") != std::string_view::npos;
}

bool hasQuoteThatCounts(std::string_view text, Place place) {
  const std::size_t from = place == Place::behindColon ? 0 : text.find(':');
  return from != std::string_view::npos && text.find('"', from) != std::string_view::npos;
}

}  // namespace

void DeviceTextJudge::judge(const char* what, const std::optional<std::string>& text, Place place, Warnings& warnings,
                            const std::optional<AboutMedium>& about) {
  if (!text) return;
  if (hasLineEnd(*text)) warnings.add(WarningCode::deviceLineEnd, {{"what", what}, {"text", *text}}, about);
  if (hasQuoteThatCounts(*text, place)) {
    warnings.add(WarningCode::deviceQuote, {{"what", what}, {"text", *text}}, about);
  }
}

bool DeviceTextJudge::breaksPostScriptString(std::string_view text) {
  int open = 0;
  for (const char character : text) {
    if (character == '\\') return true;
    if (character == '(') ++open;
    if (character == ')' && --open < 0) return true;
  }
  return open != 0;
}
