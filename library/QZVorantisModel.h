/* SPDX-License-Identifier: MIT */
#ifndef QZVORANTISMODEL_H
#define QZVORANTISMODEL_H

/*
 * The device-model library as the autosetup tool sees it on every system but macOS.
 *
 * A library is a shared object named libQZVorantisModel.so.1 that exports one function, QZVorantisModelInterface. The
 * tool opens it with the system's dynamic loader the first time that it needs device data; where it is found is the
 * loader's affair. Only when there is no file of that name does the run go on without a library. One that cannot be
 * loaded, whose function is missing, or returns null, a table of another interface version or a table with a missing
 * entry, makes the run fail.
 *
 * Texts are UTF-8 with a length in bytes; they need no terminating zero and may hold zero bytes. Whatever a function
 * gives through an `out` parameter belongs to the caller, who gives it back with the release function of its type.
 * Texts and values that are reached from a value belong to that value and live as long as it does.
 *
 * Texts and specs that are given to a function live for the length of the call. A store may be used as long as its
 * service information, an item as long as its store; a value lives until it is released. Release functions are never
 * given null. All texts must be UTF-8, and values nested at most 64 levels deep, or the caller's run fails.
 *
 * No exception may leave a function, and no function may end the process or write to standard output, which is the
 * finished PPD, or to standard error. The caller uses one thread. While it asks, it leads standard output nowhere, and
 * an exit() makes its run fail.
 */

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define QZVM_INTERFACE_VERSION 1u

/* What an operation answers. QZVM_ABSENT: there is no such thing. `out` is set, and never to null, with QZVM_OK only.
 */
typedef enum QZVMResult { QZVM_OK = 0, QZVM_ABSENT = 1, QZVM_FAILED = 2 } QZVMResult;

typedef struct QZVMText {
  const char* bytes; /* never null when size is not 0 */
  size_t size;
} QZVMText;

typedef struct QZVMServiceInfo QZVMServiceInfo; /* which device is meant */
typedef struct QZVMStore QZVMStore;             /* a device's data store */
typedef struct QZVMItem QZVMItem;               /* one item of a store */
typedef struct QZVMValue QZVMValue;             /* a value with everything in it */

typedef enum QZVMKind {
  QZVM_STRING = 1,
  QZVM_INTEGER = 2,  /* an int64_t */
  QZVM_UNSIGNED = 3, /* a uint64_t above INT64_MAX */
  QZVM_REAL = 4,     /* a double */
  QZVM_BOOLEAN = 5,
  QZVM_LIST = 6,
  QZVM_MAP = 7
} QZVMKind;

/* The properties of serviceInfoWithSpec; a null member is a property that is not given. */
typedef struct QZVMServiceInfoSpec {
  const QZVMText* uri;                        /* kURIProp */
  const QZVMText* modelName;                  /* kModelNameProp */
  const unsigned char* skipReachabilityCheck; /* kVMSkipReachabilityCheckProp: 0 or 1 */
} QZVMServiceInfoSpec;

typedef struct QZVMInterface {
  uint32_t interfaceVersion; /* QZVM_INTERFACE_VERSION */

  /* Whether serviceInfoWithSpec is offered: QZVM_OK, QZVM_ABSENT, or QZVM_FAILED. An older library has only
   * serviceInfoWithURI. */
  QZVMResult (*offersServiceInfoWithSpec)(void);
  QZVMResult (*serviceInfoWithSpec)(const QZVMServiceInfoSpec* spec, QZVMServiceInfo** out);
  QZVMResult (*serviceInfoWithURI)(QZVMText uri, QZVMServiceInfo** out);
  void (*releaseServiceInfo)(QZVMServiceInfo* info);

  /* The store registered for the device, its item for a key, and the item's represented object. */
  QZVMResult (*registeredStoreForServiceInfo)(const QZVMServiceInfo* info, QZVMStore** out);
  void (*releaseStore)(QZVMStore* store);
  QZVMResult (*itemForKey)(const QZVMStore* store, QZVMText key, QZVMItem** out);
  void (*releaseItem)(QZVMItem* item);
  QZVMResult (*representedObject)(const QZVMItem* item, QZVMValue** out);

  /* The device's identification string, from its status interface. */
  QZVMResult (*deviceFamilyName)(const QZVMServiceInfo* info, QZVMValue** out);

  /* Values. A function for one kind is called on values of that kind only; list elements and map entries are counted
     from 0 and never null: what is absent is left out. Keys are unique in a map. A value of a kind that is not listed
     above fails the caller's run. */
  void (*releaseValue)(QZVMValue* value);
  QZVMKind (*kind)(const QZVMValue* value);
  QZVMText (*stringValue)(const QZVMValue* value);
  int64_t (*integerValue)(const QZVMValue* value);
  uint64_t (*unsignedValue)(const QZVMValue* value);
  double (*realValue)(const QZVMValue* value);
  int (*booleanValue)(const QZVMValue* value);
  size_t (*count)(const QZVMValue* value); /* of a list or a map */
  const QZVMValue* (*elementAt)(const QZVMValue* list, size_t index);
  QZVMText (*keyAt)(const QZVMValue* map, size_t index);
  const QZVMValue* (*valueAt)(const QZVMValue* map, size_t index);

  /* What the last QZVM_FAILED was about, for people; valid until the next call. */
  QZVMText (*lastError)(void);
} QZVMInterface;

#if defined(__GNUC__)
#define QZVM_EXPORT __attribute__((visibility("default")))
#else
#define QZVM_EXPORT
#endif

/* The one exported function; the table lives as long as the library is loaded. */
QZVM_EXPORT const QZVMInterface* QZVorantisModelInterface(void);

#ifdef __cplusplus
}
#endif

#endif
