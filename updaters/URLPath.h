// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The file system path that a string of the device or of a PPD stands for. A string without a scheme is a plain path,
/// absolute or relative, and is used unchanged, whatever it holds. One that begins with a scheme (an ASCII letter, then
/// letters, digits, "+", "-" or ".", then ":") is a URI, parsed strictly (RFC 3986); the result is its path component,
/// percent-decoded. Absent when it does not parse, when the path is not UTF-8, and when it is empty.
std::optional<std::string> pathOfURL(std::string_view url);
