// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

/// The kinds of statements that updaters write, by their keywords: all that a setup may add to a base PPD or take from
/// it.
namespace WrittenKinds {

/// Whether statements of this keyword, perhaps with a language in front (`de.cupsICCProfile`), are written for media,
/// for the commands of the printer's language, or by a setup about itself. None of them is a command or a filter to
/// CUPS.
bool isWritten(std::string_view keyword);

/// Whether this is a choice of a custom medium.
bool isCustomChoice(std::string_view option, std::string_view choice);

}  // namespace WrittenKinds
