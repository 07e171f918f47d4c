// SPDX-License-Identifier: MIT
#include "scheduler/IPPAttributes.h"

#include <fmt/format.h>

#include <array>
#include <string_view>
#include <vector>

namespace {

constexpr std::array<const char*, 11> kOfQueue = {
    "printer-name",  "device-uri",        "printer-info",       "printer-location", "printer-state-message",
    "printer-state", "MediaType-default", "media-type-default", "media-default",    "printer-is-accepting-jobs",
    "printer-uuid"};
constexpr std::array<const char*, 3> kDefaults = {"MediaType", "media-type", "media"};
constexpr const char* kWanted = "requested-attributes";
constexpr const char* kFirstPage = "AP_FIRSTPAGE_MediaType";
constexpr const char* kSetup = "vorantis-setup";
constexpr const char* kMedium = "vorantis-medium";

ipp_attribute_t* attributeIn(ipp_t* message, const char* name) {
  return ippFindAttribute(message, name, IPP_TAG_ZERO);
}

std::string textOf(ipp_attribute_t* attribute) {
  const char* text = attribute == nullptr ? nullptr : ippGetString(attribute, 0, nullptr);
  return text == nullptr ? "" : text;
}

}  // namespace

std::string IPPAttributes::textIn(ipp_t* message, const char* name) {
  return textOf(attributeIn(message, name));
}

void IPPAttributes::add(ipp_t* message, ipp_tag_t group, ipp_tag_t type, const char* name, const std::string& value) {
  ippAddString(message, group, type, name, nullptr, value.c_str());
}

void IPPAttributes::wantQueue(ipp_t* request) {
  ippAddStrings(request, IPP_TAG_OPERATION, IPP_TAG_KEYWORD, kWanted, kOfQueue.size(), nullptr, kOfQueue.data());
}

void IPPAttributes::wantJob(ipp_t* request) {
  add(request, IPP_TAG_OPERATION, IPP_TAG_KEYWORD, kWanted, "all");
}

Queue IPPAttributes::queueFrom(ipp_t* message) {
  Queue queue{textIn(message, "printer-name"),
              textIn(message, "device-uri"),
              textIn(message, "printer-info"),
              textIn(message, "printer-location"),
              textIn(message, "printer-uuid"),
              textIn(message, "printer-state-message"),
              false,
              true,
              {}};
  queue.isStopped = ippGetInteger(attributeIn(message, "printer-state"), 0) == IPP_PSTATE_STOPPED;
  queue.isAccepting = ippGetBoolean(attributeIn(message, "printer-is-accepting-jobs"), 0) != 0;
  for (const char* name : kDefaults) {
    const std::string value = textIn(message, fmt::format("{}-default", name).c_str());
    if (!value.empty()) queue.defaults[name] = value;
  }
  return queue;
}

Job IPPAttributes::jobFrom(ipp_t* message) {
  Job job;
  job.id = ippGetInteger(attributeIn(message, "job-id"), 0);
  const int state = ippGetInteger(attributeIn(message, "job-state"), 0);
  job.isProcessing = state == IPP_JSTATE_PROCESSING;
  job.isHeld = state == IPP_JSTATE_HELD;
  job.choice.MediaType = textIn(message, "MediaType");
  job.choice.mediaType = textIn(message, "media-type");
  if (ipp_t* collection = ippGetCollection(attributeIn(message, "media-col"), 0)) {
    job.choice.typeInCollection = textIn(collection, "media-type");
  }
  ipp_attribute_t* media = attributeIn(message, "media");
  for (int index = 0; index < ippGetCount(media); ++index) {
    if (const char* value = ippGetString(media, index, nullptr)) job.choice.media.emplace_back(value);
  }
  job.choice.ofFirstPage = textIn(message, kFirstPage);
  job.setup = textIn(message, kSetup);
  job.medium = textIn(message, kMedium);
  return job;
}

namespace {

using IPPAttributes::add;

// The same collection with another media-type.
ipp_t* withType(ipp_t* collection, const std::string& type) {
  ipp_t* changed = ippNew();
  for (auto* each = ippFirstAttribute(collection); each != nullptr; each = ippNextAttribute(collection)) {
    if (std::string_view(ippGetName(each)) != "media-type") ippCopyAttribute(changed, each, 0);
  }
  add(changed, IPP_TAG_JOB, IPP_TAG_KEYWORD, "media-type", type);
  return changed;
}

void addMedia(ipp_t* request, const std::vector<std::string>& media) {
  std::vector<const char*> values;
  for (const std::string& each : media) values.push_back(each.c_str());
  if (values.empty()) return;
  ippAddStrings(request, IPP_TAG_JOB, IPP_TAG_KEYWORD, "media", static_cast<int>(values.size()), nullptr,
                values.data());
}

void addCollection(ipp_t* request, const std::string& type, ipp_t* before) {
  ipp_t* collection = ippGetCollection(attributeIn(before, "media-col"), 0);
  if (collection == nullptr) return;
  ipp_t* changed = withType(collection, type);
  ippAddCollection(request, IPP_TAG_JOB, "media-col", changed);
  ippDelete(changed);  // the request counts itself
}

}  // namespace

void IPPAttributes::addChange(ipp_t* request, const JobChange& change, ipp_t* before) {
  const auto addUnlessEmpty = [request](ipp_tag_t type, const char* name, const std::string& value) {
    if (!value.empty()) add(request, IPP_TAG_JOB, type, name, value);
  };
  addUnlessEmpty(IPP_TAG_NAME, "MediaType", change.choice.MediaType);
  addUnlessEmpty(IPP_TAG_KEYWORD, "media-type", change.choice.mediaType);
  addUnlessEmpty(IPP_TAG_NAME, kFirstPage, change.choice.ofFirstPage);
  addUnlessEmpty(IPP_TAG_NAME, kSetup, change.setup);
  addUnlessEmpty(IPP_TAG_NAME, kMedium, change.medium);
  addUnlessEmpty(IPP_TAG_TEXT, "job-message-from-operator", change.message);
  addMedia(request, change.choice.media);
  if (before != nullptr) addCollection(request, change.choice.typeInCollection, before);
}
