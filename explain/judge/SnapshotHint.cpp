// SPDX-License-Identifier: MIT
#include "explain/judge/SnapshotHint.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "explain/report/Wording.h"
#include "library/Snapshot.h"

namespace {

using snapshot::Device;
using snapshot::Snapshot;

// How much two texts have in common at both ends, from 0 to 1.
double likeness(std::string_view one, std::string_view other) {
  const std::size_t shorter = std::min(one.size(), other.size());
  const auto front = static_cast<std::size_t>(
      std::mismatch(one.begin(), one.begin() + static_cast<std::ptrdiff_t>(shorter), other.begin()).first -
      one.begin());
  const auto back = static_cast<std::size_t>(
      std::mismatch(one.rbegin(), one.rbegin() + static_cast<std::ptrdiff_t>(shorter - front), other.rbegin()).first -
      one.rbegin());
  const std::size_t longer = std::max(one.size(), other.size());
  return longer == 0 ? 1 : static_cast<double>(front + back) / static_cast<double>(longer);
}

// A device without a URI or model name is there for any.
double likeness(const Device& device, const Report::Question& question) {
  const std::string uri = question.deviceURI.value_or("");
  const std::string modelName = question.modelName.value_or("");
  return likeness(device.uri.value_or(uri), uri) + likeness(device.modelName.value_or(modelName), modelName);
}

std::string named(const Report::OptionalText& text) {
  return text ? (text->empty() ? "empty" : Wording::visible(*text)) : "any";
}

// The value of *ModelName is asked for as it stands in the PPD, with its quotes.
bool lacksQuotes(const Device& device, const Report::Question& question) {
  return device.modelName && question.modelName && "\"" + *device.modelName + "\"" == *question.modelName;
}

// Whether a device with a data store stands behind the one that was found, and answers the question too.
bool isFollowedByAnother(const Snapshot& snapshot, const Device& found, const Report::Question& question) {
  return std::any_of(&found + 1, snapshot.devices.data() + snapshot.devices.size(), [&](const Device& device) {
    return device.dataStore && likeness(device, question) == 2;  // both alike to the last character
  });
}

SnapshotHint nearestIn(const Snapshot& snapshot, const Report::Question& question, const std::string& path) {
  if (snapshot.devices.empty()) return {fmt::format("The snapshot {} has no devices.", path)};
  const auto nearest = std::max_element(
      snapshot.devices.begin(), snapshot.devices.end(),
      [&](const Device& one, const Device& other) { return likeness(one, question) < likeness(other, question); });
  const char* quotes =
      lacksQuotes(*nearest, question) ? " There the model name lacks the double quotes that it has in the PPD." : "";
  return {fmt::format("The nearest of the {} in the snapshot {} has the URI {} and the model name {}.{}",
                      snapshot.devices.size(), path, named(nearest->uri), named(nearest->modelName), quotes)};
}

}  // namespace

std::optional<SnapshotHint> snapshotHintFor(const Report::Question& question) {
  const char* path = std::getenv("QZVORANTISMODEL_SNAPSHOT");
  if (path == nullptr || *path == '\0') {
    return SnapshotHint{"QZVORANTISMODEL_SNAPSHOT names no snapshot; without one the stored library knows no devices."};
  }
  try {
    const Snapshot snapshot = Snapshot::fromFile(path);
    const Device* device = snapshot.deviceFor(question.deviceURI.value_or(""), question.modelName.value_or(""));
    if (device == nullptr) return nearestIn(snapshot, question, Wording::visible(path));
    const char* lacking = device->dataStore ? "custom media in its data store" : "a data store";
    const char* hidden = isFollowedByAnother(snapshot, *device, question)
                             ? " A later one of its devices would do, but the first that matches counts."
                             : "";
    return SnapshotHint{
        fmt::format("The snapshot {} has this device, without {}.{}", Wording::visible(path), lacking, hidden), true};
  } catch (const snapshot::Error&) {
    return std::nullopt;
  }
}
