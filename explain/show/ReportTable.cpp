// SPDX-License-Identifier: MIT
#include "explain/show/ReportTable.h"

#include <dirent.h>
#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string_view>
#include <tuple>

#include "explain/report/Wording.h"
#include "explain/show/PlainPage.h"

namespace {

using TableJSON = nlohmann::json;
using TableRow = ReportTable::Row;

constexpr std::string_view kEnding = ".json";
constexpr const char* kUnreadable = "unreadable";
// The worst first.
constexpr std::string_view kWorstFirst[] = {kUnreadable, "bad", "refused", "odd", "good"};

std::vector<std::string> reportsIn(const std::string& path) {
  std::vector<std::string> names;
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(path.c_str()), closedir);
  while (const dirent* entry = folder == nullptr ? nullptr : readdir(folder.get())) {
    if (std::string_view(entry->d_name).ends_with(kEnding)) names.emplace_back(entry->d_name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string textOf(const TableJSON& value) {
  return value.is_string() ? value.get<std::string>() : "";
}

std::string listOf(const std::map<std::string, std::size_t>& counts) {
  std::string list;
  for (const auto& [code, count] : counts) list += fmt::format("{}{} {}", list.empty() ? "" : ", ", count, code);
  return list;
}

std::string reasonsOf(const TableJSON& report) {
  std::map<std::string, std::size_t> counts;
  for (const TableJSON& updater : report.at("updaters")) {
    for (const TableJSON& medium : updater.at("media")) {
      for (const TableJSON& lost : medium.at("lostBecause")) ++counts[textOf(lost.at("code"))];
      for (const TableJSON& profile : medium.at("profiles")) {
        const TableJSON& lost = profile.at("lostBecause");
        if (lost.is_object()) ++counts[textOf(lost.at("code"))];
      }
    }
  }
  return listOf(counts);
}

void fill(TableRow& row, const TableJSON& report) {
  const TableJSON& verdict = report.at("verdict");
  row.device = textOf(report.at("arguments").at("deviceURI"));
  row.PPD = textOf(report.at("arguments").at("PPDPath"));
  if (const TableJSON& media = verdict.at("media"); media.is_object()) {
    row.onDevice = media.at("onDevice").get<std::size_t>();
    row.lost = media.at("lost").get<std::size_t>();
  }
  row.warnings = listOf(verdict.at("warnings").get<std::map<std::string, std::size_t>>());
  row.reasons = reasonsOf(report);
  row.colour = textOf(verdict.at("colour"));
}

TableRow reportRowOf(const std::string& folder, const std::string& name) {
  std::ifstream file(folder + "/" + name, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  TableRow row;
  try {
    fill(row, TableJSON::parse(text));
  } catch (const TableJSON::exception&) {
    row = TableRow();
    row.colour = kUnreadable;
  }
  row.file = name;
  return row;
}

std::ptrdiff_t rankOf(const TableRow& row) {
  return std::find(std::begin(kWorstFirst), std::end(kWorstFirst), row.colour) - std::begin(kWorstFirst);
}

bool isWorse(const TableRow& one, const TableRow& other) {
  return std::tuple(rankOf(one), other.lost, one.file) < std::tuple(rankOf(other), one.lost, other.file);
}

const char* styleOf(const TableRow& row) {
  if (row.colour == "good") return "good";
  return row.colour == "odd" ? "odd" : "bad";
}

std::vector<std::string> cellsOf(const TableRow& row) {
  return {row.colour,  row.file,    row.device, row.PPD, std::to_string(row.onDevice), std::to_string(row.lost),
          row.reasons, row.warnings};
}

const std::vector<std::string>& titles() {
  static const std::vector<std::string> all = {"verdict", "report", "device", "PPD",
                                               "media",   "lost",   "why",    "warnings"};
  return all;
}

std::string csvLine(const std::vector<std::string>& cells) {
  std::string line;
  for (const std::string& cell : cells) {
    std::string quoted;
    for (const char character : cell) quoted += character == '"' ? std::string("\"\"") : std::string(1, character);
    const bool needsQuotes = cell.find_first_of(",\"\r\n") != std::string::npos;
    line += (line.empty() ? "" : ",") + (needsQuotes ? "\"" + quoted + "\"" : quoted);
  }
  return line + "\r\n";
}

}  // namespace

ReportTable ReportTable::ofFolder(const std::string& path) {
  ReportTable table;
  for (const std::string& name : reportsIn(path)) table.rows_.push_back(reportRowOf(path, name));
  std::sort(table.rows_.begin(), table.rows_.end(), isWorse);
  return table;
}

std::string ReportTable::text() const {
  std::string text = Wording::counted(rows_.size(), "report") + "\n";
  for (const TableRow& row : rows_) {
    text += fmt::format("{:<10} {}: {}\n", row.colour, Wording::visible(row.file),
                        row.device.empty() ? "no device" : Wording::visible(row.device));
    if (row.onDevice > 0) {
      text += fmt::format("{:<10} {} of {} media lost something{}{}\n", "", row.lost, row.onDevice,
                          row.reasons.empty() ? "" : ": ", row.reasons);
    }
    if (!row.warnings.empty()) text += fmt::format("{:<10} {}\n", "", row.warnings);
  }
  return text;
}

std::string ReportTable::csv() const {
  std::string text = csvLine(titles());
  for (const TableRow& row : rows_) text += csvLine(cellsOf(row));
  return text;
}

std::string ReportTable::html() const {
  PlainPage page("Reports of Vorantis autosetup");
  page.note(Wording::counted(rows_.size(), "report"));
  page.beginTable(titles());
  for (const TableRow& row : rows_) page.row(cellsOf(row), styleOf(row));
  page.endTable();
  return page.take();
}
