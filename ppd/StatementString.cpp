// SPDX-License-Identifier: MIT
#include "ppd/StatementString.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>

namespace {

constexpr std::size_t kStorageBlockSize = std::size_t{64} * 1024;

// Asks for the block's pages in one system call: a page fault for each of them costs twice as much. A kernel that does
// not know the request leaves it at the faults.
void makeResident([[maybe_unused]] void* block, [[maybe_unused]] std::size_t size) {
#ifdef MADV_POPULATE_WRITE
  const auto pageSize = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  void* firstPage = block;
  if (std::align(pageSize, pageSize, firstPage, size) == nullptr) return;  // `size` becomes what is left from there on
  madvise(firstPage, size / pageSize * pageSize, MADV_POPULATE_WRITE);
#endif
}

}  // namespace

StatementString::Block* StatementString::Block::make(std::size_t size) {
  return ::new (::operator new(sizeof(Block) + size)) Block{0};
}

void StatementString::free(Block* block) {
  ::operator delete(block);
}

StatementString::StatementString(std::string_view text) {
  if (text.empty()) return;
  if (text.size() > std::numeric_limits<std::uint32_t>::max()) throw std::length_error("statement string");
  block_ = Block::make(text.size());
  block_->users = 1;
  size_ = static_cast<std::uint32_t>(text.size());
  std::memcpy(block_->bytes(), text.data(), text.size());
}

char* StatementString::Storage::room(std::size_t size) {
  if (block_ == nullptr || used_ + size > kStorageBlockSize) {
    Block* fresh = Block::make(kStorageBlockSize);
    makeResident(fresh, sizeof(Block) + kStorageBlockSize);
    fresh->users = 1;
    release(block_);
    block_ = fresh;
    used_ = 0;
  }
  return block_->bytes() + used_;
}

StatementString StatementString::Storage::take(std::size_t size) {
  StatementString string(block_, static_cast<std::uint32_t>(used_), static_cast<std::uint32_t>(size));
  used_ += size;
  return string;
}
