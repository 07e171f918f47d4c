// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "ppd/lines/StatementString.h"
#include "ppd/lists/Budget.h"

/// Composes lines one after another. They share one block of memory: a medium has dozens of lines that stand and go
/// together, and an allocation for each would cost more than the text.
class LineComposer {
 public:
  /// A text of the device times a PPD's languages may come to anything; no real medium's come to a thousandth.
  static constexpr std::size_t kMostBytes = std::size_t{64} << 20;

  /// Composes a line of the pieces and returns it; valid until the next one. It has the line end that they give it.
  /// Throws BudgetExceeded when all lines would have more than kMostBytes.
  template <class... Pieces>
  std::string_view add(const Pieces&... pieces) {
    const std::size_t start = text_.size();
    if ((std::string_view(pieces).size() + ... + start) > kMostBytes) throw BudgetExceeded();
    (text_.append(pieces), ...);
    ends_.push_back(text_.size());
    return std::string_view(text_).substr(start);
  }

  /// The lines so far, in order.
  StatementStrings lines() const {
    StatementStrings lines;
    lines.reserve(ends_.size());
    const StatementString all(text_);
    std::size_t start = 0;
    for (const std::size_t end : ends_) {
      lines.push_back(all.part(start, end - start));
      start = end;
    }
    return lines;
  }

 private:
  std::string text_;
  std::vector<std::size_t> ends_;
};
