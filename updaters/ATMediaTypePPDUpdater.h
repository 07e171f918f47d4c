// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ppd/document/ATPPD.h"
#include "readers/DeviceValue.h"
#include "updaters/IATPPDUpdater.h"
#include "updaters/UpdateObserver.h"

/// Makes the user's custom media, which the device knows, choices of the PPD's `MediaType` option. It takes away what
/// an earlier setup added; adds a choice for each custom medium, with its localized names and the properties of the
/// factory medium that it derives from; lists the added choices in two group attributes; records the version of the
/// device's media list; and sets the default gloss enhancer of every medium.
///
/// The code of a choice is left to subclasses, and so are colour profiles. Every operation is dispatched on the object.
///
/// A value of the wrong type in a record, where text is needed, is an ATException from the operation that needs it.
///
/// A media record is the map that the media list dictionary holds (ATCustomMediaTypesReaderImpl); the copy that a
/// custom medium gets has "PPDName", the name of its choice, in addition.
class ATMediaTypePPDUpdater : public IATPPDUpdater {
 public:
  using Record = DeviceValue;

  /// `observer`, not owned, is told what is done.
  explicit ATMediaTypePPDUpdater(UpdateObserver& observer = UpdateObserver::none()) : observer_(observer) {}

  bool updatePPD(ATPPD* ppd, const IATDataReader* usingDataReader) const override;

  /// Removes what an earlier setup wrote and resets every medium's default gloss enhancer.
  virtual void cleanupPPD(ATPPD& ppd) const;

  /// Hook: puts the colour profiles back that the PPD was shipped with. Does nothing here.
  virtual void restoreFactoryICCProfilesInPPD(ATPPD& ppd) const;

  /// Removes every choice of the name and the first properties statement for it.
  virtual void removeInclusionsOfMediaWithID(const std::string& choiceName, ATPPD& fromPPD) const;

  /// Whether the properties mark a medium on which the gloss enhancer applies.
  virtual bool isGlossyMediaWithAttributes(const ATPPDAttribute::Part& properties) const;

  /// Sets the default gloss enhancer in every properties statement that has one to the PPD's own rule.
  virtual void restoreDefaultGlossEnhancerMediaPropertyInPPD(ATPPD& ppd) const;

  /// Hook: adds the colour profiles of a custom medium (record with "PPDName"). Does nothing and returns true here.
  virtual bool addICCProfileForMediaWithData(const Record& record, ATPPD& toPPD) const;

  /// Hook: sets the colour profiles of a factory medium. Does nothing here.
  virtual void setICCProfileForMediaWithData(const Record& record, ATPPD& inPPD) const;

  /// Puts the device's default gloss enhancer for the medium, if it has one, into the medium's properties.
  virtual void updateDefaultGlossEnhancerForMediaWithData(const Record& record, ATPPD& inPPD) const;

  /// The gloss enhancer choice for a device value ("FULLPAGE" is the whole page, anything else off), or absent when
  /// the PPD has no gloss enhancer option.
  virtual std::optional<std::string> ppdNameForGlossEnhancerValue(const std::optional<std::string>& value,
                                                                  const ATPPD& fromPPD) const;

  /// The printer code of a choice; a medium for which it is absent is not added. Abstract: throws ATException here, so
  /// this class cannot finish a run on a device that has custom media.
  virtual std::optional<std::string> mediaTypeChoiceCodeWithName(const std::string& choiceName,
                                                                 const DeviceValue& ID) const;

  /// The name of the first choice whose code contains the ID anywhere, so an ID 12 also finds a code with 123; the
  /// ID itself when no code does, absent when it is absent. The callers rely on always getting a name for an ID.
  virtual DeviceValue ppdNameForMediaWithID(const DeviceValue& ID, const ATPPD& fromPPD) const;

  /// A copy of the record with "PPDName" set to "Custom" and the low 32 bits of the index in hexadecimal; an absent
  /// record stays absent.
  virtual Record addPPDNameForMediaWithIndex(std::uint64_t index, const Record& toData) const;

  /// Adds the choice of a custom medium and its properties. False when the record lacks something or the choice
  /// cannot be made.
  virtual bool addMediaWithData(const Record& record, ATPPD& toPPD) const;

  /// Gives a custom medium a copy of its parent's properties.
  virtual void addAttributesForMediaWithData(const Record& record, ATPPD& toPPD) const;

  /// Removes every medium that the group attribute (which may be null) lists, and the attribute.
  virtual void removeMediaInGroup(const ATPPD::AttributePtr& group, ATPPD& fromPPD) const;

  /// The name once for every supported language but "en"; it is not translated. Views of the name and of the PPD's
  /// languages.
  virtual ATPPDChoice::Localizations localizedNamesForMediaName(std::string_view name, const ATPPD& ppd) const;

  /// The option `MediaType` of the group `QZImagingOptions`, or null.
  virtual std::shared_ptr<ATPPDOption> mediaTypeOptionFromPPD(const ATPPD& ppd) const;

  /// The group attribute that lists these choice names, at least one. Its value holds its own "*End".
  virtual ATPPD::AttributePtr customMediaGroupAttributeWithMediaNames(const std::vector<std::string>& names) const;
  virtual ATPPD::AttributePtr extendedMediaGroupAttributeWithMediaNames(const std::vector<std::string>& names) const;

  /// The properties, quoted, with every part that begins with "defaultGE" replaced; an absent choice is written as
  /// "(null)". Properties without two quotes give the empty quoted value.
  virtual std::string changeDefaultGlossEnhancer(const std::optional<std::string>& choiceName,
                                                 const ATPPDAttribute::Part& inMediaTypeProperties) const;

  /// Whether the name can be a choice's main translation text.
  virtual bool validMediaUIName(const std::string& name) const;

  /// Whether the string is not empty and has only characters from `start` up to `start + length - 1`, tabs, line
  /// feeds, carriage returns and spaces, and none of the disallowed ones.
  virtual bool verifyString(std::string_view string, char32_t start, std::size_t length,
                            std::string_view andDisallowedCharactersInString) const;

  /// Whether the record's category marks a custom medium.
  virtual bool isMediaTypeDataCustom(const Record& record) const;

 protected:
  /// The properties statement of the medium with this choice name, or null.
  static ATPPD::AttributePtr propertiesOfMedia(std::string_view choiceName, const ATPPD& ppd);

  UpdateObserver& observer() const { return observer_; }

 private:
  // The names of the choices that this run added.
  struct AddedMedia {
    std::vector<std::string> custom;
    std::vector<std::string> extended;
    std::uint64_t nextIndex = 1;
  };
  void updateMedia(const Record& record, ATPPD& ppd, AddedMedia& added) const;
  void updateCustomMedia(const Record& record, ATPPD& ppd, AddedMedia& added) const;
  std::shared_ptr<ATPPDChoice> choiceForMediaWithData(const Record& record, const ATPPD& ppd) const;
  void addGroups(const AddedMedia& added, ATPPD& ppd) const;

  UpdateObserver& observer_;
};
