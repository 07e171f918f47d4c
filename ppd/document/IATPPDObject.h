// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "ppd/lines/PPDLineType.h"
#include "ppd/lines/StatementString.h"
#include "ppd/lists/ObjectList.h"

/// What every object of the PPD tree does: takes lines one by one, and gives them back.
class IATPPDObject : public Listed<IATPPDObject> {
 public:
  /// Takes a line of an object. It lives at least as long as the object is not changed.
  using TakeString = std::function<void(const StatementString& string)>;

  virtual ~IATPPDObject() = default;

  /// Takes one more line.
  virtual void addString(const StatementString& string, PPDLineType type) = 0;

  /// The object's lines in output order, as a new list.
  StatementStrings strings() const {
    StatementStrings list;
    giveStringsTo([&list](const StatementString& string) { list.push_back(string); });
    return list;
  }

  /// Gives the object's lines to the function, one after another in output order.
  virtual void giveStringsTo(const TakeString& take) const = 0;

 protected:
  IATPPDObject() = default;
  IATPPDObject(const IATPPDObject&) = delete;
  IATPPDObject& operator=(const IATPPDObject&) = delete;
};
