// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

/// Whether the text holds the word somewhere where it is not a part of a longer one: "Custom1" is not in "Custom12",
/// nor "10" in "1001". Letters and digits of ASCII make words.
bool holdsWord(std::string_view text, std::string_view word);
