// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

/// An ordered list of shared objects that is filled by appending and then edited in the middle: inserting before or
/// after a place, and finding and removing an object by identity, take constant time however long the list is.
/// An object may stand in the list more than once.
///
/// The objects are nodes of a linked list that live in one vector; a node keeps its place in the vector, its
/// `Position`, for as long as the list lives. Positions grow in the order of insertion, so in a list that is only
/// appended to they are in list order. Tested in tests/ppd/ObjectListTest.cpp.
template <class Object>
class ObjectList {
 public:
  using Position = std::uint32_t;

  class Iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = std::shared_ptr<Object>;
    using difference_type = std::ptrdiff_t;
    using pointer = const value_type*;
    using reference = const value_type&;

    Iterator(const ObjectList* list, Position position) : list_(list), position_(position) {}
    const std::shared_ptr<Object>& operator*() const { return list_->nodes_[position_].object; }
    Iterator& operator++() {
      position_ = list_->nodes_[position_].next;
      return *this;
    }
    bool operator==(const Iterator& other) const { return position_ == other.position_; }
    bool operator!=(const Iterator& other) const { return !(*this == other); }
    Position position() const { return position_; }

   private:
    const ObjectList* list_;
    Position position_;
  };

  Iterator begin() const { return {this, nodes_.front().next}; }
  Iterator end() const { return {this, kEnd}; }
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }

  /// The first or last object; the list must not be empty.
  const std::shared_ptr<Object>& front() const { return nodes_[nodes_.front().next].object; }
  const std::shared_ptr<Object>& back() const { return nodes_[lastPosition()].object; }
  Position lastPosition() const { return nodes_.front().previous; }
  const std::shared_ptr<Object>& at(Position position) const { return nodes_[position].object; }

  Position append(std::shared_ptr<Object> object) { return insertBefore(kEnd, std::move(object)); }

  /// Inserts before the object at `position`.
  Position insertBefore(Position position, std::shared_ptr<Object> object) {
    const auto added = static_cast<Position>(nodes_.size());
    const Position previous = nodes_[position].previous;
    if (!positions_.empty()) positions_.emplace(object.get(), added);
    nodes_.push_back({std::move(object), previous, position});
    nodes_[previous].next = added;
    nodes_[position].previous = added;
    ++size_;
    return added;
  }

  /// Inserts behind the object at `position`.
  Position insertAfter(Position position, std::shared_ptr<Object> object) {
    return insertBefore(nodes_[position].next, std::move(object));
  }

  /// The position of the object with this index, counted from 0; `index` must be at most `size()`, which gives the
  /// end. Walks from the nearer end.
  Position positionOfIndex(std::size_t index) const {
    Position position = kEnd;
    if (index <= size_ / 2) {
      for (position = nodes_.front().next; index > 0; --index) position = nodes_[position].next;
    } else {
      for (std::size_t left = size_ - index; left > 0; --left) position = nodes_[position].previous;
    }
    return position;
  }

  /// A position of this very object, or absent. When it stands in the list more than once: the earliest inserted.
  std::optional<Position> positionOf(const Object* object) const {
    if (positions_.empty()) indexPositions();
    const auto [first, last] = positions_.equal_range(object);
    if (first == last) return std::nullopt;
    Position earliest = first->second;
    for (auto each = first; each != last; ++each) earliest = std::min(earliest, each->second);
    return earliest;
  }

  void removeAt(Position position) {
    Node& node = nodes_[position];
    nodes_[node.previous].next = node.next;
    nodes_[node.next].previous = node.previous;
    forget(node.object.get(), position);
    node.object.reset();
    --size_;
  }

 private:
  static constexpr Position kEnd = 0;

  struct Node {
    std::shared_ptr<Object> object;
    Position previous;
    Position next;
  };

  // Built at the first question: a list that is only read through and written back never pays for it.
  void indexPositions() const {
    positions_.reserve(size_);
    for (Position position = nodes_.front().next; position != kEnd; position = nodes_[position].next) {
      positions_.emplace(nodes_[position].object.get(), position);
    }
  }

  void forget(const Object* object, Position position) {
    const auto [first, last] = positions_.equal_range(object);
    for (auto each = first; each != last; ++each) {
      if (each->second != position) continue;
      positions_.erase(each);
      return;
    }
  }

  std::vector<Node> nodes_ = std::vector<Node>(1, Node{nullptr, kEnd, kEnd});  // the first node is the end
  std::size_t size_ = 0;
  mutable std::unordered_multimap<const Object*, Position> positions_;
};
