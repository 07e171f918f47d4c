/* SPDX-License-Identifier: MIT */
/*
 * A device-model library of one's own, to start from: every device that is asked for has one custom medium. A real one
 * asks the device where this one answers with constants. Built as the tool looks for it:
 *
 *   cc -shared -fPIC $(pkg-config --cflags qzvorantismodel) OneMedium.c -o libQZVorantisModel.so.1
 */
#include <QZVorantisModel.h>
#include <string.h>

/* The values of this library are strings and maps. They are constants: releasing one does nothing. */
struct QZVMValue {
  QZVMKind kind;
  const char* string;
  size_t count;
  const char* const* keys;
  const QZVMValue* const* values;
};

#define STRING(text) {QZVM_STRING, text, 0, NULL, NULL}
#define MAP(keys, values) {QZVM_MAP, NULL, sizeof(keys) / sizeof(keys[0]), keys, values}

static const QZVMValue name = STRING("My Canvas");
static const QZVMValue mediumID = STRING("4711");
static const QZVMValue categoryName = STRING("Custom");
static const QZVMValue categoryID = STRING("CUSTOM");
static const QZVMValue noProfiles = {QZVM_LIST, NULL, 0, NULL, NULL};
static const QZVMValue parentID = STRING("1001");
static const char* const mediumKeys[] = {"Name", "MediumID", "CategoryName", "CategoryID", "ICCProfiles", "ParentID"};
static const QZVMValue* const mediumValues[] = {&name, &mediumID, &categoryName, &categoryID, &noProfiles, &parentID};
static const QZVMValue medium = MAP(mediumKeys, mediumValues);

static const char* const mediaKeys[] = {"4711"};
static const QZVMValue* const mediaValues[] = {&medium};
static const QZVMValue media = MAP(mediaKeys, mediaValues);

static const QZVMValue version = STRING("1");
static const char* const storageKeys[] = {"MediumListVersion", "MediaInfo"};
static const QZVMValue* const storageValues[] = {&version, &media};
static const QZVMValue storage = MAP(storageKeys, storageValues);

static const QZVMValue family = STRING("Z9");

/* There is one device with one store, which has one item; their addresses are all that is needed of them. */
struct QZVMServiceInfo {
  int unused;
};
struct QZVMStore {
  int unused;
};
struct QZVMItem {
  int unused;
};
static QZVMServiceInfo theDevice;
static QZVMStore theStore;
static QZVMItem theItem;

static QZVMResult offersServiceInfoWithSpec(void) { return QZVM_OK; }

static QZVMResult serviceInfoWithSpec(const QZVMServiceInfoSpec* spec, QZVMServiceInfo** out) {
  (void)spec;
  *out = &theDevice;
  return QZVM_OK;
}

static QZVMResult serviceInfoWithURI(QZVMText uri, QZVMServiceInfo** out) {
  (void)uri;
  *out = &theDevice;
  return QZVM_OK;
}

static void releaseServiceInfo(QZVMServiceInfo* info) { (void)info; }

static QZVMResult registeredStoreForServiceInfo(const QZVMServiceInfo* info, QZVMStore** out) {
  (void)info;
  *out = &theStore;
  return QZVM_OK;
}

static void releaseStore(QZVMStore* store) { (void)store; }

static QZVMResult itemForKey(const QZVMStore* store, QZVMText key, QZVMItem** out) {
  static const char known[] = "VMCustomMediaStorage";
  (void)store;
  if (key.size != sizeof known - 1 || memcmp(key.bytes, known, key.size) != 0) return QZVM_ABSENT;
  *out = &theItem;
  return QZVM_OK;
}

static void releaseItem(QZVMItem* item) { (void)item; }

static QZVMResult representedObject(const QZVMItem* item, QZVMValue** out) {
  (void)item;
  *out = (QZVMValue*)&storage;
  return QZVM_OK;
}

static QZVMResult deviceFamilyName(const QZVMServiceInfo* info, QZVMValue** out) {
  (void)info;
  *out = (QZVMValue*)&family;
  return QZVM_OK;
}

static QZVMText textOf(const char* string) {
  const QZVMText text = {string, strlen(string)};
  return text;
}

static void releaseValue(QZVMValue* value) { (void)value; }
static QZVMKind kind(const QZVMValue* value) { return value->kind; }
static QZVMText stringValue(const QZVMValue* value) { return textOf(value->string); }
static size_t count(const QZVMValue* value) { return value->count; }
static QZVMText keyAt(const QZVMValue* map, size_t index) { return textOf(map->keys[index]); }
static const QZVMValue* valueAt(const QZVMValue* map, size_t index) { return map->values[index]; }

/* Never called here, since no value is of these kinds; a table without them is refused. */
static int64_t integerValue(const QZVMValue* value) { (void)value; return 0; }
static uint64_t unsignedValue(const QZVMValue* value) { (void)value; return 0; }
static double realValue(const QZVMValue* value) { (void)value; return 0; }
static int booleanValue(const QZVMValue* value) { (void)value; return 0; }
static const QZVMValue* elementAt(const QZVMValue* list, size_t index) { (void)index; return list; }

/* Nothing here fails; a library that asks a device says here what went wrong. */
static QZVMText lastError(void) { return textOf(""); }

const QZVMInterface* QZVorantisModelInterface(void) {
  static const QZVMInterface table = {
      .interfaceVersion = QZVM_INTERFACE_VERSION,
      .offersServiceInfoWithSpec = offersServiceInfoWithSpec,
      .serviceInfoWithSpec = serviceInfoWithSpec,
      .serviceInfoWithURI = serviceInfoWithURI,
      .releaseServiceInfo = releaseServiceInfo,
      .registeredStoreForServiceInfo = registeredStoreForServiceInfo,
      .releaseStore = releaseStore,
      .itemForKey = itemForKey,
      .releaseItem = releaseItem,
      .representedObject = representedObject,
      .deviceFamilyName = deviceFamilyName,
      .releaseValue = releaseValue,
      .kind = kind,
      .stringValue = stringValue,
      .integerValue = integerValue,
      .unsignedValue = unsignedValue,
      .realValue = realValue,
      .booleanValue = booleanValue,
      .count = count,
      .elementAt = elementAt,
      .keyAt = keyAt,
      .valueAt = valueAt,
      .lastError = lastError,
  };
  return &table;
}
