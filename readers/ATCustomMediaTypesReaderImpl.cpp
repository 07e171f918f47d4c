// SPDX-License-Identifier: MIT
#include "readers/ATCustomMediaTypesReaderImpl.h"

#include <array>
#include <memory>
#include <utility>

#include "base/ATException.h"
#include "base/ATLog.h"
#include "readers/DeviceModelLibrary.h"
#include "readers/IATDataReader.h"
#include "readers/MediaKeys.h"

namespace {

constexpr const char* kSignature = "-[ATCustomMediaTypesReaderImpl dataFromDevice:modelName:]";

// The beginning of a record, by record key and store key; it ends at the first value that the store item lacks.
constexpr std::array<std::pair<const char*, const char*>, 5> kRecordBeginning = {{
    {MediaKey::name, StoreKey::name},
    {MediaKey::ID, StoreKey::ID},
    {MediaKey::categoryName, StoreKey::categoryName},
    {MediaKey::categoryID, StoreKey::categoryID},
    {MediaKey::profiles, StoreKey::profiles},
}};

std::unique_ptr<DeviceModelLibrary::ServiceInfo> serviceInfo(DeviceModelLibrary& library, const std::string& uri,
                                                             const std::optional<std::string>& modelName) {
  auto made = library.serviceInfoForDevice(uri, modelName);
  if (made.withSpec) {
    ATLog(kSignature, "Service info was created using serviceInfoWithSpec, URI is {}, model name is {}", uri,
          modelName);
  } else {
    ATLog(kSignature, "Service info was created using serviceInfoWithURI:");
  }
  return std::move(made.info);
}

DeviceValue storedMedia(DeviceModelLibrary& library, const DeviceModelLibrary::ServiceInfo* info) {
  const auto store = library.registeredStoreForServiceInfo(info);
  const auto item = library.itemForKey(store.get(), VMCustomMediaStorage);
  return library.representedObject(item.get());
}

DeviceValue recordOfItem(const DeviceValue& item) {
  auto record = std::make_shared<DeviceMap>();
  for (const auto& [recordKey, storeKey] : kRecordBeginning) {
    DeviceValue value = item.valueForKey(storeKey);
    if (value.isAbsent()) break;
    record->add(recordKey, std::move(value));
  }
  record->set(MediaKey::parentID, item.valueForKey(StoreKey::parentID));
  record->set(MediaKey::defaultGloss, item.valueForKey(StoreKey::properties).valueForKey(StoreKey::defaultGloss));
  return record;
}

DeviceValue mediaList(const DeviceValue& media) {
  auto list = std::make_shared<DeviceValue::List>();
  if (const auto items = media.map()) {
    list->reserve(items->size());
    for (const auto& [key, item] : items->entries()) list->push_back(recordOfItem(item));
  }
  return list;
}

}  // namespace

DeviceValue ATCustomMediaTypesReaderImpl::dataFromDevice(const std::string& deviceURI,
                                                         const std::optional<std::string>& modelName) {
  auto result = std::make_shared<DeviceMap>();
  DeviceModelLibrary& library = DeviceModelLibrary::defaultLibrary();
  if (!library.isAvailable()) {
    ATLog(kSignature, "QZVorantisModel framework is not loaded");
    return result;
  }
  const auto info = serviceInfo(library, deviceURI, modelName);
  const DeviceValue stored = storedMedia(library, info.get());
  const DeviceValue media = stored.valueForKey(StoreKey::media);
  const DeviceValue version = stored.valueForKey(StoreKey::listVersion);

  ATLog(kSignature, "Media list version in VMF DataStore {}", version.description());
  if (!media.isAbsent() && media.map() == nullptr) throw ATException::wrongType("\"MediaInfo\" is no map");
  ATLog(kSignature, "Found {} custom media in VMF DataStore", media.map() ? static_cast<int>(media.map()->size()) : 0);
  ATLog(kSignature, "Media dictionary from DataStore: {}", media.description());

  result->set(MediaKey::listVersion, version);
  result->set(MediaKey::list, mediaList(media));
  return result;
}

DeviceValue ATCustomMediaTypesReaderImpl::dataFromPPD(ppd_file_s* /*ppd*/) {
  return {};
}
