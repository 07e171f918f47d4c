// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// Why the parser refused a PPD.
enum PPDParserErrorCode : int {
  PPDParserErrorFileNotFound = 1,          ///< no path, or nothing exists there
  PPDParserErrorFileNotOpened = 2,         ///< the CUPS file interface cannot open it
  PPDParserErrorStatementExpected = 3,     ///< no "*" at the start, or after CloseGroup, End or CloseUI
  PPDParserErrorGroupContentExpected = 4,  ///< no "*" directly behind OpenGroup
  PPDParserErrorUIContentExpected = 5,     ///< no "*" behind OpenUI, OrderDependency, a default or a choice's end
  PPDParserErrorUnexpectedEnd = 6,         ///< *End with no statement to end, or while its quoted value is open
  PPDParserErrorUnexpectedCloseGroup = 7,  ///< *CloseGroup at the start or directly behind another
};

/// An error record: domain, code and a user info that is absent or holds the one key "Line Number".
struct PPDParserError {
  static constexpr const char* domain = "PPDParserErrorDomain";

  int code = 0;
  std::optional<std::int64_t> lineNumber;  ///< counted from 1; absent for errors of the file as a whole

  /// One line for messages.
  std::string description() const;
};
