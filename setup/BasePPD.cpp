// SPDX-License-Identifier: MIT
#include "setup/BasePPD.h"

#include <cups/file.h>

#include <array>
#include <memory>
#include <string_view>

#include "base/Text.h"
#include "updaters/PPDKeywords.h"

namespace {

constexpr std::size_t kBlock = 1 << 16;

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

// Takes lines until all is known that can be.
class Scan {
 public:
  bool isDone() const { return found_.modelName && found_.manufacturer && found_.deviceID && found_.updaters; }

  void take(std::string_view line) {
    take(line, PPDKeyword::modelName, found_.modelName);
    take(line, "Manufacturer", found_.manufacturer);
    take(line, "1284DeviceID", found_.deviceID);
    take(line, PPDKeyword::updaters, found_.updaters);
  }

  BasePPD result() const {
    const std::string updaters = found_.updaters.value_or("");
    return {found_.modelName.value_or(""), std::string(withoutQuotes(found_.manufacturer.value_or(""))),
            std::string(withoutQuotes(found_.deviceID.value_or(""))),
            updaters.size() > 2 && withoutQuotes(updaters).size() < updaters.size()};
  }

 private:
  // The first statement of a keyword counts.
  static void take(std::string_view line, std::string_view keyword, std::optional<std::string>& value) {
    if (value) return;
    if (const auto found = valueOf(line, keyword)) value = *found;
  }

  struct {
    std::optional<std::string> modelName, manufacturer, deviceID, updaters;
  } found_;
};

}  // namespace

std::string BasePPD::model() const {
  return std::string(withoutQuotes(modelName));
}

std::string BasePPD::make() const {
  const std::string name = manufacturer.empty() ? model() : manufacturer;
  return manufacturer.empty() ? name.substr(0, name.find(' ')) : name;
}

std::optional<BasePPD> BasePPD::ofFile(const std::string& path) {
  const std::unique_ptr<cups_file_t, int (*)(cups_file_t*)> file(cupsFileOpen(path.c_str(), "r"), cupsFileClose);
  if (file == nullptr) return std::nullopt;
  Scan scan;
  std::string rest;  // of the block, behind its last line end
  std::array<char, kBlock> block;
  while (!scan.isDone()) {
    const ssize_t size = cupsFileRead(file.get(), block.data(), block.size());
    if (size <= 0) break;
    rest.append(block.data(), static_cast<std::size_t>(size));
    std::size_t start = 0;
    for (std::size_t end; (end = rest.find('\n', start)) != std::string::npos; start = end + 1) {
      scan.take(std::string_view(rest).substr(start, end - start));
    }
    rest.erase(0, start);
  }
  scan.take(rest);
  return scan.result();
}
