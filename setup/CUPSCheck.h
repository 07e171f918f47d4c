// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

/// Why CUPS would not load the PPD, in its own words; absent when it would (libcups' ppdOpen, not strict, as the
/// scheduler calls it).
std::optional<std::string> whyCUPSRefuses(const std::string& content);
