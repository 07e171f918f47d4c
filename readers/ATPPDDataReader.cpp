// SPDX-License-Identifier: MIT
#include "readers/ATPPDDataReader.h"

#include <utility>

ATPPDDataReader::ATPPDDataReader(std::string printerID) : printerID_(std::move(printerID)) {}

std::unique_ptr<ATPPDDataReader> ATPPDDataReader::initWithPrinterID(const std::optional<std::string>& printerID) {
  if (!printerID || printerID->empty()) return nullptr;
  return std::unique_ptr<ATPPDDataReader>(new ATPPDDataReader(*printerID));
}
