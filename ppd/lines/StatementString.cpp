// SPDX-License-Identifier: MIT
#include "ppd/lines/StatementString.h"

#include <algorithm>

StatementString::StatementString(std::string_view text) : size_(text.size()) {
  if (text.empty()) return;
  const std::shared_ptr<char[]> bytes(new char[text.size()]);
  std::copy(text.begin(), text.end(), bytes.get());
  bytes_ = {bytes, bytes.get()};
}
