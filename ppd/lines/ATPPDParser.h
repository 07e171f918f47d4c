// SPDX-License-Identifier: MIT
#pragma once

#include <cups/file.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "ppd/lines/IATPPDParserDelegate.h"
#include "ppd/lines/PPDLineType.h"
#include "ppd/lines/PieceReader.h"
#include "ppd/lines/StatementString.h"

/// Reads a PPD line by line, types each line and hands it to the delegate. It remembers only the type of the last
/// significant line and whether the last statement's quoted value was closed; it builds no objects and does not look
/// into statements. The first malformed line ends the parse with a numbered error. It reads one file at a time.
class ATPPDParser {
 public:
  ATPPDParser() = default;

  /// Reads the file at the path (UTF-8), which may be absent, and calls the delegate for every line before it
  /// returns. True when every line was read and accepted; a line that is not UTF-8 ends reading like the end of the
  /// file.
  bool parsePPDFileAtPath(const std::optional<std::string>& path);

  /// The next line as the CUPS reader gives it, at most 254 bytes with its own line end; a longer one comes in
  /// pieces. Absent at the end of the file and for bytes that are not UTF-8. The file is read ahead; a call with
  /// another file begins with that one, where it stands.
  std::optional<StatementString> newLineFromFile(cups_file_t* file);

  /// Types the line and hands it on; false when it was rejected (the error has been reported).
  bool recognizeString(const StatementString& string);

  /// The type of the line in the present state; reports the error itself when it returns `PPDLineTypeInvalid`.
  PPDLineType typeOfString(std::string_view string);

  /// Give the delegate an error: without user info, with the present line number, with the given one or none.
  void reportErrorWithCode(int code);
  void reportMalformedLineErrorWithCode(int code);
  void reportErrorWithCode(int code, std::optional<std::int64_t> lineNumber);

  /// Number of the line being typed, counted from 1; pieces of a long line count each.
  std::int64_t lineNumber() const { return lineNumber_; }
  void setLineNumber(std::int64_t number) { lineNumber_ = number; }
  /// Type of the last accepted line other than comments and empty lines; 0 at the start.
  PPDLineType lastLineType() const { return lastLineType_; }
  void setLastLineType(PPDLineType type) { lastLineType_ = type; }
  /// Whether the last statement's quoted value is complete.
  bool lastStatementClosed() const { return lastStatementClosed_; }
  void setLastStatementClosed(bool closed) { lastStatementClosed_ = closed; }
  /// Not owned; may be null.
  IATPPDParserDelegate* delegate() const { return delegate_; }
  void setDelegate(IATPPDParserDelegate* delegate) { delegate_ = delegate; }

 private:
  bool parseFile(cups_file_t* file);
  PPDLineType typeAtTopLevel(std::string_view string);
  PPDLineType typeInGroupStart(std::string_view string);
  PPDLineType typeInStatement(std::string_view string);
  PPDLineType typeInUIBlock(std::string_view string);
  PPDLineType malformed(int code);

  std::int64_t lineNumber_ = 0;
  PPDLineType lastLineType_ = PPDLineTypeInvalid;
  bool lastStatementClosed_ = true;
  IATPPDParserDelegate* delegate_ = nullptr;
  PieceReader pieces_;
};
