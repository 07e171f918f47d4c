// SPDX-License-Identifier: MIT
#include "explain/judge/UpdatersJudge.h"

#include "updaters/PPDKeywords.h"

namespace {

// Updaters that stand without quotes are none, and the queue gets no media: the commonest of all causes.
void judgeUpdaters(const Evidence& evidence, Warnings& warnings) {
  const auto statements = evidence.ppd.attributesForName(PPDKeyword::updaters);
  if (statements.size() > 1) {
    warnings.add(WarningCode::secondUpdaters, {{"keyword", PPDKeyword::updaters}, {"times", statements.size()}});
  }
  if (!evidence.report.updaters.empty()) return;
  const auto value = statements.empty() ? std::nullopt : statements.front()->value();
  if (value && !value->starts_with('"') && !value->empty()) {
    warnings.add(WarningCode::updatersNotQuoted, {{"keyword", PPDKeyword::updaters}, {"value", *value}});
  } else {
    warnings.add(WarningCode::noUpdaters, {{statements.empty() ? "keyword" : "empty", PPDKeyword::updaters}});
  }
}

void judgeLanguages(const ATPPD& ppd, Warnings& warnings) {
  const auto statement = ppd.attributeForName("cupsLanguages");
  const auto value = statement == nullptr ? std::nullopt : statement->value();
  if (!value || value->empty() || value->starts_with('"')) return;
  warnings.add(WarningCode::languagesNotQuoted, {{"value", *value}});
}

}  // namespace

void UpdatersJudge::judge(const Evidence& evidence, Warnings& warnings) {
  judgeUpdaters(evidence, warnings);
  judgeLanguages(evidence.ppd, warnings);
}
