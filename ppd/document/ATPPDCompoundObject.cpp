// SPDX-License-Identifier: MIT
#include "ppd/document/ATPPDCompoundObject.h"

#include <utility>

#include "base/ATException.h"

void ATPPDCompoundObject::addString(const StatementString& /*string*/, PPDLineType /*type*/) {
  throw ATException::unsupportedOperation("-[ATPPDCompoundObject addString:ofType:]");
}

void ATPPDCompoundObject::giveStringsTo(const TakeString& take) const {
  for (const auto& object : PPDObjects_) object->giveStringsTo(take);
}

void ATPPDCompoundObject::setPPDObjects(const PPDObjectList& objects) {
  PPDObjects_ = objects;
}

void ATPPDCompoundObject::appendObjectToPPDObjects(std::shared_ptr<IATPPDObject> object) {
  if (object == nullptr) throw ATException::wrongType("no object to append");
  PPDObjects_.append(std::move(object));
}

void ATPPDCompoundObject::insertObjectToPPDObjects(std::shared_ptr<IATPPDObject> object, std::size_t atIndex) {
  if (object == nullptr) throw ATException::wrongType("no object to insert");
  if (atIndex > PPDObjects_.size()) {
    throw ATException::outOfRange("-[ATPPDCompoundObject insertObjectToPPDObjects:atIndex:]");
  }
  PPDObjects_.insertBefore(PPDObjects_.positionOfIndex(atIndex), std::move(object));
}

void ATPPDCompoundObject::removeObjectFromPPDObjects(const IATPPDObject* object) {
  if (object == nullptr) return;
  if (const auto position = PPDObjects_.positionOf(object)) PPDObjects_.removeAt(*position);
}
