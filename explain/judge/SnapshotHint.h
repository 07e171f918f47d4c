// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "explain/report/Report.h"

/// What the stored device-model library's snapshot has instead, when a question found no device: a wrong address or a
/// model name without its quotes is seen at once beside the right one. Only the report looks into the file; the tool
/// knows libraries, and no snapshots.
struct SnapshotHint {
  std::string text;                   ///< a sentence for people
  bool isDeviceWithoutMedia = false;  ///< the device asked for is there, without custom media
};

/// For a question that no data store answered. Absent when the environment names a snapshot that cannot be read: the
/// library itself tells that.
std::optional<SnapshotHint> snapshotHintFor(const Report::Question& question);
