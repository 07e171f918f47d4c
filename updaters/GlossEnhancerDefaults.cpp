// SPDX-License-Identifier: MIT
//
// The part of ATMediaTypePPDUpdater that keeps each medium's default gloss enhancer. A medium's properties,
// `*QZValueAttributes MediaType.<choice>: "key=value;key=value"`, hold it as defaultGE='<choice>', where the choice is
// one of the gloss enhancer option that the PPD has: the full one or the simplified one.

#include "base/ATLog.h"
#include "base/Format.h"
#include "base/Text.h"
#include "ppd/lines/PPDExtentions.h"
#include "readers/MediaKeys.h"
#include "updaters/ATMediaTypePPDUpdater.h"
#include "updaters/PPDKeywords.h"

namespace {

constexpr const char* kDefaultGlossEnhancer = "defaultGE";

std::optional<std::string> glossyDefault(const ATPPD& ppd) {
  auto option = ppd.optionForName(PPDKeyword::glossEnhancer);
  if (option == nullptr) option = ppd.optionForName(PPDKeyword::simplifiedGlossEnhancer);
  return option ? option->defaultValue() : std::nullopt;
}

}  // namespace

bool ATMediaTypePPDUpdater::isGlossyMediaWithAttributes(const ATPPDAttribute::Part& properties) const {
  return properties && (Text::contains(*properties, "glossy=YES") || Text::contains(*properties, "GESupport=YES"));
}

std::optional<std::string> ATMediaTypePPDUpdater::ppdNameForGlossEnhancerValue(const std::optional<std::string>& value,
                                                                               const ATPPD& fromPPD) const {
  const bool isFullPage = value == "FULLPAGE";
  if (fromPPD.optionForName(PPDKeyword::glossEnhancer)) return isFullPage ? "whole-page-ge" : "off-ge";
  if (fromPPD.optionForName(PPDKeyword::simplifiedGlossEnhancer)) return isFullPage ? "True" : "False";
  return std::nullopt;
}

std::string ATMediaTypePPDUpdater::changeDefaultGlossEnhancer(const std::optional<std::string>& choiceName,
                                                              const ATPPDAttribute::Part& inMediaTypeProperties) const {
  const auto content = inMediaTypeProperties ? PPDExtentions::quotedValueContent(*inMediaTypeProperties) : std::nullopt;
  if (!content) return PPDExtentions::emptyQuotedValue();
  std::string changed;
  for (const std::string_view part : Text::split(*content, ";")) {
    if (!changed.empty()) changed += ';';
    if (!part.starts_with(kDefaultGlossEnhancer)) {
      changed += part;
      continue;
    }
    const std::string replacement = fmt::format("{}='{}'", kDefaultGlossEnhancer, Text::orNull(choiceName));
    ATLog("-[ATMediaTypePPDUpdater changeDefaultGlossEnhancer:inMediaTypeProperties:]", "Changing GE from {} to {}",
          part, replacement);
    changed += replacement;
  }
  return fmt::format("\"{}\"", changed);
}

void ATMediaTypePPDUpdater::restoreDefaultGlossEnhancerMediaPropertyInPPD(ATPPD& ppd) const {
  const auto glossyChoice = glossyDefault(ppd);
  const auto offChoice = ppdNameForGlossEnhancerValue("OFF", ppd);
  for (const auto& properties : ppd.attributesForName(PPDKeyword::mediaProperties)) {
    const auto value = properties->value();
    if (!value || !Text::contains(*value, kDefaultGlossEnhancer)) continue;
    ATLog("-[ATMediaTypePPDUpdater restoreDefaultGlossEnhancerMediaPropertyInPPD:]", "Restoring property for {}",
          properties->spec());
    properties->setValue(
        changeDefaultGlossEnhancer(isGlossyMediaWithAttributes(value) ? glossyChoice : offChoice, value));
  }
}

void ATMediaTypePPDUpdater::updateDefaultGlossEnhancerForMediaWithData(const Record& record, ATPPD& inPPD) const {
  const auto deviceValue = record.valueForKey(MediaKey::defaultGloss).textFor("default gloss enhancer");
  if (!deviceValue || deviceValue->empty()) return;
  const DeviceValue choiceName = ppdNameForMediaWithID(record.valueForKey(MediaKey::ID), inPPD);
  ATLog("-[ATMediaTypePPDUpdater updateDefaultGlossEnhancerForMediaWithData:inPPD:]", "Set default GE: {} for {}",
        *deviceValue, choiceName.description());
  if (choiceName.isAbsent()) return;
  if (const auto properties = propertiesOfMedia(choiceName.description(), inPPD)) {
    const auto choice = ppdNameForGlossEnhancerValue(deviceValue, inPPD);
    const std::string before(Text::orNull(properties->value()));
    properties->setValue(changeDefaultGlossEnhancer(choice, properties->value()));
    observer_.didSetGloss(choiceName.description(), before, Text::orNull(properties->value()));
  }
}
