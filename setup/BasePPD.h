// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

/// What a list of setups needs to know of a base PPD, without reading it as a document: a hundred of them are looked
/// at while every other client of the scheduler waits. Whoever uses one of them reads it as the tool does.
struct BasePPD {
  std::string modelName;     ///< the value of *ModelName as it stands there, its quotes included; empty without one
  std::string manufacturer;  ///< of *Manufacturer, without quotes; empty without one
  std::string deviceID;      ///< of *1284DeviceID, without quotes; empty without one
  bool namesUpdaters = false;

  /// The model without the quotes.
  std::string model() const;
  /// The manufacturer, or the model's first word.
  std::string make() const;

  /// Reads the file, which may be gzip, up to where all of this is known, and no further than the first group or option
  /// behind the model and the updaters; absent when it cannot be opened.
  static std::optional<BasePPD> ofFile(const std::string& path);
};
