// SPDX-License-Identifier: MIT
#include "explain/Report.h"

#include <algorithm>

const Report::Updater* Report::lastMediaUpdater() const {
  const auto found =
      std::find_if(updaters.rbegin(), updaters.rend(), [](const Updater& updater) { return updater.askedForMedia; });
  return found == updaters.rend() ? nullptr : &*found;
}
