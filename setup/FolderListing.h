// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// What is in a folder.
namespace FolderListing {

/// The names of the files that end in one of these ways, sorted; hidden ones are none. A folder that is not there has
/// none. `warnings` tells, each in one line, of a folder that cannot be read to its end, and of what has such a name
/// and is no file. A folder or a link that leads nowhere is given like a file: reading it tells what it is.
std::vector<std::string> filesIn(const std::string& folder, const std::vector<std::string_view>& endings,
                                 std::vector<std::string>& warnings);

/// What is another as soon as a file was written, replaced or removed: for comparison only.
std::string stampOf(const std::string& path);

}  // namespace FolderListing
