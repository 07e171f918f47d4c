// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

/// The codes of all warnings; docs/explain.md says what each means.
namespace WarningCodes {

/// The gravest first, which is the order in reports: why nothing was done, what was not read, what was lost, what is
/// left from before, what a text of the device breaks, what CUPS will make of it.
inline constexpr std::array<std::string_view, 61> kInOrder = {
    "arguments-swapped",
    "library-failed",
    "no-library",
    "device-not-asked",
    "no-updaters",
    "updaters-not-quoted",
    "second-updaters",
    "unknown-updater",
    "languages-not-quoted",
    "no-device",
    "no-data-store",
    "no-family",
    "earlier-media-removed",
    "cut-at-non-utf8",
    "reading-stopped",
    "empty-result",
    "line-split",
    "medium-left-out",
    "record-incomplete",
    "category-unknown",
    "id-not-found",
    "id-inside-code",
    "no-gloss-choice",
    "profile-list-failed",
    "profile-skipped",
    "option-outside-group",
    "no-media-option",
    "choice-not-written",
    "name-not-shown",
    "profile-removed-for-another",
    "factory-medium-removed",
    "default-not-there",
    "medium-twice",
    "earlier-setup",
    "left-by-earlier-setup",
    "choice-twice",
    "device-line-end",
    "device-quote",
    "postscript-string",
    "profile-leaves-folder",
    "profile-elsewhere",
    "profile-missing",
    "profile-no-file",
    "profile-permissions",
    "profile-not-readable",
    "profile-no-icc",
    "spec-parts",
    "byte-order-mark",
    "aplworkset",
    "line-too-long",
    "keyword-too-long",
    "keyword-characters",
    "text-characters",
    "zero-byte",
    "stray-line",
    "swallowed",
    "unclosed-quote",
    "text-too-long",
    "colon-in-text",
    "hex-in-text",
    "profile-collision",
};

/// The place of a code in that order.
constexpr std::size_t rankOf(std::string_view code) {
  return static_cast<std::size_t>(std::find(kInOrder.begin(), kInOrder.end(), code) - kInOrder.begin());
}

}  // namespace WarningCodes
