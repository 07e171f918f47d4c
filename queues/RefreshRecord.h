// SPDX-License-Identifier: MIT
#pragma once

#include <ctime>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "explain/compare/PPDMedia.h"
#include "scheduler/Scheduler.h"

/// What a refresh is about to do to a queue, on disk before the first change, so that the next call can bring the queue
/// to a right state whenever this program or the scheduler ended in between (docs/queues.md says why this is enough).
struct RefreshRecord {
  std::string queue;
  std::string UUID;          ///< the queue's, since another one may get its name
  std::string id;            ///< of this refresh; jobs that it moved bear it
  std::string ppd;           ///< that the queue is to get
  PPDMedia before;           ///< the media of the PPD that it has; only what tells them apart is kept
  bool wasPrinting = false;  ///< it is to be resumed at the end
  std::vector<int> held;     ///< jobs that are held only for the time of the refresh
  bool standsStill = false;  ///< the queue does, and `jobs` is known
  std::vector<int> jobs;     ///< those that waited then; when all is done, those that were moved
  std::map<std::string, std::string> defaults, defaultsBefore;  ///< as in Scheduler::setPPD, and what they were
  std::time_t finished = 0;  ///< when all was done, as far as this program could see; 0 until then
};

/// The queues that `apply` made, each with its UUID, which is empty when it is not known.
using AppliedQueues = std::map<std::string, std::string, QueueNameLess>;

/// The folder of this program's own state: records, and who made which queue. Throws std::runtime_error with the reason
/// when something in it cannot be read or written.
class StateFolder {
 public:
  /// Makes the folder unless it is there, or is only looked into.
  StateFolder(std::string path, bool isOnlyRead);

  /// Absent when there is none, or it was never written to its end.
  std::optional<RefreshRecord> record(const std::string& queue) const;
  /// On disk when it returns.
  void write(const RefreshRecord& record) const;
  void remove(const std::string& queue) const;

  AppliedQueues applied() const;
  void writeApplied(const AppliedQueues& queues) const;

  /// Lets one process at a time go on, until it ends; `wait` is called once before another one is waited for.
  template <class Wait>
  void lock(Wait wait) {
    if (tryLock(false)) return;
    wait();
    tryLock(true);
  }

 private:
  std::string pathOf(const std::string& name) const { return path_ + "/" + name + ".json"; }
  bool tryLock(bool waits);
  void writeFile(const std::string& path, const std::string& content) const;

  std::string path_;
  int lock_ = -1;
};
