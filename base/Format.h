// SPDX-License-Identifier: MIT
#pragma once

#include <fmt/format.h>

#include <concepts>
#include <optional>
#include <string_view>

#include "base/Text.h"

/// An absent text is formatted as "(null)", in statements and in messages alike.
template <std::convertible_to<std::string_view> String>
struct fmt::formatter<std::optional<String>> : fmt::formatter<std::string_view> {
  template <class Context>
  auto format(const std::optional<String>& text, Context& context) const {
    return fmt::formatter<std::string_view>::format(Text::orNull(text), context);
  }
};
