// SPDX-License-Identifier: MIT
#include "setup/BasePPD.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "base/Text.h"
#include "explain/watch/InputLines.h"
#include "explain/watch/ParsedPPD.h"
#include "ppd/lines/PPDExtentions.h"
#include "updaters/PPDKeywords.h"

namespace {

std::string_view withoutQuotes(std::string_view value) {
  const bool isQuoted = value.size() >= 2 && value.starts_with('"') && value.ends_with('"');
  return isQuoted ? value.substr(1, value.size() - 2) : value;
}

// The value of the first statement of this name; empty without one.
std::string valueIn(const ATPPD& ppd, const char* name) {
  const auto statement = ppd.attributeForName(name);
  const auto value = statement == nullptr ? std::nullopt : statement->value();
  return std::string(value.value_or(""));
}

bool holdsNames(std::string_view value) {
  const auto names = PPDExtentions::quotedValueContent(value);
  return names && !Text::trim(*names, Text::isBlank).empty();
}

// Why there is nothing to read; libcups does not tell.
void checkReadable(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0 || access(path.c_str(), R_OK) != 0) {
    throw std::runtime_error(std::strerror(errno));
  }
  if (!S_ISREG(status.st_mode)) throw std::runtime_error("it is no file");
}

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

BasePPD BasePPD::ofFile(const std::string& path) {
  checkReadable(path);
  const InputLines lines = InputLines::ofFile(path);
  const ParsedPPD parsed(lines);
  if (const auto problem = parsed.problem()) throw std::runtime_error(*problem);
  const ATPPD& ppd = parsed.document();
  return {valueIn(ppd, PPDKeyword::modelName), std::string(withoutQuotes(valueIn(ppd, "Manufacturer"))),
          std::string(withoutQuotes(valueIn(ppd, "1284DeviceID"))), holdsNames(valueIn(ppd, PPDKeyword::updaters))};
}
