// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "explain/watch/InputLines.h"
#include "ppd/document/ATPPD.h"
#include "ppd/lines/ATPPDParser.h"

/// A PPD as the tool's own parser reads it and its document holds it, for what asks a PPD outside a run.
class ParsedPPD : private IATPPDParserDelegate {
 public:
  /// Reads as far as the tool would: to the first line that is malformed or not UTF-8, or to the end.
  explicit ParsedPPD(const InputLines& lines);

  const ATPPD& document() const { return document_; }

  /// Why the lines are not a whole PPD, for people: it cannot be read, was not read to its end, or ends inside a value,
  /// an option or a group, as a file does that was cut off. Absent when they are.
  std::optional<std::string> problem() const;

 private:
  void didRecognizeString(ATPPDParser& parser, const StatementString& string, PPDLineType type) override;
  void didFailWithError(ATPPDParser& parser, const PPDParserError& error) override;
  std::optional<std::string> whyItEndsEarly() const;

  const InputLines& lines_;
  ATPPD document_;
  ATPPDParser parser_;
  std::optional<PPDParserError> error_;
};
