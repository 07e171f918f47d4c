// SPDX-License-Identifier: MIT
#include "ppd/lines/PieceReader.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::size_t kBlock = std::size_t{64} * 1024;
constexpr std::size_t kLongestPiece = 254;  // but for the LF behind a CR that is the last byte

std::size_t sizeOfPiece(std::string_view bytes) {
  const std::string_view longest = bytes.substr(0, kLongestPiece);
  const std::size_t feed = longest.find('\n');
  const std::size_t carriage = longest.substr(0, feed).find('\r');
  if (carriage != std::string_view::npos) return carriage + (bytes.substr(carriage + 1).starts_with('\n') ? 2 : 1);
  return feed == std::string_view::npos ? longest.size() : feed + 1;
}

}  // namespace

std::optional<StatementString> PieceReader::next(cups_file_t* file) {
  if (file != file_) {
    *this = PieceReader();
    file_ = file;
  }
  while (read_ - taken_ <= kLongestPiece && !isAtEnd_) fill(file);
  char* const bytes = block_.get() + taken_;
  const std::size_t size = sizeOfPiece({bytes, read_ - taken_});
  if (size == 0) return std::nullopt;
  taken_ += size;
  return StatementString({block_, bytes}, size);
}

// Reads on in the block, or in a new one that begins with what is left of it.
void PieceReader::fill(cups_file_t* file) {
  if (block_ == nullptr || read_ == kBlock) {
    const std::shared_ptr<char[]> block(new char[kBlock]);
    std::copy(block_.get() + taken_, block_.get() + read_, block.get());
    block_ = block;
    read_ -= taken_;
    taken_ = 0;
  }
  const ssize_t size = cupsFileRead(file, block_.get() + read_, kBlock - read_);
  isAtEnd_ = size < static_cast<ssize_t>(kBlock - read_);
  if (size > 0) read_ += static_cast<std::size_t>(size);
}
