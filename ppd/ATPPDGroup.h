// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ppd/ATPPDCompoundObject.h"
#include "ppd/ATPPDOption.h"
#include "ppd/FirstByName.h"

/// Everything between an OpenGroup statement and its CloseGroup statement (PPD 4.3).
class ATPPDGroup : public ATPPDCompoundObject {
 public:
  ATPPDGroup() = default;

  /// A new group whose first object holds the OpenGroup statement.
  static std::shared_ptr<ATPPDGroup> groupWithString(const StatementString& string);

  /// Takes one line of the block; a line of no known type is dropped and logged.
  void addString(const StatementString& string, PPDLineType type) override;

  /// The group's keyword, worked out once. Without a translation text behind it, it runs to the end of the statement
  /// and keeps the line end: that is meant. Throws ATException for a group without lines.
  const std::string& name() const;

  /// The first option of this name, or null.
  std::shared_ptr<ATPPDOption> optionForName(std::string_view name) const;

  /// How many options have been opened in all groups of this process: as long as this does not change, nobody's options
  /// have.
  static std::size_t optionsOpened() { return optionsOpened_; }

  /// The options opened inside the group, in order.
  const std::vector<std::shared_ptr<ATPPDOption>>& options() const { return options_; }

 private:
  inline static std::size_t optionsOpened_ = 0;
  std::vector<std::shared_ptr<ATPPDOption>> options_;
  FirstByName<ATPPDOption> optionsByName_;
  mutable std::optional<std::string> name_;
};
