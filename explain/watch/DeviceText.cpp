// SPDX-License-Identifier: MIT
#include "explain/watch/DeviceText.h"

#include "base/Text.h"
#include "readers/MediaKeys.h"

Report::OptionalText DeviceText::of(const DeviceValue& value) {
  return value.isAbsent() ? std::nullopt : Report::OptionalText(value.description());
}

Report::OptionalText DeviceText::of(const DeviceValue& record, const char* key) {
  return record.map() == nullptr ? std::nullopt : of(record.valueForKey(key));
}

Report::Medium DeviceText::mediumOf(const DeviceValue& record) {
  Report::Medium medium;
  medium.name = of(record, MediaKey::name);
  medium.ID = of(record, MediaKey::ID);
  medium.categoryName = of(record, MediaKey::categoryName);
  medium.categoryID = of(record, MediaKey::categoryID);
  medium.parentID = of(record, MediaKey::parentID);
  medium.gloss = of(record, MediaKey::defaultGloss);
  const auto profiles = record.map() == nullptr ? nullptr : record.valueForKey(MediaKey::profiles).list();
  medium.profiles = profiles == nullptr ? 0 : profiles->size();
  return medium;
}

bool DeviceText::isCustomChoice(std::string_view name) {
  static constexpr std::string_view kBeginning = "Custom";
  return name.starts_with(kBeginning) && name.size() > kBeginning.size() &&
         name.find_first_not_of("0123456789abcdef", kBeginning.size()) == std::string_view::npos;
}
