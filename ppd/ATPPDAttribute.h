// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ppd/ATPPDObject.h"

/// One main-keyword statement, `*name spec/text: value` (PPD 4.3). It keeps its lines as they were read
/// and takes its four parts out of them only when asked; a change of a part composes one canonical line,
/// "*name spec/text: value" and a line feed, which is then written in place of the lines.
///
/// The four parts are caches: a part that is absent is looked for again at every request, and one that was found
/// or set stays as it is.
class ATPPDAttribute : public ATPPDObject {
 public:
  using Part = std::optional<std::string>;

  ATPPDAttribute() = default;

  /// A new attribute that holds the line as a Statement.
  static std::shared_ptr<ATPPDAttribute> attributeWithString(const StatementString& string);

  /// A new attribute in canonical form, or null when the name is absent or empty. Spec and text are kept as given;
  /// an absent or empty value becomes two double quotes.
  static std::shared_ptr<ATPPDAttribute> initWithName(const Part& name, const Part& spec, const Part& text,
                                                      const Part& value);

  void giveStringsTo(IStatementSink& sink) const override;

  /// The main keyword without the asterisk.
  const Part& name() const;
  /// The option keyword, between the name and the slash or colon.
  const Part& spec() const;
  /// The translation text, between the slash and the colon.
  const Part& text() const;
  /// What follows the first colon, trimmed, double quotes kept; of several lines what reaches to the closing quote.
  const Part& value() const;

  /// Replace the part and compose the canonical line. Only a part that is set to itself (the very object that the
  /// getter returned) changes nothing: an equal string composes the line.
  virtual void setText(const Part& text);
  virtual void setValue(const Part& value);

  /// The parts of one line; spec and text need the attribute's own name in front of them.
  static Part nameFromAttributeString(std::string_view line);
  Part specFromAttributeString(std::string_view line) const;
  Part textFromAttributeString(std::string_view line) const;
  static Part valueFromAttributeString(std::string_view line);
  /// The value of a statement of several lines.
  static Part valueFromAttributeStrings(const LineList& lines);

  /// Composes the canonical line from the four parts. A text without a spec is left out; an absent name or value
  /// prints as "(null)".
  void updateAttributeString();
  /// The canonical line, present once the attribute was built from parts or changed.
  std::optional<StatementString> attributeString() const;
  void setAttributeString(std::optional<StatementString> string);

  /// Whether `name()` equals the given name; answers without keeping anything, so that a search through a
  /// document leaves the attributes that it passes as small as they were.
  bool isNamed(std::string_view name) const;
  /// The same for an attribute that would be made of the line.
  static bool isNamed(std::string_view line, std::string_view name);

 protected:
  /// Makes this attribute from parts; false, and nothing done, when the name is absent or empty.
  bool initializeWithName(const Part& name, const Part& spec, const Part& text, const Part& value);

 private:
  struct Parts {
    Part name, spec, text, value;
    std::optional<StatementString> attributeString;
    bool isStale = false;  // a part has changed since the canonical line was composed
  };
  Parts& parts() const;
  bool isCanonical() const { return parts_ != nullptr && (parts_->attributeString || parts_->isStale); }
  const StatementString& canonicalLine() const;
  std::optional<std::string_view> firstLine() const;

  mutable std::unique_ptr<Parts> parts_;  // made at the first request: most attributes are never asked
};
