// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "explain/judge/CUPSReading.h"

/// Which colour profile CUPS takes for which choices. A spec has three parts, "first.medium.third"; each is empty or
/// equals the marked choice of its option, which *cupsICCQualifier1 to 3 name, and the first statement in file order
/// that matches is taken (CUPS, "PPD Extensions", Color Profiles).
class ProfileSelection {
 public:
  /// Statements that a reading must have been asked for.
  static const std::vector<std::string>& attributes();

  enum class Outcome {
    selected,
    notRead,        ///< libcups reads no such statement
    notThreeParts,  ///< so it matches no choices
    noOption,       ///< `option`, of which a part of the spec says a choice, is not there
    noChoice,       ///< `option` has no such `choice`
    behindAnother   ///< the profile of the spec `other` matches all that it matches, and comes first
  };

  struct Answer {
    Outcome outcome = Outcome::notRead;
    std::vector<std::pair<std::string, std::string>> choices;  ///< options and choices that select it
    std::string option, choice;
    std::string other, otherPath;
  };

  /// `reading` must live as long as this object.
  explicit ProfileSelection(const CUPSReading& reading);

  /// For the profile of this spec and path.
  Answer of(std::string_view spec, std::string_view path) const;

 private:
  using Parts = std::array<std::string_view, 3>;
  struct Profile {
    const CUPSReading::Attribute* attribute;
    Parts parts;
  };
  using Choices = std::array<std::vector<std::string_view>, 3>;

  Answer ofProfile(std::size_t index) const;
  Answer ofCombinations(std::size_t index, const Choices& choices) const;
  std::vector<const Profile*> inFrontOf(std::size_t index) const;
  Answer selectedBy(const Parts& combination) const;
  Answer behind(const Profile& other) const;

  const CUPSReading& reading_;
  std::array<std::string, 3> options_;
  std::vector<Profile> profiles_;  // with three parts, in file order
};
