// SPDX-License-Identifier: MIT
//
// The stored device-model library: answers the questions of QZVorantisModel.h from a device snapshot, the JSON file
// that the environment variable QZVORANTISMODEL_SNAPSHOT names, instead of from a printer. The file is read once, at
// the first operation. What is wrong with it goes to the file named by QZVORANTISMODEL_LOG, when that is set.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <optional>
#include <string>

#include "library/QZVorantisModel.h"
#include "library/Snapshot.h"

using snapshot::Device;
using snapshot::Snapshot;
using snapshot::Value;

struct QZVMServiceInfo {
  const Device* device;  // null when no device of the snapshot matches
};
struct QZVMStore {
  const Value::Object* items;
};
struct QZVMItem {
  const Value* representedObject;
};

namespace {

std::string lastErrorText;

// A variable of the environment; empty when it is unset, or the process has rights that its caller has not.
const char* setting(const char* name) {
#ifdef __APPLE__
  const char* value = issetugid() != 0 ? nullptr : std::getenv(name);
#else
  const char* value = secure_getenv(name);
#endif
  return value == nullptr ? "" : value;
}

// The file must be there, a regular one and no link: the process may be root's.
void writeDiagnostics(const std::string& message) {
  const int descriptor =
      open(setting("QZVORANTISMODEL_LOG"), O_WRONLY | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return;
  struct stat status;
  std::FILE* file = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) ? fdopen(descriptor, "a") : nullptr;
  if (file == nullptr) {
    close(descriptor);
    return;
  }
  std::fprintf(file, "%s\n", message.c_str());
  std::fclose(file);
}

Snapshot loadSnapshot() {
  const char* path = setting("QZVORANTISMODEL_SNAPSHOT");
  if (*path == '\0') return {};
  try {
    return Snapshot::fromFile(path);
  } catch (const snapshot::Error& error) {
    throw snapshot::Error(std::string(path) + ": " + error.what());
  }
}

// The snapshot, read at the first call. A snapshot that cannot be used fails every call, and is not read again.
const Snapshot& theSnapshot() {
  static std::optional<Snapshot> snapshot;
  static std::optional<snapshot::Error> error;
  if (error) throw snapshot::Error(*error);
  if (snapshot) return *snapshot;
  try {
    snapshot = loadSnapshot();
  } catch (const snapshot::Error& failure) {
    error = failure;
    writeDiagnostics(failure.what());
    throw;
  }
  return *snapshot;
}

void keepError(const char* text) noexcept {
  try {
    lastErrorText = text;
  } catch (...) {
    lastErrorText.clear();
  }
}

// Runs one operation so that no exception leaves the library.
template <class Operation>
QZVMResult guarded(Operation operation) noexcept {
  try {
    return operation();
  } catch (const std::exception& error) {
    keepError(error.what());
  } catch (...) {
    keepError("an error of an unknown kind");
  }
  return QZVM_FAILED;
}

std::string stringOf(QZVMText text) {
  return text.size == 0 ? std::string() : std::string(text.bytes, text.size);
}

QZVMText textOf(const std::string& string) {
  return {string.data(), string.size()};
}

const Value& valueOf(const QZVMValue* value) {
  return *reinterpret_cast<const Value*>(value);
}

const QZVMValue* handleOf(const Value& value) {
  return reinterpret_cast<const QZVMValue*>(&value);
}

QZVMResult giveServiceInfo(const std::string& uri, const std::string& modelName, QZVMServiceInfo** out) {
  *out = new QZVMServiceInfo{theSnapshot().deviceFor(uri, modelName)};
  return QZVM_OK;
}

// Values are lent out of the snapshot: they never change, and they live as long as the process.
QZVMResult lendValue(const Value& value, QZVMValue** out) {
  *out = const_cast<QZVMValue*>(handleOf(value));
  return QZVM_OK;
}

QZVMResult offersServiceInfoWithSpec() {
  return guarded([] { return theSnapshot().offersServiceInfoWithSpec ? QZVM_OK : QZVM_ABSENT; });
}

QZVMResult serviceInfoWithSpec(const QZVMServiceInfoSpec* spec, QZVMServiceInfo** out) {
  return guarded([=] {
    const std::string uri = spec->uri == nullptr ? std::string() : stringOf(*spec->uri);
    const std::string modelName = spec->modelName == nullptr ? std::string() : stringOf(*spec->modelName);
    return giveServiceInfo(uri, modelName, out);
  });
}

QZVMResult serviceInfoWithURI(QZVMText uri, QZVMServiceInfo** out) {
  return guarded([=] { return giveServiceInfo(stringOf(uri), "", out); });
}

QZVMResult registeredStoreForServiceInfo(const QZVMServiceInfo* info, QZVMStore** out) {
  return guarded([=] {
    if (info->device == nullptr || !info->device->dataStore) return QZVM_ABSENT;
    *out = new QZVMStore{&*info->device->dataStore};
    return QZVM_OK;
  });
}

// An item whose represented object is null is not in the snapshot's values at all: the same as no item.
QZVMResult itemForKey(const QZVMStore* store, QZVMText key, QZVMItem** out) {
  return guarded([=] {
    const std::string name = stringOf(key);
    for (const auto& [itemKey, representedObject] : *store->items) {
      if (itemKey != name) continue;
      *out = new QZVMItem{&representedObject};
      return QZVM_OK;
    }
    return QZVM_ABSENT;
  });
}

QZVMResult representedObject(const QZVMItem* item, QZVMValue** out) {
  return guarded([=] { return lendValue(*item->representedObject, out); });
}

QZVMResult deviceFamilyName(const QZVMServiceInfo* info, QZVMValue** out) {
  return guarded([=] {
    if (info->device == nullptr || !info->device->familyName) return QZVM_ABSENT;
    return lendValue(*info->device->familyName, out);
  });
}

struct KindOf {
  QZVMKind operator()(const std::string& /*text*/) const { return QZVM_STRING; }
  QZVMKind operator()(std::int64_t /*number*/) const { return QZVM_INTEGER; }
  QZVMKind operator()(std::uint64_t /*number*/) const { return QZVM_UNSIGNED; }
  QZVMKind operator()(double /*number*/) const { return QZVM_REAL; }
  QZVMKind operator()(bool /*flag*/) const { return QZVM_BOOLEAN; }
  QZVMKind operator()(const Value::Array& /*list*/) const { return QZVM_LIST; }
  QZVMKind operator()(const Value::Object& /*map*/) const { return QZVM_MAP; }
};

template <class Type>
const Type& contentOf(const QZVMValue* value) {
  return *std::get_if<Type>(&valueOf(value).value);
}

std::size_t countOf(const QZVMValue* value) {
  const auto* list = valueOf(value).array();
  return list != nullptr ? list->size() : contentOf<Value::Object>(value).size();
}

constexpr QZVMInterface kInterface = {
    QZVM_INTERFACE_VERSION,
    offersServiceInfoWithSpec,
    serviceInfoWithSpec,
    serviceInfoWithURI,
    [](QZVMServiceInfo* info) { delete info; },
    registeredStoreForServiceInfo,
    [](QZVMStore* store) { delete store; },
    itemForKey,
    [](QZVMItem* item) { delete item; },
    representedObject,
    deviceFamilyName,
    [](QZVMValue* /*value*/) {},
    [](const QZVMValue* value) { return std::visit(KindOf(), valueOf(value).value); },
    [](const QZVMValue* value) { return textOf(contentOf<std::string>(value)); },
    [](const QZVMValue* value) { return contentOf<std::int64_t>(value); },
    [](const QZVMValue* value) { return contentOf<std::uint64_t>(value); },
    [](const QZVMValue* value) { return contentOf<double>(value); },
    [](const QZVMValue* value) { return contentOf<bool>(value) ? 1 : 0; },
    countOf,
    [](const QZVMValue* list, std::size_t index) { return handleOf(contentOf<Value::Array>(list)[index]); },
    [](const QZVMValue* map, std::size_t index) { return textOf(contentOf<Value::Object>(map)[index].key); },
    [](const QZVMValue* map, std::size_t index) { return handleOf(contentOf<Value::Object>(map)[index].value); },
    [] { return textOf(lastErrorText); },
};

}  // namespace

const QZVMInterface* QZVorantisModelInterface(void) {
  return &kInterface;
}
