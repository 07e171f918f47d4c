// SPDX-License-Identifier: MIT
#include "ppd/document/ATPPDAttribute.h"

#include <utility>

#include "base/Text.h"
#include "ppd/lines/PPDExtentions.h"

namespace {

using Part = ATPPDAttribute::Part;

bool isEmpty(const Part& part) {
  return !part || part->empty();
}

bool isSameString(const Part& one, const Part& other) {
  if (!one || !other) return !one && !other;
  return one->data() == other->data() && one->size() == other->size();
}

std::string composedLine(const Part& name, const Part& spec, const Part& text, const Part& value) {
  std::string line = "*";
  line.append(name.value_or("(null)"));
  if (!isEmpty(spec)) line.append(" ").append(*spec);
  if (!isEmpty(spec) && !isEmpty(text)) line.append("/").append(*text);
  return line.append(": ").append(value.value_or("(null)")).append("\n");
}

}  // namespace

std::shared_ptr<ATPPDAttribute> ATPPDAttribute::attributeWithString(const StatementString& string) {
  return std::make_shared<ATPPDAttribute>(string);
}

std::shared_ptr<ATPPDAttribute> ATPPDAttribute::initWithName(const Part& name, const Part& spec, const Part& text,
                                                             const Part& value) {
  auto attribute = std::make_shared<ATPPDAttribute>();
  return attribute->initializeWithName(name, spec, text, value) ? attribute : nullptr;
}

bool ATPPDAttribute::initializeWithName(const Part& name, const Part& spec, const Part& text, const Part& value) {
  if (isEmpty(name)) return false;
  settled() = {OwnPart(name), OwnPart(spec), OwnPart(text),
               isEmpty(value) ? PPDExtentions::emptyQuotedValue() : OwnPart(value), std::nullopt};
  updateAttributeString();
  ATPPDObject::addString(*settled_->line, PPDLineTypeStatement);
  return true;
}

void ATPPDAttribute::addString(const StatementString& string, PPDLineType type) {
  if (found_ != 0) settleFoundParts();
  ATPPDObject::addString(string, type);
}

void ATPPDAttribute::giveStringsTo(const TakeString& take) const {
  if (isCanonical()) {
    take(*settled_->line);
  } else {
    ATPPDObject::giveStringsTo(take);
  }
}

ATPPDAttribute::Settled& ATPPDAttribute::settled() const {
  if (settled_ == nullptr) settled_ = std::make_unique<Settled>();
  return *settled_;
}

Part ATPPDAttribute::firstLine() const {
  if (isCanonical()) return settled_->line->view();
  if (container().empty()) return std::nullopt;
  return container().front().view();
}

template <class Find>
Part ATPPDAttribute::part(OwnPart Settled::*which, Found bit, Find find) const {
  if (settled_ != nullptr && settled_.get()->*which) return settled_.get()->*which;
  const Part line = firstLine();
  const Part found = line ? find(*line) : std::nullopt;
  if (found) found_ = static_cast<std::uint8_t>(found_ | bit);
  return found;
}

// A part that can be set is kept in bytes of its own, by which it is known when it is set to itself.
template <class Find>
Part ATPPDAttribute::ownPart(OwnPart Settled::*which, Find find) const {
  if (const Settled* const all = settled_.get(); all != nullptr && all->*which) return all->*which;
  const Part line = firstLine();
  const Part found = line ? find(*line) : std::nullopt;
  if (!found) return std::nullopt;
  OwnPart& own = settled().*which;
  own.emplace(*found);
  return own;
}

Part ATPPDAttribute::name() const {
  return part(&Settled::name, kName, nameFromAttributeString);
}

Part ATPPDAttribute::spec() const {
  return part(&Settled::spec, kSpec, [this](std::string_view line) { return specFromAttributeString(line); });
}

Part ATPPDAttribute::text() const {
  return ownPart(&Settled::text, [this](std::string_view line) { return textFromAttributeString(line); });
}

Part ATPPDAttribute::value() const {
  const bool isOneLine = isCanonical() || container().size() == 1;
  if (!isOneLine && !settled().value) settled_->value = valueFromAttributeStrings(container());
  const Part value = ownPart(&Settled::value, valueFromAttributeString);
  if (budget_ != nullptr) budget_->visitText(value.value_or("").size());  // it may have megabytes
  return value;
}

// Before the lines change: what was found in them stays as it was found.
void ATPPDAttribute::settleFoundParts() const {
  if ((found_ & kName) != 0) settled().name = OwnPart(name());
  if ((found_ & kSpec) != 0) settled().spec = OwnPart(spec());
  found_ = 0;
}

void ATPPDAttribute::setPart(OwnPart Settled::*which, const Part& part) {
  if (budget_ != nullptr) budget_->needBytes(Text::orNull(part).size());
  OwnPart copy = OwnPart(part);  // before anything else: it may be one of the parts
  settled().*which = std::move(copy);
  updateAttributeString();
}

void ATPPDAttribute::setText(const Part& text) {
  if (!isSameString(text, this->text())) setPart(&Settled::text, text);
}

void ATPPDAttribute::setValue(const Part& value) {
  if (!isSameString(value, this->value())) setPart(&Settled::value, value);
}

Part ATPPDAttribute::nameFromAttributeString(std::string_view line) {
  TokenScanner scanner(line);
  if (!scanner.scan("*")) return std::nullopt;
  return scanner.readUpToWhiteSpaceOr(':');
}

std::optional<TokenScanner> ATPPDAttribute::scannerBehindName(std::string_view line) const {
  TokenScanner scanner(line);
  const Part name = this->name();
  if (!name) return std::nullopt;
  if (scanner.skipBehind(*name)) return scanner;  // it was read in this very line
  if (!scanner.scan("*") || !scanner.scan(*name)) return std::nullopt;
  return scanner;
}

Part ATPPDAttribute::specFromAttributeString(std::string_view line) const {
  auto scanner = scannerBehindName(line);
  const Part spec = scanner ? scanner->readUpTo('/', ':') : std::nullopt;
  return spec ? Part(Text::trim(*spec, Text::isWhiteSpace)) : std::nullopt;
}

// The text lies between the first slash and the first colon behind the name, when the slash comes first; both need
// something in front of them, so a slash directly behind the name begins no text.
Part ATPPDAttribute::textFromAttributeString(std::string_view line) const {
  const auto behindName = scannerBehindName(line);
  if (!behindName) return std::nullopt;
  TokenScanner toColon = *behindName;
  TokenScanner toSlash = toColon;
  if (!toColon.readUpTo(':') || !toSlash.readUpTo('/')) return std::nullopt;
  if (toColon.position() <= toSlash.position()) return std::nullopt;
  const std::size_t start = toSlash.position() + 1;
  return line.substr(start, toColon.position() - start);
}

Part ATPPDAttribute::valueFromAttributeString(std::string_view line) {
  TokenScanner scanner(line);
  if (!scanner.readUpTo(':') || scanner.isAtEnd()) return std::nullopt;
  scanner.skipCharacter();
  return Text::trim(scanner.rest(), Text::isBlank);
}

std::optional<std::string> ATPPDAttribute::valueFromAttributeStrings(const LineList& lines) {
  if (lines.empty()) return std::nullopt;
  std::string value = std::string(valueFromAttributeString(lines.front()).value_or("(null)")) + "\n";
  for (std::size_t taken = 0;; value += lines[taken].view()) {
    // A first line that holds only the opening quote ends with a quote and does not end the value.
    const bool onlyOpeningQuote = value == "\"\n";
    if (!onlyOpeningQuote && PPDExtentions::isPPDLineTerminatedByDoubleQuoteCharacter(lines[taken])) break;
    if (++taken == lines.size()) break;
  }
  return std::string(Text::trim(value, Text::isLineEnd));
}

// From now on all four parts are settled, but for those that are absent.
void ATPPDAttribute::updateAttributeString() {
  const Part name = this->name();
  const Part spec = this->spec();
  const Part text = this->text();
  const Part value = this->value();
  setAttributeString(composedLine(name, spec, text, value));
}

std::optional<StatementString> ATPPDAttribute::attributeString() const {
  if (!isCanonical()) return std::nullopt;
  return settled_->line;
}

void ATPPDAttribute::setAttributeString(std::optional<StatementString> string) {
  if (budget_ != nullptr && string) budget_->changeStatement(string->size());
  settleFoundParts();
  settled().line = std::move(string);
}
