// SPDX-License-Identifier: MIT
#include "readers/SharedObjectDeviceModelLibrary.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <utility>

#include "base/ATException.h"
#include "base/Text.h"
#include "library/QZVorantisModel.h"
#include "readers/LibraryFile.h"

namespace {

// An object of the library, given back to it by the release function of its type.
template <class Base, class Handle>
class Owned : public Base {
 public:
  using Release = void (*)(Handle*);
  Owned(Handle* handle, Release release) : handle_(handle), release_(release) {
    if (handle == nullptr) throw ATException::libraryFailure("the device-model library gave a null object");
  }
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;
  ~Owned() override { release_(handle_); }

  static const Handle* handle(const Base* object) { return static_cast<const Owned*>(object)->handle_; }

 private:
  Handle* handle_;
  Release release_;
};

using OwnedServiceInfo = Owned<DeviceModelLibrary::ServiceInfo, QZVMServiceInfo>;
using OwnedStore = Owned<DeviceModelLibrary::Store, QZVMStore>;
using OwnedItem = Owned<DeviceModelLibrary::Item, QZVMItem>;

QZVMText textOf(std::string_view text) {
  return {text.data(), text.size()};
}

// Absent when the library gave what is no text.
std::optional<std::string> textFrom(QZVMText text) {
  if (text.bytes == nullptr && text.size != 0) return std::nullopt;
  return Text::fromUTF8({text.bytes, text.size});
}

std::string stringOf(QZVMText text) {
  auto string = textFrom(text);
  if (!string) throw ATException::libraryFailure("the device-model library gave a text that is null or not UTF-8");
  return std::move(*string);
}

bool isComplete(const QZVMInterface& table) {
  return table.offersServiceInfoWithSpec && table.serviceInfoWithSpec && table.serviceInfoWithURI &&
         table.releaseServiceInfo && table.registeredStoreForServiceInfo && table.releaseStore && table.itemForKey &&
         table.releaseItem && table.representedObject && table.deviceFamilyName && table.releaseValue && table.kind &&
         table.stringValue && table.integerValue && table.unsignedValue && table.realValue && table.booleanValue &&
         table.count && table.elementAt && table.keyAt && table.valueAt && table.lastError;
}

// What keeps a library that was loaded from being used; null: nothing.
const char* problemOf(bool hasEntryPoint, const QZVMInterface* table) {
  if (!hasEntryPoint) return "it has no entry point";
  if (table == nullptr) return "it gives no operations";
  if (table->interfaceVersion != QZVM_INTERFACE_VERSION) return "it is of another interface version";
  return isComplete(*table) ? nullptr : "it lacks operations";
}

// The library's entry points, or null when there is no library. One that cannot be used is a failure: taken for absent,
// it would cost a queue its media.
const QZVMInterface* loadInterface(const char* fileName) {
  void* object = dlopen(fileName, RTLD_NOW | RTLD_LOCAL);
  // The loader takes a lack of memory while it looks for a file for the file's absence, so it is asked once more.
  if (object == nullptr) object = dlopen(fileName, RTLD_NOW | RTLD_LOCAL);
  if (object == nullptr) {
    const char* error = dlerror();
    const std::string words = error == nullptr ? "the loader gives no reason" : error;
    const auto problem = LibraryFile::problem(fileName, words);
    if (!problem) return nullptr;
    throw ATException::libraryFailure(fmt::format("the device-model library cannot be loaded: {}", *problem));
  }
  const auto entry = reinterpret_cast<decltype(&QZVorantisModelInterface)>(dlsym(object, "QZVorantisModelInterface"));
  const QZVMInterface* table = entry == nullptr ? nullptr : entry();
  const char* problem = problemOf(entry != nullptr, table);
  if (problem == nullptr) return table;
  dlclose(object);
  throw ATException::libraryFailure(fmt::format("{} cannot be used: {}", fileName, problem));
}

// Makes values of the tool's own from the library's.
class Reader {
 public:
  Reader(const QZVMInterface& library, ValueBudget& budget) : library_(library), budget_(budget) {}

  DeviceValue read(const QZVMValue* value, int nesting = 0) const {
    if (value == nullptr) throw ATException::libraryFailure("the device-model library gave a null value");
    budget_.spendValue();
    switch (library_.kind(value)) {
      case QZVM_STRING:
        return text(library_.stringValue(value));
      case QZVM_INTEGER:
        return library_.integerValue(value);
      case QZVM_UNSIGNED:
        return library_.unsignedValue(value);
      case QZVM_REAL:
        return library_.realValue(value);
      case QZVM_BOOLEAN:
        return library_.booleanValue(value) != 0;
      case QZVM_LIST:
        return readList(value, nesting);
      case QZVM_MAP:
        return readMap(value, nesting);
    }
    throw ATException::libraryFailure("the device-model library gave a value of an unknown kind");
  }

 private:
  static void checkNesting(int nesting) {
    if (nesting >= DeviceModelLibrary::kDeepestNesting)
      throw ATException::libraryFailure("the device-model library's value is nested too deeply");
  }

  std::string text(QZVMText given) const {
    budget_.spend(given.size);
    return stringOf(given);
  }

  DeviceValue readList(const QZVMValue* value, int nesting) const {
    checkNesting(nesting);
    auto list = std::make_shared<DeviceValue::List>();
    const std::size_t count = library_.count(value);
    for (std::size_t index = 0; index < count; ++index) {
      list->push_back(read(library_.elementAt(value, index), nesting + 1));
    }
    return list;
  }

  DeviceValue readMap(const QZVMValue* value, int nesting) const {
    checkNesting(nesting);
    auto map = std::make_shared<DeviceMap>();
    const std::size_t count = library_.count(value);
    for (std::size_t index = 0; index < count; ++index) {
      budget_.spendValue();
      map->add(text(library_.keyAt(value, index)), read(library_.valueAt(value, index), nesting + 1));
    }
    return map;
  }

  const QZVMInterface& library_;
  ValueBudget& budget_;
};

}  // namespace

const QZVMInterface* SharedObjectDeviceModelLibrary::interface() {
  if (!opened_) interface_ = loadInterface(fileName_);
  opened_ = true;
  return interface_;
}

// Whether the operation gave something; throws when it failed.
bool SharedObjectDeviceModelLibrary::succeeded(int result) {
  if (result == QZVM_OK) return true;
  if (result == QZVM_ABSENT) return false;
  throw ATException::libraryFailure(textFrom(interface_->lastError()).value_or("the device-model library failed"));
}

bool SharedObjectDeviceModelLibrary::offersServiceInfoWithSpec() {
  return isAvailable() && succeeded(interface_->offersServiceInfoWithSpec());
}

std::unique_ptr<DeviceModelLibrary::ServiceInfo> SharedObjectDeviceModelLibrary::serviceInfoWithSpec(
    const ServiceInfoSpec& spec) {
  if (!isAvailable()) return nullptr;
  const QZVMText uri = textOf(spec.uri ? std::string_view(*spec.uri) : std::string_view());
  const QZVMText modelName = textOf(spec.modelName ? std::string_view(*spec.modelName) : std::string_view());
  const unsigned char skipReachabilityCheck = spec.skipReachabilityCheck ? 1 : 0;
  const QZVMServiceInfoSpec given{spec.uri ? &uri : nullptr, spec.modelName ? &modelName : nullptr,
                                  &skipReachabilityCheck};
  QZVMServiceInfo* info = nullptr;
  if (!succeeded(interface_->serviceInfoWithSpec(&given, &info))) return nullptr;
  return std::make_unique<OwnedServiceInfo>(info, interface_->releaseServiceInfo);
}

std::unique_ptr<DeviceModelLibrary::ServiceInfo> SharedObjectDeviceModelLibrary::serviceInfoWithURI(
    const std::string& uri) {
  QZVMServiceInfo* info = nullptr;
  if (!isAvailable() || !succeeded(interface_->serviceInfoWithURI(textOf(uri), &info))) return nullptr;
  return std::make_unique<OwnedServiceInfo>(info, interface_->releaseServiceInfo);
}

std::unique_ptr<DeviceModelLibrary::Store> SharedObjectDeviceModelLibrary::registeredStoreForServiceInfo(
    const ServiceInfo* info) {
  QZVMStore* store = nullptr;
  if (info == nullptr) return nullptr;
  if (!succeeded(interface_->registeredStoreForServiceInfo(OwnedServiceInfo::handle(info), &store))) return nullptr;
  return std::make_unique<OwnedStore>(store, interface_->releaseStore);
}

std::unique_ptr<DeviceModelLibrary::Item> SharedObjectDeviceModelLibrary::itemForKey(const Store* store,
                                                                                     std::string_view key) {
  QZVMItem* item = nullptr;
  if (store == nullptr || !succeeded(interface_->itemForKey(OwnedStore::handle(store), textOf(key), &item))) {
    return nullptr;
  }
  return std::make_unique<OwnedItem>(item, interface_->releaseItem);
}

DeviceValue SharedObjectDeviceModelLibrary::representedObject(const Item* item) {
  QZVMValue* value = nullptr;
  if (item == nullptr || !succeeded(interface_->representedObject(OwnedItem::handle(item), &value))) return {};
  return takeValue(value);
}

DeviceValue SharedObjectDeviceModelLibrary::deviceFamilyName(const ServiceInfo* info) {
  QZVMValue* value = nullptr;
  if (info == nullptr || !succeeded(interface_->deviceFamilyName(OwnedServiceInfo::handle(info), &value))) return {};
  return takeValue(value);
}

DeviceValue SharedObjectDeviceModelLibrary::takeValue(QZVMValue* value) {
  const std::unique_ptr<QZVMValue, void (*)(QZVMValue*)> owner(value, interface_->releaseValue);
  return Reader(*interface_, valueBudget()).read(value);
}
