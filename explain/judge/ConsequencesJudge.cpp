// SPDX-License-Identifier: MIT
#include "explain/judge/ConsequencesJudge.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>

namespace {

using Facts = std::vector<Warning::Fact>;

constexpr std::size_t kLongestText = 80;  // of a choice, in bytes, as CUPS cuts it

// What libcups' words mean to those who write PPDs; tried on libcups 2.4.
constexpr std::pair<std::string_view, const char*> kMeanings[] = {
    {"Missing PPD-Adobe-4.x header", "*PPD-Adobe: \"4…\" must come first, with nothing in front, not even a comment"},
    {"OpenGroup without a CloseGroup first", "the group before it is not closed"},
    {"OpenUI/JCLOpenUI without a CloseUI/JCLCloseUI first", "the option before it is not closed"},
    {"Bad OrderDependency", "it names no option"},
    {"Bad UIConstraints", "it does not name two options"},
    {"Missing asterisk in column 1", "the line begins no statement, and no value is open"},
    {"Illegal main keyword string", "a keyword has 40 bytes at most, printable ASCII without a slash"},
    {"Illegal option keyword string", "a choice or spec has 40 bytes at most, printable ASCII"},
    {"Illegal translation string", "a text has no control characters"},
    {"Bad custom parameter", "something behind its name is missing"}};

std::optional<std::string> meaningOf(const Report::Refusal& refusal) {
  if (refusal.statement.starts_with("\xEF\xBB\xBF")) return "a byte order mark stands in front of it";
  const auto* found = std::find_if(std::begin(kMeanings), std::end(kMeanings),
                                   [&](const auto& meaning) { return meaning.first == refusal.words; });
  return found == std::end(kMeanings) ? std::nullopt : std::optional<std::string>(found->second);
}

bool isRefusedAlike(const Report::Refusal& one, const std::optional<Report::CUPS>& before) {
  return before && before->refusal && before->refusal->words == one.words &&
         before->refusal->statement == one.statement;
}

// What is written when the run succeeded, what was read when it failed.
void judgeReading(const Report& report, Warnings& warnings) {
  const auto& cups = report.succeeded() ? report.cups : report.cupsBefore;
  if (!cups || cups->opens) return;
  if (!cups->refusal) return warnings.add(WarningCode::cupsFailed);
  const Report::Refusal& refusal = *cups->refusal;
  Warning warning{WarningCode::cupsRefuses, {{"words", refusal.words}, {"meaning", meaningOf(refusal)}}};
  warning.inInput = !report.succeeded() || isRefusedAlike(refusal, report.cupsBefore);
  if (refusal.line > 0)
    warning.facts.emplace_back("line", warning.inInput ? report.cupsBefore->refusal->line : refusal.line);
  if (!refusal.statement.empty()) warning.facts.emplace_back("statement", refusal.statement);
  warnings.add(std::move(warning));
}

// Why a name is shown otherwise; absent when nobody knows.
std::optional<std::string> whyOtherwise(const std::string& name) {
  if (name.size() > kLongestText) return "it has more than 80 bytes";
  if (name.find(':') != std::string::npos) return "it ends at the colon";
  const std::size_t bracket = name.find('<');
  const bool isCode = bracket != std::string::npos && bracket + 1 < name.size() &&
                      std::isxdigit(static_cast<unsigned char>(name[bracket + 1])) != 0;
  if (isCode) return "what follows \"<\" is taken for characters by their codes";
  return std::nullopt;
}

// What costs all media their choices, and says so.
constexpr WarningCode kOfAll[] = {WarningCode::noMediaOption, WarningCode::swallowed, WarningCode::unclosedQuote,
                                  WarningCode::aplworkset};

class MediumJudge {
 public:
  MediumJudge(const Report& report, const Report::MediumOutcome& medium, Warnings& warnings)
      : report_(report), medium_(medium), warnings_(warnings) {}

  void judge() {
    for (const Lost& lost : medium_.lost) judge(lost);
    for (const Report::Profile& profile : medium_.profiles) {
      if (profile.lost) judge(*profile.lost);
    }
  }

 private:
  void judge(const Lost& lost) {
    switch (lost.because) {
      case Loss::noOption:
      case Loss::noChoice:
        return judgeNoChoice(lost);
      case Loss::optionNotShown:
        return warn(WarningCode::mediumNotShown, {{"option", lost.what}, {"group", lost.where}});
      case Loss::nameOtherwise:
        return warn(
            WarningCode::nameOtherwise,
            {{"shown", lost.what}, {"languages", lost.where}, {"why", whyOtherwise(medium_.device.name.value_or(""))}});
      case Loss::profileNotRead:
        return warn(WarningCode::profileNeverTaken, {{"unread", lost.what}});
      case Loss::profileSpec:
        return warn(WarningCode::profileNeverTaken, {{"parts", lost.what}});
      case Loss::profileNoOption:
        return warn(WarningCode::profileNeverTaken, {{"spec", lost.what}, {"needed", lost.where}});
      case Loss::profileNoChoice:
        return judgeNoProfileChoice(lost);
      case Loss::profileBehind:
        return warn(WarningCode::profileHidden, {{"spec", lost.what}, {"other", lost.where}});
      default:
        return judgeProperties(lost);
    }
  }

  // What a judge of its cause has said already is not said again.
  void judgeNoChoice(const Lost& lost) {
    const auto isCause = [this](const Warning& warning) {
      if (std::find(std::begin(kOfAll), std::end(kOfAll), warning.code) != std::end(kOfAll)) return true;
      const bool isAboutIt =
          warning.about && warning.about->name == medium_.device.name && warning.about->ID == medium_.device.ID;
      return isAboutIt && (warning.code == WarningCode::choiceNotWritten || warning.code == WarningCode::idNotFound);
    };
    if (std::any_of(report_.warnings.begin(), report_.warnings.end(), isCause)) return;
    warn(WarningCode::mediumNotShown, lost.because == Loss::noOption ? Facts() : Facts{{"choice", lost.what}});
  }

  void judgeNoProfileChoice(const Lost& lost) {
    Facts facts = {{"spec", lost.what}, {"option", lost.where}, {"choice", lost.choice}};
    if (!lost.near.empty()) facts.emplace_back("near", lost.near);
    warn(WarningCode::profileNeverTaken, std::move(facts));
  }

  void judgeProperties(const Lost& lost) {
    if (lost.because == Loss::propertiesNotRead) warn(WarningCode::propertiesLost, {{"choice", lost.what}});
    if (lost.because == Loss::propertiesEmpty) warn(WarningCode::propertiesLost, {{"parent", medium_.parent}});
    if (lost.because == Loss::glossNotSet) warn(WarningCode::glossNotSet, {{"gloss", lost.what}});
    const bool isCounted = lost.what == "(null)";  // with those of all other media
    if (lost.because == Loss::noGlossChoice && !isCounted) {
      warn(WarningCode::glossNotSet, {{"gloss", lost.what}, {"option", lost.where}});
    }
  }

  void warn(WarningCode code, Facts facts) {
    warnings_.add(code, std::move(facts), AboutMedium{medium_.device.name, medium_.device.ID});
  }

  const Report& report_;
  const Report::MediumOutcome& medium_;
  Warnings& warnings_;
};

}  // namespace

void ConsequencesJudge::judge(const Evidence& evidence, Warnings& warnings) {
  judgeReading(evidence.report, warnings);
  const Report::Updater* updater = evidence.report.succeeded() ? evidence.report.lastMediaUpdater() : nullptr;
  if (updater == nullptr) return;
  for (const Report::MediumOutcome& medium : updater->media) MediumJudge(evidence.report, medium, warnings).judge();
}
