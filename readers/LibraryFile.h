// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The file of a shared object that the dynamic loader has failed to load.
namespace LibraryFile {

/// What keeps it from being used, for people; absent when the loader finds no file of this name. `fileName` is what the
/// loader was asked for, and `loadersWords` a copy of what it said (dlerror(3)).
///
/// Loaders tell in words only, each in its own, so the loader is asked for a file that nobody has, too: only of a
/// missing one does it say the same. Even then the file may be there, in a folder that cannot be read now or made for
/// another processor: some loaders pass over such a file, so the folders that they name are looked into as well.
std::optional<std::string> problem(const char* fileName, std::string_view loadersWords);

}  // namespace LibraryFile
