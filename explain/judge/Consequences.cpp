// SPDX-License-Identifier: MIT
#include "explain/judge/Consequences.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "explain/judge/CUPSReading.h"
#include "explain/judge/NearMissJudge.h"
#include "explain/judge/UsersView.h"

namespace {

// The line of this number as libcups counts; empty when there is none.
std::string_view lineOf(std::string_view text, std::size_t number) {
  for (std::size_t line = 1; number > 0 && !text.empty(); ++line) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    if (line == number) return text.substr(0, end);
    text.remove_prefix(std::min(end + (text.substr(end, 2) == "\r\n" ? 2 : 1), text.size()));
  }
  return "";
}

std::optional<Report::Refusal> refusalFrom(const std::optional<CUPSReading::Refusal>& refusal, std::string_view text) {
  if (!refusal) return std::nullopt;
  const auto line = static_cast<std::size_t>(std::max(refusal->line, 0));
  return Report::Refusal{line, refusal->words, std::string(lineOf(text, line))};
}

Report::CUPS answerFrom(const CUPSReading& reading, std::string_view text) {
  return {reading.isOpened(), refusalFrom(reading.refusal, text), refusalFrom(reading.strictRefusal, text)};
}

UsersView::Medium lookedFor(const Report::MediumOutcome& outcome) {
  UsersView::Medium medium;
  medium.name = outcome.device.name.value_or("");
  medium.choiceName = outcome.choiceName;
  medium.isCustom = outcome.device.custom;
  medium.inherits = outcome.inherited.has_value();
  if (outcome.device.gloss && !outcome.device.gloss->empty()) medium.gloss = outcome.device.gloss;
  for (const Report::Profile& profile : outcome.profiles) {
    medium.profiles.push_back({profile.spec.value_or(""), profile.path.value_or("")});
  }
  return medium;
}

// Nobody says which choice stands for a medium of the factory that no updater looked for.
bool isKnown(const Report::MediumOutcome& medium) {
  return medium.device.custom || medium.lookedUp;
}

void note(UsersView::SeenMedium seen, Report::MediumOutcome& medium) {
  const auto& category = medium.device.categoryID;
  const bool isMeant = !medium.device.custom && category && NearMissJudge::isNearlyCustomCategory(*category);
  if (isMeant || (medium.device.custom && !medium.added)) {
    medium.lost = {{Loss::notAdded}};
  } else if (isKnown(medium)) {
    medium.written = seen.isWritten;
    medium.shown = std::move(seen.shown);
    medium.properties = std::move(seen.properties);
    medium.lost = std::move(seen.lost);
  }
  for (std::size_t index = 0; index < medium.profiles.size(); ++index) {
    if (medium.profiles[index].outcome == Report::ProfileOutcome::skipped) continue;
    medium.profiles[index].selectedBy = std::move(seen.profiles[index].selectedBy);
    medium.profiles[index].lost = std::move(seen.profiles[index].lost);
  }
}

// What is lost whatever libcups makes of the result.
void noteSkipped(Report::MediumOutcome& medium) {
  if (medium.profilesFailure) medium.lost.push_back({Loss::profilesFailed});
  for (Report::Profile& profile : medium.profiles) {
    if (profile.outcome == Report::ProfileOutcome::skipped) profile.lost = {Loss::profileSkipped};
  }
}

void lookForMedia(Report::Updater& updater, const CUPSReading& reading) {
  std::vector<UsersView::Medium> media;
  if (reading.isOpened()) {
    for (const Report::MediumOutcome& medium : updater.media) media.push_back(lookedFor(medium));
  }
  auto seen = UsersView::of(media, reading);
  for (std::size_t index = 0; index < updater.media.size(); ++index) {
    Report::MediumOutcome& medium = updater.media[index];
    if (reading.isOpened()) {
      note(std::move(seen[index]), medium);
    } else {
      medium.lost = {{Loss::refused}};
    }
    noteSkipped(medium);
  }
}

}  // namespace

void Consequences::find(Report& report, std::string_view input, std::string_view result) {
  if (!input.empty()) report.cupsBefore = answerFrom(CUPSReading::of(input), input);
  if (!report.succeeded()) return;
  const std::vector<std::string> languages = report.parse ? report.parse->languages : std::vector<std::string>();
  const CUPSReading reading = CUPSReading::of(result, languages, UsersView::attributes());
  report.cups = answerFrom(reading, result);
  if (Report::Updater* updater = report.lastMediaUpdater()) lookForMedia(*updater, reading);
}
