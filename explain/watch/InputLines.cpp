// SPDX-License-Identifier: MIT
#include "explain/watch/InputLines.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <memory>

#include "base/Text.h"
#include "ppd/lines/PieceReader.h"

namespace {

std::string_view withoutLineEnd(std::string_view line) {
  while (line.ends_with('\n') || line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

// The length that the trailer of a gzip file gives, modulo 2^32 (RFC 1952, section 2.3.1); absent when it is no gzip.
std::optional<std::uint64_t> unpackedSize(const std::string& path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
  unsigned char magic[2];
  unsigned char trailer[4];
  if (file == nullptr || std::fread(magic, 1, 2, file.get()) != 2 || magic[0] != 0x1F || magic[1] != 0x8B) {
    return std::nullopt;
  }
  if (std::fseek(file.get(), -4, SEEK_END) != 0 || std::fread(trailer, 1, 4, file.get()) != 4) return std::nullopt;
  std::uint64_t size = 0;
  for (int index = 3; index >= 0; --index) size = size << 8 | trailer[index];
  return size;
}

}  // namespace

InputLines InputLines::ofFile(const std::string& path) {
  InputLines lines;
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return lines;
  lines.isDirectory_ = S_ISDIR(status.st_mode);
  if (!S_ISREG(status.st_mode)) return lines;  // what is read of a pipe is gone
  lines.read(path);
  lines.size_ = unpackedSize(path);
  lines.isGzip_ = lines.size_.has_value();
  if (!lines.isGzip_) lines.size_ = static_cast<std::uint64_t>(status.st_size);
  return lines;
}

void InputLines::read(const std::string& path) {
  const auto file = PieceReader::open(path);
  if (file == nullptr) return;
  PieceReader reader;
  errno = 0;
  while (const auto piece = reader.next(file.get())) {
    if (!invalid_ && !Text::isValidUTF8(piece->view())) invalid_ = ends_.size();
    bytes_ += piece->view();
    ends_.push_back(bytes_.size());
  }
  isDamaged_ = errno == EIO;  // what libcups gives on damaged gzip looks like the end otherwise
}

std::string_view InputLines::piece(std::size_t index) const {
  const std::size_t start = index == 0 ? 0 : ends_[index - 1];
  return std::string_view(bytes_).substr(start, ends_[index] - start);
}

std::optional<std::string> InputLines::line(std::size_t number) const {
  if (number == 0 || number > ends_.size()) return std::nullopt;
  return std::string(withoutLineEnd(piece(number - 1)));
}

std::optional<std::size_t> InputLines::firstThatIsNotUTF8() const {
  return invalid_ ? std::optional(*invalid_ + 1) : std::nullopt;
}

std::vector<std::size_t> InputLines::split() const {
  std::vector<std::size_t> numbers;
  for (std::size_t index = 0; index + 1 < ends_.size(); ++index) {
    if (withoutLineEnd(piece(index)).size() == piece(index).size()) numbers.push_back(index + 1);
  }
  return numbers;
}

std::string_view InputLines::text() const {
  const bool isWhole = !invalid_;
  return isWhole ? std::string_view(bytes_)
                 : std::string_view(bytes_).substr(0, *invalid_ == 0 ? 0 : ends_[*invalid_ - 1]);
}
