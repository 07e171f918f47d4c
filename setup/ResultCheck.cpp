// SPDX-License-Identifier: MIT
#include "setup/ResultCheck.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "explain/report/Wording.h"
#include "explain/watch/InputLines.h"
#include "explain/watch/MemoryFile.h"
#include "explain/watch/ParsedPPD.h"
#include "setup/WrittenKinds.h"
#include "setup/WrittenStatements.h"

namespace {

constexpr std::size_t kLongestShown = 100;

// A statement with all of its lines, and the first line of the group or option that it stands in; empty at the top.
struct Statement {
  std::string place, text;
  bool operator<(const Statement& other) const {
    return std::pair(std::string_view(place), std::string_view(text)) <
           std::pair(std::string_view(other.place), std::string_view(other.text));
  }
};

std::string textOf(const IATPPDObject& object) {
  std::string text;
  object.giveStringsTo([&text](const StatementString& string) { text += string.view(); });
  return text;
}

void collect(const ATPPDCompoundObject& compound, const std::string& place, std::vector<Statement>& statements) {
  for (const auto& object : compound.PPDObjects()) {
    const auto* inner = dynamic_cast<const ATPPDCompoundObject*>(object.get());
    if (inner == nullptr) {
      statements.push_back({place, textOf(*object)});
    } else if (!inner->PPDObjects().empty()) {
      collect(*inner, place + textOf(**inner->PPDObjects().begin()), statements);
    }
  }
}

std::vector<Statement> statementsOf(const ATPPD& ppd) {
  std::vector<Statement> statements;
  collect(ppd, "", statements);
  return statements;
}

// A text of memory, as libcups' line reader gives it.
InputLines linesOf(const std::string& text) {
  MemoryFile file;
  if (!file.isThere() || !file.append(text)) throw std::runtime_error("there is no memory to check the result in");
  return InputLines::ofFile(file.path());
}

bool holds(const Report::OptionalText& text, std::string_view part) {
  return text && text->find(part) != std::string::npos;
}

bool isTextOf(const Report::MediumOutcome& medium, std::string_view part) {
  const Report::Medium& device = medium.device;
  for (const auto* text : {&device.name, &device.ID, &device.parentID, &device.gloss, &device.categoryName}) {
    if (holds(*text, part)) return true;
  }
  return std::any_of(medium.profiles.begin(), medium.profiles.end(), [part](const Report::Profile& profile) {
    return holds(profile.name, part) || holds(profile.spec, part) || holds(profile.url, part) ||
           holds(profile.path, part);
  });
}

// Whose text a statement is, for people.
std::string ownerOf(std::string_view statement, const Report& report) {
  const std::string_view line = statement.substr(0, statement.find_first_of("\r\n"));
  for (const Report::Updater& updater : report.updaters) {
    for (const Report::MediumOutcome& medium : updater.media) {
      const bool isIts = isTextOf(medium, line) ||
                         (medium.choiceName && line.find(*medium.choiceName + "/") != std::string_view::npos);
      if (isIts) return fmt::format("the medium {}", Wording::cutTo(kLongestShown, Wording::of(medium.device)));
    }
  }
  return "the device";
}

std::string shown(const std::string& statement) {
  return Wording::cutTo(kLongestShown, Wording::visible(statement));
}

}  // namespace

std::optional<std::string> ResultCheck::problemOf(const std::string& result, const std::string& base,
                                                  const Report& report) {
  const InputLines baseLines = linesOf(base);
  const InputLines resultLines = linesOf(result);
  const ParsedPPD basePPD(baseLines);
  const ParsedPPD resultPPD(resultLines);
  if (const auto problem = resultPPD.problem()) return "the result is no PPD: " + *problem;
  const WrittenStatements written(basePPD.document(), report);
  std::map<Statement, std::size_t> left;
  for (Statement& statement : statementsOf(basePPD.document())) ++left[std::move(statement)];
  for (const Statement& statement : statementsOf(resultPPD.document())) {
    const auto found = left.find(statement);
    if (found != left.end()) {
      if (--found->second == 0) left.erase(found);
    } else if (!written.mayBe(statement.place, statement.text)) {
      return fmt::format("a text of {} would become a statement: {}", ownerOf(statement.text, report),
                         shown(statement.text));
    }
  }
  for (const auto& [statement, count] : left) {
    if (!written.mayGo(statement.text)) return "a statement of the base PPD is lost: " + shown(statement.text);
  }
  return std::nullopt;
}
