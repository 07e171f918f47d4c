// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "library/Snapshot.h"
#include "setup/Setup.h"

/// The folder from which an administrator sets queues up: device snapshots (`*.json`), and base PPDs in `ppd/`
/// (`*.ppd`, `*.ppd.gz`).
///
/// A setup is named SNAPSHOT/PPD after the two files, the snapshot's without ".json". The second device with a data
/// store of one snapshot is SNAPSHOT+2, unless a snapshot has this very name.
class SetupFolder {
 public:
  /// Looks at the names of the files only.
  explicit SetupFolder(std::string path);

  /// All that can be set up, sorted by name. A pair whose line CUPS could not read is left out: it would take that one,
  /// and all behind it, for the end of the list. What is in the data stores is not looked at.
  std::vector<Setup> all();

  /// The paths of the files that a setup of this name is made from, which are not read. Throws as `named` does when one
  /// of them is not there.
  struct Files {
    std::string snapshot, PPD;
  };
  Files filesOf(std::string_view name) const;

  /// The setup of this name, as the list or as lpadmin has it (with a backslash in front of each apostrophe and
  /// backslash); reads only the snapshot and the PPD that it names, and each once. Throws std::runtime_error with the
  /// reason when there is none.
  Setup named(std::string_view name);

  /// What is another as soon as one of the files was written, replaced or removed: for comparison only.
  std::string stamp() const;

  /// What kept a file or a pair of one model out of the list, each in one line. A base PPD for which there is no device
  /// is none of it.
  const std::vector<std::string>& warnings() const { return warnings_; }

 private:
  // A device with a data store, and its number among those of its snapshot.
  struct Listed {
    const snapshot::Device* device;
    std::size_t number;
  };

  std::string pathOfSnapshot(const std::string& name) const { return path_ + "/" + name + ".json"; }
  std::string pathOfPPD(const std::string& name) const { return path_ + "/ppd/" + name; }
  std::string nameOf(const std::string& snapshotName, std::size_t number) const;
  std::vector<Listed> listedIn(const snapshot::Snapshot& snapshot, const std::string& snapshotName) const;
  Setup setupOf(const std::string& snapshotName, const Listed& listed, const std::string& PPDName,
                const BasePPD& ppd) const;
  // A setup's name in its parts, the snapshot's without the number of a device.
  struct Parts {
    std::string deviceName, snapshotName, PPDName;
  };
  Parts split(std::string_view name) const;
  Parts partsOf(std::string_view name) const;
  std::string whyNotSeen() const;
  void addSetups(const std::string& snapshotName, const std::vector<std::pair<std::string, BasePPD>>& ppds,
                 std::vector<Setup>& setups);
  void addReadable(Setup setup, std::vector<Setup>& setups);

  std::string path_;
  std::vector<std::string> snapshotNames_;  // without ".json", sorted
  std::vector<std::string> PPDNames_;       // sorted
  std::vector<std::string> warnings_;
};
