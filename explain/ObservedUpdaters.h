// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>

#include "explain/RunRecorder.h"
#include "updaters/ATPPDUpdatersFactory.h"
#include "updaters/UpdaterKinds.h"

/// Updaters that do what their classes do and tell the recorder of it. They override the operations that an updater
/// calls on itself, so that what is reported is what happened, and not a second reading of the rules.
namespace Observed {

/// Any updater.
template <class Base>
class Updater : public Base {
 public:
  bool updatePPD(ATPPD* ppd, const IATDataReader* usingDataReader) const override {
    if (ppd == nullptr) return Base::updatePPD(ppd, usingDataReader);
    RunRecorder& recorder = RunRecorder::current();
    recorder.willUpdate(*ppd);
    try {
      const bool succeeded = Base::updatePPD(ppd, usingDataReader);
      recorder.didUpdate(*ppd, succeeded ? Report::UpdaterOutcome::succeeded : Report::UpdaterOutcome::failed);
      return succeeded;
    } catch (const std::exception& error) {
      recorder.didUpdate(*ppd, Report::UpdaterOutcome::threw, error.what());
      throw;
    }
  }
};

class PDLCommandUpdater : public Updater<ATPDLCommandTypePPDUpdater> {
 public:
  std::string getDeviceFamilyName(const std::string& printerURI) const override {
    std::string family = ATPDLCommandTypePPDUpdater::getDeviceFamilyName(printerURI);
    RunRecorder::current().didReadFamily(family);
    return family;
  }
};

template <class Base>
class MediaUpdater : public Updater<Base> {
 public:
  using Record = ATMediaTypePPDUpdater::Record;

  void removeInclusionsOfMediaWithID(const std::string& choiceName, ATPPD& fromPPD) const override {
    constexpr bool removesProfiles = std::is_base_of_v<ATMediaTypePCL3PPDUpdater, Base>;
    RunRecorder::current().didRemoveMedium(
        choiceName, removesProfiles ? fromPPD.attributesForNameWithSpecContaining("cupsICCProfile", choiceName)
                                    : ATPPD::Attributes());
    Base::removeInclusionsOfMediaWithID(choiceName, fromPPD);
  }

  Record addPPDNameForMediaWithIndex(std::uint64_t index, const Record& toData) const override {
    RunRecorder::current().willProcess(toData);
    return Base::addPPDNameForMediaWithIndex(index, toData);
  }

  bool addMediaWithData(const Record& record, ATPPD& toPPD) const override {
    const bool added = Base::addMediaWithData(record, toPPD);
    RunRecorder& recorder = RunRecorder::current();
    Report::MediumOutcome& medium = recorder.medium();
    medium.added = added;
    if (!added) {
      medium.notAdded = "its choice statement would be longer than 255 bytes";
      return false;
    }
    medium.choiceName = *record.valueForKey("PPDName").text();
    const auto option = this->mediaTypeOptionFromPPD(toPPD);
    const auto choice = option == nullptr ? nullptr : option->choiceForName(*medium.choiceName);
    if (choice != nullptr) medium.choiceCode = choice->code();
    return true;
  }

  void addAttributesForMediaWithData(const Record& record, ATPPD& toPPD) const override {
    Base::addAttributesForMediaWithData(record, toPPD);
    const DeviceValue parentID = record.valueForKey("ParentID");
    if (parentID.isAbsent()) return;
    Report::MediumOutcome& medium = RunRecorder::current().medium();
    medium.parent = this->ppdNameForMediaWithID(parentID, toPPD).description();
    const auto properties = this->propertiesOfMedia(record.valueForKey("PPDName").description(), toPPD);
    if (properties != nullptr) medium.inherited = properties->value();
  }

  DeviceValue ppdNameForMediaWithID(const DeviceValue& ID, const ATPPD& fromPPD) const override {
    DeviceValue name = Base::ppdNameForMediaWithID(ID, fromPPD);
    const auto option = this->mediaTypeOptionFromPPD(fromPPD);
    const std::string* text = ID.text();
    const auto choice = option == nullptr || text == nullptr ? nullptr : option->choiceWithCodeContaining(*text);
    if (choice != nullptr) RunRecorder::current().didFindChoice(*text, name.description(), *choice->code());
    return name;
  }

  void setICCProfileForMediaWithData(const Record& record, ATPPD& inPPD) const override {
    RunRecorder::current().willProcess(record);
    Base::setICCProfileForMediaWithData(record, inPPD);
  }

  void updateDefaultGlossEnhancerForMediaWithData(const Record& record, ATPPD& inPPD) const override {
    RunRecorder& recorder = RunRecorder::current();
    Report::MediumOutcome& medium = recorder.medium();
    const bool isFactoryMedium = !ATMediaTypePPDUpdater::isMediaTypeDataCustom(record);
    if (isFactoryMedium) medium.choiceName = knownChoice(record.valueForKey("ID"), inPPD);
    medium.glossBefore = gloss(medium, inPPD);
    Base::updateDefaultGlossEnhancerForMediaWithData(record, inPPD);
    medium.glossAfter = gloss(medium, inPPD);
    recorder.didProcess();
  }

 private:
  // The name of the choice that stands for the ID; absent when there is none.
  Report::OptionalText knownChoice(const DeviceValue& ID, const ATPPD& ppd) const {
    if (ID.text() == nullptr) return std::nullopt;
    const DeviceValue name = this->ppdNameForMediaWithID(ID, ppd);
    const auto option = this->mediaTypeOptionFromPPD(ppd);
    if (option == nullptr || option->choiceForName(name.description()) == nullptr) return std::nullopt;
    return name.description();
  }

  // The default gloss enhancer in the medium's properties, as it stands there.
  Report::OptionalText gloss(const Report::MediumOutcome& medium, const ATPPD& ppd) const {
    const auto properties = medium.choiceName ? this->propertiesOfMedia(*medium.choiceName, ppd) : nullptr;
    const Report::OptionalText value = properties == nullptr ? std::nullopt : properties->value();
    const std::size_t start = value ? value->find("defaultGE=") : std::string::npos;
    if (start == std::string::npos) return std::nullopt;
    const std::size_t end = value->find_first_of(";\"", start);
    const std::size_t begin = start + std::string("defaultGE=").size();
    return value->substr(begin, end - begin);
  }
};

template <class Base>
class ProfileUpdater : public MediaUpdater<Base> {
 public:
  using Record = ATMediaTypePPDUpdater::Record;
  using ProfileEntry = ATMediaTypePCL3PPDUpdater::ProfileEntry;
  using OptionalText = Report::OptionalText;

  bool addICCProfileForMediaWithData(const Record& record, ATPPD& toPPD) const override {
    RunRecorder& recorder = RunRecorder::current();
    recorder.willAddProfiles();
    addedInstead_ = true;
    const bool added = Base::addICCProfileForMediaWithData(record, toPPD);
    recorder.didAddProfiles(record, true);
    return added;
  }

  void setICCProfileForMediaWithData(const Record& record, ATPPD& inPPD) const override {
    RunRecorder& recorder = RunRecorder::current();
    recorder.willAddProfiles();
    addedInstead_ = false;
    MediaUpdater<Base>::setICCProfileForMediaWithData(record, inPPD);
    if (!addedInstead_) recorder.didAddProfiles(record, false);
  }

  std::string profileSpecFromMediaData(const Record& record, const ProfileEntry& profileInfo,
                                       const ATPPD& ppd) const override {
    std::string spec = Base::profileSpecFromMediaData(record, profileInfo, ppd);
    const bool exists = ppd.attributeForName("cupsICCProfile", spec) != nullptr;
    RunRecorder::current().didMakeSpec(profileInfo, spec, exists);
    return spec;
  }

  std::optional<ATPPD::Attributes> cupsICCProfileAttributesWithName(const OptionalText& name, const OptionalText& spec,
                                                                    const OptionalText& url,
                                                                    const ATPPD& ppd) const override {
    auto attributes = Base::cupsICCProfileAttributesWithName(name, spec, url, ppd);
    RunRecorder::current().didMakeStatements(attributes.has_value());
    return attributes;
  }

  void updateCupsProfile(const ATPPD::AttributePtr& profile, ATPPD& inPPD,
                         const ATQZProfilePPDAttributeWrapper& withQZProfileAttribute) const override {
    Base::updateCupsProfile(profile, inPPD, withQZProfileAttribute);
    const bool exists = profile != nullptr || std::is_base_of_v<ATMediaTypePCL3Qualifier3PPDUpdater, Base>;
    if (exists) RunRecorder::current().didRestoreProfile(withQZProfileAttribute.spec());
  }

 protected:
  void profilesFailedForMediaData(const Record& /*record*/, const std::string& reason) const override {
    RunRecorder::current().medium().profilesFailure = reason;
  }

 private:
  mutable bool addedInstead_ = false;  // a set found nothing to set and added
};

// The fitting one of the above for an updater's class.
template <class Base>
struct Fitting {
  using Media =
      std::conditional_t<std::is_base_of_v<ATMediaTypePCL3PPDUpdater, Base>, ProfileUpdater<Base>, MediaUpdater<Base>>;
};
template <>
struct Fitting<ATPDLCommandTypePPDUpdater> {
  using Media = PDLCommandUpdater;
};
template <class Base>
using As = typename Fitting<Base>::Media;

/// Makes watched updaters, and tells the recorder which names the PPD has.
class Factory : public ATPPDUpdatersFactory {
 public:
  Updaters updatersForPPD(const ATPPD& ppd) const override {
    RunRecorder::current().didParse(ppd);
    return ATPPDUpdatersFactory::updatersForPPD(ppd);
  }

 protected:
  std::unique_ptr<IATPPDUpdater> updaterNamed(std::string_view name) const override {
    auto updater = UpdaterKinds::make<As>(name);
    RunRecorder::current().didNameUpdater(name, updater != nullptr);
    return updater;
  }
};

}  // namespace Observed
