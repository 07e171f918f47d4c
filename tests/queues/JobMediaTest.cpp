// SPDX-License-Identifier: MIT
#include "queues/JobMedia.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/queues/QueuePPD.h"

using testing::ElementsAre;

namespace {

PPDMedia mediaOf(const std::vector<std::string>& IDs, const std::string& defaultChoice = "Plain") {
  return PPDMedia::ofText(queuePPD(IDs, defaultChoice));
}

Job jobWith(const JobChoice& choice) {
  Job job;
  job.id = 7;
  job.choice = choice;
  return job;
}

JobChoice withOption(const std::string& choice) {
  return {choice, "", "", {}};
}

}  // namespace

TEST(JobMedia, AValueMovesWithItsMedium) {
  const PPDMedia before = mediaOf({"A", "B", "C"});
  const PPDMedia after = mediaOf({"C", "B"});
  EXPECT_EQ(JobMedia::moved("Custom3", before, after).value, "Custom1");
  EXPECT_EQ(JobMedia::moved("custom-3", before, after).value, "custom-1");
  EXPECT_EQ(JobMedia::moved("CUSTOM-3", before, after).value, "custom-1");
  EXPECT_EQ(JobMedia::moved("CUSTOM3", before, after).value, "Custom1");
  EXPECT_EQ(JobMedia::moved("Custom2", before, after).value, "Custom2");
  EXPECT_EQ(JobMedia::moved("Plain", before, after).value, "Plain");
  EXPECT_EQ(JobMedia::moved("Unknown", before, after).value, "Unknown");
  EXPECT_EQ(JobMedia::moved("Custom1", before, after).gone->ID, "A");
  EXPECT_EQ(JobMedia::moved("Custom3", before, after).gone, nullptr);
}

TEST(JobMedia, AValueThatNamedNothingGetsNoMedium) {
  EXPECT_EQ(JobMedia::moved("Custom2", mediaOf({"A"}), mediaOf({"A", "B"})).gone->ID, "B");
  EXPECT_EQ(JobMedia::moved("Custom3", mediaOf({"A"}), mediaOf({"A", "B"})).gone, nullptr);
}

TEST(JobMedia, EveryFormOfAJobMoves) {
  const Job job = jobWith({"Custom2", "custom-2", "custom-2", {"A4", "custom-2"}});
  const auto moved = JobMedia::moved(job, mediaOf({"A", "B"}), mediaOf({"B"}));
  EXPECT_EQ(moved.choice.MediaType, "Custom1");
  EXPECT_EQ(moved.choice.mediaType, "custom-1");
  EXPECT_EQ(moved.choice.typeInCollection, "custom-1");
  EXPECT_THAT(moved.choice.media, ElementsAre("A4", "custom-1"));
  EXPECT_EQ(moved.medium, "");
}

TEST(JobMedia, OneFormWhoseMediumIsGoneIsEnough) {
  for (const JobChoice& choice : {withOption("Custom1"), JobChoice{"", "custom-1", "", {}},
                                  JobChoice{"", "", "custom-1", {}}, JobChoice{"", "", "", {"A4", "custom-1"}}}) {
    const auto moved = JobMedia::moved(jobWith(choice), mediaOf({"A", "B"}), mediaOf({"B"}));
    EXPECT_EQ(moved.choice.MediaType, JobMedia::kGone);
    EXPECT_EQ(moved.goneLabel, "Medium A (ID A)");
    EXPECT_EQ(moved.medium, JobMedia::digestOf(mediaOf({"A"}).withChoice("Custom1")->key));
  }
}

TEST(JobMedia, TheFirstPagesChoiceMoves) {
  JobChoice choice = withOption("Custom2");
  choice.ofFirstPage = "Custom3";
  const auto moved = JobMedia::moved(jobWith(choice), mediaOf({"A", "B", "C"}), mediaOf({"C", "B"}));
  EXPECT_EQ(moved.choice.MediaType, "Custom2");
  EXPECT_EQ(moved.choice.ofFirstPage, "Custom1");
}

TEST(JobMedia, AJobWhoseFirstPagesMediumIsGoneIsNotKnownAgain) {
  Job job = jobWith(withOption("Custom2"));
  job.choice.ofFirstPage = "Custom1";
  const auto gone = JobMedia::moved(job, mediaOf({"A", "B"}), mediaOf({"B"}));
  EXPECT_EQ(gone.choice.ofFirstPage, JobMedia::kGone);
  EXPECT_EQ(gone.goneLabel, "Medium A (ID A)");
  job.choice = gone.choice;
  job.medium = gone.medium;
  EXPECT_EQ(JobMedia::moved(job, mediaOf({"B"}), mediaOf({"A", "B"})).choice, job.choice);
}

TEST(JobMedia, DefaultsOfAQueueMove) {
  Queue queue;
  queue.defaults = {{"MediaType", "Custom3"}, {"media-type", "custom-1"}, {"media", "A4"}};
  EXPECT_THAT(JobMedia::movedDefaults(queue, mediaOf({"A", "B", "C"}), mediaOf({"C"})),
              ElementsAre(testing::Pair("MediaType", "Custom1"), testing::Pair("media-type", "")));
}

TEST(JobMedia, AJobWithoutAChoiceIsForTheDefault) {
  EXPECT_EQ(JobMedia::moved(jobWith({}), mediaOf({"A", "B"}, "Custom1"), mediaOf({"B"})).choice.MediaType,
            JobMedia::kGone);
  EXPECT_EQ(JobMedia::moved(jobWith({}), mediaOf({"A", "B"}, "Custom2"), mediaOf({"B"})).choice, JobChoice());
  EXPECT_EQ(JobMedia::moved(jobWith({"", "", "", {"A4"}}), mediaOf({"A"}, "Custom1"), mediaOf({})).choice.MediaType,
            JobMedia::kGone);
  EXPECT_EQ(JobMedia::moved(jobWith({"", "", "", {"custom-2"}}), mediaOf({"A", "B"}, "Custom1"), mediaOf({"B"}))
                .choice.MediaType,
            "");
}

TEST(JobMedia, AMediumThatComesBackIsKnownAgain) {
  Job job = jobWith(withOption("Custom1"));
  const auto gone = JobMedia::moved(job, mediaOf({"A", "B"}), mediaOf({"B"}));
  job.choice = gone.choice;
  job.medium = gone.medium;
  const auto still = JobMedia::moved(job, mediaOf({"B"}), mediaOf({"C", "B"}));
  EXPECT_EQ(still.choice, job.choice);
  EXPECT_EQ(still.medium, job.medium);
  const auto back = JobMedia::moved(job, mediaOf({"C", "B"}), mediaOf({"C", "B", "A"}));
  EXPECT_EQ(back.choice.MediaType, "Custom3");
  EXPECT_EQ(back.medium, "");
}
