// SPDX-License-Identifier: MIT
//
// vorantis-device-snapshot DEVICE-URI [MODEL-NAME]: writes what the device-model library answers for a device to
// standard output, as a snapshot that the stored library replays. Exit status 0, 1 when the library fails, 2 for wrong
// usage.

#include <cstdio>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Text.h"
#include "capture/DeviceSnapshot.h"

namespace {

constexpr int kUsageError = 2;

constexpr const char* kUsage = R"(Usage: vorantis-device-snapshot DEVICE-URI [MODEL-NAME]

Asks the device-model library all that VorantisAutosetupTool would ask it for
this device, and writes the answers to standard output as a device snapshot.
The stored library replays it: set QZVORANTISMODEL_SNAPSHOT to its path.

MODEL-NAME is the value of *ModelName in the queue's PPD, its double quotes
included; leave it out when the PPD has none.

  -h, --help     show this help
  -V, --version  show the version

Exit status: 0, 1 when the library is not there or fails, 2 for wrong usage.
)";

bool print(const std::string& text) {
  return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
}

int fail(int status, const char* what) {
  std::fprintf(stderr, "vorantis-device-snapshot: %s\n", what);
  if (status == kUsageError) std::fputs("Try 'vorantis-device-snapshot --help'.\n", stderr);
  return status;
}

int capture(int count, const char* const* arguments) {
  const std::string_view first = count > 0 ? arguments[0] : "";
  if (first == "-h" || first == "--help") return print(kUsage) ? 0 : kUsageError;
  if (first == "-V" || first == "--version") {
    return print("vorantis-device-snapshot " AT_VERSION "\n") ? 0 : kUsageError;
  }
  if (first == "--") {
    ++arguments;
    --count;
  } else if (first.starts_with("--")) {
    return fail(kUsageError, "no such option");
  }
  if (count < 1 || count > 2) return fail(kUsageError, "a device URI is needed, and a model name at most");
  const auto uri = Text::fromUTF8(arguments[0]);
  const auto modelName = count > 1 ? Text::fromUTF8(arguments[1]) : std::nullopt;
  if (!uri || (count > 1 && !modelName)) return fail(kUsageError, "the arguments must be UTF-8");
  std::vector<std::string> leftOut;
  const std::string snapshot = DeviceSnapshot::of(DeviceModelLibrary::defaultLibrary(), *uri, modelName, leftOut);
  for (const std::string& what : leftOut) {
    std::fprintf(stderr, "vorantis-device-snapshot: left out, since a snapshot cannot hold it: %s\n", what.c_str());
  }
  if (print(snapshot)) return 0;
  return fail(1, "the snapshot cannot be written");
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return capture(argc - 1, argv + 1);
  } catch (const std::exception& error) {
    return fail(1, error.what());
  } catch (...) {
    return fail(1, "an exception of an unknown type");
  }
}
