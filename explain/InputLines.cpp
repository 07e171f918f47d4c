// SPDX-License-Identifier: MIT
#include "explain/InputLines.h"

#include "base/Text.h"
#include "ppd/lines/PieceReader.h"

namespace {

std::string_view withoutLineEnd(std::string_view line) {
  while (line.ends_with('\n') || line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

}  // namespace

InputLines InputLines::ofFile(const std::string& path) {
  std::vector<std::string> pieces;
  if (const auto file = PieceReader::open(path)) {
    PieceReader reader;
    while (const auto piece = reader.next(file.get())) pieces.emplace_back(piece->view());
  }
  return InputLines(std::move(pieces));
}

std::optional<std::string> InputLines::line(std::size_t number) const {
  if (number == 0 || number > pieces_.size()) return std::nullopt;
  return std::string(withoutLineEnd(pieces_[number - 1]));
}

std::optional<std::size_t> InputLines::firstThatIsNotUTF8() const {
  for (std::size_t index = 0; index < pieces_.size(); ++index) {
    if (!Text::isValidUTF8(pieces_[index])) return index + 1;
  }
  return std::nullopt;
}

std::vector<std::size_t> InputLines::split() const {
  std::vector<std::size_t> numbers;
  for (std::size_t index = 0; index + 1 < pieces_.size(); ++index) {
    if (withoutLineEnd(pieces_[index]).size() == pieces_[index].size()) numbers.push_back(index + 1);
  }
  return numbers;
}

std::string InputLines::text() const {
  std::string text;
  for (const std::string& piece : pieces_) {
    if (!Text::isValidUTF8(piece)) break;
    text += piece;
  }
  return text;
}
