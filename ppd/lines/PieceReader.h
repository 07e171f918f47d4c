// SPDX-License-Identifier: MIT
#pragma once

#include <cups/file.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "ppd/lines/StatementString.h"

/// Reads a file in the pieces in which the CUPS line reader gives it (`cupsFileGetLine`): up to 254 bytes, ended behind
/// LF, CR or CR LF, line end kept; gzip is unpacked. A longer line comes in several pieces, and whatever ends the
/// bytes (a read error, too) is the end of the file. The bytes may be anything.
class PieceReader {
 public:
  struct CloseFile {
    void operator()(cups_file_t* file) const { cupsFileClose(file); }
  };
  using File = std::unique_ptr<cups_file_t, CloseFile>;

  /// Opens the file for reading; null when CUPS cannot.
  static File open(const std::string& path) { return File(cupsFileOpen(path.c_str(), "r")); }

  /// The next piece, or absent at the end. Pieces share blocks of memory.
  std::optional<StatementString> next(cups_file_t* file);

 private:
  std::shared_ptr<char[]> block_;
  std::size_t used_ = 0;  // bytes of the block
};
