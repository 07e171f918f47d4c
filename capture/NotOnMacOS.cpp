// SPDX-License-Identifier: MIT
//
// What needs the stored device-model library, which is not used on macOS: there the device itself is asked.

#include <stdexcept>

#include "capture/MediaTable.h"
#include "capture/SnapshotCheck.h"

MediaTable::Made MediaTable::snapshotOf(std::string_view /*table*/, const std::string& /*uri*/,
                                        const std::optional<std::string>& /*modelName*/) {
  throw std::runtime_error("tables are for systems without the maker's framework");
}

std::vector<SnapshotCheck::Findings> SnapshotCheck::of(const std::string& /*snapshotPath*/,
                                                       const std::string& /*PPDPath*/,
                                                       const std::vector<std::string>& /*ignored*/) {
  throw std::runtime_error("snapshots are checked on systems without the maker's framework");
}
