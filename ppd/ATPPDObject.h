// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "ppd/IATPPDObject.h"

/// An object of the tree that is made of whole lines.
class ATPPDObject : public IATPPDObject {
 public:
  ATPPDObject() = default;

  /// A new plain object that holds the line (always of this class, also when called on a subclass).
  static std::shared_ptr<ATPPDObject> objectWithString(StatementString string, PPDLineType type);

  /// Appends the line to `container`; the type is not looked at and not kept.
  void addString(StatementString string, PPDLineType type) override;
  void appendStringsTo(StatementStrings& list) const override;

  /// The lines as they were given, in order.
  const StatementStrings& container() const { return container_; }

 private:
  StatementStrings container_;
};
