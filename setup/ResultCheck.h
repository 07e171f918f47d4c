// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "explain/report/Report.h"

/// Looks at a PPD that was set up as if nobody knew how it was made: a text of a device must not become a statement,
/// whatever the text is.
namespace ResultCheck {

/// Why the result is not a base PPD with the media of the run that the report is of: a statement that is neither the
/// base PPD's nor of a kind that updaters write for media, with the medium whose text it is; or one of the base PPD's
/// that is not there any more. Absent when it is.
std::optional<std::string> problemOf(const std::string& result, const std::string& base, const Report& report);

}  // namespace ResultCheck
