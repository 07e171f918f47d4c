// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "readers/DeviceValue.h"
#include "readers/ValueBudget.h"

/// The maker's device-model library `QZVorantisModel` as the readers and updaters use it: the operations that they
/// need, under the library's own names. Each back end (a shared object with a C interface; the Objective-C framework
/// on macOS) is one subclass.
///
/// An object that may be absent is a null pointer, and every operation takes null and then answers absent. A failure
/// inside the library is an ATException.
class DeviceModelLibrary {
 public:
  /// Which device is meant; made by the library and opaque here. So are the store and its items.
  class ServiceInfo {
   public:
    virtual ~ServiceInfo() = default;
  };
  class Store {
   public:
    virtual ~Store() = default;
  };
  class Item {
   public:
    virtual ~Item() = default;
  };

  /// The properties of `serviceInfoWithSpec`; an absent one is not given to the library.
  struct ServiceInfoSpec {
    std::optional<std::string> uri;        ///< kURIProp
    std::optional<std::string> modelName;  ///< kModelNameProp
    bool skipReachabilityCheck = true;     ///< kVMSkipReachabilityCheckProp, always given
  };

  /// A library's value that is nested more deeply is an ATException.
  static constexpr int kDeepestNesting = 64;

  virtual ~DeviceModelLibrary() = default;

  /// The library of this process. Nothing is loaded before the first question to it.
  static DeviceModelLibrary& defaultLibrary();
  /// Puts another library (not owned) in its place, or with null the process's own back; for tests.
  static void setDefaultLibrary(DeviceModelLibrary* library);

  /// Begins a run: what the library may give it is counted from here. Process-wide as the library is, so that no run
  /// pays for another.
  virtual void beginRun() { valueBudget_ = ValueBudget(); }

  /// Whether the class `AVMDataStoreFactory` is there, which tells whether the library is loaded.
  virtual bool isAvailable() = 0;
  /// Whether the class `AVMServiceInfo` is there and offers `serviceInfoWithSpec:`; older libraries do not.
  virtual bool offersServiceInfoWithSpec() = 0;

  virtual std::unique_ptr<ServiceInfo> serviceInfoWithSpec(const ServiceInfoSpec& spec) = 0;
  virtual std::unique_ptr<ServiceInfo> serviceInfoWithURI(const std::string& uri) = 0;

  /// Service information made in the one of the two ways that the library offers. With a spec, empty or absent texts
  /// are not given, and the reachability check is skipped; the older way takes just the URI, also an empty one.
  struct MadeServiceInfo {
    std::unique_ptr<ServiceInfo> info;
    bool withSpec;
  };
  MadeServiceInfo serviceInfoForDevice(const std::string& uri,
                                       const std::optional<std::string>& modelName = std::nullopt);

  /// The store that the system's default data store factory has for the device, or null.
  virtual std::unique_ptr<Store> registeredStoreForServiceInfo(const ServiceInfo* info) = 0;
  virtual std::unique_ptr<Item> itemForKey(const Store* store, std::string_view key) = 0;
  /// The item's represented object with values of its own: what is changed in it never reaches the library.
  virtual DeviceValue representedObject(const Item* item) = 0;

  /// `deviceFamilyName` of the status interface (`AVMDeviceStatus`) that a new status factory gives for the device.
  virtual DeviceValue deviceFamilyName(const ServiceInfo* info) = 0;

 protected:
  /// What back ends spend for the values that they give.
  ValueBudget& valueBudget() { return valueBudget_; }

 private:
  ValueBudget valueBudget_;
};
