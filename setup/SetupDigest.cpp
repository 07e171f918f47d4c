// SPDX-License-Identifier: MIT
#include "setup/SetupDigest.h"

#include <cups/cups.h>
#include <cups/file.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <memory>
#include <stdexcept>

#include "setup/SetupStatement.h"

namespace {

constexpr std::size_t kSize = 32;  // bytes of a SHA-256

std::string digestOf(const std::string& bytes) {
  std::array<unsigned char, kSize> digest{};
  if (cupsHashData("sha2-256", bytes.data(), bytes.size(), digest.data(), digest.size()) != kSize) {
    throw std::runtime_error("libcups cannot compute a SHA-256 digest");
  }
  std::string text;
  for (const unsigned char byte : digest) text += fmt::format("{:02x}", byte);
  return text;
}

// What CUPS' reader gives, which unpacks.
std::string contentOf(const std::string& path) {
  const std::unique_ptr<cups_file_t, int (*)(cups_file_t*)> file(cupsFileOpen(path.c_str(), "r"), cupsFileClose);
  std::string content;
  std::array<char, 65536> block;
  for (ssize_t size; file != nullptr && (size = cupsFileRead(file.get(), block.data(), block.size())) > 0;) {
    content.append(block.data(), static_cast<std::size_t>(size));
  }
  return content;
}

// What of a line is the setup's.
std::string_view keptOf(std::string_view line) {
  if (line.starts_with("*cupsProtocol:")) return {};
  return line.starts_with("*Default") ? line.substr(0, line.find(':')) : line;
}

}  // namespace

std::string SetupDigest::ofSources(std::string_view ppd, std::string_view snapshot) {
  // With their lengths, so that bytes that move from one to the other show.
  return digestOf(fmt::format("{} {} {}{}", ppd.size(), snapshot.size(), ppd, snapshot));
}

std::string SetupDigest::ofFiles(const std::string& PPDPath, const std::string& snapshotPath) {
  return ofSources(contentOf(PPDPath), contentOf(snapshotPath));
}

std::string SetupDigest::ofResult(std::string_view ppd) {
  std::string kept = "PPD\n";  // libcups has no digest of nothing
  const std::string rest = SetupStatement::removedFrom(ppd);
  for (std::size_t start = 0; start < rest.size();) {
    const std::size_t end = std::min(rest.find_first_of("\r\n", start), rest.size());
    const std::string_view line = keptOf(std::string_view(rest).substr(start, end - start));
    if (!line.empty()) kept.append(line) += '\n';
    start = end + 1;
  }
  return digestOf(kept);
}
