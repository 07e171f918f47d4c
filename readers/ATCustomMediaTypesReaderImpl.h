// SPDX-License-Identifier: MIT
#pragma once

#include "readers/IATReaderImpl.h"

/// Reads the user's custom media from the device-model library and makes the media list dictionary of it:
///
/// | key | value |
/// |---|---|
/// | "MedaListVersion" (spelled so) | the version of the device's media list; only when the store gives one |
/// | "MediaList" | list of media records in the store's order, possibly empty; absent without the library |
///
/// A media record has "MediaName", "ID", "CategoryName", "CategoryID" and "ICCProfiles", in this order and only up to
/// the first one that the store does not have (that is meant), and "ParentID" and "DefaultGlossEnhancer" when present.
/// Whoever reads the dictionary relies on the difference between no list, which changes nothing, and an empty one,
/// which takes earlier media away.
class ATCustomMediaTypesReaderImpl : public IATReaderImpl {
 public:
  DeviceValue dataFromDevice(const std::string& deviceURI, const std::optional<std::string>& modelName) override;
  /// Always absent: a PPD record has no custom media.
  DeviceValue dataFromPPD(ppd_file_s* ppd) override;
};
