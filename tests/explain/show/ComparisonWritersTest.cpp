// SPDX-License-Identifier: MIT
#include "explain/show/ComparisonWriters.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "library/Snapshot.h"

using testing::HasSubstr;
using testing::Not;

namespace {

std::vector<MediaChange> changes() {
  PPDMedia::Medium canvas{"Custom1", "<Canvas>", "4711", "custom 4711", "\"a\"", {"profile"}, true};
  PPDMedia::Medium linen = canvas;
  linen.choice = "Custom2";
  return {{MediaChange::Kind::gone, canvas, {}}, {MediaChange::Kind::renumbered, canvas, linen}};
}

}  // namespace

TEST(ComparisonWriters, Text) {
  EXPECT_EQ(ComparisonWriters::text("old.ppd", changes()),
            "Compared with old.ppd: 2 changes\n  <Canvas> (ID 4711) is gone, it was Custom1\n  <Canvas> (ID 4711) "
            "becomes Custom2, it was Custom1\n");
  EXPECT_EQ(ComparisonWriters::text("a\x1b.ppd", {}), "Compared with a\\x1b.ppd: nothing changed\n");
}

TEST(ComparisonWriters, JSON) {
  const auto json = snapshot::parseJSON(ComparisonWriters::json("old.ppd", changes()));
  EXPECT_EQ(*json.member("earlier")->string(), "old.ppd");
  const auto& all = *json.member("changes")->array();
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(*all[0].member("kind")->string(), "gone");
  EXPECT_EQ(all[0].member("after"), nullptr);
  EXPECT_EQ(*all[1].member("after")->member("choice")->string(), "Custom2");
  EXPECT_EQ(*all[1].member("before")->member("profiles")->array()->at(0).string(), "profile");
}

TEST(ComparisonWriters, HTML) {
  EXPECT_THAT(ComparisonWriters::html("old.ppd", changes()),
              HasSubstr("<td>renumbered</td><td>&lt;Canvas&gt; (ID 4711)</td><td>Custom1</td><td>Custom2</td>"));
  EXPECT_THAT(ComparisonWriters::html("old.ppd", changes()), HasSubstr("<td>gone</td><td>&lt;Canvas&gt; (ID 4711)"));
  EXPECT_THAT(ComparisonWriters::html("old.ppd", {}), Not(HasSubstr("<table>")));
}
