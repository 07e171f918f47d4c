// SPDX-License-Identifier: MIT
#include "explain/watch/DocumentSummary.h"

#include "ppd/lines/PPDExtentions.h"
#include "updaters/PPDKeywords.h"

namespace {

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
  if (option.empty() || qualifier == nullptr || !qualifier->value()) return false;
  return PPDExtentions::quotedValueContent(*qualifier->value()).value_or(*qualifier->value()) == option;
}

}  // namespace

Report::Parse DocumentSummary::of(const ATPPD& ppd) {
  Report::Parse parse;
  parse.lines = ppd.strings().size();
  parse.statements = countOfStatements(ppd);
  parse.groups = ppd.groups().size();
  parse.options = countOfOptions(ppd);
  if (const auto* languages = ppd.supportedLocalizations()) parse.languages = *languages;
  if (const auto modelName = ppd.attributeForName(PPDKeyword::modelName)) {
    parse.modelName = Report::OptionalText(modelName->value());
  }
  return parse;
}

std::vector<std::string> DocumentSummary::optionsOutsideGroups(const ATPPD& ppd) {
  std::vector<std::string> names;
  for (const auto& object : ppd.PPDObjects()) {
    const auto* option = dynamic_cast<const ATPPDOption*>(object.get());
    if (option != nullptr && isLookedFor(option->name(), ppd)) names.push_back(option->name());
  }
  return names;
}

Report::OptionalText DocumentSummary::glossIn(std::string_view properties) {
  static constexpr std::string_view kKey = "defaultGE=";
  const std::size_t start = properties.find(kKey);
  if (start == std::string_view::npos) return std::nullopt;
  const std::string_view value = properties.substr(start + kKey.size());
  return std::string(value.substr(0, value.find_first_of(";\"")));
}
