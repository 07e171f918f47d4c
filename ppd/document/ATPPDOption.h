// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ppd/document/ATPPDChoice.h"
#include "ppd/document/ATPPDCompoundObject.h"
#include "ppd/lists/NameIndex.h"
#include "ppd/lists/PartIndex.h"

/// A UI option: everything between an OpenUI statement and its CloseUI statement (PPD 4.3).
class ATPPDOption : public ATPPDCompoundObject {
 public:
  using ChoiceList = ObjectList<ATPPDChoice>;

  explicit ATPPDOption(std::shared_ptr<Budget> budget = nullptr);

  /// A new option whose first object holds the OpenUI statement; `budget` is the document's, or null.
  static std::shared_ptr<ATPPDOption> optionWithString(const StatementString& string,
                                                       std::shared_ptr<Budget> budget = nullptr);

  /// Takes one line of the block; a line of a type that has no place in one is dropped and logged.
  void addString(const StatementString& string, PPDLineType type) override;

  /// The choices in the order in which they were read or added. A choice that was added to a block without a CloseUI
  /// statement at its end is listed here and is no child, so it is not written.
  const ChoiceList& choices() const { return choices_; }

  /// The default statement as it was read, or absent.
  const std::optional<StatementString>& defChoice() const { return defChoice_; }
  void setDefChoice(std::optional<StatementString> string) { defChoice_ = std::move(string); }

  /// The option's keyword, taken from the default statement and never from the OpenUI statement: an option without a
  /// default has the empty name. Worked out at the first request and kept, whatever `defChoice` becomes later.
  const std::string& name() const;

  /// The choice that the default statement names; absent while there is no default statement with a colon. Kept
  /// once it was found.
  const std::optional<std::string>& defaultValue() const;

  /// Adds a choice behind all others, in front of the CloseUI statement when the block ends with it; otherwise the
  /// choice is listed and not written. A choice that is listed already is not added again; null is ignored.
  void addChoice(const std::shared_ptr<ATPPDChoice>& choice);

  /// Removes this very choice (which may be null) from the choices and from the children.
  void removeChoice(std::shared_ptr<ATPPDChoice> choice);

  /// The first choice of this name, or null.
  std::shared_ptr<ATPPDChoice> choiceForName(std::string_view name) const;

  /// The first choice whose code contains `part`, or null. The empty string is contained in nothing.
  std::shared_ptr<ATPPDChoice> choiceWithCodeContaining(std::string_view part) const;

  /// "object: name", for messages.
  std::string description() const;

 private:
  bool endsWithCloseUI() const;

  ChoiceList choices_;
  // An earlier setup leaves a choice line for each medium and language, and every medium is looked for by its ID.
  mutable NameIndex<ATPPDChoice> choiceNames_;
  mutable PartIndex choiceCodes_;
  mutable ChoiceList::Position codesInIndex_ = 1;  // of all choices at positions below
  std::optional<StatementString> defChoice_;
  mutable std::optional<std::string> name_;
  mutable std::optional<std::string> defaultValue_;
};
