// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "queues/JobMedia.h"
#include "queues/QueueJudgement.h"
#include "queues/RefreshRecord.h"
#include "scheduler/Scheduler.h"

/// Gives queues new PPDs, and everything in them that names a medium the same medium again: defaults and jobs. The
/// order of its steps, each of which may be the last one of this process or of the scheduler, is docs/queues.md's.
class Refresh {
 public:
  using Seconds = std::chrono::seconds;
  struct Settings {
    Seconds longestJob{300};  ///< how long a job that is being printed is waited for
    Seconds settling{35};     ///< until the scheduler has written what it knows (its DirtyCleanInterval, and a bit)
    std::function<void(std::chrono::milliseconds)> sleep;
    std::function<void(const std::string&)> say;  ///< takes a sentence for people that names the queue
  };

  enum class Outcome { done, busy };

  Refresh(Scheduler& scheduler, const StateFolder& state, Settings settings)
      : scheduler_(scheduler), state_(state), settings_(std::move(settings)) {}

  /// Ends what an earlier call began and did not bring to its end.
  void recover(const std::string& name);
  /// Gives the queue the PPD `judged.fresh`. Throws std::runtime_error when that cannot be done; the queue is then as
  /// it was, unless the scheduler is gone.
  Outcome run(const QueueJudgement& judged);
  /// Says what `run` would do to defaults and jobs.
  void preview(const QueueJudgement& judged);

 private:
  RefreshRecord recordFor(const QueueJudgement& judged, const Queue& queue);
  bool finishPrinting(RefreshRecord& record);
  void standStill(RefreshRecord& record, const Queue& queue);
  bool changesJobs(const RefreshRecord& record);
  void change(const RefreshRecord& record, const std::string& old);
  void finish(RefreshRecord& record);
  std::string restoredPPD(const RefreshRecord& record);
  std::vector<int> moveJobs(const RefreshRecord& record, const PPDMedia& now);
  void moveJob(const RefreshRecord& record, const Job& job, const JobMedia::MovedJob& moved);
  void moveDefaults(const RefreshRecord& record, const PPDMedia& now);
  void goOn(const RefreshRecord& record);
  std::string carried(const QueueJudgement& judged, const PPDMedia& before, const PPDMedia& after);
  void say(const std::string& queue, const std::string& text) const { settings_.say(queue + ": " + text); }

  Scheduler& scheduler_;
  const StateFolder& state_;
  Settings settings_;
};
