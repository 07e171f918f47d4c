// SPDX-License-Identifier: MIT
#pragma once

#include <sys/stat.h>

#include <string>

#include "explain/watch/MemoryFile.h"

/// A regular file whose bytes are read once, so that who judges it and who uses it see the same.
class InputFile {
 public:
  /// Reads the file. What is no regular file (a pipe, which can be read once; a directory; nothing), or cannot be
  /// opened, is left to who uses it, as is everything where there are no files in memory.
  explicit InputFile(const std::string& path);
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile();

  /// What to open for the bytes: a file in memory, or the path itself.
  const std::string& path() const { return path_; }

  /// The bytes; empty when what is there is no regular file.
  std::string bytes() const;

  /// Why the bytes are not those of one whole file, for people: an error while reading, or a change of the file since
  /// it was opened, as by somebody who is copying over it. Empty when they are. A new file in its place is no change.
  std::string problem() const;

 private:
  void read();
  bool hasChanged() const;

  std::string path_;
  int descriptor_ = -1;      // negative when nothing was read
  struct stat opened_ = {};  // as it was then
  std::string error_;
  MemoryFile bytes_;
};
