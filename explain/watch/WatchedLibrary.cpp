// SPDX-License-Identifier: MIT
#include "explain/watch/WatchedLibrary.h"

#include "explain/watch/DeviceText.h"
#include "readers/MediaKeys.h"

std::unique_ptr<DeviceModelLibrary::ServiceInfo> WatchedLibrary::serviceInfoWithSpec(const ServiceInfoSpec& spec) {
  asked_ = {spec.uri, spec.modelName};
  return library_.serviceInfoWithSpec(spec);
}

std::unique_ptr<DeviceModelLibrary::ServiceInfo> WatchedLibrary::serviceInfoWithURI(const std::string& uri) {
  asked_ = {uri, std::nullopt};
  return library_.serviceInfoWithURI(uri);
}

std::unique_ptr<DeviceModelLibrary::Store> WatchedLibrary::registeredStoreForServiceInfo(const ServiceInfo* info) {
  question_ = asked_;
  auto store = library_.registeredStoreForServiceInfo(info);
  storeFound_ = store != nullptr;
  return store;
}

std::unique_ptr<DeviceModelLibrary::Item> WatchedLibrary::itemForKey(const Store* store, std::string_view key) {
  auto item = library_.itemForKey(store, key);
  itemFound_ = item != nullptr;
  return item;
}

DeviceValue WatchedLibrary::representedObject(const Item* item) {
  DeviceValue object = library_.representedObject(item);
  storedMedia_.clear();
  const DeviceValue media = object.map() == nullptr ? DeviceValue() : object.valueForKey(StoreKey::media);
  if (const auto map = media.map()) {
    for (const auto& [key, medium] : map->entries()) {
      storedMedia_.push_back({DeviceText::of(medium, StoreKey::name), DeviceText::of(medium, StoreKey::ID)});
    }
  }
  return object;
}
