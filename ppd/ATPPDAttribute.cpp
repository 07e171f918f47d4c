// SPDX-License-Identifier: MIT
#include "ppd/ATPPDAttribute.h"

#include <fmt/format.h>

#include <utility>

#include "base/Text.h"
#include "ppd/PPDExtentions.h"
#include "ppd/TokenScanner.h"

namespace {

std::optional<std::string_view> scanName(std::string_view line) {
  TokenScanner scanner(line);
  if (!scanner.scan("*")) return std::nullopt;
  return scanner.readUpToWhiteSpaceOr(":");
}

ATPPDAttribute::Part copyOf(std::optional<std::string_view> part) {
  if (!part) return std::nullopt;
  return std::string(*part);
}

bool isEmpty(const ATPPDAttribute::Part& part) {
  return !part || part->empty();
}

}  // namespace

std::shared_ptr<ATPPDAttribute> ATPPDAttribute::attributeWithString(const StatementString& string) {
  auto attribute = std::make_shared<ATPPDAttribute>();
  attribute->addString(string, PPDLineTypeStatement);
  return attribute;
}

std::shared_ptr<ATPPDAttribute> ATPPDAttribute::initWithName(const Part& name, const Part& spec, const Part& text,
                                                             const Part& value) {
  auto attribute = std::make_shared<ATPPDAttribute>();
  return attribute->initializeWithName(name, spec, text, value) ? attribute : nullptr;
}

bool ATPPDAttribute::initializeWithName(const Part& name, const Part& spec, const Part& text, const Part& value) {
  if (isEmpty(name)) return false;
  parts() = {name, spec, text, isEmpty(value) ? PPDExtentions::emptyQuotedValue() : value, std::nullopt, false};
  updateAttributeString();
  addString(canonicalLine(), PPDLineTypeStatement);
  return true;
}

void ATPPDAttribute::giveStringsTo(IStatementSink& sink) const {
  if (isCanonical()) {
    sink.take(canonicalLine());
  } else {
    ATPPDObject::giveStringsTo(sink);
  }
}

ATPPDAttribute::Parts& ATPPDAttribute::parts() const {
  if (parts_ == nullptr) parts_ = std::make_unique<Parts>();
  return *parts_;
}

std::optional<std::string_view> ATPPDAttribute::firstLine() const {
  if (isCanonical()) return canonicalLine().view();
  if (container().empty()) return std::nullopt;
  return container().front().view();
}

const ATPPDAttribute::Part& ATPPDAttribute::name() const {
  Part& name = parts().name;
  if (const auto line = firstLine(); !name && line) name = nameFromAttributeString(*line);
  return name;
}

const ATPPDAttribute::Part& ATPPDAttribute::spec() const {
  Part& spec = parts().spec;
  if (const auto line = firstLine(); !spec && line) spec = specFromAttributeString(*line);
  return spec;
}

const ATPPDAttribute::Part& ATPPDAttribute::text() const {
  Part& text = parts().text;
  if (const auto line = firstLine(); !text && line) text = textFromAttributeString(*line);
  return text;
}

const ATPPDAttribute::Part& ATPPDAttribute::value() const {
  Part& value = parts().value;
  if (value) return value;
  const LineList& lines = container();
  value = lines.size() == 1 ? valueFromAttributeString(lines.front()) : valueFromAttributeStrings(lines);
  return value;
}

bool ATPPDAttribute::isNamed(std::string_view name) const {
  if (parts_ != nullptr && parts_->name) return *parts_->name == name;
  const auto line = firstLine();
  return line && isNamed(*line, name);
}

bool ATPPDAttribute::isNamed(std::string_view line, std::string_view name) {
  // Nearly every line begins with "*" and a letter, and then has to go on with the name.
  const bool beginsWithKeyword = line.size() > 1 && line[0] == '*' && line[1] > ' ' && line[1] <= '~';
  if (beginsWithKeyword && !line.substr(1).starts_with(name)) return false;
  return scanName(line) == name;
}

void ATPPDAttribute::setText(const Part& text) {
  if (&text == &parts().text) return;
  parts().text = text;
  updateAttributeString();
}

void ATPPDAttribute::setValue(const Part& value) {
  if (&value == &parts().value) return;
  parts().value = value;
  updateAttributeString();
}

ATPPDAttribute::Part ATPPDAttribute::nameFromAttributeString(std::string_view line) {
  return copyOf(scanName(line));
}

ATPPDAttribute::Part ATPPDAttribute::specFromAttributeString(std::string_view line) const {
  TokenScanner scanner(line);
  if (!scanner.scan("*") || !name() || !scanner.scan(*name())) return std::nullopt;
  const auto spec = scanner.readUpTo("/:");
  if (!spec) return std::nullopt;
  return std::string(Text::trim(*spec, Text::isWhiteSpace));
}

// The text lies between the first slash and the first colon behind the name, when the slash comes first; both need
// something in front of them, so a slash directly behind the name begins no text.
ATPPDAttribute::Part ATPPDAttribute::textFromAttributeString(std::string_view line) const {
  TokenScanner behindName(line);
  if (!behindName.scan("*") || !name() || !behindName.scan(*name())) return std::nullopt;
  TokenScanner toColon = behindName;
  TokenScanner toSlash = behindName;
  if (!toColon.readUpTo(":") || !toSlash.readUpTo("/")) return std::nullopt;
  if (toColon.position() <= toSlash.position()) return std::nullopt;
  const std::size_t start = toSlash.position() + 1;
  return std::string(line.substr(start, toColon.position() - start));
}

ATPPDAttribute::Part ATPPDAttribute::valueFromAttributeString(std::string_view line) {
  TokenScanner scanner(line);
  if (!scanner.readUpTo(":") || scanner.isAtEnd()) return std::nullopt;
  scanner.skipCharacter();
  return std::string(Text::trim(scanner.rest(), Text::isBlank));
}

ATPPDAttribute::Part ATPPDAttribute::valueFromAttributeStrings(const LineList& lines) {
  if (lines.empty()) return std::nullopt;
  std::string value = fmt::format("{}\n", Text::orNull(valueFromAttributeString(lines.front())));
  for (std::size_t taken = 0;; value += lines[taken].view()) {
    // A first line that holds only the opening quote ends with a quote and does not end the value.
    const bool onlyOpeningQuote = value == "\"\n";
    if (!onlyOpeningQuote && PPDExtentions::isPPDLineTerminatedByDoubleQuoteCharacter(lines[taken])) break;
    if (++taken == lines.size()) break;
  }
  return std::string(Text::trim(value, Text::isLineEnd));
}

// The parts are settled now; the line is composed when somebody wants it, so that a part may be set many times over.
void ATPPDAttribute::updateAttributeString() {
  name();
  spec();
  text();
  value();
  parts().isStale = true;
}

const StatementString& ATPPDAttribute::canonicalLine() const {
  Parts& parts = *parts_;
  if (!std::exchange(parts.isStale, false)) return *parts.attributeString;
  std::string middle;
  if (!isEmpty(parts.spec)) {
    middle = fmt::format(" {}", *parts.spec);
    if (!isEmpty(parts.text)) middle += fmt::format("/{}", *parts.text);
  }
  parts.attributeString = fmt::format("*{}{}: {}\n", Text::orNull(parts.name), middle, Text::orNull(parts.value));
  return *parts.attributeString;
}

std::optional<StatementString> ATPPDAttribute::attributeString() const {
  if (!isCanonical()) return std::nullopt;
  return canonicalLine();
}

void ATPPDAttribute::setAttributeString(std::optional<StatementString> string) {
  parts().attributeString = std::move(string);
  parts().isStale = false;
}
