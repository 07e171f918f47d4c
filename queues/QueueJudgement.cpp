// SPDX-License-Identifier: MIT
#include "queues/QueueJudgement.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <array>
#include <chrono>
#include <ctime>
#include <stdexcept>
#include <thread>

#include "explain/judge/IsolatedCall.h"
#include "setup/SetupDigest.h"
#include "setup/StrictSetup.h"

namespace {

using std::chrono::milliseconds;

constexpr int kQuietSeconds = 2;
constexpr milliseconds kLookAtFiles(250);
constexpr int kMostLooks = 60;
constexpr milliseconds kLongestSetup(120'000);

bool wasJustWritten(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && std::time(nullptr) - status.st_mtime < kQuietSeconds &&
         status.st_mtime <= std::time(nullptr);
}

void waitUntilWritten(const SetupFolder::Files& files) {
  for (int look = 0; look < kMostLooks && (wasJustWritten(files.snapshot) || wasJustWritten(files.PPD)); ++look) {
    std::this_thread::sleep_for(kLookAtFiles);
  }
}

// In a process of its own: the device-model library reads one snapshot in the life of a process.
StrictSetup::Result setUp(SetupFolder& folder, const std::string& name) {
  const auto result = IsolatedCall::resultOf(
      [&] {
        try {
          const auto made = StrictSetup::run(folder.named(name));
          return made.failure.empty() ? "+" + made.ppd : "-" + made.failure;
        } catch (const std::exception& error) {
          return std::string("-") + error.what();
        }
      },
      kLongestSetup);
  if (!result || result->empty()) return {"", "the setup crashed, or came to no end", {}};
  const bool isMade = result->front() == '+';
  return {isMade ? result->substr(1) : "", isMade ? "" : result->substr(1), {}};
}

void judgeSetup(QueueJudgement& judged, SetupFolder& folder, const std::string& name, const std::string& result) {
  const StrictSetup::Result made = setUp(folder, name);
  if (!made.failure.empty()) {
    judged.state = QueueJudgement::State::wouldFail;
    judged.reason = made.failure;
    return;
  }
  const bool isSame = SetupDigest::ofResult(made.ppd) == result;
  judged.state = isSame ? QueueJudgement::State::current : QueueJudgement::State::stale;
  if (isSame) return;
  judged.fresh = made.ppd;
  judged.changes = MediaChange::between(PPDMedia::ofText(judged.old), PPDMedia::ofText(judged.fresh));
}

}  // namespace

const char* QueueJudgement::stateName() const {
  return kStates.at(static_cast<std::size_t>(state));
}

std::string QueueJudgement::text() const {
  switch (state) {
    case State::current:
      return "current";
    case State::stale:
      return changes.empty() ? "stale: its PPD would be another, with the same media; call refresh"
                             : "stale: its media changed; call refresh";
    case State::edited:
      return "edited by hand; refresh it by its name to undo that, or put the change into its base PPD";
    case State::sourceGone:
      return fmt::format("its source is gone: {}; put it back, or set the queue up from another", reason);
    case State::wouldFail:
      return fmt::format("a setup would fail: {}; correct {}", reason, source);
    case State::foreign:
      break;
  }
  return "not made by the driver program vorantis-autosetup";
}

QueueJudgement QueueJudgement::of(const std::string& queue, const std::optional<std::string>& ppd, SetupFolder& folder,
                                  const std::string& wanted) {
  QueueJudgement judged;
  judged.queue = queue;
  judged.old = ppd.value_or("");
  const SetupStatement has = SetupStatement::of(judged.old).value_or(SetupStatement());
  judged.source = wanted.empty() ? has.source : wanted;
  judged.version = has.version;
  if (judged.source.empty()) return judged;
  const std::string result = SetupDigest::ofResult(judged.old);
  judged.isEdited = result != has.result;
  const std::string name = std::string(SetupStatement::kScheme) + judged.source;
  try {
    const auto files = folder.filesOf(name);
    waitUntilWritten(files);
    const bool isSame = has.source == judged.source && has.version == AT_VERSION &&
                        has.sources == SetupDigest::ofFiles(files.PPD, files.snapshot);
    judged.state = State::current;
    if (!isSame || judged.isEdited) judgeSetup(judged, folder, name, result);
  } catch (const std::runtime_error& error) {
    judged.state = State::sourceGone;
    judged.reason = error.what();
  }
  if (judged.isEdited && judged.state == State::stale && has.source == judged.source) judged.state = State::edited;
  return judged;
}
