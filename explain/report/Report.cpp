// SPDX-License-Identifier: MIT
#include "explain/report/Report.h"

#include <algorithm>

std::size_t Report::Updater::realChanges() const {
  return static_cast<std::size_t>(std::count_if(changes.begin(), changes.end(),
                                                [](const Change& change) { return change.kind != ChangeKind::moved; }));
}

bool Report::MediumOutcome::lostSomething() const {
  return !lost.empty() ||
         std::any_of(profiles.begin(), profiles.end(), [](const Profile& profile) { return profile.lost.has_value(); });
}

Report::Updater* Report::lastMediaUpdater() {
  return const_cast<Updater*>(std::as_const(*this).lastMediaUpdater());
}

const Report::Updater* Report::lastMediaUpdater() const {
  const auto found =
      std::find_if(updaters.rbegin(), updaters.rend(), [](const Updater& updater) { return updater.askedForMedia; });
  return found == updaters.rend() ? nullptr : &*found;
}
