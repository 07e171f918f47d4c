// SPDX-License-Identifier: MIT
#include "ppd/IATPPDObject.h"

namespace {

class ListSink : public IStatementSink {
 public:
  explicit ListSink(StatementStrings& list) : list_(list) {}
  void take(const StatementString& string) override { list_.push_back(string); }

 private:
  StatementStrings& list_;
};

}  // namespace

StatementStrings IATPPDObject::strings() const {
  StatementStrings list;
  ListSink sink(list);
  giveStringsTo(sink);
  return list;
}
