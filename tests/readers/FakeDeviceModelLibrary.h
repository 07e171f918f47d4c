// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/ATException.h"
#include "readers/DeviceModelLibrary.h"

/// A device-model library that plays what a test sets, and stands in the process library's place while it lives.
class FakeDeviceModelLibrary : public DeviceModelLibrary {
 public:
  FakeDeviceModelLibrary() { setDefaultLibrary(this); }
  FakeDeviceModelLibrary(const FakeDeviceModelLibrary&) = delete;
  FakeDeviceModelLibrary& operator=(const FakeDeviceModelLibrary&) = delete;
  ~FakeDeviceModelLibrary() override { setDefaultLibrary(nullptr); }

  bool available = true;
  bool offersSpec = true;      ///< false plays an older library
  std::string givesNothingAt;  ///< the operation that answers absent
  std::string failsAt;         ///< the operation that throws
  DeviceValue stored;          ///< the represented object of the one item
  DeviceValue familyName;
  std::vector<std::string> calls;  ///< the questions about devices, with their arguments, in order

  bool isAvailable() override { return available; }
  bool offersServiceInfoWithSpec() override { return goesOn("offersServiceInfoWithSpec") && offersSpec; }

  std::unique_ptr<ServiceInfo> serviceInfoWithSpec(const ServiceInfoSpec& spec) override {
    std::string call = "serviceInfoWithSpec";
    if (spec.uri) call += " kURIProp=" + *spec.uri;
    if (spec.modelName) call += " kModelNameProp=" + *spec.modelName;
    if (spec.skipReachabilityCheck) call += " kVMSkipReachabilityCheckProp=true";
    calls.push_back(call);
    return give<ServiceInfo>("serviceInfoWithSpec");
  }
  std::unique_ptr<ServiceInfo> serviceInfoWithURI(const std::string& uri) override {
    calls.push_back("serviceInfoWithURI " + uri);
    return give<ServiceInfo>("serviceInfoWithURI");
  }
  std::unique_ptr<Store> registeredStoreForServiceInfo(const ServiceInfo* info) override {
    if (info == nullptr) return nullptr;
    calls.emplace_back("registeredStoreForServiceInfo");
    return give<Store>("registeredStoreForServiceInfo");
  }
  std::unique_ptr<Item> itemForKey(const Store* store, std::string_view key) override {
    if (store == nullptr) return nullptr;
    calls.push_back("itemForKey " + std::string(key));
    return give<Item>("itemForKey");
  }
  DeviceValue representedObject(const Item* item) override {
    if (item == nullptr) return {};
    calls.emplace_back("representedObject");
    return goesOn("representedObject") ? stored : DeviceValue();
  }
  DeviceValue deviceFamilyName(const ServiceInfo* info) override {
    if (info == nullptr) return {};
    calls.emplace_back("deviceFamilyName");
    return goesOn("deviceFamilyName") ? familyName : DeviceValue();
  }

 private:
  bool goesOn(const std::string& operation) const {
    if (operation == failsAt) throw ATException("FakeLibraryException", "no answer from " + operation);
    return operation != givesNothingAt;
  }
  template <class Object>
  std::unique_ptr<Object> give(const std::string& operation) const {
    return goesOn(operation) ? std::make_unique<Object>() : nullptr;
  }
};

/// A map of the given entries, in their order; absent values are left out.
inline DeviceValue mapOf(std::vector<DeviceMap::Entry> entries) {
  auto map = std::make_shared<DeviceMap>();
  for (auto& [key, value] : entries) map->set(key, value);
  return map;
}

inline DeviceValue listOf(DeviceValue::List elements) {
  return std::make_shared<DeviceValue::List>(std::move(elements));
}

/// The keys of a map in their order; empty for anything else.
inline std::vector<std::string> keysOf(const DeviceValue& value) {
  std::vector<std::string> keys;
  if (const auto map = value.map()) {
    for (const auto& [key, element] : map->entries()) keys.push_back(key);
  }
  return keys;
}
