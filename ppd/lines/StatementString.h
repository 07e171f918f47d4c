// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A statement string: the text of one physical line as it was read, its own line end included, or a line that an
/// updater composed. It is UTF-8 and never changes. Copies and parts share the bytes, which live as long as the last
/// string that uses them: lines that were read one after another share a block, which saves an allocation for each.
class StatementString {
 public:
  /// The empty string; takes no memory.
  StatementString() = default;
  /// Holds a copy of `text`. Throws std::bad_alloc without memory.
  StatementString(std::string_view text) : size_(text.size()) {  // NOLINT(google-explicit-constructor): a text is one
    if (text.empty()) return;
    const std::shared_ptr<char[]> bytes(new char[text.size()]);
    text.copy(bytes.get(), text.size());
    bytes_ = {bytes, bytes.get()};
  }
  StatementString(const std::string& text)
      : StatementString(std::string_view(text)) {}                                // NOLINT(google-explicit-constructor)
  StatementString(const char* text) : StatementString(std::string_view(text)) {}  // NOLINT(google-explicit-constructor)
  /// The `size` bytes at `bytes`, which shares the ownership of the storage that they lie in.
  StatementString(std::shared_ptr<const char> bytes, std::size_t size) : bytes_(std::move(bytes)), size_(size) {}

  std::string_view view() const { return {bytes_.get(), size_}; }
  operator std::string_view() const { return view(); }  // NOLINT(google-explicit-constructor): it is a text
  std::size_t size() const { return size_; }

  /// `size` bytes from `offset` on, which must lie inside, as a string that shares the storage.
  StatementString part(std::size_t offset, std::size_t size) const {
    return {std::shared_ptr<const char>(bytes_, bytes_.get() + offset), size};
  }

  friend bool operator==(const StatementString& one, const StatementString& other) {
    return one.view() == other.view();
  }

 private:
  std::shared_ptr<const char> bytes_;  // none for the empty string
  std::size_t size_ = 0;
};

using StatementStrings = std::vector<StatementString>;
