// SPDX-License-Identifier: MIT
#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

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
  explicit Builder(std::size_t mostValues) : mostValues_(mostValues) {}

  bool null() override {
    if (!count()) return false;
    entry().isNull = true;
    return true;
  }
  bool boolean(bool flag) override { return put(flag); }
  bool number_integer(std::int64_t number) override { return put(number); }
  bool number_unsigned(std::uint64_t number) override {
    if (number > static_cast<std::uint64_t>(INT64_MAX)) return put(number);
    return put(static_cast<std::int64_t>(number));
  }
  bool number_float(double number, const std::string& /*text*/) override { return put(number); }
  // Texts are copied: the parser reads the next one into the same memory.
  bool string(std::string& text) override { return put(text); }
  bool binary(nlohmann::json::binary_t& /*bytes*/) override { return false; }

  bool start_object(std::size_t /*size*/) override { return open(true); }
  bool start_array(std::size_t /*size*/) override { return open(false); }
  bool key(std::string& name) override {
    entries_.emplace_back().key = name;
    return true;
  }
  bool end_object() override {
    keepLastOfRepeatedKeys();
    return close<Value::Object>([](Entry& entry) {
      return Value::Member{std::move(entry.key), std::move(entry.value)};
    });
  }
  bool end_array() override {
    return close<Value::Array>([](Entry& entry) { return std::move(entry.value); });
  }

  bool parse_error(std::size_t position, const std::string& /*token*/,
                   const nlohmann::detail::exception& error) override {
    error_ = error.what();
    // It quotes the text up to the error, which may be a byte that is no UTF-8; an error's text must be UTF-8.
    std::replace_if(
        error_.begin(), error_.end(), [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; }, '?');
    errorPosition_ = position;
    return false;
  }

  /// Whether reading ended because an object or array would have been nested too deeply, or of too many values.
  bool isTooDeep() const { return isTooDeep_; }
  bool isTooMuch() const { return values_ > mostValues_; }

  /// The value that was read. Throws Error when there is none.
  Value result(std::string_view text) {
    if (error_.empty() && !entries_.front().isNull) return std::move(entries_.front().value);
    fail(text, errorPosition_ == 0 ? 0 : errorPosition_ - 1, error_.empty() ? "a value is expected" : error_);
  }

 private:
  // A value that belongs to an object or array that is being read; or the whole text's.
  struct Entry {
    std::string key;
    Value value;
    bool isNull = false;  // left out when the object or array is complete
  };
  struct Open {
    bool isObject;
    std::size_t first;  // its first entry
  };

  // The one that the next value is for. In an object its key has made it.
  Entry& entry() {
    const bool isKeyed = !open_.empty() && open_.back().isObject;
    return isKeyed ? entries_.back() : entries_.emplace_back();
  }

  // Whether there may be one value more.
  bool count() { return ++values_ <= mostValues_; }

  template <class Content>
  bool put(const Content& content) {
    if (!count()) return false;
    entry().value.value.template emplace<Content>(content);
    return true;
  }

  bool open(bool isObject) {
    isTooDeep_ = open_.size() == kDeepestNesting;
    if (isTooDeep_ || !count()) return false;
    entry();
    open_.push_back({isObject, entries_.size()});
    return true;
  }

  template <class Container, class Take>
  bool close(Take take) {
    const auto first = entries_.begin() + static_cast<std::ptrdiff_t>(open_.back().first);
    Container& closed = std::prev(first)->value.value.emplace<Container>();
    closed.reserve(entries_.size() - open_.back().first);
    for (auto entry = first; entry != entries_.end(); ++entry) {
      if (!entry->isNull) closed.push_back(take(*entry));
    }
    entries_.erase(first, entries_.end());
    open_.pop_back();
    return true;
  }

  // The last value of a repeated key takes the place of the first one. Entries are sorted for that: keys can be chosen
  // so that they collide in a hash.
  void keepLastOfRepeatedKeys() {
    const auto isEarlier = [](const Entry* left, const Entry* right) {
      const int compared = left->key.compare(right->key);
      return compared == 0 ? left < right : compared < 0;
    };
    sorted_.clear();
    for (std::size_t index = open_.back().first; index < entries_.size(); ++index) sorted_.push_back(&entries_[index]);
    std::sort(sorted_.begin(), sorted_.end(), isEarlier);
    Entry* first = nullptr;
    for (Entry* entry : sorted_) {
      if (first == nullptr || entry->key != first->key) {
        first = entry;
      } else {
        first->value = std::move(entry->value);
        first->isNull = std::exchange(entry->isNull, true);
      }
    }
  }

  std::vector<Entry> entries_;  // of all that is open, the innermost last
  std::vector<Open> open_;
  std::vector<Entry*> sorted_;
  bool isTooDeep_ = false;
  std::size_t mostValues_;
  std::size_t values_ = 0;
  std::string error_;
  std::size_t errorPosition_ = 0;  // counted from 1
};

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

// Where the nesting of JSON gets deeper than is allowed; the text's size when it does not.
std::size_t placeOfDeepestNesting(std::string_view text) {
  std::size_t nesting = 0;
  for (std::size_t position = 0; position < text.size(); ++position) {
    const char byte = text[position];
    if (byte == '"') position = endOfString(text, position);
    if ((byte == '[' || byte == '{') && nesting++ == kDeepestNesting) return position;
    if (byte == ']' || byte == '}') --nesting;
  }
  return text.size();
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

Value parseJSON(std::string_view text, std::size_t mostValues) {
  // The parser would take it for the end of the text.
  if (const std::size_t zero = text.find('\0'); zero != std::string_view::npos) fail(text, zero, "a zero byte");
  Builder builder(mostValues);
  nlohmann::json::sax_parse(text.begin(), text.end(), &builder);
  if (builder.isTooDeep()) fail(text, placeOfDeepestNesting(text), "nested deeper than 64 levels");
  if (builder.isTooMuch()) throw Error("more than " + std::to_string(mostValues) + " values");
  return builder.result(text);
}

}  // namespace snapshot
