/* SPDX-License-Identifier: MIT */
#include "readers/framework/ObjectiveCGuard.h"

#import <Foundation/Foundation.h>
#include <stdlib.h>

/* Lossy, because a text that cannot be told exactly is better than none. */
static char* copyOfText(NSString* text) {
  NSData* bytes = [text dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
  char* copy = bytes == nil ? NULL : malloc([bytes length] + 1);
  if (copy == NULL) return NULL;
  [bytes getBytes:copy length:[bytes length]];
  copy[[bytes length]] = '\0';
  return copy;
}

/* A member of a user info: texts and numbers as they are, of all else the class only, since it may hold itself. */
static NSString* memberDescription(id member) {
  const BOOL isPlain = [member isKindOfClass:[NSString class]] || [member isKindOfClass:[NSNumber class]];
  return isPlain ? [member description] : NSStringFromClass([member class]);
}

static NSString* userInfoDescription(NSDictionary* userInfo) {
  if (userInfo == nil) return nil;
  NSMutableString* text = [NSMutableString stringWithString:@"{"];
  NSEnumerator* keys = [userInfo keyEnumerator];
  id key;
  while ((key = [keys nextObject]) != nil) {
    [text appendFormat:@"%@ = %@; ", memberDescription(key), memberDescription([userInfo objectForKey:key])];
  }
  [text appendString:@"}"];
  return text;
}

/* An exception may be of a class whose own operations throw; what was learnt until then is kept. */
static void describeException(NSException* exception, ATCaughtException* caught) {
  @try {
    caught->name = copyOfText([exception name]);
    caught->reason = copyOfText([exception reason]);
    caught->userInfo = copyOfText(userInfoDescription([exception userInfo]));
  } @catch (id second) {
    (void)second;
  }
}

/* Anything may be thrown, not only exceptions. */
static void describeObject(id object, ATCaughtException* caught) {
  @try {
    caught->name = copyOfText(NSStringFromClass([object class]));
    caught->reason = copyOfText(memberDescription(object));
  } @catch (id second) {
    (void)second;
  }
}

int ATRunGuarded(void (*body)(void*), void* context, ATCaughtException* caught) {
  @try {
    body(context);
    return 0;
  } @catch (NSException* exception) {
    describeException(exception, caught);
  } @catch (id object) {
    describeObject(object, caught);
  }
  return 1;
}
