// SPDX-License-Identifier: MIT
#include "explain/report/GroupedLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

std::vector<Warning> warnings(std::size_t count) {
  std::vector<Warning> warnings(count, {WarningCode::emptyResult});
  warnings.push_back({WarningCode::noLibrary});
  return warnings;
}

}  // namespace

TEST(GroupedLines, GivesManyOfACodeAsALineWithACount) {
  EXPECT_THAT(GroupedLines::of(warnings(4)), ElementsAre(EndsWith(" (and 3 more) [empty-result]"),
                                                         AllOf(EndsWith(" [no-library]"), Not(HasSubstr("more)")))));
}

TEST(GroupedLines, GivesFewOfACodeEach) {
  EXPECT_THAT(GroupedLines::of(warnings(3)),
              ElementsAre(EndsWith(" [empty-result]"), EndsWith(" [empty-result]"),
                          AllOf(EndsWith(" [empty-result]"), Not(HasSubstr("more)"))), EndsWith(" [no-library]")));
  EXPECT_THAT(GroupedLines::of({}), IsEmpty());
}
