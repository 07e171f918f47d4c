// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "library/Snapshot.h"
#include "readers/DeviceModelLibrary.h"

/// A device-model library that answers from a snapshot in memory, for tests that make thousands of devices in one
/// process.
class SnapshotDeviceModelLibrary : public DeviceModelLibrary {
 public:
  explicit SnapshotDeviceModelLibrary(snapshot::Snapshot snapshot) : snapshot_(std::move(snapshot)) {}

  bool isAvailable() override { return true; }
  bool offersServiceInfoWithSpec() override { return snapshot_.offersServiceInfoWithSpec; }

  std::unique_ptr<ServiceInfo> serviceInfoWithSpec(const ServiceInfoSpec& spec) override {
    return std::make_unique<Info>(snapshot_.deviceFor(spec.uri.value_or(""), spec.modelName.value_or("")));
  }
  std::unique_ptr<ServiceInfo> serviceInfoWithURI(const std::string& uri) override {
    return std::make_unique<Info>(snapshot_.deviceFor(uri, ""));
  }
  std::unique_ptr<Store> registeredStoreForServiceInfo(const ServiceInfo* info) override {
    const auto* device = info == nullptr ? nullptr : static_cast<const Info*>(info)->device;
    if (device == nullptr || !device->dataStore) return nullptr;
    return std::make_unique<DeviceStore>(&*device->dataStore);
  }
  std::unique_ptr<Item> itemForKey(const Store* store, std::string_view key) override {
    if (store == nullptr) return nullptr;
    for (const auto& [name, value] : *static_cast<const DeviceStore*>(store)->items) {
      if (name == key) return std::make_unique<StoreItem>(&value);
    }
    return nullptr;
  }
  DeviceValue representedObject(const Item* item) override {
    return item == nullptr ? DeviceValue() : toDeviceValue(*static_cast<const StoreItem*>(item)->value);
  }
  DeviceValue deviceFamilyName(const ServiceInfo* info) override {
    const auto* device = info == nullptr ? nullptr : static_cast<const Info*>(info)->device;
    return device == nullptr || !device->familyName ? DeviceValue() : toDeviceValue(*device->familyName);
  }

  static DeviceValue toDeviceValue(const snapshot::Value& value) {
    return std::visit([](const auto& content) { return convert(content); }, value.value);
  }

 private:
  struct Info : ServiceInfo {
    explicit Info(const snapshot::Device* given) : device(given) {}
    const snapshot::Device* device;
  };
  struct DeviceStore : Store {
    explicit DeviceStore(const snapshot::Value::Object* given) : items(given) {}
    const snapshot::Value::Object* items;
  };
  struct StoreItem : Item {
    explicit StoreItem(const snapshot::Value* given) : value(given) {}
    const snapshot::Value* value;
  };

  template <class Content>
  static DeviceValue convert(const Content& content) {
    return content;
  }
  static DeviceValue convert(const snapshot::Value::Array& array) {
    auto list = std::make_shared<DeviceValue::List>();
    for (const auto& element : array) list->push_back(toDeviceValue(element));
    return list;
  }
  static DeviceValue convert(const snapshot::Value::Object& object) {
    auto map = std::make_shared<DeviceMap>();
    for (const auto& [key, member] : object) map->add(key, toDeviceValue(member));
    return map;
  }

  snapshot::Snapshot snapshot_;
};
