// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The rules on single strings of a PPD (the misspelling is the system's own name). All are pure.
/// Two kinds of test are used on lines. A prefix test compares the first characters exactly. A token scan skips
/// white space and line ends before each token and compares tokens without regard to letter case (TokenScanner).
namespace PPDExtentions {

/// Prefix test "*".
bool hasAsteriskPrefix(std::string_view string);
/// Prefix test "*%" (PPD 4.3: comments).
bool isPPDComment(std::string_view string);
/// Whether nothing is left without the line ends at both ends; a line of spaces is not a new line.
bool isNewLine(std::string_view string);
/// Token scan "*", "OpenGroup", ":".
bool isOpenGroupPPDStatement(std::string_view string);
/// Token scan "*", "CloseGroup", ":".
bool isCloseGroupPPDStatement(std::string_view string);
/// Token scan "*", "OpenUI"; no colon is asked for, so a keyword that only begins so passes too.
bool isOpenUIPPDStatement(std::string_view string);
/// Token scan "*", "CloseUI", ":".
bool isCloseUIPPDStatement(std::string_view string);
/// Token scan "*", "OrderDependency", ":".
bool isOrderDependencyPPDStatement(std::string_view string);
/// Prefix test "*Default".
bool isDefaultChoicePPDStatement(std::string_view string);
/// Prefix test "*End"; a keyword that only begins so passes too.
bool isEndStatementPPDStatement(std::string_view string);
/// Token scan "*", the name, ":".
bool isPPDStatementsNamed(std::string_view string, std::string_view name);
/// Whether the value after the first colon is complete on this line: not quoted, or with its closing quote.
/// Without a colon it is not.
bool isPPDStatementClosed(std::string_view string);
/// Whether the last character, white space and line ends aside, is a double quote.
bool isPPDLineTerminatedByDoubleQuoteCharacter(std::string_view string);

/// Two double quotes.
std::string emptyQuotedValue();
/// The characters between the first and the last double quote, as they stand; absent with fewer than two. The
/// result is a part of `string`.
std::optional<std::string_view> quotedValueContent(std::string_view string);

/// 1 to 255 bytes, all of the string counted (CUPS refuses a file with a longer line).
bool isValidPPDLineLength(std::string_view string);
/// 1 to 80 bytes (CUPS cuts a longer translation text).
bool isValidPPDTextLength(std::string_view string);
/// 1 to 40 bytes (CUPS refuses a file with a longer keyword).
bool isValidPPDNameLength(std::string_view string);
/// Printable ASCII without "/" and ":"; the empty string passes.
bool isValidPPDKeyword(std::string_view string);
/// Space to U+00FF without `"`, ":", "<" and ">", by UTF-16 code units; the empty string passes. Logs one message
/// for each unit that does not.
bool isValidPPDText(std::string_view string);

}  // namespace PPDExtentions
