// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "updaters/UpdateObserver.h"

/// Words for people, shared by the writers of reports.
namespace Wording {

/// The text with control characters and what is no UTF-8 written visibly ("\n", "\x80"), so that neither a terminal nor
/// a layout is at the mercy of a device's text.
std::string visible(std::string_view text);

/// The lines of a statement, each visible.
std::vector<std::string> visibleLines(std::string_view statement);

/// Why a custom medium did not become a choice.
std::string of(MediumProblem problem);

/// What keeps a profile out of a statement.
std::string of(ProfileProblem problem, const std::optional<std::string>& url);

/// What is said in front of a warning of what the PPD had before the run.
inline constexpr const char* inInput = "In the PPD already: ";

/// What the parser expected where it met the error with this code.
std::string expectedAtError(int code);

}  // namespace Wording
