// SPDX-License-Identifier: MIT
#include "updaters/ATMediaTypePPDUpdater.h"

#include <fmt/format.h>

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "base/ATException.h"
#include "base/ATLog.h"
#include "base/Format.h"
#include "base/Text.h"
#include "readers/MediaKeys.h"
#include "updaters/PPDKeywords.h"

namespace {

constexpr const char* kCustomMediaGroup = "CustomMedia-category";
constexpr const char* kExtendedMediaGroup = "ExtendedCustomMedia-category";
constexpr const char* kExtendedCategory = "QZ_EXTENDED_MEDIA";

std::string propertiesSpec(std::string_view choiceName) {
  return fmt::format("{}.{}", PPDKeyword::mediaOption, choiceName);
}

// The value of a group attribute is `"Custom1,<LF>Custom2"`, a line feed, "*End" and a line feed. It is part of the
// value because a statement of several lines is only complete with its own End line.
ATPPD::AttributePtr groupAttribute(const char* spec, const std::vector<std::string>& names) {
  const std::string value = fmt::format("\"{}\"\n*End\n", fmt::join(names, ",\n"));
  return ATPPDAttribute::initWithName(PPDKeyword::addedMedia, spec, "Custom Paper", value);
}

MediumProblem whatIsMissing(const std::optional<std::string>& choiceName, const DeviceValue& ID,
                            const DeviceValue& mediaName, const std::optional<std::string>& code) {
  if (mediaName.isAbsent()) return MediumProblem::noName;
  if (ID.isAbsent()) return MediumProblem::noID;
  if (!choiceName) return MediumProblem::noChoiceName;
  return code ? MediumProblem::nothingMissing : MediumProblem::noCode;
}

void setLocalization(std::string_view language, std::string_view text, ATPPDChoice::Localizations& localizations) {
  const auto found = std::find_if(localizations.begin(), localizations.end(),
                                  [language](const auto& localization) { return localization.first == language; });
  if (found == localizations.end()) {
    localizations.emplace_back(language, text);
  } else {
    found->second = text;
  }
}

std::string_view withoutQuotesAtBothEnds(std::string_view text) {
  while (text.starts_with('"')) text.remove_prefix(1);
  while (text.ends_with('"')) text.remove_suffix(1);
  return text;
}

std::shared_ptr<ATPPDChoice> choiceWithCodeContaining(const DeviceValue& ID, const ATPPDOption& option) {
  if (ID.text() != nullptr) return option.choiceWithCodeContaining(*ID.text());
  const bool isSearched = std::any_of(option.choices().begin(), option.choices().end(),
                                      [](const auto& choice) { return choice->code().has_value(); });
  if (isSearched) throw ATException::wrongType("media ID to search for");
  return nullptr;
}

}  // namespace

bool ATMediaTypePPDUpdater::updatePPD(ATPPD* ppd, const IATDataReader* usingDataReader) const {
  if (ppd == nullptr || usingDataReader == nullptr) return false;
  const DeviceValue data = usingDataReader->dataForKey(VMCustomMediaStorage);
  const DeviceValue version = data.valueForKey(MediaKey::listVersion);
  const auto mediaList = data.valueForKey(MediaKey::list).list();
  observer_.didReadMedia(data);
  if (mediaList == nullptr) return true;

  cleanupPPD(*ppd);
  AddedMedia added;
  for (Record& record : *mediaList) {
    updateMedia(record, *ppd, added);
    record = {};  // what updaters made of it in place may be large
  }
  addGroups(added, *ppd);
  const auto versionText = version.textFor("media list version").value_or("MEDIUM_LIST_VERSION_UNKNOWN");
  ppd->addPPDAttribute(
      ATPPDAttribute::initWithName(PPDKeyword::mediaListVersion, std::nullopt, std::nullopt, versionText));
  return true;
}

void ATMediaTypePPDUpdater::updateMedia(const Record& record, ATPPD& ppd, AddedMedia& added) const {
  ATLog("-[ATMediaTypePPDUpdater updatePPD:usingDataReader:]", "Processing media data: {}", record.description());
  const bool isCustom = isMediaTypeDataCustom(record);
  observer_.willProcess(record, isCustom);
  if (isCustom) {
    updateCustomMedia(record, ppd, added);
  } else {
    setICCProfileForMediaWithData(record, ppd);
  }
  updateDefaultGlossEnhancerForMediaWithData(record, ppd);
  observer_.didProcess();
}

void ATMediaTypePPDUpdater::updateCustomMedia(const Record& record, ATPPD& ppd, AddedMedia& added) const {
  const Record named = addPPDNameForMediaWithIndex(added.nextIndex, record);
  if (!addMediaWithData(named, ppd)) return;
  addICCProfileForMediaWithData(named, ppd);
  const auto choiceName = named.valueForKey(MediaKey::choiceName).textFor("choice name to list");
  if (!choiceName) throw ATException::wrongType("a medium was added that has no choice name");
  auto& names = record.valueForKey(MediaKey::categoryID).equals(kExtendedCategory) ? added.extended : added.custom;
  names.push_back(*choiceName);
  ++added.nextIndex;
}

void ATMediaTypePPDUpdater::addGroups(const AddedMedia& added, ATPPD& ppd) const {
  if (!added.custom.empty()) ppd.addPPDAttribute(customMediaGroupAttributeWithMediaNames(added.custom));
  if (!added.extended.empty()) ppd.addPPDAttribute(extendedMediaGroupAttributeWithMediaNames(added.extended));
}

void ATMediaTypePPDUpdater::cleanupPPD(ATPPD& ppd) const {
  restoreFactoryICCProfilesInPPD(ppd);
  if (const auto version = ppd.attributeForName(PPDKeyword::mediaListVersion)) ppd.removePPDAttribute(version);
  removeMediaInGroup(ppd.attributeForName(PPDKeyword::addedMedia, kCustomMediaGroup), ppd);
  removeMediaInGroup(ppd.attributeForName(PPDKeyword::addedMedia, kExtendedMediaGroup), ppd);
  restoreDefaultGlossEnhancerMediaPropertyInPPD(ppd);
}

void ATMediaTypePPDUpdater::removeMediaInGroup(const ATPPD::AttributePtr& group, ATPPD& fromPPD) const {
  if (group == nullptr) return;
  if (const auto value = group->value()) {
    for (const std::string_view choiceName : Text::split(withoutQuotesAtBothEnds(*value), ",\n")) {
      observer_.willRemoveMedium(choiceName);
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

std::optional<std::string> ATMediaTypePPDUpdater::mediaTypeChoiceCodeWithName(const std::string& /*choiceName*/,
                                                                              const DeviceValue& /*ID*/) const {
  throw ATException::unsupportedOperation("-[ATMediaTypePPDUpdater mediaTypeChoiceCodeWithName:ID:]");
}

std::shared_ptr<ATPPDOption> ATMediaTypePPDUpdater::mediaTypeOptionFromPPD(const ATPPD& ppd) const {
  const auto group = ppd.groupForName(PPDKeyword::mediaGroup);
  return group ? group->optionForName(PPDKeyword::mediaOption) : nullptr;
}

ATPPD::AttributePtr ATMediaTypePPDUpdater::propertiesOfMedia(std::string_view choiceName, const ATPPD& ppd) {
  return ppd.attributeForName(PPDKeyword::mediaProperties, propertiesSpec(choiceName));
}

bool ATMediaTypePPDUpdater::isMediaTypeDataCustom(const Record& record) const {
  const DeviceValue category = record.valueForKey(MediaKey::categoryID);
  return category.equals("CUSTOM") || category.equals(kExtendedCategory);
}

ATMediaTypePPDUpdater::Record ATMediaTypePPDUpdater::addPPDNameForMediaWithIndex(std::uint64_t index,
                                                                                 const Record& toData) const {
  if (toData.isAbsent()) return toData;
  const auto original = toData.map();
  if (original == nullptr) throw ATException::wrongType("a media record that is no map");
  auto copy = std::make_shared<DeviceMap>(*original);
  copy->set(MediaKey::choiceName, fmt::format("Custom{:x}", static_cast<std::uint32_t>(index)));
  return copy;
}

bool ATMediaTypePPDUpdater::addMediaWithData(const Record& record, ATPPD& toPPD) const {
  const auto choice = choiceForMediaWithData(record, toPPD);
  if (choice == nullptr) return false;
  // Without the option the choice is lost, but the medium still counts as added.
  const auto option = mediaTypeOptionFromPPD(toPPD);
  if (option != nullptr) option->addChoice(choice);
  observer_.didAddMedium(*choice, option.get());
  addAttributesForMediaWithData(record, toPPD);
  return true;
}

// Null when the record lacks something or the choice cannot be made.
std::shared_ptr<ATPPDChoice> ATMediaTypePPDUpdater::choiceForMediaWithData(const Record& record,
                                                                           const ATPPD& ppd) const {
  const auto choiceName = record.valueForKey(MediaKey::choiceName).textFor("choice name");
  const DeviceValue ID = record.valueForKey(MediaKey::ID);
  const DeviceValue mediaName = record.valueForKey(MediaKey::name);
  const auto code = mediaTypeChoiceCodeWithName(std::string(Text::orNull(choiceName)), ID);
  ATLog("-[ATMediaTypePPDUpdater addMediaWithData:toPPD:]", "Adding {} with ID {}", mediaName.description(),
        ID.description());
  const MediumProblem missing = whatIsMissing(choiceName, ID, mediaName, code);
  if (missing != MediumProblem::nothingMissing) {
    observer_.didNotAddMedium(missing);
    return nullptr;
  }
  const std::string name = *mediaName.textFor("media name");
  ATPPDChoice::Localizations localizations = localizedNamesForMediaName(name, ppd);
  const bool isText = validMediaUIName(name);
  // A name that cannot be the choice's text reaches the user through the English translation, which takes any
  // character.
  if (!isText) setLocalization("en", name, localizations);
  auto choice =
      ATPPDChoice::initWithName(*choiceName, isText ? name : "", *code, PPDKeyword::mediaOption, localizations);
  if (choice == nullptr) observer_.didNotAddMedium(MediumProblem::lineTooLong);
  return choice;
}

ATPPDChoice::Localizations ATMediaTypePPDUpdater::localizedNamesForMediaName(std::string_view name,
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
  const DeviceValue parentID = record.valueForKey(MediaKey::parentID);
  const auto choiceName = record.valueForKey(MediaKey::choiceName).textFor("choice name");
  ATLog(kSignature, "For {} parent media has ID {}", record.valueForKey(MediaKey::name).description(),
        parentID.description());
  if (parentID.isAbsent() || !choiceName) return;

  const std::string parentName = ppdNameForMediaWithID(parentID, toPPD).description();
  const auto parentProperties = propertiesOfMedia(parentName, toPPD);
  const auto value = parentProperties ? parentProperties->value() : std::nullopt;
  observer_.didInherit(parentName, value);
  ATLog(kSignature, "Parent media name: {} attributes: {}", parentName, value);
  if (!value) return;
  const auto properties =
      ATPPDAttribute::initWithName(PPDKeyword::mediaProperties, propertiesSpec(*choiceName), std::nullopt, value);
  ATLog(kSignature, "Adding attributes for {}: {}", *choiceName, value);
  toPPD.addPPDAttribute(properties);
}

DeviceValue ATMediaTypePPDUpdater::ppdNameForMediaWithID(const DeviceValue& ID, const ATPPD& fromPPD) const {
  if (ID.isAbsent()) return {};
  const auto option = mediaTypeOptionFromPPD(fromPPD);
  const auto choice = option == nullptr ? nullptr : choiceWithCodeContaining(ID, *option);
  observer_.didSearchForID(ID, choice.get());
  return choice == nullptr ? ID : DeviceValue(std::string(Text::orNull(choice->name())));
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
