// SPDX-License-Identifier: MIT
#include "explain/show/MediaWalk.h"

#include <fmt/format.h>

#include <algorithm>

#include "explain/report/Wording.h"

namespace {

using Row = Display::MediumRow;
using Wording::visible;

Row::Kind kindOfMedium(const Report::MediumOutcome& medium) {
  if (medium.lostSomething()) return Row::Kind::lost;
  return medium.device.custom ? Row::Kind::custom : Row::Kind::factory;
}

Phrase stateOf(const Report::MediumOutcome& medium) {
  if (medium.added) return Phrase().say("is the choice ", Tone::good).name(medium.choiceName);
  if (medium.device.custom) return Phrase().say("is left out", Tone::bad);
  if (medium.choiceName) return Phrase("is the choice ").name(medium.choiceName);
  return medium.lookedUp ? "has no choice" : "needs nothing";
}

Phrase phraseOf(const Report::Profile& profile) {
  if (profile.outcome == Report::ProfileOutcome::skipped) {
    return Phrase().name(profile.name).say(" ").say("left out: " + profile.reason, Tone::odd);
  }
  const char* outcome = profile.outcome == Report::ProfileOutcome::added ? " added: " : " rewritten: ";
  return Phrase().name(profile.spec).say(outcome).name(profile.name).say(", ").name(profile.path);
}

// What of the medium the user does not find, and why.
Phrase phraseOf(const Lost& lost) {
  Phrase phrase = Phrase().say(nameOf(lost.because), Tone::bad);
  for (const std::string* each : {&lost.what, &lost.where, &lost.choice}) {
    if (!each->empty()) phrase.say(" ").name(*each);
  }
  return phrase;
}

Row rowOf(const Report::MediumOutcome& medium) {
  Row row{medium, kindOfMedium(medium), stateOf(medium), {}};
  auto& details = row.details;
  if (!medium.notAdded.empty()) details.emplace_back("why", Phrase().say(visible(medium.notAdded), Tone::bad));
  if (medium.choiceCode) details.emplace_back("code", Phrase().name(medium.choiceCode));
  if (medium.inherited) {
    details.emplace_back("properties", Phrase().name(medium.inherited).say(", from ").name(medium.parent));
  } else if (medium.parent) {
    details.emplace_back("properties", Phrase("none: ").name(medium.parent).say(" has none"));
  }
  for (const Lost& lost : medium.lost) details.emplace_back("lost", phraseOf(lost));
  for (const Report::Profile& profile : medium.profiles) {
    details.emplace_back("profile", phraseOf(profile));
    if (profile.lost) details.emplace_back("lost", phraseOf(*profile.lost));
  }
  if (medium.profilesFailure) {
    details.emplace_back("profiles", Phrase().say("ended by an error: " + visible(*medium.profilesFailure), Tone::bad));
  }
  if (medium.device.gloss || medium.glossBefore != medium.glossAfter) {
    details.emplace_back("gloss", Phrase("device ")
                                      .name(medium.device.gloss)
                                      .say(": ")
                                      .name(medium.glossBefore)
                                      .say(" before, ")
                                      .name(medium.glossAfter)
                                      .say(" after"));
  }
  return row;
}

}  // namespace

void MediaWalk::show(const Report::Updater& updater, Display& display) {
  if (updater.media.empty()) return;
  display.section("What became of each medium: " + visible(updater.name));
  const std::size_t shown = std::min(updater.media.size(), display.limits().media);
  display.beginMedia(updater.media.size());
  for (std::size_t index = 0; index < shown; ++index) display.medium(rowOf(updater.media[index]));
  display.endMedia(updater.media.size() - shown);
}
