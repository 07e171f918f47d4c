// SPDX-License-Identifier: MIT
#include "ppd/LocalizationIndex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::shared_ptr<ATPPDAttribute> attribute(const char* line) {
  return ATPPDAttribute::attributeWithString(line);
}

}  // namespace

TEST(LocalizationIndex, FindsTheNameInEverySupportedLanguage) {
  LocalizationIndex index("Foo", {"de", "fr", "de"});
  index.add(*attribute("*fr.Foo: x\n"), 1);
  index.add(*attribute("*de.Foo: x\n"), 2);
  index.add(*attribute("*it.Foo: x\n"), 3);
  index.add(*attribute("*Foo: x\n"), 4);
  index.add(*attribute("*.Foo: x\n"), 5);
  index.add(*attribute("*de.Bar: x\n"), 6);
  index.add(*attribute("*de.FooBar: x\n"), 7);
  index.add(*attribute("*xde.Foo: x\n"), 8);
  index.add(*attribute("*de.x.Foo: x\n"), 9);
  index.add(*attribute("*de.foo: x\n"), 10);
  index.add(*attribute("*: x\n"), 11);
  EXPECT_THAT(index.find(std::nullopt), ElementsAre(1, 2));
}

TEST(LocalizationIndex, FindsByTheSpecToo) {
  LocalizationIndex index("Foo", {"de", "fr"});
  index.add(*attribute("*fr.Foo A: x\n"), 1);
  index.add(*attribute("*de.Foo: x\n"), 2);
  index.add(*attribute("*de.Foo B: x\n"), 3);
  index.add(*attribute("*de.Foo A/Text: x\n"), 4);
  EXPECT_THAT(index.find(std::nullopt), ElementsAre(1, 2, 3, 4));
  EXPECT_THAT(index.find("A"), ElementsAre(1, 4));
  EXPECT_THAT(index.find("a"), IsEmpty());
  EXPECT_THAT(index.find(""), IsEmpty());
}

TEST(LocalizationIndex, TheEmptyLanguageAndDotsInNamesAreTakenAsTheyStand) {
  LocalizationIndex index("a.Foo", {"", "de.x"});
  index.add(*attribute("*.a.Foo: x\n"), 1);
  index.add(*attribute("*de.x.a.Foo: x\n"), 2);
  index.add(*attribute("*de.a.Foo: x\n"), 3);
  EXPECT_THAT(index.find(std::nullopt), ElementsAre(1, 2));
}

TEST(LocalizationIndex, RemovesOnePosition) {
  LocalizationIndex index("Foo", {"de"});
  const auto same = attribute("*de.Foo A: x\n");
  index.add(*same, 1);
  index.add(*same, 2);
  index.remove(*same, 1);
  EXPECT_THAT(index.find(std::nullopt), ElementsAre(2));
  EXPECT_THAT(index.find("A"), ElementsAre(2));
  index.remove(*attribute("*it.Foo A: x\n"), 2);
  EXPECT_THAT(index.find("A"), ElementsAre(2));
}
