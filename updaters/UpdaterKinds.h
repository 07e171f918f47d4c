// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <memory>
#include <string_view>

#include "updaters/ATGlossyProfilePCL3PPDUpdater.h"
#include "updaters/ATMediaTypePCL3PPDUpdater.h"
#include "updaters/ATMediaTypePCL3Qualifier1PPDUpdater.h"
#include "updaters/ATMediaTypePCL3Qualifier3PPDUpdater.h"
#include "updaters/ATMediaTypePPDUpdater.h"
#include "updaters/ATMediaTypePSPPDUpdater.h"
#include "updaters/ATPDLCommandTypePPDUpdater.h"

/// The classes that a PPD may name in `*QZPPDUpdaters`: the one place where they are listed.
namespace UpdaterKinds {

/// Makes a class itself. Another template makes a class that derives from it, to watch it, say.
template <class Updater>
using AsItIs = Updater;

/// A new `As<class>` for the class of this name (exact, case-sensitive), or null when the name is unknown.
template <template <class> class As>
std::unique_ptr<IATPPDUpdater> make(std::string_view name) {
  struct Kind {
    std::string_view name;
    std::unique_ptr<IATPPDUpdater> (*make)();
  };
  static constexpr std::array<Kind, 7> kKinds = {{
      {"ATMediaTypePPDUpdater", [] { return std::unique_ptr<IATPPDUpdater>(new As<ATMediaTypePPDUpdater>); }},
      {"ATMediaTypePSPPDUpdater", [] { return std::unique_ptr<IATPPDUpdater>(new As<ATMediaTypePSPPDUpdater>); }},
      {"ATMediaTypePCL3PPDUpdater", [] { return std::unique_ptr<IATPPDUpdater>(new As<ATMediaTypePCL3PPDUpdater>); }},
      {"ATMediaTypePCL3Qualifier3PPDUpdater",
       [] { return std::unique_ptr<IATPPDUpdater>(new As<ATMediaTypePCL3Qualifier3PPDUpdater>); }},
      {"ATMediaTypePCL3Qualifier1PPDUpdater",
       [] { return std::unique_ptr<IATPPDUpdater>(new As<ATMediaTypePCL3Qualifier1PPDUpdater>); }},
      {"ATGlossyProfilePCL3PPDUpdater",
       [] { return std::unique_ptr<IATPPDUpdater>(new As<ATGlossyProfilePCL3PPDUpdater>); }},
      {"ATPDLCommandTypePPDUpdater", [] { return std::unique_ptr<IATPPDUpdater>(new As<ATPDLCommandTypePPDUpdater>); }},
  }};
  for (const Kind& kind : kKinds) {
    if (kind.name == name) return kind.make();
  }
  return nullptr;
}

}  // namespace UpdaterKinds
