// SPDX-License-Identifier: MIT
// What needs a scheduler is tested with a real one, by tests/cups/run_queues.py.
#include "scheduler/IPPScheduler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

class IPPSchedulerTest : public testing::Test {
 protected:
  ~IPPSchedulerTest() override { cupsSetServer(nullptr); }
};

TEST_F(IPPSchedulerTest, KnowsWhetherItIsOnThisMachine) {
  for (const char* server : {"localhost", "localhost:1631", "127.0.0.1:632", "/run/cups/cups.sock", "[::1]:631"}) {
    cupsSetServer(server);
    EXPECT_TRUE(IPPScheduler::isLocal()) << server;
  }
  for (const char* server : {"print.example.org", "192.0.2.7:631", "local"}) {
    cupsSetServer(server);
    EXPECT_FALSE(IPPScheduler::isLocal()) << server;
  }
}

TEST_F(IPPSchedulerTest, SaysThatThereIsNone) {
  cupsSetServer("127.0.0.1:1");
  IPPScheduler scheduler;
  try {
    scheduler.queueNames();
    FAIL() << "nothing listens there";
  } catch (const Scheduler::Gone& error) {
    EXPECT_THAT(error.what(), testing::StartsWith("the scheduler 127.0.0.1 does not answer"));
  }
  EXPECT_THROW(scheduler.queue("q"), Scheduler::Gone);
  EXPECT_THROW(scheduler.PPDOf("q"), Scheduler::Gone);
}
