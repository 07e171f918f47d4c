/* SPDX-License-Identifier: MIT */
/*
 * Preloaded into a process, fails one allocation of it: AT_FAIL_AT is its number, counted from 1 from the moment at which
 * main begins, so that all libraries that the process is linked with have started, or from the first `read` that gives
 * bytes when AT_FAIL_AFTER_READ is set, which is the same place in every build. A byte on the descriptor AT_FAIL_FD tells
 * that it was reached. Every allocation counts: the C library's own and those of operator new. With AT_SHORT_READS, a
 * `read` gives no more than so many bytes.
 */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

extern void* __libc_malloc(size_t size);
extern void* __libc_calloc(size_t count, size_t size);
extern void* __libc_realloc(void* memory, size_t size);
extern void* __libc_memalign(size_t alignment, size_t size);

static long failAt = 0;    /* 0: none */
static size_t shortest = 0; /* 0: reads are as long as they are */
static int reportTo = -1;
static long made = 0;
static long failAfterRead = 0; /* becomes failAt at the first read; 0: none */

static int fails(void) {
  if (failAt == 0 || ++made != failAt) return 0;
  if (reportTo >= 0 && write(reportTo, "x", 1) != 1) abort();
  errno = ENOMEM;
  return 1;
}

void* malloc(size_t size) {
  return fails() ? NULL : __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
  return fails() ? NULL : __libc_calloc(count, size);
}

void* realloc(void* memory, size_t size) {
  return fails() ? NULL : __libc_realloc(memory, size);
}

void* aligned_alloc(size_t alignment, size_t size) {
  return fails() ? NULL : __libc_memalign(alignment, size);
}

ssize_t read(int descriptor, void* bytes, size_t size) {
  static ssize_t (*real)(int, void*, size_t);
  if (real == NULL) {
    void* found = dlsym(RTLD_NEXT, "read");
    memcpy(&real, &found, sizeof real);
  }
  const ssize_t given = real(descriptor, bytes, shortest != 0 && size > shortest ? shortest : size);
  if (given > 0 && failAfterRead != 0) {
    failAt = failAfterRead;
    failAfterRead = 0;
  }
  return given;
}

typedef int Main(int, char**, char**);
static Main* programsMain;

static int armedMain(int argc, char** argv, char** environment) {
  const char* number = getenv("AT_FAIL_AT");
  const char* descriptor = getenv("AT_FAIL_FD");
  if (descriptor != NULL) reportTo = atoi(descriptor);
  const char* bytes = getenv("AT_SHORT_READS");
  if (number != NULL) *(getenv("AT_FAIL_AFTER_READ") != NULL ? &failAfterRead : &failAt) = atol(number);
  if (bytes != NULL) shortest = (size_t)atol(bytes);
  return programsMain(argc, argv, environment);
}

int __libc_start_main(Main* main, int argc, char** argv, void (*init)(void), void (*fini)(void),
                      void (*rtldFini)(void), void* stackEnd) {
  typedef int Start(Main*, int, char**, void (*)(void), void (*)(void), void (*)(void), void*);
  Start* start;
  void* found = dlsym(RTLD_NEXT, "__libc_start_main");
  memcpy(&start, &found, sizeof start);
  programsMain = main;
  return start(armedMain, argc, argv, init, fini, rtldFini, stackEnd);
}
