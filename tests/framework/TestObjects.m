/* SPDX-License-Identifier: MIT */
#import "tests/framework/TestObjects.h"

#include <limits.h>
#include <stdint.h>
#include <stdlib.h>

@implementation AVMOrderedDictionary
+ (AVMOrderedDictionary*)dictionaryWithMembers:(NSArray*)members inOrderOf:(NSArray*)keys {
  AVMOrderedDictionary* dictionary = [[[self alloc] init] autorelease];
  dictionary->keys_ = [keys copy];
  dictionary->members_ = [[NSDictionary alloc] initWithObjects:members forKeys:keys];
  return dictionary;
}
- (void)dealloc {
  [keys_ release];
  [members_ release];
  [super dealloc];
}
- (NSUInteger)count {
  return [keys_ count];
}
- (id)objectForKey:(id)key {
  return [members_ objectForKey:key];
}
- (NSEnumerator*)keyEnumerator {
  return [keys_ objectEnumerator];
}
@end

/* An enumerator that gives one object again and again, and after `left_` times throws or ends. */
@interface AVMRepetition : NSEnumerator {
  id object_;
  unsigned long left_;
  BOOL throws_;
}
+ (AVMRepetition*)repetitionOf:(id)object times:(unsigned long)times throws:(BOOL)throws;
@end

@implementation AVMRepetition
+ (AVMRepetition*)repetitionOf:(id)object times:(unsigned long)times throws:(BOOL)throws {
  AVMRepetition* repetition = [[[self alloc] init] autorelease];
  repetition->object_ = [object retain];
  repetition->left_ = times;
  repetition->throws_ = throws;
  return repetition;
}
- (void)dealloc {
  [object_ release];
  [super dealloc];
}
- (id)nextObject {
  if (left_-- > 0) return object_;
  left_ = 0;
  if (throws_) [NSException raise:@"AVMEnumerationException" format:@"the storage went away"];
  return nil;
}
@end

/* Maps that do not keep what a map promises. */
@interface AVMDishonestDictionary : NSDictionary {
 @public
  unsigned long visits_;
  BOOL throws_;
  id member_;
}
@end

@implementation AVMDishonestDictionary
+ (AVMDishonestDictionary*)dictionaryWithMember:(id)member visits:(unsigned long)visits throws:(BOOL)throws {
  AVMDishonestDictionary* dictionary = [[[self alloc] init] autorelease];
  dictionary->visits_ = visits;
  dictionary->throws_ = throws;
  dictionary->member_ = [member retain];
  return dictionary;
}
- (void)dealloc {
  [member_ release];
  [super dealloc];
}
- (NSUInteger)count {
  return 1;
}
- (id)objectForKey:(id)key {
  (void)key;
  return member_;
}
- (NSEnumerator*)keyEnumerator {
  return [AVMRepetition repetitionOf:@"key" times:visits_ throws:throws_];
}
@end

/* A string that macOS makes without ado and GNUstep refuses to make: half of a character between two whole ones. */
@interface AVMLoneSurrogate : NSString
@end

@implementation AVMLoneSurrogate
- (NSUInteger)length {
  return 3;
}
- (unichar)characterAtIndex:(NSUInteger)index {
  const unichar units[] = {'a', 0xD800, 'b'};
  return units[index];
}
@end

/* An exception that does not even tell its name. */
@interface AVMHostileException : NSException
@end

@implementation AVMHostileException
- (NSString*)name {
  [NSException raise:@"AVMSecondException" format:@"no name"];
  return nil;
}
@end

/* An exception that gives no reason at all, not even Foundation's own. */
@interface AVMBareException : NSException
@end

@implementation AVMBareException
- (NSString*)reason {
  return nil;
}
@end

/* An object that throws when its last owner gives it back, and is freed all the same. */
@interface AVMHostileObject : NSObject
@end

@implementation AVMHostileObject
- (void)dealloc {
  [super dealloc];
  [NSException raise:@"AVMReleaseException" format:@"still needed"];
}
@end

static NSDictionary* mapWith(NSString* key, id member) {
  return [AVMOrderedDictionary dictionaryWithMembers:[NSArray arrayWithObject:member]
                                           inOrderOf:[NSArray arrayWithObject:key]];
}

/* Lists around a text. */
static id nested(unsigned depth) {
  id object = @"innermost";
  for (unsigned level = 0; level < depth; ++level) object = [NSArray arrayWithObject:object];
  return object;
}

/* A list of two lists that are the same, and so on: small here, and without end for whoever writes it out. */
static id shared(unsigned depth) {
  id object = @"x";
  for (unsigned level = 0; level < depth; ++level) object = [NSArray arrayWithObjects:object, object, nil];
  return object;
}

/* A list or a map that holds itself, and is never freed: it is made once. */
static id cyclicMap(void) {
  static NSMutableDictionary* map;
  if (map == nil) {
    id itself = map = [[NSMutableDictionary alloc] init];
    [map setObject:itself forKey:@"MediaInfo"];
  }
  return map;
}

static id cyclicList(void) {
  static NSMutableArray* list;
  if (list == nil) {
    id itself = list = [[NSMutableArray alloc] init];
    [list addObject:itself];
  }
  return list;
}

/* A custom media storage of ten megabytes and more. */
static id largeStorage(void) {
  enum { kMedia = 40000 };
  NSMutableArray* keys = [NSMutableArray arrayWithCapacity:kMedia];
  NSMutableArray* media = [NSMutableArray arrayWithCapacity:kMedia];
  NSString* padding = [@"" stringByPaddingToLength:300 withString:@"padding " startingAtIndex:0];
  for (int index = 0; index < kMedia; ++index) {
    [keys addObject:[NSString stringWithFormat:@"%d", index]];
    [media addObject:[NSDictionary dictionaryWithObjectsAndKeys:[NSString stringWithFormat:@"Paper %d", index], @"Name",
                                                                [NSString stringWithFormat:@"%d", 100000 + index],
                                                                @"MediumID", @"Custom", @"CategoryName", @"CUSTOM",
                                                                @"CategoryID", [NSArray array], @"ICCProfiles", padding,
                                                                @"Comment", nil]];
  }
  return mapWith(@"MediaInfo", [AVMOrderedDictionary dictionaryWithMembers:media inOrderOf:keys]);
}

static NSString* loneSurrogate(void) {
  return [[[AVMLoneSurrogate alloc] init] autorelease];
}

static id numberNamed(NSString* name) {
  if ([name isEqualToString:@"yes"]) return [NSNumber numberWithBool:YES];
  if ([name isEqualToString:@"no"]) return [NSNumber numberWithBool:NO];
  if ([name isEqualToString:@"char"]) return [NSNumber numberWithChar:1];
  if ([name isEqualToString:@"negative"]) return [NSNumber numberWithInt:-7];
  if ([name isEqualToString:@"smallest"]) return [NSNumber numberWithLongLong:INT64_MIN];
  if ([name isEqualToString:@"largest"]) return [NSNumber numberWithLongLong:INT64_MAX];
  if ([name isEqualToString:@"unsigned"]) return [NSNumber numberWithUnsignedLongLong:UINT64_MAX];
  if ([name isEqualToString:@"small-unsigned"]) return [NSNumber numberWithUnsignedLongLong:9];
  if ([name isEqualToString:@"real"]) return [NSNumber numberWithDouble:2.5];
  if ([name isEqualToString:@"float"]) return [NSNumber numberWithFloat:0.1F];
  if ([name isEqualToString:@"decimal"]) return [NSDecimalNumber decimalNumberWithString:@"1.25"];
  return nil;
}

static id textNamed(NSString* name) {
  if ([name isEqualToString:@"text"]) return @"a text";
  if ([name isEqualToString:@"empty-text"]) return @"";
  if ([name isEqualToString:@"mutable-text"]) return [NSMutableString stringWithUTF8String:"\xC3\xA4\xF0\x9F\x96\xA8"];
  if ([name isEqualToString:@"text-with-zero"]) {
    return [[[NSString alloc] initWithBytes:"a\0b" length:3 encoding:NSUTF8StringEncoding] autorelease];
  }
  if ([name isEqualToString:@"lone-surrogate"]) return loneSurrogate();
  return nil;
}

static id objectOfAnotherKindNamed(NSString* name) {
  if ([name isEqualToString:@"object"]) return [[[NSObject alloc] init] autorelease];
  if ([name isEqualToString:@"date"]) return [NSDate dateWithTimeIntervalSince1970:0];
  if ([name isEqualToString:@"data"]) return [NSData dataWithBytes:"data" length:4];
  if ([name isEqualToString:@"null"]) return [NSNull null];
  if ([name isEqualToString:@"url"]) return [NSURL URLWithString:@"file:///x"];
  if ([name isEqualToString:@"class"]) return [NSObject class];
  if ([name isEqualToString:@"hostile-object"]) return [[[AVMHostileObject alloc] init] autorelease];
  return nil;
}

static id listNamed(NSString* name) {
  if ([name isEqualToString:@"empty-list"]) return [NSArray array];
  if ([name isEqualToString:@"list"]) return [NSArray arrayWithObjects:@"one", [NSNumber numberWithInt:2], nil];
  if ([name isEqualToString:@"list-of-dates"]) return [NSArray arrayWithObject:[NSDate date]];
  if ([name isEqualToString:@"nested-64"]) return nested(64);
  if ([name isEqualToString:@"nested-65"]) return nested(65);
  if ([name isEqualToString:@"shared"]) return shared(60);
  if ([name isEqualToString:@"cyclic-list"]) return cyclicList();
  return nil;
}

static id mapNamed(NSString* name) {
  if ([name isEqualToString:@"empty-map"]) return [NSDictionary dictionary];
  if ([name isEqualToString:@"ordered-map"]) {
    return [AVMOrderedDictionary dictionaryWithMembers:[NSArray arrayWithObjects:@"1", @"2", @"3", @"4", nil]
                                             inOrderOf:[NSArray arrayWithObjects:@"z", @"a", @"m", @"b", nil]];
  }
  if ([name isEqualToString:@"map-with-number-key"]) {
    return [NSDictionary dictionaryWithObject:@"x" forKey:[NSNumber numberWithInt:1]];
  }
  if ([name isEqualToString:@"map-with-surrogate-key"])
    return [NSDictionary dictionaryWithObject:@"x" forKey:loneSurrogate()];
  if ([name isEqualToString:@"map-with-surrogate"]) return mapWith(@"Unread", loneSurrogate());
  if ([name isEqualToString:@"map-with-date"]) return mapWith(@"MediaInfo", [NSDate date]);
  if ([name isEqualToString:@"map-without-members"]) {
    return [AVMDishonestDictionary dictionaryWithMember:nil visits:1 throws:NO];
  }
  if ([name isEqualToString:@"endless-map"]) {
    return [AVMDishonestDictionary dictionaryWithMember:@"x" visits:ULONG_MAX throws:NO];
  }
  if ([name isEqualToString:@"endless-map-of-nothing"]) {
    return [AVMDishonestDictionary dictionaryWithMember:nil visits:ULONG_MAX throws:NO];
  }
  if ([name isEqualToString:@"throwing-map"]) {
    return [AVMDishonestDictionary dictionaryWithMember:@"x" visits:3 throws:YES];
  }
  if ([name isEqualToString:@"cyclic-map"]) return cyclicMap();
  if ([name isEqualToString:@"large-storage"]) return largeStorage();
  return nil;
}

/* An exception whose user info holds a map that holds itself. */
static NSException* cyclicException(void) {
  static NSException* exception;
  if (exception == nil) {
    NSDictionary* info = [NSDictionary dictionaryWithObject:cyclicMap() forKey:@"map"];
    exception = [[NSException alloc] initWithName:@"AVMCyclicException" reason:@"see its user info" userInfo:info];
  }
  return exception;
}

static void throwNamed(NSString* name) {
  if ([name isEqualToString:@"throw"]) {
    NSDictionary* info = [NSDictionary dictionaryWithObject:@"4711" forKey:@"code"];
    [[NSException exceptionWithName:@"AVMStoreException" reason:@"the store is locked" userInfo:info] raise];
  }
  if ([name isEqualToString:@"throw-bare"])
    [[AVMBareException exceptionWithName:@"AVMBareException" reason:nil userInfo:nil] raise];
  if ([name isEqualToString:@"throw-surrogate"]) [NSException raise:@"AVMTextException" format:@"%@", loneSurrogate()];
  if ([name isEqualToString:@"throw-cyclic"]) [cyclicException() raise];
  if ([name isEqualToString:@"throw-map"]) @throw cyclicMap();
  if ([name isEqualToString:@"throw-text"]) @throw @"a text that was thrown";
  if ([name isEqualToString:@"throw-hostile"]) {
    @throw [[[AVMHostileException alloc] initWithName:@"x" reason:@"y" userInfo:nil] autorelease];
  }
}

static id objectNamed(NSString* name) {
  throwNamed(name);
  id object = numberNamed(name);
  if (object == nil) object = textNamed(name);
  if (object == nil) object = objectOfAnotherKindNamed(name);
  if (object == nil) object = listNamed(name);
  if (object == nil) object = mapNamed(name);
  return object;
}

BOOL AVMTestAnswers(NSString* operation, id* answer) {
  const char* variable = getenv("AVM_TEST_ANSWER");
  if (variable == NULL || *variable == '\0') return NO;
  NSArray* words = [[NSString stringWithUTF8String:variable] componentsSeparatedByString:@" "];
  if (![operation isEqualToString:[words objectAtIndex:0]]) return NO;
  NSString* name = [words lastObject];
  *answer = objectNamed(name);
  if (*answer == nil && ![name isEqualToString:@"nil"]) abort(); /* a test that asks for what is not there */
  return YES;
}
