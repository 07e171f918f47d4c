/* SPDX-License-Identifier: MIT */
#pragma once

#import <Foundation/Foundation.h>

/*
 * What the framework for tests can be told to answer instead of the truth: the environment variable AVM_TEST_ANSWER,
 * "OPERATION ANSWER", names one operation and one of the answers that TestObjects.m lists. It is read at every call.
 */

/* Whether the operation shall answer something else; then `answer` is that, or the function throws it. */
BOOL AVMTestAnswers(NSString* operation, id* answer);

/* A dictionary whose enumerator visits the keys in the order in which they were given. */
@interface AVMOrderedDictionary : NSDictionary {
  NSArray* keys_;
  NSDictionary* members_;
}
+ (AVMOrderedDictionary*)dictionaryWithMembers:(NSArray*)members inOrderOf:(NSArray*)keys;
@end
