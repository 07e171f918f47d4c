// SPDX-License-Identifier: MIT
#include "capture/MediaTable.h"

#include <csv.h>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <new>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <unordered_map>
#include <vector>

#include "base/Text.h"
#include "readers/IATDataReader.h"
#include "readers/MediaKeys.h"

namespace {

using JSON = nlohmann::ordered_json;
using Row = std::vector<std::string>;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

[[noreturn]] void fail(std::size_t row, const std::string& reason) {
  throw std::runtime_error(fmt::format("row {} of the table: {}", row, reason));
}

// The rows of a text of comma-separated values. Blanks at the ends of fields count, and empty rows do not.
class Rows {
 public:
  static std::vector<Row> of(std::string_view text) {
    Rows rows;
    csv_parser parser;
    if (csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI) != 0) throw std::bad_alloc();
    csv_set_space_func(&parser, [](unsigned char) { return 0; });
    const bool isWhole = csv_parse(&parser, text.data(), text.size(), take, endRow, &rows) == text.size() &&
                         csv_fini(&parser, take, endRow, &rows) == 0;
    const int error = csv_error(&parser);
    csv_free(&parser);
    if (isWhole) return std::move(rows.rows_);
    if (error != CSV_EPARSE) throw std::bad_alloc();
    fail(rows.rows_.size() + 1,
         "a quote stands inside a field without quotes, or is not closed (inside quotes it is doubled)");
  }

 private:
  // Called by C, through which no exception may go; a lack of memory ends the process.
  static void take(void* bytes, std::size_t size, void* rows) noexcept {
    static_cast<Rows*>(rows)->row_.emplace_back(static_cast<const char*>(bytes), size);
  }
  static void endRow(int /*character*/, void* rows) noexcept {
    auto& self = *static_cast<Rows*>(rows);
    self.rows_.push_back(std::move(self.row_));
    self.row_.clear();
  }

  std::vector<Row> rows_;
  Row row_;
};

enum Column { name, ID, categoryName, categoryID, parentID, gloss, profileName, URL, profileGloss, outputMode, kCount };
constexpr std::array<const char*, kCount> kColumns = {StoreKey::name,         StoreKey::ID,
                                                      StoreKey::categoryName, StoreKey::categoryID,
                                                      StoreKey::parentID,     StoreKey::defaultGloss,
                                                      MediaKey::profileName,  MediaKey::profileURL,
                                                      MediaKey::profileGloss, MediaKey::profileOutputMode};

// Which field of a row is which column.
class Header {
 public:
  explicit Header(const Row& titles) : titles_(titles) {
    for (std::size_t index = 0; index < titles.size(); ++index) {
      if (titles[index].empty()) continue;  // as spreadsheets leave columns behind
      const auto* column = std::find(kColumns.begin(), kColumns.end(), titles[index]);
      if (column == kColumns.end()) failOfTitle(titles[index]);
      auto& place = places_[static_cast<std::size_t>(column - kColumns.begin())];
      if (place) fail(1, fmt::format("two columns are named {}", titles[index]));
      place = index;
    }
    for (const Column needed : {name, ID}) {
      if (!places_[needed]) fail(1, fmt::format("there is no column {}", kColumns[needed]));
    }
  }

  // Whether the field at this place of a row has a column.
  bool isNamed(std::size_t place) const { return place < titles_.size() && !titles_[place].empty(); }

  // The field of this column; empty when the row has none.
  std::string valueIn(const Row& row, Column column) const {
    const auto place = places_[column];
    return place && *place < row.size() ? row[*place] : "";
  }

 private:
  [[noreturn]] static void failOfTitle(const std::string& title) {
    const char* separator = title.find(';') == std::string::npos ? "" : " The fields must be separated by commas.";
    fail(1, fmt::format("no column is named \"{}\"; there are: {}.{}", title, fmt::join(kColumns, ", "), separator));
  }

  const Row& titles_;
  std::array<std::optional<std::size_t>, kCount> places_;
};

// Collects media row by row.
class Media {
 public:
  explicit Media(const Header& header) : header_(header) {}

  void take(const Row& row, std::size_t number) {
    checkText(row, number);
    if (std::all_of(row.begin(), row.end(), [](const std::string& field) { return field.empty(); })) return;
    const std::string id = header_.valueIn(row, ID);
    if (id.empty()) fail(number, "it has no MediumID");
    const auto found = places_.find(id);
    if (found == places_.end()) {
      add(row, id, number);
    } else {
      checkSame(row, media_[found->second].second, number);
    }
    addProfile(row, media_[places_.at(id)].second, number);
  }

  // By their IDs.
  JSON asJSON() {
    JSON::object_t object;
    for (auto& [id, medium] : media_) object.emplace_back(std::move(id), std::move(medium));  // unique: no look-ups
    return object;
  }

 private:
  void checkText(const Row& row, std::size_t number) const {
    for (std::size_t index = 0; index < row.size(); ++index) {
      if (!Text::isValidUTF8(row[index])) fail(number, "it is not UTF-8");
      if (row[index].find('\0') != std::string::npos) fail(number, "it holds a zero byte");
      if (!row[index].empty() && !header_.isNamed(index)) fail(number, "it has more fields than there are columns");
    }
  }

  static std::string keyOf(Column column) { return kColumns[column]; }

  void add(const Row& row, const std::string& id, std::size_t number) {
    if (header_.valueIn(row, name).empty()) fail(number, "its medium has no Name");
    JSON medium;
    for (const Column column : {name, ID, categoryName, categoryID}) medium[keyOf(column)] = valueOf(row, column);
    medium[StoreKey::profiles] = JSON::array();
    if (const std::string parent = valueOf(row, parentID); !parent.empty()) medium[keyOf(parentID)] = parent;
    if (const std::string value = valueOf(row, gloss); !value.empty())
      medium[StoreKey::properties] = {{keyOf(gloss), value}};
    places_.emplace(id, media_.size());
    media_.emplace_back(id, std::move(medium));
  }

  std::string valueOf(const Row& row, Column column) const {
    std::string value = header_.valueIn(row, column);
    if (value.empty() && column == categoryName) return "Custom";
    if (value.empty() && column == categoryID) return "CUSTOM";
    return value;
  }

  void checkSame(const Row& row, const JSON& medium, std::size_t number) const {
    for (const Column column : {name, categoryName, categoryID, parentID, gloss}) {
      const std::string value = header_.valueIn(row, column);
      const JSON& holder =
          column == gloss && medium.contains(StoreKey::properties) ? medium[StoreKey::properties] : medium;
      if (!value.empty() && holder.value(keyOf(column), "") != value) {
        fail(number, fmt::format("{} is {}, and was \"{}\" for this medium before", keyOf(column), value,
                                 holder.value(keyOf(column), "")));
      }
    }
  }

  void addProfile(const Row& row, JSON& medium, std::size_t number) const {
    JSON profile = JSON::object();
    for (const Column column : {URL, profileName, profileGloss, outputMode}) {
      if (const std::string value = header_.valueIn(row, column); !value.empty()) profile[keyOf(column)] = value;
    }
    if (profile.empty()) return;
    for (const Column needed : {profileName, URL}) {
      if (!profile.contains(keyOf(needed))) fail(number, fmt::format("its profile has no {}", keyOf(needed)));
    }
    medium[StoreKey::profiles].push_back(std::move(profile));
  }

  const Header& header_;
  std::vector<std::pair<std::string, JSON>> media_;
  std::unordered_map<std::string, std::size_t> places_;  // of each ID in `media_`
};

JSON mediaOf(std::string_view table) {
  if (table.starts_with(kByteOrderMark)) table.remove_prefix(kByteOrderMark.size());
  const std::vector<Row> rows = Rows::of(table);
  if (rows.empty()) throw std::runtime_error("the table is empty");
  const Header header(rows.front());
  Media media(header);
  for (std::size_t index = 1; index < rows.size(); ++index) media.take(rows[index], index + 1);
  return media.asJSON();
}

}  // namespace

std::string MediaTable::snapshotOf(std::string_view table, const std::string& uri,
                                   const std::optional<std::string>& modelName) {
  JSON device = {{"uri", uri}, {"modelName", modelName.value_or("")}};
  device["dataStore"][VMCustomMediaStorage][StoreKey::media] = mediaOf(table);
  const JSON snapshot = {
      {"format", "vorantis-device-snapshot"}, {"formatVersion", 1}, {"devices", JSON::array({std::move(device)})}};
  return snapshot.dump(2) + "\n";
}
