// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "readers/IATDataReader.h"

/// The reader for a printer that is given only by an ID: it has no data, and its URI is the printer ID.
class ATPPDDataReader : public IATDataReader {
 public:
  /// Null when the printer ID is absent or empty.
  static std::unique_ptr<ATPPDDataReader> initWithPrinterID(const std::optional<std::string>& printerID);

  DeviceValue dataForKey(std::string_view /*key*/) const override { return {}; }
  DeviceValue familyNameForKey(std::string_view /*key*/) const override { return {}; }
  std::optional<std::string> printerURI() const override { return printerID_; }

  const std::string& printerID() const { return printerID_; }

 private:
  explicit ATPPDDataReader(std::string printerID);

  std::string printerID_;
};
