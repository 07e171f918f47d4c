// SPDX-License-Identifier: MIT
#include "capture/DeviceSnapshot.h"

#include <cmath>
#include <memory>
#include <nlohmann/json.hpp>

#include "base/ATException.h"
#include "readers/IATDataReader.h"

namespace {

using JSON = nlohmann::ordered_json;
using Info = std::unique_ptr<DeviceModelLibrary::ServiceInfo>;

JSON of(const DeviceValue& value);

JSON ofNumber(double number) {
  if (!std::isfinite(number)) throw ATException::wrongType("a number that JSON cannot hold");
  return number;
}

JSON ofMap(const DeviceMap& map) {
  JSON object = JSON::object();
  for (const auto& [key, member] : map.entries()) object[key] = of(member);
  return object;
}

JSON ofList(const DeviceValue::List& list) {
  JSON array = JSON::array();
  for (const DeviceValue& element : list) array.push_back(of(element));
  return array;
}

JSON of(const DeviceValue& value) {
  if (const auto* text = value.text()) return *text;
  if (const auto* integer = value.integer()) return *integer;
  if (const auto* integer = value.unsignedInteger()) return *integer;
  if (const auto* number = value.real()) return ofNumber(*number);
  if (const auto* flag = value.flag()) return *flag;
  if (const auto list = value.list()) return ofList(*list);
  if (const auto map = value.map()) return ofMap(*map);
  return nullptr;
}

// A device as the service information names it: an absent model name is the empty one.
JSON deviceNamed(const std::string& uri, const std::optional<std::string>& modelName) {
  return {{"uri", uri}, {"modelName", modelName.value_or("")}};
}

class Capture {
 public:
  Capture(DeviceModelLibrary& library, const std::string& uri) : library_(library), uri_(uri) {}

  JSON devices(const std::optional<std::string>& modelName) {
    JSON devices = JSON::array();
    const bool asksWithModelName = library_.offersServiceInfoWithSpec() && modelName && !modelName->empty();
    JSON unnamed = deviceNamed(uri_, std::nullopt);
    if (asksWithModelName) {
      JSON named = deviceNamed(uri_, modelName);
      addDataStore(named, infoFor(modelName));
      devices.push_back(std::move(named));
    } else {
      addDataStore(unnamed, infoFor(std::nullopt));
    }
    // The family is always asked for without a model name.
    addFamilyName(unnamed, infoFor(std::nullopt));
    devices.push_back(std::move(unnamed));
    return devices;
  }

 private:
  Info infoFor(const std::optional<std::string>& modelName) {
    if (!library_.offersServiceInfoWithSpec()) return library_.serviceInfoWithURI(uri_);
    DeviceModelLibrary::ServiceInfoSpec spec;
    if (!uri_.empty()) spec.uri = uri_;
    spec.modelName = modelName;
    return library_.serviceInfoWithSpec(spec);
  }

  void addDataStore(JSON& device, const Info& info) {
    const auto store = library_.registeredStoreForServiceInfo(info.get());
    if (store == nullptr) return;
    device["dataStore"] = JSON::object();
    const auto item = library_.itemForKey(store.get(), VMCustomMediaStorage);
    if (item != nullptr) device["dataStore"][VMCustomMediaStorage] = of(library_.representedObject(item.get()));
  }

  void addFamilyName(JSON& device, const Info& info) {
    const DeviceValue familyName = library_.deviceFamilyName(info.get());
    if (!familyName.isAbsent()) device["deviceFamilyName"] = of(familyName);
  }

  DeviceModelLibrary& library_;
  const std::string& uri_;
};

}  // namespace

std::string DeviceSnapshot::of(DeviceModelLibrary& library, const std::string& uri,
                               const std::optional<std::string>& modelName) {
  if (!library.isAvailable()) throw ATException::libraryFailure("the device-model library is not there");
  const JSON snapshot = {{"format", "vorantis-device-snapshot"},
                         {"formatVersion", 1},
                         {"offersServiceInfoWithSpec", library.offersServiceInfoWithSpec()},
                         {"devices", Capture(library, uri).devices(modelName)}};
  return snapshot.dump(2) + "\n";
}
