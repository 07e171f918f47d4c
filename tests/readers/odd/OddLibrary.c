/* SPDX-License-Identifier: MIT */
/*
 * The example library, which at one place does what no library may: AT_ODD_PLACE names the place (load, entry, question,
 * release) and AT_ODD_DEED the deed.
 */
#define _GNU_SOURCE
#define QZVorantisModelInterface exampleInterface
#include "library/example/OneMedium.c"
#undef QZVorantisModelInterface

#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

static void* endThread(void* unused) {
  exit(0);
  return unused;
}

static void print(void) {
  printf("printed by the library");
  if (write(STDOUT_FILENO, "written by the library\n", 23) < 0) abort();
  if (system("echo echoed by the library") != 0) abort();
}

static void exitInThread(void) {
  pthread_t thread;
  if (pthread_create(&thread, NULL, endThread, NULL) == 0) pthread_join(thread, NULL);
}

static void closeAll(void) {
  for (int descriptor = 0; descriptor < 1024; ++descriptor) close(descriptor);
}

static void doOddThingAt(const char* place) {
  const char* chosen = getenv("AT_ODD_PLACE");
  const char* deed = getenv("AT_ODD_DEED");
  if (chosen == NULL || deed == NULL || strcmp(chosen, place) != 0) return;
  if (strcmp(deed, "print") == 0) print();
  if (strcmp(deed, "exit") == 0) exit(0);
  if (strcmp(deed, "exit-in-thread") == 0) exitInThread();
  if (strcmp(deed, "close") == 0) close(STDOUT_FILENO);
  if (strcmp(deed, "close-all") == 0) closeAll();
}

__attribute__((constructor)) static void load(void) { doOddThingAt("load"); }

static QZVMResult oddRepresentedObject(const QZVMItem* item, QZVMValue** out) {
  doOddThingAt("question");
  return representedObject(item, out);
}

static void oddReleaseServiceInfo(QZVMServiceInfo* info) {
  doOddThingAt("release");
  releaseServiceInfo(info);
}

QZVM_EXPORT const QZVMInterface* QZVorantisModelInterface(void);

const QZVMInterface* QZVorantisModelInterface(void) {
  static QZVMInterface table;
  doOddThingAt("entry");
  table = *exampleInterface();
  table.representedObject = oddRepresentedObject;
  table.releaseServiceInfo = oddReleaseServiceInfo;
  return &table;
}
