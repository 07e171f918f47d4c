// SPDX-License-Identifier: MIT
#include "base/ATException.h"

#include <gtest/gtest.h>

#include <exception>
#include <optional>
#include <string>

TEST(ATException, KeepsNameReasonAndUserInfo) {
  const ATException exception("Name", "what went wrong", "more detail");
  EXPECT_EQ(exception.name(), "Name");
  EXPECT_EQ(exception.reason(), "what went wrong");
  EXPECT_EQ(exception.userInfo(), "more detail");
}

TEST(ATException, HasNoUserInfoUnlessOneIsGiven) {
  EXPECT_EQ(ATException("Name", "reason").userInfo(), std::nullopt);
}

TEST(ATException, IsCaughtAsStandardExceptionWithItsReason) {
  try {
    throw ATException("Name", "the reason");
  } catch (const std::exception& exception) {
    EXPECT_STREQ(exception.what(), "the reason");
  }
}

TEST(ATException, ReasonNamesTheOperationThatIsNotProvided) {
  const auto exception = ATException::unsupportedOperation("-[Class operation:]");
  EXPECT_NE(exception.reason().find("-[Class operation:]"), std::string::npos);
  EXPECT_FALSE(exception.name().empty());
}

TEST(ATException, ReasonNamesTheOperationWhoseIndexIsOutOfRange) {
  const auto exception = ATException::outOfRange("-[Class objectAtIndex:]");
  EXPECT_NE(exception.reason().find("-[Class objectAtIndex:]"), std::string::npos);
  EXPECT_NE(exception.name(), ATException::unsupportedOperation("x").name());
}

TEST(ATException, ReasonNamesTheUseThatNeedsAnotherType) {
  const auto exception = ATException::wrongType("length of a string");
  EXPECT_NE(exception.reason().find("length of a string"), std::string::npos);
  EXPECT_FALSE(exception.name().empty());
}
