// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "explain/InputLines.h"
#include "explain/Report.h"
#include "explain/RunRecorder.h"
#include "ppd/document/ATPPD.h"

/// What goes wrong in practice and can be seen after a run. `ppd` is the edited document, `result` its text.
namespace RunWarnings {

/// What can be told of the PPD as it was: how far it was read, and, of a run that failed, why CUPS refuses it.
void addForInput(RunRecorder& recorder, const Report& report, const InputLines& input);
/// What can be told of a run that succeeded.
void addForResult(RunRecorder& recorder, const Report& report, const InputLines& input, const ATPPD& ppd,
                  const std::string& result);

}  // namespace RunWarnings
