// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "ppd/ATPPD.h"
#include "updaters/IATPPDUpdater.h"

/// Makes the chain of updaters that a PPD names in `*QZPPDUpdaters`, a quoted list of class names between white space.
class ATPPDUpdatersFactory {
 public:
  using Updaters = std::vector<std::unique_ptr<IATPPDUpdater>>;

  virtual ~ATPPDUpdatersFactory() = default;

  /// The process's factory.
  static const ATPPDUpdatersFactory& defaultFactory();

  /// One new updater for each known name, in the order of the names; unknown names are skipped without a message. A
  /// name that is listed twice gives two updaters.
  virtual Updaters updatersForPPD(const ATPPD& ppd) const;

 protected:
  /// A new updater of the class of this name, or null when the name is unknown.
  virtual std::unique_ptr<IATPPDUpdater> updaterNamed(std::string_view name) const;
};
