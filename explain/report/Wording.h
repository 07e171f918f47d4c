// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "explain/report/Report.h"
#include "updaters/UpdateObserver.h"

/// Words for people, shared by the writers of reports.
namespace Wording {

/// The text with ASCII escapes for what must not reach a terminal or a page as it is: control characters ("\n",
/// "\x1b"), characters that change the direction of text or cannot be seen ("\u202e"), and bytes that are no UTF-8
/// ("\xe9").
std::string visible(std::string_view text);

/// The first characters of the text, of so many bytes at most.
std::string cutTo(std::size_t size, std::string_view text);

/// "1 group", "2 groups".
std::string counted(std::size_t count, std::string_view what);

/// The lines of a statement, each visible.
std::vector<std::string> visibleLines(std::string_view statement);

/// The text, visible, between double quotes; "without a name" when there is none.
std::string quoted(const std::optional<std::string>& name);

/// A medium by its name and its ID, as far as the device gives them: `"Canvas" (4711)`.
std::string of(const Report::Medium& medium);
std::string of(const AboutMedium& medium);

/// Why a custom medium did not become a choice.
std::string of(MediumProblem problem);

/// What keeps a profile out of a statement.
std::string of(ProfileProblem problem, const std::optional<std::string>& url);

/// What the parser expected where it met the error with this code.
std::string expectedAtError(int code);

}  // namespace Wording
