// SPDX-License-Identifier: MIT
#include "queues/Administration.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

namespace {

using State = QueueJudgement::State;

constexpr int kDone = 0;
constexpr int kLeft = 1;
constexpr int kFailed = 2;
constexpr int kUnknown = 3;
constexpr int kMostRounds = 10;

}  // namespace

int Administration::forEach(const std::vector<std::string>& names, const std::function<int(const std::string&)>& work) {
  int status = kDone;
  for (std::size_t index = 0; index < names.size(); ++index) {
    parts_.progress(index + 1, names.size(), names[index]);
    try {
      status = std::max(status, work(names[index]));
    } catch (const Scheduler::Gone&) {
      throw;
    } catch (const std::runtime_error& error) {
      parts_.say(error.what());
      status = kUnknown;
    }
  }
  return status;
}

QueueJudgement Administration::judge(const std::string& name, const std::string& wanted) {
  const auto ppd = parts_.scheduler.PPDOf(name);
  if (!ppd && !parts_.scheduler.queue(name)) throw std::runtime_error(name + ": there is no such queue");
  return QueueJudgement::of(name, ppd, *setups_, wanted);
}

int Administration::status(const std::vector<std::string>& names, bool others, StatusWriter::Format format) {
  setups_.emplace(parts_.folder);
  StatusWriter writer(format);
  parts_.print(writer.begin());
  const int failed = forEach(names.empty() ? parts_.scheduler.queueNames() : names, [&](const std::string& name) {
    const QueueJudgement judged = judge(name);
    if (judged.state != State::foreign || others || !names.empty()) parts_.print(writer.of(judged));
    return kDone;
  });
  parts_.print(writer.end());
  return std::max(failed, writer.exitStatus());
}

int Administration::refresh(const std::vector<std::string>& names, Refresh* refresh, Refresh& preview) {
  int status = kDone;
  for (int round = 0; round < kMostRounds; ++round) {
    setups_.emplace(parts_.folder);
    const std::string stamp = setups_->stamp();
    status = refreshEach(names, refresh, preview);
    if (refresh == nullptr || SetupFolder(parts_.folder).stamp() == stamp) break;
    parts_.say(parts_.folder + " changed in the meantime; looks again");
  }
  return status;
}

int Administration::refreshEach(const std::vector<std::string>& names, Refresh* refresh, Refresh& preview) {
  return forEach(names.empty() ? parts_.scheduler.queueNames() : names, [&](const std::string& name) {
    if (refresh != nullptr) refresh->recover(name);
    const QueueJudgement judged = judge(name);
    if (judged.state == State::foreign && names.empty()) return kDone;
    return refreshOne(judged, !names.empty(), refresh, preview);
  });
}

int Administration::refreshOne(const QueueJudgement& judged, bool isNamed, Refresh* refresh, Refresh& preview) {
  const bool isWanted = judged.state == State::stale || (judged.state == State::edited && isNamed);
  if (!isWanted) {
    if (judged.state != State::current) parts_.say(fmt::format("{}: {}", judged.queue, judged.text()));
    if (judged.state == State::current) return kDone;
    return judged.state == State::edited ? kLeft : judged.state == State::foreign ? kUnknown : kFailed;
  }
  for (const MediaChange& change : judged.changes) parts_.say(fmt::format("{}: {}", judged.queue, change.text()));
  if (refresh == nullptr) {
    preview.preview(judged);
    parts_.say(judged.queue + ": would be refreshed");
    return kLeft;
  }
  if (refresh->run(judged) == Refresh::Outcome::busy) {
    parts_.say(judged.queue + ": is still printing; nothing was changed, call this again");
    return kLeft;
  }
  parts_.say(judged.queue + ": is refreshed");
  return kDone;
}

int Administration::apply(const std::vector<QueueWish>& wishes, bool prune, const StateFolder& state, Refresh* refresh,
                          Refresh& preview) {
  setups_.emplace(parts_.folder);
  std::vector<std::string> names;
  for (const QueueWish& wish : wishes) names.push_back(wish.name);
  const int status = forEach(names, [&](const std::string& name) {
    const auto wish = std::find_if(wishes.begin(), wishes.end(), [&](const auto& each) { return each.name == name; });
    return applyOne(*wish, state, refresh, preview);
  });
  return prune ? std::max(status, this->prune(wishes, state, refresh == nullptr)) : status;
}

int Administration::applyOne(const QueueWish& wish, const StateFolder& state, Refresh* refresh, Refresh& preview) {
  const bool isDry = refresh == nullptr;
  if (!isDry) refresh->recover(wish.name);
  const auto queue = parts_.scheduler.queue(wish.name);
  if (!queue) return makeNew(wish, state, isDry);
  const std::string source = wish.model.substr(SetupStatement::kScheme.size());
  const int status = refreshOne(judge(wish.name, source), true, refresh, preview);
  const std::string uri = queue->uri == wish.uri ? "" : wish.uri;
  if (uri.empty() && queue->info == wish.info && queue->location == wish.location) return status;
  parts_.say(fmt::format("{}: {} (uri {}, info \"{}\", location \"{}\")", wish.name,
                         isDry ? "would be changed" : "is changed", wish.uri, wish.info, wish.location));
  if (isDry) return std::max(status, kLeft);
  parts_.scheduler.make({wish.name, uri, wish.info, wish.location, ""});
  return status;
}

int Administration::makeNew(const QueueWish& wish, const StateFolder& state, bool isDry) {
  const std::string source = wish.model.substr(SetupStatement::kScheme.size());
  const QueueJudgement judged = QueueJudgement::of(wish.name, std::nullopt, *setups_, source);
  if (judged.state != State::stale) {
    parts_.say(fmt::format("{}: {}", wish.name, judged.text()));
    return kFailed;
  }
  parts_.say(fmt::format("{}: {} from {}", wish.name, isDry ? "would be made" : "is made", source));
  if (isDry) return kLeft;
  auto applied = state.applied();
  applied[wish.name] = "";  // before it is made, so that it is never one that nobody removes
  state.writeApplied(applied);
  parts_.scheduler.make(wish);
  if (const auto made = parts_.scheduler.queue(wish.name)) applied[wish.name] = made->UUID;
  state.writeApplied(applied);
  return kDone;
}

int Administration::prune(const std::vector<QueueWish>& wishes, const StateFolder& state, bool isDry) {
  const AppliedQueues applied = state.applied();
  AppliedQueues left = applied;
  AppliedQueues unwanted = applied;
  for (const QueueWish& wish : wishes) unwanted.erase(wish.name);
  std::vector<std::string> gone;
  for (const auto& [name, UUID] : unwanted) gone.push_back(name);
  const int status = forEach(gone, [&](const std::string& name) {
    left.erase(name);
    const auto queue = parts_.scheduler.queue(name);
    const std::string& UUID = applied.at(name);
    if (!queue || (!UUID.empty() && queue->UUID != UUID)) return kDone;  // somebody removed it, and made another
    parts_.say(name + (isDry ? ": would be removed" : ": is removed"));
    if (isDry) return kLeft;
    parts_.scheduler.remove(name);
    return kDone;
  });
  if (!isDry && !gone.empty() && status == kDone) state.writeApplied(left);
  return status;
}
