// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "explain/compare/MediaChanges.h"
#include "setup/SetupFolder.h"
#include "setup/SetupStatement.h"

/// Whether a queue's PPD is still what its setup would give now.
struct QueueJudgement {
  enum class State { current, stale, edited, sourceGone, wouldFail, foreign };
  /// Their names, in the same order.
  static constexpr std::array<const char*, 6> kStates = {"current",     "stale",      "edited",
                                                         "source-gone", "would-fail", "foreign"};

  std::string queue;
  State state = State::foreign;  ///< not made by the driver program, or without a PPD
  std::string source;            ///< the setup's name without its scheme; empty for a foreign one
  std::string version;           ///< of the program that made the PPD
  std::string reason;            ///< of a failure, for people
  std::vector<MediaChange> changes;
  std::string old, fresh;  ///< the PPD, and what it would be; the latter is empty unless they differ
  bool isEdited = false;   ///< by hand, whatever else it is

  const char* stateName() const;
  /// In a sentence, with what to do.
  std::string text() const;

  /// `wanted` is the setup that the queue is to have, without its scheme; empty: the one that it has. A source that is
  /// being written is waited for.
  static QueueJudgement of(const std::string& queue, const std::optional<std::string>& ppd, SetupFolder& folder,
                           const std::string& wanted = "");
};
