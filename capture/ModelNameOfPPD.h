// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

/// The model name that a run on a PPD asks the device-model library with.
namespace ModelNameOfPPD {

/// The value of `*ModelName` at the top of the PPD, quotes included, or absent when it has none. Throws ATException
/// when the PPD cannot be read or is malformed.
std::optional<std::string> at(const std::string& path);

}  // namespace ModelNameOfPPD
