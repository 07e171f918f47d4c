// SPDX-License-Identifier: MIT
#pragma once

#include "ppd/document/ATPPD.h"
#include "updaters/UpdateObserver.h"

enum class UpdateResult { failed, succeeded };

/// Is told how far a run has come. Nothing that it is given outlives the call. Every operation does nothing unless it
/// is overridden; the tool has no observer.
class RunObserver {
 public:
  virtual ~RunObserver() = default;

  /// The observer of runs that nobody watches.
  static RunObserver& none() {
    static RunObserver observer;
    return observer;
  }

  /// Who the updaters tell what they do.
  virtual UpdateObserver& ofUpdates() { return UpdateObserver::none(); }

  /// The PPD was read and accepted; updaters have not been made yet.
  virtual void didParse(const ATPPD& /*ppd*/) {}
  /// Around one updater's work on the document; an exception leaves out the second.
  virtual void willUpdate(const ATPPD& /*ppd*/) {}
  virtual void didUpdate(const ATPPD& /*ppd*/, UpdateResult /*result*/) {}
};
