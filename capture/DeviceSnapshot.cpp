// SPDX-License-Identifier: MIT
#include "capture/DeviceSnapshot.h"

#include <cmath>
#include <memory>
#include <nlohmann/json.hpp>

#include "base/ATException.h"
#include "readers/IATDataReader.h"
#include "readers/LibraryQuestion.h"

namespace {

using JSON = nlohmann::ordered_json;
using Info = std::unique_ptr<DeviceModelLibrary::ServiceInfo>;

JSON ofNumber(double number) {
  if (!std::isfinite(number)) throw ATException::wrongType("a number that JSON cannot hold");
  return number;
}

// Makes JSON of values, and notes what has to be left out.
class Converter {
 public:
  explicit Converter(std::vector<std::string>& leftOut) : leftOut_(leftOut) {}

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

 private:
  JSON ofMap(const DeviceMap& map) {
    JSON::object_t object;
    for (std::size_t index = 0; index < map.size(); ++index) {
      const auto& [key, member] = map.entries()[index];
      if (map.isOtherKey(index)) {
        leftOut_.push_back("a member whose key is no text: " + key);
      } else if (member.isOfOtherKind()) {
        leftOut_.push_back("the member \"" + key + "\": " + member.description());
      } else {
        object.emplace_back(key, of(member));  // keys are unique: no look-up for each
      }
    }
    return object;
  }

  JSON ofList(const DeviceValue::List& list) {
    JSON array = JSON::array();
    for (const DeviceValue& element : list) {
      if (element.isOfOtherKind()) {
        leftOut_.push_back("an element of a list: " + element.description());
      } else {
        array.push_back(of(element));
      }
    }
    return array;
  }

  std::vector<std::string>& leftOut_;
};

// A device as the service information names it: an absent model name is the empty one.
JSON deviceNamed(const std::string& uri, const std::optional<std::string>& modelName) {
  return {{"uri", uri}, {"modelName", modelName.value_or("")}};
}

class Capture {
 public:
  Capture(DeviceModelLibrary& library, const std::string& uri, DeviceSnapshot::Captured& captured)
      : library_(library), uri_(uri), captured_(captured), converter_(captured.leftOut) {}

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
    return library_.serviceInfoForDevice(uri_, modelName).info;
  }

  void addDataStore(JSON& device, const Info& info) {
    const auto store = library_.registeredStoreForServiceInfo(info.get());
    if (store == nullptr) {
      captured_.missing = "no device, or none with a data store, is known by this URI and model name";
      return;
    }
    device["dataStore"] = JSON::object();
    const auto item = library_.itemForKey(store.get(), VMCustomMediaStorage);
    if (item == nullptr) {
      captured_.missing = "the device's data store has no custom media";
      return;
    }
    device["dataStore"][VMCustomMediaStorage] = converter_.of(library_.representedObject(item.get()));
  }

  void addFamilyName(JSON& device, const Info& info) {
    const DeviceValue familyName = library_.deviceFamilyName(info.get());
    if (!familyName.isAbsent()) device["deviceFamilyName"] = converter_.of(familyName);
  }

  DeviceModelLibrary& library_;
  const std::string& uri_;
  DeviceSnapshot::Captured& captured_;
  Converter converter_;
};

}  // namespace

DeviceSnapshot::Captured DeviceSnapshot::of(DeviceModelLibrary& library, const std::string& uri,
                                            const std::optional<std::string>& modelName) {
  const LibraryQuestion question;
  if (!library.isAvailable()) throw ATException::libraryFailure("the device-model library is not there");
  Captured captured;
  const JSON snapshot = {{"format", "vorantis-device-snapshot"},
                         {"formatVersion", 1},
                         {"offersServiceInfoWithSpec", library.offersServiceInfoWithSpec()},
                         {"devices", Capture(library, uri, captured).devices(modelName)}};
  captured.json = snapshot.dump(2) + "\n";
  return captured;
}
