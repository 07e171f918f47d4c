// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Writes JSON in ASCII as it goes, which takes a fraction of the time that a tree of values and its text take. The
/// caller keeps to the form: members in objects, values in lists.
class JSONWriter {
 public:
  void beginObject() { open('{'); }
  void beginObject(std::string_view key) { openMember(key, '{'); }
  void endObject() { close('}'); }
  void beginList() { open('['); }
  void beginList(std::string_view key) { openMember(key, '['); }
  void endList() { close(']'); }

  /// Bytes that are no UTF-8 are made visible (Wording::visible).
  void value(std::string_view text);
  void member(std::string_view key, std::string_view text);
  void member(std::string_view key, const char* text) { member(key, std::string_view(text)); }
  void member(std::string_view key, const std::string& text) { member(key, std::string_view(text)); }
  void member(std::string_view key, const std::optional<std::string>& text);
  void member(std::string_view key, std::nullopt_t /*null*/) { raw(key, "null"); }
  void member(std::string_view key, std::same_as<bool> auto flag) { raw(key, flag ? "true" : "false"); }
  void member(std::string_view key, std::integral auto number) requires(!std::same_as<decltype(number), bool>) {
    raw(key, std::to_string(number));
  }

  /// The text; nothing may be written afterwards.
  std::string take();

 private:
  void open(char bracket);
  void openMember(std::string_view key, char bracket);
  void close(char bracket);
  void next();
  void key(std::string_view name);
  void raw(std::string_view name, std::string_view token);
  void valid(std::string_view text);
  void quoted(std::string_view text);
  void escaped(char32_t character);

  std::string json_;
  std::size_t depth_ = 0;
  bool isFirst_ = true;  // in its object or list
};
