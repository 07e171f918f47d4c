// SPDX-License-Identifier: MIT
#include "explain/report/Report.h"

#include <algorithm>

std::size_t Report::Updater::realChanges() const {
  return static_cast<std::size_t>(std::count_if(changes.begin(), changes.end(),
                                                [](const Change& change) { return change.kind != ChangeKind::moved; }));
}

const Report::Updater* Report::lastMediaUpdater() const {
  const auto found =
      std::find_if(updaters.rbegin(), updaters.rend(), [](const Updater& updater) { return updater.askedForMedia; });
  return found == updaters.rend() ? nullptr : &*found;
}
