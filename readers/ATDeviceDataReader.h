// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "readers/IATDataReader.h"
#include "readers/IATReaderImpl.h"

/// Reads the data of a device given by URI and model name, through the implementation that is registered for the
/// key. A new implementation object answers each question; nothing is kept between questions.
class ATDeviceDataReader : public IATDataReader {
 public:
  /// Makes a new implementation object of one kind.
  using ImplKind = std::function<std::unique_ptr<IATReaderImpl>()>;
  using Implementations = std::map<std::string, ImplKind, std::less<>>;

  /// The registry of this process: key to implementation kind. Created empty at the first call; the program fills it
  /// before anything else (`registerReaderImplementations`).
  static Implementations& implementations();
  /// Registers the kind under the key in place of any earlier one.
  static void registerImpl(ImplKind kind, std::string_view forKey);

  /// Null when the URI is absent or empty. The model name may be absent or empty.
  static std::unique_ptr<ATDeviceDataReader> initWithDeviceURI(const std::optional<std::string>& deviceURI,
                                                               const std::optional<std::string>& modelName);

  DeviceValue dataForKey(std::string_view key) const override;
  DeviceValue familyNameForKey(std::string_view key) const override;
  std::optional<std::string> printerURI() const override { return deviceURI_; }

  const std::string& deviceURI() const { return deviceURI_; }
  const std::optional<std::string>& modelName() const { return modelName_; }

 private:
  ATDeviceDataReader(std::string deviceURI, std::optional<std::string> modelName);
  static std::unique_ptr<IATReaderImpl> implementationForKey(std::string_view key);

  std::string deviceURI_;
  std::optional<std::string> modelName_;
};

/// Registers the two implementation kinds. Both have the same key, and the order is part of the design: the device
/// family name reader first, then the custom media reader, which thereby holds the key.
void registerReaderImplementations();
