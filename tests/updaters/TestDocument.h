// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/Text.h"
#include "ppd/document/ATPPD.h"
#include "readers/DeviceValue.h"
#include "tests/support/DocumentReading.h"

using DocumentReading::textOf;

/// The document that the lines of the text make.
inline std::shared_ptr<ATPPD> documentFromText(std::string_view text) {
  const std::shared_ptr<DocumentReading::Reading> reading = DocumentReading::read(text);
  if (reading->error) ADD_FAILURE() << "malformed test document: " << reading->error->description();
  return {reading, &reading->ppd};
}

/// A group with one option: its default and the lines of its choices.
inline std::string groupWithOption(const std::string& group, const std::string& option,
                                   const std::string& defaultChoice, const std::string& choiceLines) {
  return "*OpenGroup: " + group + "/" + group + "\n*OpenUI *" + option + "/" + option + ": PickOne\n*Default" + option +
         ": " + defaultChoice + "\n" + choiceLines + "*CloseUI: *" + option + "\n*CloseGroup: " + group + "/" + group +
         "\n";
}

/// The option of the media types, in its group.
inline std::string mediaTypes(const std::string& choiceLines) {
  return groupWithOption("QZImagingOptions", "MediaType", "Plain", choiceLines);
}

/// An option outside the imaging options whose choices have these names and empty codes.
inline std::string optionWithChoices(const std::string& option, const std::string& defaultChoice,
                                     const std::vector<std::string>& choiceNames) {
  std::string lines;
  for (const std::string& name : choiceNames) lines += "*" + option + " " + name + "/" + name + ": \"\"\n";
  return groupWithOption(option + "Group", option, defaultChoice, lines);
}

inline std::string fullGlossOption(const std::string& defaultChoice) {
  return optionWithChoices("QZGlossEnhancer", defaultChoice, {"off-ge", "whole-page-ge", "economode-ge"});
}

inline std::string simplifiedGlossOption(const std::string& defaultChoice) {
  return optionWithChoices("QZGlossEnhancerSimplified", defaultChoice, {"False", "True"});
}

/// The values of an attribute's statements, those without one as "(null)".
inline std::vector<std::string> valuesOf(const ATPPD& ppd, std::string_view attributeName) {
  std::vector<std::string> values;
  for (const auto& attribute : ppd.attributesForName(attributeName))
    values.emplace_back(Text::orNull(attribute->value()));
  return values;
}

/// The specs of an attribute's statements, in list order.
inline std::vector<std::string> specsOf(const ATPPD& ppd, std::string_view attributeName) {
  std::vector<std::string> specs;
  for (const auto& attribute : ppd.attributesForName(attributeName))
    specs.emplace_back(Text::orNull(attribute->spec()));
  return specs;
}

/// A profile statement, one of its localizations, and the factory's statement of it: the value as it stands in the PPD,
/// or what is between its quotes.
inline std::string statement(const std::string& spec, const std::string& text, const std::string& path) {
  return "*cupsICCProfile " + spec + "/" + text + ": \"" + path + "\"\n";
}
inline std::string localized(const std::string& language, const std::string& spec, const std::string& text) {
  return "*" + language + ".cupsICCProfile " + spec + "/" + text + ": \"\"\n";
}
inline std::string factoryOfValue(const std::string& spec, const std::string& value) {
  return "*QZcupsICCProfile " + spec + "/Factory: " + value + "\n";
}
inline std::string factory(const std::string& spec, const std::string& content) {
  return factoryOfValue(spec, "\"" + content + "\"");
}

/// The document that an updater makes of the text when it sets a medium's profiles, or restores the factory's.
template <class Updater>
std::string afterSet(const std::string& text, const DeviceValue& record) {
  const auto ppd = documentFromText(text);
  Updater().setICCProfileForMediaWithData(record, *ppd);
  return textOf(*ppd);
}
template <class Updater>
std::string afterRestore(const std::string& text) {
  const auto ppd = documentFromText(text);
  Updater().restoreFactoryICCProfilesInPPD(*ppd);
  return textOf(*ppd);
}
