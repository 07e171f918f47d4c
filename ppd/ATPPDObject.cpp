// SPDX-License-Identifier: MIT
#include "ppd/ATPPDObject.h"

#include <utility>

std::shared_ptr<ATPPDObject> ATPPDObject::objectWithString(const StatementString& string, PPDLineType type) {
  auto object = std::make_shared<ATPPDObject>();
  object->addString(string, type);
  return object;
}

void ATPPDObject::addString(const StatementString& string, PPDLineType /*type*/) {
  container_.push_back(string);
}

void ATPPDObject::giveStringsTo(IStatementSink& sink) const {
  for (std::size_t index = 0; index < container_.size(); ++index) sink.take(container_[index]);
}
