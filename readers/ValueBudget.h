// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "base/ATException.h"

/// Bounds what the device-model library gives one run, all its answers together: kSizeOfValue for each value and each
/// key, and the bytes of their texts. 2,000 media with 3 profiles are a fortieth of it. Only a library gone wrong has
/// more (lists that hold one another so often that they cannot be written out, say), or a PPD that has the same
/// media asked for again and again.
class ValueBudget {
 public:
  static constexpr std::size_t kAll = std::size_t{96} << 20;
  static constexpr std::size_t kSizeOfValue = 16;

  /// Throws ATException, a failure of the library, when there is not so much left.
  void spend(std::size_t size) {
    if (size > left_) throw ATException::libraryFailure("the device-model library gave more than can be right");
    left_ -= size;
  }
  void spendValue(std::size_t bytesOfText = 0) { spend(kSizeOfValue + bytesOfText); }

 private:
  std::size_t left_ = kAll;
};
