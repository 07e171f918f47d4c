// SPDX-License-Identifier: MIT
#pragma once

#include <strings.h>

#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

/// An order of names of queues, in which the scheduler does not tell letter cases apart.
struct QueueNameLess {
  bool operator()(const std::string& one, const std::string& other) const {
    return strcasecmp(one.c_str(), other.c_str()) < 0;
  }
};

/// A print queue as the scheduler has it.
struct Queue {
  std::string name, uri, info, location;
  std::string UUID;     ///< tells it from an earlier one of the same name
  std::string message;  ///< printer-state-message
  bool isStopped = false;
  bool isAccepting = true;
  /// The defaults of media that the scheduler keeps beside the PPD, by the name of the job's attribute.
  std::map<std::string, std::string> defaults;
};

/// What a job says of its medium: in each form that it may have, empty when it does not.
struct JobChoice {
  std::string MediaType;           ///< the option of the PPD: a choice
  std::string mediaType;           ///< media-type: a name of the kind that IPP has
  std::string typeInCollection;    ///< the same, in media-col
  std::vector<std::string> media;  ///< media: sizes, sources, and names of that kind
  std::string ofFirstPage = {};    ///< AP_FIRSTPAGE_MediaType: a choice for the first page only

  bool operator==(const JobChoice& other) const = default;
};

/// A job that was not printed yet.
struct Job {
  int id = 0;
  bool isProcessing = false;
  bool isHeld = false;
  JobChoice choice;
  std::string setup;   ///< which refresh moved its choice last; empty for none
  std::string medium;  ///< what the medium was that is gone (JobMedia::digestOf); empty for any other job
};

/// What a job becomes.
struct JobChange {
  JobChoice choice;
  std::string setup, medium;  ///< as in Job
  std::string message;        ///< for people; none when empty
};

/// A queue that is to be made or changed.
struct QueueWish {
  std::string name;
  std::string uri;  ///< empty: the queue keeps its own, and goes on with the job that is being printed
  std::string info, location;
  std::string model;  ///< the name of a driver program's PPD; empty: the queue keeps its own
};

/// The scheduler, by its own protocol. Every operation throws std::runtime_error with one sentence that names the
/// queue when it was refused.
class Scheduler {
 public:
  /// It does not answer.
  struct Gone : std::runtime_error {
    using runtime_error::runtime_error;
  };

  virtual ~Scheduler() = default;

  /// The printers of this server, without classes and what other servers share, sorted by name.
  virtual std::vector<std::string> queueNames() = 0;
  /// Absent when there is no queue of this name.
  virtual std::optional<Queue> queue(const std::string& name) = 0;
  /// Absent when the queue has none.
  virtual std::optional<std::string> PPDOf(const std::string& queue) = 0;
  /// Those that were not printed yet, in the order of the scheduler.
  virtual std::vector<Job> jobsOf(const std::string& queue) = 0;

  /// Makes or changes a queue; a new one is switched on.
  virtual void make(const QueueWish& wish) = 0;
  virtual void remove(const std::string& queue) = 0;
  /// Gives the queue this PPD (unless it is empty), and beside it these defaults; an empty one is taken away.
  virtual void setPPD(const std::string& queue, const std::string& ppd,
                      const std::map<std::string, std::string>& defaults) = 0;
  /// Stops the queue at once; a job that is being printed begins anew later.
  virtual void pause(const std::string& queue, const std::string& message) = 0;
  virtual void resume(const std::string& queue) = 0;
  virtual void hold(const std::string& queue, int job) = 0;
  virtual void release(const std::string& queue, int job) = 0;
  virtual void change(const std::string& queue, int job, const JobChange& change) = 0;
};
