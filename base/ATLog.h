// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "base/Format.h"

/// Whether this is the diagnostic build (CMake option `AT_DIAGNOSTIC_LOG`).
#ifdef AT_DIAGNOSTIC_LOG
inline constexpr bool ATDiagnosticLog = true;
#else
inline constexpr bool ATDiagnosticLog = false;
#endif

/// The file that the diagnostic build writes to. It must exist and be writable, so that a support engineer
/// switches the log on by creating it.
inline constexpr const char* ATLogFilePath = AT_LOG_FILE;

/// Opens `path`, emptied, when no log file is open yet and the path is a writable regular file (so it must exist
/// already, and is no link: the tool runs as root, and a link could lead anywhere); otherwise does nothing. Reports no
/// failure. The handle is process-wide and stays open.
void ATOpenLogFile(const char* path = ATLogFilePath);

/// Writes one line "SIGNATURE: MESSAGE" to the open log file and flushes it; does nothing while none is open.
void ATLogMessage(std::string_view signature, std::string_view message);

/// The diagnostic log call: the signature of the calling operation, a {fmt} format string and its arguments.
/// Outside the diagnostic build nothing is evaluated, not even the arguments.
#define ATLog(signature, ...)                                                         \
  do {                                                                                \
    if constexpr (ATDiagnosticLog) ATLogMessage(signature, fmt::format(__VA_ARGS__)); \
  } while (false)
