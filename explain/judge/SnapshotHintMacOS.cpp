// SPDX-License-Identifier: MIT
#include "explain/judge/SnapshotHint.h"

// There the device itself is asked, and no snapshot.
std::optional<SnapshotHint> snapshotHintFor(const Report::Question& /*question*/) {
  return std::nullopt;
}
