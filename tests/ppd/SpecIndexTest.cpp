// SPDX-License-Identifier: MIT
#include "ppd/SpecIndex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::shared_ptr<ATPPDAttribute> profile(const std::string& spec) {
  return ATPPDAttribute::attributeWithString("*cupsICCProfile " + spec + ": \"x\"\n");
}

}  // namespace

TEST(SpecIndex, FindsThePositionsWhoseSpecContainsAText) {
  SpecIndex index;
  index.add(*profile("RGB.Plain.300dpi"), 3);
  index.add(*profile("RGB.Glossy.300dpi"), 5);
  index.add(*profile("RGB.PlainPlus.600dpi"), 9);
  EXPECT_THAT(index.findContaining("Plain"), ElementsAre(3, 9));
  EXPECT_THAT(index.findContaining("300dpi"), ElementsAre(3, 5));
  EXPECT_THAT(index.findContaining("RGB"), ElementsAre(3, 5, 9));
  EXPECT_THAT(index.findContaining("CMYK"), IsEmpty());
}

TEST(SpecIndex, TheEmptyStringIsContainedInNothing) {
  SpecIndex index;
  index.add(*profile("RGB.Plain.300dpi"), 3);
  EXPECT_THAT(index.findContaining(""), IsEmpty());
}

TEST(SpecIndex, FindsThePositionsWhoseSpecHasThreePartsAndATextInTheMiddle) {
  SpecIndex index;
  index.add(*profile("RGB.Plain.300dpi"), 3);
  index.add(*profile("RGB.PlainPlus.300dpi"), 4);
  index.add(*profile("Plain.RGB.Plain"), 5);
  index.add(*profile("A.Plain"), 6);
  index.add(*profile("A.Plain.B.C"), 7);
  index.add(*profile("A.Plain.Plain.C"), 8);
  index.add(*profile("CMYK.Plain."), 9);
  index.add(*profile(".Plain.x"), 10);
  index.add(*profile("A..B"), 11);
  EXPECT_THAT(index.findMiddlePart("Plain"), ElementsAre(3, 9, 10));
  EXPECT_THAT(index.findMiddlePart("RGB"), ElementsAre(5));
  EXPECT_THAT(index.findMiddlePart("plain"), IsEmpty());
  EXPECT_THAT(index.findMiddlePart(""), ElementsAre(11));
}

TEST(SpecIndex, TellsWhetherAnySpecOfThreeOrMorePartsHasATextAsItsSecond) {
  SpecIndex index;
  EXPECT_FALSE(index.hasSecondPart("Plain"));
  const auto three = profile("RGB.Plain.300dpi");
  const auto four = profile(".Plain.A.B");
  index.add(*three, 1);
  index.add(*four, 2);
  index.add(*profile("A.Glossy"), 3);
  index.add(*profile("Matte"), 4);
  index.add(*profile("A..B"), 5);
  EXPECT_TRUE(index.hasSecondPart("Plain"));
  EXPECT_TRUE(index.hasSecondPart(""));
  for (const char* other : {"Glossy", "Matte", "RGB", "A", "Pla", "plain", "300dpi"}) {
    EXPECT_FALSE(index.hasSecondPart(other)) << other;
  }
  index.remove(*three, 1);
  EXPECT_TRUE(index.hasSecondPart("Plain"));
  index.remove(*four, 2);
  EXPECT_FALSE(index.hasSecondPart("Plain"));
}

TEST(SpecIndex, LooksAtSpecsOnly) {
  SpecIndex index;
  index.add(*profile("RGB.Plain.300dpi/A.Translation.B"), 1);
  EXPECT_THAT(index.findContaining("Translation"), IsEmpty());
  EXPECT_THAT(index.findContaining("cupsICCProfile"), IsEmpty());
  EXPECT_THAT(index.findMiddlePart("Translation"), IsEmpty());
}

TEST(SpecIndex, LeavesOutAttributesWithoutASpec) {
  SpecIndex index;
  const auto withoutSpec = ATPPDAttribute::attributeWithString("*cupsICCProfile: \"A.B.C\"\n");
  const auto last = profile("A.B.D");
  index.add(*profile("A.B.C"), 1);
  index.add(*withoutSpec, 2);
  index.add(*last, 4);
  EXPECT_THAT(index.findContaining("A.B"), ElementsAre(1, 4));
  EXPECT_THAT(index.findMiddlePart("B"), ElementsAre(1, 4));
  index.remove(*withoutSpec, 2);
  EXPECT_THAT(index.findContaining("A.B"), ElementsAre(1, 4));
  index.remove(*last, 4);
  EXPECT_THAT(index.findContaining("A.B"), ElementsAre(1));
  EXPECT_THAT(index.findMiddlePart("B"), ElementsAre(1));
}

TEST(SpecIndex, RemovesOnePosition) {
  SpecIndex index;
  const auto same = profile("A.B.C");
  index.add(*same, 1);
  index.add(*same, 2);
  index.remove(*same, 1);
  EXPECT_THAT(index.findContaining("A.B.C"), ElementsAre(2));
  EXPECT_THAT(index.findMiddlePart("B"), ElementsAre(2));
  index.remove(*same, 7);
  EXPECT_THAT(index.findContaining("A.B.C"), ElementsAre(2));
  index.add(*same, 8);
  EXPECT_THAT(index.findContaining("A.B.C"), ElementsAre(2, 8));
  EXPECT_THAT(index.findMiddlePart("B"), ElementsAre(2, 8));
}
