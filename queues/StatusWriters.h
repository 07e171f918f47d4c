// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "queues/QueueJudgement.h"

/// Collects what `status` prints, queue by queue, so that no more than the text of one is in memory beside it.
class StatusWriter {
 public:
  enum class Format { text, JSON, openMetrics };

  explicit StatusWriter(Format format) : format_(format) {}

  /// What belongs in front of all queues.
  std::string begin() const;
  std::string of(const QueueJudgement& judged);
  std::string end() const;
  /// The exit status that monitoring plugins have, of all queues so far: 0 all current, 1 something is to be done, 2 a
  /// setup would fail or its source is gone.
  int exitStatus() const { return exitStatus_; }

 private:
  std::string JSONOf(const QueueJudgement& judged) const;

  Format format_;
  int exitStatus_ = 0;
  bool isFirst_ = true;
};
