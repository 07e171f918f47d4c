// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Device snapshots for those who have no device-model library to ask: made of a table of media.
namespace MediaTable {

struct Made {
  std::string json;
  std::vector<std::string> warnings;  ///< of IDs that a spreadsheet may have rounded, each with its line
};

/// The snapshot of a device with the media of a table: comma-separated values (RFC 4180), UTF-8, a byte order mark in
/// front or not. The first row names the columns, in any order: Name and MediumID are needed; CategoryName ("Custom"
/// when empty), CategoryID ("CUSTOM"), ParentID and DefaultGlossEnhancer are the medium's; ICCName, URL, GlossEnhancer
/// and OutputMode make a profile. A further row with the ID of a medium adds a profile to it; what it says of the
/// medium itself must be the same or empty.
///
/// `modelName` is the value of the PPD's `*ModelName`, quotes included, or absent. Throws std::runtime_error with the
/// line of the file for anything else, and for a table without media.
Made snapshotOf(std::string_view table, const std::string& uri, const std::optional<std::string>& modelName);

}  // namespace MediaTable
