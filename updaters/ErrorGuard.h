// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <optional>
#include <string>

/// Runs the operation and gives the reason of the exception, of whatever type, that ended it; absent when none did.
/// For the updaters that convert a device's profile list: a list that they cannot convert costs the medium its
/// profiles, not the queue its setup.
template <class Operation>
std::optional<std::string> reasonOfFailure(Operation operation) {
  try {
    operation();
  } catch (const std::exception& error) {
    return error.what();
  } catch (...) {
    return "unknown";
  }
  return std::nullopt;
}
