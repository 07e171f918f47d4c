// SPDX-License-Identifier: MIT
#include "readers/framework/FrameworkDeviceModelLibrary.h"

#import <Foundation/Foundation.h>
#include <dlfcn.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

#include "base/ATException.h"
#include "base/Text.h"
#include "readers/framework/ObjectiveCGuard.h"
#include "readers/framework/PropertyList.h"

/// The framework's operations, of all its classes: declared so that they can be sent to objects that are known by name
/// only. Nothing of the framework is linked.
@protocol QZVorantisModelOperations
+ (id)serviceInfoWithSpec:(NSDictionary*)spec;
+ (id)serviceInfoWithURI:(NSString*)uri;
+ (id)defaultSystemDataStoreFactory;
+ (id)newStatusFactory;
- (id)registeredStoreForServiceInfo:(id)info;
- (id)itemForKey:(NSString*)key;
- (id)representedObject;
- (id)interfaceForProtocol:(Protocol*)protocol serviceInfo:(id)info;
- (id)deviceFamilyName;
@end

namespace {

// What an Objective-C exception said.
struct Caught : ATCaughtException {
  Caught() : ATCaughtException{nullptr, nullptr, nullptr} {}
  Caught(const Caught&) = delete;
  Caught& operator=(const Caught&) = delete;
  ~Caught() {
    std::free(name);
    std::free(reason);
    std::free(userInfo);
  }

  ATException exception() const {
    return {textOf(name).value_or("NSException"), textOf(reason).value_or(""), textOf(userInfo)};
  }

 private:
  static std::optional<std::string> textOf(const char* text) {
    return text == nullptr ? std::nullopt : Text::fromUTF8(text);
  }
};

// Runs a part of an operation; whether it ended without an Objective-C exception.
template <class Body>
bool succeeded(Body& body, Caught& caught) {
  const auto run = [](void* context) { (*static_cast<Body*>(context))(); };
  return ATRunGuarded(run, &body, &caught) == 0;
}

// Runs what frees objects; nobody could be told of an exception there.
template <class Body>
void withoutException(Body body) {
  Caught caught;
  succeeded(body, caught);
}

// Frees the temporary objects of one operation. A class, because GCC knows no @autoreleasepool.
class AutoreleasePool {
 public:
  AutoreleasePool() : pool_([[NSAutoreleasePool alloc] init]) {}
  AutoreleasePool(const AutoreleasePool&) = delete;
  AutoreleasePool& operator=(const AutoreleasePool&) = delete;
  ~AutoreleasePool() {
    withoutException([this] { [pool_ drain]; });
  }

 private:
  NSAutoreleasePool* pool_;
};

// What the operation gives. Its temporary objects are freed after an exception of its own has been described.
template <class Operation>
auto guarded(Operation operation) {
  const AutoreleasePool pool;
  decltype(operation()) result{};
  auto body = [&] { result = operation(); };
  Caught caught;
  if (!succeeded(body, caught)) throw caught.exception();
  return result;
}

// An object of the framework, kept until it is no longer needed.
template <class Base>
class Retained : public Base {
 public:
  explicit Retained(id object) : object_([object retain]) {}
  Retained(const Retained&) = delete;
  Retained& operator=(const Retained&) = delete;
  ~Retained() override {
    const AutoreleasePool pool;
    withoutException([this] { [object_ release]; });
  }

  static std::unique_ptr<Base> of(id object) { return object == nil ? nullptr : std::make_unique<Retained>(object); }
  static id object(const Base* base) { return static_cast<const Retained*>(base)->object_; }

 private:
  id object_;
};

using RetainedServiceInfo = Retained<DeviceModelLibrary::ServiceInfo>;
using RetainedStore = Retained<DeviceModelLibrary::Store>;
using RetainedItem = Retained<DeviceModelLibrary::Item>;

constexpr const char* kURIKey = "kURIProp";

// The value of a string constant that the framework exports, or nil.
NSString* constantNamed(const char* name) {
  const auto* constant = static_cast<NSString* const*>(dlsym(RTLD_DEFAULT, name));
  return constant == nullptr ? nil : *constant;
}

void setProperty(DeviceMap& properties, const char* constant, DeviceValue value) {
  if (NSString* key = constantNamed(constant)) properties.set(PropertyList::stringOf(key), std::move(value));
}

DeviceValue propertiesOf(const DeviceModelLibrary::ServiceInfoSpec& spec) {
  if (constantNamed(kURIKey) == nil) throw ATException::libraryFailure("the framework lacks the constant kURIProp");
  auto properties = std::make_shared<DeviceMap>();
  setProperty(*properties, kURIKey, spec.uri);
  setProperty(*properties, "kModelNameProp", spec.modelName);
  setProperty(*properties, "kVMSkipReachabilityCheckProp", spec.skipReachabilityCheck);
  return properties;
}

}  // namespace

bool FrameworkDeviceModelLibrary::isAvailable() {
  return guarded([] { return NSClassFromString(@"AVMDataStoreFactory") != Nil; });
}

bool FrameworkDeviceModelLibrary::offersServiceInfoWithSpec() {
  return guarded(
      [] { return [NSClassFromString(@"AVMServiceInfo") respondsToSelector:@selector(serviceInfoWithSpec:)] != NO; });
}

std::unique_ptr<DeviceModelLibrary::ServiceInfo> FrameworkDeviceModelLibrary::serviceInfoWithSpec(
    const ServiceInfoSpec& spec) {
  return guarded([&]() -> std::unique_ptr<ServiceInfo> {
    const Class serviceInfo = NSClassFromString(@"AVMServiceInfo");
    if (serviceInfo == Nil) return nullptr;
    NSDictionary* properties = PropertyList::objectOf(propertiesOf(spec));
    return RetainedServiceInfo::of([serviceInfo serviceInfoWithSpec:properties]);
  });
}

std::unique_ptr<DeviceModelLibrary::ServiceInfo> FrameworkDeviceModelLibrary::serviceInfoWithURI(
    const std::string& uri) {
  return guarded([&] {
    return RetainedServiceInfo::of([NSClassFromString(@"AVMServiceInfo") serviceInfoWithURI:PropertyList::textOf(uri)]);
  });
}

std::unique_ptr<DeviceModelLibrary::Store> FrameworkDeviceModelLibrary::registeredStoreForServiceInfo(
    const ServiceInfo* info) {
  if (info == nullptr) return nullptr;
  return guarded([&] {
    const id factory = [NSClassFromString(@"AVMDataStoreFactory") defaultSystemDataStoreFactory];
    return RetainedStore::of([factory registeredStoreForServiceInfo:RetainedServiceInfo::object(info)]);
  });
}

std::unique_ptr<DeviceModelLibrary::Item> FrameworkDeviceModelLibrary::itemForKey(const Store* store,
                                                                                  std::string_view key) {
  if (store == nullptr) return nullptr;
  return guarded([&] { return RetainedItem::of([RetainedStore::object(store) itemForKey:PropertyList::textOf(key)]); });
}

DeviceValue FrameworkDeviceModelLibrary::representedObject(const Item* item) {
  if (item == nullptr) return {};
  return guarded(
      [&] { return PropertyList::deviceValueOf([RetainedItem::object(item) representedObject], valueBudget()); });
}

DeviceValue FrameworkDeviceModelLibrary::deviceFamilyName(const ServiceInfo* info) {
  if (info == nullptr) return {};
  return guarded([&]() -> DeviceValue {
    Protocol* status = NSProtocolFromString(@"AVMDeviceStatus");
    if (status == nil) return {};
    // An operation whose name begins with "new" gives an object that the caller owns.
    const id factory = [[NSClassFromString(@"AVMCoreFactory") newStatusFactory] autorelease];
    const id device = [factory interfaceForProtocol:status serviceInfo:RetainedServiceInfo::object(info)];
    return PropertyList::deviceValueOf([device deviceFamilyName], valueBudget());
  });
}
