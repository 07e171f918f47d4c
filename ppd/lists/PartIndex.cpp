// SPDX-License-Identifier: MIT
#include "ppd/lists/PartIndex.h"

#include <cstddef>

namespace {

constexpr std::size_t kSize = 3;

std::uint32_t threeBytes(std::string_view text, std::size_t position) {
  const auto byte = [=](std::size_t index) {
    return std::uint32_t{static_cast<unsigned char>(text[position + index])};
  };
  return byte(0) << 16 | byte(1) << 8 | byte(2);
}

}  // namespace

void PartIndex::add(std::string_view text, Number number) {
  all_.push_back(number);
  for (std::size_t position = 0; position + kSize <= text.size(); ++position) {
    Numbers& numbers = byThreeBytes_[threeBytes(text, position)];
    if (numbers.empty() || numbers.back() != number) numbers.push_back(number);
  }
}

const PartIndex::Numbers& PartIndex::candidates(std::string_view part) const {
  static const Numbers none;
  const Numbers* fewest = &all_;
  for (std::size_t position = 0; position + kSize <= part.size(); ++position) {
    const auto found = byThreeBytes_.find(threeBytes(part, position));
    if (found == byThreeBytes_.end()) return none;
    if (found->second.size() < fewest->size()) fewest = &found->second;
  }
  return *fewest;
}
