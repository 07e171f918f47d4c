// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

/// Bytes in a file that only this process has, for code that reads files by their paths. Nothing is written to a disk.
/// Linux only; elsewhere there is none.
class MemoryFile {
 public:
  MemoryFile();
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile();

  /// Whether there is such a file. Without it nothing is appended, and there is no path.
  bool isThere() const { return descriptor_ >= 0; }
  /// Whether all of it was written; otherwise there is no memory.
  bool append(std::string_view bytes);
  /// All that was appended.
  std::string bytes() const;
  /// Each opening of it begins at the first byte. Valid as long as this object, in this process.
  std::string path() const;

 private:
  int descriptor_;
};
