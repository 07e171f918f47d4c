// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ppd/document/ATPPD.h"

/// The media that a PPD lets users choose, each with what makes it the same medium in another PPD: choices of custom
/// media are numbered in the device's order, so their names say nothing when two PPDs are compared.
///
/// The report's comparison and the administrator's program for queues both work with it, so it stands below them.
struct PPDMedia {
  struct Medium {
    std::string choice;  ///< of MediaType, such as Custom1
    std::string name;    ///< for people
    std::string ID;      ///< of a custom medium; empty when its choice's code holds none in a known form
    std::string key;     ///< equal in two PPDs for the same medium
    std::string properties;
    std::vector<std::string> profiles;  ///< each with spec, name and path, the choice left out
    bool isCustom = false;

    /// The name, and the ID if there is one, for messages.
    std::string label() const;
    /// What the scheduler calls a custom one in media-type, media-col and media, such as "custom-1" for Custom1 (the
    /// PWG's form, as libcups makes it).
    std::string IPPName() const;
  };

  std::vector<Medium> media;  ///< in the PPD's order
  std::string defaultChoice;  ///< as it stands there; empty without one

  static PPDMedia of(const ATPPD& ppd);
  /// Of the bytes of a PPD; without media when they are none.
  static PPDMedia ofText(std::string_view text);

  /// The medium with this choice, or null.
  const Medium* withChoice(std::string_view choice) const;
  /// The medium of this key, or null; of several the one with this name, if there is one.
  const Medium* withKey(std::string_view key, std::string_view name = "") const;
};
