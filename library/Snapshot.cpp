// SPDX-License-Identifier: MIT
#include "library/Snapshot.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace snapshot {
namespace {

constexpr std::size_t kLargestFile = 64U << 20U;

[[noreturn]] void fail(const std::string& member, const char* expected) {
  throw Error("member \"" + member + "\": " + expected);
}

std::optional<std::string> optionalString(const Value& object, const char* name) {
  const Value* value = object.member(name);
  if (value == nullptr) return std::nullopt;
  if (value->string() == nullptr) fail(name, "a string is expected");
  return *value->string();
}

Device deviceFrom(Value& value) {
  if (value.object() == nullptr) fail("devices", "every device must be an object");
  Device device;
  device.uri = optionalString(value, "uri");
  device.modelName = optionalString(value, "modelName");
  if (auto name = optionalString(value, "deviceFamilyName")) device.familyName = Value{std::move(*name)};
  if (Value* store = value.member("dataStore")) {
    if (store->object() == nullptr) fail("dataStore", "an object is expected");
    device.dataStore = std::move(*std::get_if<Value::Object>(&store->value));
  }
  return device;
}

void checkFormat(const Value& root) {
  if (root.object() == nullptr) throw Error("the snapshot must be an object");
  if (optionalString(root, "format") != "vorantis-device-snapshot")
    fail("format", "\"vorantis-device-snapshot\" is expected");
  const Value* version = root.member("formatVersion");
  const auto* number = version == nullptr ? nullptr : std::get_if<std::int64_t>(&version->value);
  if (number == nullptr || *number != 1) fail("formatVersion", "1 is expected");
}

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

std::string contentsOf(const std::string& path) {
  const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rb"));
  if (file == nullptr) throw Error(std::string("cannot be opened: ") + std::strerror(errno));
  std::string contents;
  char buffer[64 * 1024];
  for (std::size_t size; (size = std::fread(buffer, 1, sizeof buffer, file.get())) > 0;) {
    contents.append(buffer, size);
    if (contents.size() > kLargestFile) throw Error("larger than 64 MiB");
  }
  if (std::ferror(file.get()) != 0) throw Error(std::string("cannot be read: ") + std::strerror(errno));
  return contents;
}

}  // namespace

const Value* Value::member(std::string_view name) const {
  return const_cast<Value*>(this)->member(name);
}

Value* Value::member(std::string_view name) {
  auto* members = std::get_if<Object>(&value);
  if (members == nullptr) return nullptr;
  for (auto& [key, memberValue] : *members) {
    if (key == name) return &memberValue;
  }
  return nullptr;
}

const Device* Snapshot::deviceFor(std::string_view uri, std::string_view modelName) const {
  for (const Device& device : devices) {
    const bool uriMatches = !device.uri || *device.uri == uri;
    const bool modelNameMatches = !device.modelName || *device.modelName == modelName;
    if (uriMatches && modelNameMatches) return &device;
  }
  return nullptr;
}

Snapshot Snapshot::fromJSON(std::string_view text) {
  Value root = parseJSON(text);
  checkFormat(root);
  Snapshot snapshot;
  if (const Value* offers = root.member("offersServiceInfoWithSpec")) {
    const bool* flag = std::get_if<bool>(&offers->value);
    if (flag == nullptr) fail("offersServiceInfoWithSpec", "true or false is expected");
    snapshot.offersServiceInfoWithSpec = *flag;
  }
  Value* devices = root.member("devices");
  if (devices == nullptr || devices->array() == nullptr) fail("devices", "a list is expected");
  for (Value& device : *std::get_if<Value::Array>(&devices->value)) snapshot.devices.push_back(deviceFrom(device));
  return snapshot;
}

Snapshot Snapshot::fromFile(const std::string& path) {
  return fromJSON(contentsOf(path));
}

Snapshot Snapshot::withEmptyStoresFromFile(const std::string& path) {
  constexpr std::size_t kDevice = 3;  // the snapshot, its list of devices, a device
  const std::string text = contentsOf(path);
  try {
    return fromJSON(withoutDeeperThan(kDevice, text));
  } catch (const Error&) {
    return fromJSON(text);  // fails, too, and knows the line
  }
}

}  // namespace snapshot
