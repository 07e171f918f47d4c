/* SPDX-License-Identifier: MIT */
/*
 * The part of Foundation's interface that this project uses, written from its public documentation. Every class and
 * operation here is there since macOS 10.10 or longer: what is missing here does not compile.
 */
#pragma once

#include <stdarg.h>
#include <stddef.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

#if __OBJC_BOOL_IS_BOOL
typedef bool BOOL;
#else
typedef signed char BOOL;
#endif
#define YES __objc_yes
#define NO __objc_no
#ifdef __cplusplus
#define nil __null
#define Nil __null
#else
#define nil ((void*)0)
#define Nil ((void*)0)
#endif

typedef unsigned long NSUInteger;
typedef long NSInteger;
typedef unsigned short unichar;
typedef NSUInteger NSStringEncoding;
typedef double NSTimeInterval;
enum { NSUTF8StringEncoding = 4 };

@class NSArray, NSData, NSEnumerator, NSString, Protocol;

@protocol NSObject
- (Class)class;
- (BOOL)isKindOfClass:(Class)kind;
- (BOOL)respondsToSelector:(SEL)selector;
- (BOOL)conformsToProtocol:(Protocol*)protocol;
- (NSString*)description;
- (instancetype)retain;
- (oneway void)release;
- (instancetype)autorelease;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
+ (Class)class;
+ (BOOL)respondsToSelector:(SEL)selector;
+ (BOOL)conformsToProtocol:(Protocol*)protocol;
- (instancetype)init;
- (void)dealloc;
- (id)copy;
@end

@interface NSAutoreleasePool : NSObject
- (void)drain;
@end

@interface NSString : NSObject
+ (instancetype)stringWithUTF8String:(const char*)text;
+ (instancetype)stringWithFormat:(NSString*)format, ... __attribute__((format(__NSString__, 1, 2)));
- (instancetype)initWithBytes:(const void*)bytes length:(NSUInteger)length encoding:(NSStringEncoding)encoding;
- (NSUInteger)length;
- (unichar)characterAtIndex:(NSUInteger)index;
- (const char*)UTF8String;
- (BOOL)isEqualToString:(NSString*)string;
- (NSData*)dataUsingEncoding:(NSStringEncoding)encoding;
- (NSData*)dataUsingEncoding:(NSStringEncoding)encoding allowLossyConversion:(BOOL)lossy;
- (NSArray*)componentsSeparatedByString:(NSString*)separator;
- (NSString*)stringByPaddingToLength:(NSUInteger)length withString:(NSString*)padding startingAtIndex:(NSUInteger)index;
@end

@interface NSMutableString : NSString
+ (instancetype)string;
+ (instancetype)stringWithString:(NSString*)string;
- (void)appendString:(NSString*)string;
- (void)appendFormat:(NSString*)format, ... __attribute__((format(__NSString__, 1, 2)));
@end

@interface NSData : NSObject
+ (instancetype)dataWithBytes:(const void*)bytes length:(NSUInteger)length;
- (const void*)bytes;
- (void)getBytes:(void*)buffer length:(NSUInteger)length;
- (NSUInteger)length;
@end

@interface NSNumber : NSObject
+ (NSNumber*)numberWithBool:(BOOL)value;
+ (NSNumber*)numberWithChar:(char)value;
+ (NSNumber*)numberWithInt:(int)value;
+ (NSNumber*)numberWithLongLong:(long long)value;
+ (NSNumber*)numberWithUnsignedLongLong:(unsigned long long)value;
+ (NSNumber*)numberWithFloat:(float)value;
+ (NSNumber*)numberWithDouble:(double)value;
- (const char*)objCType;
- (BOOL)boolValue;
- (long long)longLongValue;
- (unsigned long long)unsignedLongLongValue;
- (NSString*)stringValue;
- (double)doubleValue;
@end

@interface NSDecimalNumber : NSNumber
+ (NSDecimalNumber*)decimalNumberWithString:(NSString*)text;
@end

@interface NSEnumerator : NSObject
- (id)nextObject;
@end

@interface NSArray : NSObject
+ (instancetype)array;
+ (instancetype)arrayWithObject:(id)object;
+ (instancetype)arrayWithObjects:(id)first, ...;
- (NSUInteger)count;
- (id)objectAtIndex:(NSUInteger)index;
- (id)lastObject;
- (NSEnumerator*)objectEnumerator;
@end

@interface NSMutableArray : NSArray
+ (instancetype)arrayWithCapacity:(NSUInteger)capacity;
- (void)addObject:(id)object;
@end

@interface NSDictionary : NSObject
+ (instancetype)dictionary;
+ (instancetype)dictionaryWithObject:(id)object forKey:(id)key;
+ (instancetype)dictionaryWithObjectsAndKeys:(id)first, ...;
- (instancetype)initWithObjects:(NSArray*)objects forKeys:(NSArray*)keys;
- (NSUInteger)count;
- (id)objectForKey:(id)key;
- (NSEnumerator*)keyEnumerator;
@end

@interface NSMutableDictionary : NSDictionary
+ (instancetype)dictionaryWithCapacity:(NSUInteger)capacity;
- (void)setObject:(id)object forKey:(id)key;
@end

@interface NSDate : NSObject
+ (instancetype)date;
+ (instancetype)dateWithTimeIntervalSince1970:(NSTimeInterval)seconds;
@end

@interface NSNull : NSObject
+ (NSNull*)null;
@end

@interface NSURL : NSObject
+ (instancetype)URLWithString:(NSString*)text;
@end

@interface NSException : NSObject
+ (NSException*)exceptionWithName:(NSString*)name reason:(NSString*)reason userInfo:(NSDictionary*)userInfo;
+ (void)raise:(NSString*)name format:(NSString*)format, ... __attribute__((format(__NSString__, 2, 3)));
- (instancetype)initWithName:(NSString*)name reason:(NSString*)reason userInfo:(NSDictionary*)userInfo;
- (NSString*)name;
- (NSString*)reason;
- (NSDictionary*)userInfo;
- (void)raise;
@end

#ifdef __cplusplus
extern "C" {
#endif
extern NSString* const NSInvalidArgumentException;
Class NSClassFromString(NSString* name);
NSString* NSStringFromClass(Class class_);
Protocol* NSProtocolFromString(NSString* name);
BOOL sel_isEqual(SEL left, SEL right);
#ifdef __cplusplus
}
#endif
