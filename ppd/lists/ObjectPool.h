// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <memory>

/// Makes shared objects, several in one allocation: one for each line of a PPD would cost a run 4 % more instructions.
/// All of them live as long as any of them is used. Tested in tests/ppd/ObjectPoolTest.cpp.
template <class Object>
class ObjectPool {
 public:
  /// A new object, made of `source`.
  template <class Source>
  std::shared_ptr<Object> make(const Source& source) {
    if (objects_ == nullptr) objects_ = std::make_shared<std::deque<Object>>();
    return {objects_, &objects_->emplace_back(source)};
  }

 private:
  std::shared_ptr<std::deque<Object>> objects_;
};
