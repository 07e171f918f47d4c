// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "explain/report/Report.h"

/// What of a report is about one medium: its outcome with each updater, the changes of statements that name its
/// choice, and the warnings about it or about the whole PPD. Absent when the device has no medium of this name or ID.
std::optional<Report> reportOnMedium(const Report& report, const std::string& nameOrID);
