// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/Text.h"
#include "ppd/document/ATPPD.h"
#include "ppd/lines/ATPPDParser.h"

/// Reading a document from a text in memory, for tests.
namespace DocumentReading {

/// The pieces in which the CUPS line reader gives a text: up to 254 bytes, ended behind LF, CR or CR LF; a CR that is
/// the 254th byte takes a following LF along.
inline std::vector<std::string> pieces(std::string_view text) {
  constexpr std::size_t kLongest = 254;
  std::vector<std::string> all;
  for (std::size_t start = 0, end = 0; start < text.size(); start = end) {
    for (end = start; end < text.size() && end - start < kLongest;) {
      const char byte = text[end++];
      if (byte == '\r' && end < text.size() && text[end] == '\n') ++end;
      if (byte == '\n' || byte == '\r') break;
    }
    all.emplace_back(text.substr(start, end - start));
  }
  return all;
}

struct Line {
  std::string string;
  PPDLineType type;
};

/// What the parser made of a text.
struct Reading : IATPPDParserDelegate {
  ATPPD ppd;
  std::vector<Line> lines;  // accepted
  std::optional<PPDParserError> error;

  void didRecognizeString(ATPPDParser&, const StatementString& string, PPDLineType type) override {
    lines.push_back({std::string(string.view()), type});
    ppd.addString(string, type);
  }
  void didFailWithError(ATPPDParser&, const PPDParserError& given) override { error = given; }
};

/// Reads the text as the parser reads a file.
inline std::unique_ptr<Reading> read(std::string_view text) {
  auto reading = std::make_unique<Reading>();
  ATPPDParser parser;
  parser.setLineNumber(1);
  parser.setDelegate(reading.get());
  for (const std::string& piece : pieces(text)) {
    if (!Text::isValidUTF8(piece) || !parser.recognizeString(piece)) break;
  }
  return reading;
}

inline std::string textOf(const IATPPDObject& object) {
  std::string text;
  for (const StatementString& string : object.strings()) text += string.view();
  return text;
}

/// What writing the accepted lines back must give: all of them, but for what a UI option outside every group drops
/// (further lines, ends and closing groups behind its block) and what comes before any object.
inline std::string expectedText(const std::vector<Line>& lines) {
  enum { nothing, option, other } last = nothing;
  bool groupOpened = false;
  std::string text;
  for (const auto& [string, type] : lines) {
    const bool opensGroup = type == PPDLineTypeOpenGroup;
    const bool startsObject =
        opensGroup || (!groupOpened && (type == PPDLineTypeComment || type == PPDLineTypeNewLine ||
                                        type == PPDLineTypeStatement || type == PPDLineTypeOpenUI));
    if (startsObject) last = !groupOpened && type == PPDLineTypeOpenUI ? option : other;
    if (opensGroup) groupOpened = true;
    if (type == PPDLineTypeCloseGroup) groupOpened = false;
    const bool notForOptions =
        type == PPDLineTypeContinuation || type == PPDLineTypeEnd || type == PPDLineTypeCloseGroup;
    if (last != nothing && !(last == option && notForOptions)) text += string;
  }
  return text;
}

}  // namespace DocumentReading
