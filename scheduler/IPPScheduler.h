// SPDX-License-Identifier: MIT
#pragma once

#include <cups/cups.h>

#include <memory>

#include "scheduler/Scheduler.h"

/// The scheduler of the process' environment (CUPS_SERVER, client.conf), or of cupsSetServer, asked through libcups.
class IPPScheduler : public Scheduler {
 public:
  /// Whether it runs on this machine, as far as its name tells.
  static bool isLocal();

  std::vector<std::string> queueNames() override;
  std::optional<Queue> queue(const std::string& name) override;
  std::optional<std::string> PPDOf(const std::string& queue) override;
  std::vector<Job> jobsOf(const std::string& queue) override;
  void make(const QueueWish& wish) override;
  void remove(const std::string& queue) override;
  void setPPD(const std::string& queue, const std::string& ppd,
              const std::map<std::string, std::string>& defaults) override;
  void pause(const std::string& queue, const std::string& message) override;
  void resume(const std::string& queue) override;
  void hold(const std::string& queue, int job) override;
  void release(const std::string& queue, int job) override;
  void change(const std::string& queue, int job, const JobChange& change) override;

 private:
  struct Delete {
    void operator()(ipp_t* message) const { ippDelete(message); }
  };
  using Message = std::unique_ptr<ipp_t, Delete>;

  static Message request(ipp_op_t operation, const std::string& queue = "");
  static Message jobRequest(ipp_op_t operation, const std::string& queue, int job);
  /// The answer; null when there is no such queue or job. `descriptor` is a file to send or negative.
  static Message ask(Message request, const std::string& queue, const char* resource = "/", int descriptor = -1);
  static void demand(Message request, const std::string& queue, const char* resource = "/admin/", int descriptor = -1);
};
