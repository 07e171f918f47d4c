// SPDX-License-Identifier: MIT
#include "capture/MediaTable.h"

#include <csv.h>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <new>
#include <nlohmann/json.hpp>
#include <regex>
#include <stdexcept>
#include <unordered_map>
#include <vector>

#include "base/Text.h"
#include "readers/IATDataReader.h"
#include "readers/MediaKeys.h"

namespace {

using JSON = nlohmann::ordered_json;
using Fields = std::vector<std::string>;

struct Row {
  std::size_t line;  // of the file, counted from 1; where the row begins
  Fields fields;
};

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

[[noreturn]] void fail(std::size_t line, const std::string& reason) {
  throw std::runtime_error(fmt::format("line {} of the table: {}", line, reason));
}

// Where the line that begins at `start` ends, behind its line end.
std::size_t endOfLine(std::string_view text, std::size_t start) {
  const std::size_t end = text.find_first_of("\r\n", start);
  if (end == std::string_view::npos) return text.size();
  return end + (text.substr(end, 2) == "\r\n" ? 2 : 1);
}

// The rows of a text of comma-separated values. Blanks at the ends of fields count, and empty rows do not.
class Rows {
 public:
  static std::vector<Row> of(std::string_view text) {
    Rows rows;
    csv_parser parser;
    if (csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI) != 0) throw std::bad_alloc();
    csv_set_space_func(&parser, [](unsigned char) { return 0; });
    const bool isWhole = rows.takeLines(text, parser) && csv_fini(&parser, take, endRow, &rows) == 0;
    const int error = csv_error(&parser);
    csv_free(&parser);
    if (isWhole) return std::move(rows.rows_);
    if (error != CSV_EPARSE) throw std::bad_alloc();
    fail(rows.line_, "a quote stands inside a field without quotes, or is not closed (inside quotes it is doubled)");
  }

 private:
  // Line by line, so that it is known where a row begins and where an error is.
  bool takeLines(std::string_view text, csv_parser& parser) {
    for (std::size_t start = 0, end = 0; start < text.size(); start = end) {
      end = endOfLine(text, start);
      ++line_;
      const std::string_view line = text.substr(start, end - start);
      const bool isEmpty = line.find_first_not_of("\r\n") == std::string_view::npos;
      if (isBetweenRows_ && !isEmpty) beginRow();
      if (csv_parse(&parser, line.data(), line.size(), take, endRow, this) != line.size()) return false;
    }
    line_ = rowLine_;  // what is not closed at the end was opened there, or behind it
    return true;
  }

  void beginRow() {
    rowLine_ = line_;
    isBetweenRows_ = false;
  }

  // Called by C, through which no exception may go; a lack of memory ends the process.
  static void take(void* bytes, std::size_t size, void* rows) noexcept {
    auto& self = *static_cast<Rows*>(rows);
    self.fields_.emplace_back(static_cast<const char*>(bytes), size);
  }
  static void endRow(int /*character*/, void* rows) noexcept {
    auto& self = *static_cast<Rows*>(rows);
    self.rows_.push_back({self.rowLine_, std::move(self.fields_)});
    self.fields_.clear();
    self.isBetweenRows_ = true;
  }

  std::vector<Row> rows_;
  Fields fields_;
  std::size_t line_ = 0;
  std::size_t rowLine_ = 1;
  bool isBetweenRows_ = true;
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
  explicit Header(const Row& row) : line_(row.line), titles_(row.fields) {
    const Fields& titles = titles_;
    for (std::size_t index = 0; index < titles.size(); ++index) {
      if (titles[index].empty()) continue;  // as spreadsheets leave columns behind
      const auto* column = std::find(kColumns.begin(), kColumns.end(), titles[index]);
      if (column == kColumns.end()) failOfTitle(titles[index]);
      auto& place = places_[static_cast<std::size_t>(column - kColumns.begin())];
      if (place) fail(line_, fmt::format("two columns are named {}", titles[index]));
      place = index;
    }
    for (const Column needed : {name, ID}) {
      if (!places_[needed]) fail(line_, fmt::format("there is no column {}", kColumns[needed]));
    }
  }

  // Whether the field at this place of a row has a column.
  bool isNamed(std::size_t place) const { return place < titles_.size() && !titles_[place].empty(); }

  // The field of this column; empty when the row has none.
  std::string valueIn(const Row& row, Column column) const {
    const auto place = places_[column];
    return place && *place < row.fields.size() ? row.fields[*place] : "";
  }

 private:
  [[noreturn]] void failOfTitle(const std::string& title) const {
    fail(line_, fmt::format("no column is named \"{}\"; there are: {}.", title, fmt::join(kColumns, ", ")));
  }

  std::size_t line_;
  const Fields& titles_;
  std::array<std::optional<std::size_t>, kCount> places_;
};

// Collects media row by row.
class Media {
 public:
  explicit Media(const Header& header) : header_(header) {}

  void take(const Row& row) {
    checkText(row);
    const Fields& fields = row.fields;
    if (std::all_of(fields.begin(), fields.end(), [](const std::string& field) { return field.empty(); })) return;
    const std::string id = header_.valueIn(row, ID);
    if (id.empty()) fail(row.line, "it has no MediumID");
    const auto found = places_.find(id);
    if (found == places_.end()) {
      warnOfRounding(row, id);
      add(row, id);
    } else {
      checkSame(row, media_[found->second].second);
    }
    addProfile(row, media_[places_.at(id)].second);
  }

  const std::vector<std::string>& warnings() const { return warnings_; }

  // By their IDs.
  JSON asJSON() {
    JSON::object_t object;
    for (auto& [id, medium] : media_) object.emplace_back(std::move(id), std::move(medium));  // unique: no look-ups
    return object;
  }

 private:
  void checkText(const Row& row) const {
    for (std::size_t index = 0; index < row.fields.size(); ++index) {
      const std::string& field = row.fields[index];
      if (!Text::isValidUTF8(field)) fail(row.line, "it is not UTF-8");
      if (field.find('\0') != std::string::npos) fail(row.line, "it holds a zero byte");
      if (!field.empty() && !header_.isNamed(index)) fail(row.line, "it has more fields than there are columns");
    }
  }

  void warnOfRounding(const Row& row, const std::string& id) {
    static const std::regex kNotation("[0-9]+[.,]?[0-9]*[Ee][+]?[0-9]+");
    if (!std::regex_match(id, kNotation)) return;
    warnings_.push_back(fmt::format(
        "line {} of the table: the MediumID {} looks like a number that a spreadsheet has rounded; format the column "
        "as text there, and enter the IDs again",
        row.line, id));
  }

  static std::string keyOf(Column column) { return kColumns[column]; }

  void add(const Row& row, const std::string& id) {
    if (header_.valueIn(row, name).empty()) fail(row.line, "its medium has no Name");
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

  void checkSame(const Row& row, const JSON& medium) const {
    for (const Column column : {name, categoryName, categoryID, parentID, gloss}) {
      const std::string value = header_.valueIn(row, column);
      const JSON& holder =
          column == gloss && medium.contains(StoreKey::properties) ? medium[StoreKey::properties] : medium;
      if (!value.empty() && holder.value(keyOf(column), "") != value) {
        fail(row.line, fmt::format("{} is {}, and was \"{}\" for this medium before", keyOf(column), value,
                                   holder.value(keyOf(column), "")));
      }
    }
  }

  void addProfile(const Row& row, JSON& medium) const {
    JSON profile = JSON::object();
    for (const Column column : {URL, profileName, profileGloss, outputMode}) {
      if (const std::string value = header_.valueIn(row, column); !value.empty()) profile[keyOf(column)] = value;
    }
    if (profile.empty()) return;
    for (const Column needed : {profileName, URL}) {
      if (!profile.contains(keyOf(needed))) fail(row.line, fmt::format("its profile has no {}", keyOf(needed)));
    }
    medium[StoreKey::profiles].push_back(std::move(profile));
  }

  const Header& header_;
  std::vector<std::string> warnings_;
  std::vector<std::pair<std::string, JSON>> media_;
  std::unordered_map<std::string, std::size_t> places_;  // of each ID in `media_`
};

// What spreadsheets write that is no table of comma-separated values in UTF-8. They know no better names for it.
void checkForm(std::string_view table) {
  const bool isUTF16 = table.starts_with("\xFF\xFE") || table.starts_with("\xFE\xFF") ||
                       (table.size() > 1 && (table[0] == '\0' || table[1] == '\0'));
  if (isUTF16) throw std::runtime_error("the table is UTF-16; save it as CSV in UTF-8");
  const std::string_view titles = table.substr(0, endOfLine(table, 0));
  if (Text::contains(titles, ";") && !Text::contains(titles, ",")) {
    fail(1,
         "the fields are separated by semicolons, as spreadsheets do in German and some other languages; they must be "
         "separated by commas, and a quote inside a field in quotes is doubled");
  }
}

}  // namespace

MediaTable::Made MediaTable::snapshotOf(std::string_view table, const std::string& uri,
                                        const std::optional<std::string>& modelName) {
  if (table.starts_with(kByteOrderMark)) table.remove_prefix(kByteOrderMark.size());
  checkForm(table);
  const std::vector<Row> rows = Rows::of(table);
  if (rows.empty()) throw std::runtime_error("the table is empty");
  const Header header(rows.front());
  Media media(header);
  for (std::size_t index = 1; index < rows.size(); ++index) media.take(rows[index]);
  JSON device = {{"uri", uri}, {"modelName", modelName.value_or("")}};
  JSON& mediaInfo = device["dataStore"][VMCustomMediaStorage][StoreKey::media] = media.asJSON();
  if (mediaInfo.empty())
    throw std::runtime_error("the table has no media: nothing stands below the names of its columns");
  const JSON snapshot = {
      {"format", "vorantis-device-snapshot"}, {"formatVersion", 1}, {"devices", JSON::array({std::move(device)})}};
  return {snapshot.dump(2) + "\n", media.warnings()};
}
