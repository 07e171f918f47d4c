// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "base/Format.h"
#include "base/Text.h"
#include "updaters/UpdateObserver.h"

/// Records what updaters tell, in order, and how the document stands at that moment: whether what is told of is still,
/// or already, in it.
class RecordingObserver : public UpdateObserver {
 public:
  explicit RecordingObserver(const ATPPD& ppd) : ppd_(ppd) {}

  std::vector<std::string> events;
  bool recordsSearches = false;

  void didNameUpdater(std::string_view name, UpdaterKind kind) override {
    events.push_back(fmt::format("named '{}' {}", name, kind == UpdaterKind::known ? "known" : "unknown"));
  }
  void didReadMedia(const DeviceValue& mediaList) override {
    events.push_back("media " + mediaList.valueForKey("MediaList").description());
  }
  void didReadFamily(const std::optional<std::string>& familyCode) override {
    events.push_back(
        fmt::format("family '{}' {}", familyCode.value_or(""), familyCode ? "of the library" : "of no library"));
  }
  void willRemoveMedium(std::string_view choiceName) override {
    events.push_back(fmt::format("removing {} {}", choiceName, thereOrNot(hasChoice(choiceName))));
  }
  void willRemoveProfile(const ATPPDAttribute& profile, std::string_view forChoiceName) override {
    const auto& attributes = ppd_.attributesForName("cupsICCProfile");
    const bool isThere = std::any_of(attributes.begin(), attributes.end(),
                                     [&profile](const auto& each) { return each.get() == &profile; });
    events.push_back(fmt::format("removing profile {} for {} {}", profile.spec(), forChoiceName, thereOrNot(isThere)));
  }
  void willRestoreProfile(const ATPPDAttribute& profile) override {
    events.push_back(fmt::format("restoring {} {}", profile.spec(), profileOf(profile.spec())));
  }
  void didRestoreProfile(const ATPPDAttribute& profile) override {
    events.push_back(fmt::format("restored {} {}", profile.spec(), profileOf(profile.spec())));
  }
  void didMakeProfileAnew(const ATPPD::Spec& spec) override {
    events.push_back(fmt::format("made {} {}", spec, profileOf(spec)));
  }
  void willProcess(const DeviceValue& record, bool isCustom) override {
    events.push_back(fmt::format("{} {}", isCustom ? "custom" : "factory", mediaNameOf(record)));
  }
  void didProcess() override { events.emplace_back("end"); }
  void didSearchForID(const DeviceValue& ID, const ATPPDChoice* found) override {
    if (recordsSearches) events.push_back(fmt::format("search {}: {}", ID.description(), nameOf(found)));
  }
  void didAddMedium(const ATPPDChoice& choice, const ATPPDOption* to) override {
    const bool isListed = to != nullptr && to->choiceForName(*choice.name()).get() == &choice;
    events.push_back(fmt::format("added {} {}", choice.name(), to == nullptr ? "to nothing" : thereOrNot(isListed)));
  }
  void didNotAddMedium(MediumProblem problem) override {
    events.push_back(fmt::format("not added: {}", static_cast<int>(problem)));
    mediumProblems.push_back(problem);
  }
  void didInherit(std::string_view parentName, const ATPPDAttribute::Part& properties) override {
    events.push_back(fmt::format("inherited {} of {}", properties, parentName));
  }
  void didSetGloss(std::string_view choiceName, std::string_view before, std::string_view after) override {
    const auto properties = ppd_.attributeForName("QZValueAttributes", fmt::format("MediaType.{}", choiceName));
    events.push_back(fmt::format("gloss of {}: {} to {}{}", choiceName, before, after,
                                 properties && properties->value() == after ? "" : ", but not in the document"));
  }
  void didAddProfile(const ObservedProfile& profile) override { addProfile("profile added", profile); }
  void didSetProfile(const ObservedProfile& profile) override { addProfile("profile set", profile); }
  void didSkipProfile(const ObservedProfile& profile, ProfileProblem problem) override {
    addProfile("profile skipped", profile);
    profileProblems.push_back(problem);
  }
  void profilesFailed(const std::string& reason) override { events.push_back("profiles failed: " + reason); }

  std::vector<MediumProblem> mediumProblems;
  std::vector<ProfileProblem> profileProblems;

 private:
  static const char* thereOrNot(bool isThere) { return isThere ? "(there)" : "(not there)"; }
  static std::string nameOf(const ATPPDChoice* choice) {
    return std::string(choice == nullptr ? "none" : Text::orNull(choice->name()));
  }
  static std::string mediaNameOf(const DeviceValue& record) { return record.valueForKey("MediaName").description(); }

  bool hasChoice(std::string_view name) const {
    const auto option = ppd_.optionForName("MediaType");
    return option != nullptr && option->choiceForName(name) != nullptr;
  }
  // Text and value of the statement of the spec as they stand now.
  std::string profileOf(const ATPPD::Spec& spec) const {
    const auto profile = ppd_.attributeForName("cupsICCProfile", spec);
    return profile == nullptr ? "(not there)" : fmt::format("= {} {}", profile->text(), profile->value());
  }
  void addProfile(const char* what, const ObservedProfile& profile) {
    events.push_back(fmt::format("{}: {} {} {} {}", what, profile.name, profile.url, profile.path, profile.spec));
    if (profile.spec) events.back() += " " + profileOf(profile.spec);
  }

  const ATPPD& ppd_;
};
