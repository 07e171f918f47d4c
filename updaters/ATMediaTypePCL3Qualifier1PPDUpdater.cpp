// SPDX-License-Identifier: MIT
#include "updaters/ATMediaTypePCL3Qualifier1PPDUpdater.h"

#include <fmt/format.h>

#include <memory>

#include "base/ATException.h"
#include "base/Text.h"
#include "driver/ATLog.h"
#include "updaters/ErrorGuard.h"

namespace {

constexpr const char* kGloss = "GlossEnhancer";

// The parts of a spec, or none when it is absent.
std::vector<std::string_view> componentsOf(const ATPPD::Spec& spec) {
  return spec ? Text::split(*spec, ".") : std::vector<std::string_view>();
}

void convertGloss(const DeviceValue& entry) {
  const DeviceValue gloss = entry.valueForKey(kGloss);
  if (gloss.isAbsent()) throw ATException::wrongType("a profile entry has no gloss value");
  if (gloss.equals("OFF")) entry.map()->set(kGloss, "False");
  if (gloss.equals("FULLPAGE")) entry.map()->set(kGloss, "True");
}

}  // namespace

bool ATMediaTypePCL3Qualifier1PPDUpdater::isApplicableToPPD(const ATPPD& ppd) const {
  return qualifierOption("cupsICCQualifier1", ppd) == "QZGlossEnhancerSimplified" &&
         qualifierOption("cupsICCQualifier3", ppd) == "OutputMode";
}

ATMediaTypePPDUpdater::Record ATMediaTypePCL3Qualifier1PPDUpdater::adjustedMediaData(const Record& record,
                                                                                     const ATPPD& toPPD) const {
  const DeviceValue qualifier = mediaQualifierFromData(record, toPPD);
  if (!isApplicableToPPD(toPPD) || qualifier.textFor("media qualifier").value_or("").empty()) return record;
  const auto profiles = record.valueForKey("ICCProfiles").list();
  if (profiles != nullptr) {
    for (const ProfileEntry& entry : *profiles) convertGloss(entry);
    if (profiles->size() == 1) appendOppositeFactoryProfiles(*qualifier.text(), *profiles, toPPD);
  }
  return std::make_shared<DeviceMap>(*record.map());
}

void ATMediaTypePCL3Qualifier1PPDUpdater::appendOppositeFactoryProfiles(const std::string& qualifier,
                                                                        DeviceValue::List& profiles,
                                                                        const ATPPD& ppd) const {
  const DeviceValue gloss = profiles.front().valueForKey(kGloss);
  const char* opposite = gloss.equals("False") ? "True" : "False";
  for (const auto& factoryProfile : ppd.attributesForNameWithSpecMiddlePart(kFactoryProfile, qualifier)) {
    const auto components = componentsOf(factoryProfile->spec());
    if (gloss.equals(components[0])) continue;
    const auto wrapper =
        ATQZProfilePPDAttributeWrapper::qzProfilePPDAttributeDecoratorWithPPDAttribute(*factoryProfile);
    const auto& path = wrapper->factoryPath();
    if (!path || path->empty()) continue;
    const auto& name = wrapper->factoryProfileName();
    if (!name || name->empty()) continue;
    auto entry = std::make_shared<DeviceMap>();
    entry->set(kGloss, opposite);
    entry->set("URL", *path);
    entry->set("ICCName", *name);
    entry->set("OutputMode", std::string(components[2]));
    profiles.emplace_back(std::move(entry));
  }
}

std::string ATMediaTypePCL3Qualifier1PPDUpdater::profileSpecFromMediaData(const Record& record,
                                                                          const ProfileEntry& profileInfo,
                                                                          const ATPPD& ppd) const {
  std::string spec = ATMediaTypePCL3Qualifier3PPDUpdater::profileSpecFromMediaData(record, profileInfo, ppd);
  const DeviceValue gloss = profileInfo.valueForKey(kGloss);
  const DeviceValue outputMode = profileInfo.valueForKey("OutputMode");
  if (!gloss.isAbsent()) spec.insert(0, gloss.description());
  if (!outputMode.isAbsent()) spec += outputMode.description();
  return spec;
}

bool ATMediaTypePCL3Qualifier1PPDUpdater::addICCProfileForMediaWithData(const Record& record, ATPPD& toPPD) const {
  bool added = false;
  const auto reason = reasonOfFailure([&] {
    added = ATMediaTypePCL3Qualifier3PPDUpdater::addICCProfileForMediaWithData(adjustedMediaData(record, toPPD), toPPD);
  });
  if (!reason) return added;
  ATLog("-[ATMediaTypePCL3Qualifier1PPDUpdater addICCProfileForMediaWithData:toPPD:]",
        "INFO: Cannot add profile from {}, reason: {}", record.description(), reason);
  profilesFailedForMediaData(record, *reason);
  return false;
}

void ATMediaTypePCL3Qualifier1PPDUpdater::setICCProfileForMediaWithData(const Record& record, ATPPD& inPPD) const {
  const auto reason = reasonOfFailure([&] {
    ATMediaTypePCL3Qualifier3PPDUpdater::setICCProfileForMediaWithData(adjustedMediaData(record, inPPD), inPPD);
  });
  if (!reason) return;
  ATLog("-[ATMediaTypePCL3Qualifier1PPDUpdater setICCProfileForMediaWithData:inPPD:]",
        "INFO: Cannot set profile from {}, reason: {}", record.description(), reason);
  profilesFailedForMediaData(record, *reason);
}

void ATMediaTypePCL3Qualifier1PPDUpdater::removeSpecializedICCQualifiers(ATPPD& ppd,
                                                                         const Record& aMediaTypeData) const {
  const DeviceValue qualifier = mediaQualifierFromData(aMediaTypeData, ppd);
  if (const std::string* name = qualifier.text()) {
    for (const auto& profile : ppd.attributesForNameWithSpecMiddlePart(kProfile, *name)) {
      ppd.removePPDAttributeWithLocalizations(profile);
    }
  }
  ATMediaTypePCL3Qualifier3PPDUpdater::removeSpecializedICCQualifiers(ppd, aMediaTypeData);
}

void ATMediaTypePCL3Qualifier1PPDUpdater::restoreFactoryICCProfilesInPPD(ATPPD& ppd) const {
  for (const auto& profile : ppd.attributesForName(kProfile)) {
    const auto components = componentsOf(profile->spec());
    if (components.empty() || (components[0] != "False" && components[0] != "True")) continue;
    ppd.removePPDAttributeWithLocalizations(profile);
  }
  ATMediaTypePCL3Qualifier3PPDUpdater::restoreFactoryICCProfilesInPPD(ppd);
}
