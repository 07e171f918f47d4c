// SPDX-License-Identifier: MIT
#include "setup/BasePPD.h"

#include <cups/file.h>

#include <array>
#include <memory>
#include <string_view>

#include "base/Text.h"
#include "updaters/PPDKeywords.h"

namespace {

std::string_view withoutQuotes(std::string_view value) {
  const bool isQuoted = value.size() >= 2 && value.starts_with('"') && value.ends_with('"');
  return isQuoted ? value.substr(1, value.size() - 2) : value;
}

// The value of a statement line of this keyword without an option; absent when the line is none.
std::optional<std::string_view> valueOf(std::string_view line, std::string_view keyword) {
  if (!line.starts_with('*') || line.substr(1, keyword.size()) != keyword) return std::nullopt;
  std::string_view rest = Text::trim(line.substr(1 + keyword.size()), Text::isWhiteSpace);
  if (!rest.starts_with(':')) return std::nullopt;
  rest.remove_prefix(1);
  return Text::trim(rest, Text::isBlank);
}

// Whether anything stands between the first quotation mark and the next or the line's end.
bool holdsNames(std::string_view value) {
  const std::size_t opening = value.find('"');
  if (opening == std::string_view::npos) return false;
  const std::string_view names = value.substr(opening + 1);
  return !Text::trim(names.substr(0, names.find('"')), Text::isBlank).empty();
}

// Whether a statement goes on in the next line: its value is opened and not closed, or has not begun.
bool goesOn(std::string_view line) {
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos) return true;
  const std::size_t opening = line.find('"', colon);
  return opening != std::string_view::npos && line.find('"', opening + 1) == std::string_view::npos;
}

// Takes lines until all is known that can be. Statements in groups, in options, and in values of several lines are not
// the document's.
class Scan {
 public:
  bool isDone() const { return isDone_; }

  void take(std::string_view line) {
    if (line.starts_with("*%") || line.starts_with("*End")) return;
    if (closing_ != nullptr) {
      if (valueOf(line, closing_)) closing_ = nullptr;
    } else if (valueOf(line, "OpenGroup")) {
      enter("CloseGroup");
    } else if (line.starts_with("*OpenUI")) {
      enter("CloseUI");
    } else if (isInStatement_) {
      isInStatement_ = !Text::trim(line, Text::isBlank).ends_with('"');
    } else if (line.starts_with('*')) {
      takeStatement(line);
    }
  }

  BasePPD result() const {
    return {found_.modelName.value_or(""), std::string(withoutQuotes(found_.manufacturer.value_or(""))),
            std::string(withoutQuotes(found_.deviceID.value_or(""))), holdsNames(found_.updaters.value_or(""))};
  }

 private:
  // What names the printer stands before its options, so behind them only what cannot be done without is looked for.
  void enter(const char* closing) {
    closing_ = closing;
    isInStatement_ = false;
    isDone_ = found_.modelName && found_.updaters;
  }

  void takeStatement(std::string_view line) {
    take(line, PPDKeyword::modelName, found_.modelName);
    take(line, "Manufacturer", found_.manufacturer);
    take(line, "1284DeviceID", found_.deviceID);
    take(line, PPDKeyword::updaters, found_.updaters);
    isInStatement_ = goesOn(line);
    isDone_ = found_.modelName && found_.manufacturer && found_.deviceID && found_.updaters;
  }

  // The first statement of a keyword counts.
  static void take(std::string_view line, std::string_view keyword, std::optional<std::string>& value) {
    if (value) return;
    if (const auto found = valueOf(line, keyword)) value = *found;
  }

  const char* closing_ = nullptr;  // the keyword that closes the group or option; null outside
  bool isInStatement_ = false;
  bool isDone_ = false;
  struct {
    std::optional<std::string> modelName, manufacturer, deviceID, updaters;
  } found_;
};

}  // namespace

std::string BasePPD::model() const {
  return std::string(withoutQuotes(modelName));
}

std::string BasePPD::make() const {
  if (!manufacturer.empty()) return manufacturer;
  const std::string name = model();
  const std::string_view words = Text::trim(name, Text::isWhiteSpace);
  return std::string(words.substr(0, words.find_first_of(" \t")));
}

std::optional<BasePPD> BasePPD::ofFile(const std::string& path) {
  const std::unique_ptr<cups_file_t, int (*)(cups_file_t*)> file(cupsFileOpen(path.c_str(), "r"), cupsFileClose);
  if (file == nullptr) return std::nullopt;
  Scan scan;
  std::array<char, 256> line;  // the tool reads a longer one in the same parts
  while (!scan.isDone()) {
    const std::size_t size = cupsFileGetLine(file.get(), line.data(), line.size());
    if (size == 0) break;
    scan.take(std::string_view(line.data(), size));
  }
  return scan.result();
}
