// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "explain/watch/InputFile.h"
#include "setup/BasePPD.h"

/// One thing that can be set up: a device of a snapshot, and a base PPD.
struct Setup {
  std::string name;  ///< with the program's scheme: vorantis-autosetup:plotter1/z9.ppd
  std::string snapshotPath;
  std::string PPDPath;
  std::string deviceURI;  ///< to ask the device-model library with
  BasePPD ppd;
  std::string description;  ///< "Vorantis Z9 44in, media of plotter1"; with the PPD's file when there are several
  /// The files as they were when the setup was named, which is what it is made from; null in a list.
  std::shared_ptr<const InputFile> snapshot, base;

  /// A line of the list that CUPS reads (cups-driverd(8)).
  std::string line() const;
  /// Why CUPS could not read that line; null when it can.
  const char* problemOfLine() const;

  /// Of a description, in bytes.
  static constexpr std::size_t kLongestDescription = 127;
};
