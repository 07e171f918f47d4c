// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "readers/DeviceModelLibrary.h"
#include "readers/DeviceValue.h"
#include "readers/IATDataReader.h"

inline DeviceValue mapOf(std::initializer_list<std::pair<const char*, DeviceValue>> entries) {
  auto map = std::make_shared<DeviceMap>();
  for (const auto& [key, value] : entries) map->set(key, value);
  return map;
}

inline DeviceValue listOf(std::initializer_list<DeviceValue> elements) {
  return std::make_shared<DeviceValue::List>(elements);
}

inline DeviceValue number(std::int64_t value) {
  return value;
}

/// The media list dictionary with this list and, unless absent, this version.
inline DeviceValue mediaList(std::initializer_list<DeviceValue> records, const DeviceValue& version = "17") {
  return mapOf({{"MedaListVersion", version}, {"MediaList", listOf(records)}});
}

/// The record of a custom medium, a copy of the factory medium with the parent ID if there is one.
inline DeviceValue customMedium(const char* name, const char* ID, const DeviceValue& parentID = {}) {
  return mapOf(
      {{"MediaName", name}, {"ID", ID}, {"CategoryName", "Custom"}, {"CategoryID", "CUSTOM"}, {"ParentID", parentID}});
}

inline DeviceValue extendedMedium(const char* name, const char* ID) {
  return mapOf({{"MediaName", name}, {"ID", ID}, {"CategoryID", "QZ_EXTENDED_MEDIA"}});
}

/// An entry of a profile list.
inline DeviceValue profile(const DeviceValue& name, const DeviceValue& url, const DeviceValue& gloss = {},
                           const DeviceValue& outputMode = {}) {
  return mapOf({{"URL", url}, {"ICCName", name}, {"GlossEnhancer", gloss}, {"OutputMode", outputMode}});
}

/// The record of a medium that has this choice name and these profiles.
inline DeviceValue mediumWithProfiles(const char* choiceName, const DeviceValue& profiles) {
  return mapOf({{"PPDName", choiceName}, {"ICCProfiles", profiles}});
}

/// The value of the key in each entry of the record's profile list, absent ones as "(null)".
inline std::vector<std::string> inProfilesOf(const DeviceValue& record, const char* key) {
  std::vector<std::string> values;
  for (const DeviceValue& entry : *record.valueForKey("ICCProfiles").list()) {
    values.push_back(entry.valueForKey(key).description());
  }
  return values;
}

/// The value, with lists and maps of its own.
inline DeviceValue copyOf(const DeviceValue& value) {
  if (const auto list = value.list()) {
    auto copy = std::make_shared<DeviceValue::List>();
    for (const DeviceValue& element : *list) copy->push_back(copyOf(element));
    return copy;
  }
  if (const auto map = value.map()) {
    auto copy = std::make_shared<DeviceMap>();
    for (const auto& [key, element] : map->entries()) copy->add(key, copyOf(element));
    return copy;
  }
  return value;
}

/// A reader that knows what it is told, and gives each time values of its own.
class FakeReader : public IATDataReader {
 public:
  FakeReader() = default;
  explicit FakeReader(DeviceValue data) : data_(std::move(data)) {}

  DeviceValue dataForKey(std::string_view key) const override {
    keys.emplace_back(key);
    return copyOf(data_);
  }
  DeviceValue familyNameForKey(std::string_view /*key*/) const override { return {}; }
  std::optional<std::string> printerURI() const override { return uri; }

  std::optional<std::string> uri;
  mutable std::vector<std::string> keys;  ///< what data was asked for

 private:
  DeviceValue data_;
};

/// A device-model library in which one device has the family name that it is told, in the place of the process's own
/// library while it lives.
class FakeLibrary : public DeviceModelLibrary {
 public:
  explicit FakeLibrary(DeviceValue familyName = {}) : familyName_(std::move(familyName)) { setDefaultLibrary(this); }
  FakeLibrary(const FakeLibrary&) = delete;
  FakeLibrary& operator=(const FakeLibrary&) = delete;
  ~FakeLibrary() override { setDefaultLibrary(nullptr); }

  bool isAvailable() override { return available; }
  bool offersServiceInfoWithSpec() override { return offersSpec; }
  std::unique_ptr<ServiceInfo> serviceInfoWithSpec(const ServiceInfoSpec& spec) override {
    specs.push_back(spec);
    return knowsDevice ? std::make_unique<ServiceInfo>() : nullptr;
  }
  std::unique_ptr<ServiceInfo> serviceInfoWithURI(const std::string& uri) override {
    uris.push_back(uri);
    return knowsDevice ? std::make_unique<ServiceInfo>() : nullptr;
  }
  std::unique_ptr<Store> registeredStoreForServiceInfo(const ServiceInfo* /*info*/) override {
    ++storeQuestions;
    return nullptr;
  }
  std::unique_ptr<Item> itemForKey(const Store* /*store*/, std::string_view /*key*/) override {
    ++storeQuestions;
    return nullptr;
  }
  DeviceValue representedObject(const Item* /*item*/) override {
    ++storeQuestions;
    return {};
  }
  DeviceValue deviceFamilyName(const ServiceInfo* info) override {
    ++familyQuestions;
    return info == nullptr ? DeviceValue() : familyName_;
  }

  bool available = true;
  bool offersSpec = true;
  bool knowsDevice = true;
  std::vector<ServiceInfoSpec> specs;
  std::vector<std::string> uris;
  int familyQuestions = 0;
  int storeQuestions = 0;

 private:
  DeviceValue familyName_;
};
