// SPDX-License-Identifier: MIT
#include "explain/RunRecorder.h"

#include <fmt/format.h>

#include <cctype>

#include "base/Text.h"
#include "explain/Wording.h"
#include "readers/MediaKeys.h"
#include "updaters/PPDKeywords.h"

namespace {

using OptionalText = std::optional<std::string>;

// The value as text; absent stays absent.
OptionalText described(const DeviceValue& value) {
  return value.isAbsent() ? std::nullopt : OptionalText(value.description());
}

OptionalText valueOf(const DeviceValue& record, const char* key) {
  return record.map() == nullptr ? std::nullopt : described(record.valueForKey(key));
}

Report::Medium mediumOf(const DeviceValue& record) {
  Report::Medium medium;
  medium.name = valueOf(record, MediaKey::name);
  medium.ID = valueOf(record, MediaKey::ID);
  medium.categoryName = valueOf(record, MediaKey::categoryName);
  medium.categoryID = valueOf(record, MediaKey::categoryID);
  medium.parentID = valueOf(record, MediaKey::parentID);
  medium.gloss = valueOf(record, MediaKey::defaultGloss);
  const auto profiles = record.map() == nullptr ? nullptr : record.valueForKey(MediaKey::profiles).list();
  medium.profiles = profiles == nullptr ? 0 : profiles->size();
  return medium;
}

std::size_t countOfStatements(const ATPPDCompoundObject& compound) {
  std::size_t count = 0;
  for (const auto& object : compound.PPDObjects()) {
    if (const auto* inner = dynamic_cast<const ATPPDCompoundObject*>(object.get())) {
      count += countOfStatements(*inner);
      continue;
    }
    const auto strings = object->strings();
    if (!strings.empty() && strings[0].view().starts_with("*") && !strings[0].view().starts_with("*%")) ++count;
  }
  return count;
}

std::size_t countOfOptions(const ATPPDCompoundObject& compound) {
  std::size_t count = 0;
  for (const auto& object : compound.PPDObjects()) {
    if (dynamic_cast<const ATPPDOption*>(object.get()) != nullptr) {
      ++count;
    } else if (const auto* inner = dynamic_cast<const ATPPDCompoundObject*>(object.get())) {
      count += countOfOptions(*inner);
    }
  }
  return count;
}

// Whether updaters look for the option, so that its place matters.
bool isLookedFor(const std::string& option, const ATPPD& ppd) {
  for (const char* name : {PPDKeyword::mediaOption, PPDKeyword::glossEnhancer, PPDKeyword::simplifiedGlossEnhancer}) {
    if (option == name) return true;
  }
  const auto qualifier = ppd.attributeForName(PPDKeyword::thirdQualifier);
  return !option.empty() && qualifier != nullptr && qualifier->value() == "\"" + option + "\"";
}

bool isWordCharacter(char character) {
  return std::isalnum(static_cast<unsigned char>(character)) != 0;
}

// Whether the ID is only a part of a longer word in each place where the code holds it.
bool isInsideWords(std::string_view ID, std::string_view code) {
  for (auto found = code.find(ID); found != std::string_view::npos; found = code.find(ID, found + 1)) {
    const bool wordBefore = found > 0 && isWordCharacter(code[found - 1]) && isWordCharacter(ID.front());
    const std::size_t end = found + ID.size();
    const bool wordBehind = end < code.size() && isWordCharacter(code[end]) && isWordCharacter(ID.back());
    if (!wordBefore && !wordBehind) return false;
  }
  return true;
}

// The default gloss enhancer in the properties of a medium, as it stands there.
OptionalText glossIn(std::string_view properties) {
  static constexpr std::string_view kKey = "defaultGE=";
  const std::size_t start = properties.find(kKey);
  if (start == std::string_view::npos) return std::nullopt;
  const std::string_view value = properties.substr(start + kKey.size());
  return std::string(value.substr(0, value.find_first_of(";\"")));
}

}  // namespace

void RunRecorder::didParse(const ATPPD& ppd) {
  Report::Parse parse;
  parse.lines = ppd.strings().size();
  parse.statements = countOfStatements(ppd);
  parse.groups = ppd.groups().size();
  parse.options = countOfOptions(ppd);
  if (const auto* languages = ppd.supportedLocalizations()) parse.languages = *languages;
  if (const auto modelName = ppd.attributeForName(PPDKeyword::modelName)) {
    parse.modelName = OptionalText(modelName->value());
  }
  for (const auto& object : ppd.PPDObjects()) {
    const auto* option = dynamic_cast<const ATPPDOption*>(object.get());
    if (option == nullptr || !isLookedFor(option->name(), ppd)) continue;
    warn("option-outside-group", fmt::format("The option {} stands outside every group, where no updater finds it.",
                                             Wording::visible(option->name())));
  }
  report_.parse = parse;
}

void RunRecorder::didNameUpdater(std::string_view name, bool isKnown) {
  if (name.empty()) return;
  Report::Updater updater;
  updater.name = name;
  updater.known = isKnown;
  report_.updaters.push_back(std::move(updater));
  if (isKnown) return;
  warn("unknown-updater", fmt::format("No updater is named \"{}\"; it is skipped.", Wording::visible(name)));
}

void RunRecorder::willUpdate(const ATPPD& ppd) {
  while (!report_.updaters[nextKnown_].known) ++nextKnown_;
  running_ = nextKnown_++;
  before_.emplace(ppd);
}

void RunRecorder::didUpdate(const ATPPD& ppd, bool succeeded) {
  endUpdate(ppd, succeeded ? Report::UpdaterOutcome::succeeded : Report::UpdaterOutcome::failed);
}

void RunRecorder::didThrow(const std::string& reason, const ATPPD& ppd) {
  if (!before_) return;
  updater().error = reason;
  endUpdate(ppd, Report::UpdaterOutcome::threw);
}

void RunRecorder::endUpdate(const ATPPD& ppd, Report::UpdaterOutcome outcome) {
  updater().outcome = outcome;
  updater().changes = before_->to(DocumentChanges(ppd));
  before_.reset();
}

void RunRecorder::didReadMedia(const DeviceValue& mediaList) {
  if (mediaList.isAbsent()) return;
  if (!report_.device) report_.device = Report::DeviceAnswer();
  Report::DeviceAnswer& answer = *report_.device;
  answer.listVersion = valueOf(mediaList, MediaKey::listVersion);
  const auto list = mediaList.valueForKey(MediaKey::list).list();
  answer.libraryAvailable = list != nullptr;
  if (list == nullptr) return;
  answer.media.emplace();
  for (const DeviceValue& record : *list) {
    answer.media->push_back(mediumOf(record));
    warnOfMissingKey(record);
  }
}

// A record ends at the first thing that the device does not have, so the category behind it is lost.
void RunRecorder::warnOfMissingKey(const DeviceValue& record) {
  static constexpr std::pair<const char*, const char*> kKeys[] = {{MediaKey::name, "name"},
                                                                  {MediaKey::ID, "ID"},
                                                                  {MediaKey::categoryName, "category name"},
                                                                  {MediaKey::categoryID, "category"}};
  for (const auto& [key, what] : kKeys) {
    if (!record.valueForKey(key).isAbsent()) continue;
    return warn("record-incomplete",
                fmt::format("The device gives no {} for the medium \"{}\"; its record ends there, and "
                            "it is not taken for a custom medium.",
                            what, Wording::visible(record.valueForKey(MediaKey::name).description())));
  }
}

void RunRecorder::didReadFamily(const std::string& familyCode, bool libraryAvailable) {
  if (!report_.device) report_.device = Report::DeviceAnswer();
  report_.device->libraryAvailable = libraryAvailable;
  report_.device->familyCode = familyCode;
}

void RunRecorder::willRemoveMedium(std::string_view choiceName) {
  updater().removedMedia.emplace_back(choiceName);
}

void RunRecorder::willRemoveProfile(const ATPPDAttribute& profile, std::string_view forChoiceName) {
  const auto parts = Text::split(*profile.spec(), ".");
  if (parts.size() == 3 && parts[1] == forChoiceName) return;
  warn("profile-removed-for-another",
       fmt::format("The profile {} went with the earlier medium {}, whose name its spec contains.",
                   Wording::visible(*profile.spec()), Wording::visible(forChoiceName)));
}

void RunRecorder::didRestoreProfile(const ATPPD::Spec& spec, bool /*madeAnew*/) {
  updater().restoredProfiles.emplace_back(Text::orNull(spec));
}

void RunRecorder::willProcess(const DeviceValue& record, bool isCustom) {
  Report::MediumOutcome outcome;
  outcome.device = mediumOf(record);
  outcome.device.custom = isCustom;
  updater().media.push_back(std::move(outcome));
}

void RunRecorder::didSearchForID(const DeviceValue& ID, const ATPPDChoice* found) {
  if (!medium().device.custom && medium().device.ID == described(ID)) {
    medium().lookedUp = true;
    medium().choiceName = found == nullptr ? std::nullopt : OptionalText(found->name());
  }
  if (found == nullptr || !isInsideWords(*ID.text(), *found->code())) return;
  warn("id-inside-code",
       fmt::format("The ID {} was found inside the code of the choice {}, which is {}.", Wording::visible(*ID.text()),
                   Wording::visible(Text::orNull(found->name())), Wording::visible(*found->code())));
}

void RunRecorder::didAddMedium(const ATPPDChoice& choice, const ATPPDOption* to) {
  medium().added = true;
  medium().choiceName = OptionalText(choice.name());
  if (to != nullptr) medium().choiceCode = OptionalText(choice.code());
}

void RunRecorder::didNotAddMedium(MediumProblem problem) {
  medium().notAdded = Wording::of(problem);
}

void RunRecorder::didInherit(std::string_view parentName, const ATPPDAttribute::Part& properties) {
  medium().parent = parentName;
  medium().inherited = OptionalText(properties);
}

void RunRecorder::didSetGloss(std::string_view /*choiceName*/, std::string_view before, std::string_view after) {
  medium().glossBefore = glossIn(before);
  medium().glossAfter = glossIn(after);
}

Report::Profile& RunRecorder::addedOutcome(const ObservedProfile& profile) {
  Report::Profile outcome;
  outcome.name = profile.name;
  outcome.path = profile.path;
  outcome.spec = OptionalText(profile.spec);
  medium().profiles.push_back(std::move(outcome));
  return medium().profiles.back();
}

void RunRecorder::didAddProfile(const ObservedProfile& profile) {
  addedOutcome(profile).outcome = Report::ProfileOutcome::added;
}

void RunRecorder::didSetProfile(const ObservedProfile& profile) {
  addedOutcome(profile).outcome = Report::ProfileOutcome::rewritten;
}

void RunRecorder::didSkipProfile(const ObservedProfile& profile, ProfileProblem problem) {
  addedOutcome(profile).reason = Wording::of(problem, profile.url);
}

void RunRecorder::profilesFailed(const std::string& reason) {
  medium().profilesFailure = reason;
}

void RunRecorder::warn(const std::string& code, const std::string& text, bool inInput) {
  if (warned_.emplace(code, text).second) report_.warnings.push_back({code, text, inInput});
}
