// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A file as the CUPS line reader gives it to the parser, piece by piece, whatever it holds: for what the parser does
/// not hand on, which is the line that it rejects and the bytes at which it stops reading.
class InputLines {
 public:
  /// No pieces when the file cannot be opened or is no regular one: a pipe is left to the tool.
  static InputLines ofFile(const std::string& path);

  /// The piece of this number, counted from 1, without its line end; absent beyond the last.
  std::optional<std::string> line(std::size_t number) const;

  /// The number of the first piece that is not UTF-8, at which reading ends; absent when all are.
  std::optional<std::size_t> firstThatIsNotUTF8() const;

  /// The numbers of the pieces that end without a line end though another one follows: lines that the reader split.
  std::vector<std::size_t> split() const;

  /// The text up to where reading ends.
  std::string_view text() const;

  /// How many pieces there are, and each, counted from 0, with its line end.
  std::size_t count() const { return ends_.size(); }
  std::string_view piece(std::size_t index) const;

  /// Whether libcups found that a gzip file is not what was packed, by its checksum and the like.
  bool isDamaged() const { return isDamaged_; }

  /// All that was read.
  std::string_view bytes() const { return bytes_; }

  /// How many bytes the file has, unpacked when it is gzip; absent when it cannot be told (no regular file).
  const std::optional<std::uint64_t>& size() const { return size_; }
  /// How many bytes the reader gave before it came to what it took for the end.
  std::size_t sizeRead() const { return bytes_.size(); }
  bool isGzip() const { return isGzip_; }
  bool isDirectory() const { return isDirectory_; }

 private:
  void read(const std::string& path);

  std::string bytes_;
  std::vector<std::size_t> ends_;       // of the pieces in `bytes_`
  std::optional<std::size_t> invalid_;  // index of the first piece that is not UTF-8
  std::optional<std::uint64_t> size_;
  bool isGzip_ = false;
  bool isDamaged_ = false;
  bool isDirectory_ = false;
};
