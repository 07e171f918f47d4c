// SPDX-License-Identifier: MIT
#include "explain/watch/ParsedPPD.h"

#include <fmt/format.h>

#include "explain/report/Wording.h"

ParsedPPD::ParsedPPD(const InputLines& lines) : lines_(lines) {
  parser_.setDelegate(this);
  parser_.setLineNumber(1);
  const std::size_t end = lines.firstThatIsNotUTF8().value_or(lines.count() + 1) - 1;
  for (std::size_t index = 0; index < end; ++index) {
    if (!parser_.recognizeString(lines.piece(index))) break;
  }
}

void ParsedPPD::didRecognizeString(ATPPDParser& /*parser*/, const StatementString& string, PPDLineType type) {
  document_.addString(string, type);
}

void ParsedPPD::didFailWithError(ATPPDParser& /*parser*/, const PPDParserError& error) {
  error_ = error;
}

std::optional<std::string> ParsedPPD::problem() const {
  if (error_) {
    return fmt::format("line {} is malformed; expected: {}", error_->lineNumber.value_or(0),
                       Wording::expectedAtError(error_->code));
  }
  if (const auto number = lines_.firstThatIsNotUTF8()) return fmt::format("line {} is not UTF-8", *number);
  if (lines_.isGzip() && (lines_.isDamaged() || lines_.sizeRead() != lines_.size())) {
    return "the gzip file is damaged or cut off";
  }
  if (lines_.sizeRead() < lines_.size().value_or(0)) return "it could not be read to its end";
  return whyItEndsEarly();
}

std::optional<std::string> ParsedPPD::whyItEndsEarly() const {
  switch (parser_.lastLineType()) {
    case PPDLineTypeOpenUI:
    case PPDLineTypeOrderDependency:
    case PPDLineTypeDefaultChoice:
    case PPDLineTypeChoice:
    case PPDLineTypeChoiceContinuation:
    case PPDLineTypeChoiceEnd:
      return "it ends inside an option";
    case PPDLineTypeStatement:
    case PPDLineTypeContinuation:
      if (!parser_.lastStatementClosed()) return "it ends inside a statement";
      break;
    default:
      break;
  }
  return document_.groupOpened() ? std::optional<std::string>("it ends inside a group") : std::nullopt;
}
