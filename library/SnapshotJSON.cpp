// SPDX-License-Identifier: MIT
#include <algorithm>
#include <nlohmann/json.hpp>
#include <unordered_map>

#include "library/Snapshot.h"

namespace snapshot {
namespace {

constexpr std::size_t kDeepestNesting = 64;

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
    errorPosition_ = position;
    return false;
  }

  Value take(std::string_view text) {
    if (error_.empty() && root_) return std::move(*root_);
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(errorPosition_, text.size()));
    const auto line = std::count(text.begin(), end, '\n') + 1;
    throw Error("line " + std::to_string(line) + ": " + (error_.empty() ? "a value is expected" : error_));
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
    if (open_.size() == kDeepestNesting) {
      error_ = "nested deeper than 64 levels";
      return false;
    }
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
        object->emplace_back(std::move(closed.keys[place]), std::move(element));
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
  std::size_t errorPosition_ = 0;
};

}  // namespace

Value parseJSON(std::string_view text) {
  Builder builder;
  nlohmann::json::sax_parse(text.begin(), text.end(), &builder);
  return builder.take(text);
}

}  // namespace snapshot
