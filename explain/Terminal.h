// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

/// Standard output as a person sees it.
namespace Terminal {

/// Whether standard output is a terminal that shows colours, and nobody said NO_COLOR.
bool showsColours();

/// The characters in a line of the terminal; 80 when standard output is none, or does not say.
std::size_t width();

/// Writes the text to standard output as it is, and returns whether it was written.
bool print(const std::string& text);

/// The same, for people: on a terminal through the pager that PAGER names (`less` when it is not set; an
/// empty one or `cat` is none), else as it is. A pager that its user leaves early has
/// got all that its user wanted.
bool show(const std::string& text);

}  // namespace Terminal
