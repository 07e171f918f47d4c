// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "explain/report/Report.h"
#include "ppd/document/ATPPD.h"

/// The statements of a document at one moment. Objects keep their identity while a document is edited and their order
/// never changes, so two such moments are compared in one pass, whatever their texts.
class DocumentChanges {
 public:
  /// Shares the document's objects.
  explicit DocumentChanges(const ATPPD& ppd);

  /// What happened from this moment to the other one, in document order.
  std::vector<Report::Change> to(const DocumentChanges& later) const;

 private:
  struct Statement {
    std::shared_ptr<const IATPPDObject> object;
    std::string text;
  };
  void collect(const ATPPDCompoundObject& compound);

  std::vector<Statement> statements_;
};
