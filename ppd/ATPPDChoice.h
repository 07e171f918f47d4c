// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ppd/ATPPDObject.h"

/// One choice of a UI option, `*option name/text: "code"`, with its further lines if it has any (PPD 4.3).
class ATPPDChoice : public ATPPDObject {
 public:
  /// Language code and localized text, in the order in which the lines are written.
  using Localizations = std::vector<std::pair<std::string, std::string>>;

  ATPPDChoice() = default;

  /// A new choice that holds the line.
  static std::shared_ptr<ATPPDChoice> choiceWithString(const StatementString& string);

  /// A new choice from its parts: the choice line, then one line `*language.option name/text: ""` for each
  /// localization. Null when the choice line cannot be made; no limit applies to the localized lines. The choice
  /// belongs to no option yet.
  static std::shared_ptr<ATPPDChoice> initWithName(const std::string& name, const std::string& text,
                                                   const std::optional<std::string>& code,
                                                   const std::string& optionName, const Localizations& localizations);

  /// The choice line, `*option name/text: "code"` and a line feed; an absent code is written as the empty one.
  /// Absent when the name is longer than CUPS takes, the option's keyword is empty, or a physical line of the result
  /// is too long. The text is not checked.
  static std::optional<std::string> choiceStringWithName(const std::string& name, const std::string& optionName,
                                                         const std::string& text,
                                                         const std::optional<std::string>& code);

  /// The choice's keyword; worked out once. Absent while the choice has no lines.
  const std::optional<std::string>& name() const;
  /// What stands between the quotes of the first line; absent without two quotes. Further lines are not looked at.
  const std::optional<std::string>& code() const;

 private:
  mutable std::optional<std::string> name_;
  mutable std::optional<std::string> code_;
};
