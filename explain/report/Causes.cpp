// SPDX-License-Identifier: MIT
#include "explain/report/Causes.h"

namespace {

using Code = WarningCode;

struct Consequence {
  WarningCode code, cause;
};

// What stands in front of a quote, or in a part that was not read, is why something is not there.
constexpr Consequence kConsequences[] = {
    {Code::emptyResult, Code::cutAtNonUTF8},
    {Code::emptyResult, Code::readingStopped},
    {Code::noUpdaters, Code::cutAtNonUTF8},
    {Code::noUpdaters, Code::readingStopped},
    {Code::swallowed, Code::unclosedQuote},
    {Code::earlierMediaRemoved, Code::noDevice},
    {Code::earlierMediaRemoved, Code::noDataStore},
    {Code::noFamily, Code::noDevice},
    {Code::noMediaOption, Code::cutAtNonUTF8},
    {Code::noMediaOption, Code::readingStopped},
    {Code::noMediaOption, Code::optionOutsideGroup},
    {Code::idNotFound, Code::noMediaOption},
    {Code::idNotFound, Code::optionOutsideGroup},
    {Code::noGlossChoice, Code::optionOutsideGroup},
    {Code::defaultNotThere, Code::factoryMediumRemoved},
    {Code::leftByEarlierSetup, Code::earlierSetup},
};

}  // namespace

std::optional<WarningCode> Causes::of(WarningCode code, const std::set<WarningCode>& codes) {
  for (const Consequence& each : kConsequences) {
    if (each.code != code || codes.count(each.cause) == 0) continue;
    return of(each.cause, codes).value_or(each.cause);
  }
  return std::nullopt;
}
