// SPDX-License-Identifier: MIT
#pragma once

#include "ppd/PPDLineType.h"
#include "ppd/StatementString.h"

/// Takes the lines of objects one after another.
class IStatementSink {
 public:
  virtual ~IStatementSink() = default;
  /// The string lives at least as long as the object that gives it is not changed.
  virtual void take(const StatementString& string) = 0;
  /// Whether it is the text that counts, so that several unchanged lines may be given as one string.
  virtual bool takesRuns() const { return false; }
};

/// What every object of the PPD tree does: takes lines one by one, and gives them back.
class IATPPDObject {
 public:
  virtual ~IATPPDObject() = default;

  /// Takes one more line.
  virtual void addString(const StatementString& string, PPDLineType type) = 0;

  /// The object's lines in output order, as a new list.
  StatementStrings strings() const;

  /// Gives the object's lines, in output order, to the sink.
  virtual void giveStringsTo(IStatementSink& sink) const = 0;

 protected:
  IATPPDObject() = default;
  IATPPDObject(const IATPPDObject&) = delete;
  IATPPDObject& operator=(const IATPPDObject&) = delete;
};
