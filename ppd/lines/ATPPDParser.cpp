// SPDX-License-Identifier: MIT
#include "ppd/lines/ATPPDParser.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include "base/ATLog.h"
#include "base/Text.h"
#include "ppd/lines/PPDExtentions.h"

using namespace PPDExtentions;  // NOLINT(google-build-using-namespace): the line predicates are this file's subject

namespace {

bool existsFileAtPath(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0;
}

// Whether the token behind the asterisk can be OpenGroup, OpenUI, OrderDependency, CloseGroup or CloseUI. Its first
// letter settles that for most lines; without this, a run on a large PPD would cost 10 % more instructions.
bool mayOpenOrClose(std::string_view string) {
  const bool beginsWithKeyword = string.size() > 1 && string[0] == '*' && Text::isPrintableASCII(string[1]);
  const char letter = beginsWithKeyword ? Text::foldASCII(string[1]) : 'o';  // behind blanks the scan decides
  return letter == 'o' || letter == 'c';
}

}  // namespace

std::string PPDParserError::description() const {
  if (!lineNumber) return fmt::format("{} code {}", domain, code);
  return fmt::format("{} code {} (Line Number: {})", domain, code, *lineNumber);
}

bool ATPPDParser::parsePPDFileAtPath(const std::optional<std::string>& path) {
  static constexpr const char* kSignature = "-[ATPPDParser parsePPDFileAtPath:]";
  if (!path || !existsFileAtPath(*path)) {
    reportErrorWithCode(PPDParserErrorFileNotFound);
    ATLog(kSignature, "Cannot find PPD at {}", path);
    return false;
  }
  lastLineType_ = PPDLineTypeInvalid;
  lastStatementClosed_ = true;
  lineNumber_ = 1;
  pieces_ = PieceReader();
  const PieceReader::File file = PieceReader::open(*path);
  if (file == nullptr) {
    reportErrorWithCode(PPDParserErrorFileNotOpened);
    ATLog(kSignature, "cupsFileOpen fails with PPD {}", path);
    return false;
  }
  return parseFile(file.get());
}

bool ATPPDParser::parseFile(cups_file_t* file) {
  while (auto string = newLineFromFile(file)) {
    if (!recognizeString(*string)) return false;
  }
  return true;
}

std::optional<StatementString> ATPPDParser::newLineFromFile(cups_file_t* file) {
  auto piece = pieces_.next(file);
  if (piece && !Text::isValidUTF8(*piece)) piece.reset();
  return piece;
}

bool ATPPDParser::recognizeString(const StatementString& string) {
  const PPDLineType type = typeOfString(string);
  if (type == PPDLineTypeInvalid) return false;
  if (type != PPDLineTypeComment && type != PPDLineTypeNewLine) lastLineType_ = type;
  if (type == PPDLineTypeStatement) lastStatementClosed_ = isPPDStatementClosed(string);
  if (type == PPDLineTypeContinuation) lastStatementClosed_ = isPPDLineTerminatedByDoubleQuoteCharacter(string);
  ++lineNumber_;
  if (delegate_ != nullptr) delegate_->didRecognizeString(*this, string, type);
  return true;
}

PPDLineType ATPPDParser::typeOfString(std::string_view string) {
  if (isPPDComment(string)) return PPDLineTypeComment;
  if (isNewLine(string)) return PPDLineTypeNewLine;
  switch (lastLineType_) {
    case PPDLineTypeInvalid:
    case PPDLineTypeCloseGroup:
      return typeAtTopLevel(string);
    case PPDLineTypeEnd:
    case PPDLineTypeCloseUI:
      return isCloseGroupPPDStatement(string) ? PPDLineTypeCloseGroup : typeAtTopLevel(string);
    case PPDLineTypeOpenGroup:
      return typeInGroupStart(string);
    case PPDLineTypeStatement:
    case PPDLineTypeContinuation:
      return typeInStatement(string);
    case PPDLineTypeOpenUI:
    case PPDLineTypeOrderDependency:
    case PPDLineTypeDefaultChoice:
    case PPDLineTypeChoiceEnd:
      return typeInUIBlock(string);
    case PPDLineTypeChoice:
      return hasAsteriskPrefix(string) ? typeInUIBlock(string) : PPDLineTypeChoiceContinuation;
    case PPDLineTypeChoiceContinuation:
      if (isEndStatementPPDStatement(string)) return PPDLineTypeChoiceEnd;
      return hasAsteriskPrefix(string) ? typeInUIBlock(string) : PPDLineTypeChoiceContinuation;
    case PPDLineTypeComment:  // these two never come last
    case PPDLineTypeNewLine:
      break;
  }
  return PPDLineTypeInvalid;
}

PPDLineType ATPPDParser::typeAtTopLevel(std::string_view string) {
  if (!hasAsteriskPrefix(string)) return malformed(PPDParserErrorStatementExpected);
  if (isEndStatementPPDStatement(string)) return malformed(PPDParserErrorUnexpectedEnd);
  if (isCloseGroupPPDStatement(string)) return malformed(PPDParserErrorUnexpectedCloseGroup);
  return typeInStatement(string);
}

PPDLineType ATPPDParser::typeInGroupStart(std::string_view string) {
  if (isOpenUIPPDStatement(string)) return PPDLineTypeOpenUI;
  if (isCloseGroupPPDStatement(string)) return PPDLineTypeCloseGroup;
  return hasAsteriskPrefix(string) ? PPDLineTypeStatement : malformed(PPDParserErrorGroupContentExpected);
}

PPDLineType ATPPDParser::typeInStatement(std::string_view string) {
  if (isEndStatementPPDStatement(string)) {
    return lastStatementClosed_ ? PPDLineTypeEnd : malformed(PPDParserErrorUnexpectedEnd);
  }
  if (!hasAsteriskPrefix(string)) return PPDLineTypeContinuation;
  if (mayOpenOrClose(string)) {
    if (isOpenGroupPPDStatement(string)) return PPDLineTypeOpenGroup;
    if (isOpenUIPPDStatement(string)) return PPDLineTypeOpenUI;
    if (isCloseGroupPPDStatement(string)) return PPDLineTypeCloseGroup;
  }
  // Inside a quoted value that is still open, a line with "*" belongs to the value.
  return lastStatementClosed_ ? PPDLineTypeStatement : PPDLineTypeContinuation;
}

PPDLineType ATPPDParser::typeInUIBlock(std::string_view string) {
  if (isDefaultChoicePPDStatement(string)) return PPDLineTypeDefaultChoice;
  if (mayOpenOrClose(string)) {
    if (isOrderDependencyPPDStatement(string)) return PPDLineTypeOrderDependency;
    if (isCloseUIPPDStatement(string)) return PPDLineTypeCloseUI;
  }
  return hasAsteriskPrefix(string) ? PPDLineTypeChoice : malformed(PPDParserErrorUIContentExpected);
}

PPDLineType ATPPDParser::malformed(int code) {
  reportMalformedLineErrorWithCode(code);
  return PPDLineTypeInvalid;
}

void ATPPDParser::reportErrorWithCode(int code) {
  reportErrorWithCode(code, std::nullopt);
}

void ATPPDParser::reportMalformedLineErrorWithCode(int code) {
  reportErrorWithCode(code, lineNumber_);
}

void ATPPDParser::reportErrorWithCode(int code, std::optional<std::int64_t> lineNumber) {
  if (delegate_ != nullptr) delegate_->didFailWithError(*this, {code, lineNumber});
}
