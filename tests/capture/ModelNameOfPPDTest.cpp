// SPDX-License-Identifier: MIT
#include "capture/ModelNameOfPPD.h"

#include <gtest/gtest.h>

#include <string>

#include "base/ATException.h"
#include "tests/support/TemporaryFolder.h"

namespace {

std::optional<std::string> modelNameOf(const std::string& contents) {
  const TemporaryFolder folder;
  return ModelNameOfPPD::at(folder.file("a.ppd", contents));
}

}  // namespace

TEST(ModelNameOfPPD, IsTheValueWithItsQuotes) {
  EXPECT_EQ(modelNameOf("*PPD-Adobe: \"4.3\"\n*ModelName: \"Vorantis Z9\"\n"), "\"Vorantis Z9\"");
  EXPECT_EQ(modelNameOf("*ModelName: Z9\n*ModelName: \"second\"\n"), "Z9");
}

TEST(ModelNameOfPPD, IsAbsentWithoutTheStatementAtTheTop) {
  EXPECT_EQ(modelNameOf(""), std::nullopt);
  EXPECT_EQ(modelNameOf("*OpenGroup: A/A\n*ModelName: \"Z9\"\n*CloseGroup: A\n"), std::nullopt);
}

TEST(ModelNameOfPPD, APPDThatCannotBeReadIsAFailure) {
  EXPECT_THROW(ModelNameOfPPD::at("/no/such.ppd"), ATException);
  EXPECT_THROW(modelNameOf("no statement\n"), ATException);
}
