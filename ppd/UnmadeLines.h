// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <utility>
#include <vector>

#include "ppd/PPDLineType.h"
#include "ppd/StatementString.h"

/// The lines of a document of which no objects have been made, each with its type and the object it belongs to
/// (`Owner`, an enumeration of one byte). Lines that were read one after another lie behind one another in memory: such
/// a run is kept as one string, and of each line only its size. A fresh page of memory costs as much as typing a dozen
/// lines, so this shows in every run.
template <class Owner>
class UnmadeLines {
 public:
  struct Line {
    StatementString string;
    PPDLineType type;
    Owner owner;
  };

  void add(StatementString string, PPDLineType type, Owner owner) {
    records_.push_back({static_cast<std::uint32_t>(string.size()), static_cast<std::uint8_t>(type), owner});
    if (string.size() == 0) return;
    if (runs_.empty() || !runs_.back().join(string)) runs_.push_back(std::move(string));
  }

  /// Calls `visit` with each Line in order, until it returns true; whether it did.
  template <class Visit>
  bool visitUntil(Visit visit) const {
    std::size_t run = 0;
    std::size_t offset = 0;
    for (const Record& record : records_) {
      if (record.size > 0 && offset == runs_[run].size()) {
        ++run;
        offset = 0;
      }
      const StatementString string = record.size == 0 ? StatementString() : runs_[run].part(offset, record.size);
      offset += record.size;
      if (visit(Line{string, static_cast<PPDLineType>(record.type), record.owner})) return true;
    }
    return false;
  }

 private:
  struct Record {
    std::uint32_t size;
    std::uint8_t type;
    Owner owner;
  };

  std::vector<StatementString> runs_;
  std::deque<Record> records_;
};
