// SPDX-License-Identifier: MIT
#include "explain/judge/InputJudge.h"

#include <sys/stat.h>

#include <string_view>

#include "base/Text.h"

namespace {

// Where in the line the first byte stands that is no text.
std::size_t firstBadByte(std::string_view line) {
  std::size_t position = 0;
  for (std::size_t end = 1; end <= line.size() && end <= position + 4; ++end) {
    if (Text::isValidUTF8(line.substr(position, end - position))) position = end;
  }
  return position;
}

bool exists(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0;
}

void judgeArguments(const Report::Arguments& arguments, Warnings& warnings) {
  if (!arguments.deviceURI || !arguments.PPDPath) return;
  const std::string& ppd = *arguments.PPDPath;
  const bool looksLikeURI = ppd.find(':') < ppd.find('/');
  if (!looksLikeURI || exists(ppd) || !exists(*arguments.deviceURI)) return;
  warnings.add(WarningCode::argumentsSwapped, {{"ppd", ppd}, {"uri", *arguments.deviceURI}});
}

void judgeBytesThatAreNoText(const InputLines& input, std::size_t number, Warnings& warnings) {
  const std::string line = *input.line(number);
  const std::size_t bad = firstBadByte(line);
  std::vector<Warning::Fact> facts = {{"line", number}, {"byte", input.text().size() + bad}};
  if (input.size()) facts.emplace_back("size", *input.size());
  facts.emplace_back("found", std::string_view(line).substr(bad, 4));
  warnings.add(WarningCode::cutAtNonUTF8, std::move(facts));
}

void judgeUnreadBytes(const InputLines& input, Warnings& warnings) {
  if (const auto number = input.firstThatIsNotUTF8()) {
    judgeBytesThatAreNoText(input, *number, warnings);
  } else if (input.isDirectory()) {
    warnings.add(WarningCode::readingStopped);
  } else if (input.isGzip() && (input.isDamaged() || input.sizeRead() != input.size().value_or(0))) {
    warnings.add(WarningCode::readingStopped, {{"unpacked", input.sizeRead()}});
  } else if (input.sizeRead() < input.size().value_or(0)) {
    warnings.add(WarningCode::readingStopped, {{"read", input.sizeRead()}, {"size", *input.size()}});
  }
}

}  // namespace

void InputJudge::judge(const Evidence& evidence, Warnings& warnings) {
  const Report& report = evidence.report;
  judgeArguments(report.arguments, warnings);
  const bool isMalformed = report.parse && report.parse->failure;  // reading ended there, and not at a line's bytes
  if (!isMalformed) judgeUnreadBytes(evidence.input, warnings);
  for (const std::size_t number : evidence.input.split()) warnings.add(WarningCode::lineSplit, {{"line", number}});
  if (report.succeeded() && evidence.result.empty()) warnings.add(WarningCode::emptyResult);
}
