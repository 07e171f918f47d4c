// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ppd/document/ATPPD.h"
#include "updaters/IATPPDUpdater.h"
#include "updaters/UpdateObserver.h"

/// Makes the chain of updaters that a PPD names in `*QZPPDUpdaters`, a quoted list of class names between white space.
class ATPPDUpdatersFactory {
 public:
  using Updaters = std::vector<std::unique_ptr<IATPPDUpdater>>;

  /// The process's factory.
  static const ATPPDUpdatersFactory& defaultFactory();

  /// The names that a PPD may give.
  static std::vector<std::string> knownNames();

  /// One new updater for each known name, in the order of the names; unknown names are skipped without a message. A
  /// name that is listed twice gives two updaters. All of them tell the observer, which must outlive them.
  Updaters updatersForPPD(const ATPPD& ppd, UpdateObserver& observer = UpdateObserver::none()) const;
};
