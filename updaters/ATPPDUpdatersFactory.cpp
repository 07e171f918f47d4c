// SPDX-License-Identifier: MIT
#include "updaters/ATPPDUpdatersFactory.h"

#include <utility>

#include "base/Text.h"
#include "ppd/PPDExtentions.h"
#include "updaters/UpdaterKinds.h"

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
    if (auto updater = updaterNamed(name)) updaters.push_back(std::move(updater));
  }
  return updaters;
}

std::unique_ptr<IATPPDUpdater> ATPPDUpdatersFactory::updaterNamed(std::string_view name) const {
  return UpdaterKinds::make<UpdaterKinds::AsItIs>(name);
}
