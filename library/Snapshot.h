// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace snapshot {

/// A JSON value. Members whose value is null are left out of objects, and null elements out of arrays.
struct Value {
  struct Member;
  using Array = std::vector<Value>;
  using Object = std::vector<Member>;

  std::variant<std::string, std::int64_t, std::uint64_t, double, bool, Array, Object> value;

  const std::string* string() const { return std::get_if<std::string>(&value); }
  const Array* array() const { return std::get_if<Array>(&value); }
  const Object* object() const { return std::get_if<Object>(&value); }
  /// The member of an object, or null.
  const Value* member(std::string_view name) const;
  Value* member(std::string_view name);
};

struct Value::Member {
  std::string key;
  Value value;
};

/// Why a snapshot cannot be used, with the member or the line.
struct Error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Eighty times what 2,000 media with 3 profiles have.
inline constexpr std::size_t kMostValues = 4'000'000;

/// Reads JSON text (RFC 8259): UTF-8, objects in the order of the text, of repeated keys the last value at the first
/// one's place. Throws Error for anything else, and for more than 64 levels of nesting or `mostValues`
/// values.
Value parseJSON(std::string_view text, std::size_t mostValues = kMostValues);

/// The text without what stands in the objects and lists that are nested deeper than so many levels: these are empty
/// then. It need not be JSON; what is wrong with the rest stays wrong.
std::string withoutDeeperThan(std::size_t deepest, std::string_view text);

/// One device of a snapshot.
struct Device {
  std::optional<std::string> uri;        ///< absent: matches every URI
  std::optional<std::string> modelName;  ///< absent: matches every model name
  std::optional<Value> familyName;
  std::optional<Value::Object> dataStore;  ///< absent: no store is registered
};

/// A device snapshot: what a device-model library would answer for some devices.
struct Snapshot {
  bool offersServiceInfoWithSpec = true;
  std::vector<Device> devices;

  /// The first device that matches, or null.
  const Device* deviceFor(std::string_view uri, std::string_view modelName) const;

  /// Reads a snapshot of format "vorantis-device-snapshot", version 1. Throws Error for anything else.
  static Snapshot fromJSON(std::string_view text);
  /// The same from a file of at most 64 MiB.
  static Snapshot fromFile(const std::string& path);
  /// The same with empty data stores, whose contents are hardly looked at: in a tenth of the time, for those who have
  /// a hundred files and ask only which devices there are.
  static Snapshot withEmptyStoresFromFile(const std::string& path);
};

}  // namespace snapshot
