// SPDX-License-Identifier: MIT
#include "queues/Administration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/queues/FakeScheduler.h"
#include "tests/queues/SetupFixture.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

class AdministrationTest : public SetupFixture {
 protected:
  void addQueue(const std::string& name, const std::string& ppd) {
    scheduler_.printers[name].queue.name = name;
    scheduler_.printers[name].ppd = ppd;
  }
  Administration administration() {
    return Administration({scheduler_, folder_.path(), [this](const std::string& text) { say(text); },
                           [this](const std::string& text) { printed_ += text; },
                           [](std::size_t, std::size_t, const std::string&) {}});
  }
  void say(const std::string& text) {
    said_.push_back(text);
    if (whenSaid_) whenSaid_();
  }
  Refresh refresh() {
    Refresh::Settings settings;
    settings.sleep = [](std::chrono::milliseconds) {};
    settings.say = [this](const std::string& text) { say(text); };
    return {scheduler_, state_, settings};
  }
  int runRefresh(const std::vector<std::string>& names, bool isDry = false) {
    Refresh work = refresh();
    return administration().refresh(names, isDry ? nullptr : &work, work);
  }
  int apply(const std::vector<QueueWish>& wishes, bool prune = false, bool isDry = false) {
    Refresh work = refresh();
    return administration().apply(wishes, prune, state_, isDry ? nullptr : &work, work);
  }

  QueueWish wish_{"q", "socket://h:1", "I", "L", "vorantis-autosetup:p/z9.ppd"};
  StateFolder state_{folder_.path("state"), false};
  FakeScheduler scheduler_;
  std::vector<std::string> said_;
  std::function<void()> whenSaid_;
  std::string printed_;
};

TEST_F(AdministrationTest, StatusTellsOfOwnQueuesAndOfThoseThatAreNamed) {
  addQueue("own", made());
  addQueue("other", "*PPD-Adobe: \"4.3\"\n");
  EXPECT_EQ(administration().status({}, false, StatusWriter::Format::text), 0);
  EXPECT_EQ(printed_, "own: current\n");
  printed_.clear();
  administration().status({}, true, StatusWriter::Format::text);
  EXPECT_THAT(printed_, HasSubstr("other: not made by"));
  EXPECT_EQ(administration().status({"none", "own"}, false, StatusWriter::Format::text), 3);
  EXPECT_THAT(said_, ElementsAre("none: there is no such queue"));
}

TEST_F(AdministrationTest, RefreshMakesStaleQueuesCurrent) {
  addQueue("q", made());
  writeSnapshot("Linen");
  EXPECT_EQ(runRefresh({}, true), 1);
  EXPECT_THAT(scheduler_.calls, IsEmpty());
  EXPECT_EQ(runRefresh({}), 0);
  EXPECT_THAT(scheduler_.only().ppd, HasSubstr("/Linen:"));
  EXPECT_THAT(said_, Contains("q: is refreshed"));
}

TEST_F(AdministrationTest, WhatChangesDuringARefreshIsLookedAtBeforeItsEnd) {
  addQueue("a", made());
  addQueue("b", made());
  writeSnapshot("Linen");
  whenSaid_ = [this] {
    whenSaid_ = nullptr;
    writeSnapshot("Longer linen");
  };
  EXPECT_EQ(runRefresh({}), 0);
  EXPECT_THAT(scheduler_.printers["a"].ppd, HasSubstr("/Longer linen:"));
  EXPECT_THAT(said_, Contains(HasSubstr("changed in the meantime")));
}

TEST_F(AdministrationTest, AFolderThatNeverRestsEndsARefreshToo) {
  addQueue("q", made());
  writeSnapshot("Linen");
  int round = 0;
  whenSaid_ = [this, &round] { writeSnapshot("Linen" + std::string(static_cast<std::size_t>(++round), 'x')); };
  runRefresh({});
  EXPECT_EQ(std::count_if(said_.begin(), said_.end(),
                          [](const std::string& text) { return text.find("meantime") != std::string::npos; }),
            10);
}

TEST_F(AdministrationTest, EditedQueuesAreRefreshedByTheirNamesOnly) {
  const std::string edited = replaced(made(), "/Canvas:", "/My canvas:");
  addQueue("q", edited);
  EXPECT_EQ(runRefresh({}), 1);
  EXPECT_EQ(scheduler_.only().ppd, edited);
  EXPECT_EQ(runRefresh({"q"}), 0);
  EXPECT_NE(scheduler_.only().ppd, edited);
}

TEST_F(AdministrationTest, AQueueThatCannotBeRefreshedStopsNoOther) {
  addQueue("a", replaced(made(), "\"p/z9.ppd", "\"gone/z9.ppd"));
  addQueue("b", made());
  writeSnapshot("Linen");
  EXPECT_EQ(runRefresh({}), 2);
  EXPECT_THAT(scheduler_.printers["b"].ppd, HasSubstr("/Linen:"));
  EXPECT_THAT(said_, Contains(HasSubstr("a: its source is gone")));
  EXPECT_EQ(runRefresh({"none", "b"}), 3);
}

TEST_F(AdministrationTest, ApplyMakesChangesAndKeepsQueues) {
  EXPECT_EQ(apply({wish_}, false, true), 1);
  EXPECT_THAT(scheduler_.calls, IsEmpty());
  EXPECT_EQ(apply({wish_}), 0);
  EXPECT_THAT(scheduler_.calls, ElementsAre("make q vorantis-autosetup:p/z9.ppd"));
  EXPECT_THAT(state_.applied(), ElementsAre(Pair("q", "uuid-1")));
  addQueue("q", made());
  scheduler_.calls.clear();
  said_.clear();
  EXPECT_EQ(apply({wish_}), 0);
  EXPECT_THAT(scheduler_.calls, IsEmpty());
  EXPECT_THAT(said_, IsEmpty());
  wish_.info = "other";
  EXPECT_EQ(apply({wish_}), 0);
  EXPECT_THAT(scheduler_.calls, ElementsAre("make q "));
}

TEST_F(AdministrationTest, ApplySetsUpAQueueOfAnotherDriver) {
  addQueue("q", "*PPD-Adobe: \"4.3\"\n*ModelName: \"X\"\n");
  scheduler_.only().queue.uri = wish_.uri;
  scheduler_.only().queue.info = wish_.info;
  scheduler_.only().queue.location = wish_.location;
  EXPECT_EQ(apply({wish_}), 0);
  EXPECT_THAT(scheduler_.only().ppd, HasSubstr("/Canvas:"));
}

TEST_F(AdministrationTest, PruneRemovesWhatApplyMadeAndNothingElse) {
  addQueue("mine", made());
  addQueue("other", made());
  addQueue("remade", made());
  scheduler_.printers["remade"].queue.UUID = "another";
  state_.writeApplied({{"mine", ""}, {"gone", ""}, {"remade", "uuid-1"}});
  EXPECT_EQ(apply({}, true, true), 1);
  EXPECT_THAT(scheduler_.calls, IsEmpty());
  EXPECT_EQ(apply({}), 0);
  EXPECT_THAT(scheduler_.calls, IsEmpty());
  EXPECT_EQ(apply({}, true), 0);
  EXPECT_THAT(scheduler_.calls, ElementsAre("remove mine"));
  EXPECT_THAT(state_.applied(), IsEmpty());
}

TEST_F(AdministrationTest, AWishWhoseSetupWouldFailMakesNoQueue) {
  wish_.model = "vorantis-autosetup:none/z9.ppd";
  EXPECT_EQ(apply({wish_}), 2);
  EXPECT_THAT(scheduler_.calls, IsEmpty());
  EXPECT_THAT(said_, ElementsAre(HasSubstr("q: its source is gone")));
}

TEST_F(AdministrationTest, ASchedulerThatIsGoneEndsAll) {
  addQueue("q", made());
  scheduler_.callsUntilKilled = 0;
  scheduler_.diesBeforeTheCall = true;
  EXPECT_THROW(runRefresh({"q", "q"}), Scheduler::Gone);
  EXPECT_THAT(said_, IsEmpty());
}
