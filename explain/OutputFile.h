// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// A file that is written as a whole or not at all.
namespace OutputFile {

/// Makes the file at the path (UTF-8) hold the bytes, and returns whether it does. Otherwise what was there, if
/// anything, is still there: a regular file is replaced by a new one beside it, with its owner, group and
/// permissions (it fails when they cannot be kept), and a link that leads somewhere stays a link to what it leads to.
/// What is no regular file, such as a terminal or a pipe, is written to as it is.
bool write(const std::string& path, const std::string& bytes);

}  // namespace OutputFile
