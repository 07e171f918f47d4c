// SPDX-License-Identifier: MIT
#include "queues/QueueJudgement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/queues/SetupFixture.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

using State = QueueJudgement::State;

class QueueJudgementTest : public SetupFixture {
 protected:
  QueueJudgement judge(const std::optional<std::string>& ppd, const std::string& wanted = "") {
    SetupFolder setups(folder_.path());
    return QueueJudgement::of("q", ppd, setups, wanted);
  }
};

TEST_F(QueueJudgementTest, AQueueAsItWasMadeIsCurrent) {
  const auto judged = judge(made());
  EXPECT_EQ(judged.state, State::current);
  EXPECT_EQ(judged.source, "p/z9.ppd");
  EXPECT_EQ(judged.version, AT_VERSION);
  EXPECT_FALSE(judged.isEdited);
}

TEST_F(QueueJudgementTest, OtherDefaultsAreNoEdit) {
  EXPECT_EQ(judge(replaced(made(), "*DefaultMediaType: Plain", "*DefaultMediaType: Custom1")).state, State::current);
}

TEST_F(QueueJudgementTest, AChangedSnapshotMakesItStale) {
  const std::string ppd = made();
  writeSnapshot("Linen");
  const auto judged = judge(ppd);
  EXPECT_EQ(judged.state, State::stale);
  EXPECT_THAT(judged.fresh, HasSubstr("*MediaType Custom1/Linen:"));
  ASSERT_THAT(judged.changes, SizeIs(1));
  EXPECT_EQ(judged.changes[0].text(), "Canvas (ID 4711) is renamed to Linen");
}

TEST_F(QueueJudgementTest, AChangedBasePPDMakesItStale) {
  const std::string ppd = made();
  writePPD("*QZOther: \"x\"\n");
  const auto judged = judge(ppd);
  EXPECT_EQ(judged.state, State::stale);
  EXPECT_THAT(judged.changes, IsEmpty());
  EXPECT_THAT(judged.text(), HasSubstr("with the same media"));
}

TEST_F(QueueJudgementTest, AChangeOfTheSourcesThatChangesNothingLeavesItCurrent) {
  const std::string ppd = made();
  folder_.file("p.json", contentsOfFile(folder_.path("p.json")) + "\n");
  EXPECT_EQ(judge(ppd).state, State::current);
}

TEST_F(QueueJudgementTest, AnEditByHandIsSeen) {
  const auto judged = judge(replaced(made(), "/Canvas:", "/My canvas:"));
  EXPECT_EQ(judged.state, State::edited);
  EXPECT_TRUE(judged.isEdited);
  EXPECT_NE(judged.fresh, "");
}

TEST_F(QueueJudgementTest, ASourceThatIsGoneIsSaid) {
  const std::string ppd = made();
  std::filesystem::remove(folder_.path("p.json"));
  const auto judged = judge(ppd);
  EXPECT_EQ(judged.state, State::sourceGone);
  EXPECT_THAT(judged.reason, HasSubstr("there is no snapshot p.json"));
}

TEST_F(QueueJudgementTest, ASetupThatWouldFailIsSaid) {
  const std::string ppd = made();
  folder_.file("p.json", "{");
  const auto judged = judge(ppd);
  EXPECT_EQ(judged.state, State::wouldFail);
  EXPECT_THAT(judged.reason, HasSubstr("the snapshot p.json cannot be used"));
  EXPECT_EQ(judged.fresh, "");
}

TEST_F(QueueJudgementTest, QueuesOfOthersAreForeign) {
  EXPECT_EQ(judge(std::nullopt).state, State::foreign);
  EXPECT_EQ(judge("*PPD-Adobe: \"4.3\"\n*ModelName: \"X\"\n").state, State::foreign);
}

TEST_F(QueueJudgementTest, AWantedSourceIsComparedWith) {
  EXPECT_EQ(judge(std::nullopt, "p/z9.ppd").state, State::stale);
  EXPECT_EQ(judge("*PPD-Adobe: \"4.3\"\n*ModelName: \"X\"\n", "p/z9.ppd").state, State::stale);
  EXPECT_EQ(judge(made(), "p/z9.ppd").state, State::current);
  EXPECT_EQ(judge(made(), "other/z9.ppd").state, State::sourceGone);
}
