// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

class DeviceMap;

/// A value that the device-model library gave: a string, an integer, a real number, a boolean, a list, a map, or
/// absent; or of a kind that nobody here has a use for (a date, say), which is carried along: it takes its place,
/// is formatted by its description, and is of the wrong type wherever text, a list or a map is needed. Lists and maps
/// are shared by the values that are copied from one another, so a change that is made in one place is seen in the
/// other; strings and numbers are not.
class DeviceValue {
 public:
  using List = std::vector<DeviceValue>;
  using ListPtr = std::shared_ptr<List>;
  using MapPtr = std::shared_ptr<DeviceMap>;

  DeviceValue() = default;  ///< absent
  DeviceValue(std::string text)
      : value_(std::make_shared<const std::string>(std::move(text))) {}  // NOLINT(google-explicit-constructor)
  DeviceValue(const char* text) : DeviceValue(std::string(text)) {}      // NOLINT(google-explicit-constructor)
  DeviceValue(std::int64_t number) : value_(number) {}                   // NOLINT(google-explicit-constructor)
  DeviceValue(std::uint64_t number) : value_(number) {}                  // NOLINT(google-explicit-constructor)
  DeviceValue(double number) : value_(number) {}                         // NOLINT(google-explicit-constructor)
  DeviceValue(bool flag) : value_(flag) {}                               // NOLINT(google-explicit-constructor)
  DeviceValue(ListPtr list) : value_(std::move(list)) {}                 // NOLINT(google-explicit-constructor)
  DeviceValue(MapPtr map) : value_(std::move(map)) {}                    // NOLINT(google-explicit-constructor)
  DeviceValue(std::optional<std::string> text);                          // NOLINT(google-explicit-constructor)

  /// A value of a kind without a use, by its description.
  static DeviceValue ofOtherKind(std::string description);

  bool isAbsent() const { return std::holds_alternative<std::monostate>(value_); }
  /// The string, list or map, or null when the value is none.
  const std::string* text() const;
  ListPtr list() const;
  MapPtr map() const;
  /// The number or the boolean, or null when the value is none of this type.
  const std::int64_t* integer() const { return std::get_if<std::int64_t>(&value_); }
  const std::uint64_t* unsignedInteger() const { return std::get_if<std::uint64_t>(&value_); }
  const double* real() const { return std::get_if<double>(&value_); }
  const bool* flag() const { return std::get_if<bool>(&value_); }
  bool isOfOtherKind() const { return std::holds_alternative<OtherKind>(value_); }

  /// Whether this is a string with these bytes. A value of another type equals no string.
  bool equals(std::string_view string) const { return text() != nullptr && *text() == string; }

  /// The string, for a use that needs text; absent stays absent. Throws ATException for a value of another type;
  /// `use` says in its reason what the text was for.
  std::optional<std::string> textFor(const char* use) const;

  /// The value of the key, or absent; an absent value has no keys. Throws ATException for what is not a map.
  DeviceValue valueForKey(std::string_view key) const;

  /// The value as it is formatted into statements and messages: strings as they stand, integers in decimal, booleans
  /// as 1 and 0, "(null)" when absent, lists as "(a, b)" and maps as "{key = value; }".
  std::string description() const;

 private:
  // Texts are shared, too, so that copying a value cannot fail. A libstdc++ 12 variant that holds a std::string by
  // value is not destroyed safely when copying the string runs out of memory.
  using TextPtr = std::shared_ptr<const std::string>;
  struct OtherKind {
    TextPtr description;
  };
  std::variant<std::monostate, TextPtr, std::int64_t, std::uint64_t, double, bool, ListPtr, MapPtr, OtherKind> value_;
};

/// An ordered map from key to value. Keys are unique; the order is the order of insertion. A key of the library's that
/// is no text keeps its place in the order, under its description; looking for a text does not find it.
class DeviceMap {
 public:
  using Entry = std::pair<std::string, DeviceValue>;

  /// Sets the key's value, in place when the key is there already. An absent value takes the key out.
  void set(std::string_view key, DeviceValue value);
  /// Adds a key that is known not to be there yet, in constant time.
  void add(std::string key, DeviceValue value) { entries_.emplace_back(std::move(key), std::move(value)); }
  /// Adds a key that is no text.
  void addOtherKey(std::string description, DeviceValue value);
  DeviceValue get(std::string_view key) const;

  const std::vector<Entry>& entries() const { return entries_; }
  /// Whether the key of the entry with this index is no text.
  bool isOtherKey(std::size_t index) const;
  std::size_t size() const { return entries_.size(); }

 private:
  std::size_t indexOf(std::string_view key) const;

  std::vector<Entry> entries_;
  std::vector<std::size_t> otherKeys_;  // indexes of entries whose key is no text, ascending
};
