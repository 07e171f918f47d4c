// SPDX-License-Identifier: MIT
#include "ppd/ATPPDObject.h"

#include <utility>

std::shared_ptr<ATPPDObject> ATPPDObject::objectWithString(StatementString string, PPDLineType type) {
  auto object = std::make_shared<ATPPDObject>();
  object->addString(std::move(string), type);
  return object;
}

void ATPPDObject::addString(StatementString string, PPDLineType /*type*/) {
  container_.push_back(std::move(string));
}

void ATPPDObject::giveStringsTo(IStatementSink& sink) const {
  for (std::size_t index = 0; index < container_.size(); ++index) sink.take(container_[index]);
}
