// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "base/ATException.h"

/// The end of a run that asks for more work than its budget. Nobody but `main` catches it.
class BudgetExceeded : public ATException {
 public:
  BudgetExceeded() : ATException("ATBudgetException", "more is asked for than any real device has a use for") {}
};

/// Bounds what a device and a PPD can make one run do. A device that answers with millions of profiles, or one whose
/// every medium inherits a megabyte, would stop a print server; no real one comes near the bounds (2,000 media with 3
/// profiles in 20 languages take a sixth of the statements). They are set when the build is configured.
class Budget {
 public:
  static constexpr std::size_t kStatements = AT_BUDGET_STATEMENTS;
  static constexpr std::size_t kBytes = AT_BUDGET_BYTES;

  /// Takes so many statements, with so many bytes of text in all, out of the budget. Throws BudgetExceeded when it
  /// does not hold that much any more.
  void spend(std::size_t statements, std::size_t bytes) {
    if (statements > statements_ || bytes > bytes_) throw BudgetExceeded();
    statements_ -= statements;
    bytes_ -= bytes;
  }

 private:
  std::size_t statements_ = kStatements;
  std::size_t bytes_ = kBytes;
};
