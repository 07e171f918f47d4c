// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

/// A question to the device-model library, which is somebody else's code. While one lives, standard output leads
/// nowhere, and an `exit` of the library ends the process with status 1: what the library prints does not get into what
/// this program writes, and its end is not this program's success. Questions may be nested.
///
/// What the library's objects do when they are released belongs to the question, so it is made before them.
class LibraryQuestion {
 public:
  /// Throws ATException when standard output cannot be kept out of the library's reach.
  LibraryQuestion();
  LibraryQuestion(const LibraryQuestion&) = delete;
  LibraryQuestion& operator=(const LibraryQuestion&) = delete;
  /// Standard output is what it was. If that fails, it is closed, and writing to it fails.
  ~LibraryQuestion();

 private:
  const pid_t askedBefore_;
  const int standardOutput_;  // where it leads; -1 when it is closed
};
