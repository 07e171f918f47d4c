// SPDX-License-Identifier: MIT
#include "updaters/ATMediaTypePPDUpdater.h"

#include <fmt/format.h>

#include <unordered_set>
#include <utility>

#include "base/ATException.h"
#include "base/Text.h"
#include "driver/ATLog.h"

namespace {

constexpr const char* kMediaTypeOption = "MediaType";
constexpr const char* kProperties = "QZValueAttributes";
constexpr const char* kMediaGroup = "QZMediaTypeGroup";
constexpr const char* kCustomMediaGroup = "CustomMedia-category";
constexpr const char* kExtendedMediaGroup = "ExtendedCustomMedia-category";
constexpr const char* kMediaListVersion = "QZMediaListVersion";
constexpr const char* kExtendedCategory = "QZ_EXTENDED_MEDIA";

std::string propertiesSpec(std::string_view choiceName) {
  return fmt::format("{}.{}", kMediaTypeOption, choiceName);
}

// The value of a group attribute is `"Custom1,<LF>Custom2"`, a line feed, "*End" and a line feed. It is part of the
// value because a statement of several lines is only complete with its own End line.
ATPPD::AttributePtr groupAttribute(const char* spec, const std::vector<std::string>& names) {
  const std::string value = fmt::format("\"{}\"\n*End\n", fmt::join(names, ",\n"));
  return ATPPDAttribute::initWithName(kMediaGroup, spec, "Custom Paper", value);
}

std::string_view withoutQuotesAtBothEnds(std::string_view text) {
  while (text.starts_with('"')) text.remove_prefix(1);
  while (text.ends_with('"')) text.remove_suffix(1);
  return text;
}

}  // namespace

bool ATMediaTypePPDUpdater::updatePPD(ATPPD* ppd, const IATDataReader* usingDataReader) const {
  if (ppd == nullptr || usingDataReader == nullptr) return false;
  const DeviceValue data = usingDataReader->dataForKey(VMCustomMediaStorage);
  const DeviceValue version = data.valueForKey("MedaListVersion");
  const auto mediaList = data.valueForKey("MediaList").list();
  if (mediaList == nullptr) return true;

  cleanupPPD(*ppd);
  AddedMedia added;
  for (const Record& record : *mediaList) updateMedia(record, *ppd, added);
  addGroups(added, *ppd);
  const auto versionText = version.textFor("media list version").value_or("MEDIUM_LIST_VERSION_UNKNOWN");
  ppd->addPPDAttribute(ATPPDAttribute::initWithName(kMediaListVersion, std::nullopt, std::nullopt, versionText));
  return true;
}

void ATMediaTypePPDUpdater::updateMedia(const Record& record, ATPPD& ppd, AddedMedia& added) const {
  ATLog("-[ATMediaTypePPDUpdater updatePPD:usingDataReader:]", "Processing media data: {}", record.description());
  if (isMediaTypeDataCustom(record)) {
    const Record named = addPPDNameForMediaWithIndex(added.nextIndex, record);
    if (addMediaWithData(named, ppd)) {
      addICCProfileForMediaWithData(named, ppd);
      auto& names = record.valueForKey("CategoryID").equals(kExtendedCategory) ? added.extended : added.custom;
      names.push_back(*named.valueForKey("PPDName").text());
      ++added.nextIndex;
    }
  } else {
    setICCProfileForMediaWithData(record, ppd);
  }
  updateDefaultGlossEnhancerForMediaWithData(record, ppd);
}

void ATMediaTypePPDUpdater::addGroups(const AddedMedia& added, ATPPD& ppd) const {
  if (!added.custom.empty()) ppd.addPPDAttribute(customMediaGroupAttributeWithMediaNames(added.custom));
  if (!added.extended.empty()) ppd.addPPDAttribute(extendedMediaGroupAttributeWithMediaNames(added.extended));
}

void ATMediaTypePPDUpdater::cleanupPPD(ATPPD& ppd) const {
  restoreFactoryICCProfilesInPPD(ppd);
  if (const auto version = ppd.attributeForName(kMediaListVersion)) ppd.removePPDAttribute(version);
  removeMediaInGroup(ppd.attributeForName(kMediaGroup, kCustomMediaGroup), ppd);
  removeMediaInGroup(ppd.attributeForName(kMediaGroup, kExtendedMediaGroup), ppd);
  restoreDefaultGlossEnhancerMediaPropertyInPPD(ppd);
}

void ATMediaTypePPDUpdater::removeMediaInGroup(const ATPPD::AttributePtr& group, ATPPD& fromPPD) const {
  if (group == nullptr) return;
  if (const auto& value = group->value()) {
    for (const std::string_view choiceName : Text::split(withoutQuotesAtBothEnds(*value), ",\n")) {
      removeInclusionsOfMediaWithID(std::string(choiceName), fromPPD);
    }
  }
  fromPPD.removePPDAttribute(group);
}

void ATMediaTypePPDUpdater::removeInclusionsOfMediaWithID(const std::string& choiceName, ATPPD& fromPPD) const {
  if (const auto option = mediaTypeOptionFromPPD(fromPPD)) {
    while (const auto choice = option->choiceForName(choiceName)) option->removeChoice(choice);
  }
  if (const auto properties = propertiesOfMedia(choiceName, fromPPD)) fromPPD.removePPDAttribute(properties);
}

void ATMediaTypePPDUpdater::restoreFactoryICCProfilesInPPD(ATPPD& /*ppd*/) const {}

bool ATMediaTypePPDUpdater::addICCProfileForMediaWithData(const Record& /*record*/, ATPPD& /*toPPD*/) const {
  return true;
}

void ATMediaTypePPDUpdater::setICCProfileForMediaWithData(const Record& /*record*/, ATPPD& /*inPPD*/) const {}

std::string ATMediaTypePPDUpdater::mediaTypeChoiceCodeWithName(const std::string& /*choiceName*/,
                                                               const DeviceValue& /*ID*/) const {
  throw ATException::unsupportedOperation("-[ATMediaTypePPDUpdater mediaTypeChoiceCodeWithName:ID:]");
}

std::shared_ptr<ATPPDOption> ATMediaTypePPDUpdater::mediaTypeOptionFromPPD(const ATPPD& ppd) const {
  const auto group = ppd.groupForName("QZImagingOptions");
  return group ? group->optionForName(kMediaTypeOption) : nullptr;
}

ATPPD::AttributePtr ATMediaTypePPDUpdater::propertiesOfMedia(const std::string& choiceName, const ATPPD& ppd) {
  return ppd.attributeForName(kProperties, propertiesSpec(choiceName));
}

bool ATMediaTypePPDUpdater::isMediaTypeDataCustom(const Record& record) {
  const DeviceValue category = record.valueForKey("CategoryID");
  return category.equals("CUSTOM") || category.equals(kExtendedCategory);
}

ATMediaTypePPDUpdater::Record ATMediaTypePPDUpdater::addPPDNameForMediaWithIndex(std::uint64_t index,
                                                                                 const Record& toData) const {
  const auto original = toData.map();
  auto copy = original ? std::make_shared<DeviceMap>(*original) : std::make_shared<DeviceMap>();
  copy->set("PPDName", fmt::format("Custom{:x}", static_cast<std::uint32_t>(index)));
  return copy;
}

bool ATMediaTypePPDUpdater::addMediaWithData(const Record& record, ATPPD& toPPD) const {
  const auto choiceName = record.valueForKey("PPDName").textFor("choice name");
  const DeviceValue ID = record.valueForKey("ID");
  const DeviceValue mediaName = record.valueForKey("MediaName");
  const std::string code = mediaTypeChoiceCodeWithName(std::string(Text::orNull(choiceName)), ID);
  ATLog("-[ATMediaTypePPDUpdater addMediaWithData:toPPD:]", "Adding {} with ID {}", mediaName.description(),
        ID.description());
  if (!choiceName || ID.isAbsent() || mediaName.isAbsent()) return false;

  const std::string name = *mediaName.textFor("media name");
  ATPPDChoice::Localizations localizations = localizedNamesForMediaName(name, toPPD);
  std::string text = name;
  if (!validMediaUIName(name)) {
    // The name reaches the user through the English translation instead, which takes any character.
    text.clear();
    localizations.emplace_back("en", name);
  }
  const auto choice = ATPPDChoice::initWithName(*choiceName, text, code, kMediaTypeOption, localizations);
  if (choice == nullptr) return false;
  // Without the option the choice is lost, but the medium still counts as added.
  if (const auto option = mediaTypeOptionFromPPD(toPPD)) option->addChoice(choice);
  addAttributesForMediaWithData(record, toPPD);
  return true;
}

ATPPDChoice::Localizations ATMediaTypePPDUpdater::localizedNamesForMediaName(const std::string& name,
                                                                             const ATPPD& ppd) const {
  ATPPDChoice::Localizations localizations;
  const auto* languages = ppd.supportedLocalizations();
  if (languages == nullptr) return localizations;
  std::unordered_set<std::string_view> seen = {"en"};
  for (const std::string& language : *languages) {
    if (seen.insert(language).second) localizations.emplace_back(language, name);
  }
  return localizations;
}

void ATMediaTypePPDUpdater::addAttributesForMediaWithData(const Record& record, ATPPD& toPPD) const {
  static constexpr const char* kSignature = "-[ATMediaTypePPDUpdater addAttributesForMediaWithData:toPPD:]";
  const DeviceValue parentID = record.valueForKey("ParentID");
  const auto choiceName = record.valueForKey("PPDName").textFor("choice name");
  ATLog(kSignature, "For {} parent media has ID {}", record.valueForKey("MediaName").description(),
        parentID.description());
  if (parentID.isAbsent() || !choiceName) return;

  const std::string parentName = ppdNameForMediaWithID(parentID, toPPD).description();
  const auto parentProperties = propertiesOfMedia(parentName, toPPD);
  const auto value = parentProperties ? parentProperties->value() : std::nullopt;
  ATLog(kSignature, "Parent media name: {} attributes: {}", parentName, value);
  if (!value) return;
  const auto properties = ATPPDAttribute::initWithName(kProperties, propertiesSpec(*choiceName), std::nullopt, value);
  ATLog(kSignature, "Adding attributes for {}: {}", *choiceName, value);
  toPPD.addPPDAttribute(properties);
}

DeviceValue ATMediaTypePPDUpdater::ppdNameForMediaWithID(const DeviceValue& ID, const ATPPD& fromPPD) const {
  if (ID.isAbsent()) return {};
  const auto option = mediaTypeOptionFromPPD(fromPPD);
  if (option == nullptr) return ID;
  const std::string* text = ID.text();
  if (text == nullptr && option->hasChoiceWithCode()) throw ATException::wrongType("media ID to search for");
  const auto choice = text == nullptr ? nullptr : option->choiceWithCodeContaining(*text);
  return choice ? DeviceValue(choice->name()) : ID;
}

ATPPD::AttributePtr ATMediaTypePPDUpdater::customMediaGroupAttributeWithMediaNames(
    const std::vector<std::string>& names) const {
  return groupAttribute(kCustomMediaGroup, names);
}

ATPPD::AttributePtr ATMediaTypePPDUpdater::extendedMediaGroupAttributeWithMediaNames(
    const std::vector<std::string>& names) const {
  return groupAttribute(kExtendedMediaGroup, names);
}

bool ATMediaTypePPDUpdater::validMediaUIName(const std::string& name) const {
  // Up to U+009D: the range reaches past the printable ASCII characters, which is meant.
  return verifyString(name, 32, 126, "\n\r:");
}

bool ATMediaTypePPDUpdater::verifyString(std::string_view string, char32_t start, std::size_t length,
                                         std::string_view andDisallowedCharactersInString) const {
  constexpr std::string_view kAlwaysAllowed = "\t\n\r ";
  for (std::size_t position = 0; position < string.size();) {
    const Text::Character character = Text::characterAt(string, position);
    const std::string_view bytes = string.substr(position, character.size);
    position += character.size;
    const bool inRange = character.value >= start && character.value - start < length;
    if (!inRange && !Text::contains(kAlwaysAllowed, bytes)) return false;
    if (Text::contains(andDisallowedCharactersInString, bytes)) return false;
  }
  return !string.empty();
}
