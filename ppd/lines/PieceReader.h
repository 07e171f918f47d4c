// SPDX-License-Identifier: MIT
#pragma once

#include <cups/file.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "ppd/lines/StatementString.h"

/// Reads a file in the pieces in which the CUPS line reader gives it (`cupsFileGetLine` with 256 bytes): up to 254
/// bytes, ended behind LF, CR or CR LF, line end kept; gzip is unpacked. A longer line comes in several pieces, and
/// whatever ends the bytes first (a read error, too) is the end of the file. The bytes may be anything.
///
/// CUPS reads blocks, which are cut here: its line reader takes each byte by itself, which costs half a run
/// more. Tests compare the two.
class PieceReader {
 public:
  struct CloseFile {
    void operator()(cups_file_t* file) const { cupsFileClose(file); }
  };
  using File = std::unique_ptr<cups_file_t, CloseFile>;

  /// Opens the file for reading; null when CUPS cannot.
  static File open(const std::string& path) { return File(cupsFileOpen(path.c_str(), "r")); }

  /// The next piece, or absent at the end. Pieces share blocks of memory, and the file is read ahead: a reader reads
  /// one file at a time, and another one from where that stands.
  std::optional<StatementString> next(cups_file_t* file);

 private:
  void fill(cups_file_t* file);

  cups_file_t* file_ = nullptr;  // not owned
  std::shared_ptr<char[]> block_;
  std::size_t taken_ = 0;  // bytes of the block that are in pieces
  std::size_t read_ = 0;   // bytes of the block that are there
  bool isAtEnd_ = false;   // behind these, nothing could be read
};
