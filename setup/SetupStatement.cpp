// SPDX-License-Identifier: MIT
#include "setup/SetupStatement.h"

#include <fmt/format.h>

#include <algorithm>

#include "setup/SetupDigest.h"

namespace {

constexpr std::string_view kOpening = "*VorantisSetup: \"";
constexpr std::string_view kClosing = "*End";
constexpr std::string_view kLineEnds = "\r\n";
constexpr std::size_t kDigestSize = 64;

// Where the line behind the one at `start` begins.
std::size_t nextLine(std::string_view text, std::size_t start) {
  const std::size_t end = text.find_first_of(kLineEnds, start);
  if (end == std::string_view::npos) return text.size();
  return end + (text.substr(end, 2) == "\r\n" ? 2 : 1);
}

struct Place {
  std::size_t start = 0;
  std::size_t end = 0;  // behind its line end; the same as `start` without a statement
};

// It stands behind the first line only, so that no text further below is taken for it.
Place placeIn(std::string_view ppd) {
  const std::size_t start = nextLine(ppd, 0);
  if (!ppd.substr(start).starts_with(kOpening)) return {start, start};
  const std::size_t values = nextLine(ppd, start);
  const std::size_t closing = nextLine(ppd, values);
  const bool isWhole = ppd.substr(closing).starts_with(kClosing);
  return {start, isWhole ? nextLine(ppd, closing) : start};
}

std::string_view lineAt(std::string_view text, std::size_t start) {
  return text.substr(start, text.find_first_of(kLineEnds, start) - start);
}

// Cuts the first word off; the last has no blank behind it.
std::string takeWord(std::string_view& words) {
  const std::size_t end = std::min(words.find(' '), words.size());
  const std::string word(words.substr(0, end));
  words.remove_prefix(std::min(end + 1, words.size()));
  return word;
}

bool isDigest(const std::string& word) {
  return word.size() == kDigestSize && word.find_first_not_of("0123456789abcdef") == std::string::npos;
}

}  // namespace

std::string SetupStatement::addedTo(std::string_view ppd, std::string_view name, std::string_view sources) {
  const std::string bare = removedFrom(ppd);
  if (name.starts_with(kScheme)) name.remove_prefix(kScheme.size());
  const std::size_t start = nextLine(bare, 0);
  const std::string statement =
      fmt::format("{}{}\n{} {} {}\"\n{}\n", kOpening, name, sources, SetupDigest::ofResult(bare), AT_VERSION, kClosing);
  return bare.substr(0, start) + statement + bare.substr(start);
}

std::optional<SetupStatement> SetupStatement::of(std::string_view ppd) {
  const Place place = placeIn(ppd);
  if (place.start == place.end) return std::nullopt;
  SetupStatement statement;
  statement.source = lineAt(ppd, place.start).substr(kOpening.size());
  std::string_view values = lineAt(ppd, nextLine(ppd, place.start));
  if (!values.ends_with('"')) return std::nullopt;
  values.remove_suffix(1);
  statement.sources = takeWord(values);
  statement.result = takeWord(values);
  statement.version = values;
  const bool isWhole = isDigest(statement.sources) && isDigest(statement.result) && !statement.version.empty();
  return isWhole ? std::optional(statement) : std::nullopt;
}

std::string SetupStatement::removedFrom(std::string_view ppd) {
  const Place place = placeIn(ppd);
  return std::string(ppd.substr(0, place.start)).append(ppd.substr(place.end));
}
