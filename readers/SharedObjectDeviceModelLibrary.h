// SPDX-License-Identifier: MIT
#pragma once

#include "readers/DeviceModelLibrary.h"

struct QZVMInterface;
struct QZVMValue;

/// The device-model library as a shared object with the C interface of QZVorantisModel.h: the back end for every
/// system but macOS. The object is opened at the first question, and stays open.
class SharedObjectDeviceModelLibrary : public DeviceModelLibrary {
 public:
  /// `fileName`: what the dynamic loader is asked for.
  explicit SharedObjectDeviceModelLibrary(const char* fileName = "libQZVorantisModel.so.1") : fileName_(fileName) {}

  bool isAvailable() override { return interface() != nullptr; }
  bool offersServiceInfoWithSpec() override;
  std::unique_ptr<ServiceInfo> serviceInfoWithSpec(const ServiceInfoSpec& spec) override;
  std::unique_ptr<ServiceInfo> serviceInfoWithURI(const std::string& uri) override;
  std::unique_ptr<Store> registeredStoreForServiceInfo(const ServiceInfo* info) override;
  std::unique_ptr<Item> itemForKey(const Store* store, std::string_view key) override;
  DeviceValue representedObject(const Item* item) override;
  DeviceValue deviceFamilyName(const ServiceInfo* info) override;

 private:
  /// The library's entry points, or null when it is absent.
  const QZVMInterface* interface();
  bool succeeded(int result);
  DeviceValue takeValue(QZVMValue* value);

  const char* fileName_;
  bool opened_ = false;
  const QZVMInterface* interface_ = nullptr;
};
