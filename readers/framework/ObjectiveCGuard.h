/* SPDX-License-Identifier: MIT */
#ifndef OBJECTIVECGUARD_H
#define OBJECTIVECGUARD_H

/*
 * The one place where Objective-C exceptions are caught.
 *
 * GCC drops or miscompiles @try in Objective-C++, and neither compiler lets Objective-C++ catch C++ exceptions
 * everywhere. So Objective-C catches here, in C; Objective-C++ catches nothing and throws C++ exceptions, which are
 * caught in plain C++.
 */

#ifdef __cplusplus
extern "C" {
#endif

/* What a caught exception says, as UTF-8 texts that the caller frees. A text that it does not give is null. */
typedef struct ATCaughtException {
  char* name;
  char* reason;
  char* userInfo;
} ATCaughtException;

/*
 * Calls body(context). Returns 0 when it returned, and 1 when an Objective-C exception ended it, which `caught` then
 * describes. A C++ exception passes through. The caller has an autorelease pool in place, and drains it after this
 * function: the exception itself may be an object of that pool.
 */
int ATRunGuarded(void (*body)(void*), void* context, ATCaughtException* caught);

#ifdef __cplusplus
}
#endif

#endif
