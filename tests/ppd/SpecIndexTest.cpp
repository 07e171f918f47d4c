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

TEST(SpecIndex, FindsThePositionsWhoseSpecContainsThePart) {
  SpecIndex index;
  index.add(*profile("RGB.Plain.300dpi"), 3);
  index.add(*profile("RGB.Glossy.300dpi"), 5);
  index.add(*profile("RGB.PlainPlus.600dpi"), 9);
  EXPECT_THAT(index.find("Plain"), ElementsAre(3, 9));
  EXPECT_THAT(index.find("300dpi"), ElementsAre(3, 5));
  EXPECT_THAT(index.find("RGB"), ElementsAre(3, 5, 9));
  EXPECT_THAT(index.find("CMYK"), IsEmpty());
}

TEST(SpecIndex, FindsNothingForTheEmptyString) {
  SpecIndex index;
  index.add(*profile("RGB.Plain.300dpi"), 3);
  EXPECT_THAT(index.find(""), IsEmpty());
}

TEST(SpecIndex, LooksAtSpecsOnly) {
  SpecIndex index;
  index.add(*profile("RGB.Plain.300dpi/Translation"), 1);
  EXPECT_THAT(index.find("Translation"), IsEmpty());
  EXPECT_THAT(index.find("cupsICCProfile"), IsEmpty());
}

TEST(SpecIndex, LeavesOutAttributesWithoutASpec) {
  SpecIndex index;
  index.add(*profile("A.B.C"), 1);
  index.add(*ATPPDAttribute::attributeWithString("*cupsICCProfile: \"A.B.C\"\n"), 2);
  index.add(*profile("A.B.D"), 4);
  EXPECT_THAT(index.find("A.B"), ElementsAre(1, 4));
  index.remove(2);
  EXPECT_THAT(index.find("A.B"), ElementsAre(1, 4));
  index.remove(4);
  EXPECT_THAT(index.find("A.B"), ElementsAre(1));
}

TEST(SpecIndex, RemovesOnePosition) {
  SpecIndex index;
  index.add(*profile("A.B.C"), 1);
  index.add(*profile("A.B.C"), 2);
  index.remove(1);
  EXPECT_THAT(index.find("A.B.C"), ElementsAre(2));
  index.remove(7);
  EXPECT_THAT(index.find("A.B.C"), ElementsAre(2));
  index.add(*profile("A.B.C"), 8);
  EXPECT_THAT(index.find("A.B.C"), ElementsAre(2, 8));
}
