// SPDX-License-Identifier: MIT
#include "scheduler/IPPScheduler.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <string_view>

#include "explain/watch/MemoryFile.h"
#include "scheduler/IPPAttributes.h"

namespace {

using namespace IPPAttributes;

constexpr std::array<ipp_status_t, 4> kOfRights = {IPP_STATUS_ERROR_NOT_AUTHORIZED, IPP_STATUS_ERROR_FORBIDDEN,
                                                   IPP_STATUS_ERROR_NOT_AUTHENTICATED,
                                                   IPP_STATUS_ERROR_CUPS_AUTHENTICATION_CANCELED};

std::string uriOf(const std::string& queue) {
  std::array<char, HTTP_MAX_URI> uri{};
  httpAssembleURIf(HTTP_URI_CODING_ALL, uri.data(), uri.size(), "ipp", nullptr, "localhost", ippPort(), "/printers/%s",
                   queue.c_str());
  return uri.data();
}

// There is no such queue or job, or the job was printed in the meantime.
bool isAbsent() {
  return cupsLastError() == IPP_STATUS_ERROR_NOT_FOUND || cupsLastError() == IPP_STATUS_ERROR_NOT_POSSIBLE;
}

bool isGood() {
  return cupsLastError() <= IPP_STATUS_OK_EVENTS_COMPLETE;
}

[[noreturn]] void failOf(const std::string& queue) {
  const ipp_status_t status = cupsLastError();
  const std::string reason = cupsLastErrorString();
  if (status == IPP_STATUS_ERROR_SERVICE_UNAVAILABLE) {
    throw Scheduler::Gone(
        fmt::format("the scheduler {} does not answer; start it, or name another with -h", cupsServer()));
  }
  const bool isRight = std::find(kOfRights.begin(), kOfRights.end(), status) != kOfRights.end();
  throw std::runtime_error(fmt::format("{}the scheduler refuses: {}{}", queue.empty() ? "" : queue + ": ", reason,
                                       isRight ? "; call this as root, or as one whom it lets administer" : ""));
}

// libcups sends and receives files by their descriptors.
struct Opened {
  Opened(const MemoryFile& file, int mode) : descriptor(open(file.path().c_str(), mode | O_CLOEXEC)) {}
  Opened(const Opened&) = delete;
  Opened& operator=(const Opened&) = delete;
  ~Opened() { close(descriptor); }

  int descriptor;
};

}  // namespace

bool IPPScheduler::isLocal() {
  const std::string_view server = cupsServer();
  return server.starts_with('/') || server == "localhost" || server.starts_with("127.") || server == "::1" ||
         server == "[::1]";
}

IPPScheduler::Message IPPScheduler::request(ipp_op_t operation, const std::string& queue) {
  Message message(ippNewRequest(operation));
  if (!queue.empty()) add(message.get(), IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", uriOf(queue));
  add(message.get(), IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", cupsUser());
  return message;
}

IPPScheduler::Message IPPScheduler::jobRequest(ipp_op_t operation, const std::string& queue, int job) {
  Message message(ippNewRequest(operation));
  add(message.get(), IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", uriOf(queue));
  ippAddInteger(message.get(), IPP_TAG_OPERATION, IPP_TAG_INTEGER, "job-id", job);
  add(message.get(), IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", cupsUser());
  return message;
}

IPPScheduler::Message IPPScheduler::ask(Message request, const std::string& queue, const char* resource,
                                        int descriptor) {
  Message answer(cupsDoIORequest(CUPS_HTTP_DEFAULT, request.release(), resource, descriptor, -1));
  if (answer != nullptr && isGood()) return answer;
  if (isAbsent()) return nullptr;
  failOf(queue);
}

void IPPScheduler::demand(Message request, const std::string& queue, const char* resource, int descriptor) {
  if (ask(std::move(request), queue, resource, descriptor) == nullptr) failOf(queue);
}

std::vector<std::string> IPPScheduler::queueNames() {
  Message message = request(IPP_OP_CUPS_GET_PRINTERS);
  add(message.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes", "printer-name");
  ippAddInteger(message.get(), IPP_TAG_OPERATION, IPP_TAG_ENUM, "printer-type", 0);
  ippAddInteger(message.get(), IPP_TAG_OPERATION, IPP_TAG_ENUM, "printer-type-mask",
                CUPS_PRINTER_CLASS | CUPS_PRINTER_REMOTE);
  std::vector<std::string> names;
  if (const Message answer = ask(std::move(message), "")) {  // a server without queues has none to be found
    forEachGroup(answer.get(), IPP_TAG_PRINTER, [&](ipp_t* one) { names.push_back(textIn(one, "printer-name")); });
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::optional<Queue> IPPScheduler::queue(const std::string& name) {
  Message message = request(IPP_OP_GET_PRINTER_ATTRIBUTES, name);
  wantQueue(message.get());
  const Message answer = ask(std::move(message), name);
  if (answer == nullptr) return std::nullopt;
  return queueFrom(answer.get());
}

std::optional<std::string> IPPScheduler::PPDOf(const std::string& queue) {
  const MemoryFile file;
  const Opened opened(file, O_WRONLY);
  const Message answer(
      cupsDoIORequest(CUPS_HTTP_DEFAULT, request(IPP_OP_CUPS_GET_PPD, queue).release(), "/", -1, opened.descriptor));
  if (isAbsent()) return std::nullopt;
  if (answer == nullptr || !isGood()) failOf(queue);
  std::ifstream content(file.path(), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(content), std::istreambuf_iterator<char>());
}

std::vector<Job> IPPScheduler::jobsOf(const std::string& queue) {
  Message message = request(IPP_OP_GET_JOBS, queue);
  add(message.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "which-jobs", "not-completed");
  wantJob(message.get());
  std::vector<Job> jobs;
  if (const Message answer = ask(std::move(message), queue)) {
    forEachGroup(answer.get(), IPP_TAG_JOB, [&](ipp_t* one) { jobs.push_back(jobFrom(one)); });
  }
  return jobs;
}

void IPPScheduler::make(const QueueWish& wish) {
  const bool isNew = !queue(wish.name);
  Message message = request(IPP_OP_CUPS_ADD_MODIFY_PRINTER, wish.name);
  if (!wish.model.empty()) add(message.get(), IPP_TAG_OPERATION, IPP_TAG_NAME, "ppd-name", wish.model);
  if (!wish.uri.empty()) add(message.get(), IPP_TAG_PRINTER, IPP_TAG_URI, "device-uri", wish.uri);
  add(message.get(), IPP_TAG_PRINTER, IPP_TAG_TEXT, "printer-info", wish.info);
  add(message.get(), IPP_TAG_PRINTER, IPP_TAG_TEXT, "printer-location", wish.location);
  if (isNew) {
    ippAddInteger(message.get(), IPP_TAG_PRINTER, IPP_TAG_ENUM, "printer-state", IPP_PSTATE_IDLE);
    ippAddBoolean(message.get(), IPP_TAG_PRINTER, "printer-is-accepting-jobs", 1);
  }
  demand(std::move(message), wish.name);
}

void IPPScheduler::remove(const std::string& queue) {
  demand(request(IPP_OP_CUPS_DELETE_PRINTER, queue), queue);
}

void IPPScheduler::setPPD(const std::string& queue, const std::string& ppd,
                          const std::map<std::string, std::string>& defaults) {
  MemoryFile file;
  if (!file.append(ppd)) throw std::runtime_error(queue + ": there is no memory for its PPD");
  const Opened opened(file, O_RDONLY);
  Message message = request(IPP_OP_CUPS_ADD_MODIFY_PRINTER, queue);
  for (const auto& [name, value] : defaults) {
    const ipp_tag_t tag = value.empty() ? IPP_TAG_DELETEATTR : IPP_TAG_NAME;
    add(message.get(), IPP_TAG_PRINTER, tag, (name + "-default").c_str(), value);
  }
  demand(std::move(message), queue, "/admin/", ppd.empty() ? -1 : opened.descriptor);
}

void IPPScheduler::pause(const std::string& queue, const std::string& message) {
  Message pausing = request(IPP_OP_PAUSE_PRINTER, queue);
  add(pausing.get(), IPP_TAG_PRINTER, IPP_TAG_TEXT, "printer-state-message", message);
  demand(std::move(pausing), queue);
}

void IPPScheduler::resume(const std::string& queue) {
  demand(request(IPP_OP_RESUME_PRINTER, queue), queue);
}

void IPPScheduler::hold(const std::string& queue, int job) {
  ask(jobRequest(IPP_OP_HOLD_JOB, queue, job), queue, "/jobs/");
}

void IPPScheduler::release(const std::string& queue, int job) {
  ask(jobRequest(IPP_OP_RELEASE_JOB, queue, job), queue, "/jobs/");
}

void IPPScheduler::change(const std::string& queue, int job, const JobChange& change) {
  // The rest of a collection is the job's own.
  const Message before = change.choice.typeInCollection.empty()
                             ? nullptr
                             : ask(jobRequest(IPP_OP_GET_JOB_ATTRIBUTES, queue, job), queue, "/jobs/");
  Message message = jobRequest(IPP_OP_SET_JOB_ATTRIBUTES, queue, job);
  addChange(message.get(), change, before.get());
  ask(std::move(message), queue, "/jobs/");
}
