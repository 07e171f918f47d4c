// SPDX-License-Identifier: MIT
#include "scheduler/IPPAttributes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <memory>

using testing::ElementsAre;
using testing::Pair;
using testing::UnorderedElementsAre;

namespace {

using Message = std::unique_ptr<ipp_t, void (*)(ipp_t*)>;

Message newMessage() {
  return {ippNew(), ippDelete};
}

void addCollection(ipp_t* message, const char* type) {
  ipp_t* collection = ippNew();
  ippAddInteger(collection, IPP_TAG_JOB, IPP_TAG_INTEGER, "media-top-margin", 500);
  IPPAttributes::add(collection, IPP_TAG_JOB, IPP_TAG_KEYWORD, "media-type", type);
  ippAddCollection(message, IPP_TAG_JOB, "media-col", collection);
  ippDelete(collection);
}

}  // namespace

TEST(IPPAttributes, ReadAQueue) {
  const Message message = newMessage();
  ipp_t* printer = message.get();
  for (const auto& [name, value] :
       {std::pair("printer-name", "q"), std::pair("device-uri", "socket://h"), std::pair("printer-info", "I"),
        std::pair("printer-location", "L"), std::pair("printer-state-message", "M"),
        std::pair("MediaType-default", "Custom1"), std::pair("printer-uuid", "U")}) {
    IPPAttributes::add(printer, IPP_TAG_PRINTER, IPP_TAG_NAME, name, value);
  }
  ippAddInteger(printer, IPP_TAG_PRINTER, IPP_TAG_ENUM, "printer-state", IPP_PSTATE_STOPPED);
  ippAddBoolean(printer, IPP_TAG_PRINTER, "printer-is-accepting-jobs", 0);
  const Queue queue = IPPAttributes::queueFrom(printer);
  EXPECT_EQ(queue.name + queue.uri + queue.info + queue.location + queue.message + queue.UUID, "qsocket://hILMU");
  EXPECT_TRUE(queue.isStopped);
  EXPECT_FALSE(queue.isAccepting);
  EXPECT_THAT(queue.defaults, UnorderedElementsAre(Pair("MediaType", "Custom1")));
}

TEST(IPPAttributes, ReadAJobInAllItsForms) {
  const Message message = newMessage();
  ipp_t* attributes = message.get();
  ippAddInteger(attributes, IPP_TAG_JOB, IPP_TAG_INTEGER, "job-id", 12);
  ippAddInteger(attributes, IPP_TAG_JOB, IPP_TAG_ENUM, "job-state", IPP_JSTATE_HELD);
  IPPAttributes::add(attributes, IPP_TAG_JOB, IPP_TAG_NAME, "MediaType", "Custom1");
  IPPAttributes::add(attributes, IPP_TAG_JOB, IPP_TAG_KEYWORD, "media-type", "custom-2");
  IPPAttributes::add(attributes, IPP_TAG_JOB, IPP_TAG_NAME, "AP_FIRSTPAGE_MediaType", "Custom9");
  const std::array<const char*, 2> media = {"A4", "custom-4"};
  ippAddStrings(attributes, IPP_TAG_JOB, IPP_TAG_KEYWORD, "media", 2, nullptr, media.data());
  addCollection(attributes, "custom-3");
  const Job job = IPPAttributes::jobFrom(attributes);
  EXPECT_EQ(job.id, 12);
  EXPECT_TRUE(job.isHeld);
  EXPECT_FALSE(job.isProcessing);
  EXPECT_EQ(job.choice, (JobChoice{"Custom1", "custom-2", "custom-3", {"A4", "custom-4"}, "Custom9"}));
}

TEST(IPPAttributes, AnEmptyMessageIsAnEmptyJobAndQueue) {
  const Message message = newMessage();
  EXPECT_EQ(IPPAttributes::jobFrom(message.get()).choice, JobChoice());
  EXPECT_EQ(IPPAttributes::queueFrom(message.get()).name, "");
}

TEST(IPPAttributes, AChangeIsReadAsItWasMade) {
  const Message before = newMessage();
  addCollection(before.get(), "custom-3");
  const Message message = newMessage();
  const JobChange change = {{"Custom2", "custom-2", "custom-5", {"A4", "custom-2"}, "Custom8"}, "s", "m", "text"};
  IPPAttributes::addChange(message.get(), change, before.get());
  const Job job = IPPAttributes::jobFrom(message.get());
  EXPECT_EQ(job.choice, change.choice);
  EXPECT_EQ(job.setup, "s");
  EXPECT_EQ(job.medium, "m");
  EXPECT_EQ(IPPAttributes::textIn(message.get(), "job-message-from-operator"), "text");
  ipp_t* collection = ippGetCollection(ippFindAttribute(message.get(), "media-col", IPP_TAG_ZERO), 0);
  EXPECT_EQ(ippGetInteger(ippFindAttribute(collection, "media-top-margin", IPP_TAG_ZERO), 0), 500);
}

TEST(IPPAttributes, WhatDoesNotChangeIsNotSent) {
  const Message message = newMessage();
  IPPAttributes::addChange(message.get(), {{"Custom2", "", "", {}}, "", "", ""}, nullptr);
  EXPECT_STREQ(ippGetName(ippFirstAttribute(message.get())), "MediaType");
  EXPECT_EQ(ippNextAttribute(message.get()), nullptr);
}

TEST(IPPAttributes, GroupsAreToldApart) {
  const Message message = newMessage();
  IPPAttributes::add(message.get(), IPP_TAG_OPERATION, IPP_TAG_NAME, "job-name", "no job");
  for (const char* name : {"a", "b"}) {
    ippAddSeparator(message.get());
    IPPAttributes::add(message.get(), IPP_TAG_JOB, IPP_TAG_NAME, "job-name", name);
  }
  std::vector<std::string> names;
  IPPAttributes::forEachGroup(message.get(), IPP_TAG_JOB,
                              [&](ipp_t* one) { names.push_back(IPPAttributes::textIn(one, "job-name")); });
  EXPECT_THAT(names, ElementsAre("a", "b"));
}
