// SPDX-License-Identifier: MIT
#include "explain/Verdict.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>

namespace {

bool lostSomething(const Report::MediumOutcome& medium) {
  const auto isSkipped = [](const Report::Profile& profile) {
    return profile.outcome == Report::ProfileOutcome::skipped;
  };
  return medium.profilesFailure || std::any_of(medium.profiles.begin(), medium.profiles.end(), isSkipped);
}

// Each media updater begins anew, so what the last of them did is what the PPD holds.
std::vector<Report::MediumOutcome> lastOutcomes(const Report& report) {
  for (auto updater = report.updaters.rbegin(); updater != report.updaters.rend(); ++updater) {
    if (!updater->media.empty()) return updater->media;
  }
  return {};
}

}  // namespace

Verdict::Colour Verdict::colourOf(const Report& report) {
  if (!report.succeeded()) return Colour::bad;
  for (const Report::Updater& updater : report.updaters) {
    if (std::any_of(updater.media.begin(), updater.media.end(), lostSomething)) return Colour::odd;
  }
  return report.warnings.empty() ? Colour::good : Colour::odd;
}

std::string Verdict::outcome(const Report& report) {
  if (!report.succeeded()) return "nothing is written (exit status 1)";
  return colourOf(report) == Colour::good ? "the PPD is set up (exit status 0)"
                                          : "the PPD is written, but look below (exit status 0)";
}

std::string Verdict::media(const Report& report) {
  if (!report.device || !report.device->media) return "";
  std::size_t custom = 0;
  std::size_t added = 0;
  std::size_t lost = 0;
  for (const Report::MediumOutcome& medium : lastOutcomes(report)) {
    custom += medium.device.custom;
    added += medium.added;
    lost += lostSomething(medium);
  }
  return fmt::format("{} on the device; of the user's {}, {} became choices, {} lost profiles",
                     report.device->media->size(), custom, added, lost);
}

std::string Verdict::warnings(const Report& report) {
  std::map<std::string, std::size_t> counts;
  for (const Report::Warning& warning : report.warnings) ++counts[warning.code];
  std::string text;
  for (const auto& [code, count] : counts) text += fmt::format("{}{} {}", text.empty() ? "" : ", ", count, code);
  return text;
}
