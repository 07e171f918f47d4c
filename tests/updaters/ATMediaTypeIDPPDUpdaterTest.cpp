// SPDX-License-Identifier: MIT
//
// The updater that CONTRIBUTING.md adds step by step.
#include "tests/updaters/ATMediaTypeIDPPDUpdater.h"

#include <gtest/gtest.h>

#include "tests/updaters/TestDevice.h"
#include "tests/updaters/TestDocument.h"

TEST(ATMediaTypeIDPPDUpdater, GivesAChoiceTheBareIDAsItsCode) {
  const auto ppd = documentFromText(
      "*OpenGroup: QZImagingOptions/Options\n*OpenUI *MediaType/Media: PickOne\n*DefaultMediaType: Plain\n"
      "*MediaType Plain/Plain: \"1001\"\n*CloseUI: *MediaType\n*CloseGroup: QZImagingOptions\n");
  const auto record =
      mapOf({{"PPDName", "Custom1"}, {"ID", "4711"}, {"MediaName", "Canvas"}, {"CategoryID", "CUSTOM"}});
  EXPECT_TRUE(ATMediaTypeIDPPDUpdater().addMediaWithData(record, *ppd));
  EXPECT_EQ(ppd->optionForName("MediaType")->choiceForName("Custom1")->code(), "4711");
}
