// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A PPD as libcups reads it, which is what cupsd and the print dialogs of applications make of it. libcups reads in a
/// process of its own, since PPDs with random bytes make it crash.
struct CUPSReading {
  enum class Outcome {
    opened,
    refused,  ///< `refusal` says why
    failed    ///< libcups crashed or did not come to an end, or the PPD is larger than `kLargest`
  };

  struct Refusal {
    int line = 0;       ///< counted as libcups does, from 1; lines within values count too
    std::string words;  ///< libcups' own, in English
  };

  struct Choice {
    std::string name;
    std::vector<std::string> texts;  ///< one for each language that was asked for, as bytes: a cut one is no UTF-8
  };

  struct Option {
    std::string keyword, group;
    std::string defaultChoice;  ///< may be none of the choices
    std::vector<std::string> texts;
    std::vector<Choice> choices;

    /// Null when there is none of exactly this name.
    const Choice* choice(std::string_view choiceName) const;
  };

  /// A statement that is kept as it is; without its quotes.
  struct Attribute {
    std::string name, spec, text, value;
  };

  Outcome outcome = Outcome::failed;
  std::optional<Refusal> refusal;        ///< relaxed, as cupsd and applications read
  std::optional<Refusal> strictRefusal;  ///< as cupstestppd reads; also present when relaxed reading is refused
  std::vector<std::string> languages;    ///< those of the texts, "en" first
  std::vector<Option> options;           ///< in the order of dialogs
  std::vector<Attribute> attributes;     ///< those that were asked for, in the order in which libcups finds them

  static constexpr std::size_t kLargest = std::size_t{64} << 20;
  static constexpr std::size_t kMostLanguages = 64;

  /// Reads the bytes of a PPD, packed with gzip or not, for whether they are refused; options and attributes are left
  /// out.
  static CUPSReading of(std::string_view bytes);

  /// The same with options and attributes. `languages`: whose texts are wanted beside English, as in *cupsLanguages;
  /// `attributes`: the names of the statements that are.
  static CUPSReading of(std::string_view bytes, const std::vector<std::string>& languages,
                        const std::vector<std::string>& attributes);

  bool isOpened() const { return outcome == Outcome::opened; }

  /// The option that libcups finds by this keyword (letter case does not count); null when there is none.
  const Option* option(std::string_view keyword) const;

  /// The value of the first statement of this name that was asked for; null when there is none.
  const std::string* value(std::string_view name) const;
};
