// SPDX-License-Identifier: MIT
#pragma once

#include <cups/ipp.h>

#include <string>

#include "scheduler/Scheduler.h"

/// What queues and jobs are in messages of the Internet Printing Protocol (RFC 8011), through libcups.
namespace IPPAttributes {

/// The first value of an attribute that is text; empty without one.
std::string textIn(ipp_t* message, const char* name);
void add(ipp_t* message, ipp_tag_t group, ipp_tag_t type, const char* name, const std::string& value);

/// Ask for what the two below take. Of jobs that is all: options have the letter case in which somebody wrote them.
void wantQueue(ipp_t* request);
void wantJob(ipp_t* request);
Queue queueFrom(ipp_t* message);
Job jobFrom(ipp_t* message);

/// Adds what the job becomes, as far as it is not empty. `before` are the job's attributes, for what else its media-col
/// holds; null when that does not change.
void addChange(ipp_t* request, const JobChange& change, ipp_t* before);

/// Calls `take` with a message for each group of this kind, in which only that group's attributes are.
template <class Take>
void forEachGroup(ipp_t* answer, ipp_tag_t group, Take take) {
  ipp_t* one = ippNew();
  bool isInGroup = false;
  for (auto* each = ippFirstAttribute(answer); each != nullptr; each = ippNextAttribute(answer)) {
    const bool belongs = ippGetGroupTag(each) == group && ippGetName(each) != nullptr;
    if (belongs) {
      ippCopyAttribute(one, each, 0);
    } else if (isInGroup) {
      take(one);
      ippDelete(one);
      one = ippNew();
    }
    isInGroup = belongs;
  }
  if (isInGroup) take(one);
  ippDelete(one);
}

}  // namespace IPPAttributes
