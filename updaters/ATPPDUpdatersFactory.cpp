// SPDX-License-Identifier: MIT
#include "updaters/ATPPDUpdatersFactory.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "base/Text.h"
#include "ppd/lines/PPDExtentions.h"
#include "updaters/ATGlossyProfilePCL3PPDUpdater.h"
#include "updaters/ATMediaTypePCL3PPDUpdater.h"
#include "updaters/ATMediaTypePCL3Qualifier1PPDUpdater.h"
#include "updaters/ATMediaTypePCL3Qualifier3PPDUpdater.h"
#include "updaters/ATMediaTypePPDUpdater.h"
#include "updaters/ATMediaTypePSPPDUpdater.h"
#include "updaters/ATPDLCommandTypePPDUpdater.h"
#include "updaters/PPDKeywords.h"

namespace {

using UpdaterPtr = std::unique_ptr<IATPPDUpdater>;

struct Kind {
  std::string_view name;
  UpdaterPtr (*make)(UpdateObserver&);
};

template <class Updater>
UpdaterPtr make(UpdateObserver& observer) {
  return std::make_unique<Updater>(observer);
}

// The classes that a PPD may name: the one place where they are listed.
constexpr Kind kKinds[] = {
    {"ATMediaTypePPDUpdater", make<ATMediaTypePPDUpdater>},
    {"ATMediaTypePSPPDUpdater", make<ATMediaTypePSPPDUpdater>},
    {"ATMediaTypePCL3PPDUpdater", make<ATMediaTypePCL3PPDUpdater>},
    {"ATMediaTypePCL3Qualifier3PPDUpdater", make<ATMediaTypePCL3Qualifier3PPDUpdater>},
    {"ATMediaTypePCL3Qualifier1PPDUpdater", make<ATMediaTypePCL3Qualifier1PPDUpdater>},
    {"ATGlossyProfilePCL3PPDUpdater", make<ATGlossyProfilePCL3PPDUpdater>},
    {"ATPDLCommandTypePPDUpdater", make<ATPDLCommandTypePPDUpdater>},
};

}  // namespace

const ATPPDUpdatersFactory& ATPPDUpdatersFactory::defaultFactory() {
  static const ATPPDUpdatersFactory factory;
  return factory;
}

std::vector<std::string> ATPPDUpdatersFactory::knownNames() {
  std::vector<std::string> names;
  for (const Kind& kind : kKinds) names.emplace_back(kind.name);
  return names;
}

ATPPDUpdatersFactory::Updaters ATPPDUpdatersFactory::updatersForPPD(const ATPPD& ppd, UpdateObserver& observer) const {
  Updaters updaters;
  const auto attribute = ppd.attributeForName(PPDKeyword::updaters);
  const auto value = attribute ? attribute->value() : std::nullopt;
  const auto names = value ? PPDExtentions::quotedValueContent(*value) : std::nullopt;
  if (!names) return updaters;
  for (const std::string_view name : Text::split(*names, Text::isWhiteSpace)) {
    const auto* kind =
        std::find_if(std::begin(kKinds), std::end(kKinds), [name](const Kind& each) { return each.name == name; });
    const bool isKnown = kind != std::end(kKinds);
    observer.didNameUpdater(name, isKnown ? UpdaterKind::known : UpdaterKind::unknown);
    if (isKnown) updaters.push_back(kind->make(observer));
  }
  return updaters;
}
