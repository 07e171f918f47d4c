// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <utility>

#include "ppd/lines/StatementString.h"

/// The lines of one object. Nearly every object has one line, which is held in place: a list, a second allocation for
/// each line of a PPD, would cost a run 6 % more instructions. An object of more lines has a list.
class LineList {
 public:
  LineList() = default;
  explicit LineList(const StatementString& line) : one_(line) {
    if (line.size() == 0) all_ = std::make_unique<StatementStrings>(1, line);
  }

  std::size_t size() const { return all_ ? all_->size() : one_.size() > 0; }
  bool empty() const { return size() == 0; }
  /// The list must not be empty, `index` below its size.
  const StatementString& front() const { return (*this)[0]; }
  const StatementString& operator[](std::size_t index) const { return all_ ? (*all_)[index] : one_; }

  void push_back(StatementString line) {
    if (empty() && line.size() > 0) {
      one_ = std::move(line);
      return;
    }
    if (!all_) all_ = std::make_unique<StatementStrings>(size(), one_);
    all_->push_back(std::move(line));
  }

 private:
  StatementString one_;  // of no bytes while there is no line, or a list
  std::unique_ptr<StatementStrings> all_;
};
