// SPDX-License-Identifier: MIT
//
// Taking an attribute apart and composing it anew. Allowed outcomes: what was not changed is written as it was read; a
// changed attribute is one canonical line in which the same parts are found again.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/Text.h"
#include "ppd/document/ATPPDAttribute.h"
#include "tests/fuzz/Check.h"
#include "tests/support/DocumentReading.h"

namespace {

// A part that outlives changes of the attribute.
std::optional<std::string> copyOf(const ATPPDAttribute::Part& part) {
  return part ? std::optional<std::string>(*part) : std::nullopt;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  if (!Text::isValidUTF8(text)) return 0;
  ATPPDAttribute attribute;
  for (const std::string& line : DocumentReading::pieces(text)) {
    if (!Text::isValidUTF8(line)) return 0;
    attribute.addString(line, PPDLineTypeStatement);
  }
  const auto name = copyOf(attribute.name());
  const auto spec = copyOf(attribute.spec());
  const auto translation = copyOf(attribute.text());
  const auto value = copyOf(attribute.value());
  CHECK(DocumentReading::textOf(attribute) == text);

  if (value) attribute.setValue(attribute.value());
  CHECK(DocumentReading::textOf(attribute) == text);
  attribute.setValue(value);
  if (!value) {  // absent set to absent
    CHECK(DocumentReading::textOf(attribute) == text);
    return 0;
  }
  const std::string canonical = DocumentReading::textOf(attribute);
  CHECK(canonical.ends_with(": " + *value + "\n"));
  // An absent name is written as "(null)" and then found in the canonical line.
  if (name) CHECK(attribute.name() == name && attribute.spec() == spec);
  if (name) CHECK(attribute.value() == value);

  const auto again = ATPPDAttribute::initWithName(name, spec, translation, value);
  CHECK((again == nullptr) == (!name || name->empty()));
  if (again != nullptr && !value->empty()) CHECK(DocumentReading::textOf(*again) == canonical);
  const auto reread = ATPPDAttribute::attributeWithString(canonical);
  const auto isOneWord = [](const std::string& part) {
    return Text::skip(part, 0, [](char32_t c) { return !Text::isBlank(c); }) == part.size();
  };
  if (name && isOneWord(*name)) CHECK(reread->name() == name);
  if (name && isOneWord(*name) && spec && isOneWord(*spec)) CHECK(reread->spec() == spec);
  return 0;
}
