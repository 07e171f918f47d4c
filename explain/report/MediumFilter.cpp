// SPDX-License-Identifier: MIT
#include "explain/report/MediumFilter.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <string_view>

#include "explain/report/Words.h"

namespace {

class Filter {
 public:
  explicit Filter(const std::string& nameOrID) : wanted_(nameOrID) {}

  bool apply(Report& report) {
    if (!report.device || !report.device->media) return false;
    keep(*report.device->media, [this](const Report::Medium& medium) { return isWanted(medium.name, medium.ID); });
    if (report.device->media->empty()) return false;
    for (Report::Updater& updater : report.updaters) keepMedia(updater);
    for (Report::Updater& updater : report.updaters) {
      keep(updater.changes, [this](const Report::Change& change) { return isOfChoices(change.before + change.after); });
      updater.removedMedia.clear();
      updater.replacedMedia.clear();
      updater.restoredProfiles.clear();
    }
    keep(report.warnings, [this](const Warning& warning) {
      return warning.about ? isWanted(warning.about->name, warning.about->ID) : isOfAll(warning);
    });
    return true;
  }

 private:
  template <class Element, class Condition>
  static void keep(std::vector<Element>& elements, const Condition& condition) {
    std::erase_if(elements, [&condition](const Element& element) { return !condition(element); });
  }

  bool isWanted(const Report::OptionalText& name, const Report::OptionalText& ID) const {
    return name == wanted_ || ID == wanted_;
  }

  void keepMedia(Report::Updater& updater) {
    keep(updater.media,
         [this](const Report::MediumOutcome& medium) { return isWanted(medium.device.name, medium.device.ID); });
    for (const Report::MediumOutcome& medium : updater.media) {
      if (medium.choiceName) choices_.insert(*medium.choiceName);
    }
  }

  bool isOfChoices(std::string_view text) const {
    return std::any_of(choices_.begin(), choices_.end(),
                       [text](const std::string& choice) { return holdsWord(text, choice); });
  }

  // What costs more than a medium is of all media. What names no custom medium's choice, or this one's, may be what the
  // medium was lost by.
  bool isOfAll(const Warning& warning) const {
    if (kindOf(warning.code).gravity < Gravity::media) return true;
    const auto isOfOther = [this](const Warning::Fact& fact) {
      const auto* text = std::get_if<std::string>(&fact.value);
      return text != nullptr && namesAChoice(*text) && !isOfChoices(*text);
    };
    return std::none_of(warning.facts.begin(), warning.facts.end(), isOfOther);
  }

  static bool namesAChoice(std::string_view text) {
    static constexpr std::string_view kCustom = "Custom";
    const std::size_t found = text.find(kCustom);
    return found != std::string_view::npos && found + kCustom.size() < text.size() &&
           std::isxdigit(static_cast<unsigned char>(text[found + kCustom.size()])) != 0;
  }

  const std::string& wanted_;
  std::set<std::string> choices_;
};

}  // namespace

std::optional<Report> reportOnMedium(const Report& report, const std::string& nameOrID) {
  std::optional<Report> filtered = report;
  if (!Filter(nameOrID).apply(*filtered)) return std::nullopt;
  return filtered;
}
