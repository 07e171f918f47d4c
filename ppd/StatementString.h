// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A statement string: the text of one physical line as it was read, its own line end included, or a line that
/// an updater composed. It is UTF-8 and never changes; copies share the bytes, which live as long as the last
/// string that uses them. A run on a large PPD holds ten thousand of these and changes a few: sharing is what
/// keeps reading and writing one close to the cost of the reading alone (see bench/).
class StatementString {
 public:
  /// The empty string; takes no memory.
  StatementString() = default;
  /// Holds a copy of `text`. Throws std::length_error above 4 GiB, std::bad_alloc without memory.
  StatementString(std::string_view text);  // NOLINT(google-explicit-constructor): a text is a statement string
  StatementString(const std::string& text)
      : StatementString(std::string_view(text)) {}                                // NOLINT(google-explicit-constructor)
  StatementString(const char* text) : StatementString(std::string_view(text)) {}  // NOLINT(google-explicit-constructor)

  StatementString(const StatementString& other) noexcept
      : block_(other.block_), offset_(other.offset_), size_(other.size_) {
    if (block_ != nullptr) ++block_->users;
  }
  StatementString(StatementString&& other) noexcept
      : block_(std::exchange(other.block_, nullptr)), offset_(other.offset_), size_(std::exchange(other.size_, 0)) {}
  StatementString& operator=(StatementString other) noexcept {
    std::swap(block_, other.block_);
    std::swap(offset_, other.offset_);
    std::swap(size_, other.size_);
    return *this;
  }
  ~StatementString() { release(block_); }  // NOLINT(clang-analyzer-unix.Malloc): it does not follow the count of users

  std::string_view view() const {
    return block_ == nullptr ? std::string_view() : std::string_view(block_->bytes() + offset_, size_);
  }
  operator std::string_view() const { return view(); }  // NOLINT(google-explicit-constructor): it is a text
  std::size_t size() const { return size_; }

  friend bool operator==(const StatementString& one, const StatementString& other) {
    return one.view() == other.view();
  }

  /// `size` bytes from `offset` on, which must lie inside, as a string that shares the storage.
  StatementString part(std::size_t offset, std::size_t size) const {
    return {block_, offset_ + static_cast<std::uint32_t>(offset), static_cast<std::uint32_t>(size)};
  }
  /// Takes `next` in as well when its bytes lie right behind these in the same storage; false otherwise.
  bool join(const StatementString& next) {
    if (block_ != next.block_ || offset_ + size_ != next.offset_) return false;
    size_ += next.size_;
    return true;
  }

  class Storage;

 private:
  // The bytes follow the header in the same allocation. Counted without locks: the tool has one thread.
  struct Block {
    std::uint32_t users;
    char* bytes() { return reinterpret_cast<char*>(this + 1); }
    static Block* make(std::size_t size);
  };
  StatementString(Block* block, std::uint32_t offset, std::uint32_t size)
      : block_(block), offset_(offset), size_(size) {
    if (block_ != nullptr) ++block_->users;
  }
  static void release(Block* block) {
    if (block != nullptr && --block->users == 0) free(block);
  }
  static void free(Block* block);

  Block* block_ = nullptr;  // none for the empty string
  std::uint32_t offset_ = 0;
  std::uint32_t size_ = 0;
};

using StatementStrings = std::vector<StatementString>;

/// Room for lines that are read one after another: each is read straight into place and cut off as a statement
/// string that shares the storage.
class StatementString::Storage {
 public:
  Storage() = default;
  Storage(const Storage&) = delete;
  Storage& operator=(const Storage&) = delete;
  ~Storage() { release(block_); }

  /// Room for `size` bytes (at most 64 KiB), valid until the next call.
  char* room(std::size_t size);
  /// The first `size` bytes of the room given last, as a string of their own.
  StatementString take(std::size_t size);

 private:
  Block* block_ = nullptr;
  std::size_t used_ = 0;
};
