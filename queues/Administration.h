// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "queues/Refresh.h"
#include "queues/StatusWriters.h"

/// The work of the sub-commands. Each gives the exit status of monitoring plugins: 0 nothing is left to do, 1 something
/// is, 2 a setup failed or its source is gone, 3 something could not be told or done; the worst of all queues. What
/// fails for one queue is said, and the others go on; a scheduler that is gone ends it.
class Administration {
 public:
  struct Parts {
    Scheduler& scheduler;
    std::string folder;                                                          ///< of setups
    std::function<void(const std::string&)> say;                                 ///< a sentence that names the queue
    std::function<void(const std::string&)> print;                               ///< to standard output
    std::function<void(std::size_t, std::size_t, const std::string&)> progress;  ///< number, of how many, queue
  };

  explicit Administration(Parts parts) : parts_(std::move(parts)) {}

  /// All queues without names; of these `others` shows those of other drivers too.
  int status(const std::vector<std::string>& names, bool others, StatusWriter::Format format);
  /// All queues without names; of these, those that were edited by hand are left alone. What changes in the folder
  /// meanwhile is looked at before the end. Null for `refresh`: a dry run.
  int refresh(const std::vector<std::string>& names, Refresh* refresh, Refresh& preview);
  /// Makes the queues so; with `prune` removes those that an earlier call made and that are not among them.
  int apply(const std::vector<QueueWish>& wishes, bool prune, const StateFolder& state, Refresh* refresh,
            Refresh& preview);

 private:
  /// Calls the work for each name, and gives the worst status.
  int forEach(const std::vector<std::string>& names, const std::function<int(const std::string&)>& work);
  int refreshEach(const std::vector<std::string>& names, Refresh* refresh, Refresh& preview);
  int refreshOne(const QueueJudgement& judged, bool isNamed, Refresh* refresh, Refresh& preview);
  int applyOne(const QueueWish& wish, const StateFolder& state, Refresh* refresh, Refresh& preview);
  int makeNew(const QueueWish& wish, const StateFolder& state, bool isDry);
  int prune(const std::vector<QueueWish>& wishes, const StateFolder& state, bool isDry);
  QueueJudgement judge(const std::string& name, const std::string& wanted = "");

  Parts parts_;
  std::optional<SetupFolder> setups_;  // as it is when a sub-command begins
};
