// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <set>

#include "explain/report/WarningCode.h"

/// Which warnings follow from which, so that the cause is read first.
namespace Causes {

/// The first cause of the code among those that a run has, itself no consequence; absent when there is none.
std::optional<WarningCode> of(WarningCode code, const std::set<WarningCode>& codes);

}  // namespace Causes
