// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>

#include "ppd/document/IATPPDObject.h"
#include "ppd/document/LineList.h"

/// An object of the tree that is made of whole lines.
class ATPPDObject : public IATPPDObject {
 public:
  ATPPDObject() = default;
  /// Holds the line.
  explicit ATPPDObject(const StatementString& line) : container_(line) {}

  /// A new plain object that holds the line (always of this class, also when called on a subclass).
  static std::shared_ptr<ATPPDObject> objectWithString(const StatementString& string, PPDLineType /*type*/) {
    return std::make_shared<ATPPDObject>(string);
  }

  /// Appends the line to `container`; the type is not looked at and not kept.
  void addString(const StatementString& string, PPDLineType /*type*/) override { container_.push_back(string); }
  void giveStringsTo(const TakeString& take) const override {
    for (std::size_t index = 0; index < container_.size(); ++index) take(container_[index]);
  }

  /// The bytes of the lines that are written.
  std::size_t sizeOfLines() const {
    std::size_t size = 0;
    giveStringsTo([&size](const StatementString& string) { size += string.size(); });
    return size;
  }

  /// The lines as they were given, in order.
  const LineList& container() const { return container_; }

 private:
  LineList container_;
};
