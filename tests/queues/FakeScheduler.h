// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "scheduler/Scheduler.h"

/// A scheduler in memory that can end at any call, as by a kill: what it had not written is then as it was before, but
/// for a PPD, which CUPS writes at once.
class FakeScheduler : public Scheduler {
 public:
  struct Killed : Gone {
    Killed() : Gone("killed") {}
  };
  struct Printer {
    Queue queue;
    std::string ppd;
    std::vector<Job> jobs;
  };

  std::map<std::string, Printer> printers;
  std::vector<std::string> calls;  ///< those that change something
  int callsUntilKilled = -1;       ///< negative: never; the call that is reached is still done
  bool diesBeforeTheCall = false;  ///< it is not
  bool refusesPPDs = false;

  /// All that is known becomes durable.
  void flush() { written_ = printers; }
  /// The process ends and begins anew.
  void restart() {
    for (auto& [name, printer] : written_) printer.ppd = printers.at(name).ppd;
    printers = written_;
    callsUntilKilled = -1;
  }
  Printer& only() { return printers.begin()->second; }
  Job& job(int number) {
    return *std::find_if(only().jobs.begin(), only().jobs.end(), [=](const Job& job) { return job.id == number; });
  }

  std::vector<std::string> queueNames() override {
    std::vector<std::string> names;
    for (const auto& [name, printer] : printers) names.push_back(name);
    return names;
  }
  std::optional<Queue> queue(const std::string& name) override {
    tick("");
    const auto found = printers.find(name);
    return found == printers.end() ? std::nullopt : std::optional(found->second.queue);
  }
  std::optional<std::string> PPDOf(const std::string& name) override {
    tick("");
    const auto found = printers.find(name);
    return found == printers.end() || found->second.ppd.empty() ? std::nullopt : std::optional(found->second.ppd);
  }
  std::vector<Job> jobsOf(const std::string& name) override {
    tick("");
    return printers.at(name).jobs;
  }
  void make(const QueueWish& wish) override {
    change("make " + wish.name + " " + wish.model, [&] {
      Queue& queue = printers[wish.name].queue;
      queue.name = wish.name;
      if (queue.UUID.empty()) queue.UUID = "uuid-" + std::to_string(printers.size());
      if (!wish.uri.empty()) queue.uri = wish.uri;
      queue.info = wish.info;
      queue.location = wish.location;
    });
  }
  void remove(const std::string& name) override {
    change("remove " + name, [&] { printers.erase(name); });
  }
  void setPPD(const std::string& name, const std::string& ppd,
              const std::map<std::string, std::string>& defaults) override {
    if (refusesPPDs) throw std::runtime_error(name + ": refused");
    change(ppd.empty() ? "defaults" : "PPD", [&] {
      if (!ppd.empty()) printers.at(name).ppd = ppd;
      for (const auto& [option, value] : defaults) {
        printers.at(name).queue.defaults[option] = value;
        if (value.empty()) printers.at(name).queue.defaults.erase(option);
      }
    });
  }
  void pause(const std::string& name, const std::string& message) override {
    change("pause", [&] {
      printers.at(name).queue.isStopped = true;
      printers.at(name).queue.message = message;
    });
  }
  void resume(const std::string& name) override {
    change("resume", [&] {
      printers.at(name).queue.isStopped = false;
      printers.at(name).queue.message.clear();
    });
  }
  void hold(const std::string& /*name*/, int number) override {
    change("hold " + std::to_string(number), [&] { job(number).isHeld = true; });
  }
  void release(const std::string& /*name*/, int number) override {
    change("release " + std::to_string(number), [&] { job(number).isHeld = false; });
  }
  void change(const std::string& /*name*/, int number, const JobChange& wanted) override {
    change("change " + std::to_string(number), [&] {
      Job& changed = job(number);
      changed.choice = wanted.choice;
      changed.setup = wanted.setup;
      if (!wanted.medium.empty()) changed.medium = wanted.medium;
    });
  }

 private:
  void tick(const std::string& call) {
    if (!call.empty()) calls.push_back(call);
    if (callsUntilKilled == 0) throw Killed();
    if (callsUntilKilled > 0) --callsUntilKilled;
  }
  template <class Change>
  void change(const std::string& call, Change change) {
    if (diesBeforeTheCall) tick(call);
    change();
    if (!diesBeforeTheCall) tick(call);
  }

  std::map<std::string, Printer> written_;
};
