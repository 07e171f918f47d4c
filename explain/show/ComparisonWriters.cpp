// SPDX-License-Identifier: MIT
#include "explain/show/ComparisonWriters.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "explain/report/Wording.h"
#include "explain/show/PlainPage.h"

namespace {

using ComparisonJSON = nlohmann::ordered_json;

std::string summary(const std::string& earlier, std::size_t count) {
  const std::string changes = count == 0 ? "nothing changed" : Wording::counted(count, "change");
  return fmt::format("Compared with {}: {}", Wording::visible(earlier), changes);
}

ComparisonJSON sideOf(const PPDMedia::Medium& medium) {
  if (medium.choice.empty()) return nullptr;
  return {{"choice", medium.choice},
          {"name", medium.name},
          {"ID", medium.ID},
          {"profiles", medium.profiles},
          {"properties", medium.properties}};
}

}  // namespace

std::string ComparisonWriters::text(const std::string& earlier, const std::vector<MediaChange>& changes) {
  std::string text = summary(earlier, changes.size()) + "\n";
  for (const MediaChange& change : changes) text += "  " + Wording::visible(change.text()) + "\n";
  return text;
}

std::string ComparisonWriters::json(const std::string& earlier, const std::vector<MediaChange>& changes) {
  ComparisonJSON json = {{"schema", "vorantis-autosetup-comparison"},
                         {"schemaVersion", 1},
                         {"earlier", earlier},
                         {"changes", ComparisonJSON::array()}};
  for (const MediaChange& change : changes) {
    json["changes"].push_back({{"kind", change.kindName()},
                               {"text", change.text()},
                               {"before", sideOf(change.before)},
                               {"after", sideOf(change.after)}});
  }
  return json.dump(1, ' ', true, ComparisonJSON::error_handler_t::replace) + "\n";
}

std::string ComparisonWriters::html(const std::string& earlier, const std::vector<MediaChange>& changes) {
  PlainPage page("What changed: Vorantis autosetup");
  page.note(summary(earlier, changes.size()));
  if (changes.empty()) return page.take();
  page.beginTable({"Change", "Medium", "Choice before", "Choice now", "In words"});
  for (const MediaChange& change : changes) {
    const PPDMedia::Medium& medium = change.after.choice.empty() ? change.before : change.after;
    page.row({change.kindName(), medium.label(), change.before.choice, change.after.choice, change.text()});
  }
  page.endTable();
  return page.take();
}
