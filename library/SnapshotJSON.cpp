// SPDX-License-Identifier: MIT
#include <algorithm>
#include <nlohmann/json.hpp>
#include <unordered_map>

#include "library/Snapshot.h"

namespace snapshot {
namespace {

constexpr std::size_t kDeepestNesting = 64;

[[noreturn]] void fail(std::string_view text, std::size_t position, const std::string& reason) {
  const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(position, text.size()));
  const auto line = std::count(text.begin(), end, '\n') + 1;
  throw Error("line " + std::to_string(line) + ": " + reason);
}

// Builds the values while nlohmann's parser reads the text. Its own tree would search an object's keys one by one for
// each new key, which takes forever on a store with thousands of media.
class Builder : public nlohmann::json_sax<nlohmann::json> {
 public:
  bool null() override { return take(std::nullopt); }
  bool boolean(bool flag) override { return take(Value{flag}); }
  bool number_integer(std::int64_t number) override { return take(Value{number}); }
  bool number_unsigned(std::uint64_t number) override {
    const bool isSigned = number <= static_cast<std::uint64_t>(INT64_MAX);
    return take(isSigned ? Value{static_cast<std::int64_t>(number)} : Value{number});
  }
  bool number_float(double number, const std::string& /*text*/) override { return take(Value{number}); }
  bool string(std::string& text) override { return take(Value{std::move(text)}); }
  bool binary(nlohmann::json::binary_t& /*bytes*/) override { return false; }

  bool start_object(std::size_t /*size*/) override { return open(Value{Value::Object()}); }
  bool start_array(std::size_t /*size*/) override { return open(Value{Value::Array()}); }
  bool key(std::string& name) override {
    open_.back().key = std::move(name);
    return true;
  }
  bool end_object() override { return close(); }
  bool end_array() override { return close(); }

  bool parse_error(std::size_t position, const std::string& /*token*/,
                   const nlohmann::detail::exception& error) override {
    error_ = error.what();
    // It quotes the text up to the error, which may be a byte that is no UTF-8; an error's text must be UTF-8.
    std::replace_if(
        error_.begin(), error_.end(), [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; }, '?');
    errorPosition_ = position;
    return false;
  }

  /// The value that was read. Throws Error when there is none.
  Value result(std::string_view text) {
    if (error_.empty() && root_) return std::move(*root_);
    fail(text, errorPosition_ == 0 ? 0 : errorPosition_ - 1, error_.empty() ? "a value is expected" : error_);
  }

 private:
  // An object or array that is being read. Null members are kept until it is closed, so that a later value of the same
  // key takes the place of the first.
  struct Open {
    Value value;
    std::string key;
    std::vector<std::optional<Value>> elements;
    std::vector<std::string> keys;
    std::unordered_map<std::string, std::size_t> places;
  };

  bool open(Value value) {
    open_.push_back({std::move(value), {}, {}, {}, {}});
    return true;
  }

  bool close() {
    Open closed = std::move(open_.back());
    open_.pop_back();
    for (std::size_t place = 0; place < closed.elements.size(); ++place) {
      if (!closed.elements[place]) continue;
      Value& element = *closed.elements[place];
      if (auto* object = std::get_if<Value::Object>(&closed.value.value)) {
        object->push_back({std::move(closed.keys[place]), std::move(element)});
      } else {
        std::get_if<Value::Array>(&closed.value.value)->push_back(std::move(element));
      }
    }
    return take(std::move(closed.value));
  }

  bool take(std::optional<Value> value) {
    if (open_.empty()) {
      root_ = std::move(value);
      return true;
    }
    Open& parent = open_.back();
    if (parent.value.object() == nullptr) {
      parent.elements.push_back(std::move(value));
      return true;
    }
    const auto [place, isNew] = parent.places.emplace(parent.key, parent.elements.size());
    if (isNew) {
      parent.keys.push_back(parent.key);
      parent.elements.push_back(std::move(value));
    } else {
      parent.elements[place->second] = std::move(value);
    }
    return true;
  }

  std::vector<Open> open_;
  std::optional<Value> root_;
  std::string error_;
  std::size_t errorPosition_ = 0;  // counted from 1
};

// What the parser would take for something else: a zero byte for the end of the text, and nesting for no problem.
void checkBytesAndNesting(std::string_view text) {
  std::size_t nesting = 0;
  bool inString = false;
  for (std::size_t position = 0; position < text.size(); ++position) {
    const char byte = text[position];
    if (byte == '\0') fail(text, position, "a zero byte");
    if (byte == '"') inString = !inString;
    if (inString && byte == '\\') ++position;
    if (inString) continue;
    if (byte == '[' || byte == '{') ++nesting;
    if ((byte == ']' || byte == '}') && nesting > 0) --nesting;
    if (nesting > kDeepestNesting) fail(text, position, "nested deeper than 64 levels");
  }
}

// The position of the quotation mark that ends the string that begins at `position`, or the text's size.
std::size_t endOfString(std::string_view text, std::size_t position) {
  for (;;) {
    position = text.find('"', position + 1);
    if (position == std::string_view::npos) return text.size();
    std::size_t first = position;
    while (text[first - 1] == '\\') --first;
    if ((position - first) % 2 == 0) return position;
  }
}

}  // namespace

std::string withoutDeeperThan(std::size_t deepest, std::string_view text) {
  std::string shallow;
  std::size_t nesting = 0;
  std::size_t taken = 0;  // up to where the text was copied or left out
  for (std::size_t position = 0; position < text.size(); ++position) {
    switch (text[position]) {
      case '"':
        position = endOfString(text, position);
        break;
      case '{':
      case '[':
        if (nesting++ == deepest) shallow += text.substr(taken, position + 1 - taken);
        break;
      case '}':
      case ']':
        if (nesting > 0 && --nesting == deepest) taken = position;
        break;
      default:
        break;
    }
  }
  return nesting > deepest ? shallow : shallow.append(text.substr(std::min(taken, text.size())));
}

Value parseJSON(std::string_view text) {
  checkBytesAndNesting(text);
  Builder builder;
  nlohmann::json::sax_parse(text.begin(), text.end(), &builder);
  return builder.result(text);
}

}  // namespace snapshot
