/* SPDX-License-Identifier: MIT */
/*
 * The device-model framework for tests: the classes that macOS has, answering from the device snapshot that the stored
 * library reads. What AVM_WITHOUT_... names at compile time is not there at all.
 */
#import "tests/framework/QZVorantisModel.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "library/QZVorantisModel.h"
#import "tests/framework/TestObjects.h"

#define EXPORTED __attribute__((visibility("default")))

#ifndef AVM_WITHOUT_URI_KEY
EXPORTED NSString* const kURIProp = @"AVMServiceURI";
#else
static NSString* const kURIProp = @"not exported: URI";
#endif
#ifndef AVM_WITHOUT_MODEL_NAME_KEY
EXPORTED NSString* const kModelNameProp = @"AVMServiceModelName";
#else
static NSString* const kModelNameProp = @"not exported: model name";
#endif
#ifndef AVM_WITHOUT_SKIP_KEY
EXPORTED NSString* const kVMSkipReachabilityCheckProp = @"AVMServiceSkipReachabilityCheck";
#else
static NSString* const kVMSkipReachabilityCheckProp = @"not exported: skip";
#endif

/* How many objects of the framework there are, and what the last service information was made with, for tests. */
static long liveObjects;
static char lastSpec[1000];
EXPORTED long AVMTestLiveObjects(void);
EXPORTED const char* AVMTestLastSpec(void);
long AVMTestLiveObjects(void) {
  return liveObjects;
}
const char* AVMTestLastSpec(void) {
  return lastSpec;
}

static QZVMText textOf(NSString* string) {
  NSData* bytes = [string dataUsingEncoding:NSUTF8StringEncoding];
  return (QZVMText){[bytes bytes], [bytes length]};
}

static NSString* stringOf(QZVMText text) {
  return [[[NSString alloc] initWithBytes:text.bytes length:text.size encoding:NSUTF8StringEncoding] autorelease];
}

/* Whether the stored library gives something; its failures are exceptions here. */
static BOOL gives(QZVMResult result) {
  if (result == QZVM_FAILED) {
    [NSException raise:@"AVMSnapshotException" format:@"%@", stringOf(QZVorantisModelInterface()->lastError())];
  }
  return result == QZVM_OK;
}

static id objectOf(const QZVMValue* value);

static NSArray* arrayOf(const QZVMValue* list) {
  const QZVMInterface* library = QZVorantisModelInterface();
  NSMutableArray* array = [NSMutableArray array];
  for (size_t index = 0; index < library->count(list); ++index)
    [array addObject:objectOf(library->elementAt(list, index))];
  return array;
}

static NSDictionary* dictionaryOf(const QZVMValue* map) {
  const QZVMInterface* library = QZVorantisModelInterface();
  NSMutableArray* keys = [NSMutableArray array];
  NSMutableArray* members = [NSMutableArray array];
  for (size_t index = 0; index < library->count(map); ++index) {
    [keys addObject:stringOf(library->keyAt(map, index))];
    [members addObject:objectOf(library->valueAt(map, index))];
  }
  return [AVMOrderedDictionary dictionaryWithMembers:members inOrderOf:keys];
}

static id objectOf(const QZVMValue* value) {
  const QZVMInterface* library = QZVorantisModelInterface();
  switch (library->kind(value)) {
    case QZVM_STRING:
      return stringOf(library->stringValue(value));
    case QZVM_INTEGER:
      return [NSNumber numberWithLongLong:library->integerValue(value)];
    case QZVM_UNSIGNED:
      return [NSNumber numberWithUnsignedLongLong:library->unsignedValue(value)];
    case QZVM_REAL:
      return [NSNumber numberWithDouble:library->realValue(value)];
    case QZVM_BOOLEAN:
      return [NSNumber numberWithBool:library->booleanValue(value) ? YES : NO];
    case QZVM_LIST:
      return arrayOf(value);
    case QZVM_MAP:
      return dictionaryOf(value);
  }
  return nil;
}

/* A property of a spec, which must be of the class that the framework asks for. */
static id propertyOf(NSDictionary* spec, NSString* key, Class kind) {
  id property = [spec objectForKey:key];
  if (property != nil && ![property isKindOfClass:kind]) {
    [NSException raise:NSInvalidArgumentException format:@"%@ is of the class %@", key, [property class]];
  }
  return property;
}

/* The spec as "key=value" lines, booleans as "true" and "false", and the number of its keys. Not sorted by Foundation:
   GNUstep's sorting asks for the process' arguments, which need not be text. */
static void keepSpec(NSDictionary* spec) {
  NSMutableString* text = [NSMutableString string];
  NSString* const keys[] = {kURIProp, kModelNameProp, kVMSkipReachabilityCheckProp};
  for (size_t index = 0; index < 3; ++index) {
    id value = [spec objectForKey:keys[index]];
    if ([value class] == [[NSNumber numberWithBool:YES] class]) value = [value boolValue] ? @"true" : @"false";
    if (value != nil) [text appendFormat:@"%@=%@\n", keys[index], value];
  }
  [text appendFormat:@"%u keys", (unsigned)[spec count]];
  snprintf(lastSpec, sizeof lastSpec, "%s", [text UTF8String]);
}

/* As strict as a framework may be: what is no service information of its own is an exception. */
static QZVMServiceInfo* handleOf(AVMServiceInfo* info) {
  if (![info isKindOfClass:NSClassFromString(@"AVMServiceInfo")]) {
    [NSException raise:NSInvalidArgumentException format:@"no service information: %@", [info class]];
  }
#ifdef AVM_WITHOUT_SERVICE_INFO
  return NULL; /* nobody has one */
#else
  return info->handle_;
#endif
}

#ifndef AVM_WITHOUT_SERVICE_INFO
@implementation AVMServiceInfo
+ (AVMServiceInfo*)infoWithHandle:(QZVMServiceInfo*)handle {
  AVMServiceInfo* info = [[[self alloc] init] autorelease];
  info->handle_ = handle;
  ++liveObjects;
  return info;
}
- (void)dealloc {
  if (handle_ != NULL) QZVorantisModelInterface()->releaseServiceInfo(handle_);
  --liveObjects;
  [super dealloc];
}

#ifndef AVM_WITHOUT_SPEC
/* An older framework does not have the operation; a snapshot can play one. */
+ (BOOL)respondsToSelector:(SEL)selector {
  id answer = nil;
  if (sel_isEqual(selector, @selector(serviceInfoWithSpec:))) {
    if (AVMTestAnswers(@"respondsToSelector:", &answer)) return NO;
    return gives(QZVorantisModelInterface()->offersServiceInfoWithSpec());
  }
  return [super respondsToSelector:selector];
}

+ (AVMServiceInfo*)serviceInfoWithSpec:(NSDictionary*)spec {
  id answer = nil;
  if (AVMTestAnswers(@"serviceInfoWithSpec:", &answer)) return answer;
  keepSpec(spec);
  NSString* uri = propertyOf(spec, kURIProp, [NSString class]);
  NSString* modelName = propertyOf(spec, kModelNameProp, [NSString class]);
  const QZVMText uriText = textOf(uri);
  const QZVMText modelNameText = textOf(modelName);
  const QZVMServiceInfoSpec given = {uri == nil ? NULL : &uriText, modelName == nil ? NULL : &modelNameText, NULL};
  QZVMServiceInfo* handle = NULL;
  return gives(QZVorantisModelInterface()->serviceInfoWithSpec(&given, &handle)) ? [self infoWithHandle:handle] : nil;
}
#endif

+ (AVMServiceInfo*)serviceInfoWithURI:(NSString*)uri {
  id answer = nil;
  if (AVMTestAnswers(@"serviceInfoWithURI:", &answer)) return answer;
  snprintf(lastSpec, sizeof lastSpec, "only %s\n", [uri UTF8String]);
  QZVMServiceInfo* handle = NULL;
  return gives(QZVorantisModelInterface()->serviceInfoWithURI(textOf(uri), &handle)) ? [self infoWithHandle:handle]
                                                                                     : nil;
}
@end
#endif

@implementation AVMStoreItem
- (id)init {
  ++liveObjects;
  return [super init];
}
- (void)dealloc {
  if (handle_ != NULL) QZVorantisModelInterface()->releaseItem(handle_);
  --liveObjects;
  [super dealloc];
}
- (id)representedObject {
  id answer = nil;
  QZVMValue* value = NULL;
  if (AVMTestAnswers(@"representedObject", &answer)) return answer;
  return gives(QZVorantisModelInterface()->representedObject(handle_, &value)) ? objectOf(value) : nil;
}
@end

@implementation AVMDataStore
- (id)init {
  ++liveObjects;
  return [super init];
}
- (void)dealloc {
  if (handle_ != NULL) QZVorantisModelInterface()->releaseStore(handle_);
  --liveObjects;
  [super dealloc];
}
- (AVMStoreItem*)itemForKey:(NSString*)key {
  id answer = nil;
  QZVMItem* handle = NULL;
  if (AVMTestAnswers(@"itemForKey:", &answer)) return answer;
  if (!gives(QZVorantisModelInterface()->itemForKey(handle_, textOf(key), &handle))) return nil;
  AVMStoreItem* item = [[[AVMStoreItem alloc] init] autorelease];
  item->handle_ = handle;
  return item;
}
@end

#ifndef AVM_WITHOUT_DATA_STORE_FACTORY
@implementation AVMDataStoreFactory
+ (AVMDataStoreFactory*)defaultSystemDataStoreFactory {
  static AVMDataStoreFactory* factory;
  id answer = nil;
  if (AVMTestAnswers(@"defaultSystemDataStoreFactory", &answer)) return answer;
  if (factory == nil) factory = [[self alloc] init];
  return factory;
}
- (AVMDataStore*)registeredStoreForServiceInfo:(AVMServiceInfo*)info {
  id answer = nil;
  QZVMStore* handle = NULL;
  if (AVMTestAnswers(@"registeredStoreForServiceInfo:", &answer)) return answer;
  if (!gives(QZVorantisModelInterface()->registeredStoreForServiceInfo(handleOf(info), &handle))) return nil;
  AVMDataStore* store = [[[AVMDataStore alloc] init] autorelease];
  store->handle_ = handle;
  return store;
}
@end
#endif

#ifndef AVM_WITHOUT_STATUS_PROTOCOL
@interface AVMStatusInterface : NSObject <AVMDeviceStatus> {
#else
@interface AVMStatusInterface : NSObject {
#endif
 @public
  AVMServiceInfo* info_;
}
@end

@implementation AVMStatusInterface
- (id)init {
  ++liveObjects;
  return [super init];
}
- (void)dealloc {
  [info_ release];
  --liveObjects;
  [super dealloc];
}
- (NSString*)deviceFamilyName {
  id answer = nil;
  QZVMValue* value = NULL;
  if (AVMTestAnswers(@"deviceFamilyName", &answer)) return answer;
  return gives(QZVorantisModelInterface()->deviceFamilyName(handleOf(info_), &value)) ? objectOf(value) : nil;
}
@end

#ifndef AVM_WITHOUT_CORE_FACTORY
@implementation AVMCoreFactory
+ (AVMCoreFactory*)newStatusFactory {
  id answer = nil;
  if (AVMTestAnswers(@"newStatusFactory", &answer)) return [answer retain];
  return [[self alloc] init];
}
- (id)init {
  ++liveObjects;
  return [super init];
}
- (void)dealloc {
  --liveObjects;
  [super dealloc];
}
- (id)interfaceForProtocol:(Protocol*)protocol serviceInfo:(AVMServiceInfo*)info {
  id answer = nil;
  if (AVMTestAnswers(@"interfaceForProtocol:serviceInfo:", &answer)) return answer;
  if (![AVMStatusInterface conformsToProtocol:protocol]) return nil;
  AVMStatusInterface* status = [[[AVMStatusInterface alloc] init] autorelease];
  status->info_ = [info retain];
  return status;
}
@end
#endif
