// SPDX-License-Identifier: MIT
#include "updaters/ATMediaTypePCL3Qualifier3PPDUpdater.h"

#include <fmt/format.h>

#include <unordered_set>

#include "base/ATException.h"
#include "base/Text.h"
#include "ppd/lines/PPDExtentions.h"
#include "updaters/PPDKeywords.h"

std::string ATMediaTypePCL3Qualifier3PPDUpdater::twoComponentICCProfileSpecFor3ComponentSpec(
    const ATPPD::Spec& spec) const {
  const std::size_t lastDot = spec ? spec->rfind('.') : std::string::npos;
  if (lastDot == std::string::npos) {
    throw ATException::outOfRange(
        "-[ATMediaTypePCL3Qualifier3PPDUpdater twoComponentICCProfileSpecFor3ComponentSpec:]");
  }
  return std::string(spec->substr(0, lastDot + 1));
}

std::vector<std::string> ATMediaTypePCL3Qualifier3PPDUpdater::collectPossible2ComponentSpecsToRemoveWithFactoryProfiles(
    const ATPPD::Attributes& factoryProfiles) const {
  std::vector<std::string> candidates;
  std::unordered_set<std::string> candidatesSeen;
  std::unordered_set<std::string> kept;
  for (const auto& factoryProfile : factoryProfiles) {
    std::string twoComponents = twoComponentICCProfileSpecFor3ComponentSpec(factoryProfile->spec());
    if (twoComponents == factoryProfile->spec()) {
      kept.insert(std::move(twoComponents));
    } else if (candidatesSeen.insert(twoComponents).second) {
      candidates.push_back(std::move(twoComponents));
    }
  }
  std::erase_if(candidates, [&kept](const std::string& spec) { return kept.count(spec) != 0; });
  return candidates;
}

void ATMediaTypePCL3Qualifier3PPDUpdater::restoreFactoryICCProfilesInPPD(ATPPD& ppd) const {
  const auto factoryProfiles = ppd.attributesForName(PPDKeyword::factoryProfile);
  for (const std::string& spec : collectPossible2ComponentSpecsToRemoveWithFactoryProfiles(factoryProfiles)) {
    if (const auto profile = ppd.attributeForName(PPDKeyword::profile, spec))
      ppd.removePPDAttributeWithLocalizations(profile);
  }
  ATMediaTypePCL3PPDUpdater::restoreFactoryICCProfilesInPPD(ppd);
}

void ATMediaTypePCL3Qualifier3PPDUpdater::updateCupsProfile(
    const ATPPD::AttributePtr& profile, ATPPD& inPPD,
    const ATQZProfilePPDAttributeWrapper& withQZProfileAttribute) const {
  if (profile != nullptr) {
    ATMediaTypePCL3PPDUpdater::updateCupsProfile(profile, inPPD, withQZProfileAttribute);
    return;
  }
  const auto attributes =
      cupsICCProfileAttributesWithName(withQZProfileAttribute.factoryProfileName(), withQZProfileAttribute.spec(),
                                       withQZProfileAttribute.factoryPath(), inPPD);
  if (!attributes) return;
  for (const auto& attribute : *attributes) inPPD.addPPDAttribute(attribute);
  observer().didMakeProfileAnew(withQZProfileAttribute.spec());
}

std::vector<std::string> ATMediaTypePCL3Qualifier3PPDUpdater::choiceNamesForOption(
    const std::shared_ptr<ATPPDOption>& option) const {
  std::vector<std::string> names;
  if (option == nullptr) return names;
  for (const auto& choice : option->choices()) names.emplace_back(Text::orNull(choice->name()));
  return names;
}

std::optional<std::string> ATMediaTypePCL3Qualifier3PPDUpdater::qualifierOption(const char* statement,
                                                                                const ATPPD& ppd) {
  const auto attribute = ppd.attributeForName(statement);
  if (attribute == nullptr || !attribute->value()) return std::nullopt;
  return std::string(PPDExtentions::quotedValueContent(*attribute->value()).value_or(*attribute->value()));
}

std::optional<std::vector<std::string>> ATMediaTypePCL3Qualifier3PPDUpdater::qualified3PossibleProfileSpecsForMediaData(
    const Record& record, const ATPPD& ppd) const {
  const DeviceValue qualifier = mediaQualifierFromData(record, ppd);
  if (qualifier.isAbsent()) return std::nullopt;
  const auto optionName = qualifierOption(PPDKeyword::thirdQualifier, ppd);
  if (!optionName) return std::nullopt;
  std::vector<std::string> specs;
  const std::string medium = qualifier.description();
  const auto choiceNames = choiceNamesForOption(ppd.optionForName(*optionName));
  ppd.budget().needBytes(choiceNames.size() * medium.size());  // the device's ID may be of any length
  specs.reserve(choiceNames.size());
  for (const std::string& choiceName : choiceNames) {
    specs.push_back(fmt::format(".{}.{}", medium, choiceName));
  }
  return specs;
}

void ATMediaTypePCL3Qualifier3PPDUpdater::removeSpecializedICCQualifiers(ATPPD& ppd,
                                                                         const Record& aMediaTypeData) const {
  const auto specs = qualified3PossibleProfileSpecsForMediaData(aMediaTypeData, ppd);
  if (!specs) return;
  for (const std::string& spec : *specs) {
    if (const auto profile = ppd.attributeForName(PPDKeyword::profile, spec))
      ppd.removePPDAttributeWithLocalizations(profile);
  }
}

void ATMediaTypePCL3Qualifier3PPDUpdater::setICCProfileForMediaWithData(const Record& record, ATPPD& inPPD) const {
  const std::string spec = generalProfileSpecForMediaData(record, inPPD);
  removeSpecializedICCQualifiers(inPPD, record);
  if (inPPD.attributeForName(PPDKeyword::profile, spec) == nullptr) {
    addICCProfileForMediaWithData(record, inPPD);
  } else {
    ATMediaTypePCL3PPDUpdater::setICCProfileForMediaWithData(record, inPPD);
  }
}
