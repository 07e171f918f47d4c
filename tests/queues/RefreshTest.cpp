// SPDX-License-Identifier: MIT
#include "queues/Refresh.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "tests/queues/FakeScheduler.h"
#include "tests/queues/QueuePPD.h"
#include "tests/support/TemporaryFolder.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

using IDs = std::vector<std::string>;

class RefreshTest : public testing::Test {
 protected:
  void queueWith(const IDs& media, const std::string& defaultChoice = "Plain") {
    FakeScheduler::Printer printer;
    printer.queue.name = "q";
    printer.ppd = queuePPD(media, defaultChoice);
    scheduler_.printers["q"] = printer;
  }
  Job& addJob(const std::string& choice) {
    Job job;
    job.id = ++lastJob_;
    job.choice.MediaType = choice;
    scheduler_.only().jobs.push_back(job);
    return scheduler_.only().jobs.back();
  }
  Refresh refresh() {
    Refresh::Settings settings;
    settings.sleep = [this](std::chrono::milliseconds time) {
      slept_ += time;
      if (time >= std::chrono::seconds(35)) scheduler_.flush();
      if (whenItSleeps_) whenItSleeps_();
    };
    settings.say = [this](const std::string& text) { said_.push_back(text); };
    return {scheduler_, state_, settings};
  }
  QueueJudgement judgedFor(const IDs& media) {
    QueueJudgement judged;
    judged.queue = "q";
    judged.old = scheduler_.only().ppd;
    judged.fresh = queuePPD(media);
    return judged;
  }
  Refresh::Outcome run(const IDs& media) { return refresh().run(judgedFor(media)); }
  // What the job would be printed on.
  std::string mediumOf(const Job& job) {
    const PPDMedia media = PPDMedia::ofText(scheduler_.only().ppd);
    const auto* medium = media.withChoice(job.choice.MediaType.empty() ? media.defaultChoice : job.choice.MediaType);
    return medium == nullptr ? "" : medium->isCustom ? medium->ID : medium->choice;
  }

  TemporaryFolder folder_;
  StateFolder state_{folder_.path("state"), false};
  FakeScheduler scheduler_;
  std::vector<std::string> said_;
  std::chrono::milliseconds slept_{};
  std::function<void()> whenItSleeps_;
  int lastJob_ = 0;
};

}  // namespace

TEST_F(RefreshTest, GivesTheQueueItsNewPPD) {
  queueWith({"A"});
  EXPECT_EQ(run({"A", "B"}), Refresh::Outcome::done);
  EXPECT_EQ(scheduler_.only().ppd, queuePPD({"A", "B"}));
  EXPECT_THAT(scheduler_.calls, ElementsAre("pause", "PPD", "resume"));
  EXPECT_FALSE(state_.record("q"));
  EXPECT_EQ(slept_.count(), 0);
}

TEST_F(RefreshTest, JobsMoveWithTheirMedia) {
  queueWith({"A", "B"});
  addJob("Custom2");
  addJob("Plain");
  addJob("");
  run({"B", "A"});
  EXPECT_EQ(scheduler_.job(1).choice.MediaType, "Custom1");
  EXPECT_EQ(scheduler_.job(2).choice.MediaType, "Plain");
  EXPECT_EQ(scheduler_.job(3).choice, JobChoice());
  EXPECT_THAT(scheduler_.calls, ElementsAre("pause", "PPD", "change 1", "resume"));
  EXPECT_GE(slept_, std::chrono::seconds(35));
}

TEST_F(RefreshTest, AJobWhoseMediumIsGoneIsHeldAndSaid) {
  queueWith({"A", "B"});
  addJob("Custom1");
  run({"B"});
  EXPECT_TRUE(scheduler_.job(1).isHeld);
  EXPECT_EQ(scheduler_.job(1).choice.MediaType, JobMedia::kGone);
  EXPECT_THAT(scheduler_.calls, ElementsAre("pause", "PPD", "hold 1", "change 1", "resume"));
  EXPECT_THAT(said_, Contains(HasSubstr("q: job 1 is held: its medium Medium A (ID A) is gone; choose another")));
}

TEST_F(RefreshTest, TheDefaultMovesWithItsMedium) {
  queueWith({"A", "B"}, "Custom2");
  addJob("");
  run({"B"});
  EXPECT_EQ(scheduler_.only().ppd, queuePPD({"B"}, "Custom1"));
  EXPECT_THAT(said_, IsEmpty());
  EXPECT_EQ(mediumOf(scheduler_.job(1)), "B");
}

TEST_F(RefreshTest, ADefaultWhoseMediumIsGoneIsSaid) {
  queueWith({"A", "B"}, "Custom1");
  addJob("");
  run({"B"});
  EXPECT_EQ(scheduler_.only().ppd, queuePPD({"B"}));
  EXPECT_THAT(said_, Contains("q: the default MediaType was Medium A (ID A), which is gone; now it is Plain"));
  EXPECT_TRUE(scheduler_.job(1).isHeld);
}

TEST_F(RefreshTest, DefaultsBesideThePPDMoveToo) {
  queueWith({"A", "B"});
  scheduler_.only().queue.defaults = {{"MediaType", "Custom2"}, {"media-type", "custom-1"}, {"media", "A4"}};
  run({"B"});
  EXPECT_THAT(scheduler_.only().queue.defaults,
              ElementsAre(testing::Pair("MediaType", "Custom1"), testing::Pair("media", "A4")));
  EXPECT_THAT(said_, Contains("q: the medium of the default media-type is gone; now there is none"));
}

TEST_F(RefreshTest, AStoppedQueueStaysStopped) {
  queueWith({"A"});
  scheduler_.only().queue.isStopped = true;
  scheduler_.only().queue.message = "by hand";
  run({"B"});
  EXPECT_THAT(scheduler_.calls, ElementsAre("PPD"));
  EXPECT_TRUE(scheduler_.only().queue.isStopped);
}

TEST_F(RefreshTest, WaitsForTheJobThatIsPrinted) {
  queueWith({"A", "B"});
  addJob("Custom1").isProcessing = true;
  addJob("Custom2");
  whenItSleeps_ = [this] {
    whenItSleeps_ = nullptr;
    EXPECT_TRUE(scheduler_.job(2).isHeld);
    scheduler_.only().jobs.erase(scheduler_.only().jobs.begin());
  };
  EXPECT_EQ(run({"B", "A"}), Refresh::Outcome::done);
  EXPECT_THAT(scheduler_.calls, ElementsAre("hold 2", "pause", "PPD", "change 2", "release 2", "resume"));
}

TEST_F(RefreshTest, AQueueThatGoesOnPrintingIsLeftAsItWas) {
  queueWith({"A", "B"});
  addJob("Custom1").isProcessing = true;
  addJob("Custom2");
  addJob("Custom2").isHeld = true;
  EXPECT_EQ(run({"B", "A"}), Refresh::Outcome::busy);
  EXPECT_THAT(scheduler_.calls, ElementsAre("hold 2", "release 2"));
  EXPECT_FALSE(state_.record("q"));
  EXPECT_TRUE(scheduler_.job(3).isHeld);
}

TEST_F(RefreshTest, ARefusedPPDLeavesTheQueueAsItWas) {
  queueWith({"A", "B"});
  addJob("Custom2");
  scheduler_.refusesPPDs = true;
  EXPECT_THROW(run({"B"}), std::runtime_error);
  EXPECT_EQ(scheduler_.only().ppd, queuePPD({"A", "B"}));
  EXPECT_EQ(scheduler_.job(1).choice.MediaType, "Custom2");
  EXPECT_THAT(scheduler_.calls, ElementsAre("pause", "resume"));
  EXPECT_FALSE(state_.record("q"));
}

TEST_F(RefreshTest, WhatSomebodyElseChangedMeanwhileIsNotLost) {
  queueWith({"A", "B"});
  addJob("Custom1").isProcessing = true;
  whenItSleeps_ = [this] {
    scheduler_.only().jobs.clear();
    scheduler_.only().ppd = queuePPD({"A", "B"}, "Custom2");
  };
  EXPECT_THROW(run({"B"}), std::runtime_error);
  EXPECT_EQ(scheduler_.only().ppd, queuePPD({"A", "B"}, "Custom2"));
  EXPECT_FALSE(scheduler_.only().queue.isStopped);
}

TEST_F(RefreshTest, AQueueThatSomebodySwitchesOnMeanwhileIsLeftAsItWas) {
  queueWith({"A", "B"});
  addJob("Custom2");
  whenItSleeps_ = [this] { scheduler_.only().queue.isStopped = false; };
  EXPECT_THROW(run({"B"}), std::runtime_error);
  EXPECT_EQ(scheduler_.only().ppd, queuePPD({"A", "B"}));
  EXPECT_EQ(scheduler_.job(1).choice.MediaType, "Custom2");
}

TEST_F(RefreshTest, TheRecordOfAnEarlierQueueOfTheSameNameIsDropped) {
  queueWith({"B", "A"});
  addJob("Custom1");
  RefreshRecord record;
  record.queue = "q";
  record.UUID = "of the earlier one";
  record.before = PPDMedia::ofText(queuePPD({"A", "B"}));
  record.standsStill = true;
  record.jobs = {1};
  state_.write(record);
  refresh().recover("q");
  EXPECT_EQ(scheduler_.job(1).choice.MediaType, "Custom1");
  EXPECT_THAT(scheduler_.calls, IsEmpty());
  EXPECT_FALSE(state_.record("q"));
}

TEST_F(RefreshTest, AJobThatCameInBetweenIsHeldWhenItsChoiceIsAnotherMediumNow) {
  queueWith({"A", "B"});
  addJob("Custom1");
  whenItSleeps_ = [this] {
    addJob("Custom2");
    addJob("Plain");
  };
  run({"B", "A"});
  EXPECT_TRUE(scheduler_.job(2).isHeld);
  EXPECT_FALSE(scheduler_.job(3).isHeld);
  EXPECT_THAT(said_, Contains(HasSubstr("job 2 is held: it came in while the queue's media were changed")));
}

TEST_F(RefreshTest, PreviewChangesNothing) {
  queueWith({"A", "B"}, "Custom1");
  addJob("Custom2");
  addJob("Custom1");
  refresh().preview(judgedFor({"B"}));
  EXPECT_THAT(scheduler_.calls, IsEmpty());
  EXPECT_THAT(said_, ElementsAre(HasSubstr("the default MediaType was"), "q: job 1 would move with its medium",
                                 HasSubstr("job 2 would be held: its medium Medium A (ID A) is gone")));
}

TEST_F(RefreshTest, RecoveringAQueueWithoutRecordDoesNothing) {
  queueWith({"A"});
  scheduler_.only().queue.isStopped = true;
  refresh().recover("q");
  refresh().recover("none");
  EXPECT_THAT(scheduler_.calls, IsEmpty());
}

// This program ends at each call in turn, then the scheduler does, with all that it had not written; the next call
// brings the queue to its state. No job may then be for another medium than the one it was meant for.
class KilledRefreshTest : public RefreshTest, public testing::WithParamInterface<std::tuple<bool, bool>> {
 protected:
  // Whether the kill was reached.
  bool killAt(int call) {
    const auto [schedulerToo, before] = GetParam();
    lastJob_ = 0;
    queueWith({"A", "B", "C"}, "Custom2");
    scheduler_.only().queue.defaults = {{"MediaType", "Custom3"}};
    for (const char* choice : {"Custom1", "Custom2", "Custom3", "Plain", ""}) addJob(choice);
    scheduler_.job(3).isHeld = true;
    scheduler_.flush();
    scheduler_.callsUntilKilled = call;
    scheduler_.diesBeforeTheCall = before;
    bool wasKilled = false;
    try {
      run({"C", "B"});
    } catch (const FakeScheduler::Killed&) {
      wasKilled = true;
    }
    scheduler_.callsUntilKilled = -1;
    if (schedulerToo) scheduler_.restart();
    return wasKilled;
  }
  // The scheduler prints whatever it may at any time.
  void expectNothingWrongIsPrinted() {
    if (scheduler_.only().queue.isStopped) return;
    const IDs meant = {"A", "B", "C", "Plain", "B"};
    for (const Job& job : scheduler_.only().jobs) {
      if (job.isHeld) continue;
      EXPECT_EQ(mediumOf(job), meant[static_cast<std::size_t>(job.id) - 1]) << job.id;
    }
  }
  void expectRight() {
    EXPECT_FALSE(scheduler_.only().queue.isStopped);
    expectNothingWrongIsPrinted();
    EXPECT_EQ(scheduler_.only().ppd, queuePPD({"C", "B"}, "Custom2"));
    EXPECT_EQ(scheduler_.only().queue.defaults.at("MediaType"), "Custom1");
    EXPECT_TRUE(scheduler_.job(1).isHeld);
    EXPECT_FALSE(scheduler_.job(2).isHeld);
    EXPECT_TRUE(scheduler_.job(3).isHeld);
    EXPECT_EQ(mediumOf(scheduler_.job(3)), "C");
    EXPECT_FALSE(scheduler_.job(5).isHeld);
  }
  void callAgain() {
    refresh().recover("q");
    if (scheduler_.only().ppd != queuePPD({"C", "B"}, "Custom2")) run({"C", "B"});
  }
};

TEST_P(KilledRefreshTest, TheNextCallBringsTheQueueToItsState) {
  int call = 0;
  for (bool wasKilled = true; wasKilled; ++call) {
    SCOPED_TRACE(call);
    wasKilled = killAt(call);
    expectNothingWrongIsPrinted();
    callAgain();
    expectRight();
    state_.remove("q");
  }
  EXPECT_GT(call, 15);
}

TEST_P(KilledRefreshTest, ASecondKillWhileItIsBroughtThereChangesNothing) {
  std::mt19937 random(7);
  for (int round = 0; round < 30; ++round) {
    SCOPED_TRACE(round);
    killAt(static_cast<int>(random() % 25));
    for (int again = 0; again < 3; ++again) {
      scheduler_.callsUntilKilled = static_cast<int>(random() % 25);
      try {
        callAgain();
      } catch (const FakeScheduler::Killed&) {
      }
      scheduler_.callsUntilKilled = -1;
      if (std::get<0>(GetParam())) scheduler_.restart();
      expectNothingWrongIsPrinted();
    }
    callAgain();
    expectRight();
    state_.remove("q");
  }
}

INSTANTIATE_TEST_SUITE_P(All, KilledRefreshTest, testing::Combine(testing::Bool(), testing::Bool()));
