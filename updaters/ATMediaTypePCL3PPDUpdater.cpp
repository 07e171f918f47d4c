// SPDX-License-Identifier: MIT
#include "updaters/ATMediaTypePCL3PPDUpdater.h"

#include <vector>

#include "base/ATLog.h"
#include "base/Format.h"
#include "base/Text.h"
#include "ppd/lines/LineComposer.h"
#include "ppd/lines/PPDExtentions.h"
#include "readers/MediaKeys.h"
#include "updaters/PPDKeywords.h"
#include "updaters/URLPath.h"

namespace {

constexpr const char* kAddSignature = "-[ATMediaTypePCL3PPDUpdater addICCProfileForMediaWithData:toPPD:]";
constexpr const char* kSetSignature = "-[ATMediaTypePCL3PPDUpdater setICCProfileForMediaWithData:inPPD:]";

using OptionalText = std::optional<std::string>;

OptionalText pathOf(const OptionalText& url) {
  return url ? pathOfURL(*url) : std::nullopt;
}

std::string quoted(const OptionalText& text) {
  return fmt::format("\"{}\"", text);
}

OptionalText urlOfEntry(const DeviceValue& entry) {
  return entry.valueForKey(MediaKey::profileURL).textFor("profile URL");
}

OptionalText nameOfEntry(const DeviceValue& entry) {
  return entry.valueForKey(MediaKey::profileName).textFor("profile name");
}

ProfileProblem problemOfLength(const OptionalText& name) {
  if (name && PPDExtentions::isValidPPDTextLength(*name)) return ProfileProblem::none;
  if (!name) return ProfileProblem::noName;
  return name->empty() ? ProfileProblem::emptyName : ProfileProblem::nameTooLong;
}

// The first thing that keeps a profile of this name and path out of a statement.
ProfileProblem problemOfProfile(const OptionalText& name, const OptionalText& path) {
  if (const ProfileProblem problem = problemOfLength(name); problem != ProfileProblem::none) return problem;
  if (!PPDExtentions::isValidPPDText(*name)) return ProfileProblem::charactersOfName;
  if (!path) return ProfileProblem::noPath;
  return PPDExtentions::isValidPPDText(*path) ? ProfileProblem::none : ProfileProblem::charactersOfPath;
}

const std::vector<std::string>& languagesOf(const ATPPD& ppd) {
  static const std::vector<std::string> none;
  const auto* languages = ppd.supportedLocalizations();
  return languages == nullptr ? none : *languages;
}

void setTextOfLocalizations(const ATPPD::Spec& spec, const ATPPDAttribute::Part& text, const ATPPD& ppd) {
  for (const auto& localization : ppd.localizationForAttributeWithName(PPDKeyword::profile, spec)) {
    localization->setText(text);
  }
}

// The record's profiles, or null when there are none.
DeviceValue::ListPtr profilesOf(const DeviceValue& record) {
  const auto profiles = record.valueForKey(MediaKey::profiles).list();
  return profiles == nullptr || profiles->empty() ? nullptr : profiles;
}

}  // namespace

std::optional<std::string> ATMediaTypePCL3PPDUpdater::mediaTypeChoiceCodeWithName(const std::string& choiceName,
                                                                                  const DeviceValue& ID) const {
  return fmt::format("<</MediaType({})/QZMediaID({})>>setpagedevice", choiceName, ID.description());
}

DeviceValue ATMediaTypePCL3PPDUpdater::mediaQualifierFromData(const Record& record, const ATPPD& ppd) const {
  DeviceValue choiceName = record.valueForKey(MediaKey::choiceName);
  return choiceName.isAbsent() ? ppdNameForMediaWithID(record.valueForKey(MediaKey::ID), ppd) : choiceName;
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
    const ATPPDAttribute::Part& name, const ATPPD::Spec& spec, const std::optional<std::string>& url,
    const ATPPD& ppd) const {
  static constexpr const char* kSignature =
      "-[ATMediaTypePCL3PPDUpdater cupsICCProfileAttributesWithName:spec:url:ppd:]";
  const std::string key = fmt::format("{} {}/{}", PPDKeyword::profile, spec, name);
  LineComposer composer;
  if (const auto line = composer.add("*", key, ": ", quoted(pathOf(url)), "\n");
      !PPDExtentions::isValidPPDLineLength(line)) {
    ATLog(kSignature, "INFO: Skip profile {} - line length > 256 bytes: {}", name, line);
    return std::nullopt;
  }
  for (const std::string& language : languagesOf(ppd)) {
    if (language == "en") continue;
    const auto line = composer.add("*", language, ".", key, ": \"\"\n");
    if (PPDExtentions::isValidPPDLineLength(line)) continue;
    ATLog(kSignature, "INFO: Skip profile {}, locale {} > 256 bytes limit: {}", name, language, line);
    return std::nullopt;
  }
  ATPPD::Attributes attributes;
  for (const StatementString& line : composer.lines()) attributes.push_back(ATPPDAttribute::attributeWithString(line));
  return attributes;
}

bool ATMediaTypePCL3PPDUpdater::addICCProfileForMediaWithData(const Record& record, ATPPD& toPPD) const {
  const auto profiles = profilesOf(record);
  if (profiles == nullptr) {
    ATLog(kAddSignature, "INFO: Cannot add profile from {}", record.description());
    observer().didFindNoProfiles(record);
    return false;
  }
  for (const ProfileEntry& entry : *profiles) addProfile(record, entry, toPPD);
  return true;
}

void ATMediaTypePCL3PPDUpdater::addProfile(const Record& record, const ProfileEntry& entry, ATPPD& toPPD) const {
  const OptionalText url = urlOfEntry(entry);
  const OptionalText path = pathOf(url);
  const OptionalText name = nameOfEntry(entry);
  if (const ProfileProblem problem = problemOfProfile(name, path); problem != ProfileProblem::none) {
    ATLog(kAddSignature, "INFO: Skip profile: {}", name);
    return observer().didSkipProfile({url, name, path, std::nullopt}, problem);
  }
  const std::string spec = profileSpecFromMediaData(record, entry, toPPD);
  if (!PPDExtentions::isValidPPDNameLength(spec)) {
    ATLog(kAddSignature, "INFO: Ignore profile {} with qualifier (> 41 bytes): {}", name, spec);
    return observer().didSkipProfile({url, name, path, spec}, ProfileProblem::specTooLong);
  }
  const auto attributes = cupsICCProfileAttributesWithName(name, spec, url, toPPD);
  if (!attributes) return observer().didSkipProfile({url, name, path, spec}, ProfileProblem::lineTooLong);
  for (const auto& attribute : *attributes) toPPD.addPPDAttribute(attribute);
  observer().didAddProfile({url, name, path, spec});
}

void ATMediaTypePCL3PPDUpdater::setICCProfileForMediaWithData(const Record& record, ATPPD& inPPD) const {
  const auto profiles = profilesOf(record);
  if (profiles == nullptr) {
    ATLog(kSetSignature, "INFO: Cannot set profile from {}", record.description());
    return observer().didFindNoProfiles(record);
  }
  for (const ProfileEntry& entry : *profiles) setProfile(record, entry, inPPD);
}

void ATMediaTypePCL3PPDUpdater::setProfile(const Record& record, const ProfileEntry& entry, ATPPD& inPPD) const {
  const OptionalText url = urlOfEntry(entry);
  const OptionalText path = pathOf(url);
  const std::string spec = profileSpecFromMediaData(record, entry, inPPD);
  const OptionalText name = nameOfEntry(entry);
  if (const ProfileProblem problem = problemOfProfile(name, path); problem != ProfileProblem::none) {
    ATLog(kSetSignature, "INFO: Skip profile: {}", name);
    return observer().didSkipProfile({url, name, path, spec}, problem);
  }
  const auto profile = inPPD.attributeForName(PPDKeyword::profile, spec);
  if (profile == nullptr) return observer().didSkipProfile({url, name, path, spec}, ProfileProblem::noStatement);
  ATLog(kSetSignature, "Found factory ICC profile: {}", spec);
  profile->setText(name);
  profile->setValue(quoted(path));
  setTextOfLocalizations(spec, name, inPPD);
  observer().didSetProfile({url, name, path, spec});
}

void ATMediaTypePCL3PPDUpdater::restoreFactoryICCProfilesInPPD(ATPPD& ppd) const {
  for (const auto& factoryProfile : ppd.attributesForName(PPDKeyword::factoryProfile)) {
    const auto wrapper =
        ATQZProfilePPDAttributeWrapper::qzProfilePPDAttributeDecoratorWithPPDAttribute(*factoryProfile);
    if (wrapper == nullptr || !wrapper->factoryPath()) continue;
    updateCupsProfile(ppd.attributeForName(PPDKeyword::profile, wrapper->spec()), ppd, *wrapper);
  }
}

void ATMediaTypePCL3PPDUpdater::updateCupsProfile(const ATPPD::AttributePtr& profile, ATPPD& inPPD,
                                                  const ATQZProfilePPDAttributeWrapper& withQZProfileAttribute) const {
  if (profile == nullptr) return;
  const auto& path = withQZProfileAttribute.factoryPath();
  // The value has its quotes and the path has none, so only an unquoted value is ever left alone: that is meant.
  if (path == profile->value()) return;
  const auto& name = withQZProfileAttribute.factoryProfileName();
  observer().willRestoreProfile(*profile);
  profile->setValue(quoted(path));
  profile->setText(name);
  setTextOfLocalizations(withQZProfileAttribute.spec(), name, inPPD);
  observer().didRestoreProfile(*profile);
}

void ATMediaTypePCL3PPDUpdater::removeInclusionsOfMediaWithID(const std::string& choiceName, ATPPD& fromPPD) const {
  for (const auto& profile : fromPPD.attributesForName(PPDKeyword::profile, choiceName)) {
    const auto spec = profile->spec();
    ATLog("-[ATMediaTypePCL3PPDUpdater removeInclusionsOfMediaWithID:fromPPD:]", "Removing profile {}", spec);
    observer().willRemoveProfile(*profile, choiceName);
    for (const auto& localization : fromPPD.localizationForAttributeWithName(PPDKeyword::profile, spec)) {
      fromPPD.removePPDAttribute(localization);
    }
    fromPPD.removePPDAttribute(profile);
  }
  ATMediaTypePPDUpdater::removeInclusionsOfMediaWithID(choiceName, fromPPD);
}
