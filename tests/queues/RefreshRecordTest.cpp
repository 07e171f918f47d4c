// SPDX-License-Identifier: MIT
#include "queues/RefreshRecord.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/queues/QueuePPD.h"
#include "tests/support/TemporaryFolder.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

RefreshRecord record() {
  RefreshRecord record;
  record.queue = "q";
  record.UUID = "u";
  record.id = "1-2";
  record.ppd = queuePPD({"A"});
  record.before = PPDMedia::ofText(queuePPD({"A", "B"}, "Custom2"));
  record.wasPrinting = true;
  record.held = {3, 4};
  record.standsStill = true;
  record.jobs = {3, 4, 5};
  record.defaults = {{"MediaType", "Custom1"}};
  record.defaultsBefore = {{"MediaType", "Custom2"}};
  record.finished = 12345;
  return record;
}

}  // namespace

TEST(StateFolder, GivesARecordBack) {
  const TemporaryFolder folder;
  const StateFolder state(folder.path("state"), false);
  EXPECT_FALSE(state.record("q"));
  state.write(record());
  const auto found = state.record("q");
  ASSERT_TRUE(found);
  EXPECT_EQ(found->queue, "q");
  EXPECT_EQ(found->UUID, "u");
  EXPECT_EQ(found->id, "1-2");
  EXPECT_EQ(found->ppd, record().ppd);
  EXPECT_EQ(found->before.defaultChoice, "Custom2");
  ASSERT_EQ(found->before.media.size(), 3U);
  EXPECT_EQ(found->before.media[2].key, record().before.media[2].key);
  EXPECT_EQ(found->before.media[2].isCustom, true);
  EXPECT_TRUE(found->wasPrinting);
  EXPECT_THAT(found->held, ElementsAre(3, 4));
  EXPECT_THAT(found->jobs, ElementsAre(3, 4, 5));
  EXPECT_TRUE(found->standsStill);
  EXPECT_EQ(found->defaults, record().defaults);
  EXPECT_EQ(found->defaultsBefore, record().defaultsBefore);
  EXPECT_EQ(found->finished, 12345);
  state.remove("q");
  state.remove("q");
  EXPECT_FALSE(state.record("q"));
}

TEST(StateFolder, ACutRecordIsNone) {
  const TemporaryFolder folder;
  const StateFolder state(folder.path("state"), false);
  state.write(record());
  std::filesystem::resize_file(folder.path("state/q.json"), 20);
  EXPECT_FALSE(state.record("q"));
  folder.file("state/q.json", "{}");
  EXPECT_THROW(state.record("q"), std::runtime_error);
}

TEST(StateFolder, KnowsWhatWasApplied) {
  const TemporaryFolder folder;
  const StateFolder state(folder.path("state"), false);
  EXPECT_THAT(state.applied(), IsEmpty());
  state.writeApplied({{"a", "1"}, {"b", ""}});
  EXPECT_THAT(state.applied(), ElementsAre(Pair("a", "1"), Pair("b", "")));
  EXPECT_EQ(state.applied().count("A"), 1U);
}

TEST(StateFolder, AFolderThatCannotBeMadeIsSaid) {
  const TemporaryFolder folder;
  folder.file("file", "");
  EXPECT_THROW(StateFolder(folder.path("file/state"), false), std::runtime_error);
  EXPECT_NO_THROW(StateFolder(folder.path("file/state"), true));
}

TEST(StateFolder, OnlyOneHasTheLock) {
  const TemporaryFolder folder;
  StateFolder one(folder.path("state"), false);
  bool waited = false;
  one.lock([&] { waited = true; });
  EXPECT_FALSE(waited);
  StateFolder other(folder.path("state"), false);
  struct Waits {};
  EXPECT_THROW(other.lock([] { throw Waits(); }), Waits);
}
