// SPDX-License-Identifier: MIT
#include "explain/DocumentSummary.h"

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
