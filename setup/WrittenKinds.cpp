// SPDX-License-Identifier: MIT
#include "setup/WrittenKinds.h"

#include <algorithm>
#include <array>

#include "explain/watch/DeviceText.h"
#include "updaters/PPDKeywords.h"

namespace {

constexpr std::array<std::string_view, 7> kKeywords = {
    PPDKeyword::addedMedia, PPDKeyword::mediaListVersion, PPDKeyword::mediaProperties,
    PPDKeyword::profile,    "QZVorantisFamily",           "QZPDLCommand",
    "VorantisSetup"};

bool isLanguage(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') || character == '_' ||
           character == '-';
  });
}

}  // namespace

bool WrittenKinds::isWritten(std::string_view keyword) {
  if (std::find(kKeywords.begin(), kKeywords.end(), keyword) != kKeywords.end()) return true;
  const std::size_t dot = std::min(keyword.find('.'), keyword.size());
  const std::string_view behindLanguage = keyword.substr(std::min(dot + 1, keyword.size()));
  return isLanguage(keyword.substr(0, dot)) &&
         (behindLanguage == PPDKeyword::profile || behindLanguage == PPDKeyword::mediaOption);
}

bool WrittenKinds::isCustomChoice(std::string_view option, std::string_view choice) {
  return option == PPDKeyword::mediaOption && DeviceText::isCustomChoice(choice);
}
