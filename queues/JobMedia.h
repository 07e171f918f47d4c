// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>

#include "explain/compare/PPDMedia.h"
#include "scheduler/Scheduler.h"

/// What becomes of a choice of a medium when the media of its queue's PPD are numbered anew. Media are the same when
/// their keys are (PPDMedia).
namespace JobMedia {

/// The choice of a job whose medium is gone: the name of none, so that a later setup gives it no other one.
inline constexpr const char* kGone = "medium-gone";

/// What is told of a medium that is gone by 16 digits, so that it is known when it comes back.
std::string digestOf(const std::string& key);

struct Moved {
  std::string value;                       ///< the same medium's choice; the given one when nothing is to be done
  const PPDMedia::Medium* gone = nullptr;  ///< the medium that is gone; of `before`
};

/// A single choice of MediaType, or a name of IPP, in any letter case. One that named no medium before, and would name
/// one after, counts as gone (`gone` is that one, of `after`).
Moved moved(const std::string& value, const PPDMedia& before, const PPDMedia& after);

/// The queue's defaults beside its PPD that change, as Scheduler::setPPD takes them.
std::map<std::string, std::string> movedDefaults(const Queue& queue, const PPDMedia& before, const PPDMedia& after);

struct MovedJob {
  JobChoice choice;
  std::string medium;     ///< digestOf of the medium that is gone; empty when the job can be printed
  std::string goneLabel;  ///< of it, for people
};

/// A job in all its forms. One without a choice is for the queue's default. One that waits for its medium gets it when
/// it is there again, and otherwise stays as it is.
MovedJob moved(const Job& job, const PPDMedia& before, const PPDMedia& after);

}  // namespace JobMedia
