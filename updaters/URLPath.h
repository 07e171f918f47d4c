// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The file system path that a URL string stands for. A string that begins with "/" is a plain path and is used
/// unchanged, whatever it holds. Any other string is a URI reference (RFC 3986), parsed strictly; the result is its
/// path component, percent-decoded. Absent when it does not parse, and when the path is empty or not UTF-8.
std::optional<std::string> pathOfURL(std::string_view url);
