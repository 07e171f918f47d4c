// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "explain/report/Report.h"
#include "readers/DeviceModelLibrary.h"

/// Hands every question on to a device-model library, and keeps what was asked of it and found.
class WatchedLibrary : public DeviceModelLibrary {
 public:
  /// A medium as it stands in the data store.
  struct StoredMedium {
    Report::OptionalText name, ID;
  };

  /// Watches `library` (not owned).
  explicit WatchedLibrary(DeviceModelLibrary& library) : library_(library) {}

  /// The last question for a data store, and whether it was there with custom media; absent when nobody asked.
  const std::optional<Report::Question>& question() const { return question_; }
  bool storeFound() const { return storeFound_; }
  bool itemFound() const { return itemFound_; }
  /// The media of the last custom media that were read, in their order.
  const std::vector<StoredMedium>& storedMedia() const { return storedMedia_; }

  void beginRun() override { library_.beginRun(); }
  bool isAvailable() override { return library_.isAvailable(); }
  bool offersServiceInfoWithSpec() override { return library_.offersServiceInfoWithSpec(); }
  std::unique_ptr<ServiceInfo> serviceInfoWithSpec(const ServiceInfoSpec& spec) override;
  std::unique_ptr<ServiceInfo> serviceInfoWithURI(const std::string& uri) override;
  std::unique_ptr<Store> registeredStoreForServiceInfo(const ServiceInfo* info) override;
  std::unique_ptr<Item> itemForKey(const Store* store, std::string_view key) override;
  DeviceValue representedObject(const Item* item) override;
  DeviceValue deviceFamilyName(const ServiceInfo* info) override { return library_.deviceFamilyName(info); }

 private:
  DeviceModelLibrary& library_;
  Report::Question asked_;  // the last one, for whatever
  std::optional<Report::Question> question_;
  bool storeFound_ = false;
  bool itemFound_ = false;
  std::vector<StoredMedium> storedMedia_;
};
