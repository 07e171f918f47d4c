// SPDX-License-Identifier: MIT
#include "updaters/ATGlossyProfilePCL3PPDUpdater.h"

#include <fmt/format.h>

#include <memory>
#include <utility>

#include "base/ATException.h"
#include "readers/MediaKeys.h"
#include "updaters/PPDKeywords.h"

namespace {

constexpr const char* kEconomyMode = "economode-ge";

DeviceValue choiceForGloss(const DeviceValue& gloss) {
  if (gloss.equals("OFF")) return "off-ge";
  if (gloss.equals("INKEDAREA")) return kEconomyMode;
  if (gloss.equals("FULLPAGE")) return "whole-page-ge";
  return gloss;
}

void convertProfiles(DeviceValue::List& profiles) {
  DeviceValue wholePage;
  bool hasEconomyMode = false;
  for (const DeviceValue& entry : profiles) {
    const DeviceValue gloss = entry.valueForKey(MediaKey::profileGloss);
    if (gloss.isAbsent()) throw ATException::absent("gloss value of a profile entry");
    entry.map()->set(MediaKey::profileGloss, choiceForGloss(gloss));
    if (gloss.equals("FULLPAGE")) wholePage = entry;
    if (gloss.equals("INKEDAREA")) hasEconomyMode = true;
  }
  if (wholePage.isAbsent() || hasEconomyMode) return;
  auto economyMode = std::make_shared<DeviceMap>(*wholePage.map());
  economyMode->set(MediaKey::profileGloss, kEconomyMode);
  profiles.emplace_back(std::move(economyMode));
}

}  // namespace

ATMediaTypePPDUpdater::Record ATGlossyProfilePCL3PPDUpdater::mediaInfoByConvertDeviceData(
    const Record& record, const ATPPD& /*toPPD*/) const {
  if (const auto profiles = record.valueForKey(MediaKey::profiles).list()) convertProfiles(*profiles);
  return record.map() ? Record(std::make_shared<DeviceMap>(*record.map())) : record;
}

std::string ATGlossyProfilePCL3PPDUpdater::profileSpecFromMediaData(const Record& record,
                                                                    const ProfileEntry& profileInfo,
                                                                    const ATPPD& ppd) const {
  const std::string qualifier = mediaQualifierFromData(record, ppd).description();
  const auto properties = propertiesOfMedia(qualifier, ppd);
  const bool isGlossy = isGlossyMediaWithAttributes(properties ? properties->value() : std::nullopt);
  const bool usesGloss = isGlossy && ppd.attributeForName(PPDKeyword::thirdQualifier) != nullptr;
  const DeviceValue gloss = usesGloss ? profileInfo.valueForKey(MediaKey::profileGloss) : DeviceValue();
  return fmt::format(".{}.{}", qualifier, gloss.isAbsent() ? std::string() : gloss.description());
}
