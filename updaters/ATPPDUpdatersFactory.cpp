// SPDX-License-Identifier: MIT
#include "updaters/ATPPDUpdatersFactory.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "base/Text.h"
#include "ppd/PPDExtentions.h"
#include "updaters/ATGlossyProfilePCL3PPDUpdater.h"
#include "updaters/ATMediaTypePCL3PPDUpdater.h"
#include "updaters/ATMediaTypePCL3Qualifier1PPDUpdater.h"
#include "updaters/ATMediaTypePCL3Qualifier3PPDUpdater.h"
#include "updaters/ATMediaTypePPDUpdater.h"
#include "updaters/ATMediaTypePSPPDUpdater.h"
#include "updaters/ATPDLCommandTypePPDUpdater.h"

namespace {

struct UpdaterKind {
  std::string_view name;
  std::unique_ptr<IATPPDUpdater> (*make)();
};

template <class Updater>
std::unique_ptr<IATPPDUpdater> make() {
  return std::make_unique<Updater>();
}

constexpr std::array<UpdaterKind, 7> kUpdaterKinds = {{
    {"ATMediaTypePPDUpdater", make<ATMediaTypePPDUpdater>},
    {"ATMediaTypePSPPDUpdater", make<ATMediaTypePSPPDUpdater>},
    {"ATMediaTypePCL3PPDUpdater", make<ATMediaTypePCL3PPDUpdater>},
    {"ATMediaTypePCL3Qualifier3PPDUpdater", make<ATMediaTypePCL3Qualifier3PPDUpdater>},
    {"ATMediaTypePCL3Qualifier1PPDUpdater", make<ATMediaTypePCL3Qualifier1PPDUpdater>},
    {"ATGlossyProfilePCL3PPDUpdater", make<ATGlossyProfilePCL3PPDUpdater>},
    {"ATPDLCommandTypePPDUpdater", make<ATPDLCommandTypePPDUpdater>},
}};

}  // namespace

const ATPPDUpdatersFactory& ATPPDUpdatersFactory::defaultFactory() {
  static const ATPPDUpdatersFactory factory;
  return factory;
}

ATPPDUpdatersFactory::Updaters ATPPDUpdatersFactory::updatersForPPD(const ATPPD& ppd) const {
  Updaters updaters;
  const auto attribute = ppd.attributeForName("QZPPDUpdaters");
  if (attribute == nullptr || !attribute->value()) return updaters;
  const auto names = PPDExtentions::quotedValueContent(*attribute->value());
  if (!names) return updaters;
  for (const std::string_view name : Text::split(*names, Text::isWhiteSpace)) {
    const auto kind = std::find_if(kUpdaterKinds.begin(), kUpdaterKinds.end(),
                                   [name](const UpdaterKind& each) { return each.name == name; });
    if (kind != kUpdaterKinds.end()) updaters.push_back(kind->make());
  }
  return updaters;
}
