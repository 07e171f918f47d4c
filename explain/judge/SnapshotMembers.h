// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "explain/report/Report.h"

/// Members of the device snapshot that nobody reads, where one of a name like theirs is read and is not there.
namespace SnapshotMembers {

struct Unread {
  std::string member;  ///< such as "ParentId"
  std::string place;   ///< the member that it stands in, from the device on: "dataStore/VMCustomMediaStorage/…"
  std::string meant;   ///< such as "ParentID"
};

/// Of the snapshot that the environment names, and the device in it that answers the question; each pair of names at
/// its first place only. Empty when there is no such snapshot.
std::vector<Unread> unread(const Report::Question& question);

/// The same of the text of a snapshot.
std::vector<Unread> unreadIn(const std::string& text, const Report::Question& question);

}  // namespace SnapshotMembers
