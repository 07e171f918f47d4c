// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <limits>

#include "base/ATException.h"

/// The end of a run that asks for more work than its budget. Nobody but `main` catches it.
class BudgetExceeded : public ATException {
 public:
  BudgetExceeded() : ATException("ATBudgetException", "more is asked for than any real device has a use for") {}
};

/// Bounds what a PPD and a device can make one run do, in time and in memory. The document and its lists spend it:
/// where a line comes in, where a statement is added or changed, where a look-up or a loop comes to an object, where a
/// long value or a list of languages is given out. So updaters need not know of it.
///
/// No real queue comes near the bounds: of 2,000 media with 3 profiles in 20 languages, set up once more, each is at
/// least ten times what is spent (tests/updaters/SpentBudgetTest.cpp). What tests/fault/run_hostile.py does to reach
/// the bounds takes less than 10 s and 1 GB.
class Budget {
 public:
  struct Amounts {
    std::size_t lines;       ///< lines of the PPD
    std::size_t options;     ///< options and languages, which cost more than other lines
    std::size_t statements;  ///< statements and choices added or changed
    std::size_t bytes;       ///< the text of these
    std::size_t visits;      ///< objects that look-ups and loops came to
  };
  static constexpr std::size_t kBytesOfAVisit = 64;
  static constexpr std::size_t kAny = std::numeric_limits<std::size_t>::max();
  static constexpr Amounts kUnlimited = {kAny, kAny, kAny, kAny, kAny};
  static constexpr Amounts kAll = {4'000'000, 100'000, 1'500'000, 160U << 20U, 17'500'000};

  /// Each takes out of the budget what it says. They throw BudgetExceeded when there is not that much any more.
  void readLine() { spend(left_.lines, 1); }
  void addOptions(std::size_t count) {
    spend(left_.options, count);
    optionsAdded_ += count;
  }
  void changeStatement(std::size_t bytes) {
    spend(left_.statements, 1);
    spend(left_.bytes, bytes);
  }
  /// Throws BudgetExceeded when there are not so many bytes any more, before somebody makes them.
  void needBytes(std::size_t bytes) const {
    if (bytes > left_.bytes) throw BudgetExceeded();
  }
  /// Text that is looked through costs like the objects that are come to in that time.
  void visitText(std::size_t bytes) { visit(bytes / kBytesOfAVisit); }
  void visit(std::size_t count = 1) { spend(left_.visits, count); }

  /// How many options and languages there are: a number that only grows, and changes with the options of a document.
  std::size_t optionsAdded() const { return optionsAdded_; }

  /// What is left of each.
  const Amounts& left() const { return left_; }
  /// Puts so much in the place of what is left: what somebody who only watches a run asks is not the run's.
  void restore(const Amounts& left) { left_ = left; }

 private:
  static void spend(std::size_t& left, std::size_t amount) {
    if (amount > left) throw BudgetExceeded();
    left -= amount;
  }

  Amounts left_ = kAll;
  std::size_t optionsAdded_ = 0;
};
