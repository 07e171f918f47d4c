// SPDX-License-Identifier: MIT
#include "queues/StatusWriters.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

using testing::HasSubstr;

namespace {

QueueJudgement judged(const std::string& queue, QueueJudgement::State state) {
  QueueJudgement judged;
  judged.queue = queue;
  judged.state = state;
  judged.source = "p/z.ppd";
  judged.reason = "because";
  if (state == QueueJudgement::State::stale) {
    judged.changes.push_back({MediaChange::Kind::gone, {"Custom1", "Canvas", "4711", "k", "", {}, true}, {}});
  }
  return judged;
}

std::string written(StatusWriter::Format format, const std::vector<QueueJudgement>& all) {
  StatusWriter writer(format);
  std::string text = writer.begin();
  for (const QueueJudgement& each : all) text += writer.of(each);
  return text + writer.end();
}

using State = QueueJudgement::State;

}  // namespace

TEST(StatusWriter, TextHasALineForEachQueueAndChange) {
  EXPECT_EQ(written(StatusWriter::Format::text, {judged("a", State::current), judged("b", State::stale)}),
            "a: current\nb: stale: its media changed; call refresh\n  Canvas (ID 4711) is gone, it was Custom1\n");
  EXPECT_THAT(written(StatusWriter::Format::text, {judged("c", State::wouldFail)}),
              HasSubstr("c: a setup would fail: because; correct p/z.ppd"));
  EXPECT_THAT(written(StatusWriter::Format::text, {judged("c", State::sourceGone)}),
              HasSubstr("is gone: because; put"));
  EXPECT_THAT(written(StatusWriter::Format::text, {judged("c", State::edited)}),
              HasSubstr("c: edited by hand; refresh"));
  EXPECT_THAT(written(StatusWriter::Format::text, {judged("c", State::foreign)}), HasSubstr("c: not made by"));
}

TEST(StatusWriter, JSONHasAllOfIt) {
  const auto json = nlohmann::json::parse(
      written(StatusWriter::Format::JSON, {judged("a", State::current), judged("b\xFF\"", State::stale)}));
  EXPECT_EQ(json["format"], "vorantis-queues-status");
  ASSERT_EQ(json["queues"].size(), 2U);
  EXPECT_EQ(json["queues"][0]["state"], "current");
  EXPECT_EQ(json["queues"][1]["changes"][0]["kind"], "gone");
  EXPECT_EQ(json["queues"][1]["changes"][0]["ID"], "4711");
  EXPECT_EQ(json["queues"][1]["changes"][0]["before"]["choice"], "Custom1");
  EXPECT_TRUE(nlohmann::json::parse(written(StatusWriter::Format::JSON, {}))["queues"].empty());
}

TEST(StatusWriter, OpenMetricsIsAStateSet) {
  const std::string text = written(StatusWriter::Format::openMetrics, {judged("a\"b", State::stale)});
  EXPECT_THAT(text, HasSubstr("\nvorantis_queue_state{queue=\"a\\\"b\",vorantis_queue_state=\"stale\"} 1\n"));
  EXPECT_THAT(text, HasSubstr("\nvorantis_queue_state{queue=\"a\\\"b\",vorantis_queue_state=\"current\"} 0\n"));
  EXPECT_THAT(text, testing::EndsWith("\n# EOF\n"));
}

TEST(StatusWriter, TheExitStatusIsTheWorst) {
  StatusWriter writer(StatusWriter::Format::text);
  EXPECT_EQ(writer.exitStatus(), 0);
  writer.of(judged("a", State::foreign));
  writer.of(judged("a", State::current));
  EXPECT_EQ(writer.exitStatus(), 0);
  writer.of(judged("a", State::edited));
  EXPECT_EQ(writer.exitStatus(), 1);
  writer.of(judged("a", State::wouldFail));
  writer.of(judged("a", State::stale));
  EXPECT_EQ(writer.exitStatus(), 2);
}
