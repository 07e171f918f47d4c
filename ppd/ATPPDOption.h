// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ppd/ATPPDChoice.h"
#include "ppd/ATPPDCompoundObject.h"
#include "ppd/FirstByName.h"
#include "ppd/NameIndex.h"
#include "ppd/SubstringIndex.h"

/// A UI option: everything between an OpenUI statement and its CloseUI statement (PPD 4.3).
///
/// Most of a PPD's lines stand in UI blocks, and a run asks for the objects of one or two of them. So the block keeps
/// its lines as they come and makes its objects at the first question for them.
class ATPPDOption : public ATPPDCompoundObject {
 public:
  using ChoiceList = ObjectList<ATPPDChoice>;

  ATPPDOption() = default;

  /// A new option whose first object holds the OpenUI statement.
  static std::shared_ptr<ATPPDOption> optionWithString(const StatementString& string);

  /// Whether lines of this type have a place in a UI block.
  static bool takesLineOfType(PPDLineType type);
  /// Takes one line of the block; a line of a type that has no place in one is dropped and logged.
  void addString(const StatementString& string, PPDLineType type) override;
  void giveStringsTo(IStatementSink& sink) const override;
  const PPDObjectList& PPDObjects() const override;

  /// The choices in the order in which they were read or added. A choice that was added to a block without a CloseUI
  /// statement at its end is listed here and is no child, so it is not written.
  const ChoiceList& choices() const;

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
  /// choice is listed and not written. A choice that is listed already is not added again. The name and the code that
  /// the choice has at this moment are those that look-ups find it by.
  void addChoice(const std::shared_ptr<ATPPDChoice>& choice);

  /// Removes this very choice (which may be null) from the choices and from the children.
  void removeChoice(const std::shared_ptr<ATPPDChoice>& choice);

  /// The first choice of this name, or null.
  std::shared_ptr<ATPPDChoice> choiceForName(std::string_view name) const;

  /// The first choice whose code contains `part`, or null. The empty string is contained in nothing.
  std::shared_ptr<ATPPDChoice> choiceWithCodeContaining(std::string_view part) const;

  /// Whether any choice has a code.
  bool hasChoiceWithCode() const;

  /// "object: name", for messages.
  std::string description() const;

 private:
  struct Line {
    StatementString string;
    PPDLineType type;
  };
  void makeObjects();
  void makeObject(const Line& line);
  bool endsWithCloseUI() const;
  void listChoice(const std::shared_ptr<ATPPDChoice>& choice);
  void indexNames() const;
  void indexCodes() const;
  void indexCode(const ATPPDChoice& choice, ChoiceList::Position position) const;
  std::shared_ptr<ATPPDChoice> walkToName(std::string_view name) const;
  std::shared_ptr<ATPPDChoice> scanForCodeContaining(std::string_view part) const;

  std::vector<Line> lines_;   // read while nobody had asked for objects, and not yet made into any
  bool objectsMade_ = false;  // from the first question on, lines become objects at once
  ChoiceList choices_;
  std::optional<StatementString> defChoice_;
  mutable std::optional<std::string> name_;
  mutable std::optional<std::string> defaultValue_;

  // Look-ups walk the list until that has cost as much as an index would, and use an index from then on.
  mutable std::size_t walks_ = 0;
  mutable std::size_t codeScanCost_ = 0;  // in bytes
  mutable std::optional<NameIndex> nameIndex_;
  mutable std::optional<SubstringIndex> codeIndex_;
  mutable std::optional<bool> hasChoiceWithCode_;
  mutable std::vector<ChoiceList::Position> codePositions_;  // by the code index's text numbers
};
