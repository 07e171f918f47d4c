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
  EXPECT_EQ(exception.name(), "ATInvalidArgumentException");
  EXPECT_EQ(exception.reason(), "-[Class operation:]: operation not provided");
}

TEST(ATException, ReasonNamesTheOperationWhoseIndexIsOutOfRange) {
  const auto exception = ATException::outOfRange("-[Class objectAtIndex:]");
  EXPECT_EQ(exception.name(), "ATRangeException");
  EXPECT_EQ(exception.reason(), "-[Class objectAtIndex:]: position out of range");
}

TEST(ATException, ReasonNamesTheUseThatNeedsAnotherType) {
  const auto exception = ATException::wrongType("length of a string");
  EXPECT_EQ(exception.name(), "ATInvalidArgumentException");
  EXPECT_EQ(exception.reason(), "value of the wrong type: length of a string");
}

TEST(ATException, ReasonNamesWhatIsAbsent) {
  const auto exception = ATException::absent("gloss value");
  EXPECT_EQ(exception.name(), "ATInvalidArgumentException");
  EXPECT_EQ(exception.reason(), "value is absent: gloss value");
}

TEST(ATException, ReasonOfALibraryThatFailedIsItsOwn) {
  const auto exception = ATException::libraryFailure("the printer is on fire");
  EXPECT_EQ(exception.name(), "ATDeviceModelLibraryException");
  EXPECT_EQ(exception.reason(), "the printer is on fire");
}
