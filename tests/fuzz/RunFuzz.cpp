// SPDX-License-Identifier: MIT
//
// The whole run on a PPD and a snapshot that are made of the same bytes: the PPD, a line "=====" and the snapshot.
// Allowed outcomes: the run succeeds, twice with the same bytes, and what it wrote can be set up again; or an updater
// fails; or an ATException ends it. A document that names no updaters is written as it was read.

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/ATException.h"
#include "readers/ATDeviceDataReader.h"
#include "tests/fuzz/Check.h"
#include "tests/support/DocumentReading.h"
#include "tests/support/SnapshotDeviceModelLibrary.h"
#include "updaters/ATPPDUpdatersFactory.h"

namespace {

struct Outcome {
  bool succeeded;
  std::string text;
  bool operator==(const Outcome&) const = default;
};

Outcome run(std::string_view text) {
  const auto reading = DocumentReading::read(text);
  if (reading->error) return {false, ""};
  const auto updaters = ATPPDUpdatersFactory::defaultFactory().updatersForPPD(reading->ppd);
  if (updaters.empty()) {
    CHECK(DocumentReading::textOf(reading->ppd) == DocumentReading::expectedText(reading->lines));
    return {true, DocumentReading::textOf(reading->ppd)};
  }
  const auto attribute = reading->ppd.attributeForName("ModelName");
  const auto value = attribute ? attribute->value() : std::nullopt;
  const auto modelName = value ? std::optional<std::string>(*value) : std::nullopt;
  const auto reader = ATDeviceDataReader::initWithDeviceURI("socket://192.0.2.10:9100", modelName);
  try {
    for (const auto& updater : updaters) {
      if (!updater->updatePPD(&reading->ppd, reader.get())) return {false, ""};
    }
  } catch (const ATException&) {
    return {false, ""};
  }
  return {true, DocumentReading::textOf(reading->ppd)};
}

std::optional<snapshot::Snapshot> snapshotFrom(std::string_view text) {
  try {
    return snapshot::Snapshot::fromJSON(text);
  } catch (const snapshot::Error&) {
    return std::nullopt;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool registered = (registerReaderImplementations(), true);
  CHECK(registered);
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  constexpr std::string_view kSeparator = "=====\n";
  const std::size_t separator = std::min(text.find(kSeparator), size);
  auto snapshot = snapshotFrom(separator == size ? "" : text.substr(separator + kSeparator.size()));
  SnapshotDeviceModelLibrary library(snapshot ? std::move(*snapshot) : snapshot::Snapshot());
  DeviceModelLibrary::setDefaultLibrary(&library);

  const Outcome first = run(text.substr(0, separator));
  CHECK(run(text.substr(0, separator)) == first);
  if (first.succeeded) run(first.text);
  DeviceModelLibrary::setDefaultLibrary(nullptr);
  return 0;
}
