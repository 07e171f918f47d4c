// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

#include "ppd/PPDLineType.h"
#include "ppd/StatementString.h"

/// The lines of a document of which no objects have been made, each with its type and the object it belongs to
/// (`Owner`, an enumeration of one byte). Lines that were read one after another lie behind one another in memory: such
/// a run is kept as one string, and of each line only its size. A fresh page of memory costs about a microsecond,
/// much more than typing a line does, so this shows in every run.
template <class Owner>
class UnmadeLines {
 public:
  struct Line {
    StatementString string;
    PPDLineType type;
    Owner owner;
  };

  void add(const StatementString& string, PPDLineType type, Owner owner) {
    records_.push_back({static_cast<std::uint32_t>(string.size()), static_cast<std::uint8_t>(type), owner});
    if (string.size() == 0) return;
    if (runs_.empty() || !runs_.back().join(string)) runs_.push_back(string);
  }

  /// The text of all lines, in order; a string may hold many lines.
  const std::vector<StatementString>& runs() const { return runs_; }

  /// Calls `visit` with each Line in order.
  template <class Visit>
  void visit(Visit visit) const {
    eachUntil([&visit](const StatementString& run, std::size_t offset, const Record& record) {
      const StatementString string = record.size == 0 ? StatementString() : run.part(offset, record.size);
      visit(Line{string, static_cast<PPDLineType>(record.type), record.owner});
      return false;
    });
  }

  /// Whether `test` holds for the text of any line of this owner.
  template <class Test>
  bool any(Owner owner, Test test) const {
    return eachUntil([owner, &test](const StatementString& run, std::size_t offset, const Record& record) {
      return record.owner == owner && test(run.view().substr(offset, record.size));
    });
  }

 private:
  struct Record {
    std::uint32_t size;
    std::uint8_t type;
    Owner owner;
  };

  // Calls `visit` with the run, the offset in it and the record of each line until it returns true; whether it did.
  template <class Visit>
  bool eachUntil(Visit visit) const {
    static const StatementString none;
    auto run = runs_.begin();
    std::size_t offset = 0;
    for (const Record& record : records_) {
      if (record.size > 0 && offset == run->size()) {
        ++run;
        offset = 0;
      }
      if (visit(run == runs_.end() ? none : *run, offset, record)) return true;
      offset += record.size;
    }
    return false;
  }

  std::vector<StatementString> runs_;
  std::deque<Record> records_;
};
