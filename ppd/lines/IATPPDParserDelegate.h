// SPDX-License-Identifier: MIT
#pragma once

#include "ppd/lines/PPDLineType.h"
#include "ppd/lines/PPDParserError.h"
#include "ppd/lines/StatementString.h"

class ATPPDParser;

/// Receives what the parser reads, line by line, while it reads.
class IATPPDParserDelegate {
 public:
  virtual ~IATPPDParserDelegate() = default;

  /// Called once for every accepted line, in file order.
  virtual void didRecognizeString(ATPPDParser& parser, const StatementString& string, PPDLineType type) = 0;

  /// Called with the error that ended the parse; whoever does not care leaves it as it is.
  virtual void didFailWithError(ATPPDParser& /*parser*/, const PPDParserError& /*error*/) {}
};
