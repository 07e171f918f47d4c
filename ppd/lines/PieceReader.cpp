// SPDX-License-Identifier: MIT
#include "ppd/lines/PieceReader.h"

std::optional<StatementString> PieceReader::next(cups_file_t* file) {
  static constexpr std::size_t kLineBufferSize = 256;
  static constexpr std::size_t kBlockSize = std::size_t{64} * 1024;
  if (block_ == nullptr || used_ + kLineBufferSize > kBlockSize) {
    block_.reset(new char[kBlockSize]);
    used_ = 0;
  }
  char* const bytes = block_.get() + used_;
  const std::size_t size = cupsFileGetLine(file, bytes, kLineBufferSize);
  if (size == 0) return std::nullopt;
  used_ += size;
  return StatementString({block_, bytes}, size);
}
