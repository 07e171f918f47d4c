// SPDX-License-Identifier: MIT
#pragma once

#include "readers/DeviceModelLibrary.h"

/// The device-model library as the Objective-C framework that macOS has: the back end there. Everything of the
/// framework is looked up by name at every question, so that the tool starts, and behaves as without a library, where
/// the framework is not installed.
///
/// An Objective-C exception becomes an ATException with its name, reason and user info. What is asked for is freed
/// before the operation returns, but for the objects that it returns.
class FrameworkDeviceModelLibrary : public DeviceModelLibrary {
 public:
  bool isAvailable() override;
  bool offersServiceInfoWithSpec() override;
  /// A property whose key constant the framework does not export is not given. Without the URI's it is an ATException:
  /// the answer could be another printer's.
  std::unique_ptr<ServiceInfo> serviceInfoWithSpec(const ServiceInfoSpec& spec) override;
  std::unique_ptr<ServiceInfo> serviceInfoWithURI(const std::string& uri) override;
  std::unique_ptr<Store> registeredStoreForServiceInfo(const ServiceInfo* info) override;
  std::unique_ptr<Item> itemForKey(const Store* store, std::string_view key) override;
  DeviceValue representedObject(const Item* item) override;
  DeviceValue deviceFamilyName(const ServiceInfo* info) override;
};
