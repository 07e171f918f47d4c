// SPDX-License-Identifier: MIT
#include "explain/report/Verdict.h"

#include <fmt/format.h>

#include <algorithm>

#include "explain/report/Wording.h"

namespace {

std::string refusal(const Report::CUPS& cups) {
  if (!cups.refusal) return "libcups does not come to an end with it";
  const std::string place = cups.refusal->line > 0 ? fmt::format(", line {}", cups.refusal->line) : "";
  return fmt::format("{}{}", Wording::visible(cups.refusal->words), place);
}

}  // namespace

Verdict::Colour Verdict::colourOf(const Report& report) {
  if (!report.succeeded()) return Colour::bad;
  if (report.isRefused()) return Colour::refused;
  return report.warnings.empty() ? Colour::good : Colour::odd;
}

const char* Verdict::nameOf(Colour colour) {
  static constexpr const char* kNames[] = {"good", "odd", "bad", "refused"};
  return kNames[static_cast<int>(colour)];
}

std::string Verdict::outcome(const Report& report) {
  if (!report.succeeded()) return "nothing is written (exit status 1)";
  if (report.isRefused()) {
    return fmt::format("refused: CUPS does not open the PPD that is written: {} (exit status 0)",
                       refusal(*report.cups));
  }
  return colourOf(report) == Colour::good ? "the PPD is set up (exit status 0)"
                                          : "the PPD is written, but look below (exit status 0)";
}

std::optional<Verdict::MediaCounts> Verdict::mediaCounts(const Report& report) {
  if (!report.device || !report.device->media) return std::nullopt;
  MediaCounts counts;
  counts.onDevice = report.device->media->size();
  const Report::Updater* updater = report.lastMediaUpdater();
  if (updater == nullptr) return counts;
  for (const Report::MediumOutcome& medium : updater->media) {
    counts.custom += medium.device.custom;
    counts.added += medium.device.custom && medium.written;
    counts.lost += medium.lostSomething();
  }
  return counts;
}

std::string Verdict::media(const Report& report) {
  const auto counts = mediaCounts(report);
  if (!counts) return "";
  if (!report.succeeded()) return fmt::format("{} on the device", counts->onDevice);
  return fmt::format("{} on the device; {} are the user's, {} became choices, {} lost something", counts->onDevice,
                     counts->custom, counts->added, counts->lost);
}

std::vector<std::pair<WarningCode, std::size_t>> Verdict::warningCounts(const Report& report) {
  std::vector<std::pair<WarningCode, std::size_t>> counts;
  for (const Warning& warning : report.warnings) {
    const auto found = std::find_if(counts.begin(), counts.end(),
                                    [&warning](const auto& count) { return count.first == warning.code; });
    ++(found == counts.end() ? counts.emplace_back(warning.code, 0) : *found).second;
  }
  return counts;
}

std::string Verdict::warnings(const Report& report) {
  std::string text;
  for (const auto& [code, count] : warningCounts(report)) {
    text += fmt::format("{}{} {}", text.empty() ? "" : ", ", count, nameOf(code));
  }
  return text;
}
