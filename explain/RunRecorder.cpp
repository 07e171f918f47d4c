// SPDX-License-Identifier: MIT
#include "explain/RunRecorder.h"

#include <fmt/format.h>

#include <cctype>

#include "base/Text.h"
#include "explain/Wording.h"
#include "readers/DeviceModelLibrary.h"
#include "updaters/ATMediaTypePCL3PPDUpdater.h"
#include "updaters/URLPath.h"

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
  medium.name = valueOf(record, "MediaName");
  medium.ID = valueOf(record, "ID");
  medium.categoryName = valueOf(record, "CategoryName");
  medium.categoryID = valueOf(record, "CategoryID");
  medium.parentID = valueOf(record, "ParentID");
  medium.gloss = valueOf(record, "DefaultGlossEnhancer");
  medium.custom = record.map() != nullptr && ATMediaTypePPDUpdater::isMediaTypeDataCustom(record);
  const auto profiles = record.map() == nullptr ? nullptr : record.valueForKey("ICCProfiles").list();
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
  if (option == "MediaType" || option == "QZGlossEnhancer" || option == "QZGlossEnhancerSimplified") return true;
  const auto qualifier = ppd.attributeForName("cupsICCQualifier3");
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

}  // namespace

void RunRecorder::didParse(const ATPPD& ppd) {
  Report::Parse parse;
  parse.lines = ppd.strings().size();
  parse.statements = countOfStatements(ppd);
  parse.groups = ppd.groups().size();
  parse.options = countOfOptions(ppd);
  if (const auto* languages = ppd.supportedLocalizations()) parse.languages = *languages;
  if (const auto modelName = ppd.attributeForName("ModelName")) parse.modelName = modelName->value();
  for (const auto& object : ppd.PPDObjects()) {
    const auto* option = dynamic_cast<const ATPPDOption*>(object.get());
    if (option == nullptr || !isLookedFor(option->name(), ppd)) continue;
    warn("option-outside-group", fmt::format("The option {} stands outside every group, where no updater finds it.",
                                             Wording::visible(option->name())));
  }
  report_.parse = parse;
}

void RunRecorder::didNameUpdater(std::string_view name, bool known) {
  if (name.empty()) return;
  Report::Updater updater;
  updater.name = name;
  updater.known = known;
  report_.updaters.push_back(std::move(updater));
  if (known) return;
  warn("unknown-updater", fmt::format("No updater is named \"{}\"; it is skipped.", Wording::visible(name)));
}

void RunRecorder::didReadMedia(const DeviceValue& mediaList) {
  Report::DeviceAnswer answer = report_.device.value_or(Report::DeviceAnswer());
  answer.libraryAvailable = DeviceModelLibrary::defaultLibrary().isAvailable();
  answer.listVersion = valueOf(mediaList, "MedaListVersion");
  if (const auto list = mediaList.valueForKey("MediaList").list()) {
    answer.media.emplace();
    for (const DeviceValue& record : *list) {
      answer.media->push_back(mediumOf(record));
      warnOfMissingKey(record);
    }
  }
  report_.device = std::move(answer);
}

// A record ends at the first thing that the device does not have, so the category behind it is lost.
void RunRecorder::warnOfMissingKey(const DeviceValue& record) {
  static constexpr std::pair<const char*, const char*> kKeys[] = {
      {"MediaName", "name"}, {"ID", "ID"}, {"CategoryName", "category name"}, {"CategoryID", "category"}};
  for (const auto& [key, what] : kKeys) {
    if (!record.valueForKey(key).isAbsent()) continue;
    return warn("record-incomplete",
                fmt::format("The device gives no {} for the medium \"{}\"; its record ends there, and "
                            "it is not taken for a custom medium.",
                            what, Wording::visible(record.valueForKey("MediaName").description())));
  }
}

void RunRecorder::didReadFamily(const std::string& familyCode) {
  if (!report_.device) report_.device = Report::DeviceAnswer();
  report_.device->libraryAvailable = DeviceModelLibrary::defaultLibrary().isAvailable();
  report_.device->familyCode = familyCode;
}

void RunRecorder::willUpdate(const ATPPD& ppd) {
  while (!report_.updaters[nextKnown_].known) ++nextKnown_;
  running_ = nextKnown_++;
  before_.emplace(ppd);
}

void RunRecorder::didUpdate(const ATPPD& ppd, Report::UpdaterOutcome outcome, const std::string& error) {
  updater().outcome = outcome;
  updater().error = error;
  updater().changes = before_->to(DocumentChanges(ppd));
  before_.reset();
  processing_ = false;
}

void RunRecorder::didRemoveMedium(const std::string& choiceName, const ATPPD::Attributes& profiles) {
  updater().removedMedia.push_back(choiceName);
  for (const auto& profile : profiles) {
    const auto parts = Text::split(*profile->spec(), ".");
    if (parts.size() == 3 && parts[1] == choiceName) continue;
    warn("profile-removed-for-another",
         fmt::format("The profile {} went with the earlier medium {}, whose name its spec contains.",
                     Wording::visible(*profile->spec()), Wording::visible(choiceName)));
  }
}

void RunRecorder::didRestoreProfile(const ATPPD::Spec& spec) {
  updater().restoredProfiles.emplace_back(Text::orNull(spec));
}

void RunRecorder::willProcess(const DeviceValue& record) {
  if (processing_) return;
  processing_ = true;
  Report::MediumOutcome outcome;
  outcome.device = mediumOf(record);
  updater().media.push_back(std::move(outcome));
}

Report::MediumOutcome& RunRecorder::medium() {
  return processing_ ? updater().media.back() : outside_;
}

void RunRecorder::didFindChoice(const std::string& ID, const std::string& choiceName, const std::string& code) {
  if (!isInsideWords(ID, code)) return;
  warn("id-inside-code", fmt::format("The ID {} was found inside the code of the choice {}, which is {}.",
                                     Wording::visible(ID), Wording::visible(choiceName), Wording::visible(code)));
}

void RunRecorder::didMakeSpec(const DeviceValue& entry, const std::string& spec, bool exists) {
  lastEntry_ = entry.map().get();
  profileWork_[lastEntry_] = {spec, exists, std::nullopt};
}

void RunRecorder::didMakeStatements(bool made) {
  if (lastEntry_ != nullptr) profileWork_[lastEntry_].statementsMade = made;
  lastEntry_ = nullptr;
}

void RunRecorder::didAddProfiles(const DeviceValue& record, bool adding) {
  const auto profiles = record.map() == nullptr ? nullptr : record.valueForKey("ICCProfiles").list();
  if (profiles == nullptr) return;
  medium().profiles.clear();
  for (const DeviceValue& entry : *profiles) {
    if (entry.map() != nullptr) medium().profiles.push_back(outcomeOf(entry, adding));
  }
}

Report::Profile RunRecorder::outcomeOf(const DeviceValue& entry, bool adding) const {
  Report::Profile profile;
  profile.name = valueOf(entry, "ICCName");
  const auto url = valueOf(entry, "URL");
  profile.path = url ? pathOfURL(*url) : std::nullopt;
  const auto found = profileWork_.find(entry.map().get());
  if (found != profileWork_.end()) profile.spec = found->second.spec;

  const ProfileProblem problem = ATMediaTypePCL3PPDUpdater::problemOfProfile(profile.name, profile.path);
  if (problem != ProfileProblem::none) {
    profile.reason = Wording::of(problem, url);
  } else if (found == profileWork_.end()) {
    profile.reason = "an error ended the work before this profile";
  } else if (!adding) {
    if (found->second.exists) profile.outcome = Report::ProfileOutcome::rewritten;
    if (!found->second.exists) profile.reason = "the PPD has no statement of this spec to set";
  } else if (!found->second.statementsMade) {
    profile.reason = "the spec is longer than 40 bytes";
  } else if (!*found->second.statementsMade) {
    profile.reason = "a statement would be longer than 255 bytes";
  } else {
    profile.outcome = Report::ProfileOutcome::added;
  }
  return profile;
}

void RunRecorder::warn(const std::string& code, const std::string& text) {
  if (warned_.emplace(code, text).second) report_.warnings.push_back({code, text});
}
