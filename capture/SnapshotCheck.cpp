// SPDX-License-Identifier: MIT
#include "capture/SnapshotCheck.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "capture/ModelNameOfPPD.h"
#include "explain/ExplainedRun.h"
#include "explain/report/GroupedLines.h"
#include "library/Snapshot.h"

namespace {

using snapshot::Device;
using snapshot::Snapshot;

// A device without a URI is there for any, and there must be one.
std::string uriOf(const Device& device) {
  return device.uri.value_or("any");
}

// The URIs of the devices that answer a setup of a PPD with this model name.
std::vector<std::string> askedURIs(const Snapshot& snapshot, const std::string& modelName) {
  std::vector<std::string> uris;
  for (const Device& device : snapshot.devices) {
    if (snapshot.deviceFor(uriOf(device), snapshot.offersServiceInfoWithSpec ? modelName : "") == &device) {
      uris.push_back(uriOf(device));
    }
  }
  if (uris.empty()) uris.push_back(snapshot.devices.empty() ? "any" : uriOf(snapshot.devices.front()));
  return uris;
}

SnapshotCheck::Findings findingsOf(const std::string& uri, const std::string& PPDPath,
                                   const std::vector<std::string>& ignored) {
  const ExplainedRun run = ExplainedRun::of({uri, PPDPath, std::nullopt});
  SnapshotCheck::Findings findings{uri, {}};
  if (!run.report.succeeded()) findings.lines.push_back("Nothing would be written: " + run.report.failure);
  std::vector<Warning> warnings;
  for (const Warning& warning : run.report.warnings) {
    if (std::find(ignored.begin(), ignored.end(), nameOf(warning.code)) == ignored.end()) warnings.push_back(warning);
  }
  for (std::string& line : GroupedLines::of(warnings)) findings.lines.push_back(std::move(line));
  return findings;
}

}  // namespace

std::vector<SnapshotCheck::Findings> SnapshotCheck::of(const std::string& snapshotPath, const std::string& PPDPath,
                                                       const std::vector<std::string>& ignored) {
  setenv("QZVORANTISMODEL_SNAPSHOT", snapshotPath.c_str(), 1);
  const Snapshot snapshot = Snapshot::fromFile(snapshotPath);
  const std::string modelName = ModelNameOfPPD::at(PPDPath).value_or("");
  std::vector<Findings> findings;
  for (const std::string& uri : askedURIs(snapshot, modelName)) findings.push_back(findingsOf(uri, PPDPath, ignored));
  return findings;
}
