// SPDX-License-Identifier: MIT
#include "ppd/ATPPDCompoundObject.h"

#include <utility>

#include "base/ATException.h"

void ATPPDCompoundObject::addString(const StatementString& /*string*/, PPDLineType /*type*/) {
  throw ATException::unsupportedOperation("-[ATPPDCompoundObject addString:ofType:]");
}

void ATPPDCompoundObject::giveStringsTo(IStatementSink& sink) const {
  for (const auto& object : PPDObjects()) object->giveStringsTo(sink);
}

ATPPDCompoundObject::PPDObjectList& ATPPDCompoundObject::editablePPDObjects() {
  PPDObjects();
  return PPDObjects_;
}

void ATPPDCompoundObject::setPPDObjects(PPDObjectList objects) {
  editablePPDObjects() = std::move(objects);
}

void ATPPDCompoundObject::appendObjectToPPDObjects(std::shared_ptr<IATPPDObject> object) {
  if (object == nullptr) throw ATException::wrongType("no object to append");
  editablePPDObjects().append(std::move(object));
}

void ATPPDCompoundObject::insertObjectToPPDObjects(std::shared_ptr<IATPPDObject> object, std::size_t atIndex) {
  if (object == nullptr) throw ATException::wrongType("no object to insert");
  PPDObjectList& objects = editablePPDObjects();
  if (atIndex > objects.size()) {
    throw ATException::outOfRange("-[ATPPDCompoundObject insertObjectToPPDObjects:atIndex:]");
  }
  objects.insertBefore(objects.positionOfIndex(atIndex), std::move(object));
}

void ATPPDCompoundObject::removeObjectFromPPDObjects(const IATPPDObject* object) {
  if (object == nullptr) return;
  PPDObjectList& objects = editablePPDObjects();
  if (const auto position = objects.positionOf(object)) objects.removeAt(*position);
}
