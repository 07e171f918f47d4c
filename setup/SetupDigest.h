// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

/// What a setup was made from or what it gave, as one number: SHA-256, as 64 lower-case hexadecimal digits.
/// Each throws std::runtime_error when libcups cannot compute it.
namespace SetupDigest {

/// Of the files that a setup is made from: the unpacked bytes of the base PPD, and those of the snapshot.
std::string ofSources(std::string_view ppd, std::string_view snapshot);

/// The same of the two files, whatever can be read of them; a base PPD that is gzip is unpacked.
std::string ofFiles(const std::string& PPDPath, const std::string& snapshotPath);

/// Of a PPD as far as it is the setup's: without what the scheduler writes into its copy (line ends, the values of
/// *Default… statements, *cupsProtocol) and without the statement of its own setup (SetupStatement).
std::string ofResult(std::string_view ppd);

}  // namespace SetupDigest
