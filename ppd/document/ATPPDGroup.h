// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ppd/document/ATPPDCompoundObject.h"
#include "ppd/document/ATPPDOption.h"
#include "ppd/lists/Found.h"

/// Everything between an OpenGroup statement and its CloseGroup statement (PPD 4.3).
class ATPPDGroup : public ATPPDCompoundObject {
 public:
  explicit ATPPDGroup(std::shared_ptr<Budget> budget = nullptr) : ATPPDCompoundObject(std::move(budget)) {}

  /// A new group whose first object holds the OpenGroup statement; `budget` is the document's, or null.
  static std::shared_ptr<ATPPDGroup> groupWithString(const StatementString& string,
                                                     std::shared_ptr<Budget> budget = nullptr);

  /// Takes one line of the block; a line of no known type is dropped and logged.
  void addString(const StatementString& string, PPDLineType type) override;

  /// The group's keyword, worked out once from its first line. Without a translation text behind it, it runs to the end
  /// of the statement and keeps the line end: that is meant. Throws ATException for a group without lines.
  const std::string& name() const;

  /// The first option of this name, or null. The options in front of it are asked for their names, those behind it are
  /// not.
  std::shared_ptr<ATPPDOption> optionForName(std::string_view name) const;

  /// The options opened inside the group, in order.
  const std::vector<std::shared_ptr<ATPPDOption>>& options() const { return options_; }

 private:
  std::vector<std::shared_ptr<ATPPDOption>> options_;
  mutable Found<ATPPDOption> found_;
  mutable std::optional<std::string> name_;
};
