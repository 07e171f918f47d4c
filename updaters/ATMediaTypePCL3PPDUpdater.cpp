// SPDX-License-Identifier: MIT
#include "updaters/ATMediaTypePCL3PPDUpdater.h"

#include <exception>

#include "base/Format.h"
#include "base/Text.h"
#include "driver/ATLog.h"
#include "ppd/PPDExtentions.h"
#include "updaters/URLPath.h"

namespace {

using OptionalText = std::optional<std::string>;

OptionalText pathOf(const OptionalText& url) {
  return url ? pathOfURL(*url) : std::nullopt;
}

std::string quoted(const OptionalText& text) {
  return fmt::format("\"{}\"", text);
}

OptionalText pathOfEntry(const DeviceValue& entry) {
  return pathOf(entry.valueForKey("URL").textFor("profile URL"));
}

OptionalText nameOfEntry(const DeviceValue& entry) {
  return entry.valueForKey("ICCName").textFor("profile name");
}

// The record's profiles, or null when there are none.
DeviceValue::ListPtr profilesOf(const DeviceValue& record) {
  const auto profiles = record.valueForKey("ICCProfiles").list();
  return profiles == nullptr || profiles->empty() ? nullptr : profiles;
}

}  // namespace

ProfileProblem ATMediaTypePCL3PPDUpdater::problemOfProfile(const OptionalText& name, const OptionalText& path) {
  if (!name || !PPDExtentions::isValidPPDTextLength(*name)) return ProfileProblem::lengthOfName;
  if (!PPDExtentions::isValidPPDText(*name)) return ProfileProblem::charactersOfName;
  if (!path) return ProfileProblem::noPath;
  return PPDExtentions::isValidPPDText(*path) ? ProfileProblem::none : ProfileProblem::charactersOfPath;
}

void ATMediaTypePCL3PPDUpdater::profilesFailedForMediaData(const Record& /*record*/,
                                                           const std::string& /*reason*/) const {}

std::string ATMediaTypePCL3PPDUpdater::mediaTypeChoiceCodeWithName(const std::string& choiceName,
                                                                   const DeviceValue& ID) const {
  return fmt::format("<</MediaType({})/QZMediaID({})>>setpagedevice", choiceName, ID.description());
}

DeviceValue ATMediaTypePCL3PPDUpdater::mediaQualifierFromData(const Record& record, const ATPPD& ppd) const {
  DeviceValue choiceName = record.valueForKey("PPDName");
  return choiceName.isAbsent() ? ppdNameForMediaWithID(record.valueForKey("ID"), ppd) : choiceName;
}

std::string ATMediaTypePCL3PPDUpdater::generalProfileSpecForMediaData(const Record& record, const ATPPD& ppd) const {
  return fmt::format(".{}.", mediaQualifierFromData(record, ppd).description());
}

std::string ATMediaTypePCL3PPDUpdater::profileSpecFromMediaData(const Record& record,
                                                                const ProfileEntry& /*profileInfo*/,
                                                                const ATPPD& ppd) const {
  return generalProfileSpecForMediaData(record, ppd);
}

std::optional<ATPPD::Attributes> ATMediaTypePCL3PPDUpdater::cupsICCProfileAttributesWithName(
    const std::optional<std::string>& name, const std::optional<std::string>& spec,
    const std::optional<std::string>& url, const ATPPD& ppd) const {
  static constexpr const char* kSignature =
      "-[ATMediaTypePCL3PPDUpdater cupsICCProfileAttributesWithName:spec:url:ppd:]";
  const std::string key = fmt::format("{} {}/{}", kProfile, spec, name);
  const std::string line = fmt::format("*{}: {}\n", key, quoted(pathOf(url)));
  if (!PPDExtentions::isValidPPDLineLength(line)) {
    ATLog(kSignature, "INFO: Skip profile {} - line length > 256 bytes: {}", name, line);
    return std::nullopt;
  }
  ATPPD::Attributes attributes = {ATPPDAttribute::attributeWithString(line)};
  const auto* languages = ppd.supportedLocalizations();
  if (languages == nullptr) return attributes;
  for (const std::string& language : *languages) {
    if (language == "en") continue;
    const std::string localizedLine = fmt::format("*{}.{}: \"\"\n", language, key);
    if (!PPDExtentions::isValidPPDLineLength(localizedLine)) {
      ATLog(kSignature, "INFO: Skip profile {}, locale {} > 256 bytes limit: {}", name, language, localizedLine);
      return std::nullopt;
    }
    attributes.push_back(ATPPDAttribute::attributeWithString(localizedLine));
  }
  return attributes;
}

bool ATMediaTypePCL3PPDUpdater::addICCProfileForMediaWithData(const Record& record, ATPPD& toPPD) const {
  const auto profiles = profilesOf(record);
  if (profiles == nullptr) {
    ATLog("-[ATMediaTypePCL3PPDUpdater addICCProfileForMediaWithData:toPPD:]", "INFO: Cannot add profile from {}",
          record.description());
    return false;
  }
  for (const ProfileEntry& entry : *profiles) addProfile(record, entry, toPPD);
  return true;
}

void ATMediaTypePCL3PPDUpdater::addProfile(const Record& record, const ProfileEntry& entry, ATPPD& toPPD) const {
  static constexpr const char* kSignature = "-[ATMediaTypePCL3PPDUpdater addICCProfileForMediaWithData:toPPD:]";
  const OptionalText path = pathOfEntry(entry);
  const OptionalText name = nameOfEntry(entry);
  if (problemOfProfile(name, path) != ProfileProblem::none) {
    ATLog(kSignature, "INFO: Skip profile: {}", name);
    return;
  }
  const std::string spec = profileSpecFromMediaData(record, entry, toPPD);
  if (!PPDExtentions::isValidPPDNameLength(spec)) {
    ATLog(kSignature, "INFO: Ignore profile {} with qualifier (> 41 bytes): {}", name, spec);
    return;
  }
  const auto attributes = cupsICCProfileAttributesWithName(name, spec, *entry.valueForKey("URL").text(), toPPD);
  if (!attributes) return;
  for (const auto& attribute : *attributes) toPPD.addPPDAttribute(attribute);
}

void ATMediaTypePCL3PPDUpdater::setICCProfileForMediaWithData(const Record& record, ATPPD& inPPD) const {
  const auto profiles = profilesOf(record);
  if (profiles == nullptr) {
    ATLog("-[ATMediaTypePCL3PPDUpdater setICCProfileForMediaWithData:inPPD:]", "INFO: Cannot set profile from {}",
          record.description());
    return;
  }
  TextsBySpec localizedTexts;
  std::exception_ptr error;
  try {
    for (const ProfileEntry& entry : *profiles) setProfile(record, entry, inPPD, localizedTexts);
  } catch (...) {
    error = std::current_exception();
  }
  for (const auto& [spec, text] : localizedTexts) setTextOfLocalizations(spec, text, inPPD);
  if (error) std::rethrow_exception(error);
}

void ATMediaTypePCL3PPDUpdater::setProfile(const Record& record, const ProfileEntry& entry, ATPPD& inPPD,
                                           TextsBySpec& localizedTexts) const {
  static constexpr const char* kSignature = "-[ATMediaTypePCL3PPDUpdater setICCProfileForMediaWithData:inPPD:]";
  const OptionalText path = pathOfEntry(entry);
  const std::string spec = profileSpecFromMediaData(record, entry, inPPD);
  const OptionalText name = nameOfEntry(entry);
  if (problemOfProfile(name, path) != ProfileProblem::none) {
    ATLog(kSignature, "INFO: Skip profile: {}", name);
    return;
  }
  const auto profile = inPPD.attributeForName(kProfile, spec);
  if (profile == nullptr) return;
  ATLog(kSignature, "Found factory ICC profile: {}", spec);
  profile->setText(name);
  profile->setValue(quoted(path));
  localizedTexts[spec] = *name;
}

void ATMediaTypePCL3PPDUpdater::setTextOfLocalizations(const ATPPD::Spec& spec, const std::optional<std::string>& text,
                                                       ATPPD& inPPD) {
  for (const auto& localization : inPPD.localizationForAttributeWithName(kProfile, spec)) localization->setText(text);
}

void ATMediaTypePCL3PPDUpdater::restoreFactoryICCProfilesInPPD(ATPPD& ppd) const {
  for (const auto& factoryProfile : ppd.attributesForName(kFactoryProfile)) {
    const auto wrapper =
        ATQZProfilePPDAttributeWrapper::qzProfilePPDAttributeDecoratorWithPPDAttribute(*factoryProfile);
    if (wrapper == nullptr || !wrapper->factoryPath()) continue;
    updateCupsProfile(ppd.attributeForName(kProfile, wrapper->spec()), ppd, *wrapper);
  }
}

void ATMediaTypePCL3PPDUpdater::updateCupsProfile(const ATPPD::AttributePtr& profile, ATPPD& inPPD,
                                                  const ATQZProfilePPDAttributeWrapper& withQZProfileAttribute) const {
  if (profile == nullptr) return;
  const auto& path = withQZProfileAttribute.factoryPath();
  // The value has its quotes and the path has none, so only an unquoted value is ever left alone: that is meant.
  if (path == profile->value()) return;
  const auto& name = withQZProfileAttribute.factoryProfileName();
  profile->setValue(quoted(path));
  profile->setText(name);
  setTextOfLocalizations(withQZProfileAttribute.spec(), name, inPPD);
}

void ATMediaTypePCL3PPDUpdater::removeInclusionsOfMediaWithID(const std::string& choiceName, ATPPD& fromPPD) const {
  for (const auto& profile : fromPPD.attributesForNameWithSpecContaining(kProfile, choiceName)) {
    ATLog("-[ATMediaTypePCL3PPDUpdater removeInclusionsOfMediaWithID:fromPPD:]", "Removing profile {}",
          profile->spec());
    for (const auto& localization : fromPPD.localizationForAttributeWithName(kProfile, profile->spec())) {
      fromPPD.removePPDAttribute(localization);
    }
    fromPPD.removePPDAttribute(profile);
  }
  ATMediaTypePPDUpdater::removeInclusionsOfMediaWithID(choiceName, fromPPD);
}
