// SPDX-License-Identifier: MIT
//
// Included by the changed copy of each source file. AT_MUTANT(n) tells whether the change with this number is on: the
// one that the environment variable AT_MUTANT names. With AT_MUTANT_REACHED, an existing file, each change that is
// asked for sets its byte there, and none is on; a process that crashes, or ends without ado, has said so all the same.
#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <type_traits>

namespace mutation {

struct Switch {
  int active = 0;
  unsigned char* reached = nullptr;

  Switch() {
    if (const char* number = std::getenv("AT_MUTANT")) active = std::atoi(number);
    const char* path = std::getenv("AT_MUTANT_REACHED");
    const int descriptor = path != nullptr ? ::open(path, O_RDWR | O_CLOEXEC) : -1;
    if (descriptor < 0) return;
    struct ::stat status;
    ::fstat(descriptor, &status);
    void* memory =
        ::mmap(nullptr, static_cast<std::size_t>(status.st_size), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    if (memory == MAP_FAILED) std::abort();
    reached = static_cast<unsigned char*>(memory);
    ::close(descriptor);
  }
};

inline bool isOn(int number) {
  static const Switch theSwitch;
  if (theSwitch.reached != nullptr) theSwitch.reached[number] = 1;
  return theSwitch.active == number;
}

}  // namespace mutation

inline bool AT_MUTANT(int number) {
  return mutation::isOn(number);
}

// What the compiler works out is not changed.
constexpr bool AT_MUTANT_OR_CONSTANT(int number) {
  return !std::is_constant_evaluated() && mutation::isOn(number);
}
