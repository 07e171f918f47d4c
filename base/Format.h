// SPDX-License-Identifier: MIT
#pragma once

#include <fmt/format.h>

#include <optional>
#include <string>

#include "base/Text.h"

/// An absent text is formatted as "(null)", in statements and in messages alike.
template <>
struct fmt::formatter<std::optional<std::string>> : fmt::formatter<std::string_view> {
  template <class Context>
  auto format(const std::optional<std::string>& text, Context& context) const {
    return fmt::formatter<std::string_view>::format(Text::orNull(text), context);
  }
};
