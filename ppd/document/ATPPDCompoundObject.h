// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <utility>

#include "ppd/document/IATPPDObject.h"
#include "ppd/lists/Budget.h"
#include "ppd/lists/ObjectList.h"

/// An object of the tree that is made of other objects, which it owns. The objects of a document share its budget.
class ATPPDCompoundObject : public IATPPDObject {
 public:
  using PPDObjectList = ObjectList<IATPPDObject>;

  /// Null: no budget, as for an object that belongs to no document.
  explicit ATPPDCompoundObject(std::shared_ptr<Budget> budget = nullptr) : budget_(std::move(budget)) {}

  /// Abstract: throws ATException unless a subclass overrides it.
  void addString(const StatementString& string, PPDLineType type) override;
  /// The lines of every child, in child order.
  void giveStringsTo(const TakeString& take) const override;

  /// The children in order.
  const PPDObjectList& PPDObjects() const { return PPDObjects_; }
  /// Puts the objects of another list in their place; what becomes of that list later does not show here.
  virtual void setPPDObjects(const PPDObjectList& objects);

  /// Adds at the end. The object is shared with the caller; throws ATException for null.
  void appendObjectToPPDObjects(std::shared_ptr<IATPPDObject> object);
  /// Inserts before the child with this index, counted from 0; the number of children appends. Throws ATException
  /// for a greater index and for null.
  void insertObjectToPPDObjects(std::shared_ptr<IATPPDObject> object, std::size_t atIndex);
  /// Removes this very object, the first in list order; does nothing for null or for what is not a child.
  void removeObjectFromPPDObjects(const IATPPDObject* object);

 protected:
  /// The children, for the class's own edits.
  PPDObjectList& editablePPDObjects() { return PPDObjects_; }

  const std::shared_ptr<Budget>& sharedBudget() const { return budget_; }

 private:
  std::shared_ptr<Budget> budget_;
  PPDObjectList PPDObjects_;
};
