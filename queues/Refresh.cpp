// SPDX-License-Identifier: MIT
#include "queues/Refresh.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <stdexcept>

#include "setup/CarriedDefaults.h"

namespace {

using std::chrono::milliseconds;

// Tells a queue that stands still for a refresh from one that somebody stopped.
constexpr const char* kMark = "vorantis-queues: the media of this queue are being changed";
constexpr milliseconds kLook(500);

bool contains(const std::vector<int>& numbers, int number) {
  return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

bool isOurs(const Queue& queue) {
  return queue.isStopped && queue.message == kMark;
}

}  // namespace

// The new PPD with the queue's defaults, that of the medium moved with it.
std::string Refresh::carried(const QueueJudgement& judged, const PPDMedia& before, const PPDMedia& after) {
  const JobMedia::Moved medium = JobMedia::moved(before.defaultChoice, before, after);
  const auto result =
      CarriedDefaults::from(judged.old, judged.fresh, medium.gone == nullptr ? medium.value : medium.gone->label());
  for (const std::string& lost : result.lost) say(judged.queue, lost);
  return result.ppd;
}

RefreshRecord Refresh::recordFor(const QueueJudgement& judged, const Queue& queue) {
  RefreshRecord record;
  record.queue = queue.name;
  record.UUID = queue.UUID;
  record.id = fmt::format("{}-{}", std::time(nullptr), getpid());
  record.before = PPDMedia::ofText(judged.old);
  const PPDMedia after = PPDMedia::ofText(judged.fresh);
  record.ppd = carried(judged, record.before, after);
  record.defaults = JobMedia::movedDefaults(queue, record.before, after);
  record.defaultsBefore = queue.defaults;
  for (const auto& [name, value] : record.defaults) {
    if (value.empty()) say(queue.name, fmt::format("the medium of the default {} is gone; now there is none", name));
  }
  record.wasPrinting = !queue.isStopped;
  return record;
}

Refresh::Outcome Refresh::run(const QueueJudgement& judged) {
  const auto queue = scheduler_.queue(judged.queue);
  if (!queue) throw std::runtime_error(judged.queue + ": there is no such queue any more");
  if (state_.record(queue->name)) {  // of a refresh whose results the scheduler may not have written yet
    settings_.sleep(settings_.settling);
    recover(queue->name);
  }
  RefreshRecord record = recordFor(judged, *queue);
  state_.write(record);
  bool isIdle = false;
  try {
    isIdle = finishPrinting(record);
    if (isIdle) {
      standStill(record, *queue);
      change(record, judged.old);
    }
  } catch (const Scheduler::Gone&) {
    throw;
  } catch (const std::runtime_error&) {
    finish(record);  // by the PPD that the queue still has
    throw;
  }
  finish(record);
  return isIdle ? Outcome::done : Outcome::busy;
}

// Holds the jobs behind the one that is being printed, so that none begins behind it: the scheduler's own pause would
// break it off, and print it again from its beginning later.
bool Refresh::finishPrinting(RefreshRecord& record) {
  for (milliseconds waited{}; true; waited += kLook) {
    const std::vector<Job> jobs = scheduler_.jobsOf(record.queue);
    if (std::none_of(jobs.begin(), jobs.end(), [](const Job& job) { return job.isProcessing; })) return true;
    if (waited >= settings_.longestJob) return false;
    if (waited == milliseconds(0)) say(record.queue, "waits for the job that is being printed");
    std::vector<int> toHold;
    for (const Job& job : jobs) {
      if (!job.isProcessing && !job.isHeld && !contains(record.held, job.id)) toHold.push_back(job.id);
    }
    record.held.insert(record.held.end(), toHold.begin(), toHold.end());
    if (!toHold.empty()) state_.write(record);
    for (const int job : toHold) scheduler_.hold(record.queue, job);
    settings_.sleep(kLook);
  }
}

void Refresh::standStill(RefreshRecord& record, const Queue& queue) {
  if (!queue.isStopped) scheduler_.pause(record.queue, kMark);
  for (const Job& job : scheduler_.jobsOf(record.queue)) record.jobs.push_back(job.id);
  record.standsStill = true;
  state_.write(record);
  // A scheduler that is killed comes back with what it has written, and it writes with a delay. A queue whose jobs
  // mean other media by then must come back stopped.
  if (changesJobs(record)) settings_.sleep(settings_.settling);
}

bool Refresh::changesJobs(const RefreshRecord& record) {
  const PPDMedia after = PPDMedia::ofText(record.ppd);
  const std::vector<Job> jobs = scheduler_.jobsOf(record.queue);
  return std::any_of(jobs.begin(), jobs.end(), [&](const Job& job) {
    return !(JobMedia::moved(job, record.before, after).choice == job.choice);
  });
}

void Refresh::change(const RefreshRecord& record, const std::string& old) {
  const auto queue = scheduler_.queue(record.queue);
  if (!queue || !queue->isStopped || scheduler_.PPDOf(record.queue).value_or("") != old) {
    throw std::runtime_error(record.queue +
                             ": somebody else changed the queue, or switched it on, at the same time; call this again");
  }
  scheduler_.setPPD(record.queue, record.ppd, record.defaults);
  if (scheduler_.PPDOf(record.queue) != record.ppd) {
    throw std::runtime_error(record.queue +
                             ": the queue's PPD is not the one that it was given; look into the "
                             "scheduler's log");
  }
}

void Refresh::recover(const std::string& name) {
  const auto queue = scheduler_.queue(name);
  if (!queue) return state_.remove(name);
  auto record = state_.record(queue->name);
  if (record && record->UUID == queue->UUID) {
    if (record->finished == 0) say(queue->name, "a refresh was broken off; it is brought to its end");
    return finish(*record);
  }
  if (record) state_.remove(queue->name);  // of a queue that was removed, and whose name this one has got
  if (isOurs(*queue)) scheduler_.resume(queue->name);
}

// From here on everything is worked out from the PPD that the queue has now, be it the old or the new one, so that it
// may be done again at any time.
void Refresh::finish(RefreshRecord& record) {
  std::vector<int> moved;
  if (record.standsStill) {
    const PPDMedia now = PPDMedia::ofText(restoredPPD(record));
    moveDefaults(record, now);
    moved = moveJobs(record, now);
  }
  goOn(record);
  const std::time_t time = std::time(nullptr);
  const bool isFirst = record.finished == 0;
  const bool isWritten = time - record.finished > settings_.settling.count();
  if (moved.empty() && (isFirst || isWritten)) return state_.remove(record.queue);
  if (isFirst) record.jobs = moved;  // what somebody chooses for others from now on is no concern of this refresh
  if (!moved.empty()) record.finished = time;
  state_.write(record);  // until the scheduler has written the jobs, a kill would bring them back as they were
}

// The PPD of the queue, which has none when the scheduler was killed between the two names of the file.
std::string Refresh::restoredPPD(const RefreshRecord& record) {
  const std::string ppd = scheduler_.PPDOf(record.queue).value_or("");
  const bool isLost = ppd.empty() && !record.before.media.empty();
  if (isLost) scheduler_.setPPD(record.queue, record.ppd, record.defaults);
  return isLost ? record.ppd : ppd;
}

// Those that a killed scheduler has forgotten; what somebody changed in the meantime stays.
void Refresh::moveDefaults(const RefreshRecord& record, const PPDMedia& now) {
  const auto queue = scheduler_.queue(record.queue);
  if (!queue || record.defaults.empty()) return;
  auto missing = JobMedia::movedDefaults(*queue, record.before, now);
  std::erase_if(missing, [&](const auto& each) {
    const auto was = record.defaultsBefore.find(each.first);
    return was == record.defaultsBefore.end() || was->second != queue->defaults.at(each.first);
  });
  if (!missing.empty()) scheduler_.setPPD(record.queue, "", missing);
}

// Gives those that it moved. A job says itself to which PPD its choice belongs, and is not moved twice.
std::vector<int> Refresh::moveJobs(const RefreshRecord& record, const PPDMedia& now) {
  std::vector<int> all;
  const bool isFirst = record.finished == 0;
  for (const Job& job : scheduler_.jobsOf(record.queue)) {
    const bool isMoved = job.setup == record.id;
    if (isMoved && isFirst) all.push_back(job.id);
    const bool isKnown = contains(record.jobs, job.id);
    if (isMoved || (!isKnown && !isFirst)) continue;
    JobMedia::MovedJob moved = JobMedia::moved(job, record.before, now);
    if (moved.choice == job.choice && moved.medium == job.medium) continue;
    if (!isKnown) {  // nobody knows whether it came before the change or behind it
      moved.choice.MediaType = JobMedia::kGone;
      moved.medium = moved.medium.empty() ? "unknown" : moved.medium;
      moved.goneLabel = "";
    }
    moveJob(record, job, moved);
    all.push_back(job.id);
  }
  return all;
}

void Refresh::moveJob(const RefreshRecord& record, const Job& job, const JobMedia::MovedJob& moved) {
  const std::string& queue = record.queue;
  std::string message;
  if (!moved.medium.empty()) {
    message = moved.goneLabel.empty() ? "it came in while the queue's media were changed, and its medium is a guess"
                                      : fmt::format("its medium {} is gone", moved.goneLabel);
    message +=
        fmt::format("; choose another (lp -i {0} -o MediaType=CHOICE) and release it (lp -i {0} -H resume)", job.id);
    scheduler_.hold(queue, job.id);  // before its choice changes, so that it is never one without the other
  } else if (job.choice.MediaType == JobMedia::kGone) {
    message = fmt::format("its medium is there again; release it (lp -i {} -H resume)", job.id);
  }
  scheduler_.change(queue, job.id, {moved.choice, record.id, moved.medium, message});
  say(queue, fmt::format("job {} {}", job.id, message.empty() ? "moves with its medium" : "is held: " + message));
}

void Refresh::goOn(const RefreshRecord& record) {
  if (record.finished == 0) {
    for (const Job& job : scheduler_.jobsOf(record.queue)) {
      if (contains(record.held, job.id) && job.isHeld && job.medium.empty()) scheduler_.release(record.queue, job.id);
    }
  }
  const auto queue = scheduler_.queue(record.queue);
  if (queue && isOurs(*queue) && record.wasPrinting) scheduler_.resume(record.queue);
}

void Refresh::preview(const QueueJudgement& judged) {
  const auto queue = scheduler_.queue(judged.queue);
  if (!queue) return;
  const PPDMedia before = PPDMedia::ofText(judged.old);
  const PPDMedia after = PPDMedia::ofText(judged.fresh);
  carried(judged, before, after);
  for (const Job& job : scheduler_.jobsOf(judged.queue)) {
    const JobMedia::MovedJob moved = JobMedia::moved(job, before, after);
    if (moved.choice == job.choice) continue;
    const std::string what = moved.goneLabel.empty() ? "would move with its medium"
                                                     : "would be held: its medium " + moved.goneLabel + " is gone";
    say(judged.queue, fmt::format("job {} {}", job.id, what));
  }
}
