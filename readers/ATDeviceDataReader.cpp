// SPDX-License-Identifier: MIT
#include "readers/ATDeviceDataReader.h"

#include <utility>

#include "readers/ATCustomMediaTypesReaderImpl.h"
#include "readers/ATDeviceFamilyNameReaderImpl.h"

ATDeviceDataReader::Implementations& ATDeviceDataReader::implementations() {
  static Implementations implementations;
  return implementations;
}

void ATDeviceDataReader::registerImpl(ImplKind kind, std::string_view forKey) {
  implementations().insert_or_assign(std::string(forKey), std::move(kind));
}

void registerReaderImplementations() {
  ATDeviceDataReader::registerImpl(std::make_unique<ATDeviceFamilyNameReaderImpl>, VMCustomMediaStorage);
  ATDeviceDataReader::registerImpl(std::make_unique<ATCustomMediaTypesReaderImpl>, VMCustomMediaStorage);
}

ATDeviceDataReader::ATDeviceDataReader(std::string deviceURI, std::optional<std::string> modelName)
    : deviceURI_(std::move(deviceURI)), modelName_(std::move(modelName)) {}

std::unique_ptr<ATDeviceDataReader> ATDeviceDataReader::initWithDeviceURI(const std::optional<std::string>& deviceURI,
                                                                          const std::optional<std::string>& modelName) {
  if (!deviceURI || deviceURI->empty()) return nullptr;
  return std::unique_ptr<ATDeviceDataReader>(new ATDeviceDataReader(*deviceURI, modelName));
}

std::unique_ptr<IATReaderImpl> ATDeviceDataReader::implementationForKey(std::string_view key) {
  const auto found = implementations().find(key);
  return found == implementations().end() ? nullptr : found->second();
}

DeviceValue ATDeviceDataReader::dataForKey(std::string_view key) const {
  const auto implementation = implementationForKey(key);
  return implementation ? implementation->dataFromDevice(deviceURI_, modelName_) : DeviceValue();
}

DeviceValue ATDeviceDataReader::familyNameForKey(std::string_view key) const {
  const auto implementation = implementationForKey(key);
  return implementation ? implementation->familyNameFromDevice(deviceURI_) : DeviceValue();
}
