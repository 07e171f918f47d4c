// SPDX-License-Identifier: MIT
#pragma once

#include "ppd/PPDLineType.h"
#include "ppd/StatementString.h"

/// What every object of the PPD tree does: takes lines one by one, and gives them back.
class IATPPDObject {
 public:
  virtual ~IATPPDObject() = default;

  /// Takes one more line.
  virtual void addString(StatementString string, PPDLineType type) = 0;

  /// The object's lines in output order, as a new list.
  StatementStrings strings() const {
    StatementStrings all;
    appendStringsTo(all);
    return all;
  }

  /// Appends the object's lines, in output order, to `list`.
  virtual void appendStringsTo(StatementStrings& list) const = 0;

 protected:
  IATPPDObject() = default;
  IATPPDObject(const IATPPDObject&) = delete;
  IATPPDObject& operator=(const IATPPDObject&) = delete;
};
