// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <utility>

#include "ppd/StatementString.h"

/// The lines of one object. Nearly every object has one line, which is held in place; an object of more lines has a
/// list.
class LineList {
 public:
  std::size_t size() const { return all_ ? all_->size() : hasOne_; }
  bool empty() const { return size() == 0; }
  /// The list must not be empty, `index` below its size.
  const StatementString& front() const { return (*this)[0]; }
  const StatementString& operator[](std::size_t index) const { return all_ ? (*all_)[index] : one_; }

  void push_back(StatementString line) {
    if (!all_ && !hasOne_) {
      one_ = std::move(line);
      hasOne_ = true;
      return;
    }
    if (!all_) all_ = std::make_unique<StatementStrings>(1, one_);
    all_->push_back(std::move(line));
  }

 private:
  StatementString one_;
  std::unique_ptr<StatementStrings> all_;
  bool hasOne_ = false;
};
