// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The statement in a queue's PPD that tells what the queue was set up from:
///
///     *VorantisSetup: "plotter1/z6.ppd
///     <digest of the sources> <digest of the result> 1.0.0"
///     *End
///
/// Two lines, because a source may have 236 bytes and CUPS reads no line of more than 255.
struct SetupStatement {
  static constexpr std::string_view kScheme = "vorantis-autosetup:";  ///< in front of a setup's name

  std::string source;   ///< the setup's name without its scheme
  std::string sources;  ///< SetupDigest::ofSources
  std::string result;   ///< SetupDigest::ofResult of the PPD
  std::string version;  ///< of the program that made it

  /// The PPD with the statement of this setup behind its first line, in place of one that it may have. `name` is the
  /// setup's, with or without its scheme; `sources` the digest of what it was made from.
  static std::string addedTo(std::string_view ppd, std::string_view name, std::string_view sources);

  /// The statement of the PPD; absent without one, or when it is not as addedTo writes it.
  static std::optional<SetupStatement> of(std::string_view ppd);

  /// The PPD without the statement.
  static std::string removedFrom(std::string_view ppd);
};
