// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>

/// Calls a function in a process of its own, for code that is not hardened against the input that it gets: whatever it
/// does there (crash, loop, take all memory, change its environment), this process goes on.
namespace IsolatedCall {

inline constexpr std::chrono::seconds kLongest(20);

/// What the function gave; absent when it crashed, threw, or did not come to an end in time. The function runs with a
/// copy of this process' memory, and what it changes there is lost. Threads of this process must not hold locks that it
/// needs.
std::optional<std::string> resultOf(const std::function<std::string()>& function,
                                    std::chrono::milliseconds longest = kLongest);

}  // namespace IsolatedCall
