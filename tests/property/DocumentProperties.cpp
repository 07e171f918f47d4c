// SPDX-License-Identifier: MIT
//
// What must hold for every document: what was read is written back, look-ups agree with a walk over all attributes,
// and an edit that is taken back leaves no trace.

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>

#include "tests/property/Generators.h"
#include "tests/support/DocumentReading.h"

namespace {

using DocumentReading::expectedText;
using DocumentReading::read;
using DocumentReading::textOf;

ATPPD::Attributes walk(const ATPPD& ppd, const std::vector<std::string>& names, const ATPPD::Spec& spec) {
  ATPPD::Attributes found;
  for (const auto& attribute : ppd.attributes()) {
    const bool named =
        std::any_of(names.begin(), names.end(), [&](const auto& name) { return attribute->name() == name; });
    if (named && (!spec || attribute->spec() == spec)) found.push_back(attribute);
  }
  return found;
}

ATPPD::AttributePtr firstOf(const ATPPD::Attributes& attributes) {
  return attributes.empty() ? nullptr : attributes.front();
}

ATPPD::Spec anySpec() {
  return *rc::gen::element<ATPPD::Spec>(std::nullopt, ".Plain.", ".Custom1.", "A", "X", "MediaType.Plain", "");
}

RC_GTEST_PROP(Document, WhatIsReadIsWrittenBack, ()) {
  const auto reading = read(*Generators::document());
  RC_ASSERT(textOf(reading->ppd) == expectedText(reading->lines));
  reading->ppd.PPDObjects();
  RC_ASSERT(textOf(reading->ppd) == expectedText(reading->lines));
}

RC_GTEST_PROP(Document, PlainDocumentsComeBackWhole, ()) {
  const std::string text = *Generators::plainDocument();
  RC_ASSERT(textOf(read(text)->ppd) == text);
}

RC_GTEST_PROP(Document, LookUpsAgreeWithAWalk, ()) {
  const auto reading = read(*Generators::plainDocument());
  const ATPPD& ppd = reading->ppd;
  for (int question = 0; question < 8; ++question) {
    const std::string name = *Generators::word();
    const ATPPD::Spec spec = anySpec();
    RC_ASSERT(ppd.attributeForName(name, spec) == firstOf(walk(ppd, {name}, spec)));
    RC_ASSERT(ppd.attributesForName(name) == walk(ppd, {name}, std::nullopt));
    RC_ASSERT(ppd.localizationForAttributeWithName(name, spec) ==
              walk(ppd, {"en." + name, "de." + name, "fr." + name}, spec));
  }
}

RC_GTEST_PROP(Document, SpecsThatContainATextAgreeWithAWalk, ()) {
  const auto reading = read(*Generators::plainDocument());
  ATPPD& ppd = reading->ppd;
  for (int question = 0; question < 4; ++question) {
    const std::string part = *rc::gen::element<std::string>("Custom1", "Custom12", ".", "Plain", "1", "zz", "");
    ATPPD::Attributes expected;
    for (const auto& attribute : walk(ppd, {"cupsICCProfile"}, std::nullopt)) {
      if (attribute->spec() && Text::contains(*attribute->spec(), part)) expected.push_back(attribute);
    }
    const auto found = ppd.attributesForName("cupsICCProfile", part);
    RC_ASSERT(found == expected);
    if (!found.empty() && *rc::gen::arbitrary<bool>()) ppd.removePPDAttribute(found.front());
    if (*rc::gen::arbitrary<bool>()) {
      ppd.addPPDAttribute(ATPPDAttribute::initWithName("cupsICCProfile", ".Custom1." + part, std::nullopt, "\"\""));
    }
  }
}

RC_GTEST_PROP(Document, AddingAndRemovingLeavesNoTrace, ()) {
  const auto reading = read(*Generators::document());
  ATPPD& ppd = reading->ppd;
  const std::string before = textOf(ppd);
  const auto count = *rc::gen::inRange(1, 6);
  std::vector<ATPPD::AttributePtr> added;
  for (int index = 0; index < count; ++index) {
    added.push_back(ATPPDAttribute::initWithName(*Generators::word(), anySpec(), "Text", "\"v\""));
    ppd.addPPDAttribute(added.back());
    RC_ASSERT(ppd.attributes().back() == added.back());
  }
  RC_ASSERT(textOf(ppd).size() > before.size());
  const bool backwards = *rc::gen::arbitrary<bool>();
  if (backwards) std::reverse(added.begin(), added.end());
  for (const auto& attribute : added) ppd.removePPDAttribute(attribute);
  RC_ASSERT(textOf(ppd) == before);
}

}  // namespace
