// SPDX-License-Identifier: MIT
#include "updaters/ATMediaTypePCL3Qualifier1PPDUpdater.h"

#include <fmt/format.h>

#include <memory>

#include "base/ATException.h"
#include "base/Text.h"
#include "readers/MediaKeys.h"
#include "updaters/PPDKeywords.h"

namespace {

// The parts of a spec, or none when it is absent.
std::vector<std::string_view> componentsOf(const ATPPD::Spec& spec) {
  return spec ? Text::split(*spec, ".") : std::vector<std::string_view>();
}

// The statements of this name whose spec has three parts and this one in the middle.
ATPPD::Attributes withMiddlePart(const ATPPD& ppd, const char* name, const std::string& part) {
  ATPPD::Attributes found = ppd.attributesForName(name, "." + part + ".");
  std::erase_if(found, [&part](const auto& statement) {
    const auto components = componentsOf(statement->spec());
    return components.size() != 3 || components[1] != part;
  });
  return found;
}

void convertGloss(const DeviceValue& entry) {
  const DeviceValue gloss = entry.valueForKey(MediaKey::profileGloss);
  if (gloss.isAbsent()) throw ATException::absent("gloss value of a profile entry");
  if (gloss.equals("OFF")) entry.map()->set(MediaKey::profileGloss, "False");
  if (gloss.equals("FULLPAGE")) entry.map()->set(MediaKey::profileGloss, "True");
}

}  // namespace

bool ATMediaTypePCL3Qualifier1PPDUpdater::isApplicableToPPD(const ATPPD& ppd) const {
  return qualifierOption(PPDKeyword::firstQualifier, ppd) == PPDKeyword::simplifiedGlossEnhancer &&
         qualifierOption(PPDKeyword::thirdQualifier, ppd) == PPDKeyword::outputMode;
}

ATMediaTypePPDUpdater::Record ATMediaTypePCL3Qualifier1PPDUpdater::adjustedMediaData(const Record& record,
                                                                                     const ATPPD& toPPD) const {
  const DeviceValue qualifier = mediaQualifierFromData(record, toPPD);
  if (!isApplicableToPPD(toPPD) || qualifier.textFor("media qualifier").value_or("").empty()) return record;
  const auto profiles = record.valueForKey(MediaKey::profiles).list();
  if (profiles != nullptr) {
    for (const ProfileEntry& entry : *profiles) convertGloss(entry);
    if (profiles->size() == 1) appendOppositeFactoryProfiles(*qualifier.text(), *profiles, toPPD);
  }
  return record.map() ? Record(std::make_shared<DeviceMap>(*record.map())) : record;
}

void ATMediaTypePCL3Qualifier1PPDUpdater::appendOppositeFactoryProfiles(const std::string& qualifier,
                                                                        DeviceValue::List& profiles,
                                                                        const ATPPD& ppd) const {
  const DeviceValue gloss = profiles.front().valueForKey(MediaKey::profileGloss);
  const char* opposite = gloss.equals("False") ? "True" : "False";
  for (const auto& factoryProfile : withMiddlePart(ppd, PPDKeyword::factoryProfile, qualifier)) {
    const auto components = componentsOf(factoryProfile->spec());
    if (gloss.equals(components[0])) continue;
    const auto wrapper =
        ATQZProfilePPDAttributeWrapper::qzProfilePPDAttributeDecoratorWithPPDAttribute(*factoryProfile);
    const auto& path = wrapper->factoryPath();
    if (!path || path->empty()) continue;
    const auto& name = wrapper->factoryProfileName();
    if (!name || name->empty()) continue;
    auto entry = std::make_shared<DeviceMap>();
    entry->set(MediaKey::profileGloss, opposite);
    entry->set(MediaKey::profileURL, *path);
    entry->set(MediaKey::profileName, *name);
    entry->set(MediaKey::profileOutputMode, std::string(components[2]));
    profiles.emplace_back(std::move(entry));
  }
}

std::string ATMediaTypePCL3Qualifier1PPDUpdater::profileSpecFromMediaData(const Record& record,
                                                                          const ProfileEntry& profileInfo,
                                                                          const ATPPD& ppd) const {
  std::string spec = ATMediaTypePCL3Qualifier3PPDUpdater::profileSpecFromMediaData(record, profileInfo, ppd);
  const DeviceValue gloss = profileInfo.valueForKey(MediaKey::profileGloss);
  const DeviceValue outputMode = profileInfo.valueForKey(MediaKey::profileOutputMode);
  if (!gloss.isAbsent()) spec.insert(0, gloss.description());
  if (!outputMode.isAbsent()) spec += outputMode.description();
  return spec;
}

void ATMediaTypePCL3Qualifier1PPDUpdater::removeSpecializedICCQualifiers(ATPPD& ppd,
                                                                         const Record& aMediaTypeData) const {
  const DeviceValue qualifier = mediaQualifierFromData(aMediaTypeData, ppd);
  if (const std::string* name = qualifier.text()) {
    for (const auto& profile : withMiddlePart(ppd, PPDKeyword::profile, *name)) {
      ppd.removePPDAttributeWithLocalizations(profile);
    }
  }
  ATMediaTypePCL3Qualifier3PPDUpdater::removeSpecializedICCQualifiers(ppd, aMediaTypeData);
}

void ATMediaTypePCL3Qualifier1PPDUpdater::restoreFactoryICCProfilesInPPD(ATPPD& ppd) const {
  for (const auto& profile : ppd.attributesForName(PPDKeyword::profile)) {
    const auto components = componentsOf(profile->spec());
    if (components.empty() || (components[0] != "False" && components[0] != "True")) continue;
    ppd.removePPDAttributeWithLocalizations(profile);
  }
  ATMediaTypePCL3Qualifier3PPDUpdater::restoreFactoryICCProfilesInPPD(ppd);
}
