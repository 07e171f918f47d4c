// SPDX-License-Identifier: MIT
#include "setup/SetupFolder.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <map>
#include <memory>
#include <stdexcept>
#include <utility>

#include "base/Text.h"
#include "explain/report/Wording.h"
#include "setup/FolderListing.h"
#include "setup/SetupStatement.h"

namespace {

using snapshot::Device;
using snapshot::Snapshot;
using Wording::visible;

constexpr std::string_view kScheme = SetupStatement::kScheme;

bool contains(const std::vector<std::string>& sorted, const std::string& name) {
  return std::binary_search(sorted.begin(), sorted.end(), name);
}

// lpadmin puts a backslash in front of each apostrophe and backslash of a name that it sends.
std::string withoutEscapes(std::string_view name) {
  std::string plain;
  for (std::size_t index = 0; index < name.size(); ++index) {
    const std::string_view next = name.substr(index + 1, 1);
    if (name[index] == '\\' && (next == "\\" || next == "'")) ++index;
    plain += name[index];
  }
  return plain;
}

// Two base PPDs of one model are told apart by their files: a list for people may show the descriptions only.
void tellApart(std::vector<Setup>& ofDevice) {
  std::map<std::string, std::size_t> counts;
  for (const Setup& setup : ofDevice) ++counts[setup.description];
  for (Setup& setup : ofDevice) {
    if (counts[setup.description] == 1) continue;
    const std::string file = " (" + setup.PPDPath.substr(setup.PPDPath.rfind('/') + 1) + ")";
    const std::size_t left = Setup::kLongestDescription - std::min(file.size(), Setup::kLongestDescription);
    setup.description = Wording::cutTo(left, setup.description) + file;
  }
}

// The model name that a run with this PPD asks for.
std::string_view askedModel(const Snapshot& snapshot, const BasePPD& ppd) {
  return snapshot.offersServiceInfoWithSpec ? std::string_view(ppd.modelName) : "";
}

bool mayAnswer(const Device& device, const Snapshot& snapshot, const BasePPD& ppd) {
  return !device.modelName || *device.modelName == askedModel(snapshot, ppd);
}

// Whether the device answers the question that a run with this PPD asks, and not another one in front of it. No run
// asks with an empty URI.
bool answers(const Device& device, const Snapshot& snapshot, const std::string& uri, const BasePPD& ppd) {
  return !uri.empty() && snapshot.deviceFor(uri, askedModel(snapshot, ppd)) == &device;
}

// `read` is one of the snapshot's functions that do.
Snapshot readSnapshot(const std::string& path, const std::string& name, Snapshot (*read)(const std::string& path)) {
  try {
    return read(path);
  } catch (const snapshot::Error& error) {
    throw std::runtime_error(fmt::format("the snapshot {}.json cannot be used: {}", name, error.what()));
  }
}

BasePPD readPPD(const std::string& path, const std::string& name) {
  try {
    BasePPD ppd = BasePPD::ofFile(path);
    if (!ppd.namesUpdaters) throw std::runtime_error("it names no updaters");
    if (ppd.model().empty()) throw std::runtime_error("it has no model name");
    return ppd;
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(fmt::format("the base PPD {} cannot be used: {}", name, error.what()));
  }
}

}  // namespace

SetupFolder::SetupFolder(std::string path) : path_(std::move(path)) {
  for (const std::string& file : FolderListing::filesIn(path_, {".json"}, warnings_)) {
    snapshotNames_.push_back(file.substr(0, file.size() - 5));
  }
  std::sort(snapshotNames_.begin(), snapshotNames_.end());
  PPDNames_ = FolderListing::filesIn(path_ + "/ppd", {".ppd", ".ppd.gz"}, warnings_);
}

std::string SetupFolder::nameOf(const std::string& snapshotName, std::size_t number) const {
  return number == 1 ? snapshotName : fmt::format("{}+{}", snapshotName, number);
}

std::vector<SetupFolder::Listed> SetupFolder::listedIn(const Snapshot& snapshot,
                                                       const std::string& snapshotName) const {
  std::vector<Listed> listed;
  std::size_t number = 0;
  for (const Device& device : snapshot.devices) {
    if (!device.dataStore) continue;
    ++number;
    const bool isHidden = number > 1 && contains(snapshotNames_, nameOf(snapshotName, number));
    if (!isHidden) listed.push_back({&device, number});
  }
  return listed;
}

Setup SetupFolder::setupOf(const std::string& snapshotName, const Listed& listed, const std::string& PPDName,
                           const BasePPD& ppd) const {
  const std::string deviceName = nameOf(snapshotName, listed.number);
  const std::string name = fmt::format("{}{}/{}", kScheme, deviceName, PPDName);
  // A device without a URI is there for any, and there must be one.
  return {name,
          pathOfSnapshot(snapshotName),
          pathOfPPD(PPDName),
          listed.device->uri.value_or(name),
          ppd,
          fmt::format("{}, media of {}", ppd.model(), deviceName),
          nullptr,
          nullptr};
}

void SetupFolder::addSetups(const std::string& snapshotName, const std::vector<std::pair<std::string, BasePPD>>& ppds,
                            std::vector<Setup>& setups) {
  const Snapshot snapshot = readSnapshot(pathOfSnapshot(snapshotName), snapshotName, Snapshot::withEmptyStoresFromFile);
  const std::size_t before = setups.size() + warnings_.size();
  for (const Listed& listed : listedIn(snapshot, snapshotName)) {
    std::vector<Setup> ofDevice;
    for (const auto& [PPDName, ppd] : ppds) {
      // Nearly all pairs are of different models, which can be told before anything is composed.
      if (!mayAnswer(*listed.device, snapshot, ppd)) continue;
      Setup setup = setupOf(snapshotName, listed, PPDName, ppd);
      if (answers(*listed.device, snapshot, setup.deviceURI, ppd)) ofDevice.push_back(std::move(setup));
    }
    tellApart(ofDevice);
    for (Setup& setup : ofDevice) addReadable(std::move(setup), setups);
  }
  if (setups.size() + warnings_.size() > before) return;
  warnings_.push_back(
      fmt::format("the snapshot {}.json is not listed: no base PPD is of the model of a device of it that has a data "
                  "store",
                  visible(snapshotName)));
}

void SetupFolder::addReadable(Setup setup, std::vector<Setup>& setups) {
  if (const char* problem = setup.problemOfLine()) {
    warnings_.push_back(fmt::format("{} is not listed: {}", visible(setup.name), problem));
  } else {
    setups.push_back(std::move(setup));
  }
}

std::vector<Setup> SetupFolder::all() {
  std::vector<std::pair<std::string, BasePPD>> ppds;
  for (const std::string& name : PPDNames_) {
    try {
      ppds.emplace_back(name, readPPD(pathOfPPD(name), name));
    } catch (const std::runtime_error& error) {
      warnings_.push_back(visible(error.what()));
    }
  }
  std::vector<Setup> setups;
  for (const std::string& name : snapshotNames_) {
    try {
      addSetups(name, ppds, setups);
    } catch (const std::runtime_error& error) {
      warnings_.push_back(visible(error.what()));
    }
  }
  std::sort(setups.begin(), setups.end(), [](const Setup& one, const Setup& other) { return one.name < other.name; });
  return setups;
}

SetupFolder::Parts SetupFolder::split(std::string_view name) const {
  const std::size_t slash = name.rfind('/');
  if (!name.starts_with(kScheme) || slash == std::string_view::npos || slash < kScheme.size()) {
    throw std::runtime_error("there is no setup of this name: " + std::string(name));
  }
  const std::string deviceName(name.substr(kScheme.size(), slash - kScheme.size()));
  const bool isFirst = contains(snapshotNames_, deviceName);
  return {deviceName, isFirst ? deviceName : deviceName.substr(0, deviceName.rfind('+')),
          std::string(name.substr(slash + 1))};
}

// No path is made of a name that is not that of a file here.
SetupFolder::Parts SetupFolder::partsOf(std::string_view name) const {
  const auto isHere = [this](const Parts& parts) {
    return contains(snapshotNames_, parts.snapshotName) && contains(PPDNames_, parts.PPDName);
  };
  const Parts parts = split(name);
  if (isHere(parts)) return parts;
  if (const Parts meant = split(withoutEscapes(name)); isHere(meant)) return meant;
  if (!contains(snapshotNames_, parts.snapshotName)) {
    throw std::runtime_error(fmt::format("there is no snapshot {}.json{}", parts.deviceName, whyNotSeen()));
  }
  throw std::runtime_error(fmt::format("there is no base PPD {}{}", parts.PPDName, whyNotSeen()));
}

// What hides files that may be there; of a file that is no file, too, nothing else is told.
std::string SetupFolder::whyNotSeen() const {
  return warnings_.empty() ? "" : fmt::format(" that can be seen: {}", fmt::join(warnings_, "; "));
}

std::string SetupFolder::stamp() const {
  std::string stamp;
  for (const std::string& name : snapshotNames_) stamp += FolderListing::stampOf(pathOfSnapshot(name));
  for (const std::string& name : PPDNames_) stamp += FolderListing::stampOf(pathOfPPD(name));
  return stamp;
}

SetupFolder::Files SetupFolder::filesOf(std::string_view name) const {
  const Parts parts = partsOf(name);
  return {pathOfSnapshot(parts.snapshotName), pathOfPPD(parts.PPDName)};
}

Setup SetupFolder::named(std::string_view name) {
  const Parts parts = partsOf(name);
  const auto snapshotFile = std::make_shared<const InputFile>(pathOfSnapshot(parts.snapshotName));
  const auto base = std::make_shared<const InputFile>(pathOfPPD(parts.PPDName));
  const Snapshot snapshot = readSnapshot(snapshotFile->path(), parts.snapshotName, Snapshot::fromFile);
  const BasePPD ppd = readPPD(base->path(), parts.PPDName);
  for (const Listed& listed : listedIn(snapshot, parts.snapshotName)) {
    if (nameOf(parts.snapshotName, listed.number) != parts.deviceName) continue;
    Setup setup = setupOf(parts.snapshotName, listed, parts.PPDName, ppd);
    setup.snapshot = snapshotFile;
    setup.base = base;
    if (const char* problem = setup.problemOfLine())
      throw std::runtime_error(setup.name + " is not listed: " + problem);
    if (answers(*listed.device, snapshot, setup.deviceURI, ppd)) return setup;
    throw std::runtime_error(
        fmt::format("the device {} is not the one that is asked with the model {} of the base PPD {}", parts.deviceName,
                    ppd.modelName, parts.PPDName));
  }
  throw std::runtime_error(
      fmt::format("the snapshot {}.json has no device {} with a data store", parts.snapshotName, parts.deviceName));
}
