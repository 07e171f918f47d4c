// SPDX-License-Identifier: MIT
#include "queues/JobMedia.h"

#include <strings.h>

#include <algorithm>

#include "setup/SetupDigest.h"

namespace {

using Medium = PPDMedia::Medium;

constexpr std::size_t kDigitsOfMedium = 16;

// As libcups compares choices and names.
bool isSame(const std::string& one, const std::string& other) {
  return strcasecmp(one.c_str(), other.c_str()) == 0;
}

// Whether the value is the medium's choice, or its name in IPP.
bool names(const std::string& value, const Medium& medium) {
  return isSame(value, medium.choice) || (medium.isCustom && isSame(value, medium.IPPName()));
}

const Medium* namedIn(const PPDMedia& media, const std::string& value) {
  const auto found =
      std::find_if(media.media.begin(), media.media.end(), [&](const Medium& each) { return names(value, each); });
  return found == media.media.end() ? nullptr : &*found;
}

const Medium* waitedFor(const std::string& digest, const PPDMedia& media) {
  const auto found = std::find_if(media.media.begin(), media.media.end(),
                                  [&](const Medium& each) { return JobMedia::digestOf(each.key) == digest; });
  return found == media.media.end() ? nullptr : &*found;
}

JobMedia::MovedJob gone(const Job& job, const Medium& medium) {
  JobMedia::MovedJob moved{job.choice, JobMedia::digestOf(medium.key), medium.label()};
  moved.choice.MediaType = JobMedia::kGone;
  return moved;
}

// Of the first page only, which is not known again: the choice of the others would be lost by then.
JobMedia::MovedJob firstPageGone(const Job& job, const Medium& medium) {
  JobMedia::MovedJob moved = gone(job, medium);
  moved.choice.ofFirstPage = JobMedia::kGone;
  moved.medium = "first-page";
  return moved;
}

bool isEmpty(const JobChoice& choice) {
  return choice.MediaType.empty() && choice.mediaType.empty() && choice.typeInCollection.empty();
}

}  // namespace

std::string JobMedia::digestOf(const std::string& key) {
  return SetupDigest::ofSources(key, "").substr(0, kDigitsOfMedium);
}

JobMedia::Moved JobMedia::moved(const std::string& value, const PPDMedia& before, const PPDMedia& after) {
  const Medium* was = namedIn(before, value);
  if (was == nullptr) return {value, namedIn(after, value)};
  const Medium* now = after.withKey(was->key, was->name);
  if (now == nullptr) return {value, was};
  if (now->choice == was->choice) return {value, nullptr};
  return {isSame(value, was->choice) ? now->choice : now->IPPName(), nullptr};
}

std::map<std::string, std::string> JobMedia::movedDefaults(const Queue& queue, const PPDMedia& before,
                                                           const PPDMedia& after) {
  std::map<std::string, std::string> changed;
  for (const auto& [name, value] : queue.defaults) {
    const Moved one = moved(value, before, after);
    if (one.gone != nullptr || one.value != value) changed[name] = one.gone == nullptr ? one.value : "";
  }
  return changed;
}

JobMedia::MovedJob JobMedia::moved(const Job& job, const PPDMedia& before, const PPDMedia& after) {
  MovedJob result{job.choice, "", ""};
  if (job.choice.MediaType == kGone) {
    const Medium* back = waitedFor(job.medium, after);
    if (back != nullptr) result.choice.MediaType = back->choice;
    result.medium = back == nullptr ? job.medium : "";
    return result;
  }
  std::vector<std::string*> values = {&result.choice.MediaType, &result.choice.mediaType,
                                      &result.choice.typeInCollection, &result.choice.ofFirstPage};
  for (std::string& each : result.choice.media) values.push_back(&each);
  bool hasMedium = !isEmpty(job.choice);
  for (std::string* value : values) {
    if (value->empty()) continue;
    hasMedium = hasMedium || namedIn(before, *value) != nullptr;
    const Moved one = moved(*value, before, after);
    if (one.gone != nullptr) {
      return value == &result.choice.ofFirstPage ? firstPageGone(job, *one.gone) : gone(job, *one.gone);
    }
    *value = one.value;
  }
  if (hasMedium) return result;
  const Moved ofDefault = moved(before.defaultChoice, before, after);
  return ofDefault.gone == nullptr ? result : gone(job, *ofDefault.gone);
}
