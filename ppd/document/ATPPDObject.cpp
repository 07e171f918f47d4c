// SPDX-License-Identifier: MIT
#include "ppd/document/ATPPDObject.h"

#include <utility>

std::shared_ptr<ATPPDObject> ATPPDObject::objectWithString(const StatementString& string, PPDLineType /*type*/) {
  return std::make_shared<ATPPDObject>(string);
}

void ATPPDObject::addString(const StatementString& string, PPDLineType /*type*/) {
  container_.push_back(string);
}

void ATPPDObject::giveStringsTo(const TakeString& take) const {
  const std::size_t count = container_.size();
  for (std::size_t index = 0; index < count; ++index) take(container_[index]);
}
