// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "ppd/lists/Budget.h"

template <class Object>
class ObjectList;

/// What objects have that stand in an `ObjectList<Object>`: their place there.
template <class Object>
class Listed {
 private:
  friend ObjectList<Object>;
  mutable std::uint32_t place_ = 0;  // in the list that took the object in last; 0: none has
};

/// An ordered list of shared objects that is filled by appending and then edited in the middle: inserting before or
/// after a place, and finding and removing an object by identity, take constant time however long the list is. An
/// object may stand in the list more than once, or in several lists; finding it then walks through the list, and in
/// the former case so does finding any other from then on.
///
/// The objects are nodes of a linked list that live in one vector. An object keeps its `Position` there, counted from 1
/// in the order of insertion, for as long as the list lives; in a list that is only appended to and removed from,
/// positions are in list order. What is at an iterator, and the iterator itself, stay good while others are inserted
/// and removed; an iterator whose own object is removed must not be used again.
///
/// A list with a budget spends a visit for each object that is come to. Tested in tests/ppd/ObjectListTest.cpp.
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
    const std::shared_ptr<Object>& operator*() const { return list_->at(position_); }
    Iterator& operator++() {
      position_ = list_->nodes_[position_].behind;
      return *this;
    }
    bool operator==(const Iterator& other) const { return position_ == other.position_; }
    bool operator!=(const Iterator& other) const { return !(*this == other); }

   private:
    friend ObjectList;
    const ObjectList* list_;
    Position position_;
  };

  ObjectList() : ObjectList(nullptr) {}
  /// `budget` is not owned and must outlive the list; null: what is visited costs nothing.
  explicit ObjectList(Budget* budget) : budget_(budget) {
    nodes_.reserve(8);  // a UI block of few lines; growing from 1 would take three allocations more
    nodes_.push_back({nullptr, kEnd, kEnd});
  }
  /// A copy, also in the place of a move, which would leave a list without its end. It has no budget; a list that is
  /// assigned to keeps its own.
  ObjectList(const ObjectList& other)
      : budget_(nullptr), nodes_(other.nodes_), size_(other.size_), repeats_(other.repeats_) {}
  ObjectList& operator=(const ObjectList& other) {
    if (this == &other) return *this;
    nodes_ = other.nodes_;
    size_ = other.size_;
    repeats_ = other.repeats_;
    return *this;
  }

  Iterator begin() const { return {this, nodes_[kEnd].behind}; }
  Iterator end() const { return {this, kEnd}; }
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }

  /// The last object; the list must not be empty.
  const std::shared_ptr<Object>& back() const { return at(lastPosition()); }
  Position lastPosition() const { return nodes_[kEnd].before; }
  /// The object at a position that was given out, or null when it has been removed.
  const std::shared_ptr<Object>& at(Position position) const {
    if (budget_ != nullptr) budget_->visit();
    return nodes_[position].object;
  }
  /// The object at a position at which a look-up has just found it: not visited again.
  const std::shared_ptr<Object>& found(Position position) const { return nodes_[position].object; }
  /// Whether an object may stand in the list more than once.
  bool holdsRepeats() const { return repeats_; }
  /// All positions that were given out lie below this one.
  Position positionsEnd() const { return static_cast<Position>(nodes_.size()); }

  Position append(std::shared_ptr<Object> object) { return insertBefore(kEnd, std::move(object)); }

  /// Inserts before the object at `position`.
  Position insertBefore(Position position, std::shared_ptr<Object> object) {
    Position& place = placeOf(object.get());
    if (place != 0 && !repeats_) repeats_ = walkTo(object.get()).has_value();
    const Position added = positionsEnd();
    place = added;
    const Position before = nodes_[position].before;
    nodes_.push_back({std::move(object), before, position});
    nodes_[before].behind = added;
    nodes_[position].before = added;
    ++size_;
    return added;
  }

  /// Inserts behind the object at `position`.
  Position insertAfter(Position position, std::shared_ptr<Object> object) {
    return insertBefore(nodes_[position].behind, std::move(object));
  }

  /// The position of the object with this index, counted from 0; `index` must be at most `size()`, which gives the end.
  Position positionOfIndex(std::size_t index) const {
    Position position = nodes_[kEnd].behind;
    for (; index > 0; --index) position = nodes_[position].behind;
    return position;
  }

  /// The position of this very object, the first one in list order, or absent.
  std::optional<Position> positionOf(const Object* object) const {
    const Position place = object == nullptr ? 0 : placeOf(object);
    if (place == 0) return std::nullopt;
    const bool stands = place < nodes_.size() && nodes_[place].object.get() == object;
    return stands && !repeats_ ? place : walkTo(object);
  }

  void removeAt(Position position) {
    Node& node = nodes_[position];
    nodes_[node.before].behind = node.behind;
    nodes_[node.behind].before = node.before;
    node.object.reset();
    --size_;
  }

 private:
  static constexpr Position kEnd = 0;  // behind the last object and before the first

  struct Node {
    std::shared_ptr<Object> object;
    Position before;
    Position behind;
  };

  // 0 for what has never been in a list of this kind.
  static Position& placeOf(const Object* object) { return object->Listed<Object>::place_; }

  std::optional<Position> walkTo(const Object* object) const {
    for (auto each = begin(); each != end(); ++each) {
      if ((*each).get() == object) return each.position_;
    }
    return std::nullopt;
  }

  Budget* budget_;  // not owned
  std::vector<Node> nodes_;
  std::size_t size_ = 0;
  bool repeats_ = false;  // an object may stand here more than once
};
