// SPDX-License-Identifier: MIT
//
// Reading a PPD and writing it back. Allowed outcomes: every accepted line comes out again in place, but for the lines
// that an option outside every group drops; making the objects changes nothing; an error has a code and a line.

#include <cstdint>

#include "tests/fuzz/Check.h"
#include "tests/support/DocumentReading.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto reading = DocumentReading::read({reinterpret_cast<const char*>(data), size});
  const std::string expected = DocumentReading::expectedText(reading->lines);
  CHECK(DocumentReading::textOf(reading->ppd) == expected);

  reading->ppd.PPDObjects();
  for (const auto& group : reading->ppd.groups()) {
    group->name();
    for (const auto& option : group->options()) option->choices();
  }
  for (const auto& attribute : reading->ppd.attributes()) {
    attribute->name();
    attribute->text();
    attribute->value();
  }
  CHECK(DocumentReading::textOf(reading->ppd) == expected);
  if (reading->error) {
    CHECK(reading->error->code >= PPDParserErrorStatementExpected);
    CHECK(reading->error->lineNumber == static_cast<std::int64_t>(reading->lines.size()) + 1);
  }
  return 0;
}
