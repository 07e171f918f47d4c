// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ppd/document/ATPPDObject.h"
#include "ppd/lines/TokenScanner.h"
#include "ppd/lists/Budget.h"

/// One main-keyword statement, `*name spec/text: value` (PPD 4.3). It keeps its lines as they were read and takes its
/// four parts out of them only when asked; a change of a part composes one canonical line, "*name spec/text: value" and
/// a line feed, which is then written in place of the lines.
///
/// A part that was found or set stays as it is, whatever the lines become; one that is absent is looked for again at
/// every request, in the line as it is written then.
class ATPPDAttribute : public ATPPDObject, public Listed<ATPPDAttribute> {
 public:
  /// UTF-8, or absent. What the getters return is valid until the attribute changes or goes.
  using Part = std::optional<std::string_view>;

  ATPPDAttribute() = default;
  /// Holds the line.
  explicit ATPPDAttribute(const StatementString& line) : ATPPDObject(line) {}

  /// A new attribute that holds the line as a Statement.
  static std::shared_ptr<ATPPDAttribute> attributeWithString(const StatementString& string);

  /// A new attribute in canonical form, or null when the name is absent or empty. Spec and text are kept as given;
  /// an absent or empty value becomes two double quotes.
  static std::shared_ptr<ATPPDAttribute> initWithName(const Part& name, const Part& spec, const Part& text,
                                                      const Part& value);

  void addString(const StatementString& string, PPDLineType type) override;
  void giveStringsTo(const TakeString& take) const override;

  /// The main keyword without the asterisk.
  Part name() const;
  /// The option keyword, between the name and the slash or colon.
  Part spec() const;
  /// The translation text, between the slash and the colon.
  Part text() const;
  /// What follows the first colon, trimmed, double quotes kept; of several lines what reaches to the closing quote.
  /// A long one costs visits of the document's budget.
  Part value() const;

  /// Replace the part and compose the canonical line. Only a part that is set to itself (the very bytes that this
  /// attribute's getter returned, or absent to absent) changes nothing: an equal string composes the line.
  virtual void setText(const Part& text);
  virtual void setValue(const Part& value);

  /// The parts of one line, as views into it; spec and text need the attribute's own name in front of them.
  static Part nameFromAttributeString(std::string_view line);
  Part specFromAttributeString(std::string_view line) const;
  Part textFromAttributeString(std::string_view line) const;
  static Part valueFromAttributeString(std::string_view line);
  /// The value of a statement of several lines.
  static std::optional<std::string> valueFromAttributeStrings(const LineList& lines);

  /// From which budget changes are spent (not owned, must live as long as it is set here); null: from none. A document
  /// gives its own to the attributes that it has.
  void setBudget(Budget* budget) { budget_ = budget; }

  /// Composes the canonical line from the four parts. A text without a spec is left out; an absent name or value
  /// prints as "(null)".
  void updateAttributeString();
  /// The canonical line, present once the attribute was built from parts or changed.
  std::optional<StatementString> attributeString() const;
  void setAttributeString(std::optional<StatementString> string);

 protected:
  /// Makes this attribute from parts; false, and nothing done, when the name is absent or empty.
  bool initializeWithName(const Part& name, const Part& spec, const Part& text, const Part& value);

 private:
  using OwnPart = std::optional<std::string>;
  // What the attribute holds beside the lines that were read; most attributes never change and need none of it.
  struct Settled {
    OwnPart name, spec, text, value;
    std::optional<StatementString> line;
  };
  enum Found : std::uint8_t { kName = 1, kSpec = 2 };

  Settled& settled() const;
  bool isCanonical() const { return settled_ != nullptr && settled_->line; }
  Part firstLine() const;
  std::optional<TokenScanner> scannerBehindName(std::string_view line) const;
  template <class Find>
  Part part(OwnPart Settled::*which, Found bit, Find find) const;
  template <class Find>
  Part ownPart(OwnPart Settled::*which, Find find) const;
  void settleFoundParts() const;
  void setPart(OwnPart Settled::*which, const Part& part);

  mutable std::uint8_t found_ = 0;  // the parts that were found in the line and are not settled: they are read there
  Budget* budget_ = nullptr;
  mutable std::unique_ptr<Settled> settled_;
};
