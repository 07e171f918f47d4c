// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// What a list of setups needs to know of a base PPD.
struct BasePPD {
  std::string modelName;     ///< the value of *ModelName as it stands there, its quotes included; empty without one
  std::string manufacturer;  ///< of *Manufacturer, without quotes; empty without one
  std::string deviceID;      ///< of *1284DeviceID, without quotes; empty without one
  bool namesUpdaters = false;

  /// The model without the quotes.
  std::string model() const;
  /// The manufacturer, or the model's first word.
  std::string make() const;

  /// Reads the file, which may be gzip, as the tool does. Throws std::runtime_error with the reason when it cannot be
  /// read, or is not a whole PPD.
  static BasePPD ofFile(const std::string& path);
};
