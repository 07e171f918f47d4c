// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "updaters/ATMediaTypePCL3Qualifier3PPDUpdater.h"
#include "updaters/ATMediaTypePPDUpdater.h"

/// The operations that were called, in order.
class Trace {
 public:
  void add(const char* operation) const { calls_.emplace_back(operation); }
  std::ptrdiff_t count(std::string_view operation) const { return std::count(calls_.begin(), calls_.end(), operation); }
  /// Those of the calls that were to one of these operations.
  std::vector<std::string> among(const std::vector<std::string>& operations) const {
    std::vector<std::string> found;
    for (const std::string& call : calls_) {
      if (std::find(operations.begin(), operations.end(), call) != operations.end()) found.push_back(call);
    }
    return found;
  }
  void clear() const { calls_.clear(); }

 private:
  mutable std::vector<std::string> calls_;
};

/// A media type updater that does what its base does and records each call of an overridable operation.
template <class Base>
class TracedMedia : public Base {
 public:
  using Record = typename Base::Record;
  using OptionalText = std::optional<std::string>;

  void cleanupPPD(ATPPD& ppd) const override {
    trace.add("cleanup");
    Base::cleanupPPD(ppd);
  }
  void restoreFactoryICCProfilesInPPD(ATPPD& ppd) const override {
    trace.add("restoreFactoryICCProfiles");
    Base::restoreFactoryICCProfilesInPPD(ppd);
  }
  void removeInclusionsOfMediaWithID(const std::string& choiceName, ATPPD& fromPPD) const override {
    trace.add("removeInclusions");
    Base::removeInclusionsOfMediaWithID(choiceName, fromPPD);
  }
  bool isGlossyMediaWithAttributes(const ATPPDAttribute::Part& properties) const override {
    trace.add("isGlossy");
    return Base::isGlossyMediaWithAttributes(properties);
  }
  void restoreDefaultGlossEnhancerMediaPropertyInPPD(ATPPD& ppd) const override {
    trace.add("restoreDefaultGloss");
    Base::restoreDefaultGlossEnhancerMediaPropertyInPPD(ppd);
  }
  bool addICCProfileForMediaWithData(const Record& record, ATPPD& toPPD) const override {
    trace.add("addICCProfile");
    return Base::addICCProfileForMediaWithData(record, toPPD);
  }
  void setICCProfileForMediaWithData(const Record& record, ATPPD& inPPD) const override {
    trace.add("setICCProfile");
    Base::setICCProfileForMediaWithData(record, inPPD);
  }
  void updateDefaultGlossEnhancerForMediaWithData(const Record& record, ATPPD& inPPD) const override {
    trace.add("updateDefaultGloss");
    Base::updateDefaultGlossEnhancerForMediaWithData(record, inPPD);
  }
  OptionalText ppdNameForGlossEnhancerValue(const OptionalText& value, const ATPPD& fromPPD) const override {
    trace.add("nameForGloss");
    return Base::ppdNameForGlossEnhancerValue(value, fromPPD);
  }
  OptionalText mediaTypeChoiceCodeWithName(const std::string& choiceName, const DeviceValue& ID) const override {
    trace.add("choiceCode");
    return Base::mediaTypeChoiceCodeWithName(choiceName, ID);
  }
  DeviceValue ppdNameForMediaWithID(const DeviceValue& ID, const ATPPD& fromPPD) const override {
    trace.add("nameForID");
    return Base::ppdNameForMediaWithID(ID, fromPPD);
  }
  Record addPPDNameForMediaWithIndex(std::uint64_t index, const Record& toData) const override {
    trace.add("addPPDName");
    return Base::addPPDNameForMediaWithIndex(index, toData);
  }
  bool addMediaWithData(const Record& record, ATPPD& toPPD) const override {
    trace.add("addMedia");
    return Base::addMediaWithData(record, toPPD);
  }
  void addAttributesForMediaWithData(const Record& record, ATPPD& toPPD) const override {
    trace.add("addAttributes");
    Base::addAttributesForMediaWithData(record, toPPD);
  }
  void removeMediaInGroup(const ATPPD::AttributePtr& group, ATPPD& fromPPD) const override {
    trace.add("removeMediaInGroup");
    Base::removeMediaInGroup(group, fromPPD);
  }
  ATPPDChoice::Localizations localizedNamesForMediaName(std::string_view name, const ATPPD& ppd) const override {
    trace.add("localizedNames");
    return Base::localizedNamesForMediaName(name, ppd);
  }
  std::shared_ptr<ATPPDOption> mediaTypeOptionFromPPD(const ATPPD& ppd) const override {
    trace.add("mediaTypeOption");
    return Base::mediaTypeOptionFromPPD(ppd);
  }
  ATPPD::AttributePtr customMediaGroupAttributeWithMediaNames(const std::vector<std::string>& names) const override {
    trace.add("customGroup");
    return Base::customMediaGroupAttributeWithMediaNames(names);
  }
  ATPPD::AttributePtr extendedMediaGroupAttributeWithMediaNames(const std::vector<std::string>& names) const override {
    trace.add("extendedGroup");
    return Base::extendedMediaGroupAttributeWithMediaNames(names);
  }
  std::string changeDefaultGlossEnhancer(const OptionalText& choiceName,
                                         const ATPPDAttribute::Part& inMediaTypeProperties) const override {
    trace.add("changeDefaultGloss");
    return Base::changeDefaultGlossEnhancer(choiceName, inMediaTypeProperties);
  }
  bool validMediaUIName(const std::string& name) const override {
    trace.add("validUIName");
    return Base::validMediaUIName(name);
  }
  bool verifyString(std::string_view string, char32_t start, std::size_t length,
                    std::string_view disallowedCharacters) const override {
    trace.add("verifyString");
    return Base::verifyString(string, start, length, disallowedCharacters);
  }
  bool isMediaTypeDataCustom(const Record& record) const override {
    trace.add("isCustom");
    return Base::isMediaTypeDataCustom(record);
  }

  Trace trace;
};

/// The same with the operations that PCL3 media type updaters add.
template <class Base>
class TracedPCL3 : public TracedMedia<Base> {
 public:
  using Record = typename Base::Record;
  using ProfileEntry = typename Base::ProfileEntry;
  using OptionalText = std::optional<std::string>;

  void updateCupsProfile(const ATPPD::AttributePtr& profile, ATPPD& inPPD,
                         const ATQZProfilePPDAttributeWrapper& withQZProfileAttribute) const override {
    this->trace.add("updateCupsProfile");
    Base::updateCupsProfile(profile, inPPD, withQZProfileAttribute);
  }
  std::optional<ATPPD::Attributes> cupsICCProfileAttributesWithName(const ATPPDAttribute::Part& name,
                                                                    const ATPPD::Spec& spec, const OptionalText& url,
                                                                    const ATPPD& ppd) const override {
    this->trace.add("profileAttributes");
    return Base::cupsICCProfileAttributesWithName(name, spec, url, ppd);
  }
  std::string profileSpecFromMediaData(const Record& record, const ProfileEntry& profileInfo,
                                       const ATPPD& ppd) const override {
    this->trace.add("profileSpec");
    return Base::profileSpecFromMediaData(record, profileInfo, ppd);
  }
  std::string generalProfileSpecForMediaData(const Record& record, const ATPPD& ppd) const override {
    this->trace.add("generalSpec");
    return Base::generalProfileSpecForMediaData(record, ppd);
  }
  DeviceValue mediaQualifierFromData(const Record& record, const ATPPD& ppd) const override {
    this->trace.add("mediaQualifier");
    return Base::mediaQualifierFromData(record, ppd);
  }
};

/// The same with the operations that qualifier-3 updaters add.
template <class Base>
class TracedQualifier3 : public TracedPCL3<Base> {
 public:
  using Record = typename Base::Record;

  void removeSpecializedICCQualifiers(ATPPD& ppd, const Record& aMediaTypeData) const override {
    this->trace.add("removeSpecialized");
    Base::removeSpecializedICCQualifiers(ppd, aMediaTypeData);
  }
  std::optional<std::vector<std::string>> qualified3PossibleProfileSpecsForMediaData(const Record& record,
                                                                                     const ATPPD& ppd) const override {
    this->trace.add("possibleSpecs");
    return Base::qualified3PossibleProfileSpecsForMediaData(record, ppd);
  }
  std::vector<std::string> choiceNamesForOption(const std::shared_ptr<ATPPDOption>& option) const override {
    this->trace.add("choiceNames");
    return Base::choiceNamesForOption(option);
  }
  std::vector<std::string> collectPossible2ComponentSpecsToRemoveWithFactoryProfiles(
      const ATPPD::Attributes& factoryProfiles) const override {
    this->trace.add("collectSpecs");
    return Base::collectPossible2ComponentSpecsToRemoveWithFactoryProfiles(factoryProfiles);
  }
  std::string twoComponentICCProfileSpecFor3ComponentSpec(const ATPPD::Spec& spec) const override {
    this->trace.add("twoComponentSpec");
    return Base::twoComponentICCProfileSpecFor3ComponentSpec(spec);
  }
};
