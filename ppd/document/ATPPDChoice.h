// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ppd/document/ATPPDObject.h"

/// One choice of a UI option, `*option name/text: "code"`, with its further lines if it has any (PPD 4.3).
class ATPPDChoice : public ATPPDObject, public Listed<ATPPDChoice> {
 public:
  /// Language code and localized text, in the order in which the lines are written.
  using Localizations = std::vector<std::pair<std::string_view, std::string_view>>;

  ATPPDChoice() = default;
  /// Holds the line.
  explicit ATPPDChoice(const StatementString& line) : ATPPDObject(line) {}

  /// A new choice that holds the line.
  static std::shared_ptr<ATPPDChoice> choiceWithString(const StatementString& string);

  /// A new choice from its parts: the choice line, then one line `*language.option name/text: ""` for each
  /// localization. Null when the choice line cannot be made; no limit applies to the localized lines. The choice
  /// belongs to no option yet.
  static std::shared_ptr<ATPPDChoice> initWithName(std::string_view name, std::string_view text,
                                                   std::optional<std::string_view> code, std::string_view optionName,
                                                   const Localizations& localizations);

  /// The choice line, `*option name/text: "code"` and a line feed; an absent code is written as the empty one.
  /// Absent when the name is longer than CUPS takes, the option's keyword is empty, or a physical line of the result
  /// is too long. The text is not checked.
  static std::optional<std::string> choiceStringWithName(std::string_view name, std::string_view optionName,
                                                         std::string_view text, std::optional<std::string_view> code);

  /// The choice's keyword; worked out once. Absent while the choice has no lines. Valid as long as the choice.
  std::optional<std::string_view> name() const;
  /// What stands between the quotes of the first line; absent without two quotes. Further lines are not looked at.
  /// Valid as long as the choice.
  std::optional<std::string_view> code() const;

 private:
  // Both lie in the first line, which stays; null as long as they were not found there.
  mutable std::string_view name_;
  mutable std::string_view code_;
};
