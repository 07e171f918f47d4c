// SPDX-License-Identifier: MIT
//
// Every allocation of a whole run fails in turn: the run ends with std::bad_alloc, which the program turns into exit
// status 1, or it goes on and writes the right bytes. It never crashes, and never writes anything else.

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <new>
#include <string>

#include "driver/ATAutoSetupTool.h"
#include "library/Snapshot.h"
#include "readers/ATDeviceDataReader.h"
#include "tests/support/SnapshotDeviceModelLibrary.h"

namespace {
long allocationsLeft = -1;  // below 0: none fails
bool hasFailed = false;
}  // namespace

#pragma GCC diagnostic ignored "-Wmismatched-new-delete"  // both are replaced here, by malloc and free

void* operator new(std::size_t size) {
  if (allocationsLeft == 0) {
    hasFailed = true;
    throw std::bad_alloc();
  }
  if (allocationsLeft > 0) --allocationsLeft;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}

namespace {

// Keeps what is written without allocating while a failure is due.
class FixedOutput : public ATOutput {
 public:
  FixedOutput() { bytes.reserve(1U << 20U); }
  std::size_t write(std::string_view text) override {
    bytes.append(text);
    return text.size();
  }
  std::string bytes;
};

enum class Ending { succeeded, failed, outOfMemory };

Ending run(const std::string& ppd, long allocations, FixedOutput& output) {
  const std::array<const char*, 3> arguments = {"tool", "socket://192.0.2.10:9100", ppd.c_str()};
  Ending ending = Ending::outOfMemory;
  allocationsLeft = allocations;
  hasFailed = false;
  try {
    const auto tool = ATAutoSetupTool::initWithArgc(3, arguments.data());
    ending = tool->run(output) ? Ending::succeeded : Ending::failed;
  } catch (const std::bad_alloc&) {
  }
  allocationsLeft = -1;
  return ending;
}

class AllocationFailure : public ::testing::TestWithParam<const char*> {};

TEST_P(AllocationFailure, EndsTheRunOrChangesNothing) {
  registerReaderImplementations();
  const std::string folder = std::string(AT_EXAMPLES_DIR) + "/" + GetParam();
  SnapshotDeviceModelLibrary library(snapshot::Snapshot::fromFile(folder + "/snapshot.json"));
  DeviceModelLibrary::setDefaultLibrary(&library);
  const std::string ppd = folder + "/input.ppd";
  FixedOutput expected;
  ASSERT_EQ(run(ppd, -1, expected), Ending::succeeded);

  long allocations = 0;
  do {
    FixedOutput output;
    const Ending ending = run(ppd, allocations, output);
    ASSERT_NE(ending, Ending::failed) << allocations;
    if (ending == Ending::outOfMemory) {
      EXPECT_EQ(output.bytes, "") << allocations;
    } else {
      EXPECT_EQ(output.bytes, expected.bytes) << allocations;
    }
    ASSERT_LT(++allocations, 1000000);
  } while (hasFailed);
  EXPECT_GT(allocations, 100);
  DeviceModelLibrary::setDefaultLibrary(nullptr);
}

INSTANTIATE_TEST_SUITE_P(Examples, AllocationFailure,
                         ::testing::Values("postscript", "pcl3", "qualifier3", "qualifier1", "glossy", "pdl"),
                         [](const auto& instance) { return std::string(instance.param); });

}  // namespace
