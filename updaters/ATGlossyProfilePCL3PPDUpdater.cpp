// SPDX-License-Identifier: MIT
#include "updaters/ATGlossyProfilePCL3PPDUpdater.h"

#include <fmt/format.h>

#include <memory>
#include <utility>

#include "base/ATException.h"
#include "driver/ATLog.h"
#include "updaters/ErrorGuard.h"

namespace {

constexpr const char* kGloss = "GlossEnhancer";
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
    const DeviceValue gloss = entry.valueForKey(kGloss);
    if (gloss.isAbsent()) throw ATException::wrongType("a profile entry has no gloss value");
    entry.map()->set(kGloss, choiceForGloss(gloss));
    if (gloss.equals("FULLPAGE")) wholePage = entry;
    if (gloss.equals("INKEDAREA")) hasEconomyMode = true;
  }
  if (wholePage.isAbsent() || hasEconomyMode) return;
  auto economyMode = std::make_shared<DeviceMap>(*wholePage.map());
  economyMode->set(kGloss, kEconomyMode);
  profiles.emplace_back(std::move(economyMode));
}

}  // namespace

ATMediaTypePPDUpdater::Record ATGlossyProfilePCL3PPDUpdater::mediaInfoByConvertDeviceData(
    const Record& record, const ATPPD& /*toPPD*/) const {
  if (const auto profiles = record.valueForKey("ICCProfiles").list()) convertProfiles(*profiles);
  return record.map() ? Record(std::make_shared<DeviceMap>(*record.map())) : record;
}

std::string ATGlossyProfilePCL3PPDUpdater::profileSpecFromMediaData(const Record& record,
                                                                    const ProfileEntry& profileInfo,
                                                                    const ATPPD& ppd) const {
  const std::string qualifier = mediaQualifierFromData(record, ppd).description();
  const auto properties = propertiesOfMedia(qualifier, ppd);
  const bool isGlossy = properties && isGlossyMediaWithAttributes(properties->value());
  const bool usesGloss = isGlossy && ppd.attributeForName("cupsICCQualifier3") != nullptr;
  const DeviceValue gloss = usesGloss ? profileInfo.valueForKey(kGloss) : DeviceValue();
  return fmt::format(".{}.{}", qualifier, gloss.isAbsent() ? std::string() : gloss.description());
}

bool ATGlossyProfilePCL3PPDUpdater::addICCProfileForMediaWithData(const Record& record, ATPPD& toPPD) const {
  bool added = false;
  const auto reason = reasonOfFailure([&] {
    added =
        ATMediaTypePCL3PPDUpdater::addICCProfileForMediaWithData(mediaInfoByConvertDeviceData(record, toPPD), toPPD);
  });
  if (!reason) return added;
  ATLog("-[ATGlossyProfilePCL3PPDUpdater addICCProfileForMediaWithData:toPPD:]",
        "INFO: Cannot add profile from {}, reason: {}", record.description(), reason);
  profilesFailedForMediaData(record, *reason);
  return false;
}

void ATGlossyProfilePCL3PPDUpdater::setICCProfileForMediaWithData(const Record& record, ATPPD& inPPD) const {
  const auto reason = reasonOfFailure([&] {
    ATMediaTypePCL3PPDUpdater::setICCProfileForMediaWithData(mediaInfoByConvertDeviceData(record, inPPD), inPPD);
  });
  if (!reason) return;
  ATLog("-[ATGlossyProfilePCL3PPDUpdater setICCProfileForMediaWithData:inPPD:]",
        "INFO: Cannot set profile from {}, reason: {}", record.description(), reason);
  profilesFailedForMediaData(record, *reason);
}
